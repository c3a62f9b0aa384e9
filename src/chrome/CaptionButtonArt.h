#pragma once
// The pictures of the caption buttons, drawn in code: four glyphs (minimise, maximise, restore,
// close) in four faces (normal, hover, pressed, disabled), for two looks:
//   - the Office look: small cells (about 20 x 20) whose hover and pressed faces are a framed
//     box in the look's highlight colours;
//   - the Windows look: wide cells (45 pixels) filled edge to edge on hover and press, the close
//     button in red.
// Colours come from the caller (the form's fore colour by active state, the strip's colour),
// so one drawing serves every theme and the active and inactive states.
#include <cstdint>

#include "host/Colors.h"
#include "platform/Types.h"

namespace mx::chrome {

enum class ButtonLook : int32_t { Office = 0, Windows = 1 };
enum ButtonGlyph : int32_t { GlyphMinimize = 0, GlyphMaximize = 1, GlyphRestore = 2, GlyphClose = 3 };
enum ButtonFace : int32_t { FaceNormal = 0, FaceHover = 1, FacePressed = 2, FaceDisabled = 3 };

struct ButtonColours {
  host::OLE_COLOR glyph = 0;       // the glyph's lines in the normal face
  host::OLE_COLOR background = 0;  // the strip's ground, for the faded disabled glyph
  host::OLE_COLOR hoverFill = 0;
  host::OLE_COLOR pressedFill = 0;
  host::OLE_COLOR frame = 0;       // the Office look's box outline
};

// Draws one button into its cell over what the caller painted there (the strip's own ground):
// the face's fill, then the glyph, centred.
void DrawCaptionButton(platform::HDC dc, const platform::RECT& cell, ButtonLook look, ButtonGlyph glyph,
                       ButtonFace face, const ButtonColours& colours);

// The colours between two, by weight 0..256 of the second: disabled glyphs fade into the strip.
[[nodiscard]] host::OLE_COLOR MixColour(host::OLE_COLOR a, host::OLE_COLOR b, int32_t weightOfB);

}  // namespace mx::chrome
