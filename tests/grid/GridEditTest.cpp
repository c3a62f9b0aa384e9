// The cell editor (the pop-up text box and bound controls), insert and delete, and their events.
#include <string>

#include "GridInputTestSupport.h"
#include "host/Err.h"
#include "platform/MessageQueue.h"
#include "platform/ScrollBar.h"

namespace mx::grid::testing {
namespace {

using platform::VK_DELETE;
using platform::VK_ESCAPE;
using platform::VK_F2;
using platform::VK_INSERT;
using platform::VK_LEFT;
using platform::VK_RETURN;
using platform::VK_RIGHT;

class GridEditTest : public GridInputTest {
 protected:
  std::shared_ptr<USFlexGrid> MakeEditable(int rows = 6) {
    auto g = MakeFilled(rows);
    g->AllowEdit(true);
    ClickCell(*g, 1, 0);
    return g;
  }
  static host::String EditorText(USFlexGrid& g) { return g.EditControl() ? g.EditControl()->Text() : u"<none>"; }
};

TEST_F(GridEditTest, AnyPrintableKeyOpensTheEditorWithThatCharacterAndEnterCloses) {
  auto g = MakeEditable();
  ASSERT_EQ(g->EditTrigger(), OnF2OrDblClick);
  GridEventLog log(*g);
  Type(u"x");
  ASSERT_TRUE(g->EditPending());
  EXPECT_EQ(EditorText(*g), u"x");
  EXPECT_EQ(platform::GetFocus(), g->EditControl()->hWnd());
  Type(u"yz");
  Key(VK_RETURN);
  EXPECT_FALSE(g->EditPending());
  EXPECT_EQ(g->CellText(1, 0), u"xyz");
  EXPECT_TRUE(g->CellChanged(1, 0));
  EXPECT_TRUE(g->CellsChanged());
  EXPECT_EQ(log.Events(), (std::vector<std::string>{"BeforeEdit(1,0)", "AfterEdit(1,0)"}));
  EXPECT_EQ(log.LastValue(), u"xyz");
  EXPECT_EQ(platform::GetFocus(), g->hWnd());
  EXPECT_FALSE(platform::IsWindowVisible(g->EditControl()->hWnd()));
  // EditMove stays DontMove by default.
  EXPECT_EQ(g->Row(), 1);
}

TEST_F(GridEditTest, AKeyboardMoveInAGridWithoutCurrentColumnTakesTheFirstOpenOne) {
  auto g = MakeFilled(4);
  g->AllowEdit(true);
  g->ColVisible(0, false);
  ASSERT_EQ(g->Col(), -1);
  Key(platform::VK_DOWN);
  EXPECT_EQ(g->Row(), 0);
  EXPECT_EQ(g->Col(), 1);
  Type(u"5");
  EXPECT_TRUE(g->EditPending());
  EXPECT_EQ(g->EditCol(), 1);
}

TEST_F(GridEditTest, EscapeCancelsWithoutWritingAndEnterWithTheCellText) {
  auto g = MakeEditable();
  GridEventLog log(*g);
  Key(VK_RETURN);  // opens with the cell's text, all of it selected
  ASSERT_TRUE(g->EditPending());
  EXPECT_EQ(EditorText(*g), u"Row 1");
  EXPECT_EQ(g->EditControl()->SelLength(), 5);
  Type(u"changed");
  Key(VK_ESCAPE);
  EXPECT_FALSE(g->EditPending());
  EXPECT_EQ(g->CellText(1, 0), u"Row 1");
  EXPECT_FALSE(g->CellChanged(1, 0));
  EXPECT_EQ(log.Count("AfterEdit"), 0);
  // Escape's character does not reach the grid as a search or a new edit.
  EXPECT_FALSE(g->EditPending());
}

TEST_F(GridEditTest, EnterMovesByEditMove) {
  auto g = MakeEditable();
  g->EditMove(MoveDown);
  Type(u"a");
  Key(VK_RETURN);
  EXPECT_EQ(g->CellText(1, 0), u"a");
  EXPECT_EQ(g->Row(), 2);
  EXPECT_EQ(SelectedRows(*g), std::vector<int>({2}));
  // Right skips the locked column.
  g->EditMove(MoveRight);
  g->ColLocked(1, true);
  g->Col(0);
  Type(u"b");
  Key(VK_RETURN);
  EXPECT_EQ(g->Row(), 2);
  EXPECT_EQ(g->Col(), 2);
  // Escape never moves.
  g->ColLocked(1, false);
  g->Col(0);
  Type(u"c");
  Key(VK_ESCAPE);
  EXPECT_EQ(g->Col(), 0);
}

TEST_F(GridEditTest, AfterEditCancelKeepsTheEditorOpenWithTheTypedText) {
  auto g = MakeEditable();
  bool refuse = true;
  g->AfterEdit.connect([&](int32_t, int32_t, host::String& value, bool& cancel) {
    cancel = refuse;
    if (!refuse) value = value + u"!";  // a handler may adjust the value it accepts
  });
  Type(u"no");
  Key(VK_RETURN);
  EXPECT_TRUE(g->EditPending());
  EXPECT_EQ(EditorText(*g), u"no");
  EXPECT_EQ(g->CellText(1, 0), u"Row 1");
  EXPECT_FALSE(g->UpdateCell());
  // Moving away is refused too while the handler says no.
  Key(platform::VK_DOWN);
  EXPECT_EQ(g->Row(), 1);
  refuse = false;
  Key(VK_RETURN);
  EXPECT_FALSE(g->EditPending());
  EXPECT_EQ(g->CellText(1, 0), u"no!");
}

TEST_F(GridEditTest, LeftAtCaretZeroLeavesTheCellUnlessF2OpenedTheEditor) {
  auto g = MakeEditable();
  g->Col(1);
  Type(u"7");
  ASSERT_TRUE(g->EditPending());
  Key(VK_LEFT);  // caret 1 -> 0: stays in the text
  EXPECT_TRUE(g->EditPending());
  EXPECT_EQ(g->EditControl()->SelStart(), 0);
  Key(VK_LEFT);  // at 0: the edit is written and the cell moves left
  EXPECT_FALSE(g->EditPending());
  EXPECT_EQ(g->CellText(1, 1), u"7");
  EXPECT_EQ(g->Col(), 0);
  // Right at the end of the text mirrors it.
  Type(u"q");
  Key(VK_RIGHT);
  EXPECT_FALSE(g->EditPending());
  EXPECT_EQ(g->Col(), 1);
  // Opened by F2 the arrows stay inside the text.
  Key(VK_F2);
  ASSERT_TRUE(g->EditPending());
  g->EditControl()->SelStart(0);
  Key(VK_LEFT);
  EXPECT_TRUE(g->EditPending());
  Key(VK_F2);  // F2 closes it again
  EXPECT_FALSE(g->EditPending());
  EXPECT_EQ(g->Col(), 1);
}

TEST_F(GridEditTest, EditorSitsInsideItsCell) {
  auto g = MakeEditable();
  g->CellAlignment(3, 1, AlignToRightCenter);
  g->ForceCellEdit(3, 1);
  ASSERT_TRUE(g->EditPending());
  EXPECT_EQ(g->Row(), 3);
  platform::RECT er{};
  platform::GetWindowRect(g->EditControl()->hWnd(), &er);
  platform::POINT origin{0, 0};
  platform::ClientToScreen(g->hWnd(), &origin);
  const platform::RECT col = g->GetColumnRect(1);
  const int line = g->GridLineWidth();
  EXPECT_EQ(er.left - origin.x, col.left + line);
  EXPECT_EQ(er.top - origin.y, RowTopOf(*g, 3) + line);
  EXPECT_EQ(er.right - er.left, g->ColWidthPixels(1) - line - 2);
  EXPECT_EQ(er.bottom - er.top, g->RowHeight(3) - line * 2);
  // A right-aligned numeric cell edits right-aligned, in the edit colours.
  EXPECT_EQ(g->EditControl()->Alignment(), 1);
  EXPECT_EQ(g->EditControl()->BackColor(), g->BackColorEdit());
  EXPECT_EQ(g->EditControl()->Text(), u"9");
}

TEST_F(GridEditTest, MouseTriggersOpenTheEditorOnADoubleClickOrAClick) {
  auto g = MakeEditable();
  // The default trigger holds the double click.
  MoveTo(*g, CellCenter(*g, 3, 0));
  for (int i = 0; i < 2; ++i) {
    Button(true);
    Button(false);
  }
  ASSERT_TRUE(g->EditPending());
  EXPECT_EQ(g->EditRow(), 3);
  EXPECT_EQ(EditorText(*g), u"Row 3");
  Key(VK_ESCAPE);
  platform::RunFor(platform::GetDoubleClickTime() + 1);
  // A single click opens nothing until OnMouseClick is in the trigger.
  ClickCell(*g, 4, 1);
  EXPECT_FALSE(g->EditPending());
  g->EditTrigger(OnMouseClick);
  ClickCell(*g, 4, 1);
  EXPECT_TRUE(g->EditPending());
  EXPECT_EQ(g->EditCol(), 1);
}

TEST_F(GridEditTest, FocusLeavingForAnotherWindowAndScrollingCommitTheEdit) {
  auto g = MakeFilled(40, 260, 200);
  g->AllowEdit(true);
  auto other = Make(300, 10, 100, 100);
  ClickCell(*g, 1, 0);
  Type(u"kept");
  ASSERT_TRUE(g->EditPending());
  platform::SetFocus(other->hWnd());
  platform::PumpMessages();
  EXPECT_FALSE(g->EditPending());
  EXPECT_EQ(g->CellText(1, 0), u"kept");
  EXPECT_EQ(platform::GetFocus(), other->hWnd());  // the close does not pull the focus back
  // A scroll bar message closes the editor before the view moves.
  platform::SetFocus(g->hWnd());
  g->ForceCellEdit(2, 0);
  Type(u"x");
  platform::SendMessageW(g->hWnd(), platform::WM_VSCROLL, platform::SB_LINEDOWN, 0);
  EXPECT_FALSE(g->EditPending());
  EXPECT_EQ(g->CellText(2, 0), u"x");
  EXPECT_EQ(g->GetScrollVerticalPosition(), 1);
}

TEST_F(GridEditTest, ColumnsThatCannotBeEditedOpenNothing) {
  auto g = MakeFilled();
  ClickCell(*g, 1, 0);
  Type(u"R");  // AllowEdit off: the key goes to the search instead
  EXPECT_FALSE(g->EditPending());
  g->AllowEdit(true);
  g->ForceCellEdit(1, 2);  // a boolean column
  EXPECT_FALSE(g->EditPending());
  g->RowLocked(2, true);
  EXPECT_FALSE(g->BeginCellEdit(2, 0));
  g->BeforeEdit.connect([](int32_t, int32_t, bool& cancel) { cancel = true; });
  EXPECT_FALSE(g->BeginCellEdit(1, 0));
}

TEST_F(GridEditTest, InputFiltersDropOrConvertCharacters) {
  auto g = MakeEditable();
  g->ColInputFilter(0, u"0123456789,");
  Type(u"1a2,b");
  EXPECT_EQ(EditorText(*g), u"12,");
  Key(VK_ESCAPE);
  g->ColInputFilter(0, u">");
  Type(u"abç");
  EXPECT_EQ(EditorText(*g), u"ABÇ");
  Key(VK_ESCAPE);
  g->ColInputFilter(0, u"<");
  Type(u"XY");
  EXPECT_EQ(EditorText(*g), u"xy");
  int keys = 0;
  g->EditKeyPress.connect([&](int32_t col, int16_t&) {
    EXPECT_EQ(col, 0);
    ++keys;
  });
  Type(u"Z");
  EXPECT_EQ(keys, 1);
}

TEST_F(GridEditTest, DeleteClearsTheCellEvenWithoutAllowDeleteAndAdjustsTheTotal) {
  auto g = Make(10, 10, 260, 240);
  g->TotalLineShow(true);
  Fill(*g, 4);  // rows added while the totals line shows count in the total
  g->AllowEdit(true);
  platform::SetFocus(g->hWnd());
  ASSERT_DOUBLE_EQ(g->TotalColumns(1), 0 + 3 + 6 + 9);
  ClickCell(*g, 2, 1);
  GridEventLog log(*g);
  Key(VK_DELETE);
  EXPECT_EQ(g->CellText(2, 1), u"");
  EXPECT_DOUBLE_EQ(g->TotalColumns(1), 12);
  EXPECT_EQ(g->Rows(), 4);
  EXPECT_EQ(log.Events(),
            (std::vector<std::string>{"BeforeEdit(2,1)", "BeforeDelete(2)", "AfterEdit(2,1)", "AfterDelete"}));
}

TEST_F(GridEditTest, DeleteRemovesSelectedRowsInAMultiMode) {
  auto g = MakeFilled(6);
  g->AllowDelete(true);
  g->MultiSelect(Multi_Standard);
  ClickCell(*g, 1, 0);
  ClickCellWith(*g, platform::VK_CONTROL, 3, 0);
  GridEventLog log(*g);
  Key(VK_DELETE);
  EXPECT_EQ(g->Rows(), 4);
  EXPECT_EQ(g->CellText(0, 0), u"Row 0");
  EXPECT_EQ(g->CellText(1, 0), u"Row 2");
  EXPECT_EQ(g->CellText(2, 0), u"Row 4");
  EXPECT_EQ(log.Events(),
            (std::vector<std::string>{"BeforeDelete(3)", "AfterDelete", "RowCountChanged", "SelectionChanged"}));
}

TEST_F(GridEditTest, InsertAddsAnEmptyRowMarkedAsNewBelowTheCurrentOne) {
  auto g = MakeFilled(3);
  g->AllowInsert(true);
  ClickCell(*g, 1, 0);
  GridEventLog log(*g);
  Key(VK_INSERT);
  ASSERT_EQ(g->Rows(), 4);
  EXPECT_EQ(g->Row(), 2);
  EXPECT_TRUE(g->RowMarkedAsNew(2));
  EXPECT_FALSE(g->RowMarkedAsNew(1));
  EXPECT_EQ(g->CellText(2, 0), u"");
  EXPECT_EQ(g->CellText(3, 0), u"Row 2");
  EXPECT_EQ(log.Events().front(), "BeforeInsert(1)");
  EXPECT_EQ(log.Events().back(), "AfterInsert(2)");
  // A cancelled insert adds nothing; without AllowInsert the key does nothing.
  g->BeforeInsert.connect([](int32_t, bool& cancel) { cancel = true; });
  Key(VK_INSERT);
  EXPECT_EQ(g->Rows(), 4);
}

TEST_F(GridEditTest, InsertIntoAnEmptyGridMakesTheFirstRow) {
  auto g = Make(10, 10, 200, 120);
  g->AddColumn(u"A");
  g->AllowInsert(true);
  platform::SetFocus(g->hWnd());
  Key(VK_INSERT);
  EXPECT_EQ(g->Rows(), 1);
  EXPECT_EQ(g->Row(), 0);
  EXPECT_TRUE(g->RowMarkedAsNew(0));
}

TEST_F(GridEditTest, RemoveRowKeepsTheOthersInDisplayOrderAndTakesBackTheTotals) {
  auto g = Make(10, 10, 260, 240);
  g->TotalLineShow(true);
  Fill(*g, 5);
  g->RowChecked(4, true);
  g->Sort(1, Sort_Descending);  // display: Row 4, 3, 2, 1, 0
  ASSERT_EQ(g->CellText(0, 0), u"Row 4");
  g->Row(4);
  GridEventLog log(*g);
  g->RemoveRow(1);  // "Row 3"
  EXPECT_EQ(g->Rows(), 4);
  std::vector<host::String> names;
  for (int r = 0; r < g->Rows(); ++r) names.push_back(g->CellText(r, 0));
  EXPECT_EQ(names, (std::vector<host::String>{u"Row 4", u"Row 2", u"Row 1", u"Row 0"}));
  EXPECT_TRUE(g->RowChecked(0));  // flags travel with their rows
  EXPECT_DOUBLE_EQ(g->TotalColumns(1), 0 + 3 + 6 + 12);
  EXPECT_EQ(g->Row(), 3);  // clamped to the new last row
  EXPECT_EQ(log.Events(),
            (std::vector<std::string>{"BeforeDelete(1)", "AfterDelete", "RowCountChanged", "SelectionChanged"}));
  // Out of range: nothing, no event.
  log.Clear();
  g->RemoveRow(9);
  g->RemoveRow(-1);
  EXPECT_TRUE(log.Events().empty());
}

TEST_F(GridEditTest, DeleteCheckedAsksOnceAndRebuildsOnce) {
  auto g = MakeFilled(6);
  g->RowChecked(0, true);
  g->RowChecked(2, true);
  g->RowChecked(5, true);
  GridEventLog log(*g);
  g->DeleteChecked();
  EXPECT_EQ(g->Rows(), 3);
  EXPECT_EQ(g->CellText(0, 0), u"Row 1");
  EXPECT_EQ(g->CellText(2, 0), u"Row 4");
  EXPECT_EQ(log.Count("BeforeDelete"), 1);
  EXPECT_EQ(log.Count("RowCountChanged"), 1);
  // Nothing checked: not even the question.
  log.Clear();
  g->DeleteChecked();
  EXPECT_TRUE(log.Events().empty());
  // The last rows go through Clear.
  g->SelectAllRows();
  g->DeleteSelected();
  EXPECT_EQ(g->Rows(), 0);
  EXPECT_EQ(g->Row(), -1);
}

TEST_F(GridEditTest, HandlersThatEmptyTheGridInTheMiddleOfAClickLeaveItUsable) {
  auto g = MakeEditable();
  // A boolean cell's edit events clear the grid under the press.
  g->AfterEdit.connect([&](int32_t, int32_t, host::String&, bool&) { g->Clear(); });
  const platform::RECT c = g->GetColumnRect(2);
  ClickAt(*g, {(c.left + c.right) / 2, CellCenter(*g, 3, 2).y});
  EXPECT_EQ(g->Rows(), 0);
  EXPECT_EQ(g->Row(), -1);
  // And an edit closed by a press on another row does the same.
  Fill(*g, 4);
  ClickCell(*g, 1, 0);
  Type(u"z");
  ASSERT_TRUE(g->EditPending());
  ClickCell(*g, 3, 0);
  EXPECT_EQ(g->Rows(), 0);
  EXPECT_FALSE(g->EditPending());
}

// A control bound to a column, seen only through late binding: it records what the grid asks
// of it and knows no member beyond those, like a control with a smaller interface.
class RecordingEditor : public host::Object {
 public:
  host::Variant Invoke(host::StringView name, host::CallKind kind, std::span<host::Variant> args) override {
    const std::u16string n(name);
    const std::string ascii(n.begin(), n.end());
    if (n == u"Visible" && kind == host::CallKind::Let) {
      visible = args.back().ToBoolean();
      calls.push_back("Visible=" + std::string(visible ? "True" : "False"));
      return {};
    }
    if (n == u"Text" || n.empty()) {
      if (kind == host::CallKind::Let) {
        value = args.back().ToString();
        calls.push_back("Text=");
        return {};
      }
      return host::Variant(value);
    }
    if (n == u"SetFocus" || n == u"ShowList" || n == u"ZOrder" || n == u"BackColor" || n == u"Left" ||
        n == u"Width") {
      calls.push_back(ascii);
      return {};
    }
    host::Raise(438);
  }
  std::vector<std::string> calls;
  host::String value;
  bool visible = false;
};

TEST_F(GridEditTest, BoundControlEditsThroughLateBindingAndIgnoresMissingMembers) {
  auto g = MakeEditable();
  auto editor = std::make_shared<RecordingEditor>();
  g->BindControl(0, editor, Move_Left | Move_Width);
  Key(VK_F2);
  ASSERT_TRUE(g->EditPending());
  EXPECT_TRUE(editor->visible);
  EXPECT_EQ(editor->value, u"Row 1");
  // Missing members (ForeColor, Top, Height, ...) were skipped; what it has was called in order.
  EXPECT_EQ(editor->calls, (std::vector<std::string>{"BackColor", "Text=", "Left", "Width", "Visible=True", "ZOrder",
                                                     "SetFocus", "ShowList"}));
  editor->value = u"Chosen";
  EXPECT_TRUE(g->UpdateCell());
  EXPECT_FALSE(editor->visible);
  EXPECT_EQ(g->CellText(1, 0), u"Chosen");
  // The text box was never needed.
  EXPECT_EQ(g->EditControl(), nullptr);
}

}  // namespace
}  // namespace mx::grid::testing
