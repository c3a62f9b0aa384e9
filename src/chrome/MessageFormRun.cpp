#include "chrome/MessageFormRun.h"

#include <fstream>
#include <optional>
#include <ostream>
#include <sstream>
#include <vector>

#include "chrome/MessageForm.h"
#include "host/ScriptPlayer.h"
#include "host/String.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/MessageQueue.h"
#include "utility/MX.h"

namespace mx::chrome {

int RunMessageBox(const MessageBoxRunOptions& options, std::ostream& out, std::ostream& err) {
  std::vector<host::ScriptStep> steps;
  if (!options.scriptPath.empty()) {
    std::ifstream in(options.scriptPath, std::ios::binary);
    if (!in) {
      err << "mxutil: cannot read the script " << options.scriptPath << "\n";
      return 1;
    }
    std::stringstream buffer;
    buffer << in.rdbuf();
    try {
      steps = host::ParseScript(buffer.str());
    } catch (const host::ScriptError& e) {
      err << "mxutil: " << options.scriptPath << ": " << e.what() << "\n";
      return 1;
    }
  }

  // Headless, the script is deterministic on the virtual clock, as mxrun plays it.
  std::optional<platform::ScopedVirtualClock> clock;
  if (!platform::IsVirtualClock()) clock.emplace();

  int code = 0;
  if (!utility::HasMessageBoxProvider()) InstallMessageForms();
  SetMessageFormShownHandler([&](const std::shared_ptr<host::Form>& form) {
    platform::PumpMessages();
    if (!options.pngPath.empty() && !platform::SaveWindowPng(form->hWnd(), options.pngPath)) {
      err << "mxutil: cannot write " << options.pngPath << "\n";
      code = 1;
    }
    try {
      host::ScriptPlayer player(form);
      player.Play(steps);
    } catch (const host::ScriptError& e) {
      err << "mxutil: " << options.scriptPath << ": " << e.what() << "\n";
      code = 1;
    }
  });

  utility::MessageBoxRequest request;
  request.Prompt = host::FromUtf8(options.prompt);
  request.Buttons = options.buttons;
  if (!options.title.empty()) request.Title = host::Variant(host::FromUtf8(options.title));
  request.WaitTimes = options.waitTimes;
  const utility::MX mx;
  const int32_t result = options.markup ? mx.USMsgBoxEx(request) : mx.USMsgBox(request);
  SetMessageFormShownHandler(nullptr);
  out << result << "\n";
  return code;
}

}  // namespace mx::chrome
