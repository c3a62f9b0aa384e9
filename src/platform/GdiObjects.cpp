// Object tables, stock objects, and the calls that make, inspect and delete drawing objects.
#include <algorithm>
#include <cstring>
#include <new>

#include "platform/GdiInternal.h"

namespace mx::platform {

namespace gdi {

namespace {

// Largest pixel buffer a bitmap may have; keeps width * height * 4 far from overflow.
constexpr int64_t kMaxBitmapBytes = int64_t{1} << 30;

LOGFONTW makeFont(LONG height, LONG weight, const char16_t* face) {
  LOGFONTW lf;
  lf.lfHeight = height;
  lf.lfWeight = weight;
  for (int i = 0; face[i] && i < LF_FACESIZE - 1; ++i) lf.lfFaceName[i] = face[i];
  return lf;
}

}  // namespace

GdiState::GdiState() {
  auto solidBrush = [&](COLORREF c, UINT style = BS_SOLID) {
    auto b = std::make_unique<BrushObject>();
    b->style = style;
    b->color = c;
    return brushes.add(std::move(b));
  };
  auto solidPen = [&](COLORREF c, UINT style = PS_SOLID) {
    auto p = std::make_unique<PenObject>();
    p->style = style;
    p->color = c;
    return pens.add(std::move(p));
  };
  auto font = [&](const LOGFONTW& lf) {
    auto f = std::make_unique<FontObject>();
    f->lf = lf;
    return fonts.add(std::move(f));
  };
  stock[WHITE_BRUSH] = solidBrush(RGB(255, 255, 255));
  stock[LTGRAY_BRUSH] = solidBrush(RGB(192, 192, 192));
  stock[GRAY_BRUSH] = solidBrush(RGB(128, 128, 128));
  stock[DKGRAY_BRUSH] = solidBrush(RGB(64, 64, 64));
  stock[BLACK_BRUSH] = solidBrush(RGB(0, 0, 0));
  stock[NULL_BRUSH] = solidBrush(0, BS_NULL);
  stock[WHITE_PEN] = solidPen(RGB(255, 255, 255));
  stock[BLACK_PEN] = solidPen(RGB(0, 0, 0));
  stock[NULL_PEN] = solidPen(0, PS_NULL);
  // DC_BRUSH and DC_PEN take their colour from the DC they are selected into at draw time.
  stock[DC_BRUSH] = solidBrush(RGB(255, 255, 255));
  stock[DC_PEN] = solidPen(RGB(0, 0, 0));
  LOGFONTW fixed = makeFont(12, 400, u"Courier New");
  fixed.lfPitchAndFamily = 1;  // FIXED_PITCH
  stock[OEM_FIXED_FONT] = font(fixed);
  stock[ANSI_FIXED_FONT] = font(fixed);
  stock[ANSI_VAR_FONT] = font(makeFont(12, 400, u"MS Sans Serif"));
  stock[SYSTEM_FONT] = font(makeFont(16, 700, u"System"));
  stock[DEVICE_DEFAULT_FONT] = font(makeFont(16, 700, u"System"));
  stock[SYSTEM_FIXED_FONT] = font(fixed);
  stock[DEFAULT_GUI_FONT] = font(makeFont(-11, 400, u"MS Shell Dlg"));
  auto bmp = makeBitmap(1, 1, false);
  stockBitmap = bitmaps.add(std::move(bmp));

  // Stock objects live as long as the thread and are not leaks: keep them out of the counts.
  for (HGDIOBJ h : stock)
    if (h) ++m_stockCounts[static_cast<size_t>(TypeOfHandle(h))];
  ++m_stockCounts[static_cast<size_t>(HandleType::Bitmap)];
  for (int t = 0; t < kHandleTypeCount; ++t)
    if (m_stockCounts[static_cast<size_t>(t)])
      AdjustLiveHandleCount(static_cast<HandleType>(t), -m_stockCounts[static_cast<size_t>(t)]);
}

GdiState::~GdiState() {
  // The tables subtract all their objects when they go; give the stock ones back first.
  for (int t = 0; t < kHandleTypeCount; ++t)
    if (m_stockCounts[static_cast<size_t>(t)])
      AdjustLiveHandleCount(static_cast<HandleType>(t), m_stockCounts[static_cast<size_t>(t)]);
}

bool GdiState::isStock(HGDIOBJ h) const {
  if (h == 0) return false;
  if (h == stockBitmap) return true;
  return std::find(stock.begin(), stock.end(), h) != stock.end();
}

GdiState& state() {
  thread_local GdiState s;
  return s;
}

BitmapObject* bitmap(HBITMAP h) { return state().bitmaps.get(h); }
PenObject* pen(HPEN h) { return state().pens.get(h); }
BrushObject* brush(HBRUSH h) { return state().brushes.get(h); }
RegionObject* region(HRGN h) { return state().regions.get(h); }
IconObject* icon(HICON h) { return state().icons.get(h); }

std::unique_ptr<BitmapObject> makeBitmap(int width, int height, bool bottomUp) {
  if (width <= 0 || height <= 0) return nullptr;
  int64_t bytes = int64_t{width} * height * 4;
  if (bytes > kMaxBitmapBytes) return nullptr;
  auto b = std::make_unique<BitmapObject>();
  b->pixels.reset(new (std::nothrow) uint8_t[static_cast<size_t>(bytes)]());
  if (!b->pixels) return nullptr;
  b->surface.width = width;
  b->surface.height = height;
  b->surface.stride = width * 4;
  b->surface.bits = b->pixels.get();
  b->surface.bottomUp = bottomUp;
  return b;
}

// Packed 24-bit rows share the surface's row order, so memory row i maps to memory row i.
void pull24(BitmapObject& b) {
  if (!b.packed) return;
  for (int y = 0; y < b.surface.height; ++y) {
    const uint8_t* src = b.packed.get() + static_cast<size_t>(y) * b.packedStride;
    auto* dst = reinterpret_cast<uint32_t*>(b.surface.bits + static_cast<size_t>(y) * b.surface.stride);
    for (int x = 0; x < b.surface.width; ++x, src += 3)
      dst[x] = src[0] | (uint32_t{src[1]} << 8) | (uint32_t{src[2]} << 16);
  }
}

void push24(BitmapObject& b) {
  if (!b.packed) return;
  for (int y = 0; y < b.surface.height; ++y) {
    uint8_t* dst = b.packed.get() + static_cast<size_t>(y) * b.packedStride;
    const auto* src =
        reinterpret_cast<const uint32_t*>(b.surface.bits + static_cast<size_t>(y) * b.surface.stride);
    for (int x = 0; x < b.surface.width; ++x, dst += 3) {
      dst[0] = src[x] & 0xFF;
      dst[1] = (src[x] >> 8) & 0xFF;
      dst[2] = (src[x] >> 16) & 0xFF;
    }
  }
}

}  // namespace gdi

using namespace gdi;

// ---- creation ---------------------------------------------------------------------------------

HBITMAP CreateDIBSection(HDC, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section, DWORD) {
  if (bits) *bits = nullptr;
  if (!info || usage != DIB_RGB_COLORS || section != 0) return 0;
  const BITMAPINFOHEADER& h = info->bmiHeader;
  if (h.biSize < sizeof(BITMAPINFOHEADER) || h.biPlanes != 1) return 0;
  if (h.biBitCount != 32 && h.biBitCount != 24) return 0;
  if (h.biCompression == BI_BITFIELDS) {
    // Only the masks that describe ordinary BGRA memory are understood.
    DWORD masks[3];
    std::memcpy(masks, reinterpret_cast<const uint8_t*>(info) + h.biSize, sizeof masks);
    if (h.biBitCount != 32 || masks[0] != 0xFF0000 || masks[1] != 0xFF00 || masks[2] != 0xFF) return 0;
  } else if (h.biCompression != BI_RGB) {
    return 0;
  }
  if (h.biWidth <= 0 || h.biHeight == 0 || h.biHeight == INT32_MIN) return 0;
  int width = h.biWidth;
  int height = h.biHeight < 0 ? -h.biHeight : h.biHeight;
  auto b = makeBitmap(width, height, h.biHeight > 0);
  if (!b) return 0;
  b->dibSection = true;
  b->header = h;
  b->header.biSize = sizeof(BITMAPINFOHEADER);
  if (h.biBitCount == 24) {
    b->packedStride = (width * 3 + 3) & ~3;
    b->packed.reset(new (std::nothrow) uint8_t[static_cast<size_t>(b->packedStride) * height]());
    if (!b->packed) return 0;
  }
  b->header.biSizeImage = static_cast<DWORD>(b->packed ? b->packedStride * height : width * 4 * height);
  void* mem = b->packed ? static_cast<void*>(b->packed.get()) : static_cast<void*>(b->surface.bits);
  HBITMAP out = state().bitmaps.add(std::move(b));
  if (out && bits) *bits = mem;
  return out;
}

HBITMAP CreateCompatibleBitmap(HDC, int width, int height) {
  auto b = makeBitmap(width, height, false);
  return b ? state().bitmaps.add(std::move(b)) : 0;
}

HBITMAP CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const void* bits) {
  if (planes != 1 || bitsPerPixel != 32) return 0;
  auto b = makeBitmap(width, height, false);
  if (!b) return 0;
  if (bits) std::memcpy(b->surface.bits, bits, static_cast<size_t>(width) * height * 4);
  return state().bitmaps.add(std::move(b));
}

