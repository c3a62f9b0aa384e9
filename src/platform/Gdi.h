#pragma once
// The drawing API: device contexts, bitmaps, pens, brushes, fonts, regions, icons, copies and
// blends. Names, arguments, constants and structure layouts are the classic desktop API's, so
// code written against it reads the same here. Every object is a typed handle; a stale or
// foreign handle is refused with the failure value of the call, never followed.
//
// Coordinates are logical; a DC maps them to its surface through its origins (see
// DeviceContext.h). Right and bottom edges of rectangles are exclusive everywhere.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/DeviceContext.h"  // TRANSPARENT and OPAQUE live beside the DC layout
#include "platform/LogFont.h"
#include "platform/Region.h"
#include "platform/Types.h"

namespace mx::platform {

// ---- structures ---------------------------------------------------------------------------

struct BITMAPINFOHEADER {
  DWORD biSize = 40;
  LONG biWidth = 0;
  LONG biHeight = 0;  // positive: bottom-up rows; negative: top-down
  WORD biPlanes = 1;
  WORD biBitCount = 32;
  DWORD biCompression = 0;  // BI_RGB
  DWORD biSizeImage = 0;
  LONG biXPelsPerMeter = 0;
  LONG biYPelsPerMeter = 0;
  DWORD biClrUsed = 0;
  DWORD biClrImportant = 0;
};
static_assert(sizeof(BITMAPINFOHEADER) == 40);

struct RGBQUAD {
  BYTE rgbBlue = 0, rgbGreen = 0, rgbRed = 0, rgbReserved = 0;
};

struct BITMAPINFO {
  BITMAPINFOHEADER bmiHeader;
  RGBQUAD bmiColors[1];
};

struct BITMAP {
  LONG bmType = 0;
  LONG bmWidth = 0;
  LONG bmHeight = 0;
  LONG bmWidthBytes = 0;
  WORD bmPlanes = 1;
  WORD bmBitsPixel = 32;
  void* bmBits = nullptr;  // the pixel memory of a DIB section; null for other bitmaps
};

struct DIBSECTION {
  BITMAP dsBm;
  BITMAPINFOHEADER dsBmih;
  DWORD dsBitfields[3] = {};
  HANDLE dshSection = 0;
  DWORD dsOffset = 0;
};

struct LOGPEN {
  UINT lopnStyle = 0;
  POINT lopnWidth{};
  COLORREF lopnColor = 0;
};

struct LOGBRUSH {
  UINT lbStyle = 0;
  COLORREF lbColor = 0;
  uintptr_t lbHatch = 0;
};

struct RGNDATAHEADER {
  DWORD dwSize = 32;
  DWORD iType = 1;  // RDH_RECTANGLES
  DWORD nCount = 0;
  DWORD nRgnSize = 0;
  RECT rcBound{};
};
static_assert(sizeof(RGNDATAHEADER) == 32);

// A header followed by nCount RECTs.
struct RGNDATA {
  RGNDATAHEADER rdh;
  char Buffer[1];
};

struct XFORM;  // transformed regions are not supported: ExtCreateRegion wants a null one

using ULONG = uint32_t;
using COLOR16 = uint16_t;

struct BLENDFUNCTION {
  BYTE BlendOp = 0;  // AC_SRC_OVER
  BYTE BlendFlags = 0;
  BYTE SourceConstantAlpha = 255;
  BYTE AlphaFormat = 0;  // 0 or AC_SRC_ALPHA
};

// Gradient vertices carry 16 bits per channel; the pixel gets the high byte.
struct TRIVERTEX {
  LONG x = 0, y = 0;
  COLOR16 Red = 0, Green = 0, Blue = 0, Alpha = 0;
};
struct GRADIENT_RECT {
  ULONG UpperLeft = 0, LowerRight = 0;
};
struct GRADIENT_TRIANGLE {
  ULONG Vertex1 = 0, Vertex2 = 0, Vertex3 = 0;
};

// ---- constants ----------------------------------------------------------------------------

constexpr int HGDI_ERROR_INT = -1;
constexpr HGDIOBJ HGDI_ERROR = 0xFFFFFFFFu;
constexpr int CLR_INVALID = -1;

// GetObjectType results, also the selectors of GetCurrentObject
constexpr DWORD OBJ_PEN = 1, OBJ_BRUSH = 2, OBJ_DC = 3, OBJ_FONT = 6, OBJ_BITMAP = 7, OBJ_REGION = 8,
                OBJ_MEMDC = 10;

// GetStockObject
constexpr int WHITE_BRUSH = 0, LTGRAY_BRUSH = 1, GRAY_BRUSH = 2, DKGRAY_BRUSH = 3, BLACK_BRUSH = 4,
              NULL_BRUSH = 5, HOLLOW_BRUSH = 5, WHITE_PEN = 6, BLACK_PEN = 7, NULL_PEN = 8,
              OEM_FIXED_FONT = 10, ANSI_FIXED_FONT = 11, ANSI_VAR_FONT = 12, SYSTEM_FONT = 13,
              DEVICE_DEFAULT_FONT = 14, SYSTEM_FIXED_FONT = 16, DEFAULT_GUI_FONT = 17, DC_BRUSH = 18,
              DC_PEN = 19;

// bitmaps
constexpr DWORD BI_RGB = 0, BI_BITFIELDS = 3;
constexpr UINT DIB_RGB_COLORS = 0;

// pens and brushes
constexpr UINT PS_SOLID = 0, PS_DASH = 1, PS_DOT = 2, PS_DASHDOT = 3, PS_DASHDOTDOT = 4, PS_NULL = 5,
               PS_INSIDEFRAME = 6;
constexpr UINT BS_SOLID = 0, BS_NULL = 1, BS_HOLLOW = 1, BS_HATCHED = 2, BS_PATTERN = 3;
constexpr int HS_HORIZONTAL = 0, HS_VERTICAL = 1, HS_FDIAGONAL = 2, HS_BDIAGONAL = 3, HS_CROSS = 4,
              HS_DIAGCROSS = 5;

// background and stretch modes (TRANSPARENT and OPAQUE are in DeviceContext.h)
constexpr int BLACKONWHITE = 1, WHITEONBLACK = 2, COLORONCOLOR = 3, HALFTONE = 4,
              STRETCH_ANDSCANS = 1, STRETCH_ORSCANS = 2, STRETCH_DELETESCANS = 3, STRETCH_HALFTONE = 4;

// regions
constexpr int ERROR = 0, NULLREGION = 1, SIMPLEREGION = 2, COMPLEXREGION = 3, RGN_ERROR = 0;
constexpr int RGN_AND = 1, RGN_OR = 2, RGN_XOR = 3, RGN_DIFF = 4, RGN_COPY = 5;
constexpr DWORD RDH_RECTANGLES = 1;
constexpr int ALTERNATE = 1, WINDING = 2;

// raster operations: the middle byte is the ternary operation code
constexpr DWORD SRCCOPY = 0x00CC0020, SRCPAINT = 0x00EE0086, SRCAND = 0x008800C6, SRCINVERT = 0x00660046,
                SRCERASE = 0x00440328, NOTSRCCOPY = 0x00330008, NOTSRCERASE = 0x001100A6,
                MERGECOPY = 0x00C000CA, MERGEPAINT = 0x00BB0226, PATCOPY = 0x00F00021, PATPAINT = 0x00FB0A09,
                PATINVERT = 0x005A0049, DSTINVERT = 0x00550009, BLACKNESS = 0x00000042,
                WHITENESS = 0x00FF0062;

// blending and gradients
constexpr BYTE AC_SRC_OVER = 0, AC_SRC_ALPHA = 1;
constexpr ULONG GRADIENT_FILL_RECT_H = 0, GRADIENT_FILL_RECT_V = 1, GRADIENT_FILL_TRIANGLE = 2;

// DrawEdge
constexpr UINT BDR_RAISEDOUTER = 0x1, BDR_SUNKENOUTER = 0x2, BDR_RAISEDINNER = 0x4, BDR_SUNKENINNER = 0x8,
               BDR_OUTER = 0x3, BDR_INNER = 0xC, EDGE_RAISED = 0x5, EDGE_SUNKEN = 0xA, EDGE_ETCHED = 0x6,
               EDGE_BUMP = 0x9;
constexpr UINT BF_LEFT = 0x1, BF_TOP = 0x2, BF_RIGHT = 0x4, BF_BOTTOM = 0x8, BF_TOPLEFT = 0x3,
               BF_BOTTOMRIGHT = 0xC, BF_RECT = 0xF, BF_MIDDLE = 0x800, BF_SOFT = 0x1000, BF_ADJUST = 0x2000,
               BF_FLAT = 0x4000, BF_MONO = 0x8000;

// ---- device contexts ----------------------------------------------------------------------

// A memory DC with the 1 x 1 stock bitmap, the black pen, the white brush and the system font
// selected. The argument is accepted for compatibility and otherwise ignored: every surface is
// 32 bits.
[[nodiscard]] HDC CreateCompatibleDC(HDC hdc);
BOOL DeleteDC(HDC hdc);
// Pushes the DC's state; returns the new depth (1 for the first save) or 0.
int SaveDC(HDC hdc);
// Pops to a saved depth (positive) or back by -level (negative).
BOOL RestoreDC(HDC hdc, int level);

// Selects a bitmap, pen, brush or font and returns the one it replaces, or 0 on failure.
// Selecting a region sets the clip (as SelectClipRgn) and returns the clip's kind.
HGDIOBJ SelectObject(HDC hdc, HGDIOBJ obj);
[[nodiscard]] HGDIOBJ GetCurrentObject(HDC hdc, UINT type);
// Refuses (FALSE) stock objects and objects still selected into a DC.
BOOL DeleteObject(HGDIOBJ obj);
[[nodiscard]] HGDIOBJ GetStockObject(int index);
[[nodiscard]] DWORD GetObjectType(HGDIOBJ obj);
// Fills a BITMAP or DIBSECTION, LOGPEN, LOGBRUSH or LOGFONTW; with out null returns the size.
int GetObjectW(HGDIOBJ obj, int cb, void* out);
inline int GetObject(HGDIOBJ obj, int cb, void* out) { return GetObjectW(obj, cb, out); }

COLORREF SetDCBrushColor(HDC hdc, COLORREF color);
COLORREF SetDCPenColor(HDC hdc, COLORREF color);
[[nodiscard]] COLORREF GetDCBrushColor(HDC hdc);
[[nodiscard]] COLORREF GetDCPenColor(HDC hdc);
COLORREF SetTextColor(HDC hdc, COLORREF color);
[[nodiscard]] COLORREF GetTextColor(HDC hdc);
COLORREF SetBkColor(HDC hdc, COLORREF color);
[[nodiscard]] COLORREF GetBkColor(HDC hdc);
int SetBkMode(HDC hdc, int mode);
[[nodiscard]] int GetBkMode(HDC hdc);
int SetStretchBltMode(HDC hdc, int mode);
[[nodiscard]] int GetStretchBltMode(HDC hdc);
int SetPolyFillMode(HDC hdc, int mode);
[[nodiscard]] int GetPolyFillMode(HDC hdc);
UINT SetTextAlign(HDC hdc, UINT align);
[[nodiscard]] UINT GetTextAlign(HDC hdc);
BOOL SetBrushOrgEx(HDC hdc, int x, int y, POINT* old);
BOOL GetBrushOrgEx(HDC hdc, POINT* out);
BOOL SetViewportOrgEx(HDC hdc, int x, int y, POINT* old);
BOOL GetViewportOrgEx(HDC hdc, POINT* out);
BOOL OffsetViewportOrgEx(HDC hdc, int dx, int dy, POINT* old);
BOOL SetWindowOrgEx(HDC hdc, int x, int y, POINT* old);
BOOL GetWindowOrgEx(HDC hdc, POINT* out);
BOOL GetCurrentPositionEx(HDC hdc, POINT* out);
// Brings the packed rows of 24-bit sections selected into DCs up to date with what was drawn.
BOOL GdiFlush();

// ---- bitmaps ------------------------------------------------------------------------------

// 32 or 24 bits, BI_RGB (or BI_BITFIELDS with the standard masks). The memory is zeroed and
// returned in *bits. Drawing always happens in 32 bits: a 24-bit section is read into a working
// copy when it is selected into a DC, and its packed rows are brought up to date when it is
// selected out, when its DC goes, and by GdiFlush.
[[nodiscard]] HBITMAP CreateDIBSection(HDC hdc, const BITMAPINFO* info, UINT usage, void** bits,
                                       HANDLE section = 0, DWORD offset = 0);
// A zeroed 32-bit bitmap of the given size.
[[nodiscard]] HBITMAP CreateCompatibleBitmap(HDC hdc, int width, int height);
// Only 1 plane of 32 bits; bits (rows top-down, width * 4 bytes each) may be null.
[[nodiscard]] HBITMAP CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const void* bits);

