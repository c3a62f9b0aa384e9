#pragma once
// USFlexGrid: the grid control. The content lives in GridData; this class gives it a window,
// metrics, the window's own scroll bars and one paint routine, DrawGrid, that repaints the whole
// persistent image from the tables.
//
// Batching: every change in the model ends in a repaint request that goes through DrawGrid
// with the Redraw flag, so Redraw(False) around a batch of changes makes them cost nothing
// beyond the store, and Redraw(True) paints once.
//
// Cost: a repaint walks only the rows from the first shown to the last that fits, and only the
// painted columns, so it does not grow with the number of rows.
#include <cstdint>
#include <map>
#include <memory>
#include <tuple>
#include <vector>

#include "grid/GridData.h"
#include "host/Event.h"
#include "host/TextBox.h"
#include "host/UserControl.h"
#include "platform/Types.h"

namespace mx::image {
class API32bppDIB;
}
namespace mx::imagelist {
class APIImageList;
}

namespace mx::grid {

// The layout numbers of a grid, recomputed by RecalcMetrics (pixels).
struct GridMetrics {
  uint32_t ellipsisFlag = 0;
  int32_t checkBoxSize = 14;
  int32_t imageHeight = 0;
  int32_t imageWidth = 0;
  int32_t firstColTextOffset = 3;
  int32_t headerBottom = 0;
  int32_t headerTextHeight = 0;
  int32_t headerHeight = 0;
  int32_t captionHeight = 0;
  int32_t defaultRowHeight = 0;
  float rowNumberWidth = 0;
};

class USFlexGrid : public host::UserControl, public GridData {
 public:
  // The smallest width and height the control takes, in the container's units (twips).
  static constexpr float kMinimumSize = 60;

  USFlexGrid();
  ~USFlexGrid() override;

  // ---- names both bases have: the grid's meaning wins, the surface follows ----
  [[nodiscard]] std::shared_ptr<host::StdFont> Font() const { return GridData::Font(); }
  void Font(std::shared_ptr<host::StdFont> xValue);
  [[nodiscard]] bool Enabled() const { return GridData::Enabled(); }
  void Enabled(bool xValue);
  using GridData::Redraw;

  // ---- images ----
  // The list whose images RowImage and CellImage name (1-based; the sign is ignored). Its cell
  // size is the size of every image drawn in the grid; binding one recomputes the metrics.
  [[nodiscard]] std::shared_ptr<imagelist::APIImageList> ImageList() const { return m_imageList; }
  void ImageList(std::shared_ptr<imagelist::APIImageList> xValue);

  // ---- layout and painting ----
  // RecalcMetrics, then DrawGrid.
  void Refresh();
  // Recalculates the metrics, re-applies the sort when asked, switches drawing on and paints
  // with the given first row (-1 keeps the position).
  void RedrawEx(int32_t xSrollPosition, bool xPreserveSortedColumns = true);
  void RecalcMetrics();
  void DrawGrid(bool xRedraw = true, bool xSkipFocusRect = false, int32_t xFirstRow = -1);
  // Measures a display row's cells (word wrap only) and stores its height.
  void MeasureRow(int32_t xRow);
  // Breaks a heading into lines that fit xWidth, joined with CR LF; with a line limit the last
  // line ends in "...".
  [[nodiscard]] host::String WrapHeading(host::StringView xText, int32_t xWidth, int32_t xLines);
  // The rectangle of a display column in the current view (not dependent on storage order).
  [[nodiscard]] platform::RECT GetColumnRect(int32_t xCol);
  [[nodiscard]] const GridMetrics& Metrics() const { return m_metrics; }

  // ---- view ----
  [[nodiscard]] float RowNumberWidth() const { return m_metrics.rowNumberWidth; }
  [[nodiscard]] bool VerticalScrollBarVisible() const;
  [[nodiscard]] bool HorizontalScrollBarVisible() const;
  [[nodiscard]] int32_t VisibleHeight() const;
  [[nodiscard]] int32_t VisibleWidth() const;
  [[nodiscard]] int32_t RowsVisible() const { return m_rowsVisible; }
  [[nodiscard]] int32_t RowFirstVisible() const { return m_rowFirstVisible; }
  [[nodiscard]] int32_t RowLastVisible() const { return m_rowLastVisible; }
  [[nodiscard]] int32_t GetScrollVerticalPosition() const;
  // Values past Rows are ignored.
  void SetScrollVerticalPosition(int32_t xValue);
  [[nodiscard]] int32_t GetScrollHorizontalPosition() const;

