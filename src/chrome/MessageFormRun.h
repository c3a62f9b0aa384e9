#pragma once
// What `mxutil USMsgBox` does, as a library call: shows one message box headless on the virtual
// clock, writes a picture of it as it first appears, plays an input script into it (the words of
// host/ScriptPlayer.h, as mxrun plays them into a form) and prints the box's result.
#include <cstdint>
#include <iosfwd>
#include <string>

namespace mx::chrome {

struct MessageBoxRunOptions {
  std::string prompt;       // UTF-8
  int32_t buttons = 0;      // the style code
  std::string title;        // empty: the application's title
  bool markup = false;      // USMsgBoxEx in place of USMsgBox
  int32_t waitTimes = 0;    // the time-out, milliseconds (0: none)
  std::string scriptPath;   // empty: no script
  std::string pngPath;      // empty: no picture
};

// Runs the box (the caller has registered the library; the forms install themselves as the
// provider if they are not yet) and prints its result (a number) on one line of out.
// Returns the exit code: 0, or 1 when the script cannot be read or played or the picture cannot
// be written (the message goes to err). A script that leaves the box up ends it as a box closed
// without a button: nothing more can happen headless.
int RunMessageBox(const MessageBoxRunOptions& options, std::ostream& out, std::ostream& err);

}  // namespace mx::chrome
