// The message forms: loading their controls, ShowMessageForm, the modal run, keys, the
// time-out and closing.
#include "chrome/MessageForm.h"

#include <algorithm>
#include <utility>

#include "chrome/MessageFormPanel.h"
#include "chrome/USForm.h"
#include "controls/ControlSupport.h"
#include "controls/USButton.h"
#include "controls/USLabel.h"
#include "frame/Drawing.h"
#include "frame/Gradient.h"
#include "host/PropertyBag.h"
#include "host/Screen.h"
#include "platform/Desktop.h"
#include "platform/MessageQueue.h"
#include "platform/Timer.h"
#include "platform/User.h"

namespace mx::chrome {

using controls::USButton;
using controls::USLabel;
using controls::detail::Step;
using host::String;
using host::Variant;
using namespace platform;

namespace {

MessageFormShownHandler& ShownHandler() {
  static MessageFormShownHandler handler;
  return handler;
}

// The box's title: the argument as text, or the application's title when it has none.
String TitleText(const Variant& title) {
  String text;
  if (!title.IsEmpty() && !title.IsMissing() && !title.IsNull()) Step([&] { text = title.ToString(); });
  return text.empty() ? utility::ApplicationTitle() : text;
}

// The button table's defaults: an argument equal to its default leaves the theme's colour.
constexpr host::OLE_COLOR kDefaultButtonFore = 0xFFFFFF;
constexpr host::OLE_COLOR kDefaultButtonBorder = 0x9A572B;
constexpr host::OLE_COLOR kDefaultButtonBorderOver = 0x7B3E00;
constexpr host::OLE_COLOR kDefaultButtonBorderDown = 0x501A00;
constexpr host::OLE_COLOR kDefaultButtonGradient = 0x9A572B;

}  // namespace

void SetMessageFormShownHandler(MessageFormShownHandler handler) { ShownHandler() = std::move(handler); }

void InstallMessageForms() {
  utility::SetMessageBoxProvider([](const utility::MessageBoxRequest& request) {
    MessageForm& form = request.Markup ? MessageForm::frmMsgHTML() : MessageForm::frmMsg();
    return form.ShowMessageForm(request);
  });
}

// ---- The form and its controls -----------------------------------------------------------------

MessageForm::MessageForm(bool markup) : m_markup(markup) {}

MessageForm::~MessageForm() {
  StopUnloadTimer();
  StopActivationTimer();
  m_subclass.reset();
  if (m_form && m_form->IsLoaded()) Step([&] { m_form->Unload(); });
}

MessageForm& MessageForm::frmMsg() {
  // Kept for the life of the process: the platform's tables may be gone when statics die.
  static MessageForm* form = new MessageForm(false);
  return *form;
}

MessageForm& MessageForm::frmMsgHTML() {
  static MessageForm* form = new MessageForm(true);
  return *form;
}

std::shared_ptr<USButton> MessageForm::OButton(int32_t index) const {
  if (index < 0 || index > 2) return nullptr;
  return m_buttons[static_cast<size_t>(index)];
}

HWND MessageForm::FormWindow() const { return m_form ? m_form->hWnd() : 0; }

void MessageForm::LoadForm() {
  // Nothing of the last box is kept: a load that fails halfway leaves no stale control behind.
  m_usForm.reset();
  m_panel.reset();
  m_label.reset();
  m_buttons = {};
  // A form whose window went without it (the windowing was reset) starts over.
  if (m_form && m_form->hWnd() && !IsWindow(m_form->hWnd())) m_form.reset();
  if (!m_form) {
    m_form = std::make_shared<host::Form>(m_markup ? u"frmMsgHTML" : u"frmMsg");
    m_form->Activate.connect([this] { Form_Activate(); });
    m_form->UnloadEvent.connect([this](int16_t&) { Form_Unload(); });
  }
  // The window first (a form unloaded by the last box has none): the controls measure on it.
  m_form->Move(0, Variant(0.0f), Variant(m_form->Width()), Variant(m_form->Height()));

  // What the form's design holds: the frame without its minimise and maximise buttons, the
  // panel, three buttons in it, the label. Each is loaded as a form file's control is.
  host::PropertyBag frameBag;
  frameBag.WriteProperty(u"ShowMinimizeButton", Variant(false));
  frameBag.WriteProperty(u"ShowMaximizeButton", Variant(false));
  m_usForm = std::make_shared<USForm>();
  m_form->SiteControl(m_usForm, u"USForm1");
  m_usForm->LoadFrom(frameBag, true);

  host::PropertyBag empty;
  m_panel = std::make_shared<MessageFormPanel>();
  m_form->SiteControl(m_panel, u"xPic");
  m_panel->LoadFrom(empty, true);

  for (int32_t i = 0; i < 3; ++i) {
    auto button = std::make_shared<USButton>();
    m_form->SiteControl(button, u"OButton", i, m_panel.get());
    host::PropertyBag bag;
    bag.WriteProperty(u"Caption", Variant(String()));
    button->LoadFrom(bag, true);
    // Enter presses the button that has the focus, as in any message box.
    button->DefaultCancel(true);
    button->Click.connect([this, i] { OButton_Click(i); });
    m_buttons[static_cast<size_t>(i)] = std::move(button);
  }

  m_label = std::make_shared<USLabel>();
  m_form->SiteControl(m_label, u"lblMensagemEx");
  m_label->LoadFrom(empty, true);
  Step([&] { m_label->BackStyle(0); });
  Step([&] { m_label->ForeColor(0x000000); });

  // The form's ground is ours to paint when it is a gradient; the keyboard hook comes with the
  // show.
  m_subclass = std::make_unique<frame::APISubClass>(this);
  if (m_subclass->ssc_Subclass(FormWindow())) m_subclass->ssc_AddMsg(FormWindow(), frame::MSG_BEFORE, {WM_ERASEBKGND});
}

void MessageForm::ApplyButtonLook(USButton& button, const utility::MessageBoxRequest& r, int32_t theme) {
  Step([&] { button.Redraw(false); });
  Step([&] { button.Theme(theme); });
  // Only what differs from the table's defaults: the rest keeps the theme's colours.
  if (r.ButtonGradientColors != 0) Step([&] { button.GradientColors(r.ButtonGradientColors); });
  if (r.ButtonForeColor != kDefaultButtonFore) Step([&] { button.ForeColor(r.ButtonForeColor); });
  if (r.ButtonBorderColor != kDefaultButtonBorder) Step([&] { button.BorderColor(r.ButtonBorderColor); });
  if (r.ButtonBorderColorDown != kDefaultButtonBorderDown)
    Step([&] { button.BorderColorDown(r.ButtonBorderColorDown); });
  if (r.ButtonBorderColorOver != kDefaultButtonBorderOver)
    Step([&] { button.BorderColorOver(r.ButtonBorderColorOver); });
  const host::OLE_COLOR gradients[4] = {r.ButtonGradientColor1, r.ButtonGradientColor2, r.ButtonGradientColor3,
                                        r.ButtonGradientColor4};
  for (int32_t k = 0; k < 4; ++k)
    if (gradients[k] != kDefaultButtonGradient) Step([&] { button.GradientColor(k + 1, gradients[k]); });
  if (r.FontStyle) Step([&] { button.Font(r.FontStyle); });
  Step([&] { button.Redraw(true); });
}

void MessageForm::SetLabelWidth(float width) {
  // With word wrap the label keeps the width it is given and only its height follows the text.
  Step([&] { m_label->WordWrap(true); });
  Step([&] { m_label->Width(width); });
}

// ---- ShowMessageForm ---------------------------------------------------------------------------

int32_t MessageForm::ShowMessageForm(const utility::MessageBoxRequest& request) {
  if (m_running) return vbClosed;
  Step([&] { LoadForm(); });
  if (!m_form || !m_usForm || !m_label || !m_panel || !m_subclass || !m_buttons[2]) {
    // A load that failed: what was sited goes, so that the next box starts clean.
    if (m_form) Step([&] { m_form->Unload(); });
    return vbClosed;
  }
  m_result = vbClosed;
  m_closing = false;
  m_announced = false;

  // The toolkit default theme wins over a theme argument that differs from it.
  const int32_t defaultTheme = utility::ToolkitDefaultTheme();
  const int32_t theme = request.Theme != defaultTheme ? defaultTheme : request.Theme;
  Step([&] { m_usForm->Theme(theme); });
  m_escToClose = request.EscToClose;
  const String title = TitleText(request.Title);
  for (auto& button : m_buttons) ApplyButtonLook(*button, request, theme);
  if (request.FontStyle) Step([&] { m_label->Font(request.FontStyle); });
  // One line as wide as the text until the limits below say otherwise.
  Step([&] { m_label->AutoSize(true); });
  Step([&] { m_label->WordWrap(false); });
  if (m_markup) Step([&] { m_label->Caption(request.Prompt); });
  else Step([&] { m_label->NoHTMLCaption(request.Prompt); });
  // Between 3500 and 8000 twips; a longer text wraps at 8000 and is measured again.
  if (m_label->Width() < kLabelMinWidth) {
    SetLabelWidth(kLabelMinWidth);
  } else if (m_label->Width() > kLabelMaxWidth) {
    SetLabelWidth(kLabelMaxWidth);
    Step([&] { m_label->Refresh(); });
  }
  // The row must hold the buttons.
  const MessageStyle style = ReadMessageStyle(request.Buttons);
  const int32_t count = CountMessageButtons(style.style);
  const auto minimum = static_cast<float>(MessageButtonsMinimumWidth(count));
  if (m_label->Width() < minimum) SetLabelWidth(minimum);
  // The form around the label, in the middle of the work area.
  const float width = kLabelLeft + m_label->Width() + kRightMargin;
  const float height = kLabelTop + m_label->Height() + (m_markup ? kBottomMarkup : kBottomPlain);
  const host::Screen& screen = host::GetScreen();
  RECT work{};
  SystemParametersInfo(SPI_GETWORKAREA, 0, &work, 0);
  const float left = (static_cast<float>(work.left + work.right) * screen.TwipsPerPixelX() - width) / 2;
  const float top = (static_cast<float>(work.top + work.bottom) * screen.TwipsPerPixelY() - height) / 2;
  Step([&] { m_label->Move(kLabelLeft, kLabelTop, m_label->Width(), m_label->Height()); });
  Step([&] { m_form->Move(std::max(0.0f, left), Variant(std::max(0.0f, top)), Variant(width), Variant(height)); });
  Step([&] { m_panel->Move(0, height - kPanelHeight, width, kPanelHeight); });
  // The ground, the icon, the title and the gradient's colours on the frame.
  Step([&] { m_form->BackColor(request.BackColor); });
  if (request.Icon) Step([&] { m_usForm->Icon(request.Icon); });
  Step([&] { m_form->Caption(title); });
  Step([&] { m_usForm->Caption(title); });
  Step([&] { m_usForm->GradientColor1(request.BackgoundGradientColor1); });
  Step([&] { m_usForm->GradientColor2(request.BackgoundGradientColor2); });
  if (request.FontStyle) Step([&] { m_usForm->Font(request.FontStyle); });
  ArrangeMessageButtons(style);
  // trmUnload's interval: a time-out of 0 (or less) never fires.
  m_unloadInterval = static_cast<uint32_t>(std::max(0, request.WaitTimes));
  m_fadeIn = request.FadeIN;
  m_fadeOut = request.FadeOUT;
  if (request.TranslucentLevel != 0) Step([&] { frame::SetWindowTranslucency(FormWindow(), request.TranslucentLevel); });
  // The gradient stays: the form's ground is painted so on every erase from now on.
  m_drawGradient = request.DrawGradient;
  if (m_drawGradient) Step([&] { m_usForm->DrawGradient(); });
  // The transparent label and panel take the ground as it now is.
  Step([&] { m_label->Refresh(); });
  Step([&] { m_panel->Repaint(); });

  if (request.PlaySound) MessageBeep(MessageSoundForStyle(style.style));
  m_running = true;
  ++m_showCount;
  Step([&] { m_subclass->shk_SetHook(frame::eHookType::WH_KEYBOARD, false, frame::MSG_BEFORE); });
  std::shared_ptr<host::Form> keep = m_form;
  Step([&] { keep->Show(1); });
  // The loop also ends when nothing can ever happen any more (a headless queue with no input
  // and no time-out to come): the box goes as one closed without a button.
  if (keep->IsLoaded()) Step([&] { keep->Unload(); });
  // The window is gone and its subclass with it; the next box subclasses its new window.
  m_subclass.reset();
  m_running = false;
  m_closing = false;
  return m_result;
}

void MessageForm::ArrangeMessageButtons(const MessageStyle& style) {
  const std::vector<String> captions = MessageButtonCaptions(style.style);
  const auto count = static_cast<int32_t>(captions.size());
  // The visible buttons sit side by side in the middle of the panel.
  const float row = static_cast<float>(count) * kButtonWidth + static_cast<float>(std::max(0, count - 1)) * kButtonGap;
  const float left = (m_panel->Width() - row) / 2;
  const float top = (kPanelHeight - kButtonHeight) / 2;
  for (int32_t i = 0; i < 3; ++i) {
    USButton& button = *m_buttons[static_cast<size_t>(i)];
    if (i < count) {
      Step([&] { button.Caption(captions[static_cast<size_t>(i)]); });
      Step([&] { button.Move(left + static_cast<float>(i) * (kButtonWidth + kButtonGap), top, kButtonWidth, kButtonHeight); });
      Step([&] { button.Visible(true); });
    } else {
      Step([&] { button.Caption(String()); });
      Step([&] { button.Visible(false); });
    }
  }
  if (count == 0) return;
  // The default button is first in the tab order, so the show gives it the focus, and it is the
  // form's default for Enter.
  const int32_t chosen = style.defaultButton - 1 < count ? style.defaultButton - 1 : 0;
  USButton& target = *m_buttons[static_cast<size_t>(chosen)];
  Step([&] { target.TabIndex(0); });
  Step([&] { target.Default(true); });
}

// ---- Running -----------------------------------------------------------------------------------

void MessageForm::Form_Activate() {
  if (!m_running || m_closing || m_activationTimer) return;
  // USForm1 reaches the form's window through its subclass, which its own 1 ms timer installs
  // after the show; the fade needs it, so the rest of the activation waits for that.
  m_activationTries = 0;
  m_activationTimer = SetTimer(0, 0, 1, [this](HWND, UINT, UINT_PTR, DWORD) {
    ++m_activationTries;
    if (m_usForm && !m_usForm->FormWindow() && m_activationTries < 50) return;
    StopActivationTimer();
    ActivationWork();
  });
}

void MessageForm::ActivationWork() {
  if (!m_running || m_closing) return;
  // The frame has gone by now and the client area grown over where it was: the ground is
  // painted anew, and the transparent label and panel take it again.
  Step([&] { RedrawWindow(FormWindow(), nullptr, 0, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW); });
  Step([&] { m_panel->Repaint(); });
  Step([&] { m_label->Refresh(); });
  if (m_fadeIn) {
    m_fadeIn = false;
    Step([&] { m_usForm->DrawFadeIN(); });
  }
  if (!m_unloadTimer) StartUnloadTimer();
  if (m_announced) return;
  m_announced = true;
  if (MessageFormShownHandler handler = ShownHandler()) {
    // From the loop itself, not from inside this timer's tick.
    std::weak_ptr<host::Form> weak = m_form;
    PushIdleAction([weak, handler] {
      if (auto form = weak.lock(); form && form->IsLoaded()) handler(form);
    });
  }
}

void MessageForm::Form_Unload() {
  StopUnloadTimer();
  StopActivationTimer();
  if (m_subclass) Step([&] { m_subclass->shk_UnHook(frame::eHookType::WH_KEYBOARD); });
}

void MessageForm::OButton_Click(int32_t index) {
  if (!m_running || m_closing) return;
  m_result = MessageButtonResult(m_buttons[static_cast<size_t>(index)]->Caption());
  CloseMessageForm();
}

void MessageForm::CloseMessageForm() {
  if (!m_running || m_closing) return;
  m_closing = true;
  StopUnloadTimer();
  if (m_fadeOut) Step([&] { m_usForm->DrawFadeOUT(); });
  Step([&] { m_usForm->UnloadMe(); });
}

bool MessageForm::FindButtonByHotKey(int32_t keyCode) {
  if (!m_form) return false;
  for (const auto& control : m_form->Controls()) {
    auto* button = dynamic_cast<USButton*>(control.get());
    if (!button || !button->Control::Visible() || !button->Enabled()) continue;
    const String& caption = button->Caption();
    // The character behind the "&": its code against the key's.
    if (caption.size() < 2 || static_cast<int32_t>(caption[1]) != keyCode) continue;
    OButton_Click(button->Index());
    return true;
  }
  return false;
}

void MessageForm::StartUnloadTimer() {
  if (m_unloadInterval == 0) return;
  m_unloadTimer = SetTimer(0, 0, m_unloadInterval, [this](HWND, UINT, UINT_PTR, DWORD) { trmUnload_Timer(); });
}

void MessageForm::StopUnloadTimer() {
  if (m_unloadTimer) KillTimer(0, m_unloadTimer);
  m_unloadTimer = 0;
}

void MessageForm::StopActivationTimer() {
  if (m_activationTimer) KillTimer(0, m_activationTimer);
  m_activationTimer = 0;
}

void MessageForm::trmUnload_Timer() {
  StopUnloadTimer();
  CloseMessageForm();
}

// ---- The form's ground and keys ------------------------------------------------------------------

void MessageForm::SubclassProc(int32_t, bool bBefore, bool& bHandled, LRESULT& lReturn, HWND lng_hWnd, UINT uMsg,
                               WPARAM wParam, LPARAM, LPARAM&) {
  if (!bBefore || uMsg != WM_ERASEBKGND || !m_drawGradient || !wParam || !m_usForm) return;
  RECT rc{};
  GetClientRect(lng_hWnd, &rc);
  frame::PaintGradientRect(static_cast<HDC>(wParam), 0, 0, rc.right, rc.bottom, m_usForm->GradientColor1(),
                           m_usForm->GradientColor2(), 1);
  bHandled = true;
  lReturn = 1;
}

void MessageForm::HookProc(int32_t, bool bBefore, bool& bHandled, LRESULT& lReturn, int32_t nCode, WPARAM wParam,
                           LPARAM lParam, frame::eHookType, LPARAM&) {
  if (!bBefore || nCode != HC_ACTION || (lParam & KF_UP_BIT) != 0) return;
  if (!m_running || m_closing || !FormWindow() || GetActiveWindow() != FormWindow()) return;
  // Alt and Ctrl combinations are the host's (access keys, shortcuts).
  if (GetKeyState(VK_CONTROL) < 0 || GetKeyState(VK_MENU) < 0) return;
  const auto key = static_cast<int32_t>(wParam);
  if (key == VK_ESCAPE) {
    // Only a box with one button (or none) closes on Esc; otherwise the user has to choose.
    const bool secondHidden = !m_buttons[1] || !m_buttons[1]->Control::Visible();
    const bool thirdHidden = !m_buttons[2] || !m_buttons[2]->Control::Visible();
    if (m_escToClose && secondHidden && thirdHidden) {
      bHandled = true;
      lReturn = 1;
      CloseMessageForm();
    }
    return;
  }
  if (FindButtonByHotKey(key)) {
    bHandled = true;
    lReturn = 1;
  }
}

}  // namespace mx::chrome
