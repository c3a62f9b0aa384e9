#include "chrome/RibbonArt.h"

#include <algorithm>

#include "chrome/CaptionButtonArt.h"
#include "frame/Drawing.h"
#include "frame/Themes.h"
#include "platform/Gdi.h"

namespace mx::chrome {

using platform::HDC;
using platform::RECT;

namespace {

constexpr OLE_COLOR kWhite = 0xFFFFFF;
constexpr OLE_COLOR kBlack = 0x000000;

enum class Slice { Left, Centre, Right };

OLE_COLOR Palette(int32_t theme, int32_t index) { return frame::GetThemeColor(theme, index); }

void Row(HDC dc, int32_t left, int32_t right, int32_t y, OLE_COLOR c) {
  if (right > left) frame::FillRectColor(dc, RECT{left, y, right, y + 1}, c);
}

void Column(HDC dc, int32_t x, int32_t top, int32_t bottom, OLE_COLOR c) {
  if (bottom > top) frame::FillRectColor(dc, RECT{x, top, x + 1, bottom}, c);
}

// One slice of a plate: the ramp fills it, lines run along the plate's top, bottom (unless the
// plate is open there, as a tab is where it meets the band) and outer side. The outer corner
// pixels are left as the ground below shows them.
void PlateSlice(HDC dc, const RECT& r, const RECT& plate, Slice slice, OLE_COLOR fill1, OLE_COLOR fill2, OLE_COLOR line,
                bool openBottom, int32_t foot = 0, OLE_COLOR footColour = 0) {
  if (r.right <= r.left || plate.bottom <= plate.top) return;
  int32_t fillLeft = r.left, fillRight = r.right;
  if (slice == Slice::Left) fillLeft = r.left + 1;
  if (slice == Slice::Right) fillRight = r.right - 1;
  const int32_t footTop = plate.bottom - std::max(0, foot);
  FillVerticalRamp(dc, RECT{fillLeft, r.top, fillRight, std::min(r.bottom, footTop)}, plate.top, footTop, fill1, fill2);
  if (foot > 0 && footTop < r.bottom)
    frame::FillRectColor(dc, RECT{fillLeft, std::max(r.top, footTop), fillRight, r.bottom}, footColour);
  // The seam between the caption foot and the plate gets the line colour, faded.
  if (foot > 0) Row(dc, fillLeft, fillRight, footTop, MixColour(line, footColour, 128));
  Row(dc, fillLeft, fillRight, plate.top, line);
  if (!openBottom) Row(dc, fillLeft, fillRight, plate.bottom - 1, line);
  const int32_t sideBottom = openBottom ? plate.bottom : plate.bottom - 1;
  if (slice == Slice::Left) Column(dc, r.left, plate.top + 1, sideBottom, line);
  if (slice == Slice::Right) Column(dc, r.right - 1, plate.top + 1, sideBottom, line);
}

// The dialog launcher's mark: a corner and an arrow pointing to the lower right.
void LauncherGlyph(HDC dc, const RECT& r, OLE_COLOR c) {
  const int32_t x = r.left + (r.right - r.left - 8) / 2, y = r.top + (r.bottom - r.top - 8) / 2;
  Row(dc, x, x + 5, y, c);
  Column(dc, x, y, y + 5, c);
  for (int32_t i = 2; i < 8; ++i) frame::FillRectColor(dc, RECT{x + i, y + i, x + i + 1, y + i + 1}, c);
  Row(dc, x + 4, x + 8, y + 7, c);
  Column(dc, x + 7, y + 4, y + 8, c);
}

// A small arrow pointing down, five pixels wide.
void DownArrow(HDC dc, const RECT& r, OLE_COLOR c) {
  const int32_t x = r.left + (r.right - r.left - 5) / 2, y = r.top + (r.bottom - r.top - 3) / 2;
  for (int32_t i = 0; i < 3; ++i) Row(dc, x + i, x + 5 - i, y + i, c);
}

}  // namespace

void FillVerticalRamp(HDC dc, const RECT& rect, int32_t spanTop, int32_t spanBottom, OLE_COLOR c1, OLE_COLOR c2) {
  int32_t top = std::max(rect.top, spanTop), bottom = std::min(rect.bottom, spanBottom);
  // Rows outside the DC's clip would draw nothing: skip them rather than fill them one by one.
  RECT clip{};
  if (platform::GetClipBox(dc, &clip) != 0 && clip.bottom > clip.top) {
    top = std::max(top, clip.top);
    bottom = std::min(bottom, clip.bottom);
  }
  if (rect.right <= rect.left || bottom <= top) return;
  const int32_t last = std::max(1, spanBottom - spanTop - 1);
  for (int32_t y = top; y < bottom; ++y) {
    const int32_t i = y - spanTop;
    OLE_COLOR c = 0;
    for (int shift = 0; shift <= 16; shift += 8) {
      const int32_t a = static_cast<int32_t>((c1 >> shift) & 0xFF), b = static_cast<int32_t>((c2 >> shift) & 0xFF);
      c |= static_cast<OLE_COLOR>(a + (b - a) * std::min(i, last) / last) << shift;
    }
    Row(dc, rect.left, rect.right, y, c);
  }
}

RibbonColours RibbonThemeColours(int32_t theme) {
  if (theme < 0 || theme >= frame::kThemeCount) theme = frame::Windows_Theme;
  RibbonColours c;
  if (theme == frame::Office_Theme_Blue || theme == frame::Office_Theme_Silver) {
    const OLE_COLOR g1 = Palette(theme, frame::ThemeGradientColor1), g2 = Palette(theme, frame::ThemeGradientColor1 + 1),
                    g3 = Palette(theme, frame::ThemeGradientColor1 + 2), border = Palette(theme, frame::ThemeBorderColor);
    c.strip1 = g2;
    c.strip2 = g3;
    c.band1 = MixColour(g1, kWhite, 160);
    c.band2 = g2;
    c.bandLine = border;
    c.tabOver1 = MixColour(g2, kWhite, 160);
    c.tabOver2 = g2;
    c.tabOverLine = MixColour(border, g2, 128);
    c.catLine = MixColour(border, c.band1, 96);
    c.catFill1 = c.band1;
    c.catFill2 = MixColour(g2, c.band1, 128);
    c.catFoot = MixColour(g2, border, 48);
    c.catOnLine = border;
    c.catOnFill1 = kWhite;
    c.catOnFill2 = c.band1;
    c.catOnFoot = MixColour(g2, kWhite, 128);
    c.overLine = Palette(theme, frame::ThemeGradientColorOver1 + 2);
    c.over1 = Palette(theme, frame::ThemeGradientColorOver1);
    c.over2 = Palette(theme, frame::ThemeGradientColorOver1 + 3);
    c.downLine = Palette(theme, frame::ThemeGradientColorDown1 + 2);
    c.down1 = Palette(theme, frame::ThemeGradientColorDown1);
    c.down2 = Palette(theme, frame::ThemeGradientColorDown1 + 3);
    c.glyph = MixColour(border, kBlack, 128);
    c.glyphOn = 0x404040;
  } else {
    const OLE_COLOR base = Palette(theme, frame::ThemeGradientColor1);
    const auto tint = [&](int32_t w) { return MixColour(base, kWhite, w); };
    c.strip1 = tint(40);
    c.strip2 = base;
    c.band1 = tint(232);
    c.band2 = tint(200);
    c.bandLine = tint(120);
    c.tabOver1 = tint(110);
    c.tabOver2 = tint(70);
    c.tabOverLine = tint(150);
    c.catLine = tint(170);
    c.catFill1 = tint(244);
    c.catFill2 = tint(214);
    c.catFoot = tint(190);
    c.catOnLine = tint(130);
    c.catOnFill1 = kWhite;
    c.catOnFill2 = tint(228);
    c.catOnFoot = tint(200);
    c.overLine = tint(100);
    c.over1 = tint(220);
    c.over2 = tint(180);
    c.downLine = base;
    c.down1 = tint(170);
    c.down2 = tint(130);
    c.glyph = MixColour(base, kBlack, 80);
    c.glyphOn = MixColour(base, kBlack, 160);
  }
  c.disabledText = 0x8D8D8D;
  return c;
}

void DrawRibbonPiece(HDC dc, RibbonArray array, const RECT& r, const RECT& plate, const RibbonColours& c,
                     int32_t footHeight) {
  using A = RibbonArray;
  const auto sliceOf = [](A a, A left, A centre) {
    if (a == left) return Slice::Left;
    if (a == centre) return Slice::Centre;
    return Slice::Right;
  };
  switch (array) {
    case A::BarraLeft:
    case A::BarraCenter:
    case A::BarraRight:
      PlateSlice(dc, r, plate, sliceOf(array, A::BarraLeft, A::BarraCenter), c.band1, c.band2, c.bandLine, false);
      break;
    case A::Tab_left:
    case A::Tab_center:
    case A::Tab_right:
      // The selected tab is the band's top colour and open below, so it flows into the band.
      PlateSlice(dc, r, plate, sliceOf(array, A::Tab_left, A::Tab_center), c.band1, c.band1, c.bandLine, true);
      break;
    case A::Tab_left_over:
    case A::Tab_center_over:
    case A::Tab_right_over:
      PlateSlice(dc, r, plate, sliceOf(array, A::Tab_left_over, A::Tab_center_over), c.tabOver1, c.tabOver2,
                 c.tabOverLine, true);
      break;
    case A::Cat_Left_off:
    case A::Cat_Center_off:
    case A::Cat_Right_off:
      PlateSlice(dc, r, plate, sliceOf(array, A::Cat_Left_off, A::Cat_Center_off), c.catFill1, c.catFill2, c.catLine,
                 false, footHeight, c.catFoot);
      break;
    case A::Cat_Left_on:
    case A::Cat_Center_on:
    case A::Cat_Right_on:
      PlateSlice(dc, r, plate, sliceOf(array, A::Cat_Left_on, A::Cat_Center_on), c.catOnFill1, c.catOnFill2,
                 c.catOnLine, false, footHeight, c.catOnFoot);
      break;
    case A::Button_left_over:
    case A::Button_center_over:
    case A::Button_right_over:
      PlateSlice(dc, r, plate, sliceOf(array, A::Button_left_over, A::Button_center_over), c.over1, c.over2,
                 c.overLine, false);
      break;
    case A::Button_left:
    case A::Button_center:
    case A::Button_right:
      PlateSlice(dc, r, plate, sliceOf(array, A::Button_left, A::Button_center), c.down1, c.down2, c.downLine, false);
      break;
    case A::Cat_Dlg:
      LauncherGlyph(dc, r, c.glyph);
      break;
    case A::Cat_Dlg_on:
      LauncherGlyph(dc, r, c.glyphOn);
      break;
    case A::Cat_Dlg_over:
      PlateSlice(dc, r, r, Slice::Left, c.over1, c.over2, c.overLine, false);
      Column(dc, r.right - 1, r.top + 1, r.bottom - 1, c.overLine);
      LauncherGlyph(dc, r, c.glyphOn);
      break;
    case A::Cat_Dlg_down:
      PlateSlice(dc, r, r, Slice::Left, c.down1, c.down2, c.downLine, false);
      Column(dc, r.right - 1, r.top + 1, r.bottom - 1, c.downLine);
      LauncherGlyph(dc, r, c.glyphOn);
      break;
    case A::Glip_off:
      DownArrow(dc, r, c.glyph);
      break;
    case A::Glip_on:
      DownArrow(dc, r, c.glyphOn);
      break;
    case A::TabButon:
      // At rest a tab button is only a faint outline on the strip.
      PlateSlice(dc, r, r, Slice::Left, c.strip1, c.strip2, MixColour(c.strip2, c.band1, 64), false);
      Column(dc, r.right - 1, r.top + 1, r.bottom - 1, MixColour(c.strip2, c.band1, 64));
      break;
    case A::TabButonOn:
      PlateSlice(dc, r, r, Slice::Left, c.over1, c.over2, c.overLine, false);
      Column(dc, r.right - 1, r.top + 1, r.bottom - 1, c.overLine);
      break;
    case A::TabButonOver:
      PlateSlice(dc, r, r, Slice::Left, c.down1, c.down2, c.downLine, false);
      Column(dc, r.right - 1, r.top + 1, r.bottom - 1, c.downLine);
      break;
    default:
      break;
  }
}

}  // namespace mx::chrome
