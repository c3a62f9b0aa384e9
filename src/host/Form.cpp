// The form: its window, its controls, focus and keyboard routing, and its life (load, show,
// hide, unload). Form files are read and written in FormLoad.cpp.
#include "host/Form.h"

#include <algorithm>
#include <cmath>

#include "host/ControlRegistry.h"
#include "host/Err.h"
#include "host/FormImpl.h"
#include "host/Screen.h"
#include "host/Strings.h"
#include "host/HostControls.h"
#include "host/IntrinsicControl.h"
#include "host/UserControl.h"
#include "platform/Gdi.h"
#include "platform/User.h"

namespace mx::host {

using namespace mx::platform;

namespace {

// The loaded forms of this thread, in load order.
std::vector<std::weak_ptr<Form>>& LoadedForms() {
  thread_local std::vector<std::weak_ptr<Form>> forms;
  return forms;
}

float TwipsPerPixelX() { return GetScreen().TwipsPerPixelX(); }
float TwipsPerPixelY() { return GetScreen().TwipsPerPixelY(); }
int ToPixelsX(float twips) { return static_cast<int>(std::lround(twips / TwipsPerPixelX())); }
int ToPixelsY(float twips) { return static_cast<int>(std::lround(twips / TwipsPerPixelY())); }

// Window styles of each BorderStyle: 0 none, 1 fixed single, 2 sizable, 3 fixed dialog, 4 fixed
// tool window, 5 sizable tool window.
void StylesFor(int16_t borderStyle, DWORD& style, DWORD& exStyle) {
  exStyle = 0;
  switch (borderStyle) {
    case 0: style = WS_POPUP; break;
    case 1: style = WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX; break;
    case 3: style = WS_CAPTION | WS_SYSMENU; exStyle = WS_EX_DLGMODALFRAME; break;
    case 4: style = WS_CAPTION | WS_SYSMENU; exStyle = WS_EX_TOOLWINDOW; break;
    case 5: style = WS_CAPTION | WS_SYSMENU | WS_THICKFRAME; exStyle = WS_EX_TOOLWINDOW; break;
    default: style = WS_OVERLAPPEDWINDOW; break;
  }
  style |= WS_CLIPCHILDREN;
}

UserControl* AsUserControl(Control* c) { return dynamic_cast<UserControl*>(c); }
// The host's own windowed controls (VB.TextBox) take the same steps as user controls.
IntrinsicControl* AsIntrinsic(Control* c) { return dynamic_cast<IntrinsicControl*>(c); }

}  // namespace

// ---- construction and the window ------------------------------------------------------------

Form::Form(String name, FormMode mode)
    : m_impl(std::make_unique<Impl>()), m_name(std::move(name)), m_mode(mode), m_font(std::make_shared<StdFont>()) {
  m_caption = m_name;
  // The window exists from the start (hidden), so that controls sited on the form get theirs.
  EnsureWindow();
}

Form::~Form() {
  // Whatever is left goes without events: the handlers may refer to what is gone. The window
  // stops answering first, since the controls' windows going moves the focus to it.
  if (m_hwnd) SetWindowLongPtr(m_hwnd, GWLP_USERDATA, 0);
  for (auto& c : m_controls)
    if (auto* uc = AsUserControl(c.get())) uc->SetSiteFilter(nullptr);
    else if (auto* ic = AsIntrinsic(c.get())) ic->SetSiteFilter(nullptr);
  std::vector<std::shared_ptr<Control>> controls;
  controls.swap(m_controls);
  for (auto& c : controls) c->m_form = nullptr;
  controls.clear();
  if (m_hwnd) {
    DestroyWindow(m_hwnd);
    m_hwnd = 0;
  }
  auto& forms = LoadedForms();
  std::erase_if(forms, [this](const std::weak_ptr<Form>& w) {
    auto f = w.lock();
    return !f || f.get() == this;
  });
}

void Form::EnsureWindow() {
  if (m_hwnd) return;
  Impl::RegisterClassOnce();
  DWORD style, exStyle;
  StylesFor(m_borderStyle, style, exStyle);
  RECT r{0, 0, ToPixelsX(m_impl->clientWidth), ToPixelsY(m_impl->clientHeight)};
  AdjustWindowRectEx(&r, style, FALSE, exStyle);
  const int x = ToPixelsX(m_impl->clientLeft), y = ToPixelsY(m_impl->clientTop);
  m_hwnd = CreateWindowExW(exStyle, Impl::kClassName, m_caption.c_str(), style, x, y, r.width(), r.height(), 0, 0, 0,
                           this);
  if (!m_hwnd) Raise(kErrOutOfMemory, m_name, u"The form's window could not be created");
  // Controls sited before the window existed (or after an unload) get theirs now.
  for (auto& c : m_controls)
    if (auto* uc = AsUserControl(c.get())) uc->CreateControlWindow(ContainerWindow(c->Container()));
    else if (auto* ic = AsIntrinsic(c.get())) ic->CreateControlWindow(ContainerWindow(c->Container()));
}

HWND Form::ContainerWindow(const Control* container) const {
  if (container && container->hWnd()) return container->hWnd();
  return m_hwnd;
}

void Form::Impl::RegisterClassOnce() {
  WNDCLASSEXW info;
  if (GetClassInfoExW(0, kClassName, &info)) return;
  RegisterWindowClass(kClassName, &Form::Impl::WindowProc, CS_DBLCLKS, 0, LoadCursorW(0, IDC_ARROW));
}

LRESULT Form::Impl::WindowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg == WM_NCCREATE) {
    auto* cs = reinterpret_cast<const CREATESTRUCTW*>(lParam);
    SetWindowLongPtr(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(cs ? cs->lpCreateParams : nullptr));
  }
  auto* form = reinterpret_cast<Form*>(GetWindowLongPtr(hwnd, GWLP_USERDATA));
  if (!form) return DefWindowProc(hwnd, msg, wParam, lParam);
  std::shared_ptr<Object> keep = form->weak_from_this().lock();
  switch (msg) {
    case WM_ERASEBKGND: {
      if (!wParam) return 0;
      RECT rc;
      GetClientRect(hwnd, &rc);
      const int32_t c = TranslateColor(form->m_backColor);
      HBRUSH brush = CreateSolidBrush(c < 0 ? 0 : static_cast<COLORREF>(c));
      FillRect(static_cast<HDC>(wParam), &rc, brush);
      DeleteObject(brush);
      return 1;
    }
    case WM_CLOSE:
      // The close box and Alt+F4 unload the form, which may refuse.
      OnErrorResumeNext([&] { form->Unload(vbFormControlMenu); });
      return 0;
    case WM_SIZE:
      if (form->m_loaded) OnErrorResumeNext([&] { form->Resize(); });
      return 0;
    case WM_ACTIVATE:
      if (LOWORD(wParam) == WA_INACTIVE) {
        OnErrorResumeNext([&] { form->Deactivate(); });
        return 0;
      }
      OnErrorResumeNext([&] { form->Activate(); });
      return DefWindowProc(hwnd, msg, wParam, lParam);
    case WM_SETFOCUS: {
      // While controls are hidden or go away the focus stays with the form.
      if (form->m_impl->holdFocus) return 0;
      // A form with controls never keeps the focus itself: it goes back to the control that had
      // it, or to the first one in tab order.
      HWND target = form->m_impl->lastFocus;
      if (!target || !IsWindow(target) || !IsChild(hwnd, target) || !IsWindowVisible(target) ||
          !IsWindowEnabled(target)) {
        Control* first = form->NextTabControl(nullptr, true);
        target = first ? first->hWnd() : 0;
      }
      if (target) platform::SetFocus(target);
      form->UpdateDisplayAsDefault();
      return 0;
    }
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
    case WM_CHAR:
    case WM_SYSCHAR:
      if (form->RouteKey(msg, wParam, lParam)) return 0;
      return DefWindowProc(hwnd, msg, wParam, lParam);
    case WM_NCDESTROY:
      SetWindowLongPtr(hwnd, GWLP_USERDATA, 0);
      if (form->m_hwnd == hwnd) form->m_hwnd = 0;
      return DefWindowProc(hwnd, msg, wParam, lParam);
    default:
      return DefWindowProc(hwnd, msg, wParam, lParam);
  }
}

