// Device contexts: the table, object selection, saved states, attributes and clipping.
#include <algorithm>

#include "platform/GdiInternal.h"

namespace mx::platform {

using namespace gdi;

namespace {

void selectDefaults(DeviceContext& dc) {
  GdiState& s = state();
  if (!dc.pen) dc.pen = s.stock[BLACK_PEN];
  if (!dc.brush) dc.brush = s.stock[WHITE_BRUSH];
  if (!dc.font) dc.font = s.stock[SYSTEM_FONT];
}

// Selection counts let DeleteObject refuse objects that a DC still uses.
void retain(HGDIOBJ h, int delta) {
  GdiState& s = state();
  switch (TypeOfHandle(h)) {
    case HandleType::Pen: if (auto* p = s.pens.get(h)) p->selected += delta; break;
    case HandleType::Brush: if (auto* b = s.brushes.get(h)) b->selected += delta; break;
    case HandleType::Font: if (auto* f = s.fonts.get(h)) f->selected += delta; break;
    default: break;
  }
}

// Takes a bitmap out of the DC it is in: a 24-bit section gets its drawing written back.
void releaseBitmap(HDC hdc, HBITMAP hbm) {
  BitmapObject* b = bitmap(hbm);
  if (!b || hbm == state().stockBitmap) return;
  if (b->selectedInto == hdc) {
    push24(*b);
    b->selectedInto = 0;
  }
}

HBITMAP selectBitmap(HDC hdc, DeviceContext& dc, HBITMAP hbm) {
  GdiState& s = state();
  BitmapObject* b = bitmap(hbm);
  // Only memory DCs hold bitmaps, and a bitmap can be in one DC at a time (the stock 1 x 1
  // bitmap excepted, which every new memory DC starts with).
  if (!b || !dc.isMemoryDC) return 0;
  if (hbm != s.stockBitmap && b->selectedInto && b->selectedInto != hdc) return 0;
  HBITMAP old = dc.bitmap;
  if (old == hbm) return old;
  releaseBitmap(hdc, old);
  if (hbm != s.stockBitmap) {
    b->selectedInto = hdc;
    pull24(*b);
  }
  dc.bitmap = hbm;
  dc.surface = &b->surface;
  dc.visible.assign(1, RECT{0, 0, b->surface.width, b->surface.height});
  UpdateClip(dc);
  return old;
}

// The caller's clip region, or null for none.
const Region* selectedClip(const DeviceContext& dc) {
  if (!dc.selectedClip) return nullptr;
  RegionObject* r = region(dc.selectedClip);
  return r ? &r->region : nullptr;
}

// Replaces the caller's clip (nullopt removes it) and returns the resulting clip's kind.
int setClip(DeviceContext& dc, std::optional<Region> r) {
  GdiState& s = state();
  if (!r) {
    if (dc.selectedClip) s.regions.remove(dc.selectedClip);
    dc.selectedClip = 0;
  } else if (RegionObject* cur = region(dc.selectedClip)) {
    cur->region = std::move(*r);
  } else {
    auto obj = std::make_unique<RegionObject>();
    obj->region = std::move(*r);
    dc.selectedClip = s.regions.add(std::move(obj));
    if (!dc.selectedClip) return ERROR;
  }
  UpdateClip(dc);
  return static_cast<int>(Region::fromRects(dc.clip).kind());
}

// The clip the caller sees: its own region, or everything visible when it has none; in the
// DC's device units (before the origin that places a window DC on its surface).
Region currentClipOrVisible(const DeviceContext& dc) {
  if (const Region* r = selectedClip(dc)) return *r;
  Region v = Region::fromRects(dc.visible);
  v.offset(-dc.origin.x, -dc.origin.y);
  return v;
}

// Logical to the DC's device units (the origin excluded; see the clipping notes in Gdi.h).
RECT logicalToDcUnits(const DeviceContext& dc, int l, int t, int r, int b) {
  int dx = dc.viewportOrg.x - dc.windowOrg.x, dy = dc.viewportOrg.y - dc.windowOrg.y;
  return RECT{std::min(l, r) + dx, std::min(t, b) + dy, std::max(l, r) + dx, std::max(t, b) + dy};
}

}  // namespace

// ---- the table ------------------------------------------------------------------------------

DeviceContext* LookupDC(HDC hdc) { return state().dcs.get(hdc); }

HDC RegisterDC(std::unique_ptr<DeviceContext> dc) {
  if (!dc) return 0;
  selectDefaults(*dc);
  retain(dc->pen, +1);
  retain(dc->brush, +1);
  retain(dc->font, +1);
  UpdateClip(*dc);
  return state().dcs.add(std::move(dc));
}

bool FreeDC(HDC hdc) {
  GdiState& s = state();
  DeviceContext* dc = s.dcs.get(hdc);
  if (!dc) return false;
  releaseBitmap(hdc, dc->bitmap);
  retain(dc->pen, -1);
  retain(dc->brush, -1);
  retain(dc->font, -1);
  if (dc->selectedClip) s.regions.remove(dc->selectedClip);
  s.saved.erase(hdc);
  s.dcs.remove(hdc);
  return true;
}

Region gdi::clipRegion(const DeviceContext& dc) { return Region::fromRects(dc.clip); }

void UpdateClip(DeviceContext& dc) {
  dc.clip.clear();
  if (!dc.surface || dc.surface->empty()) return;
  Region r = Region::fromRects(dc.visible);
  r = r.intersected(RECT{0, 0, dc.surface->width, dc.surface->height});
  if (const Region* user = selectedClip(dc)) {
    Region u = *user;
    if (u.offset(dc.origin.x, dc.origin.y)) r = Region::combine(r, u, RegionOp::And);
    else r = Region();
  }
  dc.clip = r.rects();
}

// ---- memory DCs and saved states ----------------------------------------------------------

HDC CreateCompatibleDC(HDC) {
  GdiState& s = state();
  auto dc = std::make_unique<DeviceContext>();
  dc->isMemoryDC = true;
  BitmapObject* stock = bitmap(s.stockBitmap);
  dc->bitmap = s.stockBitmap;
  dc->surface = &stock->surface;
  dc->visible.assign(1, RECT{0, 0, 1, 1});
  return RegisterDC(std::move(dc));
}

BOOL DeleteDC(HDC hdc) { return FreeDC(hdc) ? TRUE : FALSE; }

int SaveDC(HDC hdc) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return 0;
  SavedDC sv;
  sv.bitmap = dc->bitmap;
  sv.pen = dc->pen;
  sv.brush = dc->brush;
  sv.font = dc->font;
  if (const Region* r = selectedClip(*dc)) sv.clip = *r;
  sv.textColor = dc->textColor;
  sv.bkColor = dc->bkColor;
  sv.dcBrushColor = dc->dcBrushColor;
  sv.dcPenColor = dc->dcPenColor;
  sv.bkMode = dc->bkMode;
  sv.stretchMode = dc->stretchMode;
  sv.polyFillMode = dc->polyFillMode;
  sv.textAlign = dc->textAlign;
  sv.windowOrg = dc->windowOrg;
  sv.viewportOrg = dc->viewportOrg;
  sv.currentPos = dc->currentPos;
  sv.brushOrg = dc->brushOrg;
  auto& stack = state().saved[hdc];
  stack.push_back(std::move(sv));
  return static_cast<int>(stack.size());
}

