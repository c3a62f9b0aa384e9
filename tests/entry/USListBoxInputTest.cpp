// USListBox driven as a person drives it: keys through a long list, clicks and the pointer over
// PicLST, the wheel, multiple selection, and the in-place editor.
#include <gtest/gtest.h>

#include "controls/USScrollBar.h"
#include "entry/USListBoxTestSupport.h"
#include "frame/APITooltip.h"
#include "host/StdPicture.h"
#include "host/TextBox.h"
#include "image/PictureBinding.h"
#include "platform/Cursor.h"
#include "platform/Messages.h"

using mx::entry::testing::ListBoxTest;
using mx::host::Variant;
using namespace mx::platform;

namespace {

TEST_F(ListBoxTest, KeysWalkALongList) {
  Fill(100);
  ASSERT_EQ(list->VisibleRows(), 5);
  Focus();
  Press(VK_DOWN);
  EXPECT_EQ(list->ListIndex(), 0);
  EXPECT_EQ(Count("ListIndexChange"), 1);
  Press(VK_DOWN);
  Press(VK_DOWN);
  EXPECT_EQ(list->ListIndex(), 2);
  EXPECT_EQ(Count("TopIndexChange"), 0);
  // PageDown moves by the visible rows and scrolls the current item to the bottom row.
  Press(VK_NEXT);
  EXPECT_EQ(list->ListIndex(), 7);
  EXPECT_EQ(list->TopIndex(), 3);
  EXPECT_EQ(Count("TopIndexChange"), 1);
  EXPECT_EQ(Count("Scroll"), 1);
  // Up within the window moves no top.
  Press(VK_UP);
  EXPECT_EQ(list->ListIndex(), 6);
  EXPECT_EQ(Count("TopIndexChange"), 1);
  Press(VK_END);
  EXPECT_EQ(list->ListIndex(), 99);
  EXPECT_EQ(list->TopIndex(), 95);
  EXPECT_EQ(list->Bar()->Value(), 95);
  EXPECT_EQ(list->Bar()->Max(), 95);
  // PageDown at the end stays, and says nothing.
  events.clear();
  Press(VK_NEXT);
  Press(VK_DOWN);
  EXPECT_EQ(list->ListIndex(), 99);
  EXPECT_EQ(Count("ListIndexChange"), 0);
  EXPECT_EQ(Count("TopIndexChange"), 0);
  Press(VK_HOME);
  EXPECT_EQ(list->ListIndex(), 0);
  EXPECT_EQ(list->TopIndex(), 0);
  Press(VK_PRIOR);
  EXPECT_EQ(list->ListIndex(), 0);
  // Single mode: the current item is the one selected item.
  EXPECT_TRUE(list->ItemSelected(0));
  EXPECT_FALSE(list->ItemSelected(99));
  EXPECT_EQ(Count("KeyDown"), 4);
}

TEST_F(ListBoxTest, KeysPassOverDisabledItemsButCodeMayStopOnOne) {
  Fill(6);
  list->ItemEnabled(1, false);
  list->ItemEnabled(2, false);
  list->ItemEnabled(5, false);
  Focus();
  Press(VK_DOWN);
  Press(VK_DOWN);
  EXPECT_EQ(list->ListIndex(), 3);
  Press(VK_END);  // the last item is disabled: the nearest enabled one before it
  EXPECT_EQ(list->ListIndex(), 4);
  Press(VK_UP);
  Press(VK_UP);
  EXPECT_EQ(list->ListIndex(), 0);
  // Code may make a disabled item current; it is not selected for that.
  list->ListIndex(2);
  EXPECT_EQ(list->ListIndex(), 2);
  EXPECT_FALSE(list->ItemSelected(2));
  EXPECT_FALSE(list->ItemSelected(0));
}

TEST_F(ListBoxTest, ClicksPickRowsButNotDisabledOnes) {
  Fill(20);
  list->ItemEnabled(2, false);
  ClickAt(50, 26 + 5);  // second row
  EXPECT_EQ(list->ListIndex(), 1);
  EXPECT_EQ(Count("MouseDown"), 1);
  EXPECT_EQ(Count("Click"), 1);
  EXPECT_EQ(GetFocus(), list->hWnd());
  ClickAt(50, 2 * 26 + 5);  // the disabled third row: nothing changes
  EXPECT_EQ(list->ListIndex(), 1);
  EXPECT_EQ(Count("ListIndexChange"), 1);
  // The row is the top index plus y / ItemHeight.
  list->TopIndex(10);
  ClickAt(50, 4 * 26 + 25);
  EXPECT_EQ(list->ListIndex(), 14);
  EXPECT_TRUE(list->ItemSelected(14));
  EXPECT_FALSE(list->ItemSelected(1));
}

TEST_F(ListBoxTest, MultipleSelectionWithSpaceAndClicks) {
  Fill(10);
  list->SelectMode(mx::entry::Multiple);
  ClickAt(20, 5);
  ClickAt(20, 2 * 26 + 5);
  EXPECT_TRUE(list->ItemSelected(0));
  EXPECT_TRUE(list->ItemSelected(2));
  EXPECT_EQ(list->ListIndex(), 2);
  ClickAt(20, 5);  // a second click lets the first go again
  EXPECT_FALSE(list->ItemSelected(0));
  EXPECT_EQ(list->ListIndex(), 0);
  Focus();
  Press(VK_DOWN);  // moving does not select in Multiple mode
  EXPECT_EQ(list->ListIndex(), 1);
  EXPECT_FALSE(list->ItemSelected(1));
  Press(VK_SPACE);
  EXPECT_TRUE(list->ItemSelected(1));
  Press(VK_SPACE);
  EXPECT_FALSE(list->ItemSelected(1));
  list->ItemEnabled(3, false);
  list->ListIndex(3);
  Press(VK_SPACE);  // a disabled item is never selected by the keys
  EXPECT_FALSE(list->ItemSelected(3));
  int selected = 0;
  for (int i = 0; i < list->ListCount(); ++i) selected += list->ItemSelected(i);
  EXPECT_EQ(selected, 1);
}

TEST_F(ListBoxTest, HoverSelectionFollowsThePointerUntilDisabled) {
  Fill(10);
  list->HoverSelection(true);
  MoveTo(30, 3 * 26 + 10);
  EXPECT_EQ(list->ListIndex(), 3);
  list->DisableMouseMove(true);
  MoveTo(30, 1 * 26 + 10);
  EXPECT_EQ(list->ListIndex(), 3);
  list->DisableMouseMove(false);
  MoveTo(30, 1 * 26 + 12);
  EXPECT_EQ(list->ListIndex(), 1);
  EXPECT_GE(Count("MouseMove"), 3);
}

TEST_F(ListBoxTest, WheelScrollsByRows) {
  Fill(30);
  const POINT pt = OnPic(40, 40);
  InjectMouseMove(pt.x, pt.y);
  InjectWheel(-WHEEL_DELTA);
  PumpMessages();
  EXPECT_EQ(list->TopIndex(), 1);
  InjectWheel(-2 * WHEEL_DELTA);
  PumpMessages();
  EXPECT_EQ(list->TopIndex(), 3);
  InjectWheel(10 * WHEEL_DELTA);
  PumpMessages();
  EXPECT_EQ(list->TopIndex(), 0);
  // The current item does not move with the wheel.
  EXPECT_EQ(list->ListIndex(), -1);
}

TEST_F(ListBoxTest, BarFollowsTheTopAndMovesIt) {
  Fill(4);
  EXPECT_FALSE(IsWindowVisible(list->Bar()->hWnd()));
  Fill(4);
  ASSERT_TRUE(IsWindowVisible(list->Bar()->hWnd()));
  RECT pic{};
  GetClientRect(list->PicLSThWnd(), &pic);
  EXPECT_EQ(pic.right, kWidth - 13);
  // The bar's range follows a fill once the queue runs, before any input can reach it.
  PumpMessages();
  EXPECT_EQ(list->Bar()->Max(), 3);
  list->Bar()->Value(2);
  EXPECT_EQ(list->TopIndex(), 2);
  EXPECT_EQ(Count("TopIndexChange"), 1);
  list->Clear();
  EXPECT_FALSE(IsWindowVisible(list->Bar()->hWnd()));
}

TEST_F(ListBoxTest, InPlaceEditorGeometryAndEnd) {
  Fill(10);
  list->TopIndex(2);
  list->ListIndex(4);
  list->StartEdit();
  mx::host::TextBox* edit = list->TextEdit();
  ASSERT_NE(edit, nullptr);
  ASSERT_TRUE(list->IsEditing());
  RECT box{};
  GetWindowRect(edit->hWnd(), &box);
  POINT origin{0, 0};
  ClientToScreen(list->PicLSThWnd(), &origin);
  const RECT row = list->RowRect(2);
  EXPECT_EQ(box.left - origin.x, row.left + 1);
  EXPECT_EQ(box.top - origin.y, row.top + 3);
  EXPECT_EQ(box.right - box.left, row.right - row.left - 2);
  EXPECT_EQ(box.bottom - box.top, 26 - 5);
  EXPECT_EQ(edit->Text(), u"Item 4");
  EXPECT_EQ(edit->SelLength(), 6);
  EXPECT_EQ(GetFocus(), edit->hWnd());

  InjectText(u"Novo");
  PumpMessages();
  list->EndEdit(false);
  EXPECT_FALSE(IsWindowVisible(edit->hWnd()));
  EXPECT_EQ(list->Item(4).ToString(), u"Item 4");

  list->StartEdit();
  InjectText(u"Renamed");
  PumpMessages();
  Press(VK_RETURN);  // Enter ends with the change
  EXPECT_FALSE(list->IsEditing());
  EXPECT_EQ(list->Item(4).ToString(), u"Renamed");
  EXPECT_EQ(GetFocus(), list->hWnd());
}

}  // namespace