// ---- pens, brushes, fonts -----------------------------------------------------------------

[[nodiscard]] HPEN CreatePen(int style, int width, COLORREF color);
[[nodiscard]] HPEN CreatePenIndirect(const LOGPEN* lp);
[[nodiscard]] HBRUSH CreateSolidBrush(COLORREF color);
[[nodiscard]] HBRUSH CreateHatchBrush(int hatch, COLORREF color);
// The brush keeps its own copy of the bitmap's pixels; the bitmap may be deleted afterwards.
[[nodiscard]] HBRUSH CreatePatternBrush(HBITMAP bitmap);
[[nodiscard]] HBRUSH CreateBrushIndirect(const LOGBRUSH* lb);
[[nodiscard]] HFONT CreateFontIndirectW(const LOGFONTW* lf);
inline HFONT CreateFontIndirect(const LOGFONTW* lf) { return CreateFontIndirectW(lf); }

// ---- regions ------------------------------------------------------------------------------

[[nodiscard]] HRGN CreateRectRgn(int left, int top, int right, int bottom);
[[nodiscard]] HRGN CreateRectRgnIndirect(const RECT* r);
// Like the classic call, the result covers [left, right - 1) x [top, bottom - 1): one pixel
// less to the right and below than the rectangle given, which is why callers pass w + 1, h + 1.
[[nodiscard]] HRGN CreateRoundRectRgn(int left, int top, int right, int bottom, int ew, int eh);
[[nodiscard]] HRGN CreateEllipticRgn(int left, int top, int right, int bottom);
[[nodiscard]] HRGN CreateEllipticRgnIndirect(const RECT* r);
// Rectangles in any order. xform must be null. count is the byte size of data.
[[nodiscard]] HRGN ExtCreateRegion(const XFORM* xform, DWORD count, const RGNDATA* data);
// With data null returns the bytes needed; otherwise fills it when size allows and returns the
// bytes written, 0 on failure.
DWORD GetRegionData(HRGN rgn, DWORD size, RGNDATA* data);
// The result kind (NULLREGION, SIMPLEREGION, COMPLEXREGION) or ERROR. dest may be a source.
int CombineRgn(HRGN dest, HRGN src1, HRGN src2, int mode);
int OffsetRgn(HRGN rgn, int dx, int dy);
[[nodiscard]] BOOL PtInRegion(HRGN rgn, int x, int y);
[[nodiscard]] BOOL RectInRegion(HRGN rgn, const RECT* r);
int GetRgnBox(HRGN rgn, RECT* out);
[[nodiscard]] BOOL EqualRgn(HRGN a, HRGN b);
BOOL SetRectRgn(HRGN rgn, int left, int top, int right, int bottom);
// The region's rectangles in banded order (empty for a stale handle).
[[nodiscard]] std::vector<RECT> GetRegionRects(HRGN rgn);
// The region object behind a handle, for platform code that works on regions directly.
[[nodiscard]] const Region* LookupRegion(HRGN rgn);
// Issues a handle for a region built in code.
[[nodiscard]] HRGN CreateRegionFrom(Region region);