// ---- controls ---------------------------------------------------------------------------------

std::shared_ptr<Control> Form::FindControl(StringView name, int32_t index) const {
  const String folded = FoldCase(name);
  for (const auto& c : m_controls)
    if (c->Index() == index && FoldCase(c->Name()) == folded) return c;
  return nullptr;
}

void Form::SiteControl(const std::shared_ptr<Control>& control, StringView name, int32_t index, Control* container) {
  if (!control) Raise(kErrObjectNotSet, m_name);
  if (name.empty()) Raise(kErrInvalidProcedureCall, m_name, u"A control needs a name");
  if (FindControl(name, index))
    Raise(727, m_name, u"There is already a control with the name '" + String(name) + u"'");
  if (control->m_form) Raise(kErrInvalidProcedureCall, String(name), u"The control is on a form already");
  control->m_name = String(name);
  control->m_index = index;
  control->m_form = this;
  control->m_container = container;
  // The next tab position, after every control already there.
  int16_t next = 0;
  for (const auto& c : m_controls) next = std::max<int16_t>(next, static_cast<int16_t>(c->m_tabIndex + 1));
  control->m_tabIndex = next;
  m_controls.push_back(control);

  if (auto* uc = AsUserControl(control.get())) {
    Control* raw = control.get();
    uc->SetSiteFilter([this, raw](uint32_t msg, uintptr_t w, intptr_t l) { return ControlKey(*raw, msg, w, l); });
    // Every event of the control reaches the form's sink with the control's name and index.
    uc->ConnectEventSink([this, raw](StringView eventName, std::span<Variant> args) {
      if (m_impl->sink) m_impl->sink(raw->Name(), raw->Index(), eventName, args);
    });
    if (m_hwnd) uc->CreateControlWindow(ContainerWindow(container));
  } else if (auto* ic = AsIntrinsic(control.get())) {
    Control* raw = control.get();
    ic->SetSiteFilter([this, raw](uint32_t msg, uintptr_t w, intptr_t l) { return ControlKey(*raw, msg, w, l); });
    ic->ConnectEventSink([this, raw](StringView eventName, std::span<Variant> args) {
      if (m_impl->sink) m_impl->sink(raw->Name(), raw->Index(), eventName, args);
    });
    if (m_hwnd) ic->CreateControlWindow(ContainerWindow(container));
  }
  control->SiteChanged();
}