  // ---- states that input sets and painting shows ----
  // Header cell states by display column (-1 for none): hover, pressed, and the column being
  // moved (always drawn dragged).
  void SetHeaderStates(int32_t hoverCol, int32_t pressedCol, int32_t movingCol);
  // The button cell the mouse holds (display row and column, -1 for none).
  void SetPressedButtonCell(int32_t row, int32_t col);
  // The last navigation key, for the keep-the-current-row-in-view rule of word-wrapped grids.
  void SetLastKeyCode(int16_t keyCode) { m_lastKeyCode = keyCode; }

  // ---- sort, search and columns ----
  // Sizes a display column to its widest text (-1: every column), then refreshes.
  void SetColumnWidthAutoSize(int32_t xCol);
  // One column: a boolean column takes 480 host units; progress-bar and button columns keep
  // theirs; others take the widest of the heading, the formatted texts (with their images) and
  // the total, plus 10 pixels.
  void AutoSizeColumn(int32_t xCol);
  // Gives a display column the width left by the other visible columns, the gutter and xOffset.
  // The result is not checked: a narrow control gives a negative width, painted as nothing.
  void StretchCol(int32_t xColumn, int32_t xOffset);
  // Scales the visible columns to fill the client width (at least two columns).
  void ColumnsForceFit();
  // ---- end of sort, search and columns ----

  // Raised with -1 when no row is in view, else with the last row painted when not all rows
  // were in view.
  host::Event<int32_t> RequestRowData;
  // Raised when a scroll bar moves the view (display row or column position).
  host::Event<> Scroll;

  void ConnectEventSink(const host::EventSink& sink) override;
  // Late binding: every member by name, case-insensitive; names the grid lacks go to the host's.
  host::Variant Invoke(host::StringView name, host::CallKind kind, std::span<host::Variant> args) override;
  [[nodiscard]] host::String TypeName() const override { return u"USFlexGrid"; }
  [[nodiscard]] host::String ProgId() const override { return u"Morvantix.USFlexGrid"; }

 protected:
  void UserControl_Initialize() override;
  void UserControl_InitProperties() override;
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Terminate() override;
  bool PreTranslateMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam, intptr_t& lResult) override;

  // The model's hooks.
  void OnPropertyChanged(host::StringView key) override;
  void OnRepaint() override;
  void OnMetricsChanged() override;
  void OnRedrawAt(int32_t firstRow) override;
  // ---- sort, search and columns: the model's hooks ----
  void OnReapplySort() override { ReapplySortedColumns(); }
  void OnAutoSizeColumn(int32_t displayCol) override { AutoSizeColumn(displayCol); }
  void OnStretchCol(int32_t displayCol, int32_t offset) override { StretchCol(displayCol, offset); }
  void OnColumnsForceFit() override { ColumnsForceFit(); }
  [[nodiscard]] bool OnSortCloseEditor() override { return UpdateCell(false); }
  void OnSetCurrentRow(int32_t displayRow, bool force) override;
  void OnColumnsRefresh() override;
  // ---- end of sort, search and columns: the model's hooks ----

 private:
  struct PaintContext;
  // Scroll bars (USFlexGridMetrics.cpp).
  void UpdateScrollBars();
  void ComputeRowsVisible();
  [[nodiscard]] int32_t AvailableRowsHeight() const;
  void OnScrollMessage(bool vertical, int code);
  void OnWheel(int delta);
  [[nodiscard]] int32_t RowHeightAt(int32_t displayRow);
  [[nodiscard]] bool RowPainted(int32_t displayRow) const;
  // Painting (USFlexGridPaint.cpp).
  void DrawCaption(PaintContext& pc);
  void DrawHeaders(PaintContext& pc);
  void DrawHeaderCell(PaintContext& pc, const platform::RECT& r, int32_t state, OLE_COLOR c1, OLE_COLOR c2,
                      bool lastColumn);
  void DrawRow(PaintContext& pc, int32_t displayRow, int32_t y, int32_t height, bool parity);
  void DrawTotals(PaintContext& pc, int32_t y);
  void DrawCheckSprite(platform::HDC dc, int32_t x, int32_t y, bool checked);
  void BuildCheckStrip();
  [[nodiscard]] platform::HFONT FontFor(const host::StdFont& base, bool bold, bool italic, bool underline,
                                        bool strike, host::StringView name = {});
  void ReleaseFonts();
  void ComputeRowNumberWidth(int32_t lastRowInView);
  // One image of the bound list at its cell size; a missing index draws nothing.
  void DrawListImage(platform::HDC dc, int32_t index, int32_t x, int32_t y, bool selectedStyle);
  // A cell picture scaled into box, keeping its aspect ratio, placed by the alignment.
  void DrawCellPicture(platform::HDC dc, const host::ObjectRef& picture, const platform::RECT& box,
                       int32_t alignment, bool selectedStyle);
  // Whether any row has a row image (only asked while a list is bound).
  [[nodiscard]] bool AnyRowImage();
  [[nodiscard]] int32_t MeasureText(host::StringView text, platform::HFONT font, uint32_t flags, int32_t width);

