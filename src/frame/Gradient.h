#pragma once
// Linear gradients, the base of nearly every control face. The painter builds the whole
// rectangle in memory from one colour ramp and copies it to the DC in one call.
#include <cstdint>
#include <vector>

#include "frame/Themes.h"
#include "platform/Types.h"

namespace mx::frame {

// Directions of PaintGradientRect. Any other value paints the rectangle black.
enum GradientDirection : int32_t {
  GradientLeftToRight = 0,
  GradientTopToBottom = 1,
  GradientDiagonalDown = 2,  // top left to bottom right
  GradientDiagonalUp = 3,    // bottom left to top right
};

// The ramp of a gradient: `length` pixels (0x00RRGGBB, the order of a DIB) from xColorFrom to
// xColorTo. Entry i of n + 1 is C1 + (C2 - C1) * i / n per channel, truncating toward zero; a
// ramp of one entry is the sum of the channel halves, each half truncated.
[[nodiscard]] std::vector<uint32_t> GradientRamp(OLE_COLOR xColorFrom, OLE_COLOR xColorTo, int32_t length);

// Paints a gradient over x, y, width, height. Two quirks are relied on by callers and kept:
// equal colours (compared as given, high byte included) fill the rectangle whose right and
// bottom are width and height rather than x + width and y + height, so an offset rectangle
// shrinks or vanishes; and colours are read from their low 24 bits, untranslated.
void PaintGradientRect(platform::HDC hDC, int32_t x, int32_t y, int32_t width, int32_t height,
                       OLE_COLOR xColorFrom, OLE_COLOR xColorTo, int32_t xGradientDirection);

// A control face of two or four colours is solid, rather than a gradient, when
// - two colours: colour 1 equals colour 2;
// - four colours: the four values add up to four times colour 1. The test is on the sum, so
//   different colours that happen to add up so give a solid face too.
// The caller paints a solid face itself (usually by clearing its surface to colour 1).
[[nodiscard]] bool IsSolidGradientFace(ENUM_GRADIENT_COLORS xGradientColors, OLE_COLOR xColor1, OLE_COLOR xColor2,
                                       OLE_COLOR xColor3, OLE_COLOR xColor4);

// Paints a face of width x height from the top left with top-to-bottom gradients: colours 1 to
// 2 over the whole area, or, with four colours, 1 to 2 over the upper half and 3 to 4 over a
// lower half of the same height. Does not check IsSolidGradientFace.
void PaintGradientFace(platform::HDC hDC, int32_t width, int32_t height, ENUM_GRADIENT_COLORS xGradientColors,
                       OLE_COLOR xColor1, OLE_COLOR xColor2, OLE_COLOR xColor3, OLE_COLOR xColor4);

}  // namespace mx::frame