namespace {

TEST_F(ListBoxTest, EachItemShowsItsOwnTooltip) {
  list->AddItem(Variant(u"a"), 0, -1, -1, -1, true, u"first tip");
  list->AddItem(Variant(u"b"));
  list->AddItem(Variant(u"c"), 0, -1, -1, -1, true, u"third tip");
  MoveTo(30, 10);
  ASSERT_NE(list->ToolTip(), nullptr);
  EXPECT_EQ(list->ToolTip()->TipText(), u"first tip");
  EXPECT_NE(list->ToolTip()->hWnd(), 0u);
  MoveTo(30, 26 + 10);  // no tip: the tip window goes
  EXPECT_EQ(list->ToolTip()->hWnd(), 0u);
  MoveTo(30, 2 * 26 + 10);
  EXPECT_EQ(list->ToolTip()->TipText(), u"third tip");
  // A changed tip reaches the window at the next move onto the item.
  list->ItemToolTip(2, u"changed");
  MoveTo(31, 2 * 26 + 11);
  EXPECT_EQ(list->ToolTip()->TipText(), u"changed");
}

TEST_F(ListBoxTest, DoubleClickRaisesDblClickInPlaceOfASecondClick) {
  Fill(3);
  const POINT pt = OnPic(40, 10);
  InjectMouseMove(pt.x, pt.y);
  InjectClick();
  InjectClick();
  PumpMessages();
  EXPECT_EQ(Count("DblClick"), 1);
  EXPECT_EQ(Count("Click"), 1);
  EXPECT_EQ(Count("MouseUp"), 2);
  EXPECT_EQ(list->ListIndex(), 0);
}

TEST_F(ListBoxTest, ItemHeightAutoFollowsTheFont) {
  Fill(3);
  list->ItemHeightAuto(true);
  const int32_t small = list->ItemHeight();
  EXPECT_LT(small, 26);
  auto font = list->Font()->Clone();
  font->Size(font->SizePoints() * 2);
  list->Font(font);
  EXPECT_GT(list->ItemHeight(), small + 5);
  EXPECT_EQ(list->VisibleRows(), kHeight / list->ItemHeight());
}

}  // namespace

