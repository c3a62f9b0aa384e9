#pragma once
// The content of the example ribbon: what a host's form load would add to the ribbon of the
// chrome example form (three tabs, categories with and without launchers, buttons with pictures
// and two tab buttons). The pictures are drawn in code, so the example needs no files.
#include <memory>

#include "host/StdPicture.h"

namespace mx::chrome {

class USRibbon;

// A square picture (PNG) of `size` pixels with one of the example's glyphs: 0 page, 1 disk,
// 2 cross, 3 magnifier, 4 printer, 5 chart, 6 help mark, 7 gear. Other numbers give a plain tile.
[[nodiscard]] std::shared_ptr<host::StdPicture> RibbonExamplePicture(int glyph, int size);

// Adds the example content and refreshes the ribbon.
void FillExampleRibbon(USRibbon& ribbon);

}  // namespace mx::chrome
