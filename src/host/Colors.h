#pragma once
// Colours as the controls keep them: OLE_COLOR, a Long written 0xBBGGRR (red in the low byte,
// blue in the third), where a set high bit means "system colour number <low byte>" rather than a
// colour of its own. Everything that draws resolves such a value first with TranslateColor.
//
// The toolkit's one library-wide setting, the default theme, lives here too: it is per thread
// (one apartment per user-interface thread) and both the controls and the utility class reach it.
#include <cstdint>

namespace mx::host {

using OLE_COLOR = int32_t;

// The flag of a system colour, as a signed Long.
constexpr OLE_COLOR kSystemColorFlag = static_cast<OLE_COLOR>(0x80000000u);

// The host's named system colours (vbButtonFace and friends): flag | COLOR_ index.
constexpr OLE_COLOR vbScrollBars = kSystemColorFlag | 0x00;
constexpr OLE_COLOR vbDesktop = kSystemColorFlag | 0x01;
constexpr OLE_COLOR vbActiveTitleBar = kSystemColorFlag | 0x02;
constexpr OLE_COLOR vbInactiveTitleBar = kSystemColorFlag | 0x03;
constexpr OLE_COLOR vbMenuBar = kSystemColorFlag | 0x04;
constexpr OLE_COLOR vbWindowBackground = kSystemColorFlag | 0x05;
constexpr OLE_COLOR vbWindowFrame = kSystemColorFlag | 0x06;
constexpr OLE_COLOR vbMenuText = kSystemColorFlag | 0x07;
constexpr OLE_COLOR vbWindowText = kSystemColorFlag | 0x08;
constexpr OLE_COLOR vbTitleBarText = kSystemColorFlag | 0x09;
constexpr OLE_COLOR vbActiveBorder = kSystemColorFlag | 0x0A;
constexpr OLE_COLOR vbInactiveBorder = kSystemColorFlag | 0x0B;
constexpr OLE_COLOR vbApplicationWorkspace = kSystemColorFlag | 0x0C;
constexpr OLE_COLOR vbHighlight = kSystemColorFlag | 0x0D;
constexpr OLE_COLOR vbHighlightText = kSystemColorFlag | 0x0E;
constexpr OLE_COLOR vbButtonFace = kSystemColorFlag | 0x0F;
constexpr OLE_COLOR vbButtonShadow = kSystemColorFlag | 0x10;
constexpr OLE_COLOR vbGrayText = kSystemColorFlag | 0x11;
constexpr OLE_COLOR vbButtonText = kSystemColorFlag | 0x12;
constexpr OLE_COLOR vbInactiveCaptionText = kSystemColorFlag | 0x13;
constexpr OLE_COLOR vb3DHighlight = kSystemColorFlag | 0x14;
constexpr OLE_COLOR vb3DDKShadow = kSystemColorFlag | 0x15;
constexpr OLE_COLOR vb3DLight = kSystemColorFlag | 0x16;
constexpr OLE_COLOR vbInfoText = kSystemColorFlag | 0x17;
constexpr OLE_COLOR vbInfoBackground = kSystemColorFlag | 0x18;

[[nodiscard]] constexpr bool IsSystemColor(OLE_COLOR color) { return (color & kSystemColorFlag) != 0; }

// Channels of the low 24 bits, whatever the high byte holds.
[[nodiscard]] constexpr int32_t ColorRed(OLE_COLOR color) { return color & 0xFF; }
[[nodiscard]] constexpr int32_t ColorGreen(OLE_COLOR color) { return (color >> 8) & 0xFF; }
[[nodiscard]] constexpr int32_t ColorBlue(OLE_COLOR color) { return (color >> 16) & 0xFF; }
// Each channel is masked to a byte, as the host's RGB function does with in-range values.
[[nodiscard]] constexpr OLE_COLOR MakeColor(int32_t red, int32_t green, int32_t blue) {
  return (red & 0xFF) | ((green & 0xFF) << 8) | ((blue & 0xFF) << 16);
}

// Adds xShiftValue to red, green and blue separately, holding each to 0..255. Only the low 24
// bits are read, so a system colour must be translated first; the result never has the flag.
[[nodiscard]] OLE_COLOR ShiftRGBColor(OLE_COLOR xColor, int16_t xShiftValue);

// Resolves an OLE_COLOR to a plain 0x00BBGGRR colour:
// - high byte 0x00: the colour itself;
// - high byte 0x80: the platform's system colour of the low byte, refused past the last index;
// - high byte 0x02 (palette-relative RGB): its RGB, since every surface here is true colour;
// - anything else, including 0x01 palette indexes (there are no palettes): refused.
// A refused colour gives -1, which callers use as it stands. xPalette is accepted for the
// classic signature and has no effect.
[[nodiscard]] int32_t TranslateColor(OLE_COLOR xColor, int32_t xPalette = 0);

// The toolkit default theme of this thread: 2 until changed. The value is stored as given; the
// message boxes compare their Theme argument with it.
[[nodiscard]] int32_t DefaultToolkitTheme();
void SetDefautlToolkitTheme(int32_t xTheme);

}  // namespace mx::host
