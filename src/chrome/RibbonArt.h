#pragma once
// The ribbon's pictures, drawn in code: the band, tab slices, category plates, button plates,
// dialog launchers, the arrow mark of a button with a menu, and the tab buttons' plates.
//
// Every plate is cut in three slices (left, centre, right) that share one vertical colour ramp
// over the plate's full height, so slices of one plate join without a seam whatever their
// widths. The left and right slices carry the side lines and leave the outer corner pixels alone,
// which rounds the plate by one pixel.
//
// Two families of looks: the Office looks (themes 0 and 1) draw a bright band under a bright tab
// strip; the Windows looks (2 to 6) draw a tab strip in the look's colour over a band tinted
// with it, a little less bright than the Office band.
#include <cstdint>

#include "chrome/USRibbon.h"
#include "host/Colors.h"
#include "platform/Types.h"

namespace mx::chrome {

struct RibbonColours {
  OLE_COLOR strip1 = 0, strip2 = 0;           // tab strip ground, top to bottom
  OLE_COLOR band1 = 0, band2 = 0, bandLine = 0;
  OLE_COLOR tabOver1 = 0, tabOver2 = 0, tabOverLine = 0;
  OLE_COLOR catLine = 0, catFill1 = 0, catFill2 = 0, catFoot = 0;
  OLE_COLOR catOnLine = 0, catOnFill1 = 0, catOnFill2 = 0, catOnFoot = 0;
  OLE_COLOR overLine = 0, over1 = 0, over2 = 0;  // hover plates
  OLE_COLOR downLine = 0, down1 = 0, down2 = 0;  // pressed plates
  OLE_COLOR glyph = 0, glyphOn = 0;
  OLE_COLOR disabledText = 0;
};

// The colours of a look; themes outside 0..6 draw as theme 2.
[[nodiscard]] RibbonColours RibbonThemeColours(int32_t theme);

// Paints one member of an image array over rect (labels and hit areas draw nothing).
// `plate` is the rectangle of the whole plate the slice belongs to: the colour ramp runs over
// its height. The category plates reserve their lowest `footHeight` rows for the caption.
void DrawRibbonPiece(platform::HDC dc, RibbonArray array, const platform::RECT& rect, const platform::RECT& plate,
                     const RibbonColours& colours, int32_t footHeight);

// A vertical ramp from c1 (top row of `span`) to c2 (bottom row), painted over the rows of
// rect that fall inside span.
void FillVerticalRamp(platform::HDC dc, const platform::RECT& rect, int32_t spanTop, int32_t spanBottom, OLE_COLOR c1,
                      OLE_COLOR c2);

}  // namespace mx::chrome