BOOL RestoreDC(HDC hdc, int level) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return FALSE;
  auto it = state().saved.find(hdc);
  if (it == state().saved.end() || it->second.empty()) return FALSE;
  auto& stack = it->second;
  int depth = static_cast<int>(stack.size());
  int target = level < 0 ? depth + level + 1 : level;  // the depth whose state comes back
  if (level == 0 || target < 1 || target > depth) return FALSE;
  SavedDC sv = std::move(stack[static_cast<size_t>(target - 1)]);
  stack.resize(static_cast<size_t>(target - 1));
  // Objects deleted since the save are stale handles now; those selections are skipped.
  if (sv.bitmap && bitmap(sv.bitmap)) SelectObject(hdc, sv.bitmap);
  if (sv.pen) SelectObject(hdc, sv.pen);
  if (sv.brush) SelectObject(hdc, sv.brush);
  if (sv.font) SelectObject(hdc, sv.font);
  setClip(*dc, std::move(sv.clip));
  dc->textColor = sv.textColor;
  dc->bkColor = sv.bkColor;
  dc->dcBrushColor = sv.dcBrushColor;
  dc->dcPenColor = sv.dcPenColor;
  dc->bkMode = sv.bkMode;
  dc->stretchMode = sv.stretchMode;
  dc->polyFillMode = sv.polyFillMode;
  dc->textAlign = sv.textAlign;
  dc->windowOrg = sv.windowOrg;
  dc->viewportOrg = sv.viewportOrg;
  dc->currentPos = sv.currentPos;
  dc->brushOrg = sv.brushOrg;
  return TRUE;
}

// ---- selection -------------------------------------------------------------------------------