  GridMetrics m_metrics;
  bool m_inDraw = false;
  bool m_switchingRedrawOn = false;
  int32_t m_rowsVisible = 0;
  int32_t m_rowFirstVisible = -1;
  int32_t m_rowLastVisible = -1;
  int32_t m_firstRow = 0;
  int32_t m_firstScrollCol = 0;
  int32_t m_paintedRight = 0;   // right edge of the last painted column
  int32_t m_headerHoverCol = -1;
  int32_t m_headerPressedCol = -1;
  int32_t m_headerMovingCol = -1;
  int32_t m_buttonRow = -1;
  int32_t m_buttonCol = -1;
  int16_t m_lastKeyCode = 0;
  int32_t m_scrollTo = -1;      // a pending "scroll to" row, taken by the next paint
  bool m_allRowsInView = true;
  platform::HRGN m_clipRgn = 0;
  platform::HDC m_checkDC = 0;
  platform::HBITMAP m_checkBitmap = 0;
  platform::HGDIOBJ m_checkOld = 0;
  int32_t m_checkTheme = -1;
  std::shared_ptr<imagelist::APIImageList> m_imageList;
  int32_t m_rowImageHint = -1;  // storage row last found with a row image
  // Cell pictures decoded once: by the picture object, dropped when it goes.
  struct DecodedPicture {
    std::weak_ptr<host::Object> source;
    std::shared_ptr<image::API32bppDIB> surface;  // empty when the picture would not decode
  };
  std::map<const host::Object*, DecodedPicture> m_pictures;
  // Fonts made during a paint, by style and name; freed when the paint ends.
  std::map<std::tuple<const host::StdFont*, int, host::String>, platform::HFONT> m_fonts;

  // ---- selection and editing ----
  // Mouse and keys (USFlexGridInput.cpp, USFlexGridMouse.cpp), the editor (USFlexGridEdit.cpp),
  // row removal (GridRowRemoval.cpp) and the cell tooltip (USFlexGridToolTip.cpp). All
  // positions are display positions; event arguments named Col carry the storage column for
  // BeforeEdit, AfterEdit, CellClick and CellClickEx, the display column elsewhere.
 public:
  [[nodiscard]] int32_t Row() const { return GridData::Row(); }
  // Walks forward to the first visible, unlocked row (-1 past the end), then goes through
  // RowColSet.
  void Row(int32_t xRow);
  [[nodiscard]] int32_t Col() const { return GridData::Col(); }
  void Col(int32_t xCol);
  // Moves the current cell (-1 keeps that part), brings it into view and repaints.
  void RowColSet(int32_t xNewRow = -1, int32_t xNewCol = -1);
  // The cell move itself: refuses a locked row, keeps the old row for a hidden one and flags a
  // hidden or locked column; with xRaise the cell changes and RowColChanged is raised; unless
  // xRaiseOnly the view scrolls to the cell.
  void MoveCurrentCell(int32_t xRow, int32_t xCol, bool xRaiseOnly, bool xRaise);
  // Hit testing in client pixels: the display column or row under a point, -1 for none.
  [[nodiscard]] int32_t ColumnAtX(int32_t x);
  [[nodiscard]] int32_t RowAtY(int32_t y);
  // Sets or clears the selected bit of the display rows between both ends (either order);
  // whether anything changed.
  bool SelectRange(bool xState, int32_t xFrom, int32_t xTo);

  // Opens the editor at a cell (-1: the current one), moving the current cell there first.
  void ForceCellEdit(int32_t lNewRow = -1, int32_t lNewCol = -1, bool bBlankCell = false);
  // Opens the editor at a display cell when the grid, the row and the column allow it and
  // BeforeEdit does not cancel; whether it opened.
  bool BeginCellEdit(int32_t xRow, int32_t xCol, bool xBlankCell = false);
  // Closes an open editor, writing its value back; False when AfterEdit cancelled (the editor
  // stays open). With xAllowMove the current cell then moves by EditMove.
  bool UpdateCell(bool xAllowMove = false);
  // Places the open editor over its cell.
  void PositionEditor();
  // A control that edits the cells of a display column instead of the text box, reached by late
  // binding; xMoveControl is a GRID_MOVE_CONTROL mask of the edges that follow the cell.
  void BindControl(int32_t xCol, host::ObjectRef xControl, int32_t xMoveControl = 15);
  [[nodiscard]] bool EditPending() const { return m_editPending; }
  // The cell under edit (display), -1 when the editor is closed.
  [[nodiscard]] int32_t EditRow() const { return m_editPending ? m_editRow : -1; }
  [[nodiscard]] int32_t EditCol() const { return m_editPending ? m_editCol : -1; }
  // The pop-up text box ("TEditControl"); null until the first edit.
  [[nodiscard]] host::TextBox* EditControl() const { return m_editor.get(); }

