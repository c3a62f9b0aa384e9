#include "host/Colors.h"

#include "platform/SysColors.h"

namespace mx::host {

namespace {

int32_t ClampChannel(int32_t value) { return value < 0 ? 0 : (value > 255 ? 255 : value); }

// Set at thread start to the theme every control defaults to.
thread_local int32_t t_defaultToolkitTheme = 2;

}  // namespace

OLE_COLOR ShiftRGBColor(OLE_COLOR xColor, int16_t xShiftValue) {
  // Channels first, shift after: a carry out of one channel never reaches the next.
  return MakeColor(ClampChannel(ColorRed(xColor) + xShiftValue), ClampChannel(ColorGreen(xColor) + xShiftValue),
                   ClampChannel(ColorBlue(xColor) + xShiftValue));
}

int32_t TranslateColor(OLE_COLOR xColor, int32_t /*xPalette*/) {
  const auto kind = static_cast<uint32_t>(xColor) >> 24;
  switch (kind) {
    case 0x00:
      return xColor;
    case 0x02:
      return xColor & 0xFFFFFF;
    case 0x80: {
      // Only the low byte names the system colour; the bytes between are not looked at.
      const int index = xColor & 0xFF;
      if (index >= platform::kSysColorCount) return -1;
      return static_cast<int32_t>(platform::GetSysColor(index) & 0xFFFFFF);
    }
    default:
      return -1;
  }
}

int32_t DefaultToolkitTheme() { return t_defaultToolkitTheme; }

void SetDefautlToolkitTheme(int32_t xTheme) { t_defaultToolkitTheme = xTheme; }

}  // namespace mx::host
