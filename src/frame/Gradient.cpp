#include "frame/Gradient.h"

#include <cstddef>
#include <new>

#include "frame/Drawing.h"
#include "platform/Gdi.h"

namespace mx::frame {

namespace {

// Pixels of one gradient held in memory at once; larger requests are not painted.
constexpr int64_t kMaxGradientPixels = int64_t{1} << 26;

uint32_t PackDibPixel(int32_t red, int32_t green, int32_t blue) {
  return (static_cast<uint32_t>(red) << 16) | (static_cast<uint32_t>(green) << 8) | static_cast<uint32_t>(blue);
}

// The host's division of a pixel count by 2 yields a half that a Long argument rounds to even.
int32_t HalfRoundedToEven(int32_t value) {
  const int32_t half = value / 2;
  if (value % 2 == 0) return half;
  return (half % 2 == 0) ? half : half + 1;
}

}  // namespace

std::vector<uint32_t> GradientRamp(OLE_COLOR xColorFrom, OLE_COLOR xColorTo, int32_t length) {
  std::vector<uint32_t> ramp;
  if (length < 1) return ramp;
  ramp.resize(static_cast<size_t>(length));
  const int32_t r1 = host::ColorRed(xColorFrom), g1 = host::ColorGreen(xColorFrom), b1 = host::ColorBlue(xColorFrom);
  const int32_t r2 = host::ColorRed(xColorTo), g2 = host::ColorGreen(xColorTo), b2 = host::ColorBlue(xColorTo);
  const int64_t n = length - 1;
  if (n == 0) {
    // Halves first, then the sum: 1 + 2 gives 0 + 1, not 3 / 2.
    ramp[0] = PackDibPixel(r1 / 2 + r2 / 2, g1 / 2 + g2 / 2, b1 / 2 + b2 / 2);
    return ramp;
  }
  // C++ division truncates toward zero, which is the rounding the ramp is defined with; the
  // product is 64-bit because i may run up to width + height.
  for (int64_t i = 0; i <= n; ++i) {
    const auto channel = [&](int32_t c1, int32_t c2) {
      return static_cast<int32_t>(c1 + (static_cast<int64_t>(c2 - c1) * i) / n);
    };
    ramp[static_cast<size_t>(i)] = PackDibPixel(channel(r1, r2), channel(g1, g2), channel(b1, b2));
  }
  return ramp;
}

void PaintGradientRect(platform::HDC hDC, int32_t x, int32_t y, int32_t width, int32_t height,
                       OLE_COLOR xColorFrom, OLE_COLOR xColorTo, int32_t xGradientDirection) {
  if (width < 1 || height < 1) return;
  if (xColorFrom == xColorTo) {
    // Right and bottom are the size, not the far edge: kept as callers have always seen it.
    const platform::RECT r{x, y, width, height};
    FillRectColor(hDC, r, xColorFrom);
    return;
  }
  const int64_t pixelCount = static_cast<int64_t>(width) * height;
  if (pixelCount > kMaxGradientPixels) return;

  int64_t rampLength = 0;
  switch (xGradientDirection) {
    case GradientLeftToRight: rampLength = width; break;
    case GradientTopToBottom: rampLength = height; break;
    default: rampLength = static_cast<int64_t>(width) + height - 1; break;
  }
  std::vector<uint32_t> ramp;
  std::vector<uint32_t> pixels;
  try {
    ramp = GradientRamp(xColorFrom, xColorTo, static_cast<int32_t>(rampLength));
    pixels.assign(static_cast<size_t>(pixelCount), 0);
  } catch (const std::bad_alloc&) {
    return;  // drawing helpers never report failure
  }

  // Rows are bottom-up: memory row k holds picture row height - 1 - k.
  const auto w = static_cast<size_t>(width);
  for (int32_t r = 0; r < height; ++r) {
    uint32_t* row = pixels.data() + static_cast<size_t>(height - 1 - r) * w;
    switch (xGradientDirection) {
      case GradientLeftToRight:
        for (size_t c = 0; c < w; ++c) row[c] = ramp[c];
        break;
      case GradientTopToBottom: {
        const uint32_t value = ramp[static_cast<size_t>(r)];
        for (size_t c = 0; c < w; ++c) row[c] = value;
        break;
      }
      case GradientDiagonalDown: {
        const uint32_t* from = ramp.data() + r;
        for (size_t c = 0; c < w; ++c) row[c] = from[c];
        break;
      }
      case GradientDiagonalUp: {
        const uint32_t* from = ramp.data() + (height - 1 - r);
        for (size_t c = 0; c < w; ++c) row[c] = from[c];
        break;
      }
      default:
        break;  // left at zero: black
    }
  }

  platform::BITMAPINFO info{};
  info.bmiHeader.biSize = 40;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = platform::BI_RGB;
  platform::StretchDIBits(hDC, x, y, width, height, 0, 0, width, height, pixels.data(), &info,
                          platform::DIB_RGB_COLORS, platform::SRCCOPY);
}

bool IsSolidGradientFace(ENUM_GRADIENT_COLORS xGradientColors, OLE_COLOR xColor1, OLE_COLOR xColor2,
                         OLE_COLOR xColor3, OLE_COLOR xColor4) {
  if (xGradientColors != Four_Colors) return xColor1 == xColor2;
  // Summed as 64-bit values so that system colours (negative Longs) cannot overflow.
  const int64_t sum = int64_t{xColor1} + xColor2 + xColor3 + xColor4;
  return sum == int64_t{4} * xColor1;
}

void PaintGradientFace(platform::HDC hDC, int32_t width, int32_t height, ENUM_GRADIENT_COLORS xGradientColors,
                       OLE_COLOR xColor1, OLE_COLOR xColor2, OLE_COLOR xColor3, OLE_COLOR xColor4) {
  if (xGradientColors != Four_Colors) {
    PaintGradientRect(hDC, 0, 0, width, height, xColor1, xColor2, GradientTopToBottom);
    return;
  }
  // Both halves have the rounded half height; for an odd height the lower one either ends a
  // row short of the bottom or runs one row past it, into the clip. Equal colours 3 and 4 go
  // through the size-as-far-edge fill with top = bottom = half, so that half stays unpainted.
  const int32_t half = HalfRoundedToEven(height);
  PaintGradientRect(hDC, 0, 0, width, half, xColor1, xColor2, GradientTopToBottom);
  PaintGradientRect(hDC, 0, half, width, half, xColor3, xColor4, GradientTopToBottom);
}

}  // namespace mx::frame
