#pragma once
// Input scripts: a few lines of text that drive a form the way a person would, through the
// platform's injected input, so that a form can be exercised from the command line (mxrun) and
// from tests with the same words.
//
//   move X Y              pointer to form client pixel (X, Y)
//   down BUTTON           BUTTON is left, right or middle
//   up BUTTON
//   dblclick              left down, up, down, up at the same place, within the double-click time
//   wheel N               N notches of the wheel (120 each; positive turns away from the user)
//   key CODE              key down then up; CODE is a key code (32, &H20) or a name (SPACE,
//                         RETURN, ESCAPE, TAB, LEFT, F1, A, 7...)
//   keydown CODE / keyup CODE
//   type TEXT             the characters of the rest of the line
//   focus NAME            gives a control the focus; NAME or NAME(INDEX) for an array member
//   wait MS               lets MS milliseconds pass on the clock, running timers on the way
//   shot FILE.png         writes the form's window as a PNG
// Blank lines and lines starting with # are skipped; words are separated by blanks.
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/String.h"
#include "host/Variant.h"

namespace mx::host {

class Form;

enum class ScriptOp : uint8_t { Move, Down, Up, DblClick, Wheel, Key, KeyDown, KeyUp, Type, Focus, Wait, Shot };

struct ScriptStep {
  ScriptOp op = ScriptOp::Move;
  int line = 0;       // 1-based line of the script
  int32_t a = 0;      // X, button (0 left, 1 right, 2 middle), notches, key code, milliseconds
  int32_t b = 0;      // Y
  std::string text;   // type: the text; focus: the name; shot: the file
  int32_t index = -1; // focus: the array index, -1 for none
};

// A script line that cannot be understood. what() reads "line N: ...".
class ScriptError : public std::runtime_error {
 public:
  ScriptError(int line, const std::string& message);
  [[nodiscard]] int Line() const { return m_line; }

 private:
  int m_line;
};

// Parses a whole script (UTF-8); raises ScriptError on the first bad line.
[[nodiscard]] std::vector<ScriptStep> ParseScript(std::string_view text);
// The key code of a name or number as the script writes it; -1 when it is neither.
[[nodiscard]] int ScriptKeyCode(std::string_view word);

class ScriptPlayer {
 public:
  explicit ScriptPlayer(std::shared_ptr<Form> form);

  // Plays the steps in order, letting the queue run after each one. Stops early, returning
  // false, when no form is loaded any more. A step that cannot be carried out (no control of
  // that name, a screenshot that cannot be written) raises ScriptError with its line.
  bool Play(std::span<const ScriptStep> steps);

 private:
  void Run(const ScriptStep& step);
  std::shared_ptr<Form> m_form;
};

// One event as mxrun prints it: "EVENT cmdOk.Click", "EVENT cmdOk.MouseDown 1 0 12 7.5",
// "EVENT cmd.Click 2" for member 2 of an array. Numbers in invariant form, Booleans as
// True/False, strings in double quotes (a quote inside doubled), objects by their type name.
[[nodiscard]] std::string FormatEventLine(StringView sourceName, int32_t index, StringView eventName,
                                          std::span<const Variant> args);

// What mxrun does, as a library call: load the form file, show it, print its events, play the
// script, then take the screenshot and save the form if asked, and unload what is still loaded.
struct FormRunOptions {
  std::string formPath;
  std::string scriptPath;  // empty: no script
  std::string pngPath;     // empty: no screenshot
  std::string savePath;    // empty: not saved
  // Real windows: after the script the form runs on the message loop until its last form has
  // unloaded (the window closed), or until timeoutMs of real time has passed when above 0.
  bool window = false;
  int32_t timeoutMs = 0;
  // Called with the loaded form before it shows: what a program's form load would add (content
  // a form file cannot hold, such as a database's rows).
  std::function<void(Form&)> prepare;
};
// Returns the process exit code: 0 on success, 1 for a form or script that cannot be read or
// played (the message, with its line, goes to err).
int RunForm(const FormRunOptions& options, std::ostream& out, std::ostream& err);

}  // namespace mx::host