HPEN CreatePen(int style, int width, COLORREF color) {
  UINT s = static_cast<UINT>(style) & 0x0F;
  if (s > PS_INSIDEFRAME) return 0;
  auto p = std::make_unique<PenObject>();
  p->style = s;
  p->width = std::max(width, 1);
  // Like the classic system, styled lines are only drawn one pixel wide.
  if (s != PS_SOLID && s != PS_NULL && s != PS_INSIDEFRAME) p->width = 1;
  p->color = color & 0xFFFFFF;
  return state().pens.add(std::move(p));
}

HPEN CreatePenIndirect(const LOGPEN* lp) {
  return lp ? CreatePen(static_cast<int>(lp->lopnStyle), lp->lopnWidth.x, lp->lopnColor) : 0;
}

HBRUSH CreateSolidBrush(COLORREF color) {
  auto b = std::make_unique<BrushObject>();
  b->color = color & 0xFFFFFF;
  return state().brushes.add(std::move(b));
}

HBRUSH CreateHatchBrush(int hatch, COLORREF color) {
  if (hatch < HS_HORIZONTAL || hatch > HS_DIAGCROSS) return 0;
  auto b = std::make_unique<BrushObject>();
  b->style = BS_HATCHED;
  b->hatch = hatch;
  b->color = color & 0xFFFFFF;
  return state().brushes.add(std::move(b));
}

