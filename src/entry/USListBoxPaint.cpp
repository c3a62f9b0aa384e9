// USListBox: the constituent windows, their layout, and the painting of the rows.
#include <algorithm>

#include "controls/ControlSupport.h"
#include "controls/USScrollBar.h"
#include "entry/USListBox.h"
#include "frame/Drawing.h"
#include "frame/Gradient.h"
#include "frame/Themes.h"
#include "host/TextBox.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIListImage.h"
#include "imagelist/APIListImages.h"
#include "platform/Cursor.h"
#include "platform/Gdi.h"
#include "platform/HandleTable.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/Messages.h"
#include "platform/Text.h"
#include "platform/Window.h"

namespace mx::entry {

using controls::detail::Step;
using namespace mx::platform;

namespace {

constexpr char16_t kPicClass[] = u"MorvantixListBoxPic";
// Posted to PicLST: bring the scroll bar up to date with the table.
constexpr UINT kMsgSyncBar = WM_USER + 1;
// The gap between an item's icon and its text.
constexpr int32_t kIconTextGap = 4;

}  // namespace

// The window procedure of PicLST: it shows the persistent image and hands mouse input to the
// list. The list is found through the window's user data, set right after creation.
struct ListBoxWindows {
  static LRESULT PicProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    auto* list = reinterpret_cast<USListBox*>(GetWindowLongPtr(hwnd, GWLP_USERDATA));
    if (!list) return DefWindowProc(hwnd, msg, wParam, lParam);
    const auto x = static_cast<float>(GET_X_LPARAM(lParam));
    const auto y = static_cast<float>(GET_Y_LPARAM(lParam));
    auto shift = [wParam] {
      int16_t s = 0;
      if (wParam & MK_SHIFT) s |= host::vbShiftMask;
      if (wParam & MK_CONTROL) s |= host::vbCtrlMask;
      if (GetKeyState(VK_MENU) < 0) s |= host::vbAltMask;
      return s;
    };
    auto buttons = [wParam] {
      int16_t b = 0;
      if (wParam & MK_LBUTTON) b |= host::vbLeftButton;
      if (wParam & MK_RBUTTON) b |= host::vbRightButton;
      if (wParam & MK_MBUTTON) b |= host::vbMiddleButton;
      return b;
    };
    switch (msg) {
      case WM_ERASEBKGND:
        return 1;
      case kMsgSyncBar:
        list->m_barSyncPosted = false;
        Step([&] { list->UpdateBar(); });
        return 0;
      case WM_PAINT: {
        PAINTSTRUCT ps{};
        HDC dc = BeginPaint(hwnd, &ps);
        Step([&] { list->PaintPicWindow(dc); });
        EndPaint(hwnd, &ps);
        return 0;
      }
      case WM_LBUTTONDOWN:
      case WM_RBUTTONDOWN:
      case WM_MBUTTONDOWN: {
        const int16_t button = msg == WM_LBUTTONDOWN   ? host::vbLeftButton
                               : msg == WM_RBUTTONDOWN ? host::vbRightButton
                                                       : host::vbMiddleButton;
        // The list takes the focus first, so that keys follow the click.
        const HWND control = list->UserControl::hWnd();
        if (control && GetFocus() != control && IsWindowEnabled(control)) SetFocus(control);
        SetCapture(hwnd);
        Step([&] { list->PicMouseDown(button, shift(), x, y); });
        return 0;
      }
      case WM_MOUSEMOVE:
        Step([&] { list->PicMouseMove(buttons(), shift(), x, y); });
        return 0;
      case WM_LBUTTONUP:
      case WM_RBUTTONUP:
      case WM_MBUTTONUP: {
        const int16_t button = msg == WM_LBUTTONUP   ? host::vbLeftButton
                               : msg == WM_RBUTTONUP ? host::vbRightButton
                                                     : host::vbMiddleButton;
        if (GetCapture() == hwnd) ReleaseCapture();
        Step([&] { list->PicMouseUp(button, shift(), x, y); });
        return 0;
      }
      case WM_LBUTTONDBLCLK:
        Step([&] { list->PicDblClick(); });
        return 0;
      case WM_MOUSEWHEEL:
        Step([&] { list->PicWheel(static_cast<int16_t>(HIWORD(wParam))); });
        return 0;
      case WM_MOUSELEAVE:
        list->m_hoverIndex = -1;
        return 0;
      case WM_SETCURSOR: {
        bool handled = false;
        Step([&] { handled = list->PicSetCursor(); });
        if (handled) return TRUE;
        // The list's own pointer, as the control's window would show it over itself.
        const HWND control = list->UserControl::hWnd();
        if (control && SendMessage(control, WM_SETCURSOR, control, lParam)) return TRUE;
        return DefWindowProc(hwnd, msg, wParam, lParam);
      }
      default:
        return DefWindowProc(hwnd, msg, wParam, lParam);
    }
  }
};

