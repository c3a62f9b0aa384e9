#pragma once
// The pieces of the check box and option button glyphs.
#include "controls/ToggleControl.h"

namespace mx::controls::detail {

// Fills a rectangle with a top-to-bottom gradient, or solid when the two colours are equal.
void FillGlyphInside(platform::HDC dc, const platform::RECT& r, OLE_COLOR top, OLE_COLOR bottom);

}  // namespace mx::controls::detail
