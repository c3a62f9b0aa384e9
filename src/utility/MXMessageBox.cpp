// The message-box members of MX: they prepare the request (the prompt's "&" doubled, the form
// chosen) and hand it to the provider that the forms' layer installs. The toolkit default theme
// and the application's title live here too, being library-wide settings.
#include <atomic>
#include <cerrno>
#include <utility>

#include "host/String.h"
#include "utility/MX.h"

namespace mx::utility {

namespace {

MessageBoxProvider& Provider() {
  static MessageBoxProvider provider;
  return provider;
}

std::atomic<int32_t> g_defaultTheme{2};

host::String& TitleOverride() {
  static host::String title;
  return title;
}

int32_t Show(MessageBoxRequest& request) {
  // Copied first: a provider that replaces itself while its box is up must not free the
  // function that is running.
  MessageBoxProvider provider = Provider();
  if (!provider) return 0;
  try {
    return provider(request);
  } catch (...) {
    // Utility members never raise: a box that failed closed without a button.
    return 0;
  }
}

}  // namespace

void SetMessageBoxProvider(MessageBoxProvider provider) { Provider() = std::move(provider); }

bool HasMessageBoxProvider() { return static_cast<bool>(Provider()); }

int32_t ToolkitDefaultTheme() { return g_defaultTheme.load(std::memory_order_relaxed); }

host::String ApplicationTitle() {
  if (!TitleOverride().empty()) return TitleOverride();
  // The host's default title is the project's name; here that is the program's.
  return host::FromUtf8(program_invocation_short_name ? program_invocation_short_name : "");
}

void SetApplicationTitle(host::StringView title) { TitleOverride() = host::String(title); }

host::String DoubleAmpersands(host::StringView text) {
  host::String out;
  out.reserve(text.size());
  for (char16_t c : text) {
    out += c;
    if (c == u'&') out += u'&';
  }
  return out;
}

int32_t MX::USMsgBox(MessageBoxRequest request) const {
  request.Prompt = DoubleAmpersands(request.Prompt);
  request.Markup = false;
  return Show(request);
}

int32_t MX::USMsgBoxEx(MessageBoxRequest request) const {
  // Any "<" at all sends the prompt to the markup form, even one that opens no tag.
  request.Markup = request.Prompt.find(u'<') != host::String::npos;
  request.Prompt = DoubleAmpersands(request.Prompt);
  return Show(request);
}

namespace {

MessageBoxRequest Gather(const host::String& Prompt, int32_t Buttons, const host::Variant& Title, int32_t Theme,
                         host::OLE_COLOR ButtonForeColor, host::OLE_COLOR ButtonBorderColor,
                         host::OLE_COLOR ButtonBorderColorOver, host::OLE_COLOR ButtonBorderColorDown,
                         int32_t ButtonGradientColors, host::OLE_COLOR ButtonGradientColor1,
                         host::OLE_COLOR ButtonGradientColor2, host::OLE_COLOR ButtonGradientColor3,
                         host::OLE_COLOR ButtonGradientColor4, host::OLE_COLOR BackgoundGradientColor1,
                         host::OLE_COLOR BackgoundGradientColor2, std::shared_ptr<host::StdFont> FontStyle,
                         std::shared_ptr<host::StdPicture> Icon, host::OLE_COLOR BackColor, uint8_t TranslucentLevel,
                         bool FadeIN, bool FadeOUT, bool DrawGradient, bool EscToClose, int32_t WaitTimes,
                         bool PlaySound) {
  MessageBoxRequest r;
  r.Prompt = Prompt;
  r.Buttons = Buttons;
  r.Title = Title;
  r.Theme = Theme;
  r.ButtonForeColor = ButtonForeColor;
  r.ButtonBorderColor = ButtonBorderColor;
  r.ButtonBorderColorOver = ButtonBorderColorOver;
  r.ButtonBorderColorDown = ButtonBorderColorDown;
  r.ButtonGradientColors = ButtonGradientColors;
  r.ButtonGradientColor1 = ButtonGradientColor1;
  r.ButtonGradientColor2 = ButtonGradientColor2;
  r.ButtonGradientColor3 = ButtonGradientColor3;
  r.ButtonGradientColor4 = ButtonGradientColor4;
  r.BackgoundGradientColor1 = BackgoundGradientColor1;
  r.BackgoundGradientColor2 = BackgoundGradientColor2;
  r.FontStyle = std::move(FontStyle);
  r.Icon = std::move(Icon);
  r.BackColor = BackColor;
  r.TranslucentLevel = TranslucentLevel;
  r.FadeIN = FadeIN;
  r.FadeOUT = FadeOUT;
  r.DrawGradient = DrawGradient;
  r.EscToClose = EscToClose;
  r.WaitTimes = WaitTimes;
  r.PlaySound = PlaySound;
  return r;
}

}  // namespace

#define MX_MSGBOX_ARGS                                                                                              \
  Prompt, Buttons, Title, Theme, ButtonForeColor, ButtonBorderColor, ButtonBorderColorOver, ButtonBorderColorDown,   \
      ButtonGradientColors, ButtonGradientColor1, ButtonGradientColor2, ButtonGradientColor3, ButtonGradientColor4, \
      BackgoundGradientColor1, BackgoundGradientColor2, std::move(FontStyle), std::move(Icon), BackColor,           \
      TranslucentLevel, FadeIN, FadeOUT, DrawGradient, EscToClose, WaitTimes, PlaySound

int32_t MX::USMsgBox(const String& Prompt, int32_t Buttons, const host::Variant& Title, int32_t Theme,
                     host::OLE_COLOR ButtonForeColor, host::OLE_COLOR ButtonBorderColor,
                     host::OLE_COLOR ButtonBorderColorOver, host::OLE_COLOR ButtonBorderColorDown,
                     int32_t ButtonGradientColors, host::OLE_COLOR ButtonGradientColor1,
                     host::OLE_COLOR ButtonGradientColor2, host::OLE_COLOR ButtonGradientColor3,
                     host::OLE_COLOR ButtonGradientColor4, host::OLE_COLOR BackgoundGradientColor1,
                     host::OLE_COLOR BackgoundGradientColor2, std::shared_ptr<host::StdFont> FontStyle,
                     std::shared_ptr<host::StdPicture> Icon, host::OLE_COLOR BackColor, uint8_t TranslucentLevel,
                     bool FadeIN, bool FadeOUT, bool DrawGradient, bool EscToClose, int32_t WaitTimes,
                     bool PlaySound) const {
  return USMsgBox(Gather(MX_MSGBOX_ARGS));
}

int32_t MX::USMsgBoxEx(const String& Prompt, int32_t Buttons, const host::Variant& Title, int32_t Theme,
                       host::OLE_COLOR ButtonForeColor, host::OLE_COLOR ButtonBorderColor,
                       host::OLE_COLOR ButtonBorderColorOver, host::OLE_COLOR ButtonBorderColorDown,
                       int32_t ButtonGradientColors, host::OLE_COLOR ButtonGradientColor1,
                       host::OLE_COLOR ButtonGradientColor2, host::OLE_COLOR ButtonGradientColor3,
                       host::OLE_COLOR ButtonGradientColor4, host::OLE_COLOR BackgoundGradientColor1,
                       host::OLE_COLOR BackgoundGradientColor2, std::shared_ptr<host::StdFont> FontStyle,
                       std::shared_ptr<host::StdPicture> Icon, host::OLE_COLOR BackColor, uint8_t TranslucentLevel,
                       bool FadeIN, bool FadeOUT, bool DrawGradient, bool EscToClose, int32_t WaitTimes,
                       bool PlaySound) const {
  return USMsgBoxEx(Gather(MX_MSGBOX_ARGS));
}

#undef MX_MSGBOX_ARGS

void MX::SetDefautlToolkitTheme(int32_t xTheme) const { g_defaultTheme.store(xTheme, std::memory_order_relaxed); }

}  // namespace mx::utility