// ---- copies, blends, gradients ------------------------------------------------------------
//
// Copies move all four bytes of a pixel. Raster operations that read the source or the
// destination work on the whole 32-bit word (a brush's alpha byte counts as 0), so DSTINVERT
// and PATINVERT undo themselves; those that read neither (PATCOPY, BLACKNESS, WHITENESS) are
// fills and leave alpha 0. Parts of a source rectangle outside the source surface are
// not drawn; the source DC's clip is not consulted.

// Copying within one surface is safe for overlapping rectangles.
BOOL BitBlt(HDC dest, int x, int y, int cx, int cy, HDC src, int x1, int y1, DWORD rop);
// Nearest pixel by default: destination pixel i takes source pixel i * |wS| / |wD|. In HALFTONE
// mode each destination pixel is the area average of the source it covers (see the source for
// the exact arithmetic); BLACKONWHITE and WHITEONBLACK combine the dropped pixels with AND and
// OR when shrinking. A negative width or height mirrors: the rectangle then covers x, x - 1,
// ..., x + w + 1, so StretchBlt(dc, w - 1, 0, -w, h, ...) mirrors into (0, 0, w, h).
BOOL StretchBlt(HDC dest, int xD, int yD, int wD, int hD, HDC src, int xS, int yS, int wS, int hS, DWORD rop);
BOOL PatBlt(HDC hdc, int x, int y, int w, int h, DWORD rop);
// Premultiplied source over the destination (see Blend.h for the arithmetic). Stretches when
// the sizes differ (area averaging in HALFTONE mode, else nearest). FALSE for negative sizes,
// a source rectangle outside the source surface, or overlapping rectangles on one surface.
BOOL AlphaBlend(HDC dest, int xD, int yD, int wD, int hD, HDC src, int xS, int yS, int wS, int hS,
                BLENDFUNCTION fn);
