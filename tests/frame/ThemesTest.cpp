// The theme palette and the toolkit default theme, and a stored picture of every theme's
// colours painted the way the control faces use them.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "frame/Drawing.h"
#include "frame/Gradient.h"
#include "frame/Themes.h"
#include "platform/GdiTestSupport.h"

#include "support/Golden.h"

namespace mx::frame {
namespace {

using platform::test::Canvas;

TEST(GetThemeColor, TablesAreIndexedByThemeThenRole) {
  // One value per theme where the themes differ, so a swapped index shows.
  EXPECT_EQ(GetThemeColor(Office_Theme_Blue, ThemeBorderColor), 0xE2A981);
  EXPECT_EQ(GetThemeColor(Windows_Theme_Red, ThemeBorderColorDown), 0x1F1F5E);
  EXPECT_EQ(GetThemeColor(Office_Theme_Silver, ThemeGradientColorDown1), 0xA4D6FF);
  EXPECT_EQ(GetThemeColor(Windows_Theme, ThemeListEvenRows), 0xFBFBFC);
  EXPECT_EQ(GetThemeColor(Windows_Theme_Black, ThemeSelectionBorder), 0xFFE8CC);
  // Disabled text is the same green in every theme.
  for (int32_t theme = 0; theme < kThemeCount; ++theme)
    EXPECT_EQ(GetThemeColor(theme, ThemeForeColorDisabled), 0x008000) << theme;
}

TEST(GetThemeColor, OutOfRangeGivesZero) {
  EXPECT_EQ(GetThemeColor(-1, ThemeBorderColor), 0);
  EXPECT_EQ(GetThemeColor(7, ThemeBorderColor), 0);
  EXPECT_EQ(GetThemeColor(Windows_Theme, -1), 0);
  EXPECT_EQ(GetThemeColor(Windows_Theme, kThemeColorCount), 0);
  EXPECT_EQ(GetThemeColor(INT32_MIN, INT32_MAX), 0);
}

TEST(ToolkitTheme, IsTheHostsSetting) {
  // The utility class and the message boxes reach the same value through the host.
  const int32_t before = DefaultToolkitTheme();
  SetDefautlToolkitTheme(Windows_Theme_Orange);
  EXPECT_EQ(host::DefaultToolkitTheme(), Windows_Theme_Orange);
  SetDefautlToolkitTheme(static_cast<ENUM_THEME>(before));
}


constexpr int kCell = 20;
constexpr int kSwatch = 14;

// Paints a swatch in its own surface from (0, 0), as a control paints its face, then copies it
// into place; a border in `border` unless that is negative.
void Swatch(const Canvas& sheet, int x, int y, int h, int32_t from, int32_t to, int32_t direction, int32_t border) {
  Canvas s(kCell, h, 0x00FFFFFF);
  PaintGradientRect(s.dc(), 0, 0, kCell, h, from, to, direction);
  if (border >= 0) FrameRectColor(s.dc(), platform::RECT{0, 0, kCell, h}, border);
  platform::BitBlt(sheet.dc(), x, y, kCell, h, s.dc(), 0, 0, platform::SRCCOPY);
}

// Columns: the seven themes. Rows: the normal, over, down and disabled faces with their
// borders, a four-colour face, and the list and selection colours in the other directions.
TEST(ThemesGolden, EveryThemesFaces) {
  Canvas sheet(kThemeCount * (kCell + 4) + 4, 118, 0x00FFFFFF);
  for (int32_t t = 0; t < kThemeCount; ++t) {
    const int x = 4 + t * (kCell + 4);
    auto col = [t](int32_t index) { return GetThemeColor(t, index); };
    Swatch(sheet, x, 2, kSwatch, col(8), col(9), GradientTopToBottom, col(4));
    Swatch(sheet, x, 18, kSwatch, col(20), col(21), GradientTopToBottom, col(7));
    Swatch(sheet, x, 34, kSwatch, col(16), col(17), GradientTopToBottom, col(6));
    Swatch(sheet, x, 50, kSwatch, col(12), col(13), GradientTopToBottom, col(5));

    Canvas face(kCell, 16, 0x00FFFFFF);
    if (IsSolidGradientFace(Four_Colors, col(8), col(9), col(10), col(11)))
      FillRectColor(face.dc(), platform::RECT{0, 0, kCell, 16}, col(8));
    else
      PaintGradientFace(face.dc(), kCell, 16, Four_Colors, col(8), col(9), col(10), col(11));
    FrameRectColor(face.dc(), platform::RECT{0, 0, kCell, 16}, col(4));
    platform::BitBlt(sheet.dc(), x, 66, kCell, 16, face.dc(), 0, 0, platform::SRCCOPY);

    Swatch(sheet, x, 84, 10, col(24), col(26), GradientLeftToRight, -1);
    Swatch(sheet, x, 96, 10, col(25), col(4), GradientDiagonalDown, -1);
    Swatch(sheet, x, 106, 10, col(4), col(25), GradientDiagonalUp, -1);
  }
  test::ExpectGolden("frame", "themes", sheet.width(), sheet.height(), sheet.pixels());
}


}  // namespace
}  // namespace mx::frame