std::shared_ptr<Control> Form::AddControl(StringView progId, StringView name, Control* container) {
  if (FindControl(name))
    Raise(727, m_name, u"There is already a control with the name '" + String(name) + u"'");
  RegisterHostControls();
  std::shared_ptr<Control> control = CreateControl(progId);
  EnsureWindow();
  SiteControl(control, name, -1, container);
  m_impl->addedByCode.push_back(control.get());
  if (auto* uc = AsUserControl(control.get())) {
    uc->LoadNew(m_mode == FormMode::Run);
    if (m_impl->shown) uc->ShowControl();
  } else if (auto* ic = AsIntrinsic(control.get())) {
    ic->LoadNew(m_mode == FormMode::Run);
    if (m_impl->shown) ic->ShowControl();
  }
  return control;
}

void Form::RemoveControl(StringView name) {
  std::shared_ptr<Control> control = FindControl(name);
  if (!control) Raise(730, m_name, u"Control '" + String(name) + u"' not found");
  auto& added = m_impl->addedByCode;
  auto it = std::find(added.begin(), added.end(), control.get());
  if (it == added.end())
    Raise(kErrInvalidProcedureCall, m_name, u"Only a control added by code can be removed");
  added.erase(it);
  if (auto* uc = AsUserControl(control.get())) {
    uc->SetSiteFilter(nullptr);
    uc->TerminateControl();
  } else if (auto* ic = AsIntrinsic(control.get())) {
    ic->SetSiteFilter(nullptr);
    ic->TerminateControl();
  }
  if (m_impl->lastFocus && m_impl->lastFocus == control->hWnd()) m_impl->lastFocus = 0;
  std::erase(m_controls, control);
  control->m_form = nullptr;
  RenumberTabIndexes();
  UpdateDisplayAsDefault();
}

// ---- tab order, focus and keys --------------------------------------------------------------------

std::vector<Control*> Form::TabOrder() const {
  std::vector<Control*> order;
  for (const auto& c : m_controls) order.push_back(c.get());
  std::stable_sort(order.begin(), order.end(), [](Control* a, Control* b) { return a->m_tabIndex < b->m_tabIndex; });
  return order;
}

void Form::RenumberTabIndexes() {
  int16_t i = 0;
  for (Control* c : TabOrder()) c->m_tabIndex = i++;
}

