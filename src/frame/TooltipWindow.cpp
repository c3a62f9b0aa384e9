#include "frame/TooltipWindow.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <span>
#include <vector>

#include "frame/APISubClass.h"
#include "host/Frx.h"
#include "platform/Desktop.h"
#include "platform/Gdi.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/SysColors.h"
#include "platform/Text.h"
#include "platform/Timer.h"
#include "platform/Window.h"

namespace mx::frame {

using namespace mx::platform;

namespace {

constexpr UINT_PTR kTimerInitial = 1;
constexpr UINT_PTR kTimerAutopop = 2;
constexpr UINT_PTR kTimerPoll = 3;
constexpr UINT kPollMs = 100;

constexpr int kDefaultInitialMs = 500;
constexpr int kDefaultAutopopMs = 5000;
constexpr int kDefaultReshowMs = 100;

// Geometry at 96 dpi.
constexpr int kIconSize = 16;
constexpr int kIconGap = 4;         // icon to title text
constexpr int kTitleGap = 4;        // title line to body text
constexpr int kStdPadX = 4;         // inside the one-pixel frame
constexpr int kStdPadY = 2;
constexpr int kBalloonPad = 8;
constexpr int kBalloonRadius = 12;  // ellipse size of the body's corners
constexpr int kStemHeight = 12;
constexpr int kStemWidth = 14;
constexpr int kStemInset = 16;      // stem tip from the body's left edge
constexpr int kPointerGap = 20;     // below the pointer's hot spot, clear of the arrow
constexpr int kBalloonMinWidth = kStemInset + kStemWidth + kBalloonRadius;

host::String FromAnsi(const char* text) {
  if (!text) return {};
  return host::DecodeWindows1252(std::span<const uint8_t>(reinterpret_cast<const uint8_t*>(text), std::strlen(text)));
}

LOGFONTW TipFont(bool bold) {
  LOGFONTW lf;
  lf.lfHeight = -11;
  lf.lfWeight = bold ? 700 : 400;
  const char16_t face[] = u"Tahoma";
  std::copy(std::begin(face), std::end(face), lf.lfFaceName);
  return lf;
}

// ---- the small title icons, drawn with pens and brushes ------------------------------------------

void FillShape(HDC dc, COLORREF fill, COLORREF edge, const std::function<void()>& draw) {
  HBRUSH brush = CreateSolidBrush(fill);
  HPEN pen = CreatePen(PS_SOLID, 1, edge);
  HGDIOBJ oldBrush = SelectObject(dc, brush);
  HGDIOBJ oldPen = SelectObject(dc, pen);
  draw();
  SelectObject(dc, oldBrush);
  SelectObject(dc, oldPen);
  DeleteObject(brush);
  DeleteObject(pen);
}

void FillBox(HDC dc, int l, int t, int r, int b, COLORREF color) {
  RECT rc{l, t, r, b};
  HBRUSH brush = CreateSolidBrush(color);
  FillRect(dc, &rc, brush);
  DeleteObject(brush);
}

// A 16 x 16 icon with its top-left corner at (x, y): information (a blue disc with an "i"),
// warning (an amber triangle with a "!") or error (a red disc with a cross).
void DrawTitleIcon(HDC dc, int x, int y, WPARAM icon) {
  switch (icon) {
    case TTI_INFO:
      FillShape(dc, RGB(30, 110, 210), RGB(10, 70, 160), [&] { Ellipse(dc, x, y, x + 16, y + 16); });
      FillBox(dc, x + 7, y + 3, x + 9, y + 5, RGB(255, 255, 255));
      FillBox(dc, x + 7, y + 6, x + 9, y + 13, RGB(255, 255, 255));
      break;
    case TTI_WARNING: {
      const POINT tri[3] = {{x + 8, y}, {x + 15, y + 15}, {x, y + 15}};
      FillShape(dc, RGB(250, 200, 30), RGB(170, 120, 0), [&] { Polygon(dc, tri, 3); });
      FillBox(dc, x + 7, y + 5, x + 9, y + 11, RGB(0, 0, 0));
      FillBox(dc, x + 7, y + 12, x + 9, y + 14, RGB(0, 0, 0));
      break;
    }
    case TTI_ERROR: {
      FillShape(dc, RGB(215, 40, 40), RGB(150, 10, 10), [&] { Ellipse(dc, x, y, x + 16, y + 16); });
      HPEN pen = CreatePen(PS_SOLID, 2, RGB(255, 255, 255));
      HGDIOBJ old = SelectObject(dc, pen);
      MoveToEx(dc, x + 5, y + 5, nullptr);
      LineTo(dc, x + 11, y + 11);
      MoveToEx(dc, x + 11, y + 5, nullptr);
      LineTo(dc, x + 5, y + 11);
      SelectObject(dc, old);
      DeleteObject(pen);
      break;
    }
    default:
      // Anything else is an icon handle of the caller's.
      if (icon > TTI_ERROR) DrawIconEx(dc, x, y, static_cast<HICON>(icon), kIconSize, kIconSize, 0, 0, 3);
      break;
  }
}

struct Tool {
  UINT flags = 0;
  HWND hwnd = 0;
  UINT_PTR id = 0;
  RECT rect{};
  host::String text;
};

// Where everything of a tip goes, in window coordinates.
struct Layout {
  int width = 0, height = 0;
  RECT body{};
  bool stemUp = true;
  int stemX = 0;  // the stem tip's x
  RECT icon{};
  RECT title{};
  RECT text{};
  bool hasIcon = false;
};

class TooltipWindow : public SubclassOwner {
 public:
  TooltipWindow(HWND hwnd, DWORD style) : m_hwnd(hwnd), m_style(style), m_subclass(this) {
    m_textColor = GetSysColor(COLOR_INFOTEXT);
    m_backColor = GetSysColor(COLOR_INFOBK);
  }