// ---- Children -----------------------------------------------------------------------------------

void USListBox::CreateChildren() {
  const HWND parent = UserControl::hWnd();
  if (!parent) return;
  if (!m_pic) {
    WNDCLASSEXW existing{};
    if (!GetClassInfoExW(0, kPicClass, &existing)) {
      RegisterWindowClass(kPicClass, &ListBoxWindows::PicProc, CS_DBLCLKS);
    }
    m_pic = CreateWindowExW(0, kPicClass, u"PicLST", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, 0, 0, 1, 1, parent,
                            1);
    if (m_pic) SetWindowLongPtr(m_pic, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }
  if (!m_bar) {
    auto bar = std::make_shared<controls::USScrollBar>();
    bar->CreateControlWindow(parent);
    bar->LoadNew(m_userMode);
    bar->Min(0);
    bar->Max(0);
    bar->SmallChange(1);
    bar->Change.connect([this] { OnBarChange(); });
    bar->Scroll.connect([this] { OnBarChange(); });
    m_bar = std::move(bar);
  }
}

void USListBox::DestroyChildren() {
  if (m_txtEdit) {
    Step([&] { m_txtEdit->TerminateControl(); });
    m_txtEdit.reset();
  }
  if (m_bar) {
    Step([&] { m_bar->TerminateControl(); });
    m_bar.reset();
  }
  if (m_picDC) {
    if (m_picOldFont) SelectObject(m_picDC, m_picOldFont);
    if (m_picOldBitmap) SelectObject(m_picDC, m_picOldBitmap);
    DeleteDC(m_picDC);
    m_picDC = 0;
    m_picOldBitmap = 0;
    m_picOldFont = 0;
  }
  if (m_picFont) {
    DeleteObject(m_picFont);
    m_picFont = 0;
  }
  if (m_picBitmap) {
    DeleteObject(m_picBitmap);
    m_picBitmap = 0;
  }
  m_picWidth = m_picHeight = 0;
  if (m_pic) {
    SetWindowLongPtr(m_pic, GWLP_USERDATA, 0);
    if (IsWindow(m_pic)) DestroyWindow(m_pic);
    m_pic = 0;
  }
  for (auto& [picture, cursor] : m_cursors) DestroyCursor(cursor);
  m_cursors.clear();
}

void USListBox::ApplyItemHeightAuto() {
  if (!m_itemHeightAuto) return;
  // The row follows the font: the height of a line of text and two pixels above and below.
  HDC dc = CreateCompatibleDC(0);
  if (!dc) return;
  const LOGFONTW lf = UserControl::Font()->ToLogFont();
  const HFONT font = CreateFontIndirectW(&lf);
  const HGDIOBJ old = SelectObject(dc, font);
  RECT rc{0, 0, 1000, 0};
  DrawTextW(dc, u"Ag", 2, &rc, DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
  SelectObject(dc, old);
  DeleteObject(font);
  DeleteDC(dc);
  m_itemHeight = std::max(1, static_cast<int32_t>(rc.bottom - rc.top) + 4);
}

void USListBox::LayoutChildren() {
  if (!m_pic || m_inLayout) return;
  m_inLayout = true;
  const bool barShown = m_bar && m_scrollBarWidth > 0 && m_count > VisibleRows();
  const int32_t barWidth = barShown ? std::min(m_scrollBarWidth, m_clientWidth) : 0;
  const int32_t picWidth = std::max(0, m_clientWidth - barWidth);
  RECT now{};
  GetWindowRect(m_pic, &now);
  if (now.right - now.left != picWidth || now.bottom - now.top != m_clientHeight)
    MoveWindow(m_pic, 0, 0, picWidth, m_clientHeight, FALSE);
  if (m_bar) {
    const HWND bar = m_bar->hWnd();
    if (barShown) {
      MoveWindow(bar, picWidth, 0, barWidth, m_clientHeight, TRUE);
      Step([&] { m_bar->ShowControl(); });
    } else {
      Step([&] { m_bar->HideControl(); });
    }
  }
  UpdateBar();
  m_inLayout = false;
}

void USListBox::UpdateBar() {
  m_topIndex = std::clamp(m_topIndex, 0, MaxTopIndex());
  // While painting is off (a fill) the bar waits: Redraw True lays everything out again.
  if (!m_bar || !m_redraw) return;
  const bool needed = m_scrollBarWidth > 0 && m_count > VisibleRows();
  const bool shown = (GetWindowLongPtr(m_bar->hWnd(), GWL_STYLE) & WS_VISIBLE) != 0;
  const int32_t max = MaxTopIndex();
  const int32_t page = std::max(1, VisibleRows());
  const bool enabled = UserControl::Enabled() && needed;
  m_inBarChange = true;
  // Each setter repaints the bar: only what differs is set.
  Step([&] {
    if (m_bar->Max() != max) m_bar->Max(max);
    if (m_bar->LargeChange() != page) m_bar->LargeChange(page);
    if (m_bar->Value() != m_topIndex) m_bar->Value(m_topIndex);
    if (m_bar->Enabled() != enabled) m_bar->Enabled(enabled);
  });
  m_inBarChange = false;
  // The bar comes and goes with the need for it, and PicLST takes its room.
  if (needed != shown && !m_inLayout) LayoutChildren();
}

void USListBox::SyncBarLater() {
  if (!m_bar || !m_redraw) return;
  const bool needed = m_scrollBarWidth > 0 && m_count > VisibleRows();
  const bool shown = (GetWindowLongPtr(m_bar->hWnd(), GWL_STYLE) & WS_VISIBLE) != 0;
  // The bar appearing changes PicLST's width: that cannot wait.
  if (needed != shown || !m_pic) {
    UpdateBar();
    return;
  }
  if (m_barSyncPosted) return;
  m_barSyncPosted = PostMessage(m_pic, kMsgSyncBar, 0, 0) != 0;
  if (!m_barSyncPosted) UpdateBar();
}

// ---- Surface ------------------------------------------------------------------------------------

void USListBox::EnsurePicSurface(int32_t width, int32_t height) {
  if (m_picDC && width == m_picWidth && height == m_picHeight) return;
  if (!m_picDC) m_picDC = CreateCompatibleDC(0);
  if (!m_picDC) return;
  BITMAPINFO bi{};
  bi.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
  bi.bmiHeader.biWidth = std::max(1, width);
  bi.bmiHeader.biHeight = std::max(1, height);
  bi.bmiHeader.biPlanes = 1;
  bi.bmiHeader.biBitCount = 32;
  bi.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  const HBITMAP bitmap = CreateDIBSection(m_picDC, &bi, DIB_RGB_COLORS, &bits, 0, 0);
  if (!bitmap) return;
  const HGDIOBJ old = SelectObject(m_picDC, bitmap);
  if (!m_picOldBitmap) m_picOldBitmap = old;
  if (m_picBitmap) DeleteObject(m_picBitmap);
  m_picBitmap = bitmap;
  m_picWidth = width;
  m_picHeight = height;
  SetBkMode(m_picDC, TRANSPARENT);
}

void USListBox::PaintPicWindow(HDC dc) {
  if (!m_picDC) return;
  BitBlt(dc, 0, 0, m_picWidth, m_picHeight, m_picDC, 0, 0, SRCCOPY);
}

void USListBox::LayoutRows() {
  const int32_t rows = VisibleRows();
  m_rows.resize(static_cast<size_t>(rows));
  for (int32_t k = 0; k < rows; ++k) {
    m_rows[static_cast<size_t>(k)] =
        RECT{m_itemOffset, k * m_itemHeight, m_picWidth - m_itemOffset, (k + 1) * m_itemHeight};
  }
}

RECT USListBox::RowRect(int32_t slot) const {
  if (slot < 0 || static_cast<size_t>(slot) >= m_rows.size()) return RECT{};
  return m_rows[static_cast<size_t>(slot)];
}

int32_t USListBox::LastVisibleIndex() const { return std::min(m_topIndex + VisibleRows() - 1, m_count - 1); }

// ---- Drawing ------------------------------------------------------------------------------------

void USListBox::DrawList() {
  if (!m_redraw || !m_pic) return;
  RECT client{};
  GetClientRect(m_pic, &client);
  EnsurePicSurface(client.right, client.bottom);
  if (!m_picDC) return;
  LayoutRows();
  // The font is made anew for each full paint, so that changes made to the font object itself
  // show; the rows of this paint and the single rows after it use it.
  const LOGFONTW lf = UserControl::Font()->ToLogFont();
  const HFONT font = CreateFontIndirectW(&lf);
  const HGDIOBJ oldFont = SelectObject(m_picDC, font);
  if (!m_picOldFont) m_picOldFont = oldFont;
  if (m_picFont) DeleteObject(m_picFont);
  m_picFont = font;
  const RECT all{0, 0, m_picWidth, m_picHeight};
  frame::FillRectColor(m_picDC, all, m_backColor);
  if (m_count > 0) {
    if (m_listGradient && m_backColor != m_backColorEvenRows) {
      frame::PaintGradientRect(m_picDC, 0, 0, m_picWidth, m_picHeight, m_backColor, m_backColorEvenRows,
                               m_gradientMode == Vertical ? frame::GradientTopToBottom : frame::GradientLeftToRight);
    }
    const int32_t first = m_topIndex;
    const int32_t last = LastVisibleIndex();
    for (int32_t i = first; i <= last; ++i) DrawItem(i, false);
    frame::FrameRectColor(m_picDC, all, m_borderColor);
  }
  InvalidateRect(m_pic, nullptr, FALSE);
}

// The back of one row: the list's gradient under it, the even-row colour, or the back colour.
void USListBox::PaintBack(const RECT& rc, int32_t index) {
  if (m_listGradient && m_backColor != m_backColorEvenRows) {
    const int saved = SaveDC(m_picDC);
    IntersectClipRect(m_picDC, rc.left, rc.top, rc.right, rc.bottom);
    frame::PaintGradientRect(m_picDC, 0, 0, m_picWidth, m_picHeight, m_backColor, m_backColorEvenRows,
                             m_gradientMode == Vertical ? frame::GradientTopToBottom : frame::GradientLeftToRight);
    RestoreDC(m_picDC, saved);
    return;
  }
  // Even rows counted from 1: the second, fourth... item.
  const bool even = (index % 2) == 1;
  frame::FillRectColor(m_picDC, rc, even && m_backColorEvenRowsEnabled ? m_backColorEvenRows : m_backColor);
}

void USListBox::DrawIcon(int32_t icon, const RECT& row, int32_t& textLeft) {
  if (icon < 0) return;
  auto list = BoundImages();
  if (!list) return;
  auto images = list->Images();
  if (!images) return;
  // Item icons count from 0; the image list counts from 1.
  const host::Variant index(icon + 1);
  std::shared_ptr<imagelist::APIListImage> image;
  Step([&] { image = images->Item(index); });
  if (!image) return;
  const int32_t w = image->Width();
  const int32_t h = image->Height();
  const int32_t x = row.left + m_itemTextLeft;
  const int32_t y = row.top + (row.bottom - row.top - h) / 2;
  Step([&] { images->Render(index, m_picDC, x, y, w, h); });
  textLeft = m_itemTextLeft + w + kIconTextGap;
}

void USListBox::DrawItem(int32_t xIndex, bool xClear) {
  if (!m_redraw || !m_picDC || xIndex < 0 || xIndex >= m_count) return;
  // 1. Only the rows in the window of visible rows.
  if (xIndex < m_topIndex || xIndex > LastVisibleIndex()) return;
  const int32_t slot = xIndex - m_topIndex;
  if (static_cast<size_t>(slot) >= m_rows.size()) return;
  const RECT rc = m_rows[static_cast<size_t>(slot)];
  const ItemRecord& item = m_items[static_cast<size_t>(xIndex)];
  ++m_rowsPainted;

  // 2. The back: cleared on demand; the even rows always take their own colour.
  const bool evenRow = (xIndex % 2) == 1 && m_backColorEvenRowsEnabled && !m_listGradient;
  if (xClear || evenRow) PaintBack(rc, xIndex);

  // 3. The separator, one pixel above the row, across the whole width.
  if (item.itemSeparatorLine && xIndex > 0 && rc.top > 0) {
    frame::FillRectColor(m_picDC, RECT{0, rc.top - 1, m_picWidth, rc.top}, kSeparatorColor);
  }

  // 4. The selection.
  const bool selected = m_selected[static_cast<size_t>(xIndex)] != 0 && item.itemEnabled;
  if (selected) {
    const int32_t w = rc.right - rc.left;
    const int32_t h = rc.bottom - rc.top;
    if (m_selectionPicture && !m_selectionPicture->IsEmpty()) {
      const HANDLE handle = m_selectionPicture->Handle();
      if (TypeOfHandle(handle) == HandleType::Bitmap) {
        BITMAP bm{};
        GetObjectW(handle, sizeof(bm), &bm);
        const HDC src = CreateCompatibleDC(m_picDC);
        const HGDIOBJ old = SelectObject(src, handle);
        SetStretchBltMode(m_picDC, COLORONCOLOR);
        StretchBlt(m_picDC, rc.left, rc.top, w, h, src, 0, 0, bm.bmWidth, bm.bmHeight, SRCCOPY);
        SelectObject(src, old);
        DeleteDC(src);
      } else if (TypeOfHandle(handle) == HandleType::Icon) {
        DrawIconEx(m_picDC, rc.left, rc.top, handle, w, h, 0, 0, DI_NORMAL);
      }
    } else {
      frame::FillRectColor(m_picDC, rc, m_itemSelectedBackColor);
      if (m_itemSelectedColor1 == m_itemSelectedColor2) {
        frame::FillRectColor(m_picDC, RECT{rc.left + 1, rc.top + 1, rc.right - 1, rc.bottom - 1},
                             m_itemSelectedColor1);
      } else if (w > 2 && h > 2) {
        frame::PaintGradientRect(m_picDC, rc.left + 1, rc.top + 1, w - 2, h - 2, m_itemSelectedColor1,
                                 m_itemSelectedColor2, frame::GradientTopToBottom);
      }
      frame::FrameRectColor(m_picDC, rc, m_itemSelectedBorderColor);
    }
  }

  // 5. The icon: the selected one while the item is current, when it has one.
  int32_t textLeft = m_itemTextLeft;
  const int32_t icon = xIndex == m_listIndex && item.itemIconSelected >= 0 ? item.itemIconSelected : item.itemIcon;
  DrawIcon(icon, rc, textLeft);

  // 6. The text.
  OLE_COLOR colour = item.itemForeColor == kListForeColor ? m_foreColor : static_cast<OLE_COLOR>(item.itemForeColor);
  if (!item.itemEnabled || !UserControl::Enabled()) {
    colour = frame::GetThemeColor(m_theme, frame::ThemeForeColorDisabled);
  } else if (selected) {
    colour = m_foreColorSelected;
  }
  UINT flags = DT_NOPREFIX;
  if (m_alignment == 1) flags |= DT_CENTER;
  else if (m_alignment == 2) flags |= DT_RIGHT;
  RECT textRect{rc.left + textLeft, rc.top, rc.right - 2, rc.bottom};
  const String text = ItemText(xIndex);
  if (m_wordWrap) {
    // Word-broken text is centred as a block: measure it first.
    RECT measure = textRect;
    frame::DrawTextAPI(m_picDC, text, measure, flags | DT_WORDBREAK | DT_CALCRECT);
    const int32_t blockHeight = std::min<int32_t>(measure.bottom - measure.top, rc.bottom - rc.top);
    textRect.top = rc.top + (rc.bottom - rc.top - blockHeight) / 2;
    textRect.bottom = textRect.top + blockHeight;
    frame::DrawTextColor(m_picDC, text, textRect, flags | DT_WORDBREAK, colour);
  } else {
    frame::DrawTextColor(m_picDC, text, textRect, flags | DT_SINGLELINE | DT_VCENTER, colour);
  }

  // In Multiple mode the current item shows the focus mark while the list has the focus.
  if (m_selectMode == Multiple && xIndex == m_listIndex && m_hasFocus) frame::DrawFocusMark(m_picDC, rc);

  if (xClear) {
    // A cleared row took the separator of the row below it with its last line of pixels.
    const int32_t next = xIndex + 1;
    if (next <= LastVisibleIndex() && m_items[static_cast<size_t>(next)].itemSeparatorLine) {
      frame::FillRectColor(m_picDC, RECT{0, rc.bottom - 1, m_picWidth, rc.bottom}, kSeparatorColor);
    }
    frame::FrameRectColor(m_picDC, RECT{0, 0, m_picWidth, m_picHeight}, m_borderColor);
    RECT dirty{0, std::max(0, static_cast<int>(rc.top) - 1), m_picWidth, rc.bottom};
    InvalidateRect(m_pic, &dirty, FALSE);
  }
}

}  // namespace mx::entry