// Copies (stretching by nearest pixel) every source pixel whose colour differs from the key.
BOOL TransparentBlt(HDC dest, int xD, int yD, int wD, int hD, HDC src, int xS, int yS, int wS, int hS,
                    UINT transparent);
// Rectangles (horizontal or vertical) and triangles. Channels are interpolated in 16 bits and
// the high byte is written, alpha included.
BOOL GradientFill(HDC hdc, const TRIVERTEX* vertices, ULONG nVertices, const void* mesh, ULONG nMesh, ULONG mode);

// ---- device-independent bits -------------------------------------------------------------
//
// 32- and 24-bit BI_RGB rows, DWORD-aligned, bottom-up for a positive height. Scan line
// numbers and, for bottom-up pictures, source y coordinates count from the bottom row, as the
// classic calls count them.

// Copies `lines` scans from `start` into bits. With bits null: a header whose biBitCount is 0
// is filled with the bitmap's description; otherwise biSizeImage is set. Returns the scans
// copied (or the bitmap height when describing), 0 on failure.
int GetDIBits(HDC hdc, HBITMAP bitmap, UINT start, UINT lines, void* bits, BITMAPINFO* info, UINT usage);
int SetDIBits(HDC hdc, HBITMAP bitmap, UINT start, UINT lines, const void* bits, const BITMAPINFO* info,
              UINT usage);
