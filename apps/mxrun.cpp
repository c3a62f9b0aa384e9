// mxrun FORM.frm [--png OUT.png] [--script FILE] [--save OUT.frm] [--window]
// Loads a form file with every control of the library, shows it at run time, plays an input
// script against it and prints each event as "EVENT <Source>.<Event> <args...>".
#include <cstdio>
#include <cstring>
#include <iostream>
#include <string>

#include "host/ScriptPlayer.h"
#include "morvantix/Library.h"
#include "platform/Clock.h"

namespace {

int Usage() {
  std::fprintf(stderr, "usage: mxrun FORM.frm [--png OUT.png] [--script FILE] [--save OUT.frm] [--window]\n");
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  mx::host::FormRunOptions options;
  bool window = false;
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
      window = true;
    } else if (arg[0] == '-' || !options.formPath.empty()) {
      return Usage();
    } else {
      options.formPath = arg;
    }
  }
  if (options.formPath.empty()) return Usage();
  if (window) {
    std::fprintf(stderr, "mxrun: --window is not available yet\n");
    return 3;
  }
  mx::RegisterLibrary();
  // Scripts are deterministic on the virtual clock: waits and double clicks do not depend on
  // how fast the machine is.
  mx::platform::ScopedVirtualClock clock;
  return mx::host::RunForm(options, std::cout, std::cerr);
}
