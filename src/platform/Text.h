#pragma once
// The text functions of the drawing system: measuring and drawing strings with the font
// selected into a device context. Strings are UTF-16 as everywhere else in the library; a
// surrogate pair is one character on the screen. Counts are in UTF-16 units, and a count of -1
// means "up to the terminating zero".
//
// Colours, background mode and text alignment come from the DC (SetTextColor, SetBkColor,
// SetBkMode, SetTextAlign). Every function draws within the DC's clip and leaves the alpha
// byte of each pixel it touches at 0.
#include <string_view>

#include "platform/LogFont.h"
#include "platform/Types.h"

namespace mx::platform {

// Text alignment (SetTextAlign).
constexpr UINT TA_NOUPDATECP = 0;
constexpr UINT TA_UPDATECP = 1;
constexpr UINT TA_LEFT = 0;
constexpr UINT TA_RIGHT = 2;
constexpr UINT TA_CENTER = 6;
constexpr UINT TA_TOP = 0;
constexpr UINT TA_BOTTOM = 8;
constexpr UINT TA_BASELINE = 24;

// ExtTextOutW options.
constexpr UINT ETO_OPAQUE = 0x0002;
constexpr UINT ETO_CLIPPED = 0x0004;

// DrawTextW formats.
constexpr UINT DT_TOP = 0x00000000;
constexpr UINT DT_LEFT = 0x00000000;
constexpr UINT DT_CENTER = 0x00000001;
constexpr UINT DT_RIGHT = 0x00000002;
constexpr UINT DT_VCENTER = 0x00000004;
constexpr UINT DT_BOTTOM = 0x00000008;
constexpr UINT DT_WORDBREAK = 0x00000010;
constexpr UINT DT_SINGLELINE = 0x00000020;
constexpr UINT DT_EXPANDTABS = 0x00000040;
constexpr UINT DT_TABSTOP = 0x00000080;
constexpr UINT DT_NOCLIP = 0x00000100;
constexpr UINT DT_EXTERNALLEADING = 0x00000200;
constexpr UINT DT_CALCRECT = 0x00000400;
constexpr UINT DT_NOPREFIX = 0x00000800;
constexpr UINT DT_INTERNAL = 0x00001000;
constexpr UINT DT_EDITCONTROL = 0x00002000;
constexpr UINT DT_PATH_ELLIPSIS = 0x00004000;
constexpr UINT DT_END_ELLIPSIS = 0x00008000;
constexpr UINT DT_MODIFYSTRING = 0x00010000;
constexpr UINT DT_RTLREADING = 0x00020000;
constexpr UINT DT_WORD_ELLIPSIS = 0x00040000;
constexpr UINT DT_NOFULLWIDTHCHARBREAK = 0x00080000;
constexpr UINT DT_HIDEPREFIX = 0x00100000;
constexpr UINT DT_PREFIXONLY = 0x00200000;

// Extra layout for DrawTextExW: tab stops in average character widths, margins in pixels, and
// on return the number of UTF-16 units the call processed.
struct DRAWTEXTPARAMS {
  UINT cbSize = sizeof(DRAWTEXTPARAMS);
  int iTabLength = 0;
  int iLeftMargin = 0;
  int iRightMargin = 0;
  UINT uiLengthDrawn = 0;
};

// ---- Drawing -------------------------------------------------------------------------------------

// Draws at (x, y) placed by the DC's text alignment; with TA_UPDATECP at the current position,
// which then moves past the text.
BOOL TextOutW(HDC hdc, int x, int y, const char16_t* text, int count);
BOOL TextOutW(HDC hdc, int x, int y, std::u16string_view text);

// TextOutW with a rectangle: ETO_OPAQUE fills it with the background colour, ETO_CLIPPED keeps
// the text inside it. dx, when given, holds the distance from each character cell to the next
// (count entries, one per UTF-16 unit).
BOOL ExtTextOutW(HDC hdc, int x, int y, UINT options, const RECT* rect, const char16_t* text, UINT count,
                 const INT* dx);

// Formats text in a rectangle (see the DT_ flags). Returns the height of the text, or for
// DT_VCENTER and DT_BOTTOM the offset from the rectangle's top to the bottom of the text; 0 on
// failure. With DT_CALCRECT nothing is drawn and the rectangle's right and bottom are set to
// the size of the text: the widest line and all the lines.
int DrawTextW(HDC hdc, const char16_t* text, int count, RECT* rect, UINT format);
int DrawTextW(HDC hdc, std::u16string_view text, RECT* rect, UINT format);
int DrawTextExW(HDC hdc, const char16_t* text, int count, RECT* rect, UINT format, DRAWTEXTPARAMS* params);

// The narrow forms read bytes in the Western code page (Windows-1252).
BOOL TextOutA(HDC hdc, int x, int y, const char* text, int count);
int DrawTextA(HDC hdc, const char* text, int count, RECT* rect, UINT format);

// ---- Measuring -----------------------------------------------------------------------------------

BOOL GetTextMetricsW(HDC hdc, TEXTMETRICW* tm);

// Width: the advances of the characters in whole pixels, no kerning; height: tmHeight.
BOOL GetTextExtentPoint32W(HDC hdc, const char16_t* text, int count, SIZE* size);
BOOL GetTextExtentPoint32W(HDC hdc, std::u16string_view text, SIZE* size);
BOOL GetTextExtentPoint32A(HDC hdc, const char* text, int count, SIZE* size);

// How many UTF-16 units fit in maxExtent (into fit, when not null), and the extent from the
// start to the end of each unit (into dx, count entries, when not null).
BOOL GetTextExtentExPointW(HDC hdc, const char16_t* text, int count, int maxExtent, int* fit, int* dx, SIZE* size);

// The face name of the selected font as it was asked for, or the installed family when the
// description names none. Returns the characters copied without the zero; with a null buffer,
// the size needed including it.
int GetTextFaceW(HDC hdc, int count, char16_t* name);

// Advance widths of the code points first..last.
BOOL GetCharWidth32W(HDC hdc, UINT first, UINT last, INT* widths);

}  // namespace mx::platform
