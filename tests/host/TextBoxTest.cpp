// The host's text box driven through injected input on a form: key events and their order,
// KeyPress cancelling and replacing, MaxLength, PasswordChar, selection by keys and mouse, undo,
// the clipboard, Change counts, the edit messages, multi-line editing, Locked, and the caret's
// blink on the clock.
#include <gtest/gtest.h>

#include "host/Form.h"
#include "host/HostControls.h"
#include "host/HostTestSupport.h"
#include "host/TextBox.h"
#include "platform/Gdi.h"
#include "platform/Text.h"

using namespace mx::host;
using namespace mx::host::testing;
using namespace mx::platform;
using mx::platform::testing::WindowingTest;
using Log = std::vector<std::string>;

namespace {

class TextBoxTest : public WindowingTest {
 protected:
  void SetUp() override {
    WindowingTest::SetUp();
    ResetClipboard();
    ResetMessageBeeps();
    RegisterHostControls();
    form = std::make_shared<Form>(u"frmText");
    form->ClientSize(4500, 3000);
    box = std::dynamic_pointer_cast<TextBox>(form->AddControl(u"VB.TextBox", u"Text1"));
    ASSERT_TRUE(box);
    box->Move(150, 150, 3000, 375);  // client pixels 10,10 to 210,35
    box->Visible(true);
    box->Text(u"");
    form->Show();
    box->SetFocus();
    PumpMessages();
    form->SetEventSink([this](StringView, int32_t, StringView name, std::span<Variant> args) {
      std::string line = ToUtf8(name);
      for (const Variant& a : args) line += " " + ToUtf8(a.ToString());
      events.push_back(line);
    });
  }
  void TearDown() override {
    box.reset();
    if (form) form->Unload();
    form.reset();
    WindowingTest::TearDown();
  }

  void Type(std::u16string_view text) {
    InjectText(text);
    PumpMessages();
  }
  void Press(int vk) {
    InjectKeyPress(vk);
    PumpMessages();
  }
  // A key with modifiers held: Shift, Ctrl or both.
  void Chord(std::initializer_list<int> mods, int vk) {
    for (int m : mods) InjectKey(m, true);
    InjectKeyPress(vk);
    for (int m : mods) InjectKey(m, false);
    PumpMessages();
  }
  // Width in pixels of a text in the box's font, for aiming the mouse.
  int Extent(std::u16string_view s) {
    HDC dc = CreateCompatibleDC(0);
    const LOGFONTW lf = box->Font()->ToLogFont();
    HFONT f = CreateFontIndirectW(&lf);
    HGDIOBJ old = SelectObject(dc, f);
    SIZE size{};
    GetTextExtentPoint32W(dc, s, &size);
    SelectObject(dc, old);
    DeleteObject(f);
    DeleteDC(dc);
    return static_cast<int>(size.cx);
  }
  // Client x of a text offset on the first line of a left-aligned box (2 border + 1 margin).
  int XAt(std::u16string_view before) { return 3 + Extent(before); }
  size_t Count(const std::string& name) const {
    return static_cast<size_t>(std::count(events.begin(), events.end(), name));
  }

