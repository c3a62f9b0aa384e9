#pragma once
// The seven looks of the controls. A look is nothing but a table of 27 colours: a control's
// theme procedure copies the colours it needs into its own colour properties, and painting
// reads only those properties, never this table.
#include <cstdint>

#include "host/Colors.h"

namespace mx::frame {

using host::OLE_COLOR;

// Member names carry the blanks of the public names as underscores.
enum ENUM_THEME : int32_t {
  Office_Theme_Blue = 0,
  Office_Theme_Silver = 1,
  Windows_Theme = 2,
  Windows_Theme_Green = 3,
  Windows_Theme_Red = 4,
  Windows_Theme_Orange = 5,
  Windows_Theme_Black = 6,
};

enum ENUM_GRADIENT_COLORS : int32_t {
  Two_Colors = 0,
  Four_Colors = 1,
};

constexpr int32_t kThemeCount = 7;
constexpr int32_t kThemeColorCount = 27;

// The roles of the palette's indices, for the theme procedures that copy from it.
enum ThemeColorIndex : int32_t {
  ThemeForeColor = 0,
  ThemeForeColorDisabled = 1,
  ThemeForeColorDown = 2,
  ThemeForeColorOver = 3,
  ThemeBorderColor = 4,
  ThemeBorderColorDisabled = 5,
  ThemeBorderColorDown = 6,
  ThemeBorderColorOver = 7,
  ThemeGradientColor1 = 8,          // .. 11 for colours 2 to 4
  ThemeGradientColorDisabled1 = 12, // .. 15
  ThemeGradientColorDown1 = 16,     // .. 19
  ThemeGradientColorOver1 = 20,     // .. 23
  ThemeListEvenRows = 24,
  ThemeSelectionBorder = 25,
  ThemeSelectionFill = 26,
};

// The palette colour of a theme as an OLE_COLOR (0xBBGGRR). A theme outside 0..6 gives 0, and
// so does an index outside 0..26, which no caller passes.
[[nodiscard]] OLE_COLOR GetThemeColor(int32_t xTheme, int32_t xIndex);

// The toolkit default theme of this thread (2 until changed). Only message boxes read it.
[[nodiscard]] int32_t DefaultToolkitTheme();
void SetDefautlToolkitTheme(ENUM_THEME xTheme);

}  // namespace mx::frame
