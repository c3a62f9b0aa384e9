// USFlexGrid: lifecycle, persisted properties, the model's hooks and the registration.
#include "grid/USFlexGrid.h"

#include "host/ControlRegistry.h"
#include "host/PropertyBag.h"
#include "platform/Gdi.h"
#include "platform/Messages.h"
#include "platform/ScrollBar.h"

namespace mx::grid {

using namespace platform;

USFlexGrid::USFlexGrid() = default;

USFlexGrid::~USFlexGrid() {
  ReleaseFonts();
  if (m_checkDC) {
    SelectObject(m_checkDC, m_checkOld);
    DeleteDC(m_checkDC);
  }
  if (m_checkBitmap) DeleteObject(m_checkBitmap);
  if (m_clipRgn) DeleteObject(m_clipRgn);
}

void USFlexGrid::Font(std::shared_ptr<host::StdFont> xValue) {
  if (!xValue) return;
  UserControl::Font(xValue);
  GridData::Font(std::move(xValue));
}

void USFlexGrid::Enabled(bool xValue) {
  UserControl::Enabled(xValue);
  GridData::Enabled(xValue);
}

void USFlexGrid::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"RequestRowData", RequestRowData, u"Scroll", Scroll, u"AfterDelete", AfterDelete,
                       u"RowCountChanged", RowCountChanged, u"SelectionChanged", SelectionChanged);
  host::BindEventSinks(sink, u"SortComplete", SortComplete, u"CustomSort", CustomSort);
  ConnectInputEventSinks(sink);
}

// ---- lifecycle ---------------------------------------------------------------------------------

void USFlexGrid::UserControl_Initialize() {
  // The surface keeps what DrawGrid drew; one clip region serves every cell of every paint.
  AutoRedraw(true);
  BackStyle(1);
  if (!m_clipRgn) m_clipRgn = CreateRectRgn(0, 0, 0, 0);
}

void USFlexGrid::UserControl_InitProperties() {
  UserMode(Ambient().UserMode());
  GridData::InitProperties(Ambient().Font());
  UserControl::Font(GridData::Font());
  UserControl::Enabled(GridData::Enabled());
}

void USFlexGrid::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  UserMode(Ambient().UserMode());
  GridData::ReadProperties(PropBag, Ambient().Font());
  UserControl::Font(GridData::Font());
  UserControl::Enabled(GridData::Enabled());
}

void USFlexGrid::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  GridData::WriteProperties(PropBag, Ambient().Font());
}

void USFlexGrid::UserControl_Resize() {
  // Never smaller than 60 by 60 in the container's units. Setting the size here does not raise
  // a second Resize; this one goes on with the new size.
  if (Width() < kMinimumSize) Width(kMinimumSize);
  if (Height() < kMinimumSize) Height(kMinimumSize);
  Cls();
  if (UserMode()) Refresh();
  else {
    RebuildColumnsFromHeaderFormat();
    RecalcMetrics();
    DrawGrid(true);
  }
}

void USFlexGrid::UserControl_Terminate() {
  TerminateInput();
  ReleaseFonts();
  if (m_clipRgn) {
    DeleteObject(m_clipRgn);
    m_clipRgn = 0;
  }
}

bool USFlexGrid::PreTranslateMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam, intptr_t& lResult) {
  if (RouteInputMessage(msg, wParam, lParam, lResult)) return true;
  switch (msg) {
    case WM_VSCROLL:
    case WM_HSCROLL:
      OnScrollMessage(msg == WM_VSCROLL, LOWORD(wParam));
      lResult = 0;
      return true;
    case WM_MOUSEWHEEL:
      OnWheel(static_cast<int16_t>(HIWORD(wParam)));
      lResult = 0;
      return true;
    default:
      return false;
  }
}

// ---- the model's hooks -------------------------------------------------------------------------

void USFlexGrid::OnPropertyChanged(host::StringView key) { PropertyChanged(key); }

void USFlexGrid::OnRepaint() { DrawGrid(GridData::Redraw()); }

void USFlexGrid::OnMetricsChanged() {
  if (!UserMode()) RebuildColumnsFromHeaderFormat();
  RecalcMetrics();
  // Metrics change even while drawing is off; the paint waits for Redraw like any other.
  DrawGrid(GridData::Redraw());
}

void USFlexGrid::OnRedrawAt(int32_t firstRow) {
  if (!m_switchingRedrawOn) RedrawEx(firstRow);
}

void USFlexGrid::SetHeaderStates(int32_t hoverCol, int32_t pressedCol, int32_t movingCol) {
  if (hoverCol == m_headerHoverCol && pressedCol == m_headerPressedCol && movingCol == m_headerMovingCol) return;
  m_headerHoverCol = hoverCol;
  m_headerPressedCol = pressedCol;
  m_headerMovingCol = movingCol;
  DrawGrid(GridData::Redraw());
}

void USFlexGrid::SetPressedButtonCell(int32_t row, int32_t col) {
  if (row == m_buttonRow && col == m_buttonCol) return;
  m_buttonRow = row;
  m_buttonCol = col;
  DrawGrid(GridData::Redraw());
}

void RegisterControls() {
  static bool done = false;
  if (done) return;
  done = true;
  host::RegisterControlClass(u"Morvantix.USFlexGrid", [] { return std::make_shared<USFlexGrid>(); });
}

}  // namespace mx::grid
