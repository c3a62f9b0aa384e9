#include "controls/AboutBox.h"

#include <memory>

#include "controls/ControlSupport.h"
#include "frame/Drawing.h"
#include "frame/Gradient.h"
#include "host/Form.h"
#include "host/UserControl.h"
#include "platform/Gdi.h"
#include "platform/Messages.h"
#include "platform/Text.h"

namespace mx::controls {

namespace {

constexpr char16_t kProductName[] = u"Morvantix";
constexpr char16_t kVersionText[] = u"Versão 0.1 para C++";
constexpr char16_t kCloseHint[] = u"Clique ou tecle Esc para fechar";
constexpr int kWidth = 300;   // client pixels
constexpr int kHeight = 140;

// The content of the box: a themed band with the name, the version beneath, and a hint. Any
// click or Esc/Enter hides the form, which ends its modal loop.
class AboutPanel : public host::UserControl {
 public:
  [[nodiscard]] host::String ProgId() const override { return u"Morvantix.AboutPanel"; }

 protected:
  void UserControl_Resize() override { detail::Step([&] { Paint(); }); }
  void UserControl_Show() override { detail::Step([&] { Paint(); }); }
  void UserControl_Click() override { Close(); }
  void UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) override {
    if (KeyCode == platform::VK_ESCAPE || KeyCode == platform::VK_RETURN) Close();
  }
  void UserControl_AccessKeyPress(int16_t& KeyAscii) override {
    if (KeyAscii == 27 || KeyAscii == 13) Close();
  }

 private:
  void Close() {
    if (host::Form* form = Parent()) detail::Step([&] { form->Hide(); });
  }

  void Paint() {
    const int w = static_cast<int>(ScaleWidth());
    const int h = static_cast<int>(ScaleHeight());
    AutoRedraw(true);
    BackColor(0xFFFFFF);
    Cls();
    const platform::HDC dc = hDC();
    frame::PaintGradientRect(dc, 0, 0, w, 56, 0x9A572B, 0x501A00, frame::GradientTopToBottom);
    platform::SetBkMode(dc, platform::TRANSPARENT);
    auto font = std::make_shared<host::StdFont>(u"Tahoma", 18, true);
    Font(font);
    platform::RECT title{0, 0, w, 56};
    frame::DrawTextColor(dc, kProductName, title,
                         platform::DT_CENTER | platform::DT_VCENTER | platform::DT_SINGLELINE | platform::DT_NOPREFIX,
                         0xFFFFFF);
    Font(std::make_shared<host::StdFont>(u"Tahoma", 8.25));
    platform::RECT version{0, 64, w, 84};
    frame::DrawTextColor(dc, kVersionText, version, platform::DT_CENTER | platform::DT_SINGLELINE, 0x000000);
    platform::RECT hint{0, h - 28, w, h - 8};
    frame::DrawTextColor(dc, kCloseHint, hint, platform::DT_CENTER | platform::DT_SINGLELINE, 0x808080);
    frame::FrameRectColor(dc, platform::RECT{0, 0, w, h}, 0x9A572B);
    AutoRedraw(false);
  }
};

}  // namespace

void ShowAboutBox() {
  auto form = std::make_shared<host::Form>(u"frmAbout");
  form->Caption(u"Sobre");
  form->BorderStyle(3);  // fixed dialog
  form->BackColor(0xFFFFFF);
  form->Load();
  // Size the outer window so that the client area is kWidth x kHeight.
  const float extraW = form->Width() - form->ScaleWidth();
  const float extraH = form->Height() - form->ScaleHeight();
  form->Move(3000, host::Variant(2000.0f), host::Variant(kWidth * 15 + extraW),
             host::Variant(kHeight * 15 + extraH));
  auto panel = std::make_shared<AboutPanel>();
  form->SiteControl(panel, u"picAbout");
  panel->Move(0, 0, form->ScaleWidth(), form->ScaleHeight());
  panel->Cancel(true);
  panel->LoadNew(true);
  form->Show(1);
  if (form->IsLoaded()) form->Unload();
}

}  // namespace mx::controls