  LRESULT Proc(UINT msg, WPARAM wParam, LPARAM lParam);
  void SubclassProc(int32_t, bool bBefore, bool&, LRESULT&, HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam,
                    LPARAM&) override;
  [[nodiscard]] TooltipSnapshot Snapshot() const;

 private:
  enum class State { Idle, Waiting, Shown, Popped };

  bool AddTool(const TOOLINFOA* ti);
  void DelTool(const TOOLINFOA* ti);
  Tool* FindTool(HWND hwnd, UINT_PTR id);
  Tool* ToolAt(HWND hwnd, POINT client);
  void OnToolMouse(HWND hwnd, UINT msg, LPARAM lParam);
  void OnTimer(UINT_PTR id);
  [[nodiscard]] bool PointerOnCurrentTool() const;
  void Show();
  void Hide();
  void Reset();
  [[nodiscard]] Layout Measure() const;
  void Place(Layout& layout, int& x, int& y) const;
  [[nodiscard]] HRGN BalloonRegion(const Layout& layout) const;
  void Paint(HDC dc) const;
  [[nodiscard]] UINT TextFlags() const { return DT_LEFT | DT_TOP | (m_style & TTS_NOPREFIX ? DT_NOPREFIX : 0); }
  [[nodiscard]] bool Balloon() const { return (m_style & TTS_BALLOON) != 0; }