HBRUSH CreatePatternBrush(HBITMAP hbm) {
  BitmapObject* bm = bitmap(hbm);
  if (!bm) return 0;
  if (bm->packed && !bm->selectedInto) pull24(*bm);
  auto b = std::make_unique<BrushObject>();
  b->style = BS_PATTERN;
  b->patternWidth = bm->surface.width;
  b->patternHeight = bm->surface.height;
  b->pattern.resize(static_cast<size_t>(b->patternWidth) * b->patternHeight);
  for (int y = 0; y < b->patternHeight; ++y)
    std::memcpy(&b->pattern[static_cast<size_t>(y) * b->patternWidth], bm->surface.row(y),
                static_cast<size_t>(b->patternWidth) * 4);
  return state().brushes.add(std::move(b));
}

HBRUSH CreateBrushIndirect(const LOGBRUSH* lb) {
  if (!lb) return 0;
  switch (lb->lbStyle) {
    case BS_SOLID: return CreateSolidBrush(lb->lbColor);
    case BS_NULL: {
      auto b = std::make_unique<BrushObject>();
      b->style = BS_NULL;
      return state().brushes.add(std::move(b));
    }
    case BS_HATCHED: return CreateHatchBrush(static_cast<int>(lb->lbHatch), lb->lbColor);
    case BS_PATTERN: return CreatePatternBrush(static_cast<HBITMAP>(lb->lbHatch));
    default: return 0;
  }
}

HFONT CreateFontIndirectW(const LOGFONTW* lf) {
  if (!lf) return 0;
  auto f = std::make_unique<FontObject>();
  f->lf = *lf;
  f->lf.lfFaceName[LF_FACESIZE - 1] = 0;  // always terminated, whatever the caller passed
  return state().fonts.add(std::move(f));
}

const LOGFONTW* LookupFont(HFONT font) {
  FontObject* f = state().fonts.get(font);
  return f ? &f->lf : nullptr;
}

HGDIOBJ GetStockObject(int index) {
  if (index < 0 || index >= static_cast<int>(state().stock.size())) return 0;
  return state().stock[static_cast<size_t>(index)];
}