  void RemoveRow(int32_t xRow);
  void DeleteChecked(bool xRedraw = true);
  void DeleteSelected();

  // The cell under the pointer, -1 over nothing.
  [[nodiscard]] int32_t MouseRow() const { return m_mouseRow; }
  [[nodiscard]] int32_t MouseCol() const { return m_mouseCol; }
  // The text typed so far for the incremental search on SearchColumn.
  [[nodiscard]] const host::String& SearchText() const { return m_searchText; }
  // The tooltip window of clipped cells ("xToolTIP"), 0 while none was made.
  [[nodiscard]] platform::HWND ToolTipWindow() const { return m_toolTip; }

  host::Event<int32_t, int32_t, host::String&, bool&> AfterEdit;  // Row, Col, xValue, Cancel
  host::Event<int32_t> AfterInsert;                               // Row
  host::Event<int32_t, bool&> BeforeDelete;                       // Row, Cancel
  host::Event<int32_t, int32_t, bool&> BeforeEdit;                // Row, Col, Cancel
  host::Event<int32_t, bool&> BeforeInsert;                       // Row, Cancel
  host::Event<int32_t, int32_t> CellButtonClick;                  // Row, Col
  host::Event<int32_t, int32_t, int16_t> CellClick;               // Row, Col, Shift
  host::Event<int32_t, int32_t, int16_t, int16_t, float, float> CellClickEx;  // Row, Col, Button, Shift, X, Y
  host::Event<int32_t, int32_t, int16_t> CellHandClick;           // Row, Col, Shift
  host::Event<int32_t, int32_t> CellImageClick;                   // Row, Col
  host::Event<> Click;
  host::Event<int32_t> ColumnClick;                               // Col (storage)
  host::Event<int32_t, int32_t> ColumnOrderChanged;               // FromCol, ToCol
  host::Event<int32_t, int32_t> ColumnSizeChanged;                // Col, MoveControl
  host::Event<> DblClick;
  host::Event<int32_t, int16_t&> EditKeyPress;                    // Col (storage), KeyAscii
  host::Event<int16_t&, int16_t&> KeyDown;                        // KeyCode, Shift
  host::Event<int16_t&> KeyPress;                                 // KeyAscii
  host::Event<int16_t&, int16_t&> KeyUp;
  host::Event<int16_t&, int16_t&, float&, float&> MouseDown;      // Button, Shift, X, Y
  host::Event<> MouseEnter;
  host::Event<> MouseExit;
  host::Event<int16_t&, int16_t&, float&, float&> MouseMove;
  host::Event<int16_t&, int16_t&, float&, float&> MouseUp;
  host::Event<host::DataObject&, int32_t&, int16_t&, int16_t&, float&, float&> OLEDragDrop;  // Data, Effect, Button, Shift, X, Y
  // The event RowChecked(Row); the C++ name differs from the RowChecked property.
  host::Event<int32_t> RowCheckedEvent;
  host::Event<> RowColChanged;

 protected:
  void UserControl_Click() override;
  void UserControl_DblClick() override;
  void UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_KeyPress(int16_t& KeyAscii) override;
  void UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_OLEDragDrop(host::DataObject& Data, int32_t& Effect, int16_t& Button, int16_t& Shift, float& X,
                               float& Y) override;
  void OnClearing() override;

