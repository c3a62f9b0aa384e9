#include "host/ScriptPlayer.h"

#include <cctype>
#include <charconv>
#include <fstream>
#include <ostream>
#include <sstream>

#include "host/Err.h"
#include "host/Form.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "platform/PngEncoder.h"
#include "platform/SdlBackend.h"
#include "platform/Window.h"

namespace mx::host {

namespace {

// What the screen shows where the window is: pop-ups over it (tooltips, drop-down lists) are part
// of the picture, as a person looking at the form sees them.
bool SaveScreenArea(platform::HWND hwnd, const std::string& path) {
  platform::RECT r{};
  if (!platform::GetWindowRect(hwnd, &r) || r.right <= r.left || r.bottom <= r.top) return false;
  const platform::CapturedImage screen = platform::CaptureScreen();
  platform::CapturedImage part(r.right - r.left, r.bottom - r.top);
  for (int y = 0; y < part.height(); ++y) {
    for (int x = 0; x < part.width(); ++x) {
      const int sx = r.left + x, sy = r.top + y;
      const bool inside = sx >= 0 && sy >= 0 && sx < screen.width() && sy < screen.height();
      part.surface().row(y)[x] = inside ? screen.pixel(sx, sy) : 0xFF000000u;
    }
  }
  return platform::WritePngFile(part.surface(), path);
}

}  // namespace

namespace {

std::string Upper(std::string_view s) {
  std::string out(s);
  for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return out;
}

// Splits off the first word; `rest` gets what follows it, blanks before it dropped.
std::string_view NextWord(std::string_view& rest) {
  size_t i = 0;
  while (i < rest.size() && (rest[i] == ' ' || rest[i] == '\t')) ++i;
  size_t j = i;
  while (j < rest.size() && rest[j] != ' ' && rest[j] != '\t') ++j;
  std::string_view word = rest.substr(i, j - i);
  rest = rest.substr(j);
  return word;
}

bool ParseInt(std::string_view word, int32_t& out) {
  if (word.empty()) return false;
  int base = 10;
  if (word.size() > 2 && word[0] == '&' && (word[1] == 'H' || word[1] == 'h')) {
    word = word.substr(2);
    base = 16;
  }
  const auto r = std::from_chars(word.data(), word.data() + word.size(), out, base);
  return r.ec == std::errc() && r.ptr == word.data() + word.size();
}

struct KeyName {
  const char* name;
  int code;
};
constexpr KeyName kKeyNames[] = {
    {"BACK", 0x08},    {"BACKSPACE", 0x08}, {"TAB", 0x09},    {"RETURN", 0x0D},  {"ENTER", 0x0D},
    {"SHIFT", 0x10},   {"CONTROL", 0x11},   {"CTRL", 0x11},   {"MENU", 0x12},    {"ALT", 0x12},
    {"PAUSE", 0x13},   {"ESCAPE", 0x1B},    {"ESC", 0x1B},    {"SPACE", 0x20},   {"PRIOR", 0x21},
    {"PAGEUP", 0x21},  {"NEXT", 0x22},      {"PAGEDOWN", 0x22}, {"END", 0x23},   {"HOME", 0x24},
    {"LEFT", 0x25},    {"UP", 0x26},        {"RIGHT", 0x27},  {"DOWN", 0x28},    {"INSERT", 0x2D},
    {"DELETE", 0x2E},  {"DEL", 0x2E},
};

}  // namespace

ScriptError::ScriptError(int line, const std::string& message)
    : std::runtime_error("line " + std::to_string(line) + ": " + message), m_line(line) {}

int ScriptKeyCode(std::string_view word) {
  int32_t number = 0;
  if (ParseInt(word, number)) return number >= 0 && number <= 255 ? number : -1;
  const std::string up = Upper(word);
  for (const KeyName& k : kKeyNames)
    if (up == k.name) return k.code;
  // Letters and digits are their own codes; F1 to F24 follow 0x70.
  if (up.size() == 1 && (std::isalnum(static_cast<unsigned char>(up[0])))) return up[0];
  if (up.size() >= 2 && up[0] == 'F' && ParseInt(std::string_view(up).substr(1), number) && number >= 1 &&
      number <= 24)
    return 0x70 + number - 1;
  return -1;
}

std::vector<ScriptStep> ParseScript(std::string_view text) {
  std::vector<ScriptStep> steps;
  int lineNo = 0;
  while (!text.empty() || lineNo == 0) {
    const size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    ++lineNo;
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    std::string_view rest = line;
    const std::string_view verbWord = NextWord(rest);
    if (verbWord.empty() || verbWord[0] == '#') {
      if (text.empty()) break;
      continue;
    }
    const std::string verb = Upper(verbWord);
    ScriptStep step;
    step.line = lineNo;
    auto fail = [&](const std::string& why) { throw ScriptError(lineNo, why + ": \"" + std::string(line) + "\""); };
    auto number = [&](const char* what) {
      int32_t v = 0;
      if (!ParseInt(NextWord(rest), v)) fail(std::string("expected ") + what);
      return v;
    };
    auto noMore = [&] {
      if (!NextWord(rest).empty()) fail("unexpected words after the command");
    };
    auto button = [&] {
      const std::string w = Upper(NextWord(rest));
      if (w == "LEFT") return 0;
      if (w == "RIGHT") return 1;
      if (w == "MIDDLE") return 2;
      fail("expected left, right or middle");
      return 0;
    };
    auto key = [&] {
      const int code = ScriptKeyCode(NextWord(rest));
      if (code < 0) fail("expected a key code or key name");
      return code;
    };
    if (verb == "MOVE") {
      step.op = ScriptOp::Move;
      step.a = number("X");
      step.b = number("Y");
      noMore();
    } else if (verb == "DOWN" || verb == "UP") {
      step.op = verb == "DOWN" ? ScriptOp::Down : ScriptOp::Up;
      step.a = button();
      noMore();
    } else if (verb == "DBLCLICK") {
      step.op = ScriptOp::DblClick;
      noMore();
    } else if (verb == "WHEEL") {
      step.op = ScriptOp::Wheel;
      step.a = number("a number of notches");
      noMore();
    } else if (verb == "KEY" || verb == "KEYDOWN" || verb == "KEYUP") {
      step.op = verb == "KEY" ? ScriptOp::Key : verb == "KEYDOWN" ? ScriptOp::KeyDown : ScriptOp::KeyUp;
      step.a = key();
      noMore();
    } else if (verb == "TYPE") {
      step.op = ScriptOp::Type;
      // The text is everything after one separating blank.
      if (!rest.empty()) rest.remove_prefix(1);
      if (rest.empty()) fail("expected text to type");
      step.text = std::string(rest);
    } else if (verb == "FOCUS") {
      step.op = ScriptOp::Focus;
      std::string name(NextWord(rest));
      if (name.empty()) fail("expected a control name");
      const size_t open = name.find('(');
      if (open != std::string::npos) {
        if (name.back() != ')' || !ParseInt(std::string_view(name).substr(open + 1, name.size() - open - 2), step.index))
          fail("expected NAME(INDEX)");
        name.resize(open);
      }
      step.text = name;
      noMore();
    } else if (verb == "WAIT") {
      step.op = ScriptOp::Wait;
      step.a = number("milliseconds");
      if (step.a < 0) fail("a wait cannot be negative");
      noMore();
    } else if (verb == "SHOT") {
      step.op = ScriptOp::Shot;
      step.text = std::string(NextWord(rest));
      if (step.text.empty()) fail("expected a file name");
      noMore();
    } else {
      fail("unknown command \"" + std::string(verbWord) + "\"");
    }
    steps.push_back(std::move(step));
    if (text.empty()) break;
  }
  return steps;
}

ScriptPlayer::ScriptPlayer(std::shared_ptr<Form> form) : m_form(std::move(form)) {}

bool ScriptPlayer::Play(std::span<const ScriptStep> steps) {
  for (const ScriptStep& step : steps) {
    if (Forms().empty()) return false;
    Run(step);
    platform::PumpMessages();
  }
  return !Forms().empty();
}

void ScriptPlayer::Run(const ScriptStep& step) {
  using platform::MouseButton;
  static constexpr MouseButton kButtons[] = {MouseButton::Left, MouseButton::Right, MouseButton::Middle};
  switch (step.op) {
    case ScriptOp::Move: {
      // Form client pixels; a form that has gone leaves the point where it is.
      platform::POINT pt{step.a, step.b};
      if (m_form && m_form->hWnd()) platform::ClientToScreen(m_form->hWnd(), &pt);
      platform::InjectMouseMove(pt.x, pt.y);
      break;
    }
    case ScriptOp::Down:
    case ScriptOp::Up:
      platform::InjectMouseButton(kButtons[step.a], step.op == ScriptOp::Down);
      break;
    case ScriptOp::DblClick:
      // Nothing moves the clock between the four, so they fall within the double-click time.
      for (int i = 0; i < 2; ++i) {
        platform::InjectMouseButton(MouseButton::Left, true);
        platform::InjectMouseButton(MouseButton::Left, false);
      }
      break;
    case ScriptOp::Wheel:
      platform::InjectWheel(step.a * 120);
      break;
    case ScriptOp::Key:
      platform::InjectKey(step.a, true);
      platform::InjectKey(step.a, false);
      break;
    case ScriptOp::KeyDown:
    case ScriptOp::KeyUp:
      platform::InjectKey(step.a, step.op == ScriptOp::KeyDown);
      break;
    case ScriptOp::Type:
      platform::InjectText(FromUtf8(step.text));
      break;
    case ScriptOp::Focus: {
      std::shared_ptr<Control> control = m_form ? m_form->FindControl(FromUtf8(step.text), step.index) : nullptr;
      if (!control) throw ScriptError(step.line, "no control named \"" + step.text + "\" on the form");
      try {
        control->SetFocus();
      } catch (const RuntimeError& e) {
        throw ScriptError(step.line, "\"" + step.text + "\" cannot take the focus: " + e.what());
      }
      break;
    }
    case ScriptOp::Wait:
      platform::RunFor(static_cast<uint64_t>(step.a));
      break;
    case ScriptOp::Shot:
      platform::PumpMessages();
      if (!m_form || !m_form->hWnd() || !SaveScreenArea(m_form->hWnd(), step.text))
        throw ScriptError(step.line, "cannot write the screenshot \"" + step.text + "\"");
      break;
  }
}

std::string FormatEventLine(StringView sourceName, int32_t index, StringView eventName,
                            std::span<const Variant> args) {
  std::string line = "EVENT " + ToUtf8(sourceName) + "." + ToUtf8(eventName);
  auto arg = [&](const Variant& v) -> std::string {
    if (v.IsString()) {
      std::string text = ToUtf8(v.ToString());
      std::string quoted = "\"";
      for (char c : text) {
        quoted += c;
        if (c == '"') quoted += '"';
      }
      return quoted + "\"";
    }
    if (v.TryGet<bool>()) return *v.TryGet<bool>() ? "True" : "False";
    if (v.IsEmpty()) return "Empty";
    if (v.IsNull()) return "Null";
    if (v.IsObject()) return ToUtf8(v.TypeName());
    if (v.IsNumberKind()) {
      if (v.TryGet<float>() || v.TryGet<double>() || v.TryGet<Currency>()) return ToUtf8(InvariantNumberToText(v));
      if (v.TryGet<DateValue>()) return ToUtf8(InvariantDateToText(v.TryGet<DateValue>()->days));
      return std::to_string(v.ToLong());
    }
    return ToUtf8(v.TypeName());
  };
  // A member of a control array gets its index first, as the host hands it to handlers.
  if (index >= 0) line += " " + std::to_string(index);
  for (const Variant& v : args) line += " " + arg(v);
  return line;
}

namespace {

// The application's message loop for real windows: runs until no form is loaded or the time is
// up. A closed window unloads its form through the form's own close handling.
void RunWindowLoop(int32_t timeoutMs) {
  const uint64_t start = platform::GetTickCount64();
  while (!Forms().empty()) {
    if (timeoutMs > 0 && platform::GetTickCount64() - start >= static_cast<uint64_t>(timeoutMs)) break;
    platform::RunFor(50);
  }
}

// The form as it is on the screen: in a real window, the pixels the window presented (read back
// from it), else the window's own surface.
bool SaveFormPicture(const Form& form, const std::string& path) {
  if (platform::IsSdlBackendActive()) {
    platform::CapturedImage shown = platform::ReadPresentedPixels(form.hWnd());
    if (!shown.empty()) return platform::WritePngFile(shown.surface(), path);
  }
  return platform::SaveWindowPng(form.hWnd(), path);
}

}  // namespace

int RunForm(const FormRunOptions& options, std::ostream& out, std::ostream& err) {
  std::vector<ScriptStep> steps;
  if (!options.scriptPath.empty()) {
    std::ifstream in(options.scriptPath, std::ios::binary);
    if (!in) {
      err << "mxrun: cannot read the script " << options.scriptPath << "\n";
      return 1;
    }
    std::stringstream buffer;
    buffer << in.rdbuf();
    try {
      steps = ParseScript(buffer.str());
    } catch (const ScriptError& e) {
      err << "mxrun: " << options.scriptPath << ": " << e.what() << "\n";
      return 1;
    }
  }

  std::shared_ptr<Form> form;
  try {
    form = LoadFormFile(options.formPath, FormMode::Run);
  } catch (const RuntimeError& e) {
    err << "mxrun: " << options.formPath << ": " << ToUtf8(e.Description()) << "\n";
    return 1;
  }
  if (!form) {
    err << "mxrun: " << options.formPath << ": the form could not be loaded\n";
    return 1;
  }
  const String formName = form->Name();
  form->SetEventSink([&out, formName](StringView source, int32_t index, StringView eventName, std::span<Variant> args) {
    // Of the form's own events only Load and Unload are printed.
    if (source == formName && index < 0) {
      if (eventName == u"Load" || eventName == u"Unload") out << "EVENT " << ToUtf8(source) << "." << ToUtf8(eventName) << "\n";
      return;
    }
    out << FormatEventLine(source, index, eventName, std::span<const Variant>(args.data(), args.size())) << "\n";
  });

  int code = 0;
  try {
    if (options.prepare) options.prepare(*form);
    form->Show();
    platform::PumpMessages();
    ScriptPlayer player(form);
    player.Play(steps);
    if (options.window) RunWindowLoop(options.timeoutMs);
  } catch (const ScriptError& e) {
    err << "mxrun: " << options.scriptPath << ": " << e.what() << "\n";
    code = 1;
  } catch (const RuntimeError& e) {
    err << "mxrun: " << ToUtf8(e.Description()) << "\n";
    code = 1;
  }

  if (form->IsLoaded()) {
    platform::PumpMessages();
    if (!options.pngPath.empty() && !SaveFormPicture(*form, options.pngPath)) {
      err << "mxrun: cannot write " << options.pngPath << "\n";
      code = 1;
    }
    if (!options.savePath.empty()) {
      try {
        SaveFormFile(*form, options.savePath);
      } catch (const RuntimeError& e) {
        err << "mxrun: cannot save " << options.savePath << ": " << ToUtf8(e.Description()) << "\n";
        code = 1;
      }
    }
  } else if (!options.pngPath.empty() || !options.savePath.empty()) {
    err << "mxrun: the form unloaded during the script; nothing to capture or save\n";
  }

  // The program ends as an application does: whatever is still loaded unloads.
  for (const std::shared_ptr<Form>& f : Forms()) f->Unload(vbAppWindows);
  platform::PumpMessages();
  out.flush();
  return code;
}

}  // namespace mx::host
