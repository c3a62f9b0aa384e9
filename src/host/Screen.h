#pragma once
// The host's Screen object: the size of the screen and its pixel size in twips, and the unit
// conversions that forms, user controls and pictures share.
//
// A twip is 1/1440 inch. At the screen's 96 dpi a pixel is 15 twips; a point is 20 twips; a
// HiMetric unit (1/100 mm) is 1440/2540 twips; a "character" is 120 twips across and 240 down,
// the host's fixed character cell.
#include <cstdint>
#include <functional>

#include "host/String.h"
#include "host/Variant.h"

namespace mx::host {

// The host's scale modes. User and container scales belong to a form or control; the screen has
// neither.
enum ScaleModeConstants : int16_t {
  vbUser = 0,
  vbTwips = 1,
  vbPoints = 2,
  vbPixels = 3,
  vbCharacters = 4,
  vbInches = 5,
  vbMillimeters = 6,
  vbCentimeters = 7,
  vbHimetric = 8,
  vbContainerPosition = 9,
  vbContainerSize = 10,
};

enum class ScaleAxis : uint8_t { X, Y };

// Twips in one unit of a fixed scale mode (1 through 8), for a screen whose pixel is
// twipsPerPixel twips. Raises 5 for any other mode: those need a form's own scale.
[[nodiscard]] double TwipsPerUnit(int32_t scaleMode, ScaleAxis axis, double twipsPerPixel = 15.0);

// What the screen is: its size in pixels and its dots per inch.
struct ScreenMetrics {
  int32_t widthPixels = 1280;
  int32_t heightPixels = 800;
  int32_t dpi = 96;
};

// Where the screen's metrics come from. By default the platform's desktop (its virtual screen,
// 1280 x 800 at 96 dpi unless set otherwise); a source set here replaces it (an empty one
// restores the default). A source that gives a size or dpi of 0 or less is ignored for that
// value.
void SetScreenMetricsSource(std::function<ScreenMetrics()> source);
[[nodiscard]] ScreenMetrics CurrentScreenMetrics();

class Screen : public Object {
 public:
  // Twips per pixel: 1440 / dpi, so 15 at 96 dpi. Single, as the host's.
  [[nodiscard]] float TwipsPerPixelX() const;
  [[nodiscard]] float TwipsPerPixelY() const;
  // The screen's size in twips.
  [[nodiscard]] float Width() const;
  [[nodiscard]] float Height() const;

  // Converts a width (X) or height (Y) between scale modes 1 to 8; other modes raise 5. The
  // result is a Single, as the host's.
  [[nodiscard]] float ScaleX(double value, int32_t fromScale = vbHimetric, int32_t toScale = vbTwips) const;
  [[nodiscard]] float ScaleY(double value, int32_t fromScale = vbHimetric, int32_t toScale = vbTwips) const;

  // Late binding: TwipsPerPixelX, TwipsPerPixelY, Width, Height, ScaleX, ScaleY.
  [[nodiscard]] String TypeName() const override { return u"Screen"; }
  Variant Invoke(StringView name, CallKind kind, std::span<Variant> args) override;
};

// The process's Screen object.
[[nodiscard]] Screen& GetScreen();

}  // namespace mx::host