  std::shared_ptr<Form> form;
  std::shared_ptr<TextBox> box;
  Log events;
};

// ---- keys and events ---------------------------------------------------------------------------------

TEST_F(TextBoxTest, KeyEventsComeInTheHostsOrder) {
  Press('A');
  EXPECT_EQ(box->Text(), u"a");
  EXPECT_EQ(events, (Log{"KeyDown 65 0", "KeyPress 97", "Change", "KeyUp 65 0"}));
}

TEST_F(TextBoxTest, KeyPressCancelsAndReplacesCharacters) {
  box->KeyPress.connect([](int16_t& k) {
    if (k == 'b') k = 0;
    else if (k == 'c') k = 'X';
  });
  Type(u"abcd");
  EXPECT_EQ(box->Text(), u"aXd");
  EXPECT_EQ(box->SelStart(), 3);
  // A cancelled character changes nothing, so it raises no Change.
  EXPECT_EQ(Count("Change"), 3u);
  // A cancelled Backspace keeps the text too.
  box->KeyPress.connect([](int16_t& k) {
    if (k == 8) k = 0;
  });
  Press(VK_BACK);
  EXPECT_EQ(box->Text(), u"aXd");
}

TEST_F(TextBoxTest, KeyDownZeroStopsTheKeysOwnAction) {
  box->Text(u"abc");
  box->KeyDown.connect([](int16_t& k, int16_t&) {
    if (k == VK_DELETE) k = 0;
    if (k == VK_HOME) k = VK_END;  // another code is handled as that key
  });
  Press(VK_DELETE);
  EXPECT_EQ(box->Text(), u"abc");
  Press(VK_HOME);
  EXPECT_EQ(box->SelStart(), 3);
}

TEST_F(TextBoxTest, MaxLengthCutsTypedAndPastedText) {
  box->MaxLength(5);
  Type(u"abcdefg");
  EXPECT_EQ(box->Text(), u"abcde");
  EXPECT_EQ(MessageBeepCount(), 2);
  // A paste takes what fits, in place of the selection.
  box->SelStart(1);
  box->SelLength(2);  // "bc"
  ASSERT_TRUE(SetClipboardText(u"123456"));
  Chord({VK_CONTROL}, 'V');
  EXPECT_EQ(box->Text(), u"a12de");
  EXPECT_EQ(box->SelStart(), 3);
  // Code is cut too; a lower limit leaves text already there alone.
  box->Text(u"0123456789");
  EXPECT_EQ(box->Text(), u"01234");
  box->MaxLength(2);
  EXPECT_EQ(box->Text(), u"01234");
  // A single line pastes up to the first line break.
  box->MaxLength(0);
  box->Text(u"");
  ASSERT_TRUE(SetClipboardText(u"one\r\ntwo"));
  Chord({VK_SHIFT}, VK_INSERT);
  EXPECT_EQ(box->Text(), u"one");
}

TEST_F(TextBoxTest, PasswordCharHidesTextAndRefusesCopy) {
  box->Text(u"segredo");
  box->PasswordChar(u"*");
  EXPECT_EQ(box->DisplayText(), u"*******");
  ASSERT_TRUE(SetClipboardText(u"before"));
  Chord({VK_CONTROL}, 'A');
  EXPECT_EQ(box->SelLength(), 7);
  Chord({VK_CONTROL}, 'C');
  Chord({VK_CONTROL}, 'X');
  EXPECT_EQ(GetClipboardText(), std::optional<std::u16string>(u"before"));
  EXPECT_EQ(box->Text(), u"segredo");
  // Typing still works, and the display follows.
  Type(u"ab");
  EXPECT_EQ(box->Text(), u"ab");
  EXPECT_EQ(box->DisplayText(), u"**");
  // Without it, the same keys copy and cut.
  box->PasswordChar(u"");
  Chord({VK_CONTROL}, 'A');
  Chord({VK_CONTROL}, 'X');
  EXPECT_EQ(GetClipboardText(), std::optional<std::u16string>(u"ab"));
  EXPECT_EQ(box->Text(), u"");
}

// ---- selection ----------------------------------------------------------------------------------------

TEST_F(TextBoxTest, KeysMoveAndExtendTheSelection) {
  box->Text(u"hello big world");
  Press(VK_END);
  EXPECT_EQ(box->SelStart(), 15);
  Chord({VK_SHIFT, VK_CONTROL}, VK_LEFT);
  EXPECT_EQ(box->SelText(), u"world");
  Chord({VK_SHIFT, VK_CONTROL}, VK_LEFT);
  EXPECT_EQ(box->SelText(), u"big world");
  // Left with a selection collapses it to its start.
  Press(VK_LEFT);
  EXPECT_EQ(box->SelStart(), 6);
  EXPECT_EQ(box->SelLength(), 0);
  Chord({VK_CONTROL}, VK_RIGHT);
  EXPECT_EQ(box->SelStart(), 10);
  Chord({VK_SHIFT}, VK_HOME);
  EXPECT_EQ(box->SelText(), u"hello big ");
  Chord({VK_SHIFT}, VK_RIGHT);
  EXPECT_EQ(box->SelText(), u"ello big ");
  Press(VK_RIGHT);
  EXPECT_EQ(box->SelStart(), 10);
  // Typing over a selection replaces it.
  Chord({VK_SHIFT}, VK_END);
  Type(u"X");
  EXPECT_EQ(box->Text(), u"hello big X");
}

TEST_F(TextBoxTest, MouseClicksDragsAndDoubleClicksSelect) {
  box->Text(u"alpha beta gamma");
  const HWND h = box->hWnd();
  // A click past the end puts the caret at the end; one on a character's right half after it.
  PressAt(h, 190, 8);
  ReleaseAtScreen(ScreenPoint(h, 190, 8).x, ScreenPoint(h, 190, 8).y);
  EXPECT_EQ(box->SelStart(), 16);
  const int afterAlpha = XAt(u"alpha");
  PressAt(h, afterAlpha, 8);
  ReleaseAtScreen(ScreenPoint(h, afterAlpha, 8).x, ScreenPoint(h, afterAlpha, 8).y);
  EXPECT_EQ(box->SelStart(), 5);
  EXPECT_EQ(box->SelLength(), 0);
  // Shift+click extends from the caret.
  InjectKey(VK_SHIFT, true);
  PressAt(h, XAt(u"alpha beta"), 8);
  ReleaseAtScreen(ScreenPoint(h, XAt(u"alpha beta"), 8).x, ScreenPoint(h, XAt(u"alpha beta"), 8).y);
  InjectKey(VK_SHIFT, false);
  PumpMessages();
  EXPECT_EQ(box->SelText(), u" beta");
  // A drag selects from the press to where the pointer is.
  PressAt(h, XAt(u""), 8);
  const POINT to = ScreenPoint(h, XAt(u"alp"), 8);
  InjectMouseMove(to.x, to.y);
  PumpMessages();
  EXPECT_EQ(box->SelText(), u"alp");
  ReleaseAtScreen(to.x, to.y);
  // A double click takes the word and the blank after it.
  events.clear();
  const POINT mid = ScreenPoint(h, XAt(u"alpha be"), 8);
  InjectMouseMove(mid.x, mid.y);
  InjectClick();
  InjectClick();
  PumpMessages();
  EXPECT_EQ(box->SelText(), u"beta ");
  EXPECT_EQ(Filter(events, {"MouseDown", "MouseUp", "Click", "DblClick"}),
            (Log{"MouseDown 1 0 " + std::to_string(XAt(u"alpha be") * 15) + " 120", "MouseUp 1 0 " +
                 std::to_string(XAt(u"alpha be") * 15) + " 120", "Click", "DblClick",
                 "MouseUp 1 0 " + std::to_string(XAt(u"alpha be") * 15) + " 120"}));
}

TEST_F(TextBoxTest, EditMessagesSetAndGetTheSelection) {
  box->Text(u"abcdef");
  const HWND h = box->hWnd();
  SendMessageW(h, EM_SETSEL, 0, -1);
  EXPECT_EQ(box->SelLength(), 6);
  // The end may come first: the selection is the same range, the caret at the end argument.
  SendMessageW(h, EM_SETSEL, 4, 1);
  EXPECT_EQ(box->SelStart(), 1);
  EXPECT_EQ(box->SelLength(), 3);
  DWORD s = 0, e = 0;
  const LRESULT packed = SendMessageW(h, EM_GETSEL, reinterpret_cast<WPARAM>(&s), reinterpret_cast<LPARAM>(&e));
  EXPECT_EQ(s, 1u);
  EXPECT_EQ(e, 4u);
  EXPECT_EQ(packed, MAKELPARAM(1, 4));
  // Shift+Right moves the caret, which is at 1.
  Chord({VK_SHIFT}, VK_RIGHT);
  EXPECT_EQ(box->SelText(), u"cd");
  // A start of -1 drops the selection and leaves the caret.
  SendMessageW(h, EM_SETSEL, static_cast<WPARAM>(-1), 0);
  EXPECT_EQ(box->SelStart(), 2);
  EXPECT_EQ(box->SelLength(), 0);
  // Out of range is clamped to the text.
  SendMessageW(h, EM_SETSEL, 3, 99);
  EXPECT_EQ(box->SelText(), u"def");
  SendMessageW(h, EM_LIMITTEXT, 2, 0);
  EXPECT_EQ(box->MaxLength(), 2);
  EXPECT_EQ(SendMessageW(h, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(u"xyz")), TRUE);
  EXPECT_EQ(GetWindowTextString(h), u"xy");
  EXPECT_EQ(GetWindowTextLengthW(h), 2);
}

// ---- changes and undo ---------------------------------------------------------------------------------

TEST_F(TextBoxTest, ChangeFollowsEveryChangeOfTextAndNothingElse) {
  box->Text(u"x");
  box->Text(u"x");
  EXPECT_EQ(Count("Change"), 1u);
  box->SelStart(1);
  box->SelText(u"yz");
  EXPECT_EQ(box->Text(), u"xyz");
  EXPECT_EQ(box->SelStart(), 3);
  SetWindowTextW(box->hWnd(), u"new");
  EXPECT_EQ(Count("Change"), 3u);
  // Moving, selecting and Backspace at the start change nothing.
  Press(VK_HOME);
  Press(VK_BACK);
  Chord({VK_SHIFT}, VK_END);
  EXPECT_EQ(Count("Change"), 3u);
  Press(VK_DELETE);
  EXPECT_EQ(box->Text(), u"");
  ASSERT_TRUE(SetClipboardText(u"p"));
  Chord({VK_CONTROL}, 'V');
  EXPECT_EQ(Count("Change"), 5u);
}

TEST_F(TextBoxTest, UndoTakesBackTypingAndPasteAndRedoesOnASecondUndo) {
  Type(u"abc");
  Chord({VK_CONTROL}, 'Z');
  // The whole run of typing is one step.
  EXPECT_EQ(box->Text(), u"");
  Chord({VK_CONTROL}, 'Z');
  EXPECT_EQ(box->Text(), u"abc");
  // A paste over a selection: undo brings back the text and the selection.
  box->SelStart(1);
  box->SelLength(1);
  ASSERT_TRUE(SetClipboardText(u"XY"));
  Chord({VK_CONTROL}, 'V');
  EXPECT_EQ(box->Text(), u"aXYc");
  SendMessageW(box->hWnd(), EM_UNDO, 0, 0);
  EXPECT_EQ(box->Text(), u"abc");
  EXPECT_EQ(box->SelText(), u"b");
  // A caret move ends a typing run: only what came after it goes.
  Press(VK_END);
  Type(u"d");
  Press(VK_LEFT);
  Press(VK_RIGHT);
  Type(u"e");
  box->Undo();
  EXPECT_EQ(box->Text(), u"abcd");
  // Backspace is a step of its own; code that sets Text forgets the undo.
  Press(VK_BACK);
  EXPECT_EQ(box->Text(), u"abc");
  box->Undo();
  EXPECT_EQ(box->Text(), u"abcd");
  box->Text(u"fresh");
  EXPECT_EQ(SendMessageW(box->hWnd(), EM_CANUNDO, 0, 0), 0);
  box->Undo();
  EXPECT_EQ(box->Text(), u"fresh");
}

// ---- multi-line -----------------------------------------------------------------------------------------

TEST_F(TextBoxTest, MultiLineEnterAndLineNavigation) {
  Type(u"ab\r");
  // A single line takes no line break.
  EXPECT_EQ(box->Text(), u"ab");
  box->MultiLine(true);
  box->Move(150, 150, 3000, 1500);
  box->Text(u"");
  Type(u"abcd\rxy\rlonger");
  EXPECT_EQ(box->Text(), u"abcd\r\nxy\r\nlonger");
  EXPECT_EQ(SendMessageW(box->hWnd(), EM_GETLINECOUNT, 0, 0), 3);
  // Up keeps the column where the line is long enough, else goes to the line's end; the column
  // comes back on a longer line.
  Press(VK_UP);
  EXPECT_EQ(box->SelStart(), 8);  // end of "xy"
  Press(VK_UP);
  EXPECT_EQ(box->SelStart(), 4);  // after "abcd", the column of "longer"'s end is beyond it
  Press(VK_HOME);
  Press(VK_RIGHT);
  Press(VK_DOWN);
  EXPECT_EQ(box->SelStart(), 7);  // after "x"
  // The line break is one step for the arrows, and one Backspace takes both halves.
  Press(VK_END);
  Press(VK_RIGHT);
  EXPECT_EQ(box->SelStart(), 10);
  Press(VK_BACK);
  EXPECT_EQ(box->Text(), u"abcd\r\nxylonger");
  EXPECT_EQ(SendMessageW(box->hWnd(), EM_LINEFROMCHAR, 9, 0), 1);
  EXPECT_EQ(SendMessageW(box->hWnd(), EM_LINEINDEX, 1, 0), 6);
  // EM_SETSEL into the middle of a break moves to its start.
  SendMessageW(box->hWnd(), EM_SETSEL, 5, 5);
  EXPECT_EQ(box->SelStart(), 4);
}

TEST_F(TextBoxTest, MultiLineWrapsLongLinesAtBlanks) {
  box->MultiLine(true);
  box->Move(150, 150, 1200, 1500);  // 80 pixels wide
  box->Text(u"one two three four five six seven");
  const int32_t lines = box->LineCount();
  EXPECT_GT(lines, 2);
  // Every wrapped line starts at a word.
  for (int32_t i = 1; i < lines; ++i) {
    const auto start = SendMessageW(box->hWnd(), EM_LINEINDEX, static_cast<WPARAM>(i), 0);
    EXPECT_EQ(box->Text()[static_cast<size_t>(start) - 1], u' ') << "line " << i;
  }
  // With a horizontal scroll bar the text does not wrap.
  box->ScrollBars(1);
  EXPECT_EQ(box->LineCount(), 1);
}

// ---- Locked and focus -----------------------------------------------------------------------------------

TEST_F(TextBoxTest, LockedRefusesEditingButSelectsAndCopies) {
  box->Text(u"fixed");
  box->Locked(true);
  events.clear();
  Type(u"zz");
  Press(VK_DELETE);
  Press(VK_BACK);
  ASSERT_TRUE(SetClipboardText(u"paste"));
  Chord({VK_CONTROL}, 'V');
  Chord({VK_CONTROL}, 'X');
  EXPECT_EQ(box->Text(), u"fixed");
  EXPECT_EQ(Count("Change"), 0u);
  // Key events still reach the handlers.
  EXPECT_EQ(Count("KeyPress 122"), 2u);
  Chord({VK_SHIFT}, VK_END);
  Chord({VK_SHIFT, VK_CONTROL}, VK_LEFT);
  Press(VK_HOME);
  Chord({VK_SHIFT}, VK_END);
  Chord({VK_CONTROL}, 'C');
  EXPECT_EQ(GetClipboardText(), std::optional<std::u16string>(u"fixed"));
  // Code still changes it.
  box->SelText(u"set");
  EXPECT_EQ(box->Text(), u"set");
}

TEST_F(TextBoxTest, FocusEventsAndTheCaretBlinkOnTheClock) {
  auto other = std::dynamic_pointer_cast<TextBox>(form->AddControl(u"VB.TextBox", u"Text2"));
  other->Move(150, 900, 3000, 375);
  other->Visible(true);
  box->Text(u"");
  events.clear();
  other->SetFocus();
  PumpMessages();
  box->SetFocus();
  PumpMessages();
  EXPECT_EQ(Filter(events, {"GotFocus", "LostFocus"}), (Log{"LostFocus", "GotFocus", "LostFocus", "GotFocus"}));
  // The caret is a line in the text colour right after the margin; it goes and comes back with
  // each blink.
  auto caretShown = [&] {
    UpdateWindow(box->hWnd());
    return (CaptureWindow(box->hWnd()).pixel(3, 8) & 0xFFFFFF) == 0x000000;
  };
  EXPECT_TRUE(caretShown());
  AdvanceVirtualClock(540);
  PumpMessages();
  EXPECT_FALSE(caretShown());
  AdvanceVirtualClock(540);
  PumpMessages();
  EXPECT_TRUE(caretShown());
  // No caret without the focus.
  other->SetFocus();
  PumpMessages();
  EXPECT_FALSE(caretShown());
  AdvanceVirtualClock(540);
  PumpMessages();
  EXPECT_FALSE(caretShown());
}

TEST_F(TextBoxTest, ALongSingleLineScrollsToKeepTheCaretInView) {
  box->Move(150, 150, 900, 375);  // 60 pixels
  Type(u"the quick brown fox jumps over the lazy dog");
  // The end is in view: the caret's column is inside the text area.
  UpdateWindow(box->hWnd());
  const CapturedImage shot = CaptureWindow(box->hWnd());
  bool caretInside = false;
  for (int x = 3; x < 57; ++x) caretInside |= (shot.pixel(x, 8) & 0xFFFFFF) == 0;
  EXPECT_TRUE(caretInside);
  // Home brings the start back: a click at the left edge lands on 0, not on a scrolled offset.
  Press(VK_HOME);
  PressAt(box->hWnd(), 3, 8);
  ReleaseAtScreen(ScreenPoint(box->hWnd(), 3, 8).x, ScreenPoint(box->hWnd(), 3, 8).y);
  EXPECT_EQ(box->SelStart(), 0);
  Press(VK_END);
  PressAt(box->hWnd(), 3, 8);
  ReleaseAtScreen(ScreenPoint(box->hWnd(), 3, 8).x, ScreenPoint(box->hWnd(), 3, 8).y);
  EXPECT_GT(box->SelStart(), 10);
}

}  // namespace