void Form::SetTabIndex(Control& control, int16_t value) {
  std::vector<Control*> order = TabOrder();
  std::erase(order, &control);
  const size_t at = std::min<size_t>(static_cast<size_t>(value), order.size());
  order.insert(order.begin() + static_cast<ptrdiff_t>(at), &control);
  int16_t i = 0;
  for (Control* c : order) c->m_tabIndex = i++;
}

bool Form::CanTakeFocus(const Control& c) const {
  const HWND h = c.hWnd();
  if (!h || !c.m_visible || !c.CanGetFocus() || !IsWindowEnabled(h)) return false;
  // The control's own window must be shown; the form's may still be on its way.
  return (GetWindowLongPtr(h, GWL_STYLE) & WS_VISIBLE) != 0;
}

Control* Form::NextTabControl(Control* from, bool forward) const {
  std::vector<Control*> order;
  for (Control* c : TabOrder())
    if (c->m_tabStop && CanTakeFocus(*c)) order.push_back(c);
  if (order.empty()) return nullptr;
  auto it = from ? std::find(order.begin(), order.end(), from) : order.end();
  if (it == order.end()) return forward ? order.front() : order.back();
  const size_t i = static_cast<size_t>(it - order.begin());
  const size_t n = order.size();
  return order[forward ? (i + 1) % n : (i + n - 1) % n];
}

Control* Form::ControlOfWindow(HWND hwnd) const {
  // The focus may be on a part of a control (a window inside it): the control is its ancestor.
  for (HWND h = hwnd; h && h != m_hwnd; h = GetParent(h))
    for (const auto& c : m_controls)
      if (c->hWnd() == h) return c.get();
  return nullptr;
}

std::shared_ptr<Control> Form::ActiveControl() const {
  Control* c = ControlOfWindow(GetFocus());
  if (!c) return nullptr;
  for (const auto& sc : m_controls)
    if (sc.get() == c) return sc;
  return nullptr;
}

namespace {

// Calls a control's AccessKeyPress as the host does: failures stay in Err.
void PressAccessKey(UserControl& uc, int16_t keyAscii, void (*call)(UserControl&, int16_t&)) {
  OnErrorResumeNext([&] { call(uc, keyAscii); });
}

}  // namespace

void Form::FireAccessKey(Control& target, int16_t keyAscii) {
  if (auto* uc = AsUserControl(&target)) {
    std::shared_ptr<Object> keep = uc->weak_from_this().lock();
    PressAccessKey(*uc, keyAscii, [](UserControl& u, int16_t& k) { u.UserControl_AccessKeyPress(k); });
  }
}

Control* Form::EnterTarget(Control* focused) const {
  if (auto* uc = AsUserControl(focused); uc && uc->DefaultCancel()) return focused;
  for (const auto& c : m_controls)
    if (c->m_default && c->hWnd() && IsWindowEnabled(c->hWnd()) && c->m_visible) return c.get();
  return nullptr;
}

