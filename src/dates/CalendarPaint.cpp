// CalendarControl: painting the surface from its label and mark records.
#include "controls/ControlSupport.h"
#include "dates/CalendarControl.h"
#include "frame/Drawing.h"
#include "platform/Gdi.h"
#include "platform/Text.h"

namespace mx::dates {

using controls::detail::Step;

namespace {

// Label groups, the index of a font in the font arrays.
constexpr int32_t kGroupColumns = 0;
constexpr int32_t kGroupDays = 1;
constexpr int32_t kGroupHeading = 2;
constexpr int32_t kGroupToday = 3;
constexpr int32_t kGroupClock = 4;

// Cells and weekday headings centre their text on their box and let a longer text run past it
// rather than cut it; the other labels size themselves to their text.
constexpr uint32_t kCentredFlags = platform::DT_CENTER | platform::DT_SINGLELINE | platform::DT_NOPREFIX |
                                   platform::DT_NOCLIP;
constexpr uint32_t kAutoSizeFlags = platform::DT_LEFT | platform::DT_SINGLELINE | platform::DT_NOPREFIX |
                                    platform::DT_NOCLIP;

}  // namespace

void CalendarControl::RebuildFont(int32_t group) {
  auto& handle = m_fontHandles[static_cast<size_t>(group)];
  if (handle) platform::DeleteObject(handle);
  handle = 0;
  const auto& font = m_labelFonts[static_cast<size_t>(group)];
  if (font) {
    const platform::LOGFONTW lf = font->ToLogFont();
    handle = platform::CreateFontIndirectW(&lf);
  }
  PaintSurface();
}

void CalendarControl::ReleaseFonts() {
  for (auto& handle : m_fontHandles) {
    if (handle) platform::DeleteObject(handle);
    handle = 0;
  }
}

void CalendarControl::SizeAutoLabels() {
  const platform::HDC dc = UserControl::hDC();
  auto measure = [&](CalendarLabel& label, int32_t group) {
    const platform::HFONT font = m_fontHandles[static_cast<size_t>(group)];
    const platform::HGDIOBJ old = font ? platform::SelectObject(dc, font) : 0;
    platform::RECT r{label.rect.left, label.rect.top, label.rect.left, label.rect.top};
    if (!label.caption.empty()) {
      frame::DrawTextAPI(dc, label.caption, r, kAutoSizeFlags | platform::DT_CALCRECT);
      label.rect.right = r.right;
      label.rect.bottom = r.bottom;
    } else {
      label.rect.right = label.rect.left;
    }
    if (old) platform::SelectObject(dc, old);
  };
  measure(m_heading, kGroupHeading);
  measure(m_today, kGroupToday);
  if (m_geometry.hasClock) measure(m_timer, kGroupClock);
}

void CalendarControl::DrawLabel(platform::HDC dc, const CalendarLabel& label, int32_t group, uint32_t flags) {
  if (!label.visible || label.caption.empty()) return;
  const platform::HFONT font = m_fontHandles[static_cast<size_t>(group)];
  const platform::HGDIOBJ old = font ? platform::SelectObject(dc, font) : 0;
  platform::RECT r = label.rect;
  frame::DrawTextColor(dc, label.caption, r, flags, label.foreColor);
  if (old) platform::SelectObject(dc, old);
}

void CalendarControl::PaintSurface() {
  // While a fill is under way the surface waits and is painted once at the end.
  if (m_redrawOff > 0) {
    m_paintPending = true;
    return;
  }
  m_paintPending = false;
  if (!UserControl::hWnd() || IsTerminated()) return;
  Step([&] { AutoRedraw(true); });
  Step([&] { Cls(); });
  Step([&] {
    const platform::HDC dc = UserControl::hDC();
    SizeAutoLabels();
    // The marks lie behind the labels.
    if (m_todayMark.visible) frame::FrameRectColor(dc, m_todayMark.rect, m_todayMarkColor);
    if (m_selectedMark.visible) frame::FillRectColor(dc, m_selectedMark.rect, m_selectedBackColor);
    platform::SetBkMode(dc, platform::TRANSPARENT);
    for (const CalendarLabel& c : m_columns) DrawLabel(dc, c, kGroupColumns, kCentredFlags);
    for (const CalendarLabel& c : m_cells) DrawLabel(dc, c, kGroupDays, kCentredFlags);
    DrawLabel(dc, m_heading, kGroupHeading, kAutoSizeFlags);
    DrawLabel(dc, m_today, kGroupToday, kAutoSizeFlags);
    if (m_geometry.hasClock) DrawLabel(dc, m_timer, kGroupClock, kAutoSizeFlags);
    if (m_geometry.hasBorder) {
      frame::FrameRectColor(dc, platform::RECT{0, 0, m_geometry.width, m_geometry.height}, m_selectedBackColor);
    }
  });
  Step([&] { AutoRedraw(false); });
}

}  // namespace mx::dates
