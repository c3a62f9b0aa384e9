// The user control's host services: its window and surfaces, colours, font and pointer, the
// persistent image, and the lifecycle calls. The translation of window messages into the
// UserControl_... handlers lives in UserControlWindow.cpp.
#include "host/UserControl.h"

#include <algorithm>
#include <cmath>

#include "host/Err.h"
#include "host/Form.h"
#include "host/Screen.h"
#include "host/Strings.h"
#include "host/UserControlImpl.h"
#include "platform/Gdi.h"
#include "platform/HandleTable.h"
#include "platform/User.h"

namespace mx::host {

using namespace mx::platform;

namespace {

int TwipsToPixels(float twips, float twipsPerPixel) {
  return static_cast<int>(std::lround(twips / twipsPerPixel));
}

}  // namespace

UserControl::UserControl() : m_impl(std::make_unique<Impl>()), m_font(std::make_shared<StdFont>()) {
  WatchFont();
}

UserControl::~UserControl() {
  *m_impl->alive = false;
  // No handler runs from here on: the derived part is gone already.
  if (m_font && m_impl->fontConnection) m_font->FontChanged.disconnect(m_impl->fontConnection);
  ReleaseWindowResources();
}

// ---- window and surfaces ------------------------------------------------------------------------

void UserControl::EnsureWindow() const {
  if (!m_hwnd && !m_terminated) const_cast<UserControl*>(this)->CreateControlWindow(0);
}

void UserControl::CreateControlWindow(HWND parentWindow) {
  if (m_terminated) return;
  if (m_hwnd) {
    // Already made (alone, on the desktop): move it to the new container.
    if (parentWindow && GetParent(m_hwnd) != parentWindow) {
      SetWindowLongPtr(m_hwnd, GWL_STYLE, (GetWindowLongPtr(m_hwnd, GWL_STYLE) & ~static_cast<LONG_PTR>(WS_POPUP)) |
                                              static_cast<LONG_PTR>(WS_CHILD | WS_CLIPSIBLINGS));
      SetParent(m_hwnd, parentWindow);
      ApplyGeometry();
    }
    return;
  }
  Impl::RegisterClassOnce();
  const float tpp = GetScreen().TwipsPerPixelX();
  const float tppY = GetScreen().TwipsPerPixelY();
  const int x = TwipsToPixels(m_left, tpp), y = TwipsToPixels(m_top, tppY);
  const int w = std::max(0, TwipsToPixels(m_width, tpp)), h = std::max(0, TwipsToPixels(m_height, tppY));
  const DWORD style = parentWindow ? (WS_CHILD | WS_CLIPSIBLINGS) : WS_POPUP;
  const String title = m_name;
  HWND hwnd = CreateWindowExW(0, Impl::kClassName, title.c_str(), style, x, y, w, h, parentWindow, 0, 0, this);
  if (!hwnd) Raise(kErrOutOfMemory, u"UserControl", u"The control's window could not be created");
  m_hwnd = hwnd;
  if (!m_enabled) EnableWindow(hwnd, FALSE);
  m_impl->windowDC = GetDC(hwnd);
  ApplyDCState(m_impl->windowDC);
  RECT rc;
  GetClientRect(hwnd, &rc);
  ResizeImage(rc.width(), rc.height());
}

void UserControl::ReleaseWindowResources() {
  Impl& im = *m_impl;
  if (im.imageDC) {
    SelectObject(im.imageDC, im.oldImageBitmap);
    SelectObject(im.imageDC, im.oldImageFont);
    DeleteDC(im.imageDC);
    im.imageDC = 0;
  }
  if (im.imageBitmap) {
    DeleteObject(im.imageBitmap);
    im.imageBitmap = 0;
  }
  if (m_hwnd) {
    HWND hwnd = m_hwnd;
    if (im.windowDC) {
      SelectObject(im.windowDC, im.oldWindowFont);
      ReleaseDC(hwnd, im.windowDC);
      im.windowDC = 0;
    }
    SetWindowLongPtr(hwnd, GWLP_USERDATA, 0);
    m_hwnd = 0;
    DestroyWindow(hwnd);
  }
  if (im.hfont) {
    DeleteObject(im.hfont);
    im.hfont = 0;
  }
  if (im.customCursor) {
    if (im.ownsCustomCursor) DestroyCursor(im.customCursor);
    im.customCursor = 0;
    im.ownsCustomCursor = false;
    im.cursorPicture.reset();
  }
}

COLORREF UserControl::ResolvedBackColor() const {
  const int32_t c = TranslateColor(m_backColor);
  return c < 0 ? RGB(0, 0, 0) : static_cast<COLORREF>(c);
}

void UserControl::ApplyDCState(HDC dc) {
  if (!dc) return;
  const int32_t fore = TranslateColor(m_foreColor);
  SetTextColor(dc, fore < 0 ? 0 : static_cast<COLORREF>(fore));
  SetBkColor(dc, ResolvedBackColor());
  // The host's FontTransparent is True by default: text leaves what is beneath it.
  SetBkMode(dc, TRANSPARENT);
  if (!m_impl->hfont) {
    LOGFONTW lf = m_font->ToLogFont(GetScreenDpi());
    m_impl->hfont = CreateFontIndirectW(&lf);
  }
  HGDIOBJ old = SelectObject(dc, m_impl->hfont);
  // Remember what the DC had before our first font, to give it back when the DC goes.
  if (dc == m_impl->imageDC && !m_impl->oldImageFont) m_impl->oldImageFont = old;
  if (dc == m_impl->windowDC && !m_impl->oldWindowFont) m_impl->oldWindowFont = old;
}

void UserControl::FillBackground(HDC dc, int width, int height) {
  RECT rc{0, 0, width, height};
  if (m_backStyle == 0 && m_hwnd) {
    // Transparent: the container paints its own background into the surface, shifted so that
    // its client coordinates land where the control sits on it.
    HWND parent = GetParent(m_hwnd);
    if (parent && (GetWindowLongPtr(m_hwnd, GWL_STYLE) & WS_CHILD)) {
      RECT wr;
      GetWindowRect(m_hwnd, &wr);
      POINT origin{wr.left, wr.top};
      ScreenToClient(parent, &origin);
      POINT oldOrg;
      SetViewportOrgEx(dc, -origin.x, -origin.y, &oldOrg);
      const LRESULT painted = SendMessageW(parent, WM_ERASEBKGND, dc, 0);
      SetViewportOrgEx(dc, oldOrg.x, oldOrg.y, nullptr);
      if (painted) return;
    }
  }
  HBRUSH brush = CreateSolidBrush(ResolvedBackColor());
  FillRect(dc, &rc, brush);
  DeleteObject(brush);
}

void UserControl::ResizeImage(int width, int height) {
  Impl& im = *m_impl;
  width = std::max(width, 1);
  height = std::max(height, 1);
  if (im.imageDC && im.imageWidth == width && im.imageHeight == height) return;
  HDC dc = CreateCompatibleDC(0);
  HBITMAP bmp = CreateCompatibleBitmap(0, width, height);
  if (!dc || !bmp) {
    if (dc) DeleteDC(dc);
    if (bmp) DeleteObject(bmp);
    return;
  }
  HGDIOBJ oldBmp = SelectObject(dc, bmp);
  FillBackground(dc, width, height);
  // What was drawn stays where it was; a larger image shows the background around it.
  if (im.imageDC) BitBlt(dc, 0, 0, im.imageWidth, im.imageHeight, im.imageDC, 0, 0, SRCCOPY);
  if (im.imageDC) {
    SelectObject(im.imageDC, im.oldImageBitmap);
    SelectObject(im.imageDC, im.oldImageFont);
    DeleteDC(im.imageDC);
    DeleteObject(im.imageBitmap);
  }
  im.imageDC = dc;
  im.imageBitmap = bmp;
  im.oldImageBitmap = oldBmp;
  im.oldImageFont = 0;
  im.imageWidth = width;
  im.imageHeight = height;
  ApplyDCState(dc);
}

void UserControl::PresentImage() {
  Impl& im = *m_impl;
  if (!m_hwnd || !im.imageDC || !im.windowDC || !IsWindowVisible(m_hwnd)) return;
  RECT rc;
  GetClientRect(m_hwnd, &rc);
  BitBlt(im.windowDC, 0, 0, rc.width(), rc.height(), im.imageDC, 0, 0, SRCCOPY);
}

platform::HDC UserControl::hDC() const {
  EnsureWindow();
  return m_autoRedraw ? m_impl->imageDC : m_impl->windowDC;
}

// ---- colours, style, pointer, font ---------------------------------------------------------------

void UserControl::BackColor(OLE_COLOR value) {
  m_backColor = value;
  ApplyDCState(m_impl->imageDC);
  ApplyDCState(m_impl->windowDC);
}

void UserControl::ForeColor(OLE_COLOR value) {
  m_foreColor = value;
  ApplyDCState(m_impl->imageDC);
  ApplyDCState(m_impl->windowDC);
}

void UserControl::BackStyle(int16_t value) {
  if (value != 0 && value != 1) Raise(kErrInvalidPropertyValue, u"UserControl");
  if (value == m_backStyle) return;
  m_backStyle = value;
  // The persistent image's ground follows the style at once: a control that turns transparent
  // shows its container from now on, not the colour its image was first cleared to.
  Impl& im = *m_impl;
  if (im.imageDC) {
    FillBackground(im.imageDC, im.imageWidth, im.imageHeight);
    if (m_hwnd) InvalidateRect(m_hwnd, nullptr, FALSE);
  }
}

void UserControl::Enabled(bool value) {
  m_enabled = value;
  if (m_hwnd) EnableWindow(m_hwnd, value ? TRUE : FALSE);
}

void UserControl::MousePointer(int16_t value) {
  if ((value < 0 || value > 15) && value != vbCustom) Raise(kErrInvalidPropertyValue, u"UserControl");
  m_mousePointer = value;
}

void UserControl::MouseIcon(std::shared_ptr<StdPicture> value) {
  // An empty picture is the same as Nothing.
  if (value && value->IsEmpty()) value.reset();
  m_mouseIcon = std::move(value);
}

void UserControl::WatchFont() {
  m_impl->fontConnection = m_font->FontChanged.connect([this](const String&) { FontDescriptionChanged(); });
}

void UserControl::FontDescriptionChanged() {
  Impl& im = *m_impl;
  LOGFONTW lf = m_font->ToLogFont(GetScreenDpi());
  HFONT next = CreateFontIndirectW(&lf);
  if (!next) return;
  if (im.imageDC) SelectObject(im.imageDC, next);
  if (im.windowDC) SelectObject(im.windowDC, next);
  if (im.hfont) DeleteObject(im.hfont);
  im.hfont = next;
}

void UserControl::Font(std::shared_ptr<StdFont> value) {
  if (!value) Raise(kErrInvalidPropertyValue, u"UserControl", u"A font object is required");
  if (m_font && m_impl->fontConnection) m_font->FontChanged.disconnect(m_impl->fontConnection);
  // The object is shared with whoever set it, as the host's Set does: its later changes show.
  m_font = std::move(value);
  WatchFont();
  FontDescriptionChanged();
}

void UserControl::FontBold(bool value) { m_font->Bold(value); }
void UserControl::FontItalic(bool value) { m_font->Italic(value); }
void UserControl::FontSize(float value) { m_font->Size(static_cast<double>(value)); }
void UserControl::FontStrikethru(bool value) { m_font->Strikethrough(value); }
void UserControl::FontUnderline(bool value) { m_font->Underline(value); }

// ---- the persistent image --------------------------------------------------------------------------

void UserControl::AutoRedraw(bool value) {
  if (m_autoRedraw == value) return;
  m_autoRedraw = value;
  EnsureWindow();
  if (value) {
    // Drawing goes to the image from now on; the window catches up on its next paint.
    if (m_hwnd) InvalidateRect(m_hwnd, nullptr, FALSE);
  } else {
    // The image becomes what the window shows, at once, without a Paint event.
    PresentImage();
    if (m_hwnd) ValidateRect(m_hwnd, nullptr);
  }
}

void UserControl::Cls() {
  EnsureWindow();
  Impl& im = *m_impl;
  if (m_autoRedraw) {
    if (im.imageDC) FillBackground(im.imageDC, im.imageWidth, im.imageHeight);
    if (m_hwnd) InvalidateRect(m_hwnd, nullptr, FALSE);
  } else if (im.windowDC && m_hwnd) {
    // Clears what was drawn on the window since; the image beneath is what a repaint brings.
    RECT rc;
    GetClientRect(m_hwnd, &rc);
    FillBackground(im.windowDC, rc.width(), rc.height());
  }
}

void UserControl::PaintPicture(const StdPicture& picture, float x1, float y1, Variant width1, Variant height1,
                               Variant x2, Variant y2, Variant width2, Variant height2) {
  const uint32_t handle = picture.Handle();
  if (!handle) return;
  HDC dc = hDC();
  if (!dc) return;
  // The picture's own size in pixels, from the decoded handle when it tells it.
  int pw = picture.PixelWidth(), ph = picture.PixelHeight();
  const bool isIcon = TypeOfHandle(handle) == HandleType::Icon || TypeOfHandle(handle) == HandleType::Cursor;
  if (isIcon) {
    SIZE sz;
    if (GetIconSize(handle, &sz)) {
      pw = sz.cx;
      ph = sz.cy;
    }
  } else {
    BITMAP bm;
    if (GetObjectW(handle, sizeof(bm), &bm)) {
      pw = bm.bmWidth;
      ph = bm.bmHeight;
    }
  }
  auto pick = [](const Variant& v, float fallback) { return v.IsMissing() ? fallback : v.ToSingle(); };
  const int dx = static_cast<int>(std::lround(x1)), dy = static_cast<int>(std::lround(y1));
  const int dw = static_cast<int>(std::lround(pick(width1, static_cast<float>(pw))));
  const int dh = static_cast<int>(std::lround(pick(height1, static_cast<float>(ph))));
  const int sx = static_cast<int>(std::lround(pick(x2, 0.0f))), sy = static_cast<int>(std::lround(pick(y2, 0.0f)));
  const int sw = static_cast<int>(std::lround(pick(width2, static_cast<float>(pw))));
  const int sh = static_cast<int>(std::lround(pick(height2, static_cast<float>(ph))));
  if (dw == 0 || dh == 0 || sw == 0 || sh == 0) return;
  if (isIcon) {
    // Icons draw whole, at the destination size; a mirrored size draws nothing.
    if (dw > 0 && dh > 0) DrawIconEx(dc, dx, dy, handle, dw, dh, 0, 0, DI_NORMAL);
  } else {
    HDC src = CreateCompatibleDC(0);
    HGDIOBJ old = SelectObject(src, handle);
    StretchBlt(dc, dx, dy, dw, dh, src, sx, sy, sw, sh, SRCCOPY);
    SelectObject(src, old);
    DeleteDC(src);
  }
  if (m_autoRedraw && m_hwnd) InvalidateRect(m_hwnd, nullptr, FALSE);
}

void UserControl::Refresh() {
  EnsureWindow();
  if (!m_hwnd) return;
  InvalidateRect(m_hwnd, nullptr, FALSE);
  UpdateWindow(m_hwnd);
}

// ---- size and scale -------------------------------------------------------------------------------

void UserControl::ApplyGeometry() {
  if (!m_hwnd) return;
  const float tpp = GetScreen().TwipsPerPixelX();
  const float tppY = GetScreen().TwipsPerPixelY();
  const int x = TwipsToPixels(m_left, tpp), y = TwipsToPixels(m_top, tppY);
  const int w = std::max(0, TwipsToPixels(m_width, tpp)), h = std::max(0, TwipsToPixels(m_height, tppY));
  // The extender values stand as set; the WM_SIZE this brings must not round them again.
  m_impl->settingGeometry = true;
  SetWindowPos(m_hwnd, 0, x, y, w, h, SWP_NOZORDER | SWP_NOACTIVATE);
  m_impl->settingGeometry = false;
}

void UserControl::ApplyVisible() {
  if (m_visible) {
    if (m_impl->showRequested && !m_impl->shown) DoShow();
  } else if (m_impl->shown) {
    DoHide();
  }
}

float UserControl::ScaleWidth() const {
  if (!m_hwnd) return std::round(m_width / GetScreen().TwipsPerPixelX());
  RECT rc;
  GetClientRect(m_hwnd, &rc);
  return static_cast<float>(rc.width());
}

float UserControl::ScaleHeight() const {
  if (!m_hwnd) return std::round(m_height / GetScreen().TwipsPerPixelY());
  RECT rc;
  GetClientRect(m_hwnd, &rc);
  return static_cast<float>(rc.height());
}

namespace {
// The user control's own scale is pixels: its user scale (0) is pixels too.
int32_t FixedScale(int32_t mode) { return mode == vbUser ? vbPixels : mode; }
}  // namespace

float UserControl::ScaleX(double value, int32_t fromScale, int32_t toScale) const {
  return GetScreen().ScaleX(value, FixedScale(fromScale), FixedScale(toScale));
}

float UserControl::ScaleY(double value, int32_t fromScale, int32_t toScale) const {
  return GetScreen().ScaleY(value, FixedScale(fromScale), FixedScale(toScale));
}

// ---- container services -------------------------------------------------------------------------

std::vector<std::shared_ptr<Control>> UserControl::ParentControls() const {
  if (!m_form) return {};
  return m_form->Controls();
}

void UserControl::PropertyChanged(StringView propertyName) {
  m_changed.emplace_back(propertyName);
  if (m_form) m_form->m_dirty = true;
}

void UserControl::SetSiteFilter(SiteFilter filter) { m_impl->siteFilter = std::move(filter); }

void UserControl::SetDisplayAsDefault(bool value) {
  if (m_impl->displayAsDefault == value) return;
  m_impl->displayAsDefault = value;
  String name = u"DisplayAsDefault";
  m_impl->Guard([&] { UserControl_AmbientChanged(name); });
}

bool UserControl::IsShown() const { return m_impl->shown; }

// ---- lifecycle -----------------------------------------------------------------------------------

void UserControl::RunInitialize() {
  if (m_impl->initialized) return;
  m_impl->initialized = true;
  m_impl->Guard([&] { UserControl_Initialize(); });
}

void UserControl::FireResize() {
  // A Resize that changes the size sees no second Resize until it returns.
  if (m_impl->inResize || !m_impl->loaded) return;
  m_impl->inResize = true;
  std::shared_ptr<bool> alive = m_impl->alive;
  m_impl->Guard([&] { UserControl_Resize(); });
  if (*alive) m_impl->inResize = false;
}

void UserControl::LoadNew(bool userMode) {
  if (m_terminated) return;
  m_userMode = userMode;
  EnsureWindow();
  RunInitialize();
  m_impl->Guard([&] { UserControl_InitProperties(); });
  m_impl->loaded = true;
  FireResize();
}

void UserControl::LoadFrom(PropertyBag& bag, bool userMode) {
  if (m_terminated) return;
  m_userMode = userMode;
  EnsureWindow();
  RunInitialize();
  m_impl->Guard([&] { UserControl_ReadProperties(bag); });
  m_impl->loaded = true;
  FireResize();
}

void UserControl::SaveTo(PropertyBag& bag) {
  m_impl->Guard([&] { UserControl_WriteProperties(bag); });
  m_changed.clear();
}

void UserControl::DoShow() {
  if (!m_hwnd) return;
  ShowWindow(m_hwnd, SW_SHOWNA);
  m_impl->shown = true;
  std::shared_ptr<bool> alive = m_impl->alive;
  m_impl->Guard([&] { UserControl_Show(); });
  if (*alive && m_hwnd) UpdateWindow(m_hwnd);
}

void UserControl::DoHide() {
  if (m_hwnd) ShowWindow(m_hwnd, SW_HIDE);
  m_impl->shown = false;
  m_impl->Guard([&] { UserControl_Hide(); });
}

void UserControl::ShowControl() {
  if (m_terminated) return;
  EnsureWindow();
  m_impl->showRequested = true;
  if (m_visible && !m_impl->shown) DoShow();
}

void UserControl::HideControl() {
  m_impl->showRequested = false;
  if (m_impl->shown) DoHide();
}

void UserControl::TerminateControl() {
  if (m_terminated) return;
  std::shared_ptr<bool> alive = m_impl->alive;
  HideControl();
  if (!*alive) return;
  m_impl->Guard([&] { UserControl_Terminate(); });
  if (!*alive) return;
  m_terminated = true;
  m_impl->loaded = false;
  ReleaseWindowResources();
}

void UserControl::OLEDragOverControl(DataObject& Data, int32_t& Effect, int16_t Button, int16_t Shift, float X,
                                     float Y, int16_t State) {
  if (m_terminated) return;
  m_impl->Guard([&] { UserControl_OLEDragOver(Data, Effect, Button, Shift, X, Y, State); });
}

void UserControl::OLEDragDropControl(DataObject& Data, int32_t& Effect, int16_t Button, int16_t Shift, float X,
                                     float Y) {
  if (m_terminated) return;
  m_impl->Guard([&] { UserControl_OLEDragDrop(Data, Effect, Button, Shift, X, Y); });
}

// ---- ambient and extender ------------------------------------------------------------------------

bool AmbientProperties::UserMode() const { return m_owner.m_userMode; }

std::shared_ptr<StdFont> AmbientProperties::Font() const {
  if (m_owner.m_form && m_owner.m_form->Font()) return m_owner.m_form->Font()->Clone();
  return std::make_shared<StdFont>();
}

String AmbientProperties::DisplayName() const {
  String name = m_owner.Name();
  if (m_owner.Index() >= 0) name += u"(" + FromUtf8(std::to_string(m_owner.Index())) + u")";
  return name;
}

OLE_COLOR AmbientProperties::BackColor() const {
  return m_owner.m_form ? m_owner.m_form->BackColor() : vbButtonFace;
}

OLE_COLOR AmbientProperties::ForeColor() const {
  return m_owner.m_form ? m_owner.m_form->ForeColor() : vbButtonText;
}

bool AmbientProperties::DisplayAsDefault() const { return m_owner.m_impl->displayAsDefault; }

Variant AmbientProperties::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  const String member = FoldCase(name);
  if (kind == CallKind::Let || kind == CallKind::Set) Raise(kErrMemberNotSupported, u"AmbientProperties");
  if (member == u"USERMODE") return UserMode();
  if (member == u"FONT") return Variant(Font());
  if (member == u"DISPLAYNAME") return DisplayName();
  if (member == u"BACKCOLOR") return BackColor();
  if (member == u"FORECOLOR") return ForeColor();
  if (member == u"DISPLAYASDEFAULT") return DisplayAsDefault();
  return Object::Invoke(name, kind, args);
}

