#pragma once
// The message forms behind MX::USMsgBox and MX::USMsgBoxEx: frmMsg shows the prompt as plain
// text, frmMsgHTML renders its markup. Both are one class; they differ in how the label reads
// the prompt and in one height constant.
//
//   +------------------------------------------+
//   | title                                [x] |  USForm1: the themed frame
//   |                                          |
//   |   prompt text, sized to the text,        |  lblMensagemEx (a USLabel), 3500 to 8000
//   |   wrapped at 8000 twips                  |  twips wide
//   |                                          |
//   |     [ &Sim ]  [ &Não ]  [ &Cancelar ]    |  xPic with OButton(0..2)
//   +------------------------------------------+
//
// Each form is made on first use and kept: every box loads its controls afresh (the form
// unloads when the box closes, through USForm1.UnloadMe) and runs modally on the platform's
// queue, so the call returns the result while the host's timers go on firing. trmUnload, a
// platform timer, is the optional time-out.
//
// Keys reach the form before its controls (the form's key preview, here a keyboard hook held
// while the box is up): a key whose code is the second character of a visible button's caption
// (the letter behind "&") clicks that button; Esc closes a box whose second and third buttons
// are hidden, when EscToClose allows it.
#include <array>
#include <cstdint>
#include <functional>
#include <memory>

#include "chrome/MessageFormButtons.h"
#include "frame/APISubClass.h"
#include "host/Form.h"
#include "platform/Types.h"
#include "utility/MX.h"

namespace mx::controls {
class USButton;
class USLabel;
}  // namespace mx::controls

namespace mx::chrome {

class USForm;
class MessageFormPanel;

// Called once each box is on the screen and ready (faded in, its time-out running), from the
// box's modal loop: the way a tool takes a picture of the box or plays input into it. An empty
// handler removes it.
using MessageFormShownHandler = std::function<void(const std::shared_ptr<host::Form>&)>;
void SetMessageFormShownHandler(MessageFormShownHandler handler);

// Makes the two forms MX's message-box provider. RegisterControls calls it.
void InstallMessageForms();

class MessageForm : public frame::SubclassOwner {
 public:
  // Layout of the form, in twips.
  static constexpr float kLabelLeft = 240;
  static constexpr float kLabelTop = 600;
  static constexpr float kLabelMinWidth = 3500;
  static constexpr float kLabelMaxWidth = 8000;
  static constexpr float kRightMargin = 240;
  static constexpr float kBottomPlain = 820;
  static constexpr float kBottomMarkup = 720;
  static constexpr float kPanelHeight = 600;
  static constexpr float kButtonWidth = 1200;
  static constexpr float kButtonHeight = 375;
  static constexpr float kButtonGap = 120;

  explicit MessageForm(bool markup);
  ~MessageForm() override;
  MessageForm(const MessageForm&) = delete;
  MessageForm& operator=(const MessageForm&) = delete;

  // The two forms of the process, made on first use.
  [[nodiscard]] static MessageForm& frmMsg();
  [[nodiscard]] static MessageForm& frmMsgHTML();

  // Prepares the form for the request, shows it modally and returns its result: the button's
  // code, or 0 when it closed without one. A call made while this same form is up (from a
  // timer of the host) shows nothing and returns 0.
  int32_t ShowMessageForm(const utility::MessageBoxRequest& request);
  // Ends the box: fades out when asked, then USForm1.UnloadMe. The result stays as it is.
  void CloseMessageForm();
  // Clicks the visible button whose caption's second character has the key's code; false when
  // none has.
  bool FindButtonByHotKey(int32_t keyCode);

  // ---- Inspection, for tests and tools -------------------------------------------------------

  [[nodiscard]] bool IsMarkup() const { return m_markup; }
  [[nodiscard]] const std::shared_ptr<host::Form>& Form() const { return m_form; }
  [[nodiscard]] std::shared_ptr<USForm> USForm1() const { return m_usForm; }
  [[nodiscard]] std::shared_ptr<controls::USButton> OButton(int32_t index) const;
  [[nodiscard]] std::shared_ptr<controls::USLabel> lblMensagemEx() const { return m_label; }
  [[nodiscard]] std::shared_ptr<MessageFormPanel> xPic() const { return m_panel; }
  [[nodiscard]] int32_t Result() const { return m_result; }
  // trmUnload: its interval (the WaitTimes of the box) and whether it runs.
  [[nodiscard]] uint32_t UnloadInterval() const { return m_unloadInterval; }
  [[nodiscard]] bool UnloadTimerRunning() const { return m_unloadTimer != 0; }
  // How many boxes this form has shown.
  [[nodiscard]] int32_t ShowCount() const { return m_showCount; }

  // The form's window (its ground, for the gradient) and the keyboard hook.
  void SubclassProc(int32_t nOrdinal, bool bBefore, bool& bHandled, platform::LRESULT& lReturn,
                    platform::HWND lng_hWnd, platform::UINT uMsg, platform::WPARAM wParam, platform::LPARAM lParam,
                    platform::LPARAM& lParamUser) override;
  void HookProc(int32_t nOrdinal, bool bBefore, bool& bHandled, platform::LRESULT& lReturn, int32_t nCode,
                platform::WPARAM wParam, platform::LPARAM lParam, frame::eHookType lHookType,
                platform::LPARAM& lParamUser) override;

 private:
  // The form's load: its controls as its design holds them.
  void LoadForm();
  void ApplyButtonLook(controls::USButton& button, const utility::MessageBoxRequest& request, int32_t theme);
  void SetLabelWidth(float width);
  void ArrangeMessageButtons(const MessageStyle& style);
  void Form_Activate();
  void ActivationWork();
  void Form_Unload();
  void OButton_Click(int32_t index);
  void StartUnloadTimer();
  void StopUnloadTimer();
  void StopActivationTimer();
  void trmUnload_Timer();
  [[nodiscard]] platform::HWND FormWindow() const;

  bool m_markup;
  std::shared_ptr<host::Form> m_form;
  std::shared_ptr<USForm> m_usForm;
  std::shared_ptr<MessageFormPanel> m_panel;
  std::array<std::shared_ptr<controls::USButton>, 3> m_buttons;
  std::shared_ptr<controls::USLabel> m_label;
  std::unique_ptr<frame::APISubClass> m_subclass;

  int32_t m_result = vbClosed;
  int32_t m_showCount = 0;
  bool m_running = false;
  bool m_closing = false;
  bool m_announced = false;  // the shown handler has been called for this box
  bool m_escToClose = true;
  bool m_fadeIn = false;
  bool m_fadeOut = false;
  bool m_drawGradient = false;
  uint32_t m_unloadInterval = 1000;
  platform::UINT_PTR m_unloadTimer = 0;
  platform::UINT_PTR m_activationTimer = 0;
  int32_t m_activationTries = 0;
};

}  // namespace mx::chrome
