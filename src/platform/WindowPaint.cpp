// Painting: update regions, WM_PAINT, BeginPaint/EndPaint, and the window DCs that draw on a
// top-level window's backing surface within the window's visible part.
#include <algorithm>
#include <memory>

#include "platform/DeviceContext.h"
#include "platform/Gdi.h"
#include "platform/Desktop.h"
#include "platform/MessageQueue.h"
#include "platform/SysColors.h"
#include "platform/Text.h"
#include "platform/Window.h"
#include "platform/WindowInternal.h"

namespace mx::platform {

using namespace win;

namespace {

// Surfaces beyond this many pixels are refused rather than allocated.
constexpr int64_t kMaxSurfacePixels = int64_t{1} << 26;

RECT OffsetBy(RECT r, POINT d) {
  return {r.left + d.x, r.top + d.y, r.right + d.x, r.bottom + d.y};
}

// The shape a window covers on its top-level surface: its rectangle within its region.
Region WindowShape(const Wnd& w) {
  POINT so = SurfaceOrigin(w);
  Region shape(RECT{so.x, so.y, so.x + w.rect.width(), so.y + w.rect.height()});
  if (const Region* r = WindowRegion(w)) {
    Region reg = *r;
    reg.offset(so.x, so.y);
    shape = Region::combine(shape, reg, RegionOp::And);
  }
  return shape;
}

// What a DC on the window may touch, in surface coordinates: its rectangle (window or client),
// within its region, within every ancestor's client area and region, less higher siblings
// where WS_CLIPSIBLINGS asks, less children where WS_CLIPCHILDREN asks.
Region ComputeVisible(const Wnd& w, DWORD flags) {
  if (!VisibleChain(w)) return {};
  POINT so = SurfaceOrigin(w);
  RECT base = (flags & DCX_WINDOW) ? RECT{so.x, so.y, so.x + w.rect.width(), so.y + w.rect.height()}
                                   : OffsetBy(w.client, so);
  Region vis(base);
  vis = Region::combine(vis, WindowShape(w), RegionOp::And);

  const Wnd* cur = &w;
  bool first = true;
  while (const Wnd* p = Get(cur->parent)) {
    POINT pso = SurfaceOrigin(*p);
    vis = vis.intersected(OffsetBy(p->client, pso));
    if (const Region* r = WindowRegion(*p)) {
      Region reg = *r;
      reg.offset(pso.x, pso.y);
      vis = Region::combine(vis, reg, RegionOp::And);
    }
    if ((cur->style & WS_CLIPSIBLINGS) || (first && (flags & DCX_CLIPSIBLINGS))) {
      for (HWND s : p->children) {
        if (s == cur->hwnd) break;
        const Wnd* sw = Get(s);
        if (sw && (sw->style & WS_VISIBLE)) vis = Region::combine(vis, WindowShape(*sw), RegionOp::Diff);
      }
    }
    first = false;
    cur = p;
  }
  const Wnd& top = *cur;
  vis = vis.intersected(RECT{0, 0, top.surface.width, top.surface.height});

  if ((w.style & WS_CLIPCHILDREN) || (flags & DCX_CLIPCHILDREN)) {
    for (HWND c : w.children) {
      const Wnd* cw = Get(c);
      if (cw && (cw->style & WS_VISIBLE)) vis = Region::combine(vis, WindowShape(*cw), RegionOp::Diff);
    }
  }
  return vis;
}

Surface& ScreenSurface() {
  UserState& st = St();
  size_t need = static_cast<size_t>(st.screenWidth) * static_cast<size_t>(st.screenHeight);
  if (st.screenPixels.size() != need) {
    st.screenPixels.assign(need, 0xFF000000u);
    st.screen = {st.screenWidth, st.screenHeight, reinterpret_cast<uint8_t*>(st.screenPixels.data()),
                 st.screenWidth * 4, false};
  }
  return st.screen;
}

// Fills a DC's surface, origin and visible area from its record.
void Bind(DeviceContext& dc, const DcRecord& rec) {
  if (!rec.hwnd) {
    Surface& s = ScreenSurface();
    dc.surface = &s;
    dc.origin = {0, 0};
    dc.visible = {RECT{0, 0, s.width, s.height}};
    UpdateClip(dc);
    return;
  }
  Wnd* w = Get(rec.hwnd);
  if (!w) {
    dc.visible.clear();
    UpdateClip(dc);
    return;
  }
  Wnd& top = TopLevelOf(*w);
  POINT so = SurfaceOrigin(*w);
  dc.surface = &top.surface;
  dc.origin = (rec.flags & DCX_WINDOW) ? so : POINT{so.x + w->client.left, so.y + w->client.top};
  Region vis = ComputeVisible(*w, rec.flags);
  if (rec.limit) vis = Region::combine(vis, *rec.limit, rec.exclude ? RegionOp::Diff : RegionOp::And);
  dc.visible = vis.rects();
  UpdateClip(dc);
}

HDC MakeWindowDC(HWND hwnd, DWORD flags, std::optional<Region> limit, bool exclude) {
  if (hwnd == GetDesktopWindow()) hwnd = 0;
  Wnd* w = hwnd ? Get(hwnd) : nullptr;
  if (hwnd && !w) return 0;
  UserState& st = St();
  DcRecord rec;
  rec.hwnd = hwnd;
  rec.flags = flags;
  rec.limit = std::move(limit);
  rec.exclude = exclude;

  // A CS_OWNDC window keeps one DC, attributes and all, for its whole life.
  if (w && w->cls && (w->cls->style & CS_OWNDC) && !(flags & DCX_WINDOW)) {
    if (w->ownDC && LookupDC(w->ownDC)) {
      auto it = st.dcs.find(w->ownDC);
      if (it != st.dcs.end()) {
        it->second.limit = rec.limit;
        it->second.exclude = exclude;
        Bind(*LookupDC(w->ownDC), it->second);
        return w->ownDC;
      }
    }
    rec.own = true;
  }
  auto dc = std::make_unique<DeviceContext>();
  dc->hwnd = hwnd;
  // A fresh window DC starts with the classic defaults.
  dc->pen = static_cast<HPEN>(GetStockObject(BLACK_PEN));
  dc->brush = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
  dc->font = static_cast<HFONT>(GetStockObject(SYSTEM_FONT));
  DeviceContext* raw = dc.get();
  HDC hdc = RegisterDC(std::move(dc));
  if (!hdc) return 0;
  raw = LookupDC(hdc);
  if (raw) Bind(*raw, rec);
  if (rec.own) w->ownDC = hdc;
  st.dcs[hdc] = std::move(rec);
  return hdc;
}

bool HasNonClient(const Wnd& w) {
  return w.client.left != 0 || w.client.top != 0 || w.client.right != w.rect.width() ||
         w.client.bottom != w.rect.height();
}

// Adds (or removes) a client-coordinate region to a window's update region, and walks into the
// children the rules include.
void Invalidate(HWND hwnd, const Region& rgn, UINT flags) {
  Wnd* w = Get(hwnd);
  if (!w || !VisibleChain(*w)) return;
  RECT clientBox{0, 0, w->client.width(), w->client.height()};
  Region clipped = rgn.intersected(clientBox);
  if (flags & RDW_INVALIDATE) {
    if (!clipped.empty()) {
      w->update = Region::combine(w->update, clipped, RegionOp::Or);
      if (flags & RDW_ERASE) w->erase = true;
    }
    if ((flags & RDW_FRAME) && HasNonClient(*w)) w->frameDirty = true;
    if (flags & RDW_INTERNALPAINT) w->internalPaint = true;
  } else if (flags & RDW_VALIDATE) {
    w->update = Region::combine(w->update, clipped, RegionOp::Diff);
    if (w->update.empty()) w->erase = false;
    if (flags & RDW_NOERASE) w->erase = false;
    if (flags & RDW_NOFRAME) w->frameDirty = false;
    if (flags & RDW_NOINTERNALPAINT) w->internalPaint = false;
  }
  const bool children = (flags & RDW_ALLCHILDREN) || (!(flags & RDW_NOCHILDREN) && !(w->style & WS_CLIPCHILDREN));
  if (!children) return;
  std::vector<HWND> kids = w->children;
  for (HWND c : kids) {
    Wnd* cw = Get(c);
    if (!cw || !(cw->style & WS_VISIBLE)) continue;
    // From the parent's client coordinates to the child's.
    Region sub = rgn.intersected(cw->rect);
    if (sub.empty()) continue;
    sub.offset(-cw->rect.left - cw->client.left, -cw->rect.top - cw->client.top);
    UINT childFlags = flags | RDW_FRAME;  // the child's frame lies inside the parent's area
    if (flags & RDW_VALIDATE) childFlags = flags;
    Invalidate(c, sub, childFlags);
  }
}

void UpdateTree(HWND hwnd, bool children, bool eraseOnly) {
  Wnd* w = Get(hwnd);
  if (!w || !VisibleChain(*w)) return;
  if (eraseOnly) {
    if (w->erase && !w->update.empty()) {
      HDC hdc = MakeWindowDC(hwnd, 0, [&] {
        Region r = w->update;
        POINT so = SurfaceOrigin(*w);
        r.offset(so.x + w->client.left, so.y + w->client.top);
        return std::optional<Region>(r);
      }(), false);
      w->erase = false;
      SendMessageW(hwnd, WM_ERASEBKGND, hdc, 0);
      ReleaseDC(hwnd, hdc);
    }
  } else if (!w->update.empty() || w->internalPaint || w->frameDirty) {
    SendPaint(hwnd);
  }
  if (!children) return;
  if (!(w = Get(hwnd))) return;
  std::vector<HWND> kids = w->children;
  for (HWND c : kids) UpdateTree(c, true, eraseOnly);
}

bool FindPaintIn(const std::vector<HWND>& list, HWND* out) {
  for (HWND h : list) {
    Wnd* w = Get(h);
    if (!w || !(w->style & WS_VISIBLE)) continue;
    if (!w->update.empty() || w->internalPaint || w->frameDirty) {
      *out = h;
      return true;
    }
    if (FindPaintIn(w->children, out)) return true;
  }
  return false;
}

Region RegionFromHandle(HRGN rgn) {
  const Region* r = LookupRegion(rgn);
  return r ? *r : Region();
}

}  // namespace

namespace win {

void ResizeSurface(Wnd& w) {
  if (w.parent) return;
  int width = std::max(0, static_cast<int>(w.rect.width()));
  int height = std::max(0, static_cast<int>(w.rect.height()));
  if (static_cast<int64_t>(width) * height > kMaxSurfacePixels) width = height = 0;
  if (width == w.surface.width && height == w.surface.height && (!w.pixels.empty() || width * height == 0)) return;
  std::vector<uint32_t> next(static_cast<size_t>(width) * static_cast<size_t>(height), 0);
  // Keep what overlaps, as the classic system keeps the bits of a resized window.
  int cw = std::min(width, w.surface.width), ch = std::min(height, w.surface.height);
  for (int y = 0; y < ch && !w.pixels.empty(); ++y)
    std::copy_n(w.pixels.begin() + static_cast<long>(y) * w.surface.width, cw,
                next.begin() + static_cast<long>(y) * width);
  w.pixels = std::move(next);
  w.surface = {width, height, w.pixels.empty() ? nullptr : reinterpret_cast<uint8_t*>(w.pixels.data()),
               width * 4, false};
}

void RefreshWindowDCs() {
  for (auto& [hdc, rec] : St().dcs)
    if (DeviceContext* dc = LookupDC(hdc)) Bind(*dc, rec);
}

void FreeWindowDCs(HWND hwnd) {
  auto& dcs = St().dcs;
  for (auto it = dcs.begin(); it != dcs.end();) {
    if (it->second.hwnd == hwnd) {
      FreeDC(it->first);
      it = dcs.erase(it);
    } else {
      ++it;
    }
  }
  if (Wnd* w = Get(hwnd)) w->ownDC = 0;
}

void InvalidateAfterMove(Wnd& w, const RECT& oldRectInParent, bool wasVisible, bool contentChanged) {
  HWND hwnd = w.hwnd;
  if (w.parent) {
    if (wasVisible) RedrawWindow(w.parent, &oldRectInParent, 0, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    // The parent's walk above already covers the window where old and new places overlap;
    // the new place is repainted whole so that what siblings covered comes back.
    if (Wnd* cur = Get(hwnd); cur && VisibleChain(*cur))
      RedrawWindow(hwnd, nullptr, 0, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
    return;
  }
  if (contentChanged && VisibleChain(w))
    RedrawWindow(hwnd, nullptr, 0, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

bool FindPaintWindow(HWND filter, HWND* out) {
  if (filter) {
    Wnd* w = Get(filter);
    if (w && VisibleChain(*w) && (!w->update.empty() || w->internalPaint || w->frameDirty)) {
      *out = filter;
      return true;
    }
    return false;
  }
  return FindPaintIn(St().topLevels, out);
}

void ClearUpdate(Wnd& w) {
  w.update = Region();
  w.erase = false;
  w.internalPaint = false;
  w.frameDirty = false;
}

void SendPaint(HWND hwnd) {
  Wnd* w = Get(hwnd);
  if (!w) return;
  uint64_t serial = w->paintSerial;
  SendMessageW(hwnd, WM_PAINT, 0, 0);
  if ((w = Get(hwnd)) && w->paintSerial == serial) ClearUpdate(*w);
}

}  // namespace win

// ---- invalidation ------------------------------------------------------------------------------

BOOL RedrawWindow(HWND hwnd, const RECT* rect, HRGN rgn, UINT flags) {
  if (!hwnd || hwnd == GetDesktopWindow()) {
    std::vector<HWND> tops = St().topLevels;
    for (HWND t : tops) RedrawWindow(t, nullptr, 0, flags | RDW_ALLCHILDREN);
    return TRUE;
  }
  Wnd* w = Get(hwnd);
  if (!w) return FALSE;
  if (flags & (RDW_INVALIDATE | RDW_VALIDATE)) {
    Region area = rect ? Region(*rect) : rgn ? RegionFromHandle(rgn) : Region(RECT{0, 0, w->client.width(), w->client.height()});
    // A whole-window validation also drops what is pending outside any given rectangle.
    Invalidate(hwnd, area, flags);
  }
  if (flags & RDW_UPDATENOW) UpdateTree(hwnd, (flags & RDW_ALLCHILDREN) != 0, false);
  else if (flags & RDW_ERASENOW) UpdateTree(hwnd, (flags & RDW_ALLCHILDREN) != 0, true);
  return TRUE;
}

BOOL InvalidateRect(HWND hwnd, const RECT* rect, BOOL erase) {
  return RedrawWindow(hwnd, rect, 0, RDW_INVALIDATE | (erase ? RDW_ERASE : 0));
}

BOOL InvalidateRgn(HWND hwnd, HRGN rgn, BOOL erase) {
  if (rgn && !LookupRegion(rgn)) return FALSE;
  return RedrawWindow(hwnd, nullptr, rgn, RDW_INVALIDATE | (erase ? RDW_ERASE : 0));
}

BOOL ValidateRect(HWND hwnd, const RECT* rect) {
  if (Wnd* w = Get(hwnd)) {
    ++w->paintSerial;
    if (!rect) w->internalPaint = false;
  }
  return RedrawWindow(hwnd, rect, 0, RDW_VALIDATE | RDW_NOCHILDREN);
}

BOOL ValidateRgn(HWND hwnd, HRGN rgn) {
  if (Wnd* w = Get(hwnd)) ++w->paintSerial;
  return RedrawWindow(hwnd, nullptr, rgn, RDW_VALIDATE | RDW_NOCHILDREN);
}

BOOL UpdateWindow(HWND hwnd) {
  if (!Get(hwnd)) return FALSE;
  return RedrawWindow(hwnd, nullptr, 0, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

BOOL GetUpdateRect(HWND hwnd, RECT* out, BOOL erase) {
  Wnd* w = Get(hwnd);
  if (!w) return FALSE;
  RECT box = w->update.empty() ? RECT{} : w->update.extents();
  if (out) *out = box;
  if (erase && w->erase && !w->update.empty()) UpdateTree(hwnd, false, true);
  return box.empty() ? FALSE : TRUE;
}

int GetUpdateRgn(HWND hwnd, HRGN rgn, BOOL erase) {
  Wnd* w = Get(hwnd);
  if (!w || !LookupRegion(rgn)) return ERROR;
  HRGN copy = CreateRegionFrom(w->update);
  int kind = CombineRgn(rgn, copy, 0, RGN_COPY);
  DeleteObject(copy);
  if (erase && w->erase && !w->update.empty()) UpdateTree(hwnd, false, true);
  return kind;
}

HDC BeginPaint(HWND hwnd, PAINTSTRUCT* ps) {
  Wnd* w = Get(hwnd);
  if (!w || !ps) return 0;
  *ps = PAINTSTRUCT{};
  if (w->frameDirty) {
    w->frameDirty = false;
    SendMessageW(hwnd, WM_NCPAINT, 1, 0);
    if (!(w = Get(hwnd))) return 0;
  }
  Region update = w->update;
  const bool erase = w->erase;
  ++w->paintSerial;
  w->update = Region();
  w->erase = false;
  w->internalPaint = false;

  POINT so = SurfaceOrigin(*w);
  Region limit = update;
  limit.offset(so.x + w->client.left, so.y + w->client.top);
  HDC hdc = MakeWindowDC(hwnd, 0, std::move(limit), false);
  if (!hdc) return 0;
  ps->hdc = hdc;
  ps->rcPaint = update.empty() ? RECT{} : update.extents();
  if (erase) ps->fErase = SendMessageW(hwnd, WM_ERASEBKGND, hdc, 0) ? FALSE : TRUE;
  return hdc;
}

BOOL EndPaint(HWND hwnd, const PAINTSTRUCT* ps) {
  if (!ps) return FALSE;
  ReleaseDC(hwnd, ps->hdc);
  return TRUE;
}

// ---- DCs ---------------------------------------------------------------------------------------

HDC GetDC(HWND hwnd) { return MakeWindowDC(hwnd, 0, std::nullopt, false); }

HDC GetWindowDC(HWND hwnd) { return MakeWindowDC(hwnd, DCX_WINDOW, std::nullopt, false); }

HDC GetDCEx(HWND hwnd, HRGN clip, DWORD flags) {
  std::optional<Region> limit;
  bool exclude = false;
  if (clip && (flags & (DCX_INTERSECTRGN | DCX_EXCLUDERGN))) {
    Region r = RegionFromHandle(clip);
    // The region is in the DC's own coordinates; the limit lives on the surface.
    if (Wnd* w = Get(hwnd)) {
      POINT so = SurfaceOrigin(*w);
      if (!(flags & DCX_WINDOW)) {
        so.x += w->client.left;
        so.y += w->client.top;
      }
      r.offset(so.x, so.y);
    }
    limit = std::move(r);
    exclude = (flags & DCX_EXCLUDERGN) != 0;
    // The system owns a region given to GetDCEx, as the classic call does.
    DeleteObject(clip);
  }
  return MakeWindowDC(hwnd, flags & (DCX_WINDOW | DCX_CLIPCHILDREN | DCX_CLIPSIBLINGS), std::move(limit), exclude);
}

int ReleaseDC(HWND hwnd, HDC hdc) {
  auto& dcs = St().dcs;
  auto it = dcs.find(hdc);
  if (it == dcs.end()) return 0;
  if (it->second.own) {
    it->second.limit.reset();
    return 1;
  }
  FreeDC(hdc);
  dcs.erase(it);
  return 1;
}

HWND WindowFromDC(HDC hdc) {
  auto& dcs = St().dcs;
  auto it = dcs.find(hdc);
  return it == dcs.end() ? 0 : it->second.hwnd;
}

}  // namespace mx::platform

// ---- the non-client frame ----------------------------------------------------------------------

namespace mx::platform::win {

namespace {

uint32_t Pixel(COLORREF c) {
  // Like every raster fill, the frame leaves the alpha byte at 0.
  return (static_cast<uint32_t>(GetRValue(c)) << 16) | (static_cast<uint32_t>(GetGValue(c)) << 8) | GetBValue(c);
}

void FillOn(Surface& s, const Region& area, COLORREF color) {
  const uint32_t px = Pixel(color);
  for (const RECT& r : area.rects())
    for (int y = r.top; y < r.bottom; ++y) std::fill(s.row(y) + r.left, s.row(y) + r.right, px);
}

}  // namespace

void PaintFrame(Wnd& w) {
  if (!HasNonClient(w)) return;
  Wnd& top = TopLevelOf(w);
  if (top.surface.empty()) return;
  const POINT so = SurfaceOrigin(w);
  Region vis = ComputeVisible(w, DCX_WINDOW);
  vis = Region::combine(vis, Region(OffsetBy(w.client, so)), RegionOp::Diff);
  if (vis.empty()) return;
  auto fill = [&](RECT r, int sysColor) { FillOn(top.surface, vis.intersected(OffsetBy(r, so)), GetSysColor(sysColor)); };

  const bool active = St().active == top.hwnd;
  const int width = w.rect.width(), height = w.rect.height();
  const int b = FrameBorder(w.style, w.exStyle);
  const int edge = (w.exStyle & WS_EX_CLIENTEDGE) ? GetSystemMetrics(SM_CXEDGE) : 0;
  const int frame = b - edge - ((w.exStyle & WS_EX_STATICEDGE) ? 1 : 0);

  if (frame > 0) {
    fill({0, 0, width, height}, active ? COLOR_ACTIVEBORDER : COLOR_INACTIVEBORDER);
    // A one-pixel outline around the whole frame.
    fill({0, 0, width, 1}, COLOR_WINDOWFRAME);
    fill({0, height - 1, width, height}, COLOR_WINDOWFRAME);
    fill({0, 0, 1, height}, COLOR_WINDOWFRAME);
    fill({width - 1, 0, width, height}, COLOR_WINDOWFRAME);
  }
  if ((w.style & WS_CAPTION) == WS_CAPTION) {
    const int ch = GetSystemMetrics((w.exStyle & WS_EX_TOOLWINDOW) ? SM_CYSMCAPTION : SM_CYCAPTION);
    RECT cap{frame, frame, width - frame, frame + ch};
    fill(cap, active ? COLOR_ACTIVECAPTION : COLOR_INACTIVECAPTION);
    int textRight = cap.right - 4;
    if (w.style & WS_SYSMENU) {
      // Caption buttons: close, then maximise and minimise, caption-high squares from the right.
      int buttons = (w.style & (WS_MAXIMIZEBOX | WS_MINIMIZEBOX)) ? 3 : 1;
      for (int i = 0; i < buttons; ++i) {
        RECT btn{cap.right - (i + 1) * ch + 2, cap.top + 2, cap.right - i * ch - 2, cap.bottom - 2};
        fill(btn, COLOR_BTNSHADOW);
        fill({btn.left + 1, btn.top + 1, btn.right - 1, btn.bottom - 1}, COLOR_BTNFACE);
      }
      textRight = cap.right - buttons * ch - 4;
    }
    if (!w.text.empty() && textRight > cap.left + 4) {
      HDC hdc = GetWindowDC(w.hwnd);
      if (hdc) {
        HGDIOBJ oldFont = SelectObject(hdc, GetStockObject(DEFAULT_GUI_FONT));
        SetBkMode(hdc, TRANSPARENT);
        SetTextColor(hdc, GetSysColor(active ? COLOR_CAPTIONTEXT : COLOR_INACTIVECAPTIONTEXT));
        RECT tr{cap.left + 4, cap.top, textRight, cap.bottom};
        DrawTextW(hdc, w.text, &tr, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
        SelectObject(hdc, oldFont);
        ReleaseDC(w.hwnd, hdc);
      }
    }
  }
  if (edge > 0) {
    const RECT c = w.client;
    RECT outer{c.left - edge, c.top - edge, c.right + edge, c.bottom + edge};
    fill({outer.left, outer.top, outer.right, outer.top + 1}, COLOR_BTNSHADOW);
    fill({outer.left, outer.top, outer.left + 1, outer.bottom}, COLOR_BTNSHADOW);
    fill({outer.left, outer.bottom - 1, outer.right, outer.bottom}, COLOR_BTNHIGHLIGHT);
    fill({outer.right - 1, outer.top, outer.right, outer.bottom}, COLOR_BTNHIGHLIGHT);
    RECT inner{outer.left + 1, outer.top + 1, outer.right - 1, outer.bottom - 1};
    fill({inner.left, inner.top, inner.right - 1, inner.top + 1}, COLOR_3DDKSHADOW);
    fill({inner.left, inner.top, inner.left + 1, inner.bottom - 1}, COLOR_3DDKSHADOW);
    fill({inner.left, inner.bottom - 1, inner.right, inner.bottom}, COLOR_3DLIGHT);
    fill({inner.right - 1, inner.top, inner.right, inner.bottom}, COLOR_3DLIGHT);
  }
  if (w.style & (WS_VSCROLL | WS_HSCROLL))
    PaintScrollBars(w, [&](const RECT& r, COLORREF c) { FillOn(top.surface, vis.intersected(OffsetBy(r, so)), c); });
}

}  // namespace mx::platform::win