namespace {

TEST_F(ListBoxTest, AClickOrAScrollEndsAnOpenEditKeepingTheText) {
  Fill(20);
  list->ListIndex(1);
  list->StartEdit();
  InjectText(u"Typed");
  PumpMessages();
  ClickAt(40, 3 * 26 + 5);
  EXPECT_FALSE(list->IsEditing());
  EXPECT_EQ(list->Item(1).ToString(), u"Typed");
  EXPECT_EQ(list->ListIndex(), 3);
  list->StartEdit();
  InjectText(u"Other");
  PumpMessages();
  list->IncreaseBarValue();
  EXPECT_FALSE(list->IsEditing());
  EXPECT_EQ(list->Item(3).ToString(), u"Other");
}

}  // namespace

namespace {

TEST_F(ListBoxTest, AnItemWithAPointerOfItsOwnShowsIt) {
  mx::image::InstallPictureDecoder();
  auto pointer = mx::host::LoadPicture(std::string(MX_TESTDATA_DIR) + "/fuzzseeds/ico/hotspot.cur");
  ASSERT_NE(pointer->Handle(), 0u);
  list->AddItem(Variant(u"pointer"), 0, -1, -1, -1, true, u"", pointer);
  list->AddItem(Variant(u"plain"));
  MoveTo(30, 10);
  const HCURSOR over = GetCursor();
  EXPECT_NE(over, 0u);
  EXPECT_NE(over, LoadCursor(0, IDC_ARROW));
  MoveTo(30, 26 + 10);
  EXPECT_NE(GetCursor(), over);
  // The list's own pointer rules over the other items.
  list->MousePointer(mx::host::vbCrosshair);
  MoveTo(31, 26 + 11);
  EXPECT_EQ(GetCursor(), LoadCursor(0, IDC_CROSS));
  MoveTo(31, 11);
  EXPECT_EQ(GetCursor(), over);
  mx::image::UninstallPictureDecoder();
}

}  // namespace