bool Form::RouteKey(uint32_t msg, uintptr_t wParam, intptr_t lParam) {
  Control* focused = ControlOfWindow(GetFocus());
  Impl& im = *m_impl;
  if (msg == WM_CHAR) {
    // The character of a key the form took goes nowhere.
    if (im.swallowChar && wParam == im.swallowChar) {
      im.swallowChar = 0;
      return true;
    }
    return false;
  }
  if (msg == WM_SYSCHAR) {
    const char16_t ch = static_cast<char16_t>(wParam);
    const String key = FoldCase(String(1, ch));
    String lower(1, ch);
    for (auto& c : lower)
      if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c - u'A' + u'a');
    // The first control in tab order after the focused one whose access keys hold the letter,
    // so that two controls sharing a key take turns.
    std::vector<Control*> order = TabOrder();
    auto start = std::find(order.begin(), order.end(), focused);
    const size_t n = order.size();
    const size_t first = start == order.end() ? 0 : static_cast<size_t>(start - order.begin()) + 1;
    for (size_t k = 0; k < n; ++k) {
      Control* c = order[(first + k) % n];
      auto* uc = AsUserControl(c);
      if (!uc || !c->hWnd() || !IsWindowEnabled(c->hWnd()) || !c->m_visible) continue;
      if (FoldCase(uc->AccessKeys()).find(key) == String::npos) continue;
      if (CanTakeFocus(*c) && GetFocus() != c->hWnd()) platform::SetFocus(c->hWnd());
      FireAccessKey(*c, static_cast<int16_t>(lower[0]));
      return true;
    }
    return false;
  }
  if (msg != WM_KEYDOWN) return false;
  im.swallowChar = 0;
  const bool ctrl = GetKeyState(VK_CONTROL) < 0, alt = GetKeyState(VK_MENU) < 0;
  if (ctrl || alt) return false;
  switch (static_cast<int>(wParam)) {
    case VK_TAB: {
      const bool back = GetKeyState(VK_SHIFT) < 0;
      Control* next = NextTabControl(focused, !back);
      if (!next) return false;
      im.swallowChar = u'\t';
      if (next != focused) platform::SetFocus(next->hWnd());
      return true;
    }
    case VK_RETURN: {
      Control* target = EnterTarget(focused);
      if (!target) return false;
      im.swallowChar = u'\r';
      FireAccessKey(*target, 13);
      return true;
    }
    case VK_ESCAPE: {
      Control* target = nullptr;
      for (const auto& c : m_controls)
        if (c->m_cancel && c->hWnd() && IsWindowEnabled(c->hWnd()) && c->m_visible) target = c.get();
      if (!target) return false;
      im.swallowChar = 27;
      FireAccessKey(*target, 27);
      return true;
    }
    default:
      return false;
  }
}

bool Form::ControlKey(Control& control, uint32_t msg, uintptr_t wParam, intptr_t lParam) {
  if (msg == WM_SETFOCUS) {
    m_impl->lastFocus = control.hWnd();
    UpdateDisplayAsDefault();
    return false;
  }
  if (msg == WM_KILLFOCUS) {
    UpdateDisplayAsDefault();
    return false;
  }
  return RouteKey(msg, wParam, lParam);
}

void Form::UpdateDisplayAsDefault() {
  Control* focused = ControlOfWindow(GetFocus());
  auto* focusedUc = AsUserControl(focused);
  const bool focusIsDefaultCapable = focusedUc && focusedUc->DefaultCancel();
  // Copy: a handler of AmbientChanged may add or remove controls.
  std::vector<std::shared_ptr<Control>> controls = m_controls;
  for (const auto& c : controls) {
    auto* uc = AsUserControl(c.get());
    if (!uc) continue;
    const bool value = focusIsDefaultCapable ? c.get() == focused : c->m_default;
    uc->SetDisplayAsDefault(value);
  }
}

void Form::DefaultOrCancelChanged(Control& control, bool isDefault, bool value) {
  if (value) {
    for (const auto& c : m_controls) {
      if (c.get() == &control) continue;
      if (isDefault) c->m_default = false;
      else c->m_cancel = false;
    }
  }
  if (isDefault) UpdateDisplayAsDefault();
}

// ---- form properties -------------------------------------------------------------------------------

void Form::Caption(StringView value) {
  m_caption = String(value);
  if (m_hwnd) SetWindowTextW(m_hwnd, m_caption.c_str());
}

void Form::BackColor(OLE_COLOR value) {
  m_backColor = value;
  if (m_hwnd) InvalidateRect(m_hwnd, nullptr, TRUE);
  // Controls that show the container through them take the new colour on their next Cls.
  for (const auto& c : m_controls)
    if (auto* uc = AsUserControl(c.get())) {
      String name = u"BackColor";
      OnErrorResumeNext([&] { uc->UserControl_AmbientChanged(name); });
    }
}

void Form::ForeColor(OLE_COLOR value) { m_foreColor = value; }

void Form::Font(std::shared_ptr<StdFont> value) {
  if (!value) Raise(kErrInvalidPropertyValue, m_name, u"A font object is required");
  m_font = std::move(value);
}

float Form::Left() const {
  if (!m_hwnd) return m_impl->clientLeft;
  RECT r;
  GetWindowRect(m_hwnd, &r);
  return static_cast<float>(r.left) * TwipsPerPixelX();
}

float Form::Top() const {
  if (!m_hwnd) return m_impl->clientTop;
  RECT r;
  GetWindowRect(m_hwnd, &r);
  return static_cast<float>(r.top) * TwipsPerPixelY();
}