// Returns the number of scan lines drawn, 0 on failure.
int StretchDIBits(HDC hdc, int xD, int yD, int wD, int hD, int xS, int yS, int wS, int hS, const void* bits,
                  const BITMAPINFO* info, UINT usage, DWORD rop);
// bits hold cLines scans starting at scan startScan of the picture the header describes.
int SetDIBitsToDevice(HDC hdc, int xD, int yD, DWORD w, DWORD h, int xS, int yS, UINT startScan, UINT cLines,
                      const void* bits, const BITMAPINFO* info, UINT usage);

// CLR_INVALID outside the clip.
[[nodiscard]] COLORREF GetPixel(HDC hdc, int x, int y);
// Returns the colour set, or CLR_INVALID outside the clip.
COLORREF SetPixel(HDC hdc, int x, int y, COLORREF color);
BOOL SetPixelV(HDC hdc, int x, int y, COLORREF color);

// ---- shapes ----------------------------------------------------------------------------------
//
// Closed figures are drawn with the pen inside their rectangle (the pen's width eats inwards)
// and filled with the brush. With a null pen the figure is one pixel smaller to the right and
// below, as in the classic system. Ellipses and round corners follow the shape rule of
// Region.h, so a figure and the region of the same arguments cover the same pixels. Styled
// pens (dash, dot) are one pixel wide and dash lines, polylines, polygons and rectangles;
// ellipses and round rectangles take their colour solid. Wide pens draw lines with round ends.

// The brush may also be a system colour index plus one, as in the classic call.

