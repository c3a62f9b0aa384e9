#pragma once
// Shared pieces of the host's control and form tests: a user control that records every handler
// the host calls, in order, and lets a test act inside a handler; and input helpers that press
// and release at a control's client points.
#include <functional>
#include <string>
#include <vector>

#include "host/ControlRegistry.h"
#include "host/PropertyBag.h"
#include "host/UserControl.h"
#include "platform/User.h"
#include "platform/WindowTestSupport.h"

namespace mx::host::testing {

class RecordingControl : public UserControl {
 public:
  [[nodiscard]] String ProgId() const override { return u"Test.Recorder"; }

  std::vector<std::string> log;
  // The control's own copy of Ambient.UserMode, taken only in ReadProperties, as the library's
  // controls keep it.
  bool userMode = false;
  // Persisted state: a caption and a number, written with different defaults in each direction
  // for the number, as some keys of the library do.
  String caption;
  int32_t number = 0;

  std::function<void()> onResize;
  std::function<void(int16_t&, int16_t&)> onKeyDown;
  std::function<void(int16_t&)> onKeyPress;
  std::function<void()> onClick;
  std::function<void(int16_t&)> onAccessKey;

  Event<> Click;
  Event<int16_t&, int16_t&> KeyDown;
  void ConnectEventSink(const EventSink& sink) override { BindEventSinks(sink, u"Click", Click, u"KeyDown", KeyDown); }

  using UserControl::PropertyChanged;

 protected:
  void UserControl_Initialize() override { log.push_back("Initialize"); }
  void UserControl_InitProperties() override {
    log.push_back("InitProperties");
    caption = Ambient().DisplayName();
    number = 7;
  }
  void UserControl_ReadProperties(PropertyBag& bag) override {
    log.push_back("ReadProperties");
    userMode = Ambient().UserMode();
    caption = bag.ReadProperty(u"Caption", Ambient().DisplayName()).ToString();
    number = bag.ReadProperty(u"Number", int32_t{7}).ToLong();
  }
  void UserControl_WriteProperties(PropertyBag& bag) override {
    log.push_back("WriteProperties");
    bag.WriteProperty(u"Caption", caption, Ambient().DisplayName());
    bag.WriteProperty(u"Number", number, int32_t{0});
  }
  void UserControl_Resize() override {
    log.push_back("Resize");
    if (onResize) onResize();
  }
  void UserControl_Show() override { log.push_back("Show"); }
  void UserControl_Hide() override { log.push_back("Hide"); }
  void UserControl_Paint() override { log.push_back("Paint"); }
  void UserControl_Terminate() override { log.push_back("Terminate"); }
  void UserControl_GotFocus() override { log.push_back("GotFocus"); }
  void UserControl_LostFocus() override { log.push_back("LostFocus"); }
  void UserControl_EnterFocus() override { log.push_back("EnterFocus"); }
  void UserControl_ExitFocus() override { log.push_back("ExitFocus"); }
  void UserControl_AccessKeyPress(int16_t& k) override {
    log.push_back("AccessKeyPress " + std::to_string(k));
    if (onAccessKey) onAccessKey(k);
  }
  void UserControl_AmbientChanged(const String& name) override { log.push_back("AmbientChanged " + ToUtf8(name)); }
  void UserControl_Click() override {
    log.push_back("Click");
    if (onClick) onClick();
    Click();
  }
  void UserControl_DblClick() override { log.push_back("DblClick"); }
  void UserControl_KeyDown(int16_t& k, int16_t& s) override {
    log.push_back("KeyDown " + std::to_string(k) + " " + std::to_string(s));
    if (onKeyDown) onKeyDown(k, s);
    const int16_t before = k;
    KeyDown(k, s);
    if (k != before) log.push_back("KeyCode now " + std::to_string(k));
  }
  void UserControl_KeyPress(int16_t& k) override {
    log.push_back("KeyPress " + std::to_string(k));
    if (onKeyPress) onKeyPress(k);
  }
  void UserControl_KeyUp(int16_t& k, int16_t& s) override { log.push_back("KeyUp " + std::to_string(k)); }
  void UserControl_MouseDown(int16_t& b, int16_t& s, float& x, float& y) override {
    log.push_back("MouseDown " + std::to_string(b) + " " + std::to_string(static_cast<int>(x)) + "," +
                  std::to_string(static_cast<int>(y)));
  }
  void UserControl_MouseUp(int16_t& b, int16_t& s, float& x, float& y) override {
    log.push_back("MouseUp " + std::to_string(b));
  }
};

// Registers the recorder under its class name (the registry outlives each test).
inline void RegisterRecorder() {
  RegisterControlClass(u"Test.Recorder", [] { return std::make_shared<RecordingControl>(); });
}

// Screen point of a client point of a window.
inline platform::POINT ScreenPoint(platform::HWND hwnd, int x, int y) {
  platform::POINT p{x, y};
  platform::ClientToScreen(hwnd, &p);
  return p;
}

inline void PressAt(platform::HWND hwnd, int x, int y, platform::MouseButton b = platform::MouseButton::Left) {
  platform::POINT p = ScreenPoint(hwnd, x, y);
  platform::InjectMouseMove(p.x, p.y);
  platform::InjectMouseButton(b, true);
  platform::PumpMessages();
}

inline void ReleaseAtScreen(int x, int y, platform::MouseButton b = platform::MouseButton::Left) {
  platform::InjectMouseMove(x, y);
  platform::InjectMouseButton(b, false);
  platform::PumpMessages();
}

// The entries of a log that start with one of the prefixes, in order.
inline std::vector<std::string> Filter(const std::vector<std::string>& log, std::initializer_list<std::string> prefixes) {
  std::vector<std::string> out;
  for (const auto& e : log)
    for (const auto& p : prefixes)
      if (e.rfind(p, 0) == 0) {
        out.push_back(e);
        break;
      }
  return out;
}

}  // namespace mx::host::testing