float Form::Width() const {
  if (!m_hwnd) return m_impl->clientWidth;
  RECT r;
  GetWindowRect(m_hwnd, &r);
  return static_cast<float>(r.width()) * TwipsPerPixelX();
}

float Form::Height() const {
  if (!m_hwnd) return m_impl->clientHeight;
  RECT r;
  GetWindowRect(m_hwnd, &r);
  return static_cast<float>(r.height()) * TwipsPerPixelY();
}

void Form::Move(float left, Variant top, Variant width, Variant height) {
  EnsureWindow();
  const float t = top.IsMissing() ? Top() : top.ToSingle();
  const float w = width.IsMissing() ? Width() : width.ToSingle();
  const float h = height.IsMissing() ? Height() : height.ToSingle();
  if (w < 0 || h < 0) Raise(kErrInvalidPropertyValue, m_name);
  SetWindowPos(m_hwnd, 0, ToPixelsX(left), ToPixelsY(t), ToPixelsX(w), ToPixelsY(h), SWP_NOZORDER | SWP_NOACTIVATE);
  RECT rc;
  GetClientRect(m_hwnd, &rc);
  m_impl->clientWidth = static_cast<float>(rc.width()) * TwipsPerPixelX();
  m_impl->clientHeight = static_cast<float>(rc.height()) * TwipsPerPixelY();
}

float Form::ScaleWidth() const {
  if (!m_hwnd) return m_impl->clientWidth;
  RECT rc;
  GetClientRect(m_hwnd, &rc);
  // Keep the twips that were set while they still round to the window's pixels.
  if (ToPixelsX(m_impl->clientWidth) == rc.width()) return m_impl->clientWidth;
  return static_cast<float>(rc.width()) * TwipsPerPixelX();
}

float Form::ScaleHeight() const {
  if (!m_hwnd) return m_impl->clientHeight;
  RECT rc;
  GetClientRect(m_hwnd, &rc);
  if (ToPixelsY(m_impl->clientHeight) == rc.height()) return m_impl->clientHeight;
  return static_cast<float>(rc.height()) * TwipsPerPixelY();
}

void Form::ClientSize(float width, float height) {
  if (width < 0 || height < 0) Raise(kErrInvalidPropertyValue, m_name);
  m_impl->clientWidth = width;
  m_impl->clientHeight = height;
  if (!m_hwnd) return;
  DWORD style = static_cast<DWORD>(GetWindowLongPtr(m_hwnd, GWL_STYLE));
  DWORD exStyle = static_cast<DWORD>(GetWindowLongPtr(m_hwnd, GWL_EXSTYLE));
  RECT r{0, 0, ToPixelsX(width), ToPixelsY(height)};
  AdjustWindowRectEx(&r, style, FALSE, exStyle);
  SetWindowPos(m_hwnd, 0, 0, 0, r.width(), r.height(), SWP_NOZORDER | SWP_NOMOVE | SWP_NOACTIVATE);
}

