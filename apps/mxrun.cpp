// mxrun FORM.frm [--png OUT.png] [--script FILE] [--save OUT.frm] [--window [--timeout MS]]
// Loads a form file with every control of the library, shows it at run time, plays an input
// script against it and prints each event as "EVENT <Source>.<Event> <args...>".
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <optional>
#include <string>

#include "host/ScriptPlayer.h"
#include "morvantix/Library.h"
#include "platform/Clock.h"
#include "platform/SdlBackend.h"

namespace {

int Usage() {
  std::fprintf(stderr, "usage: mxrun FORM.frm [--png OUT.png] [--script FILE] [--save OUT.frm] [--window [--timeout MS]]\n");
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  mx::host::FormRunOptions options;
  for (int i = 1; i < argc; ++i) {
    const char* arg = argv[i];
    auto value = [&](std::string& target) {
      if (i + 1 >= argc) return false;
      target = argv[++i];
      return true;
    };
    if (std::strcmp(arg, "--png") == 0) {
      if (!value(options.pngPath)) return Usage();
    } else if (std::strcmp(arg, "--script") == 0) {
      if (!value(options.scriptPath)) return Usage();
    } else if (std::strcmp(arg, "--save") == 0) {
      if (!value(options.savePath)) return Usage();
    } else if (std::strcmp(arg, "--window") == 0) {
      options.window = true;
    } else if (std::strcmp(arg, "--timeout") == 0) {
      std::string ms;
      if (!value(ms)) return Usage();
      options.timeoutMs = std::atoi(ms.c_str());
    } else if (arg[0] == '-' || !options.formPath.empty()) {
      return Usage();
    } else {
      options.formPath = arg;
    }
  }
  if (options.formPath.empty()) return Usage();
  mx::RegisterLibrary();
  // Headless, scripts are deterministic on the virtual clock: waits and double clicks do not
  // depend on how fast the machine is. Real windows run on the real clock.
  std::optional<mx::platform::ScopedVirtualClock> clock;
  if (options.window) {
    if (!mx::platform::UseSdlBackend()) {
      std::fprintf(stderr, "mxrun: --window needs a display (DISPLAY) and a build with SDL2\n");
      return 3;
    }
  } else {
    clock.emplace();
  }
  return mx::host::RunForm(options, std::cout, std::cerr);
}
