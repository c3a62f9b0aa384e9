#include "chrome/CaptionButtonArt.h"

#include <algorithm>

#include "frame/Drawing.h"

namespace mx::chrome {

using host::OLE_COLOR;
using platform::HDC;
using platform::RECT;

OLE_COLOR MixColour(OLE_COLOR a, OLE_COLOR b, int32_t weightOfB) {
  weightOfB = std::clamp(weightOfB, 0, 256);
  OLE_COLOR out = 0;
  for (int shift = 0; shift <= 16; shift += 8) {
    const int32_t ca = static_cast<int32_t>((a >> shift) & 0xFF);
    const int32_t cb = static_cast<int32_t>((b >> shift) & 0xFF);
    out |= static_cast<OLE_COLOR>((ca * (256 - weightOfB) + cb * weightOfB) / 256) << shift;
  }
  return out;
}

namespace {

void Line(HDC dc, int x1, int y1, int x2, int y2, OLE_COLOR c) { frame::DrawLineColor(dc, x1, y1, x2, y2, c); }

// An outline square of side n at (x, y), `top` rows thick at the top as window glyphs are.
void Square(HDC dc, int x, int y, int n, int top, OLE_COLOR c) {
  for (int t = 0; t < top; ++t) Line(dc, x, y + t, x + n, y + t, c);
  Line(dc, x, y + n - 1, x + n, y + n - 1, c);
  Line(dc, x, y, x, y + n, c);
  Line(dc, x + n - 1, y, x + n - 1, y + n, c);
}

// The glyph in a box of side n whose top left is (x, y); `bold` doubles the strokes.
void Glyph(HDC dc, ButtonGlyph glyph, int x, int y, int n, bool bold, OLE_COLOR c) {
  switch (glyph) {
    case GlyphMinimize: {
      const int base = y + n - 2;
      Line(dc, x, base, x + n, base, c);
      if (bold) Line(dc, x, base + 1, x + n, base + 1, c);
      break;
    }
    case GlyphMaximize:
      Square(dc, x, y, n, bold ? 2 : 1, c);
      break;
    case GlyphRestore: {
      // Two windows: the back one shows only its top and right, the front one is whole.
      const int m = n - 3;
      Line(dc, x + 3, y, x + n, y, c);
      if (bold) Line(dc, x + 3, y + 1, x + n, y + 1, c);
      Line(dc, x + n - 1, y, x + n - 1, y + m, c);
      Line(dc, x + 3, y, x + 3, y + 3, c);
      Line(dc, x + m, y + m - 1, x + n, y + m - 1, c);
      Square(dc, x, y + 3, m, bold ? 2 : 1, c);
      break;
    }
    case GlyphClose:
      // LineTo leaves out the end point, so each diagonal runs one pixel past the box.
      Line(dc, x, y, x + n, y + n, c);
      Line(dc, x + n - 1, y, x - 1, y + n, c);
      if (bold) {
        Line(dc, x + 1, y, x + n, y + n - 1, c);
        Line(dc, x + n - 2, y, x - 1, y + n - 1, c);
      }
      break;
  }
}

}  // namespace

void DrawCaptionButton(HDC dc, const RECT& cell, ButtonLook look, ButtonGlyph glyph, ButtonFace face,
                       const ButtonColours& colours) {
  const int w = cell.right - cell.left, h = cell.bottom - cell.top;
  if (w <= 0 || h <= 0) return;
  OLE_COLOR glyphColour = colours.glyph;
  if (face == FaceDisabled) glyphColour = MixColour(colours.glyph, colours.background, 160);

  if (look == ButtonLook::Windows) {
    if (face == FaceHover || face == FacePressed) {
      OLE_COLOR fill = face == FaceHover ? colours.hoverFill : colours.pressedFill;
      // Close is red whatever the theme, as on the desktop the look copies.
      if (glyph == GlyphClose) {
        fill = face == FaceHover ? 0x2311E8 : 0x1A0FB0;
        glyphColour = 0xFFFFFF;
      }
      frame::FillRectColor(dc, cell, fill);
    }
    const int n = 10;
    Glyph(dc, glyph, cell.left + (w - n) / 2, cell.top + (h - n) / 2, n, false, glyphColour);
    return;
  }

  // Office look: a framed box behind the glyph on hover and press.
  if (face == FaceHover || face == FacePressed) {
    RECT box = cell;
    frame::FillRectColor(dc, box, face == FaceHover ? colours.hoverFill : colours.pressedFill);
    frame::FrameRectColor(dc, box, colours.frame);
  }
  const int n = 8;
  Glyph(dc, glyph, cell.left + (w - n) / 2, cell.top + (h - n) / 2, n, true, glyphColour);
}

}  // namespace mx::chrome