 private:
  // Messages the host has no event for: scroll bars, wheels, enter and leave, focus, the
  // auto-scroll timer. True when consumed.
  bool RouteInputMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam, intptr_t& lResult);
  void ConnectInputEventSinks(const host::EventSink& sink);
  void TerminateInput();
  // Keys, from the grid or forwarded by the editor; KeyCode 0 afterwards means consumed.
  void HandleKeyDown(int16_t& KeyCode, int16_t Shift, bool fromEditor);
  void IncrementalSearch(char16_t ch);
  // The next row in a direction (+1, -1) that is shown and not locked, or -1.
  [[nodiscard]] int32_t NextOpenRow(int32_t from, int32_t step);
  [[nodiscard]] int32_t NextOpenCol(int32_t from, int32_t step);
  [[nodiscard]] int32_t PageDownRow();
  [[nodiscard]] int32_t PageUpRow();
  [[nodiscard]] int32_t LastFullyShownRow();
  // Scrolls so that a display cell shows (either part -1: that direction stays); whether the
  // view moved.
  bool ScrollCellIntoView(int32_t row, int32_t col);
  // Moves the current cell after a key or a drag and makes the selection follow: a plain move
  // selects only the target, an extending one the range from the anchor.
  void NavigateTo(int32_t row, int32_t col, bool extend);
  // Clears the selection and selects one row (none for -1); whether anything changed.
  bool SelectOnly(int32_t row);
  bool SelectExactly(int32_t from, int32_t to);
  [[nodiscard]] bool RowOpen(int32_t displayRow);
  [[nodiscard]] bool ColOpen(int32_t displayCol);
  [[nodiscard]] int32_t RowTop(int32_t displayRow);
  [[nodiscard]] bool CellEditable(int32_t row, int32_t col);
  void FlipBooleanCell(int32_t row, int32_t col, bool afterEditFirst);
  void ToggleEditor(bool byF2);
  // Mouse parts (USFlexGridMouse.cpp).
  void UpdatePointerZones(int32_t x, int32_t y);
  void StartAutoScroll(int direction);
  void StopAutoScroll();
  void AutoScrollStep();
  void FinishHeaderMove(int32_t x);
  [[nodiscard]] bool InCheckBoxOfBooleanCell(int32_t row, int32_t col, int32_t x, int32_t y);
  void OnHorizontalWheel(int delta);
  // Editor parts (USFlexGridEdit.cpp).
  void EnsureEditor();
  void CancelEdit();
  void ShowBoundEditor(const host::ObjectRef& control, int32_t row, int32_t col);
  void PositionBoundControl(const host::ObjectRef& control, int32_t moveMask);
  void HideEditorWindow();
  [[nodiscard]] host::String EditorValue();
  void EditorKeyDown(int16_t& KeyCode, int16_t& Shift);
  void EditorKeyPress(int16_t& KeyAscii);
  // Applies the column's input filter ("<", ">" or a set of allowed characters) to a typed
  // character: 0 when it is dropped.
  [[nodiscard]] int16_t FilterEditChar(int32_t displayCol, int16_t keyAscii);
  [[nodiscard]] bool FocusIsInEditor(platform::HWND focus) const;
  // Row removal (GridRowRemoval.cpp).
  void RemoveRows(const std::vector<uint8_t>& victims, bool xRedraw);
  void DeleteRowsWithFlag(int16_t flag, bool xRedraw);
  void InsertRowAtCurrent();
  // Tooltip (USFlexGridToolTip.cpp).
  void ShowCellToolTip(int32_t xRow, int32_t xCol);
  void HideToolTip();

  std::unique_ptr<host::TextBox> m_editor;
  bool m_editPending = false;
  bool m_editBound = false;
  bool m_editByF2 = false;
  int32_t m_editRow = -1;
  int32_t m_editCol = -1;
  host::ObjectRef m_boundEditor;  // the bound control open now
  int16_t m_lastShift = 0;
  int32_t m_mouseRow = -1;
  int32_t m_mouseCol = -1;
  int32_t m_downRow = -1;
  int32_t m_downCol = -1;
  int32_t m_downX = 0;
  int32_t m_anchorRow = -1;  // where Shift ranges start
  int32_t m_dragRow = -1;    // the last row a drag selected to
  int32_t m_dragCol = -1;
  int32_t m_swapCol = -1;
  int32_t m_resizeCol = -1;
  int32_t m_resizeRow = -1;
  int32_t m_resizeColOffset = 0;
  int32_t m_resizeRowOffset = 0;
  bool m_resizing = false;
  int32_t m_resizeStartSize = 0;  // the width or height when the resize began
  int32_t m_headerMoveOffset = 0;  // how far a moved header cell is drawn from its place
  bool m_rowMoveRefused = false;
  bool m_suppressSearch = false;    // Ctrl+C, Ctrl+V: no search from the character that follows
  bool m_suppressKeyPress = false;  // the key down consumed the key: its character is dropped
  bool m_mouseInside = false;
  int m_autoScrollDirection = 0;
  host::String m_searchText;
  uint32_t m_searchTick = 0;
  bool m_searchStarted = false;
  platform::HWND m_toolTip = 0;
  platform::HFONT m_toolTipFont = 0;
  // ---- end of selection and editing ----
};

// Registers "Morvantix.USFlexGrid" with the class registry.
void RegisterControls();

}  // namespace mx::grid