// ---- inspection and deletion --------------------------------------------------------------

DWORD GetObjectType(HGDIOBJ obj) {
  GdiState& s = state();
  switch (TypeOfHandle(obj)) {
    case HandleType::DC: {
      DeviceContext* dc = s.dcs.get(obj);
      return dc ? (dc->isMemoryDC ? OBJ_MEMDC : OBJ_DC) : 0;
    }
    case HandleType::Bitmap: return s.bitmaps.valid(obj) ? OBJ_BITMAP : 0;
    case HandleType::Pen: return s.pens.valid(obj) ? OBJ_PEN : 0;
    case HandleType::Brush: return s.brushes.valid(obj) ? OBJ_BRUSH : 0;
    case HandleType::Font: return s.fonts.valid(obj) ? OBJ_FONT : 0;
    case HandleType::Region: return s.regions.valid(obj) ? OBJ_REGION : 0;
    default: return 0;
  }
}

namespace {
template <class T>
int copyOut(const T& value, int cb, void* out) {
  if (!out) return static_cast<int>(sizeof(T));
  if (cb < static_cast<int>(sizeof(T))) return 0;
  std::memcpy(out, &value, sizeof(T));
  return static_cast<int>(sizeof(T));
}
}  // namespace

int GetObjectW(HGDIOBJ obj, int cb, void* out) {
  GdiState& s = state();
  switch (TypeOfHandle(obj)) {
    case HandleType::Bitmap: {
      BitmapObject* b = s.bitmaps.get(obj);
      if (!b) return 0;
      BITMAP bm;
      bm.bmWidth = b->surface.width;
      bm.bmHeight = b->surface.height;
      bm.bmBitsPixel = static_cast<WORD>(b->bitsPixel());
      bm.bmWidthBytes = b->packed ? b->packedStride : b->surface.stride;
      if (b->dibSection) bm.bmBits = b->packed ? static_cast<void*>(b->packed.get()) : b->surface.bits;
      if (b->dibSection && out && cb >= static_cast<int>(sizeof(DIBSECTION))) {
        DIBSECTION ds;
        ds.dsBm = bm;
        ds.dsBmih = b->header;
        return copyOut(ds, cb, out);
      }
      return copyOut(bm, cb, out);
    }
    case HandleType::Pen: {
      PenObject* p = s.pens.get(obj);
      if (!p) return 0;
      return copyOut(LOGPEN{p->style, POINT{p->width, 0}, p->color}, cb, out);
    }
    case HandleType::Brush: {
      BrushObject* b = s.brushes.get(obj);
      if (!b) return 0;
      return copyOut(LOGBRUSH{b->style, b->color, static_cast<uintptr_t>(b->hatch)}, cb, out);
    }
    case HandleType::Font: {
      const LOGFONTW* lf = LookupFont(obj);
      return lf ? copyOut(*lf, cb, out) : 0;
    }
    default: return 0;
  }
}

// Deleting an object that a DC still holds is refused rather than deferred: the caller gets
// FALSE and keeps the handle, which a leak test then reports, instead of a DC drawing with a
// dead object.
BOOL DeleteObject(HGDIOBJ obj) {
  GdiState& s = state();
  if (obj == 0 || s.isStock(obj)) return FALSE;
  switch (TypeOfHandle(obj)) {
    case HandleType::Bitmap: {
      BitmapObject* b = s.bitmaps.get(obj);
      if (!b || b->selectedInto) return FALSE;
      return s.bitmaps.remove(obj) ? TRUE : FALSE;
    }
    case HandleType::Pen: {
      PenObject* p = s.pens.get(obj);
      if (!p || p->selected) return FALSE;
      return s.pens.remove(obj) ? TRUE : FALSE;
    }
    case HandleType::Brush: {
      BrushObject* b = s.brushes.get(obj);
      if (!b || b->selected) return FALSE;
      return s.brushes.remove(obj) ? TRUE : FALSE;
    }
    case HandleType::Font: {
      FontObject* f = s.fonts.get(obj);
      if (!f || f->selected) return FALSE;
      return s.fonts.remove(obj) ? TRUE : FALSE;
    }
    case HandleType::Region: return s.regions.remove(obj) ? TRUE : FALSE;
    default: return FALSE;
  }
}

}  // namespace mx::platform
