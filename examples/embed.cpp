// A form built by code: a label and a button, a click injected, the event heard, a PNG written.
#include <cstdio>
#include <filesystem>
#include "controls/USButton.h"
#include "controls/USLabel.h"
#include "host/Form.h"
#include "morvantix/Library.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/Window.h"
using namespace mx;

int main() {
  RegisterLibrary();
  platform::ScopedVirtualClock clock;  // headless, timers run on a clock we move
  auto form = std::make_shared<host::Form>(u"frmHello");
  form->Caption(u"Olá");
  form->ClientSize(3600, 1500);  // twips, 15 to a pixel: 240 x 100
  auto info = std::dynamic_pointer_cast<controls::USLabel>(form->AddControl(u"Morvantix.USLabel", u"lblInfo"));
  info->Move(240, 180, 3000, 300);
  info->Caption(u"Clique no <b>botão</b>");
  auto ok = std::dynamic_pointer_cast<controls::USButton>(form->AddControl(u"Morvantix.USButton", u"cmdOk"));
  ok->Move(240, 720, 1500, 495);
  ok->Caption(u"&Confirmar");
  int clicks = 0;
  ok->Click.connect([&] { ++clicks; info->Caption(u"<b>Confirmado</b>"); });
  form->Show();

  platform::POINT middle{(240 + 750) / 15, (720 + 247) / 15};  // the button's centre, in pixels
  platform::ClientToScreen(form->hWnd(), &middle);
  platform::InjectMouseMove(middle.x, middle.y);
  platform::PumpMessages();  // the button sees the pointer arrive, then the press
  platform::InjectClick();
  platform::RunFor(100);

  const auto png = std::filesystem::temp_directory_path() / "mx_embed_example.png";
  const bool saved = platform::SaveWindowPng(form->hWnd(), png.string());
  form->Unload();
  std::printf("clicks=%d picture=%s\n", clicks, saved ? png.c_str() : "(not written)");
  return clicks == 1 && saved ? 0 : 1;
}