int FillRect(HDC hdc, const RECT* r, HBRUSH brush);
int FrameRect(HDC hdc, const RECT* r, HBRUSH brush);
BOOL InvertRect(HDC hdc, const RECT* r);
BOOL Rectangle(HDC hdc, int left, int top, int right, int bottom);
BOOL RoundRect(HDC hdc, int left, int top, int right, int bottom, int ew, int eh);
BOOL Ellipse(HDC hdc, int left, int top, int right, int bottom);
BOOL MoveToEx(HDC hdc, int x, int y, POINT* old);
// A Bresenham line from the current position; the end point itself is not drawn.
BOOL LineTo(HDC hdc, int x, int y);
BOOL Polyline(HDC hdc, const POINT* points, int count);
// Filled with the brush by the DC's fill mode (ALTERNATE or WINDING), outlined with the pen.
BOOL Polygon(HDC hdc, const POINT* points, int count);
// The dotted frame of keyboard focus: every other pixel of a one-pixel frame is XORed with the
// background colour (with the text colour on the others; black, the usual text colour, changes
// nothing). Drawing it twice removes it.
BOOL DrawFocusRect(HDC hdc, const RECT* r);
// 3-D borders in the system colours; BF_ADJUST shrinks *r by the border drawn.
BOOL DrawEdge(HDC hdc, RECT* r, UINT edge, UINT flags);
BOOL FillRgn(HDC hdc, HRGN rgn, HBRUSH brush);
BOOL PaintRgn(HDC hdc, HRGN rgn);
BOOL InvertRgn(HDC hdc, HRGN rgn);
// Paints the region's border, w pixels wide inside it horizontally and h vertically.
BOOL FrameRgn(HDC hdc, HRGN rgn, HBRUSH brush, int w, int h);
[[nodiscard]] HRGN CreatePolygonRgn(const POINT* points, int count, int fillMode);

// ---- icons --------------------------------------------------------------------------------

struct ICONINFO {
  BOOL fIcon = TRUE;
  DWORD xHotspot = 0, yHotspot = 0;
  HBITMAP hbmMask = 0;   // white keeps the destination, black lets the colour through
  HBITMAP hbmColor = 0;  // 0 for a monochrome icon: then the mask is AND half over XOR half
};

constexpr UINT DI_MASK = 0x1, DI_IMAGE = 0x2, DI_NORMAL = 0x3, DI_COMPAT = 0x4, DI_DEFAULTSIZE = 0x8,
               DI_NOMIRROR = 0x10;

// The icon keeps copies of the bitmaps' pixels; the caller still owns (and deletes) them.
[[nodiscard]] HICON CreateIconIndirect(const ICONINFO* info);
// Makes new bitmaps, which the caller deletes.
BOOL GetIconInfo(HICON icon, ICONINFO* out);
BOOL DestroyIcon(HICON icon);
[[nodiscard]] HICON CopyIcon(HICON icon);
BOOL GetIconSize(HICON icon, SIZE* out);
// cx, cy 0: the icon's own size; other sizes stretch by nearest pixel. A colour picture with
// any alpha is blended by its (straight) alpha when drawn with DI_NORMAL; otherwise the mask
// is ANDed and the colour XORed, as the classic call does. A flicker-free brush fills the
// rectangle first.
BOOL DrawIconEx(HDC hdc, int x, int y, HICON icon, int cx, int cy, UINT step, HBRUSH flickerFree, UINT flags);
BOOL DrawIcon(HDC hdc, int x, int y, HICON icon);

// ---- clipping ------------------------------------------------------------------------------
//
// The clip region of a DC is in the DC's device units (relative to the window's client area for
// a window DC), as the classic API keeps it: changing the origins afterwards does not move it.
// IntersectClipRect and ExcludeClipRect take logical coordinates.

int SelectClipRgn(HDC hdc, HRGN rgn);  // a copy is kept; 0 removes the clip
int ExtSelectClipRgn(HDC hdc, HRGN rgn, int mode);
int IntersectClipRect(HDC hdc, int left, int top, int right, int bottom);
int ExcludeClipRect(HDC hdc, int left, int top, int right, int bottom);
int OffsetClipRgn(HDC hdc, int dx, int dy);
// Bounds of what can be drawn, in logical coordinates.
int GetClipBox(HDC hdc, RECT* out);
// Copies the caller's clip into rgn: 1 when there is one, 0 when none, -1 on error.
int GetClipRgn(HDC hdc, HRGN rgn);
[[nodiscard]] BOOL PtVisible(HDC hdc, int x, int y);
[[nodiscard]] BOOL RectVisible(HDC hdc, const RECT* r);

}  // namespace mx::platform
