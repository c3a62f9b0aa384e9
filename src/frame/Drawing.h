#pragma once
// The small drawing helpers every control uses: solid fills, lines and outlines in an
// OLE_COLOR, captions through DrawTextAPI, the focus mark, rounded window corners and window
// translucency. Each one creates and releases its own pens, brushes and regions, so a caller
// never holds a GDI object across calls. None of them reports failure.
#include <cstdint>

#include "host/Colors.h"
#include "host/String.h"
#include "platform/Types.h"

namespace mx::frame {

using host::OLE_COLOR;

// Fills the rectangle with a solid brush of the colour as given (not translated). A rectangle
// whose right or bottom is not past its left or top fills nothing.
void FillRectColor(platform::HDC hDC, const platform::RECT& rect, OLE_COLOR xColor);

// Draws text with DrawTextW. The count handed over is the byte length of the text in the ANSI
// code page (Windows-1252), not its length in UTF-16 units: a surrogate pair is one byte there,
// so text with characters beyond the basic plane loses as many units from its end. When the
// wide call returns 0 the narrow DrawTextA gets the ANSI text with its character count.
// Returns the height the platform call returned.
int32_t DrawTextAPI(platform::HDC hDC, host::StringView xText, platform::RECT& rect, uint32_t xFlags);

// The byte length of text in the ANSI code page: one byte per UTF-16 unit, one per surrogate pair.
[[nodiscard]] int32_t AnsiByteLength(host::StringView text);

// A one-pixel solid line from (x1, y1) to (x2, y2), the end point excluded, in the translated
// colour.
void DrawLineColor(platform::HDC hDC, int32_t x1, int32_t y1, int32_t x2, int32_t y2, OLE_COLOR xColor);

// A one-pixel outline just inside the rectangle, through FrameRect with a solid brush.
void FrameRectColor(platform::HDC hDC, const platform::RECT& rect, OLE_COLOR xColor);

// A rounded outline with ellipse size xRadiusX x xRadiusY; the inside is left as it is.
void RoundRectOutline(platform::HDC hDC, const platform::RECT& rect, int32_t xRadiusX, int32_t xRadiusY,
                      OLE_COLOR xColor);

// Sets the text colour (translated) and draws through DrawTextAPI. Background mode and font are
// the DC's.
int32_t DrawTextColor(platform::HDC hDC, host::StringView xText, platform::RECT& rect, uint32_t xFlags,
                      OLE_COLOR xColor);

// The dotted focus mark on the rectangle inset by 2 pixels on each side, with text colour 0.
void DrawFocusMark(platform::HDC hDC, const platform::RECT& rect);

// Gives the window rounded corners over its client size: a round-rectangle region of
// (0, 0, width + 1, height + 1), set with redraw.
void SetRoundedCorners(platform::HWND hWnd, int32_t width, int32_t height, int32_t xRadiusX, int32_t xRadiusY);

// Makes the whole window translucent: adds WS_EX_LAYERED to its extended style and sets its
// alpha to xLevel (0 invisible, 255 opaque).
void SetWindowTranslucency(platform::HWND hWnd, uint8_t xLevel);

}  // namespace mx::frame
