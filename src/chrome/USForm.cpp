// USForm: properties, persistence, lifecycle, the two deferring timers and the form-wide
// effects (fades, translucency, dim layers, placement).
#include "chrome/USForm.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "chrome/FormBack.h"
#include "controls/AboutBox.h"
#include "controls/ControlSupport.h"
#include "frame/APITooltip.h"
#include "frame/Drawing.h"
#include "frame/Gradient.h"
#include "host/Err.h"
#include "host/Form.h"
#include "host/Screen.h"
#include "image/API32bppDIB.h"
#include "platform/Clock.h"
#include "platform/User.h"

namespace mx::chrome {

using controls::detail::Step;
using controls::detail::BagReader;
using host::Variant;
using namespace platform;

namespace {

// One row of the look table: what setting Theme loads.
struct LookColours {
  OLE_COLOR fore, second, gradient1, gradient2, back, border;
  bool keepsBackAndBorder;
};

constexpr LookColours kLooks[7] = {
    {0x3B3B3B, 0xB75F31, 0xFFFFFF, 0xFCEDE1, 0, 0, true},
    {0x3B3B3B, 0xB75F31, 0xFFFFFF, 0xEDE8E5, 0, 0, true},
    {0xFFFFFF, 0xCBAE99, 0xF0F0F0, 0xF0F0F0, 0x9A572B, 0x7B3E00, false},
    {0xFFFFFF, 0xB3CD9F, 0xF0F0F0, 0xF0F0F0, 0x417400, 0x275C00, false},
    {0xFFFFFF, 0xA6BCF5, 0xF0F0F0, 0xF0F0F0, 0x5050C7, 0x32327B, false},
    {0xFFFFFF, 0xA6BCF5, 0xF0F0F0, 0xF0F0F0, 0x2A47B7, 0x1A2BA9, false},
    {0xFFFFFF, 0xC0C0C0, 0xF0F0F0, 0xF0F0F0, 0x453F38, 0x302C28, false},
};

// The parent form's own members that the host may lack (Icon, ShowInTaskBar): asked by name,
// with the given answer when the form has no such member.
Variant AskForm(host::Form* form, const char16_t* member, Variant fallback) {
  if (!form) return fallback;
  try {
    return form->Invoke(member, host::CallKind::Get, {});
  } catch (...) {
    return fallback;
  }
}

// The fades' pause between steps. On the virtual clock time moves on at once, so a fade reaches
// its end in the same tick count a person would wait for.
void PauseMilliseconds(uint32_t ms) {
  if (IsVirtualClock()) AdvanceVirtualClock(ms);
  else std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

}  // namespace

USForm::USForm() = default;

USForm::~USForm() {
  // The timers hold only a weak reference; a form dropped without Terminate still stops them.
  if (m_timerSubClass) KillTimer(0, m_timerSubClass);
  if (m_timerDestroy) KillTimer(0, m_timerDestroy);
}

host::Form* USForm::ParentForm() const { return Control::Parent(); }

// ---- Setters ----------------------------------------------------------------------------------
// Store, PropertyChanged, repaint when on the screen.

#define MX_USFORM_SETTER(Name, Type, member, Key, repaint) \
  void USForm::Name(Type value) {                          \
    member = value;                                        \
    PropertyChanged(Key);                                  \
    repaint;                                               \
  }

MX_USFORM_SETTER(AllowMove, bool, m_allowMove, u"AllowMove", (void)0)
MX_USFORM_SETTER(AllowResize, bool, m_allowResize, u"AllowResize", (void)0)
MX_USFORM_SETTER(BackColor, OLE_COLOR, m_backColor, u"BackColor", DrawForm())
MX_USFORM_SETTER(BackColorInactive, OLE_COLOR, m_backColorInactive, u"BackColorInactive", DrawForm())
MX_USFORM_SETTER(BackColorDisabled, OLE_COLOR, m_backColorDisabled, u"BackColorDisabled", DrawForm())
MX_USFORM_SETTER(BorderColor, OLE_COLOR, m_borderColor, u"BorderColor", DrawForm())
MX_USFORM_SETTER(BorderColorInactive, OLE_COLOR, m_borderColorInactive, u"BorderColorInactive", DrawForm())
MX_USFORM_SETTER(BorderColorDisabled, OLE_COLOR, m_borderColorDisabled, u"BorderColorDisabled", DrawForm())
MX_USFORM_SETTER(BorderWidth, int32_t, m_borderWidth, u"BorderWidth", DrawForm())
MX_USFORM_SETTER(CaptionOnCenter, bool, m_captionOnCenter, u"CaptionOnCenter", DrawForm())
MX_USFORM_SETTER(CaptionTop, int32_t, m_captionTop, u"CaptionTop", DrawForm())
MX_USFORM_SETTER(EnableCloseButton, bool, m_enableClose, u"EnableCloseButton", DrawForm())
MX_USFORM_SETTER(EnableMaximizeButton, bool, m_enableMaximize, u"EnableMaximizeButton", DrawForm())
MX_USFORM_SETTER(EnableMinimizeButton, bool, m_enableMinimize, u"EnableMinimizeButton", DrawForm())
MX_USFORM_SETTER(ShowControlBox, bool, m_showControlBox, u"ShowControlBox", DrawForm())
MX_USFORM_SETTER(ShowCloseButton, bool, m_showClose, u"ShowCloseButton", DrawForm())
MX_USFORM_SETTER(ShowMaximizeButton, bool, m_showMaximize, u"ShowMaximizeButton", DrawForm())
MX_USFORM_SETTER(ShowMinimizeButton, bool, m_showMinimize, u"ShowMinimizeButton", DrawForm())
MX_USFORM_SETTER(ForeColor, OLE_COLOR, m_foreColor, u"ForeColor", DrawForm())
MX_USFORM_SETTER(ForeColorDelimiter, OLE_COLOR, m_foreColorDelimiter, u"ForeColorDelimiter", DrawForm())
MX_USFORM_SETTER(ForeColorInactive, OLE_COLOR, m_foreColorInactive, u"ForeColorInactive", DrawForm())
MX_USFORM_SETTER(ForeColorDisabled, OLE_COLOR, m_foreColorDisabled, u"ForeColorDisabled", DrawForm())
MX_USFORM_SETTER(GradientColor1, OLE_COLOR, m_gradientColor1, u"GradientColor1", DrawForm())
MX_USFORM_SETTER(GradientColor2, OLE_COLOR, m_gradientColor2, u"GradientColor2", DrawForm())
MX_USFORM_SETTER(IconSizeX, int32_t, m_iconSizeX, u"IconSizeX", DrawForm())
MX_USFORM_SETTER(IconSizeY, int32_t, m_iconSizeY, u"IconSizeY", DrawForm())
MX_USFORM_SETTER(ChangeThemeControls, bool, m_changeThemeControls, u"ChangeThemeControls", (void)0)
MX_USFORM_SETTER(ShowInnerBorder, bool, m_showInnerBorder, u"ShowInnerBorder", DrawForm())

#undef MX_USFORM_SETTER

void USForm::Theme(int32_t value) {
  m_theme = value;
  PropertyChanged(u"Theme");
  ApplyTheme();
  DrawForm();
}

void USForm::ApplyTheme() {
  if (m_theme < 0 || m_theme > 6) return;
  const LookColours& look = kLooks[m_theme];
  m_foreColor = look.fore;
  m_foreColorDelimiter = m_foreColorInactive = look.second;
  m_gradientColor1 = look.gradient1;
  m_gradientColor2 = look.gradient2;
  if (!look.keepsBackAndBorder) {
    m_backColor = m_backColorInactive = look.back;
    m_borderColor = m_borderColorInactive = look.border;
    m_borderColorDisabled = 0x848484;
  }
}

void USForm::Enabled(bool value) {
  UserControl::Enabled(value);
  PropertyChanged(u"Enabled");
  DrawForm();
}

void USForm::Caption(StringView value) {
  m_caption = String(value);
  PropertyChanged(u"Caption");
  // The form keeps its own caption too: it is what a task list or Alt+Tab would show.
  if (m_userMode && m_formWindow) Step([&] { SetWindowTextW(m_formWindow, m_caption.c_str()); });
  DrawForm();
}

void USForm::CaptionDelimiter(StringView value) {
  m_captionDelimiter = String(value);
  PropertyChanged(u"CaptionDelimiter");
  DrawForm();
}

void USForm::IconSize(int32_t value) {
  m_iconSize = value;
  PropertyChanged(u"IconSize");
  static constexpr int32_t kSizes[] = {16, 24, 32, 48};
  if (value >= Icon_16x16 && value <= Icon_48x48) m_iconSizeX = m_iconSizeY = kSizes[value];
  DrawForm();
}

void USForm::Icon(std::shared_ptr<host::StdPicture> value) {
  m_icon = std::move(value);
  PropertyChanged(u"Icon");
  if (m_pictureBytes.empty()) m_picture.reset();
  DrawForm();
}

void USForm::Font(std::shared_ptr<host::StdFont> value) {
  UserControl::Font(std::move(value));
  PropertyChanged(u"Font");
  DrawForm();
}

void USForm::ToolTipClose(StringView value) {
  m_toolTipClose = String(value);
  PropertyChanged(u"ToolTipClose");
}
void USForm::ToolTipMaximize(StringView value) {
  m_toolTipMaximize = String(value);
  PropertyChanged(u"ToolTipMaximize");
}
void USForm::ToolTipMinimize(StringView value) {
  m_toolTipMinimize = String(value);
  PropertyChanged(u"ToolTipMinimize");
}

void USForm::PictureBytes(host::ByteArray value) {
  m_pictureBytes = std::move(value);
  Step([&] { PropertyChanged(u"DibPicture"); });
  m_picture.reset();
  Step([&] { DrawForm(); });
}

void USForm::ClearPictureBytes() {
  m_pictureBytes.clear();
  m_picture.reset();
  Step([&] { PropertyChanged(u"DibPicture"); });
  Step([&] { DrawForm(); });
}

// ---- Methods ----------------------------------------------------------------------------------

void USForm::About() { controls::ShowAboutBox(); }

void USForm::ConfigureActionsButtons(bool xShowMinimizeButton, bool xShowMaximizeButton, bool xShowCloseButton) {
  m_showMinimize = xShowMinimizeButton;
  m_showMaximize = xShowMaximizeButton;
  m_showClose = xShowCloseButton;
  PropertyChanged(u"ShowMinimizeButton");
  PropertyChanged(u"ShowMaximizeButton");
  PropertyChanged(u"ShowCloseButton");
  if (m_userMode && m_firstShowDone) Step([&] { RemoveFormFrame(); });
  DrawForm();
}

void USForm::CenterOnScreen() {
  if (!m_formWindow) return;
  RECT work{}, r{};
  SystemParametersInfo(SPI_GETWORKAREA, 0, &work, 0);
  GetWindowRect(m_formWindow, &r);
  const int x = work.left + (work.right - work.left - r.width()) / 2;
  const int y = work.top + (work.bottom - work.top - r.height()) / 2;
  SetWindowPos(m_formWindow, 0, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
}

bool USForm::ShowOnFullScreen() {
  if (!m_formWindow) return false;
  RECT work{}, r{};
  SystemParametersInfo(SPI_GETWORKAREA, 0, &work, 0);
  // Without a task bar service the task bar is what the work area leaves of the screen.
  const int taskBarHeight = std::max(0, GetSystemMetrics(SM_CYSCREEN) - (work.bottom - work.top));
  const RECT target{0, 0, work.right - work.left, work.bottom - work.top + taskBarHeight};
  GetWindowRect(m_formWindow, &r);
  if (EqualRect(&r, &target)) return false;
  return SetWindowPos(m_formWindow, 0, target.left, target.top, target.width(), target.height(), SWP_NOZORDER) != 0;
}

void USForm::TranslucentForm(int32_t TranslucentLevel) {
  if (!m_formWindow) return;
  frame::SetWindowTranslucency(m_formWindow, static_cast<uint8_t>(std::clamp(TranslucentLevel, 0, 255)));
}

void USForm::AlphaWindowInitializeOnFullScreen(int32_t TranslucentLevel, OLE_COLOR BackColor) {
  auto layer = std::make_shared<FormBack>();
  layer->AlphaWindowInitializeOnFullScreen(m_formWindow, TranslucentLevel, BackColor);
  m_dimLayers.push_back(std::move(layer));
}

void USForm::AlphaWindowInitializeOnModal(int32_t TranslucentLevel, OLE_COLOR BackColor) {
  auto layer = std::make_shared<FormBack>();
  layer->AlphaWindowInitializeOnModal(m_formWindow, TranslucentLevel, BackColor);
  m_dimLayers.push_back(std::move(layer));
}

void USForm::AlphaWindowCloseAll() {
  // Every open dim layer of the application, whichever form made it.
  for (const auto& form : host::Forms())
    if (form->Name() == FormBack::kName)
      if (auto* layer = dynamic_cast<FormBack*>(form.get())) Step([&] { layer->UnloadMe(m_formWindow); });
  m_dimLayers.clear();
}

void USForm::DropDimLayers() {
  for (auto& layer : m_dimLayers) Step([&] { layer->UnloadMe(0); });
  m_dimLayers.clear();
}

void USForm::DrawGradient() {
  if (!m_formWindow) return;
  RECT rc{};
  GetClientRect(m_formWindow, &rc);
  HDC dc = GetDC(m_formWindow);
  if (!dc) return;
  frame::PaintGradientRect(dc, 0, 0, rc.right, rc.bottom, m_gradientColor1, m_gradientColor2, 1);
  ReleaseDC(m_formWindow, dc);
}

void USForm::FadeTo(int32_t from, int32_t to, int32_t step) {
  if (!m_formWindow) return;
  for (int32_t alpha = from;; alpha += step) {
    // Set on every step: someone may take the layered style away in between.
    const LONG ex = GetWindowLong(m_formWindow, GWL_EXSTYLE);
    SetWindowLong(m_formWindow, GWL_EXSTYLE, ex | static_cast<LONG>(WS_EX_LAYERED));
    SetLayeredWindowAttributes(m_formWindow, 0, static_cast<BYTE>(alpha), LWA_ALPHA);
    if (alpha == to) break;
    PauseMilliseconds(25);
  }
}

void USForm::DrawFadeIN() { FadeTo(5, 255, 5); }
void USForm::DrawFadeOUT() { FadeTo(255, 0, -5); }

int32_t USForm::TaskBar_SetProgressState(HWND, int32_t) { return 0; }
int32_t USForm::TaskBar_SetProgressValue(HWND, int32_t) { return 0; }
int32_t USForm::TaskBar_SetOverlayIcon(HWND, int32_t, StringView) { return 0; }
int32_t USForm::TaskBar_SetThumbnailClip(HWND, int32_t, int32_t, int32_t, int32_t) { return 0; }
int32_t USForm::TaskBar_SetThumbnailTooltip(HWND, StringView) { return 0; }

void USForm::DrawForm() {
  Step([&] { DrawFormStrips(); });
  Step([&] { LayoutFormEdges(); });
}

void USForm::DestroySubClass() {
  m_subclassActive = false;
  m_subclass.reset();
}

void USForm::SetForegroundWindow(HWND ParentWindow) { platform::SetForegroundWindow(ParentWindow); }

void USForm::UnloadMe() {
  m_closing = true;
  m_subclassActive = false;
  StartTimer(true);
}

void USForm::UnloadMeEx() {
  m_closing = true;
  m_subclassActive = false;
  m_subclass.reset();
  if (host::Form* form = ParentForm()) Step([&] { form->Unload(host::vbFormCode); });
}

// ---- Timers -----------------------------------------------------------------------------------

void USForm::StartTimer(bool destroyTimer) {
  // Thread timers with a weak reference: the tick may unload the form and with it this control.
  std::weak_ptr<Object> weak = weak_from_this();
  UINT_PTR& id = destroyTimer ? m_timerDestroy : m_timerSubClass;
  id = SetTimer(0, id, 1, [weak, destroyTimer](HWND, UINT, UINT_PTR, DWORD) {
    auto self = std::dynamic_pointer_cast<USForm>(weak.lock());
    if (!self) return;
    if (destroyTimer) self->OnTimerDestroy();
    else self->OnTimerSubClass();
  });
}

void USForm::OnTimerSubClass() {
  if (m_timerSubClass) KillTimer(0, m_timerSubClass);
  m_timerSubClass = 0;
  if (!m_userMode || m_closing) return;
  Step([&] { InstallFormSubclass(); });
  Step([&] { LayoutFormEdges(); });
}

void USForm::OnTimerDestroy() {
  if (m_timerDestroy) KillTimer(0, m_timerDestroy);
  m_timerDestroy = 0;
  std::shared_ptr<Object> keep = weak_from_this().lock();
  m_subclass.reset();
  host::Form* form = ParentForm();
  if (form) Step([&] { form->Unload(host::vbFormCode); });
  // The form refused to go (its QueryUnload or Unload cancelled): still our parent, so the
  // frame must go on working.
  if (ParentForm() == form && form && form->hWnd() && !IsTerminated()) {
    m_closing = false;
    m_subclassActive = true;
    StartTimer(false);
  }
}

void USForm::InstallFormSubclass() {
  host::Form* form = ParentForm();
  if (!form || !form->hWnd()) return;
  m_formWindow = form->hWnd();
  if (!m_subclass) m_subclass = std::make_unique<frame::APISubClass>(this);
  if (!m_subclass->ssc_Subclass(m_formWindow)) return;
  // Frame removal and the size limits must be in place before the default handling; size and
  // activation only need to know what happened.
  m_subclass->ssc_AddMsg(m_formWindow, frame::MSG_BEFORE, {WM_SHOWWINDOW, WM_GETMINMAXINFO, WM_SYSCOMMAND});
  m_subclass->ssc_AddMsg(m_formWindow, frame::MSG_AFTER, {WM_SIZE, WM_NCACTIVATE});
  m_subclassActive = true;
  // The form may be on the screen already (shown in the same breath as it was loaded): then
  // its first show has passed the subclass by and is done here.
  if (!m_firstShowDone && IsWindowVisible(m_formWindow)) FirstShow(false);
  else if (m_firstShowDone) {
    // Back after a refused unload: the strips are there, listen to them again.
    const HWND strips[] = {UserControl::hWnd(), m_edges[0], m_edges[1], m_edges[2]};
    for (HWND strip : strips)
      if (strip && IsWindow(strip) && m_subclass->ssc_Subclass(strip)) {
        m_subclass->ssc_AddMsg(strip, frame::MSG_BEFORE, {WM_MOUSELEAVE, WM_CANCELMODE});
        m_subclass->ssc_AddMsg(strip, frame::MSG_AFTER, {WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK});
      }
  }
}

void USForm::FirstShow(bool fromShowMessage) {
  m_firstShowDone = true;
  m_windowVisible = true;
  if (!fromShowMessage) m_formActive = GetActiveWindow() == m_formWindow;
  Step([&] { RemoveFormFrame(); });
  Step([&] { GetWindowRect(m_formWindow, &m_windowRect); });
  Step([&] { BuildFormEdges(); });
  Step([&] { AlignToParentTop(); });
  Step([&] { DrawFormStrips(); });
  Step([&] { LayoutFormEdges(); });
  // The activation that follows a show finds the strips painted already. A form caught after
  // its show has had that activation: the next one is a real change.
  m_skipNextActivatePaint = fromShowMessage;
}

void USForm::AlignToParentTop() {
  host::Form* form = ParentForm();
  if (!form || !form->hWnd()) return;
  RECT rc{};
  GetClientRect(form->hWnd(), &rc);
  const host::Screen& screen = host::GetScreen();
  const float width = static_cast<float>(rc.right) * screen.TwipsPerPixelX();
  if (Control::Left() != 0 || Control::Top() != 0 || Control::Width() != width)
    Control::Move(0, 0, width, Control::Height());
  Control::ZOrder(0);
}

// ---- Lifecycle --------------------------------------------------------------------------------

void USForm::UserControl_Initialize() {}

void USForm::UserControl_InitProperties() {
  host::Form* form = ParentForm();
  Step([&] { UserControl::Font(Ambient().Font()); });
  m_caption = form ? form->Caption() : String();
  Step([&] { m_icon = std::dynamic_pointer_cast<host::StdPicture>(AskForm(form, u"Icon", Variant()).ToObject()); });
  // A new control makes the form ready for it: a sizable frame (which the control takes away at
  // run time) and the light ground the looks are drawn for.
  if (form) {
    Step([&] { form->BorderStyle(2); });
    Step([&] { form->BackColor(0xF9F9F9); });
  }
  Step([&] { AlignToParentTop(); });
}

void USForm::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  Step([&] { m_userMode = Ambient().UserMode(); });
  const BagReader saved(PropBag);
  host::Form* form = ParentForm();

  Step([&] {
    std::shared_ptr<host::StdFont> ambient = Ambient().Font();
    auto font = std::dynamic_pointer_cast<host::StdFont>(saved.Read(u"Font", Variant(ambient)).Obj());
    UserControl::Font(font ? font : ambient);
  });
  Step([&] {
    m_icon = std::dynamic_pointer_cast<host::StdPicture>(saved.Read(u"Icon", Variant::Nothing()).Obj());
    if (!m_icon)
      m_icon = std::dynamic_pointer_cast<host::StdPicture>(AskForm(form, u"Icon", Variant()).ToObject());
  });
  Step([&] {
    const Variant bytes = saved.Read(u"DibPicture", Variant());
    if (const host::ByteArray* b = bytes.Bytes()) m_pictureBytes = *b;
    else m_pictureBytes.clear();
  });
  m_theme = saved.Long(u"Theme", 2);
  const bool enabled = saved.Bool(u"Enabled", true);
  m_allowMove = saved.Bool(u"AllowMove", true);
  m_allowResize = saved.Bool(u"AllowResize", false);
  m_backColor = saved.Long(u"BackColor", 0x9A572B);
  m_backColorInactive = saved.Long(u"BackColorInactive", 0x9A572B);
  m_backColorDisabled = saved.Long(u"BackColorDisabled", 0xEBEBEB);
  m_borderColor = saved.Long(u"BorderColor", 0x7B3E00);
  m_borderColorInactive = saved.Long(u"BorderColorInactive", 0x7B3E00);
  m_borderColorDisabled = saved.Long(u"BorderColorDisabled", 0x848484);
  m_borderWidth = saved.Long(u"BorderWidth", 1);
  m_caption = saved.Text(u"Caption", form ? form->Caption() : String());
  m_captionDelimiter = saved.Text(u"CaptionDelimiter", u"-");
  m_captionOnCenter = saved.Bool(u"CaptionOnCenter", false);
  m_captionTop = saved.Long(u"CaptionTop", 7);
  m_enableClose = saved.Bool(u"EnableCloseButton", true);
  m_enableMaximize = saved.Bool(u"EnableMaximizeButton", true);
  m_enableMinimize = saved.Bool(u"EnableMinimizeButton", true);
  m_showControlBox = saved.Bool(u"ShowControlBox", true);
  m_showClose = saved.Bool(u"ShowCloseButton", true);
  m_showMaximize = saved.Bool(u"ShowMaximizeButton", true);
  m_showMinimize = saved.Bool(u"ShowMinimizeButton", true);
  m_foreColor = saved.Long(u"ForeColor", 0xFFFFFF);
  m_foreColorDelimiter = saved.Long(u"ForeColorDelimiter", 0xCBAE99);
  m_foreColorInactive = saved.Long(u"ForeColorInactive", 0xCBAE99);
  m_foreColorDisabled = saved.Long(u"ForeColorDisabled", 0x000000);
  m_gradientColor1 = saved.Long(u"GradientColor1", 0xF0F0F0);
  m_gradientColor2 = saved.Long(u"GradientColor2", 0xF0F0F0);
  m_iconSize = saved.Long(u"IconSize", Icon_16x16);
  m_iconSizeX = saved.Long(u"IconSizeX", 16);
  m_iconSizeY = saved.Long(u"IconSizeY", 16);
  m_changeThemeControls = saved.Bool(u"ChangeThemeControls", false);
  m_showInnerBorder = saved.Bool(u"ShowInnerBorder", false);
  m_toolTipClose = saved.Text(u"ToolTipClose", u"Fechar");
  m_toolTipMaximize = saved.Text(u"ToolTipMaximize", u"Maximizar");
  m_toolTipMinimize = saved.Text(u"ToolTipMinimize", u"Minimizar");

  Step([&] { UserControl::Enabled(enabled); });
  Step([&] { AlignToParentTop(); });
  // The subclass waits until the form has its window and the host is out of the load.
  if (m_userMode) StartTimer(false);
}

void USForm::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  auto write = [&](const char16_t* key, const Variant& value, const Variant& def) {
    Step([&] { PropBag.WriteProperty(key, value, def); });
  };
  host::Form* form = ParentForm();
  Step([&] { write(u"Font", Variant(UserControl::Font()), Variant(Ambient().Font())); });
  write(u"Icon", m_icon ? Variant(m_icon) : Variant::Nothing(), Variant::Nothing());
  if (!m_pictureBytes.empty()) write(u"DibPicture", Variant(m_pictureBytes), Variant::Missing());
  write(u"Theme", Variant(m_theme), Variant(int32_t{2}));
  write(u"Enabled", Variant(UserControl::Enabled()), Variant(true));
  write(u"AllowMove", Variant(m_allowMove), Variant(true));
  write(u"AllowResize", Variant(m_allowResize), Variant(false));
  write(u"BackColor", Variant(m_backColor), Variant(OLE_COLOR{0x9A572B}));
  write(u"BackColorInactive", Variant(m_backColorInactive), Variant(OLE_COLOR{0x9A572B}));
  write(u"BackColorDisabled", Variant(m_backColorDisabled), Variant(OLE_COLOR{0xEBEBEB}));
  write(u"BorderColor", Variant(m_borderColor), Variant(OLE_COLOR{0x7B3E00}));
  write(u"BorderColorInactive", Variant(m_borderColorInactive), Variant(OLE_COLOR{0x7B3E00}));
  write(u"BorderColorDisabled", Variant(m_borderColorDisabled), Variant(OLE_COLOR{0x848484}));
  write(u"BorderWidth", Variant(m_borderWidth), Variant(int32_t{1}));
  write(u"Caption", Variant(m_caption), Variant(form ? form->Caption() : String()));
  write(u"CaptionDelimiter", Variant(m_captionDelimiter), Variant(String(u"-")));
  write(u"CaptionOnCenter", Variant(m_captionOnCenter), Variant(false));
  write(u"CaptionTop", Variant(m_captionTop), Variant(int32_t{7}));
  write(u"EnableCloseButton", Variant(m_enableClose), Variant(true));
  write(u"EnableMaximizeButton", Variant(m_enableMaximize), Variant(true));
  write(u"EnableMinimizeButton", Variant(m_enableMinimize), Variant(true));
  write(u"ShowControlBox", Variant(m_showControlBox), Variant(true));
  write(u"ShowCloseButton", Variant(m_showClose), Variant(true));
  write(u"ShowMaximizeButton", Variant(m_showMaximize), Variant(true));
  write(u"ShowMinimizeButton", Variant(m_showMinimize), Variant(true));
  write(u"ForeColor", Variant(m_foreColor), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"ForeColorDelimiter", Variant(m_foreColorDelimiter), Variant(OLE_COLOR{0xCBAE99}));
  write(u"ForeColorInactive", Variant(m_foreColorInactive), Variant(OLE_COLOR{0xCBAE99}));
  write(u"ForeColorDisabled", Variant(m_foreColorDisabled), Variant(OLE_COLOR{0}));
  write(u"GradientColor1", Variant(m_gradientColor1), Variant(OLE_COLOR{0xF0F0F0}));
  write(u"GradientColor2", Variant(m_gradientColor2), Variant(OLE_COLOR{0xF0F0F0}));
  write(u"IconSize", Variant(m_iconSize), Variant(int32_t{Icon_16x16}));
  write(u"IconSizeX", Variant(m_iconSizeX), Variant(int32_t{16}));
  write(u"IconSizeY", Variant(m_iconSizeY), Variant(int32_t{16}));
  write(u"ChangeThemeControls", Variant(m_changeThemeControls), Variant(false));
  write(u"ShowInnerBorder", Variant(m_showInnerBorder), Variant(false));
  write(u"ToolTipClose", Variant(m_toolTipClose), Variant(String(u"Fechar")));
  write(u"ToolTipMaximize", Variant(m_toolTipMaximize), Variant(String(u"Maximizar")));
  write(u"ToolTipMinimize", Variant(m_toolTipMinimize), Variant(String(u"Minimizar")));
}

void USForm::UserControl_Resize() {
  RECT rc{};
  Step([&] { GetClientRect(UserControl::hWnd(), &rc); });
  int32_t height = rc.bottom;
  // The strip's height belongs to the look: exactly 28 for the Office look; for the others at
  // least 26 and at most 31, heights between left as they are.
  if (OfficeLook()) height = 28;
  else height = std::clamp(height, 26, 31);
  if (height != rc.bottom)
    Step([&] { Control::Height(static_cast<float>(height) * host::GetScreen().TwipsPerPixelY()); });
  if (m_firstShowDone) Step([&] { DrawFormStrips(); });
}

void USForm::UserControl_Show() {
  if (!m_userMode) return;
  if (!m_toolTip) {
    Step([&] {
      m_toolTip = std::make_unique<frame::APITooltip>();
      m_toolTip->Create(UserControl::hWnd());
    });
  }
}

void USForm::ReleaseEdges() {
  for (HWND& edge : m_edges) {
    if (edge && IsWindow(edge)) {
      SetWindowLongPtr(edge, GWLP_USERDATA, 0);
      DestroyWindow(edge);
    }
    edge = 0;
  }
}

void USForm::UserControl_Terminate() {
  m_subclassActive = false;
  m_closing = true;
  if (m_timerSubClass) KillTimer(0, m_timerSubClass);
  if (m_timerDestroy) KillTimer(0, m_timerDestroy);
  m_timerSubClass = m_timerDestroy = 0;
  Step([&] { m_subclass.reset(); });
  Step([&] { m_toolTip.reset(); });
  Step([&] { DropDimLayers(); });
  Step([&] { ReleaseEdges(); });
  m_pictureBytes.clear();
  m_picture.reset();
  m_userMode = false;
}

// ---- Late binding and events --------------------------------------------------------------------

void USForm::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"ClipboardGetText", ClipboardGetText, u"FormActivated", FormActivated, u"MouseDown",
                       MouseDown, u"MouseMove", MouseMove, u"MouseUp", MouseUp, u"Click", Click, u"DblClick",
                       DblClick);
}

}  // namespace mx::chrome