HGDIOBJ SelectObject(HDC hdc, HGDIOBJ obj) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return 0;
  GdiState& s = state();
  HGDIOBJ* slot = nullptr;
  switch (TypeOfHandle(obj)) {
    case HandleType::Bitmap: return selectBitmap(hdc, *dc, obj);
    case HandleType::Region: {
      int kind = SelectClipRgn(hdc, obj);
      return kind == ERROR ? HGDI_ERROR : static_cast<HGDIOBJ>(kind);
    }
    case HandleType::Pen: if (s.pens.valid(obj)) slot = &dc->pen; break;
    case HandleType::Brush: if (s.brushes.valid(obj)) slot = &dc->brush; break;
    case HandleType::Font: if (s.fonts.valid(obj)) slot = &dc->font; break;
    default: break;
  }
  if (!slot) return 0;
  HGDIOBJ old = *slot;
  if (old != obj) {
    retain(old, -1);
    retain(obj, +1);
    *slot = obj;
  }
  return old;
}

HGDIOBJ GetCurrentObject(HDC hdc, UINT type) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return 0;
  switch (type) {
    case OBJ_PEN: return dc->pen;
    case OBJ_BRUSH: return dc->brush;
    case OBJ_FONT: return dc->font;
    case OBJ_BITMAP: return dc->bitmap;
    default: return 0;
  }
}

// ---- attributes -------------------------------------------------------------------------------

namespace {
template <class T, class V>
V exchange(HDC hdc, T DeviceContext::*field, V value, V failure) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return failure;
  V old = static_cast<V>(dc->*field);
  dc->*field = static_cast<T>(value);
  return old;
}
template <class T, class V>
V read(HDC hdc, T DeviceContext::*field, V failure) {
  DeviceContext* dc = LookupDC(hdc);
  return dc ? static_cast<V>(dc->*field) : failure;
}
constexpr COLORREF kInvalidColor = 0xFFFFFFFFu;
}  // namespace

COLORREF SetDCBrushColor(HDC hdc, COLORREF c) { return exchange(hdc, &DeviceContext::dcBrushColor, c & 0xFFFFFF, kInvalidColor); }
COLORREF SetDCPenColor(HDC hdc, COLORREF c) { return exchange(hdc, &DeviceContext::dcPenColor, c & 0xFFFFFF, kInvalidColor); }
COLORREF GetDCBrushColor(HDC hdc) { return read(hdc, &DeviceContext::dcBrushColor, kInvalidColor); }
COLORREF GetDCPenColor(HDC hdc) { return read(hdc, &DeviceContext::dcPenColor, kInvalidColor); }
COLORREF SetTextColor(HDC hdc, COLORREF c) { return exchange(hdc, &DeviceContext::textColor, c & 0xFFFFFF, kInvalidColor); }
COLORREF GetTextColor(HDC hdc) { return read(hdc, &DeviceContext::textColor, kInvalidColor); }
COLORREF SetBkColor(HDC hdc, COLORREF c) { return exchange(hdc, &DeviceContext::bkColor, c & 0xFFFFFF, kInvalidColor); }
COLORREF GetBkColor(HDC hdc) { return read(hdc, &DeviceContext::bkColor, kInvalidColor); }

int SetBkMode(HDC hdc, int mode) {
  if (mode != TRANSPARENT && mode != OPAQUE) return 0;
  return exchange(hdc, &DeviceContext::bkMode, mode, 0);
}
int GetBkMode(HDC hdc) { return read(hdc, &DeviceContext::bkMode, 0); }

int SetStretchBltMode(HDC hdc, int mode) {
  if (mode < BLACKONWHITE || mode > HALFTONE) return 0;
  return exchange(hdc, &DeviceContext::stretchMode, mode, 0);
}
int GetStretchBltMode(HDC hdc) { return read(hdc, &DeviceContext::stretchMode, 0); }

int SetPolyFillMode(HDC hdc, int mode) {
  if (mode != ALTERNATE && mode != WINDING) return 0;
  return exchange(hdc, &DeviceContext::polyFillMode, mode, 0);
}
int GetPolyFillMode(HDC hdc) { return read(hdc, &DeviceContext::polyFillMode, 0); }

UINT SetTextAlign(HDC hdc, UINT align) { return exchange(hdc, &DeviceContext::textAlign, align, 0xFFFFFFFFu); }
UINT GetTextAlign(HDC hdc) { return read(hdc, &DeviceContext::textAlign, 0xFFFFFFFFu); }

namespace {
BOOL setPoint(HDC hdc, POINT DeviceContext::*field, int x, int y, POINT* old) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return FALSE;
  if (old) *old = dc->*field;
  dc->*field = POINT{x, y};
  return TRUE;
}
BOOL getPoint(HDC hdc, POINT DeviceContext::*field, POINT* out) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !out) return FALSE;
  *out = dc->*field;
  return TRUE;
}
}  // namespace