  HWND m_hwnd;
  DWORD m_style;
  APISubClass m_subclass;
  std::vector<Tool> m_tools;
  State m_state = State::Idle;
  HWND m_curHwnd = 0;
  UINT_PTR m_curId = 0;
  POINT m_lastPt{-1, -1};
  bool m_active = true;
  int m_initialMs = kDefaultInitialMs;
  int m_autopopMs = kDefaultAutopopMs;
  int m_reshowMs = kDefaultReshowMs;
  COLORREF m_textColor;
  COLORREF m_backColor;
  host::String m_title;
  WPARAM m_icon = TTI_NONE;
  Layout m_layout;
};

std::map<HWND, std::unique_ptr<TooltipWindow>>& Tips() {
  thread_local std::map<HWND, std::unique_ptr<TooltipWindow>> tips;
  return tips;
}

// ---- tools -------------------------------------------------------------------------------------

Tool* TooltipWindow::FindTool(HWND hwnd, UINT_PTR id) {
  for (Tool& t : m_tools)
    if (t.hwnd == hwnd && t.id == id) return &t;
  return nullptr;
}

bool TooltipWindow::AddTool(const TOOLINFOA* ti) {
  if (!ti || ti->cbSize < TTTOOLINFOA_V1_SIZE || !IsWindow(ti->hwnd)) return false;
  if (FindTool(ti->hwnd, ti->uId)) return false;
  Tool t;
  t.flags = ti->uFlags;
  t.hwnd = ti->hwnd;
  t.id = ti->uId;
  t.rect = ti->rect;
  t.text = FromAnsi(ti->lpszText);
  // The window the pointer is over: the id itself for a whole-window tool.
  const HWND watched = (t.flags & TTF_IDISHWND) ? static_cast<HWND>(t.id) : t.hwnd;
  if ((t.flags & TTF_SUBCLASS) && !m_subclass.IsSubclassed(watched)) {
    if (m_subclass.ssc_Subclass(watched, 0, 1, this)) {
      m_subclass.ssc_AddMsg(watched, MSG_BEFORE,
                            {WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_RBUTTONDOWN, WM_MBUTTONDOWN, WM_XBUTTONDOWN,
                             WM_MOUSEWHEEL, WM_NCDESTROY});
    }
  }
  m_tools.push_back(std::move(t));
  return true;
}

void TooltipWindow::DelTool(const TOOLINFOA* ti) {
  if (!ti) return;
  Tool* t = FindTool(ti->hwnd, ti->uId);
  if (!t) return;
  if (t->hwnd == m_curHwnd && t->id == m_curId) Reset();
  const HWND watched = (t->flags & TTF_IDISHWND) ? static_cast<HWND>(t->id) : t->hwnd;
  m_tools.erase(m_tools.begin() + (t - m_tools.data()));
  const bool stillUsed = std::any_of(m_tools.begin(), m_tools.end(), [&](const Tool& o) {
    return ((o.flags & TTF_IDISHWND) ? static_cast<HWND>(o.id) : o.hwnd) == watched;
  });
  if (!stillUsed) m_subclass.ssc_UnSubclass(watched);
}

Tool* TooltipWindow::ToolAt(HWND hwnd, POINT client) {
  for (Tool& t : m_tools) {
    if (t.flags & TTF_IDISHWND) {
      if (static_cast<HWND>(t.id) == hwnd) return &t;
    } else if (t.hwnd == hwnd && PtInRect(&t.rect, client)) {
      return &t;
    }
  }
  return nullptr;
}

// ---- behaviour ---------------------------------------------------------------------------------

void TooltipWindow::SubclassProc(int32_t, bool, bool&, LRESULT&, HWND hwnd, UINT msg, WPARAM, LPARAM lParam, LPARAM&) {
  if (msg == WM_NCDESTROY) {
    // The tool window is going: its tools go with it.
    if (m_curHwnd == hwnd || static_cast<HWND>(m_curId) == hwnd) Reset();
    std::erase_if(m_tools, [&](const Tool& t) {
      return t.hwnd == hwnd || ((t.flags & TTF_IDISHWND) && static_cast<HWND>(t.id) == hwnd);
    });
    return;
  }
  OnToolMouse(hwnd, msg, lParam);
}

void TooltipWindow::OnToolMouse(HWND hwnd, UINT msg, LPARAM lParam) {
  if (!m_active) return;
  if (msg != WM_MOUSEMOVE) {
    // A button or the wheel ends the tip for this visit of the tool.
    if (m_state == State::Waiting || m_state == State::Shown) {
      Hide();
      KillTimer(m_hwnd, kTimerInitial);
      KillTimer(m_hwnd, kTimerAutopop);
      m_state = State::Popped;
    }
    return;
  }
  const POINT client{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  Tool* tool = ToolAt(hwnd, client);
  if (!tool) {
    if (m_state != State::Idle) Reset();
    return;
  }
  POINT screen{};
  GetCursorPos(&screen);
  const bool sameTool = tool->hwnd == m_curHwnd && tool->id == m_curId;
  if (m_state == State::Idle || !sameTool) {
    Reset();
    m_curHwnd = tool->hwnd;
    m_curId = tool->id;
    m_state = State::Waiting;
    m_lastPt = screen;
    SetTimer(m_hwnd, kTimerPoll, kPollMs);
    if (m_initialMs <= 0) OnTimer(kTimerInitial);
    else SetTimer(m_hwnd, kTimerInitial, static_cast<UINT>(m_initialMs));
    return;
  }
  // The pointer has to rest for the whole delay: a move starts it again.
  if (m_state == State::Waiting && screen != m_lastPt) {
    m_lastPt = screen;
    SetTimer(m_hwnd, kTimerInitial, static_cast<UINT>(std::max(m_initialMs, 1)));
  }
}

bool TooltipWindow::PointerOnCurrentTool() const {
  POINT pt{};
  GetCursorPos(&pt);
  const HWND under = WindowFromPoint(pt);
  for (const Tool& t : m_tools) {
    if (t.hwnd != m_curHwnd || t.id != m_curId) continue;
    if (t.flags & TTF_IDISHWND) return under == static_cast<HWND>(t.id) && IsWindowVisible(under);
    if (under != t.hwnd) return false;
    ScreenToClient(t.hwnd, &pt);
    return PtInRect(&t.rect, pt) != 0;
  }
  return false;
}

void TooltipWindow::OnTimer(UINT_PTR id) {
  switch (id) {
    case kTimerInitial:
      KillTimer(m_hwnd, kTimerInitial);
      if (m_state != State::Waiting) return;
      if (!PointerOnCurrentTool()) {
        Reset();
        return;
      }
      // Without TTS_ALWAYSTIP a tip shows only for the active window's tools.
      if (!(m_style & TTS_ALWAYSTIP) && GetActiveWindow() != GetAncestor(m_curHwnd, GA_ROOT)) {
        m_state = State::Popped;
        return;
      }
      Show();
      m_state = State::Shown;
      SetTimer(m_hwnd, kTimerAutopop, static_cast<UINT>(std::max(m_autopopMs, 1)));
      break;
    case kTimerAutopop:
      KillTimer(m_hwnd, kTimerAutopop);
      Hide();
      m_state = State::Popped;
      break;
    case kTimerPoll:
      if (!PointerOnCurrentTool()) Reset();
      break;
    default:
      break;
  }
}

void TooltipWindow::Reset() {
  KillTimer(m_hwnd, kTimerInitial);
  KillTimer(m_hwnd, kTimerAutopop);
  KillTimer(m_hwnd, kTimerPoll);
  Hide();
  m_state = State::Idle;
  m_curHwnd = 0;
  m_curId = 0;
}

void TooltipWindow::Hide() {
  if (IsWindowVisible(m_hwnd)) ShowWindow(m_hwnd, SW_HIDE);
}

void TooltipWindow::Show() {
  m_layout = Measure();
  int x = 0, y = 0;
  Place(m_layout, x, y);
  SetWindowRgn(m_hwnd, Balloon() ? BalloonRegion(m_layout) : 0, FALSE);
  SetWindowPos(m_hwnd, HWND_TOPMOST, x, y, m_layout.width, m_layout.height, SWP_NOACTIVATE | SWP_SHOWWINDOW);
  InvalidateRect(m_hwnd, nullptr, TRUE);
}

// ---- layout and painting -----------------------------------------------------------------------

Layout TooltipWindow::Measure() const {
  Layout l;
  const Tool* tool = nullptr;
  for (const Tool& t : m_tools)
    if (t.hwnd == m_curHwnd && t.id == m_curId) tool = &t;
  const host::String text = tool ? tool->text : host::String();

  HDC dc = CreateCompatibleDC(0);
  LOGFONTW normal = TipFont(false), bold = TipFont(true);
  HFONT bodyFont = CreateFontIndirect(&normal);
  HFONT titleFont = CreateFontIndirect(&bold);
  HGDIOBJ old = SelectObject(dc, bodyFont);
  RECT textRc{0, 0, 0, 0};
  if (!text.empty()) DrawTextW(dc, text, &textRc, TextFlags() | DT_CALCRECT);
  RECT titleRc{0, 0, 0, 0};
  SelectObject(dc, titleFont);
  if (!m_title.empty()) DrawTextW(dc, m_title, &titleRc, TextFlags() | DT_SINGLELINE | DT_CALCRECT);
  SelectObject(dc, old);
  DeleteObject(bodyFont);
  DeleteObject(titleFont);
  DeleteDC(dc);

  l.hasIcon = m_icon != TTI_NONE;
  const bool hasTitleRow = l.hasIcon || !m_title.empty();
  const int iconW = l.hasIcon ? kIconSize + (m_title.empty() ? 0 : kIconGap) : 0;
  const int rowH = hasTitleRow ? std::max<int>(l.hasIcon ? kIconSize : 0, titleRc.height()) : 0;
  const int rowW = iconW + titleRc.width();
  const int contentW = std::max<int>(rowW, textRc.width());
  const int gap = hasTitleRow && !text.empty() ? kTitleGap : 0;
  const int contentH = rowH + gap + textRc.height();

  const int padX = Balloon() ? kBalloonPad : 1 + kStdPadX;
  const int padY = Balloon() ? kBalloonPad : 1 + kStdPadY;
  int bodyW = contentW + 2 * padX;
  const int bodyH = contentH + 2 * padY;
  if (Balloon()) bodyW = std::max(bodyW, kBalloonMinWidth);
  l.width = bodyW;
  l.height = bodyH + (Balloon() ? kStemHeight : 0);
  l.body = RECT{0, Balloon() ? kStemHeight : 0, bodyW, (Balloon() ? kStemHeight : 0) + bodyH};

  const int left = l.body.left + padX, top = l.body.top + padY;
  l.icon = RECT{left, top + (rowH - kIconSize) / 2, left + kIconSize, top + (rowH - kIconSize) / 2 + kIconSize};
  l.title = RECT{left + iconW, top + (rowH - titleRc.height()) / 2, left + iconW + titleRc.width(),
                 top + (rowH - titleRc.height()) / 2 + titleRc.height()};
  l.text = RECT{left, top + rowH + gap, left + textRc.width(), top + rowH + gap + textRc.height()};
  return l;
}

// Moves a balloon's parts down by the stem when it hangs below its point, or leaves the stem
// at the bottom when it has to stand above it.
void TooltipWindow::Place(Layout& l, int& x, int& y) const {
  RECT work{};
  SystemParametersInfo(SPI_GETWORKAREA, 0, &work, 0);
  POINT cursor{};
  GetCursorPos(&cursor);
  const bool centred = [&] {
    for (const Tool& t : m_tools)
      if (t.hwnd == m_curHwnd && t.id == m_curId) return (t.flags & TTF_CENTERTIP) != 0;
    return false;
  }();
  // The anchor is the point the tip hangs from; `above` where it stands on when it must flip.
  POINT anchor{cursor.x, cursor.y + kPointerGap};
  int above = cursor.y;
  if (centred) {
    RECT tool{};
    GetWindowRect(static_cast<HWND>(m_curId) ? static_cast<HWND>(m_curId) : m_curHwnd, &tool);
    for (const Tool& t : m_tools) {
      if (t.hwnd == m_curHwnd && t.id == m_curId && !(t.flags & TTF_IDISHWND)) {
        tool = t.rect;
        MapWindowPoints(t.hwnd, 0, reinterpret_cast<POINT*>(&tool), 2);
      }
    }
    anchor = POINT{(tool.left + tool.right) / 2, tool.bottom};
    above = tool.top;
  }

  if (!Balloon()) {
    x = centred ? anchor.x - l.width / 2 : anchor.x;
    y = anchor.y;
    if (y + l.height > work.bottom) y = above - l.height;
  } else {
    int stemX = centred ? l.width / 2 - kStemWidth / 2 : kStemInset;
    x = anchor.x - stemX;
    y = anchor.y - (centred ? 0 : kPointerGap / 2);
    l.stemUp = true;
    if (y + l.height > work.bottom) {
      // Stand above the point with the stem down.
      l.stemUp = false;
      const int shift = -kStemHeight;
      for (RECT* r : {&l.body, &l.icon, &l.title, &l.text}) OffsetRect(r, 0, shift);
      y = above - l.height;
    }
    l.stemX = stemX;
  }
  x = std::clamp(x, static_cast<int>(work.left), std::max<int>(work.left, work.right - l.width));
  if (Balloon()) l.stemX = std::clamp<int>(anchor.x - x, kBalloonRadius / 2, l.width - kStemWidth - kBalloonRadius / 2);
  y = std::max<int>(y, work.top);
}

HRGN TooltipWindow::BalloonRegion(const Layout& l) const {
  HRGN body = CreateRoundRectRgn(l.body.left, l.body.top, l.body.right + 1, l.body.bottom + 1, kBalloonRadius,
                                 kBalloonRadius);
  // The stem reaches one pixel into the body so that the two join without a seam.
  POINT stem[3];
  if (l.stemUp) {
    stem[0] = {l.stemX, 0};
    stem[1] = {l.stemX, l.body.top + 2};
    stem[2] = {l.stemX + kStemWidth, l.body.top + 2};
  } else {
    stem[0] = {l.stemX, l.height};
    stem[1] = {l.stemX, l.body.bottom - 2};
    stem[2] = {l.stemX + kStemWidth, l.body.bottom - 2};
  }
  HRGN tip = CreatePolygonRgn(stem, 3, 2 /* WINDING */);
  CombineRgn(body, body, tip, RGN_OR);
  DeleteObject(tip);
  return body;
}

void TooltipWindow::Paint(HDC dc) const {
  const Layout& l = m_layout;
  HBRUSH back = CreateSolidBrush(m_backColor);
  HBRUSH edge = CreateSolidBrush(m_textColor);
  if (Balloon()) {
    HRGN shape = BalloonRegion(l);
    FillRgn(dc, shape, back);
    FrameRgn(dc, shape, edge, 1, 1);
    DeleteObject(shape);
  } else {
    RECT all{0, 0, l.width, l.height};
    FillRect(dc, &all, back);
    FrameRect(dc, &all, edge);
  }
  DeleteObject(back);
  DeleteObject(edge);

  if (l.hasIcon) DrawTitleIcon(dc, l.icon.left, l.icon.top, m_icon);
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, m_textColor);
  LOGFONTW normal = TipFont(false), bold = TipFont(true);
  HFONT titleFont = CreateFontIndirect(&bold);
  HGDIOBJ old = SelectObject(dc, titleFont);
  RECT title = l.title;
  if (!m_title.empty()) DrawTextW(dc, m_title, &title, TextFlags() | DT_SINGLELINE | DT_NOCLIP);
  HFONT bodyFont = CreateFontIndirect(&normal);
  SelectObject(dc, bodyFont);
  for (const Tool& t : m_tools) {
    if (t.hwnd != m_curHwnd || t.id != m_curId) continue;
    RECT text = l.text;
    DrawTextW(dc, t.text, &text, TextFlags() | DT_NOCLIP);
  }
  SelectObject(dc, old);
  DeleteObject(titleFont);
  DeleteObject(bodyFont);
}

// ---- the window procedure ----------------------------------------------------------------------

LRESULT TooltipWindow::Proc(UINT msg, WPARAM wParam, LPARAM lParam) {
  switch (msg) {
    case WM_CREATE:
      // Whatever the caller asked, a tip is a frameless popup outside the task bar.
      SetWindowLong(m_hwnd, GWL_STYLE, static_cast<LONG>(WS_POPUP | WS_CLIPSIBLINGS | (m_style & 0xFFFF)));
      SetWindowLong(m_hwnd, GWL_EXSTYLE, static_cast<LONG>(GetWindowLong(m_hwnd, GWL_EXSTYLE) | WS_EX_TOOLWINDOW));
      return 0;
    case WM_NCCALCSIZE:
      return 0;  // the client area is the whole window
    case WM_NCPAINT:
      return 0;
    case WM_NCHITTEST:
      return HTTRANSPARENT;
    case WM_MOUSEACTIVATE:
      return MA_NOACTIVATE;
    case WM_ERASEBKGND:
      return 1;  // WM_PAINT covers every pixel
    case WM_PAINT: {
      PAINTSTRUCT ps;
      HDC dc = BeginPaint(m_hwnd, &ps);
      Paint(dc);
      EndPaint(m_hwnd, &ps);
      return 0;
    }
    case WM_TIMER:
      OnTimer(wParam);
      return 0;
    case TTM_ACTIVATE:
      m_active = wParam != 0;
      if (!m_active) Reset();
      return 0;
    case TTM_SETDELAYTIME: {
      // A negative time restores the default of that kind.
      const int ms = static_cast<int16_t>(LOWORD(static_cast<uintptr_t>(lParam)));
      switch (wParam) {
        case TTDT_AUTOMATIC:
          m_initialMs = ms < 0 ? kDefaultInitialMs : ms;
          m_autopopMs = ms < 0 ? kDefaultAutopopMs : ms * 10;
          m_reshowMs = ms < 0 ? kDefaultReshowMs : ms / 5;
          break;
        case TTDT_RESHOW: m_reshowMs = ms < 0 ? kDefaultReshowMs : ms; break;
        case TTDT_AUTOPOP: m_autopopMs = ms < 0 ? kDefaultAutopopMs : ms; break;
        case TTDT_INITIAL: m_initialMs = ms < 0 ? kDefaultInitialMs : ms; break;
        default: break;
      }
      return 0;
    }
    case TTM_GETDELAYTIME:
      switch (wParam) {
        case TTDT_RESHOW: return m_reshowMs;
        case TTDT_AUTOPOP: return m_autopopMs;
        case TTDT_INITIAL: return m_initialMs;
        default: return 0;
      }
    case TTM_ADDTOOLA:
      return AddTool(reinterpret_cast<const TOOLINFOA*>(lParam)) ? TRUE : FALSE;
    case TTM_DELTOOLA:
      DelTool(reinterpret_cast<const TOOLINFOA*>(lParam));
      return 0;
    case TTM_RELAYEVENT: {
      const auto* m = reinterpret_cast<const MSG*>(lParam);
      if (m && m->message >= WM_MOUSEFIRST && m->message <= WM_MOUSELAST) OnToolMouse(m->hwnd, m->message, m->lParam);
      return 0;
    }
    case TTM_UPDATETIPTEXTA: {
      const auto* ti = reinterpret_cast<const TOOLINFOA*>(lParam);
      Tool* t = ti ? FindTool(ti->hwnd, ti->uId) : nullptr;
      if (!t) return 0;
      t->text = FromAnsi(ti->lpszText);
      if (m_state == State::Shown && t->hwnd == m_curHwnd && t->id == m_curId) Show();
      return 0;
    }
    case TTM_GETTOOLCOUNT:
      return static_cast<LRESULT>(m_tools.size());
    case TTM_SETTIPBKCOLOR:
      m_backColor = static_cast<COLORREF>(wParam);
      InvalidateRect(m_hwnd, nullptr, TRUE);
      return 0;
    case TTM_SETTIPTEXTCOLOR:
      m_textColor = static_cast<COLORREF>(wParam);
      InvalidateRect(m_hwnd, nullptr, TRUE);
      return 0;
    case TTM_GETTIPBKCOLOR:
      return m_backColor;
    case TTM_GETTIPTEXTCOLOR:
      return m_textColor;
    case TTM_POP:
      if (m_state == State::Shown) {
        KillTimer(m_hwnd, kTimerAutopop);
        Hide();
        m_state = State::Popped;
      }
      return 0;
    case TTM_SETTITLEA:
      m_icon = wParam;
      m_title = FromAnsi(reinterpret_cast<const char*>(lParam));
      if (m_state == State::Shown) Show();
      return TRUE;
    default:
      return DefWindowProc(m_hwnd, msg, wParam, lParam);
  }
}

TooltipSnapshot TooltipWindow::Snapshot() const {
  TooltipSnapshot s;
  s.exists = true;
  s.balloon = Balloon();
  s.title = m_title;
  s.icon = m_icon;
  s.textColor = m_textColor;
  s.backColor = m_backColor;
  s.toolCount = static_cast<int>(m_tools.size());
  for (const Tool& t : m_tools)
    if (m_curHwnd == 0 || (t.hwnd == m_curHwnd && t.id == m_curId)) s.text = t.text;
  return s;
}

LRESULT TooltipClassProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  auto& tips = Tips();
  if (msg == WM_NCCREATE) {
    const auto* cs = reinterpret_cast<const CREATESTRUCTW*>(lParam);
    tips[hwnd] = std::make_unique<TooltipWindow>(hwnd, cs ? static_cast<DWORD>(cs->style) : 0);
  }
  auto it = tips.find(hwnd);
  if (it == tips.end()) return DefWindowProc(hwnd, msg, wParam, lParam);
  if (msg == WM_NCDESTROY) {
    // The tip's subclasses of its tools end with it.
    std::unique_ptr<TooltipWindow> gone = std::move(it->second);
    tips.erase(it);
    gone.reset();
    return DefWindowProc(hwnd, msg, wParam, lParam);
  }
  return it->second->Proc(msg, wParam, lParam);
}

}  // namespace

bool RegisterTooltipClass() {
  WNDCLASSEXW existing;
  if (GetClassInfoExW(0, kTooltipClassName, &existing)) return true;
  return RegisterWindowClass(kTooltipClassName, TooltipClassProc, CS_SAVEBITS) != 0;
}

TooltipSnapshot InspectTooltip(HWND tip) {
  auto it = Tips().find(tip);
  if (it == Tips().end() || !IsWindow(tip)) return {};
  return it->second->Snapshot();
}

}  // namespace mx::frame