void Form::BorderStyle(int16_t value) {
  if (value < 0 || value > 5) Raise(kErrInvalidPropertyValue, m_name);
  m_borderStyle = value;
  if (!m_hwnd) return;
  DWORD style, exStyle;
  StylesFor(value, style, exStyle);
  const DWORD visible = static_cast<DWORD>(GetWindowLongPtr(m_hwnd, GWL_STYLE)) & WS_VISIBLE;
  SetWindowLongPtr(m_hwnd, GWL_STYLE, static_cast<LONG_PTR>(style | visible));
  SetWindowLongPtr(m_hwnd, GWL_EXSTYLE, static_cast<LONG_PTR>(exStyle));
  // The client area keeps its size; the frame grows or shrinks around it.
  ClientSize(m_impl->clientWidth, m_impl->clientHeight);
  SetWindowPos(m_hwnd, 0, 0, 0, 0, 0, SWP_NOZORDER | SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

bool Form::Visible() const { return m_hwnd && IsWindowVisible(m_hwnd); }

// ---- life ---------------------------------------------------------------------------------------

void Form::SetEventSink(FormEventSink sink) {
  m_impl->sink = std::move(sink);
  // The form's own events go to the same sink under the form's name.
  auto forward = [this](StringView eventName, std::span<Variant> args) {
    if (m_impl->sink) m_impl->sink(m_name, -1, eventName, args);
  };
  BindEventSinks(forward, u"Load", LoadEvent, u"Activate", Activate, u"Deactivate", Deactivate, u"Resize", Resize,
                 u"QueryUnload", QueryUnload, u"Unload", UnloadEvent, u"Terminate", Terminate);
}

void Form::Load() {
  EnsureWindow();
  if (m_loaded) return;
  m_loaded = true;
  if (auto self = std::dynamic_pointer_cast<Form>(weak_from_this().lock())) LoadedForms().push_back(self);
  if (!m_impl->loadRaised) {
    m_impl->loadRaised = true;
    OnErrorResumeNext([&] { LoadEvent(); });
  }
}

void Form::Show(int16_t modal, Form* owner) {
  if (modal != 0 && modal != 1) Raise(kErrInvalidProcedureCall, m_name);
  std::shared_ptr<Object> keep = weak_from_this().lock();
  Load();
  if (!m_loaded || !m_hwnd) return;  // the Load handler may have unloaded the form
  if (owner && owner->m_hwnd) SetWindowLongPtr(m_hwnd, GWLP_HWNDPARENT, static_cast<LONG_PTR>(owner->m_hwnd));
  m_impl->shown = true;
  std::vector<std::shared_ptr<Control>> controls = m_controls;
  for (const auto& c : controls)
    if (auto* uc = AsUserControl(c.get())) uc->ShowControl();
    else if (auto* ic = AsIntrinsic(c.get())) ic->ShowControl();
  if (!m_hwnd) return;
  ShowWindow(m_hwnd, SW_SHOW);
  SetActiveWindow(m_hwnd);
  if (!m_hwnd) return;
  RedrawWindow(m_hwnd, nullptr, 0, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  // The first control in tab order takes the focus when none of the form's has it.
  if (m_hwnd && !ControlOfWindow(GetFocus())) {
    if (Control* first = NextTabControl(nullptr, true)) platform::SetFocus(first->hWnd());
  }
  UpdateDisplayAsDefault();
  if (modal == 1 && m_hwnd) RunModal(owner);
}

void Form::RunModal(Form* owner) {
  // Every other form of the thread is disabled while this one runs, as the host's modal forms
  // work; each gets its state back afterwards.
  std::vector<std::pair<HWND, bool>> disabled;
  for (auto& weak : LoadedForms())
    if (auto f = weak.lock(); f && f.get() != this && f->m_hwnd && IsWindowEnabled(f->m_hwnd)) {
      disabled.emplace_back(f->m_hwnd, true);
      EnableWindow(f->m_hwnd, FALSE);
    }
  m_impl->modalRunning = true;
  std::shared_ptr<Object> keep = weak_from_this().lock();
  MSG msg;
  while (m_loaded && m_hwnd && IsWindowVisible(m_hwnd)) {
    if (!GetMessageW(&msg, 0, 0, 0)) {
      // WM_QUIT is left for the outer loop; an exhausted queue ends the loop instead of hanging.
      if (msg.message == WM_QUIT) PostQuitMessage(static_cast<int>(msg.wParam));
      break;
    }
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
  m_impl->modalRunning = false;
  for (auto& [hwnd, wasEnabled] : disabled)
    if (IsWindow(hwnd)) EnableWindow(hwnd, TRUE);
  if (owner && owner->m_hwnd && IsWindowVisible(owner->m_hwnd)) SetActiveWindow(owner->m_hwnd);
}

void Form::Hide() {
  if (!m_hwnd) return;
  m_impl->shown = false;
  m_impl->holdFocus = true;
  std::vector<std::shared_ptr<Control>> controls = m_controls;
  for (const auto& c : controls)
    if (auto* uc = AsUserControl(c.get())) uc->HideControl();
    else if (auto* ic = AsIntrinsic(c.get())) ic->HideControl();
  if (m_hwnd) ShowWindow(m_hwnd, SW_HIDE);
  m_impl->holdFocus = false;
}

bool Form::Unload(int16_t unloadMode) {
  if (!m_loaded && !m_hwnd) return true;
  std::shared_ptr<Object> keep = weak_from_this().lock();
  int16_t cancel = 0;
  int16_t mode = unloadMode;
  OnErrorResumeNext([&] { QueryUnload(cancel, mode); });
  if (cancel != 0) return false;
  OnErrorResumeNext([&] { UnloadEvent(cancel); });
  if (cancel != 0) return false;
  // Controls hear Hide (where shown), then Terminate; their windows go before the form's.
  m_impl->holdFocus = true;
  std::vector<std::shared_ptr<Control>> controls = m_controls;
  for (const auto& c : controls)
    if (auto* uc = AsUserControl(c.get())) uc->HideControl();
    else if (auto* ic = AsIntrinsic(c.get())) ic->HideControl();
  for (const auto& c : controls)
    if (auto* uc = AsUserControl(c.get())) {
      uc->SetSiteFilter(nullptr);
      uc->TerminateControl();
    } else if (auto* ic = AsIntrinsic(c.get())) {
      ic->SetSiteFilter(nullptr);
      ic->TerminateControl();
    }
  for (const auto& c : controls) c->m_form = nullptr;
  m_controls.clear();
  m_impl->addedByCode.clear();
  m_impl->controlHostLines.clear();
  m_impl->lastFocus = 0;
  m_impl->shown = false;
  m_impl->loadRaised = false;
  if (m_hwnd) {
    HWND hwnd = m_hwnd;
    m_hwnd = 0;
    SetWindowLongPtr(hwnd, GWLP_USERDATA, 0);
    DestroyWindow(hwnd);
  }
  m_loaded = false;
  m_impl->holdFocus = false;
  std::erase_if(LoadedForms(), [this](const std::weak_ptr<Form>& w) {
    auto f = w.lock();
    return !f || f.get() == this;
  });
  return true;
}

std::vector<std::shared_ptr<Form>> Forms() {
  std::vector<std::shared_ptr<Form>> out;
  for (auto& weak : LoadedForms())
    if (auto f = weak.lock()) out.push_back(std::move(f));
  return out;
}

// ---- late binding ---------------------------------------------------------------------------------

Variant Form::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  const String member = FoldCase(name);
  const bool let = kind == CallKind::Let || kind == CallKind::Set;
  auto value = [&]() -> const Variant& {
    if (args.empty()) Raise(kErrWrongArgumentCount, m_name);
    return args.back();
  };
  if (member == u"NAME") return m_name;
  if (member == u"HWND") return static_cast<int32_t>(m_hwnd);
  if (member.empty() || member == u"CAPTION") {
    if (let) Caption(value().ToString());
    return let ? Variant() : Variant(m_caption);
  }
  if (member == u"BACKCOLOR") {
    if (let) BackColor(value().ToLong());
    return let ? Variant() : Variant(m_backColor);
  }
  if (member == u"FORECOLOR") {
    if (let) ForeColor(value().ToLong());
    return let ? Variant() : Variant(m_foreColor);
  }
  if (member == u"FONT") {
    if (let) Font(std::dynamic_pointer_cast<StdFont>(value().ToObject()));
    return let ? Variant() : Variant(m_font);
  }
  if (member == u"LEFT") return Left();
  if (member == u"TOP") return Top();
  if (member == u"WIDTH") return Width();
  if (member == u"HEIGHT") return Height();
  if (member == u"SCALEWIDTH") return ScaleWidth();
  if (member == u"SCALEHEIGHT") return ScaleHeight();
  if (member == u"VISIBLE") {
    if (let) {
      if (value().ToBoolean()) Show();
      else Hide();
      return {};
    }
    return Visible();
  }
  if (member == u"BORDERSTYLE") return m_borderStyle;
  if (member == u"SHOW") {
    const Variant& modal = ArgumentAt(args, 0);
    Show(modal.IsMissing() ? int16_t{0} : modal.ToInteger());
    return {};
  }
  if (member == u"HIDE") {
    Hide();
    return {};
  }
  if (member == u"MOVE") {
    if (args.empty()) Raise(kErrWrongArgumentCount, m_name);
    Move(args[0].ToSingle(), ArgumentAt(args, 1), ArgumentAt(args, 2), ArgumentAt(args, 3));
    return {};
  }
  if (member == u"ACTIVECONTROL") {
    auto c = ActiveControl();
    return c ? Variant(c) : Variant::Nothing();
  }
  // A control by name; a control array member by name with its index as the argument.
  const Variant& index = ArgumentAt(args, 0);
  if (auto c = FindControl(name, index.IsMissing() ? -1 : index.ToLong())) return Variant(c);
  return Object::Invoke(name, kind, args);
}

}  // namespace mx::host