BOOL SetBrushOrgEx(HDC hdc, int x, int y, POINT* old) { return setPoint(hdc, &DeviceContext::brushOrg, x, y, old); }
BOOL GetBrushOrgEx(HDC hdc, POINT* out) { return getPoint(hdc, &DeviceContext::brushOrg, out); }
BOOL SetViewportOrgEx(HDC hdc, int x, int y, POINT* old) { return setPoint(hdc, &DeviceContext::viewportOrg, x, y, old); }
BOOL GetViewportOrgEx(HDC hdc, POINT* out) { return getPoint(hdc, &DeviceContext::viewportOrg, out); }
BOOL SetWindowOrgEx(HDC hdc, int x, int y, POINT* old) { return setPoint(hdc, &DeviceContext::windowOrg, x, y, old); }
BOOL GetWindowOrgEx(HDC hdc, POINT* out) { return getPoint(hdc, &DeviceContext::windowOrg, out); }
BOOL GetCurrentPositionEx(HDC hdc, POINT* out) { return getPoint(hdc, &DeviceContext::currentPos, out); }

BOOL OffsetViewportOrgEx(HDC hdc, int dx, int dy, POINT* old) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return FALSE;
  if (old) *old = dc->viewportOrg;
  dc->viewportOrg.x += dx;
  dc->viewportOrg.y += dy;
  return TRUE;
}

BOOL GdiFlush() {
  // Drawing into 24-bit sections happens on a 32-bit working copy; bring every selected one's
  // packed rows up to date so that callers reading bmBits see what was drawn.
  state().bitmaps.for_each([](HANDLE, BitmapObject& b) {
    if (b.packed && b.selectedInto) push24(b);
  });
  return TRUE;
}

// ---- clipping ---------------------------------------------------------------------------------

int SelectClipRgn(HDC hdc, HRGN rgn) { return ExtSelectClipRgn(hdc, rgn, RGN_COPY); }

int ExtSelectClipRgn(HDC hdc, HRGN rgn, int mode) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || mode < RGN_AND || mode > RGN_COPY) return ERROR;
  if (!rgn) {
    // Only RGN_COPY may take a null region: it removes the caller's clip.
    if (mode != RGN_COPY) return ERROR;
    return setClip(*dc, std::nullopt);
  }
  RegionObject* r = region(rgn);
  if (!r) return ERROR;
  if (mode == RGN_COPY) return setClip(*dc, r->region);
  return setClip(*dc, Region::combine(currentClipOrVisible(*dc), r->region, static_cast<RegionOp>(mode)));
}

int IntersectClipRect(HDC hdc, int left, int top, int right, int bottom) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return ERROR;
  Region rect(logicalToDcUnits(*dc, left, top, right, bottom));
  return setClip(*dc, Region::combine(currentClipOrVisible(*dc), rect, RegionOp::And));
}

int ExcludeClipRect(HDC hdc, int left, int top, int right, int bottom) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return ERROR;
  Region rect(logicalToDcUnits(*dc, left, top, right, bottom));
  return setClip(*dc, Region::combine(currentClipOrVisible(*dc), rect, RegionOp::Diff));
}

int OffsetClipRgn(HDC hdc, int dx, int dy) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return ERROR;
  Region r = currentClipOrVisible(*dc);
  if (!r.offset(dx, dy)) return ERROR;
  return setClip(*dc, std::move(r));
}

int GetClipBox(HDC hdc, RECT* out) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !out) return ERROR;
  Region r = clipRegion(*dc);
  *out = RECT{};
  if (!r.empty()) {
    POINT o = dc->toDevice(POINT{0, 0});  // device position of logical (0, 0)
    const RECT& e = r.extents();
    *out = RECT{e.left - o.x, e.top - o.y, e.right - o.x, e.bottom - o.y};
  }
  return static_cast<int>(r.kind());
}

int GetClipRgn(HDC hdc, HRGN rgn) {
  DeviceContext* dc = LookupDC(hdc);
  RegionObject* target = region(rgn);
  if (!dc || !target) return -1;
  const Region* r = selectedClip(*dc);
  if (!r) return 0;
  target->region = *r;
  return 1;
}

BOOL PtVisible(HDC hdc, int x, int y) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc) return FALSE;
  POINT p = dc->toDevice(POINT{x, y});
  return clipRegion(*dc).contains(p.x, p.y) ? TRUE : FALSE;
}

BOOL RectVisible(HDC hdc, const RECT* r) {
  DeviceContext* dc = LookupDC(hdc);
  if (!dc || !r) return FALSE;
  POINT a = dc->toDevice(POINT{r->left, r->top});
  POINT b = dc->toDevice(POINT{r->right, r->bottom});
  RECT d{std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
  return clipRegion(*dc).intersects(d) ? TRUE : FALSE;
}

}  // namespace mx::platform
