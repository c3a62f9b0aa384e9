// USComboBox on a run-time form, driven through injected keys and clicks: the drop-down's
// opening, placement and closing, the text algorithm with auto-complete, the list style, the
// keyboard, fill and position members, the change lock, late binding and the bag.
#include "USComboBoxTestSupport.h"

#include "host/PropertyBag.h"
#include "frame/Themes.h"
#include "host/Err.h"
#include "platform/Clock.h"
#include "platform/Timer.h"

namespace mx::entry::testing {
namespace {

using platform::RECT;

TEST_F(ComboTest, EmptyListRaisesBeginDisplayListAndStaysClosed) {
  combo->ShowList();
  EXPECT_FALSE(combo->IsListVisible());
  EXPECT_EQ(Take(), (Lines{"BeginDisplayList"}));
  // The list window stayed a hidden child of the control.
  EXPECT_EQ(platform::GetParent(combo->USListBox1().hWnd()), combo->hWnd());
  EXPECT_FALSE(platform::IsWindowVisible(combo->USListBox1().hWnd()));

  // With ShowEmptyList the same call opens an empty list of one row.
  combo->ShowEmptyList(true);
  combo->ShowList();
  EXPECT_TRUE(combo->IsListVisible());
  const RECT rc = WindowRect(combo->USListBox1().hWnd());
  EXPECT_EQ(rc.bottom - rc.top, 26 + 2);
}

TEST_F(ComboTest, BeginDisplayListMayFillTheList) {
  combo->BeginDisplayList.connect([this] {
    if (combo->ListCount() == 0) Fill({u"Belém", u"Manaus"});
  });
  combo->ShowList();
  EXPECT_TRUE(combo->IsListVisible());
  EXPECT_EQ(combo->ListCount(), 2);
}

TEST_F(ComboTest, OpenListIsAnOwnedToolWindowBelowTheControl) {
  Fill({u"Aracaju", u"Belém", u"Curitiba"});
  combo->NumberItemsToShow(7);  // more than the items: the list takes three rows
  combo->ShowList();
  ASSERT_TRUE(combo->IsListVisible());
  const platform::HWND list = combo->USListBox1().hWnd();
  EXPECT_TRUE(platform::IsWindowVisible(list));
  EXPECT_TRUE(platform::GetWindowLong(list, platform::GWL_EXSTYLE) & platform::WS_EX_TOOLWINDOW);
  EXPECT_EQ(platform::GetAncestor(list, platform::GA_PARENT), platform::GetDesktopWindow());
  EXPECT_EQ(platform::GetWindowLong(list, platform::GWL_HWNDPARENT), static_cast<platform::LONG>(form->hWnd()));
  const RECT control = WindowRect(combo->hWnd());
  const RECT rc = WindowRect(list);
  EXPECT_EQ(rc.top, control.bottom);
  EXPECT_EQ(rc.left, control.left);
  EXPECT_EQ(rc.right - rc.left, control.right - control.left);
  EXPECT_EQ(rc.bottom - rc.top, 3 * 26 + 2);
  EXPECT_EQ(combo->PaintedState(), USComboBox::kStateOpen);

  // Back as a hidden child when closed; the style is restored.
  combo->HideList();
  EXPECT_EQ(platform::GetParent(list), combo->hWnd());
  EXPECT_FALSE(platform::GetWindowLong(list, platform::GWL_EXSTYLE) & platform::WS_EX_TOOLWINDOW);
  EXPECT_FALSE(platform::IsWindowVisible(list));
  EXPECT_EQ(Take(), (Lines{"BeginDisplayList", "EndDisplayList"}));
}

TEST_F(ComboTest, RowsAreCappedByNumberItemsToShow) {
  for (int i = 0; i < 20; ++i) combo->AddItem(host::Variant(u"Item " + host::CStr(host::Variant(i))), i);
  combo->NumberItemsToShow(5);
  combo->ListItemHeight(20);
  combo->ShowList();
  const RECT rc = WindowRect(combo->USListBox1().hWnd());
  EXPECT_EQ(rc.bottom - rc.top, 5 * 20 + 2);
}

TEST_F(ComboTest, ComboAtTheBottomOfTheWorkAreaOpensUpward) {
  Fill({u"Aracaju", u"Belém", u"Curitiba", u"Dourados"});
  RECT work{};
  platform::SystemParametersInfo(platform::SPI_GETWORKAREA, 0, &work, 0);
  // Put the form so that the combo's bottom is 30 pixels above the work area's.
  const RECT before = WindowRect(combo->hWnd());
  const RECT formRect = WindowRect(form->hWnd());
  const int dy = (work.bottom - 30) - before.bottom;
  form->Move(static_cast<float>(formRect.left * 15), host::Variant(static_cast<float>((formRect.top + dy) * 15)));
  platform::PumpMessages();
  const RECT control = WindowRect(combo->hWnd());
  ASSERT_EQ(control.bottom, work.bottom - 30);
  combo->ShowList();
  const RECT rc = WindowRect(combo->USListBox1().hWnd());
  EXPECT_EQ(rc.bottom, control.top);
  EXPECT_EQ(rc.bottom - rc.top, 4 * 26 + 2);
}

TEST_F(ComboTest, DropdownListTextFollowsListIndexAndCannotBeTyped) {
  Fill({u"Aracaju", u"Belém", u"Curitiba"});
  combo->Style(Dropdown_List);
  EXPECT_EQ(combo->Text(), u"");
  combo->ListIndex(1);
  EXPECT_EQ(combo->Text(), u"Belém");
  Focus();
  Type(u"xyz");
  EXPECT_EQ(combo->Text(), u"Belém");
  EXPECT_EQ(combo->ListIndex(), 1);
  Press(platform::VK_DOWN);
  EXPECT_EQ(combo->Text(), u"Curitiba");
  // Setting the text selects the item that has it; a text no item has changes nothing.
  combo->Text(u"aracaju");
  EXPECT_EQ(combo->ListIndex(), 0);
  EXPECT_EQ(combo->Text(), u"Aracaju");
  combo->Text(u"Recife");
  EXPECT_EQ(combo->ListIndex(), 0);
  combo->ListIndex(-1);
  EXPECT_EQ(combo->Text(), u"");
}

TEST_F(ComboTest, DropdownListInitialPicksTheNextItemWithIt) {
  Fill({u"Belém", u"Bauru", u"Curitiba", u"Blumenau"});
  combo->Style(Dropdown_List);
  Focus();
  Type(u"b");
  EXPECT_EQ(combo->ListIndex(), 0);
  Type(u"B");
  EXPECT_EQ(combo->ListIndex(), 1);
  Type(u"b");
  EXPECT_EQ(combo->ListIndex(), 3);
  Type(u"b");  // round to the start
  EXPECT_EQ(combo->ListIndex(), 0);
  EXPECT_EQ(combo->Text(), u"Belém");
}

TEST_F(ComboTest, AutoCompleteSelectsTheRestOfTheItem) {
  Fill({u"Salvador", u"Santos", u"São Paulo"});
  Focus();
  Take();
  Type(u"sa");
  EXPECT_EQ(combo->Text(), u"salvador");
  EXPECT_EQ(combo->SelStart(), 2);
  EXPECT_EQ(combo->SelLength(), 6);
  EXPECT_EQ(combo->ListIndex(), 0);
  Type(u"n");  // types over the selected rest
  EXPECT_EQ(combo->Text(), u"santos");
  EXPECT_EQ(combo->SelStart(), 3);
  EXPECT_EQ(combo->SelLength(), 3);
  EXPECT_EQ(combo->ListIndex(), 1);
  // Deleting is never completed again: Backspace takes the selected rest away and stops there.
  Press(platform::VK_BACK);
  EXPECT_EQ(combo->Text(), u"san");
  EXPECT_EQ(combo->ListIndex(), 1);
  // A text no item begins with leaves the list where it was.
  Type(u"x");
  EXPECT_EQ(combo->Text(), u"sanx");
  EXPECT_EQ(combo->ListIndex(), 1);
  // One Change per key; the completion is part of the key's change.
  EXPECT_EQ(Take(), (Lines{"ListIndexChange", "Change", "Change", "ListIndexChange", "Change", "Change", "Change"}));
}

TEST_F(ComboTest, AutoCompleteOffAndAutoOpenOnChange) {
  Fill({u"Salvador", u"Santos"});
  combo->AutoComplete(false);
  combo->AutoOpenOnChange(true);
  Focus();
  Type(u"sa");
  EXPECT_EQ(combo->Text(), u"sa");
  EXPECT_EQ(combo->ListIndex(), -1);
  EXPECT_TRUE(combo->IsListVisible());
}

TEST_F(ComboTest, ClickOnARowRaisesItemClickedAndCloses) {
  Fill({u"Aracaju", u"Belém", u"Curitiba"});
  Focus();
  // Open with the arrow button.
  const RECT button = combo->ButtonRect();
  ClickAt(combo->hWnd(), (button.left + button.right) / 2, (button.top + button.bottom) / 2);
  ASSERT_TRUE(combo->IsListVisible());
  // The third row: rows are 26 pixels high below a one-pixel border.
  const platform::HWND pic = combo->USListBox1().PicLSThWnd();
  ASSERT_NE(pic, platform::HWND{0});
  int deactivations = 0;
  form->Deactivate.connect([&] { ++deactivations; });
  ClickAt(pic, 20, 2 * 26 + 10);
  // The pop-up took neither the focus nor the activation from the form.
  EXPECT_EQ(deactivations, 0);
  EXPECT_EQ(platform::GetActiveWindow(), form->hWnd());
  platform::PumpMessages();
  EXPECT_FALSE(combo->IsListVisible());
  EXPECT_EQ(combo->ListIndex(), 2);
  EXPECT_EQ(combo->Text(), u"Curitiba");
  EXPECT_EQ(Take(), (Lines{"BeginDisplayList", "Change", "ListIndexChange", "ItemClicked", "EndDisplayList"}));
  // The keyboard is back in the text box.
  EXPECT_EQ(platform::GetFocus(), combo->txtCombo().hWnd());
}

TEST_F(ComboTest, EscClosesWithoutChangeAndEnterKeepsTheChoice) {
  Fill({u"Aracaju", u"Belém", u"Curitiba"});
  combo->ListIndex(0);
  Focus();
  Press(platform::VK_F4);
  ASSERT_TRUE(combo->IsListVisible());
  Press(platform::VK_DOWN);
  Press(platform::VK_DOWN);
  EXPECT_EQ(combo->Text(), u"Curitiba");
  Press(platform::VK_ESCAPE);
  EXPECT_FALSE(combo->IsListVisible());
  EXPECT_EQ(combo->ListIndex(), 0);
  EXPECT_EQ(combo->Text(), u"Aracaju");

  PressWithAlt(platform::VK_DOWN);
  ASSERT_TRUE(combo->IsListVisible());
  Press(platform::VK_DOWN);
  Press(platform::VK_RETURN);
  EXPECT_FALSE(combo->IsListVisible());
  EXPECT_EQ(combo->ListIndex(), 1);
  EXPECT_EQ(combo->Text(), u"Belém");
}

TEST_F(ComboTest, KeysMoveListIndexWhileClosed) {
  for (int i = 0; i < 12; ++i) combo->AddItem(host::Variant(u"Item " + host::CStr(host::Variant(i))), i);
  combo->NumberItemsToShow(5);
  Focus();
  Press(platform::VK_UP);  // from no item, either way starts at the first
  EXPECT_EQ(combo->ListIndex(), 0);
  Press(platform::VK_NEXT);
  EXPECT_EQ(combo->ListIndex(), 5);
  Press(platform::VK_NEXT);
  Press(platform::VK_NEXT);
  EXPECT_EQ(combo->ListIndex(), 11);  // held at the last
  Press(platform::VK_PRIOR);
  EXPECT_EQ(combo->ListIndex(), 6);
  Press(platform::VK_DOWN);
  EXPECT_EQ(combo->ListIndex(), 7);
  EXPECT_EQ(combo->Text(), u"Item 7");
  EXPECT_FALSE(combo->IsListVisible());
  // F4 toggles; Shift+F4 is not the key.
  Press(platform::VK_F4);
  EXPECT_TRUE(combo->IsListVisible());
  Press(platform::VK_F4);
  EXPECT_FALSE(combo->IsListVisible());
}

TEST_F(ComboTest, FocusLeavingClosesThroughTRelease) {
  Fill({u"Aracaju", u"Belém"});
  Focus();
  combo->ShowList();
  Take();
  other->SetFocus();
  platform::PumpMessages();
  // Within the grace after opening nothing happens.
  platform::RunFor(150);
  EXPECT_TRUE(combo->IsListVisible());
  platform::RunFor(250);
  EXPECT_FALSE(combo->IsListVisible());
  EXPECT_EQ(Take(), (Lines{"EndDisplayList"}));
  EXPECT_EQ(platform::ActiveTimerCount(), 1) << "only the other box's caret timer is left";
}

TEST_F(ComboTest, HidingOrDisablingTheControlClosesItsList) {
  Fill({u"Aracaju", u"Belém"});
  combo->ShowList();
  combo->Visible(false);
  EXPECT_FALSE(combo->IsListVisible());
  combo->Visible(true);
  combo->ShowList();
  combo->Enabled(false);
  EXPECT_FALSE(combo->IsListVisible());
  combo->ShowList();  // a disabled combo does not open
  EXPECT_FALSE(combo->IsListVisible());
}

TEST_F(ComboTest, TabClosesTheListAndMovesOn) {
  Fill({u"Aracaju", u"Belém"});
  Focus();
  combo->ShowList();
  Take();
  Press(platform::VK_TAB);
  EXPECT_FALSE(combo->IsListVisible());
  EXPECT_EQ(platform::GetFocus(), other->hWnd());
  EXPECT_EQ(Take(), (Lines{"EndDisplayList"}));
}

TEST_F(ComboTest, ClickElsewhereClosesWhileFocusStays) {
  Fill({u"Aracaju", u"Belém"});
  Focus();
  combo->ShowList();
  platform::RunFor(300);
  // A press on the form's empty area takes no focus.
  platform::POINT pt{300, 150};
  platform::ClientToScreen(form->hWnd(), &pt);
  platform::InjectMouseMove(pt.x, pt.y);
  platform::InjectMouseButton(platform::MouseButton::Left, true);
  platform::RunFor(150);
  platform::InjectMouseButton(platform::MouseButton::Left, false);
  platform::PumpMessages();
  EXPECT_FALSE(combo->IsListVisible());
}

TEST_F(ComboTest, FillSelectsTheTaggedItemWithoutChange) {
  combo->BeginFill(30);
  Fill({u"Aracaju", u"Belém", u"Curitiba", u"Dourados"});  // data 10, 20, 30, 40
  EXPECT_TRUE(combo->LockChange());
  combo->EndFill(-1);
  EXPECT_FALSE(combo->LockChange());
  EXPECT_EQ(combo->ListIndex(), 2);
  EXPECT_EQ(combo->Text(), u"Curitiba");
  EXPECT_EQ(Take(), (Lines{"ListIndexChange"}));
  // The custom width holds the widest text.
  EXPECT_TRUE(combo->ListItemWidthCustom());
  EXPECT_GT(combo->ListItemWidth(), 20.0f);
  const float width = combo->ListItemWidth();
  combo->SetCustomItemWidth(25);
  EXPECT_FLOAT_EQ(combo->ListItemWidth(), width + 25);

  // A tag no item has: the fallback index; one out of range: none.
  combo->ClearEx(true);
  combo->BeginFill(99);
  Fill({u"Aracaju", u"Belém"});
  combo->EndFill(1, false);
  EXPECT_EQ(combo->ListIndex(), 1);
  combo->ClearEx(true);
  combo->BeginFill(99);
  Fill({u"Aracaju"});
  combo->EndFill(5, false);
  EXPECT_EQ(combo->ListIndex(), -1);
}

TEST_F(ComboTest, PositionMembers) {
  Fill({u"10", u"Belém", u"2,5"});  // data 10, 20, 30
  combo->SetIndexPositionByStr(u"belém", -1, 1);
  EXPECT_EQ(combo->ListIndex(), 1);
  combo->SetIndexPositionByStr(u"belém", 0, 0);  // binary compare: no match, the fallback
  EXPECT_EQ(combo->ListIndex(), 0);
  combo->SetIndexPositionByNum(30);
  EXPECT_EQ(combo->ListIndex(), 2);
  combo->SetIndexPositionByNum(31, -1);
  EXPECT_EQ(combo->ListIndex(), -1);
  combo->SetIndexPositionByNumEx(2.5, -1, false, 0, true, false);  // by the text's number
  EXPECT_EQ(combo->ListIndex(), 2);
  combo->SetIndexPositionByNumEx(10, -1, false, 0, true, false);
  EXPECT_EQ(combo->ListIndex(), 0);
  combo->SetIndexPositionByNumEx(20, -1, false);
  EXPECT_EQ(combo->ListIndex(), 1);
}

TEST_F(ComboTest, LockChangeAndClearEx) {
  Fill({u"Aracaju", u"Belém"});
  combo->ListIndex(1);
  Take();
  combo->ClearEx(true);
  EXPECT_EQ(combo->ListCount(), 0);
  EXPECT_EQ(combo->Text(), u"");
  EXPECT_TRUE(Take().empty());
  EXPECT_FALSE(combo->LockChange());
  combo->Text(u"Aracaju");
  Take();
  combo->Clear();
  EXPECT_EQ(Take(), (Lines{"Change"}));
  // Typing under the lock: no Change and no completion.
  Fill({u"Salvador"});
  combo->LockChange(true);
  Focus();
  Type(u"sa");
  EXPECT_EQ(combo->Text(), u"sa");
  EXPECT_TRUE(Take().empty());
}

TEST_F(ComboTest, LateBindingReachesEveryKindOfMember) {
  std::vector<host::Variant> add{host::Variant(host::String(u"Natal")), host::Variant(int32_t{84})};
  combo->Invoke(u"AddItem", host::CallKind::Method, add);
  std::vector<host::Variant> index{host::Variant(int32_t{0})};
  EXPECT_EQ(combo->Invoke(u"itemdata", host::CallKind::Get, index).ToLong(), 84);
  std::vector<host::Variant> let{host::Variant(int32_t{0}), host::Variant(host::String(u"Natal/RN"))};
  combo->Invoke(u"Item", host::CallKind::Let, let);
  EXPECT_EQ(combo->Item(0).ToString(), u"Natal/RN");
  std::vector<host::Variant> value{host::Variant(int32_t{0})};
  combo->Invoke(u"ListIndex", host::CallKind::Let, value);
  // The default member is Text.
  EXPECT_EQ(combo->Invoke(u"", host::CallKind::Get, {}).ToString(), u"Natal/RN");
  combo->Invoke(u"ShowList", host::CallKind::Method, {});
  EXPECT_TRUE(combo->IsListVisible());
  std::vector<host::Variant> none;
  EXPECT_EQ(combo->Invoke(u"ListCount", host::CallKind::Get, none).ToLong(), 1);
  // Extender members still answer (the grid moves and focuses a bound editor so).
  EXPECT_TRUE(combo->Invoke(u"Visible", host::CallKind::Get, none).ToBoolean());
  EXPECT_THROW(combo->Invoke(u"ListCount", host::CallKind::Let, value), host::RuntimeError);
}

TEST_F(ComboTest, ThemeCopiesThePaletteIntoTheComboAndItsList) {
  combo->Theme(frame::Office_Theme_Blue);
  EXPECT_EQ(combo->BorderColor(), 0xE2A981u);
  EXPECT_EQ(combo->BorderColorOver(), 0xBBF2FFu);
  EXPECT_EQ(combo->BackColorOnShowList(), 0xFFFFFFu);  // the light gradient shifted by 140 is held at white
  const USListBox& list = combo->USListBox1();
  EXPECT_EQ(list.ItemSelectedColor1(), 0xFFE8CCu);
  EXPECT_EQ(list.ItemSelectedBorderColor(), 0xFFD199u);
  EXPECT_EQ(list.BackColorEvenRows(), 0xF7F7F7u);
  EXPECT_EQ(list.ForeColor(), 0x000000u);
  EXPECT_EQ(list.ForeColorSelected(), 0x000000u);
  // Themes past the first two lighten the border: red's 0x5050C7 by 120, held at 255.
  combo->Theme(frame::Windows_Theme_Red);
  EXPECT_EQ(combo->BorderColor(), 0xC8C8FFu);
  EXPECT_EQ(combo->BackColorOnShowList(), 0xDCDCFFu);
  EXPECT_EQ(platform::CaptureWindow(combo->hWnd()).color(0, 0), 0xC8C8FFu);
  // Colours set after a theme stay until the next theme.
  combo->ListForeColor(0x123456);
  EXPECT_EQ(list.ForeColor(), 0x123456u);
}

TEST_F(ComboTest, BagKeepsDefaultsAndChanges) {
  // A combo read from an empty bag writes back only its font.
  host::PropertyBag empty;
  USComboBox fresh;
  fresh.LoadFrom(empty, true);
  host::PropertyBag written;
  fresh.SaveTo(written);
  EXPECT_EQ(written.Keys(), (std::vector<host::String>{u"Font"}));
  EXPECT_FALSE(fresh.Redraw());
  EXPECT_EQ(fresh.ListForeColor(), 0xFFFFFFu);
  EXPECT_EQ(fresh.BorderColor(), 0xFFCFA3u);  // the Windows border lightened by 120
  fresh.TerminateControl();

  combo->Style(Dropdown_List);
  combo->NumberItemsToShow(12);
  combo->ListItemWidth(140.5f);
  combo->Theme(frame::Windows_Theme_Green);
  combo->ShowCorner(true);
  host::PropertyBag bag;
  combo->SaveTo(bag);
  USComboBox copy;
  copy.LoadFrom(bag, true);
  EXPECT_EQ(copy.Style(), Dropdown_List);
  EXPECT_EQ(copy.NumberItemsToShow(), 12);
  EXPECT_FLOAT_EQ(copy.ListItemWidth(), 140.5f);
  EXPECT_EQ(copy.Theme(), frame::Windows_Theme_Green);
  EXPECT_EQ(copy.BorderColor(), combo->BorderColor());
  EXPECT_EQ(copy.BackColorOnShowList(), combo->BackColorOnShowList());
  EXPECT_TRUE(copy.ShowCorner());
  EXPECT_TRUE(copy.Redraw());
  copy.TerminateControl();
}

}  // namespace
}  // namespace mx::entry::testing
