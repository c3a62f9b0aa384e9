#include "host/Screen.h"

#include <memory>

#include "host/Err.h"
#include "host/Strings.h"
#include "platform/Desktop.h"

namespace mx::host {

namespace {

std::function<ScreenMetrics()>& MetricsSource() {
  static std::function<ScreenMetrics()> source;
  return source;
}

// The platform's virtual screen: its size follows SetScreenSize and its dpi SetScreenDpi.
ScreenMetrics DesktopMetrics() {
  ScreenMetrics m;
  m.widthPixels = platform::GetSystemMetrics(platform::SM_CXSCREEN);
  m.heightPixels = platform::GetSystemMetrics(platform::SM_CYSCREEN);
  m.dpi = platform::GetScreenDpi();
  // A desktop that reports nothing usable leaves the classic 1280 x 800 at 96 dpi.
  ScreenMetrics fallback;
  if (m.widthPixels <= 0) m.widthPixels = fallback.widthPixels;
  if (m.heightPixels <= 0) m.heightPixels = fallback.heightPixels;
  if (m.dpi <= 0) m.dpi = fallback.dpi;
  return m;
}

double ConvertScale(double value, int32_t fromScale, int32_t toScale, ScaleAxis axis) {
  double twipsPerPixel = 1440.0 / CurrentScreenMetrics().dpi;
  // Through twips: one multiplication and one division, so a conversion and its inverse return
  // the value to within rounding.
  return value * TwipsPerUnit(fromScale, axis, twipsPerPixel) / TwipsPerUnit(toScale, axis, twipsPerPixel);
}

}  // namespace

double TwipsPerUnit(int32_t scaleMode, ScaleAxis axis, double twipsPerPixel) {
  switch (scaleMode) {
    case vbTwips: return 1.0;
    case vbPoints: return 20.0;
    case vbPixels: return twipsPerPixel;
    case vbCharacters: return axis == ScaleAxis::X ? 120.0 : 240.0;
    case vbInches: return 1440.0;
    case vbMillimeters: return 1440.0 / 25.4;
    case vbCentimeters: return 1440.0 / 2.54;
    case vbHimetric: return 1440.0 / 2540.0;
    default: Raise(kErrInvalidProcedureCall, u"ScaleX");
  }
}

void SetScreenMetricsSource(std::function<ScreenMetrics()> source) { MetricsSource() = std::move(source); }

ScreenMetrics CurrentScreenMetrics() {
  ScreenMetrics fallback = DesktopMetrics();
  const auto& source = MetricsSource();
  if (!source) return fallback;
  ScreenMetrics m = source();
  if (m.widthPixels <= 0) m.widthPixels = fallback.widthPixels;
  if (m.heightPixels <= 0) m.heightPixels = fallback.heightPixels;
  if (m.dpi <= 0) m.dpi = fallback.dpi;
  return m;
}

float Screen::TwipsPerPixelX() const { return static_cast<float>(1440.0 / CurrentScreenMetrics().dpi); }
float Screen::TwipsPerPixelY() const { return TwipsPerPixelX(); }

float Screen::Width() const {
  ScreenMetrics m = CurrentScreenMetrics();
  return static_cast<float>(m.widthPixels * 1440.0 / m.dpi);
}

float Screen::Height() const {
  ScreenMetrics m = CurrentScreenMetrics();
  return static_cast<float>(m.heightPixels * 1440.0 / m.dpi);
}

float Screen::ScaleX(double value, int32_t fromScale, int32_t toScale) const {
  return static_cast<float>(ConvertScale(value, fromScale, toScale, ScaleAxis::X));
}

float Screen::ScaleY(double value, int32_t fromScale, int32_t toScale) const {
  return static_cast<float>(ConvertScale(value, fromScale, toScale, ScaleAxis::Y));
}

Variant Screen::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  String member = FoldCase(name);
  if (kind == CallKind::Let || kind == CallKind::Set) return Object::Invoke(name, kind, args);
  if (member == u"TWIPSPERPIXELX") return Variant(TwipsPerPixelX());
  if (member == u"TWIPSPERPIXELY") return Variant(TwipsPerPixelY());
  if (member == u"WIDTH") return Variant(Width());
  if (member == u"HEIGHT") return Variant(Height());
  if (member == u"SCALEX" || member == u"SCALEY") {
    if (args.empty()) Raise(kErrWrongArgumentCount, u"Screen");
    const Variant& from = ArgumentAt(args, 1);
    const Variant& to = ArgumentAt(args, 2);
    int32_t fromScale = from.IsMissing() ? vbHimetric : from.ToLong();
    int32_t toScale = to.IsMissing() ? vbTwips : to.ToLong();
    double value = args[0].ToDouble();
    return Variant(member == u"SCALEX" ? ScaleX(value, fromScale, toScale) : ScaleY(value, fromScale, toScale));
  }
  return Object::Invoke(name, kind, args);
}

Screen& GetScreen() {
  // Held by a shared_ptr so that the object can hand out references to itself like any other.
  static const std::shared_ptr<Screen> screen = std::make_shared<Screen>();
  return *screen;
}

}  // namespace mx::host
