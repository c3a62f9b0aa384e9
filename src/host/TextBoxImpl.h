#pragma once
// The inside of host::TextBox, shared by its sources: TextBox.cpp (properties, the form's
// side), TextBoxEdit.cpp (the editing model and keys), TextBoxView.cpp (layout, hit tests and
// painting), TextBoxWindow.cpp (the window procedure).
#include <cstdint>
#include <memory>
#include <vector>

#include "host/TextBox.h"
#include "platform/Types.h"

namespace mx::host {

// One line as displayed: [start, start + length) of the text, without the line break that may
// follow it. A wrapped line ends where the next starts; a hard line ends before "\r\n".
struct TextBoxLine {
  int32_t start = 0;
  int32_t length = 0;
};

struct TextBox::Impl {
  explicit Impl(TextBox& owner) : self(owner) {}
  TextBox& self;

  // ---- model ----
  String text;
  // The selection runs between the anchor and the caret, either way round; the caret is where
  // typing goes and what the arrows move.
  int32_t anchor = 0;
  int32_t caret = 0;
  int32_t maxLength = 0;
  char16_t passwordChar = 0;
  bool locked = false;
  int16_t alignment = 0;
  bool multiLine = false;
  int16_t scrollBars = 0;
  OLE_COLOR backColor = vbWindowBackground;
  OLE_COLOR foreColor = vbWindowText;
  std::shared_ptr<StdFont> font;
  uint64_t fontConnection = 0;
  bool enabled = true;
  int16_t borderStyle = 1;
  bool hideSelection = true;
  bool modified = false;

  // One level of undo, as the platform's edit control keeps it: the text and selection before
  // the last edit. A run of typed characters is one edit; undoing swaps the two states, so a
  // second undo redoes.
  bool canUndo = false;
  String undoText;
  int32_t undoAnchor = 0;
  int32_t undoCaret = 0;
  // True while typed characters extend the current undo step (reset by any other edit or a
  // caret move).
  bool typingRun = false;

  // ---- view ----
  platform::HWND parent = 0;
  platform::HFONT hfont = 0;
  // A memory DC with the font selected, for measuring when no window DC is at hand.
  platform::HDC measureDC = 0;
  std::vector<TextBoxLine> lines;
  bool layoutValid = false;
  int scrollX = 0;      // pixels the text is shifted left
  int32_t topLine = 0;  // first visible line (multi-line)
  // The x the caret keeps while moving up and down over shorter lines; -1 when unset.
  int preferredX = -1;
  bool focused = false;
  bool caretVisible = false;  // the blink phase
  bool shown = false;
  bool dragging = false;
  bool afterDoubleClick = false;
  bool userMode = true;
  bool terminated = false;
  std::shared_ptr<bool> alive = std::make_shared<bool>(true);

  // ---- TextBox.cpp ----
  void EnsureFont();
  void ReleaseFont();
  void FontChanged();
  void CreateWindowIn(platform::HWND parentWindow, int x, int y, int w, int h);
  [[nodiscard]] int32_t SelMin() const { return anchor < caret ? anchor : caret; }
  [[nodiscard]] int32_t SelMax() const { return anchor < caret ? caret : anchor; }

  // ---- TextBoxEdit.cpp ----
  // Replaces the selection by `insert` (cut to what MaxLength leaves room for when `limit`),
  // records the undo step, puts the caret after the insert and raises Change. False when
  // nothing changed.
  bool ReplaceSelection(StringView insert, bool limit, bool typing);
  // Sets the whole text (from code): cut to MaxLength, caret to 0, undo reset, Change.
  void SetText(StringView value);
  void SetSelection(int32_t newAnchor, int32_t newCaret);
  void RaiseChange();
  void DoUndo();
  void DoCut();
  void DoCopy();
  void DoPaste();
  // The key's own action after KeyDown; true when it was an editing or moving key.
  void HandleKeyDown(int16_t keyCode, int16_t shift);
  void HandleChar(char16_t ch);
  // Caret steps that never split "\r\n" or a surrogate pair.
  [[nodiscard]] int32_t NextPosition(int32_t pos) const;
  [[nodiscard]] int32_t PrevPosition(int32_t pos) const;
  [[nodiscard]] int32_t NextWord(int32_t pos) const;
  [[nodiscard]] int32_t PrevWord(int32_t pos) const;
  // The word around a position, for a double click: [start, end).
  void WordAt(int32_t pos, int32_t& start, int32_t& end) const;
  // Answers an edit or text message; false for a message that is not one of them.
  bool EditMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam, intptr_t& result);

  // ---- TextBoxView.cpp ----
  [[nodiscard]] String Display() const;
  void Layout();
  [[nodiscard]] platform::RECT TextRect() const;
  [[nodiscard]] int LineHeight();
  [[nodiscard]] int32_t LineOf(int32_t pos);
  // x of a position within its line, in text coordinates (before alignment and scrolling).
  [[nodiscard]] int XOf(int32_t pos);
  // Left edge of a line's text in client pixels (alignment and scrolling applied).
  [[nodiscard]] int LineLeft(int32_t line);
  [[nodiscard]] int LineWidth(int32_t line);
  // The position nearest a client point.
  [[nodiscard]] int32_t HitTest(int x, int y);
  // The position on a line nearest an x in text coordinates.
  [[nodiscard]] int32_t PositionAtX(int32_t line, int x);
  // Scrolls so that the caret is inside the text rectangle.
  void ScrollToCaret();
  void Invalidate();
  void Paint(platform::HDC dc);
  void ResetBlink();

  // ---- TextBoxWindow.cpp ----
  static void RegisterClassOnce();
  static platform::LRESULT WindowProc(platform::HWND hwnd, platform::UINT msg, platform::WPARAM wParam,
                                      platform::LPARAM lParam);
};

// Window class and timer of the text box.
inline constexpr char16_t kTextBoxClass[] = u"MxHostTextBox";
inline constexpr uintptr_t kCaretTimer = 1;
inline constexpr unsigned kCaretBlinkMs = 530;

}  // namespace mx::host