String ExtenderObject::TypeName() const {
  const String progId = m_control.ProgId();
  const size_t dot = progId.find(u'.');
  return dot == String::npos ? progId : progId.substr(dot + 1);
}

Variant ExtenderObject::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  // The site's members first, then the control's own, as the host's extender aggregates them.
  try {
    return m_control.Control::Invoke(name, kind, args);
  } catch (const RuntimeError& e) {
    if (e.Number() != kErrMemberNotSupported) throw;
  }
  return m_control.Invoke(name, kind, args);
}

// ---- late binding of the host members --------------------------------------------------------------

String UserControl::TypeName() const {
  const String progId = ProgId();
  const size_t dot = progId.find(u'.');
  return dot == String::npos ? progId : progId.substr(dot + 1);
}

Variant UserControl::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  const String member = FoldCase(name);
  const bool let = kind == CallKind::Let || kind == CallKind::Set;
  const char16_t* src = u"UserControl";
  auto value = [&]() -> const Variant& {
    if (args.empty()) Raise(kErrWrongArgumentCount, src);
    return args.back();
  };
  if (member == u"HWND") return static_cast<int32_t>(hWnd());
  if (member == u"HDC") return static_cast<int32_t>(hDC());
  if (member == u"BACKCOLOR") {
    if (let) BackColor(value().ToLong());
    return let ? Variant() : Variant(m_backColor);
  }
  if (member == u"FORECOLOR") {
    if (let) ForeColor(value().ToLong());
    return let ? Variant() : Variant(m_foreColor);
  }
  if (member == u"BACKSTYLE") {
    if (let) BackStyle(value().ToInteger());
    return let ? Variant() : Variant(m_backStyle);
  }
  if (member == u"ENABLED") {
    if (let) Enabled(value().ToBoolean());
    return let ? Variant() : Variant(m_enabled);
  }
  if (member == u"MOUSEPOINTER") {
    if (let) MousePointer(value().ToInteger());
    return let ? Variant() : Variant(m_mousePointer);
  }
  if (member == u"FONT") {
    if (let) Font(std::dynamic_pointer_cast<StdFont>(value().ToObject()));
    return let ? Variant() : Variant(m_font);
  }
  if (member == u"AUTOREDRAW") {
    if (let) AutoRedraw(value().ToBoolean());
    return let ? Variant() : Variant(m_autoRedraw);
  }
  if (member == u"SCALEWIDTH") return ScaleWidth();
  if (member == u"SCALEHEIGHT") return ScaleHeight();
  if (member == u"CLS") {
    Cls();
    return {};
  }
  if (member == u"REFRESH") {
    Refresh();
    return {};
  }
  return Control::Invoke(name, kind, args);
}

}  // namespace mx::host
