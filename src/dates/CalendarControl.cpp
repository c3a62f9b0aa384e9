// CalendarControl: properties, lifecycle, persistence, the month fill and the mouse.
#include "dates/CalendarControl.h"

#include <cmath>

#include "controls/AboutBox.h"
#include "controls/ControlSupport.h"
#include "controls/USButton.h"
#include "controls/USImageList.h"
#include "image/API32bppDIB.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImage.h"
#include "imagelist/APIListImages.h"
#include "frame/Themes.h"
#include "host/Conversion.h"
#include "host/DateTime.h"
#include "host/Format.h"
#include "host/Screen.h"
#include "host/Strings.h"
#include "platform/MessageQueue.h"
#include "platform/Timer.h"
#include "platform/Window.h"

namespace mx::dates {

using controls::detail::Step;
using controls::detail::BagReader;
using host::Variant;

namespace {

// The clock's timer id on the calendar's window.
constexpr platform::UINT_PTR kClockTimerId = 1;

String Digits(int32_t value, int32_t width) {
  String s = host::Format(static_cast<double>(value));
  while (static_cast<int32_t>(s.size()) < width) s.insert(s.begin(), u'0');
  return s;
}

platform::RECT Box(int32_t left, int32_t top, int32_t width, int32_t height) {
  return platform::RECT{left, top, left + width, top + height};
}

// Centres a mark of the given size on a cell; the filled mark sits half a pixel further right
// and down, which on whole pixels is the same place for the sizes used here.
platform::RECT CentreOn(const platform::RECT& cell, int32_t width, int32_t height, double nudge) {
  const double cellWidth = cell.right - cell.left;
  const double cellHeight = cell.bottom - cell.top;
  const auto left = static_cast<int32_t>(std::floor(cell.left + cellWidth / 2 - width / 2.0 + nudge));
  const auto top = static_cast<int32_t>(std::floor(cell.top + cellHeight / 2 - height / 2.0 + nudge));
  return Box(left, top, width, height);
}

}  // namespace

bool GetDateOrder() {
  try {
    const double first = host::DateAdd(u"m", 1, host::CDate(u"1/1/2000"));
    const double second = host::CDate(u"2/1/2000");
    return first != second;
  } catch (...) {
    return true;
  }
}

CalendarControl::CalendarControl(const CalendarGeometry& geometry)
    : m_geometry(geometry), m_fontTodaySize(geometry.fontTodaySize) {
  // The current date is today from the moment the object exists, before any property is read.
  Step([&] { m_currentDate = host::Date(); });
  LayoutLabels();
}

CalendarControl::~CalendarControl() { ReleaseFonts(); }

void CalendarControl::LayoutLabels() {
  const CalendarGeometry& g = m_geometry;
  for (int32_t i = 0; i < kCellCount; ++i) {
    m_cells[static_cast<size_t>(i)].rect =
        Box(g.cellLeft + g.columnPitch * (i % 7), g.cellTop + g.rowPitch * (i / 7), g.cellWidth, g.cellHeight);
  }
  for (int32_t i = 0; i < 7; ++i) {
    m_columns[static_cast<size_t>(i)].rect = Box(g.columnLeft + g.columnPitch * i, g.columnTop, g.columnWidth,
                                                 g.columnHeight);
  }
  m_heading.rect = Box(g.headingLeft, g.headingTop, g.headingWidth, g.headingHeight);
  m_heading.foreColor = 0xFFFFFF;
  m_today.rect = Box(g.todayLeft, g.todayTop, g.todayWidth, g.todayHeight);
  m_today.foreColor = 0xF1BF6D;
  m_timer.rect = Box(g.timerLeft, g.timerTop, g.timerWidth, g.timerHeight);
  m_timer.foreColor = 0xFFFFFF;
  m_timer.visible = g.hasClock;
  m_selectedMark.rect = Box(0, 0, g.selectedWidth, g.selectedHeight);
  m_todayMark.rect = Box(0, 0, g.outlineWidth, g.outlineHeight);
}

// ---- Current date -----------------------------------------------------------------------------

double CalendarControl::CurrentDate() const {
  // Dates before day 0 keep their day in the whole part too, so cutting toward zero drops the
  // time of day for every date.
  return std::trunc(m_currentDate);
}

void CalendarControl::CurrentDate(double value) {
  m_currentDate = value;
  PropertyChanged(u"CurrentDate");
  DrawCalendarMonth();
}

bool CalendarControl::BuildDate(int32_t day, int32_t month, int32_t year, double& out) const {
  const String d = host::Format(static_cast<double>(day));
  const String text = GetDateOrder() ? d + u"/" + Digits(month, 2) + u"/" + Digits(year, 4)
                                     : Digits(month, 2) + u"/" + d + u"/" + Digits(year, 4);
  double value = 0;
  if (!host::TryParseDate(text, value)) return false;
  out = value;
  return true;
}

// ---- Setters ----------------------------------------------------------------------------------

void CalendarControl::Theme(int32_t value) {
  m_theme = value;
  PropertyChanged(u"Theme");
  ApplyTheme();
}

void CalendarControl::ApplyTheme() {
  if (m_theme >= frame::Windows_Theme) {
    ++m_redrawOff;
    UserControl::BackColor(frame::GetThemeColor(m_theme, frame::ThemeGradientColor1));
    m_daysColor = 0xFFFFFF;
    m_daySelectedBorderColor = 0xCB9022;
    m_todayMarkColor = 0xCB9022;
    m_lastNextMonthDayColor = 0xC8A35F;
    m_heading.foreColor = 0xFFFFFF;
    m_selectedBackColor = 0xCB9022;
    m_selectedForeColor = 0xFFFFFF;
    m_timer.foreColor = 0xFFFFFF;
    m_today.foreColor = 0xF1BF6D;
    // The cells keep the colours they were given until the next fill; the chosen one is
    // coloured again here.
    if (m_selectedCell >= 0) m_cells[static_cast<size_t>(m_selectedCell)].foreColor = m_selectedForeColor;
    --m_redrawOff;
    PaintSurface();
  }
  ApplyButtonState();
}

void CalendarControl::BackColor(OLE_COLOR value) {
  UserControl::BackColor(value);
  PropertyChanged(u"BackColor");
  PaintSurface();
}

void CalendarControl::DaysColor(OLE_COLOR value) {
  m_daysColor = value;
  PropertyChanged(u"DaysColor");
}

void CalendarControl::LastNextMonthDayColor(OLE_COLOR value) {
  m_lastNextMonthDayColor = value;
  PropertyChanged(u"LastNextMonthDayColor");
}

void CalendarControl::ColumnsColor(OLE_COLOR value) {
  m_columnsColor = value;
  PropertyChanged(u"ColumnsColor");
  for (CalendarLabel& c : m_columns) c.foreColor = value;
  PaintSurface();
}

void CalendarControl::MonthYearForeColor(OLE_COLOR value) {
  m_heading.foreColor = value;
  PropertyChanged(u"MonthYearForeColor");
  PaintSurface();
}

void CalendarControl::TodayColor(OLE_COLOR value) {
  m_today.foreColor = value;
  PropertyChanged(u"TodayColor");
  PaintSurface();
}

void CalendarControl::SetTimerColor(OLE_COLOR value) {
  m_timer.foreColor = value;
  PropertyChanged(u"TimerColor");
  PaintSurface();
}

void CalendarControl::SelectedBackColor(OLE_COLOR value) {
  m_selectedBackColor = value;
  PropertyChanged(u"SelectedBackColor");
  // The fill and today's outline share this colour; DaySelectedBorderColor sets only the outline.
  m_todayMarkColor = value;
  PositionSelectionMark();
}

void CalendarControl::SelectedForeColor(OLE_COLOR value) {
  m_selectedForeColor = value;
  PropertyChanged(u"SelectedForeColor");
}

void CalendarControl::DaySelectedBorderColor(OLE_COLOR value) {
  m_daySelectedBorderColor = value;
  PropertyChanged(u"DaySelectedBorderColor");
  m_todayMarkColor = value;
  PaintSurface();
}

namespace {
// A copy of a font with another size, so that the caller's object is left as it was.
std::shared_ptr<host::StdFont> Sized(const std::shared_ptr<host::StdFont>& font, float size) {
  if (!font) return nullptr;
  auto copy = font->Clone();
  copy->Size(static_cast<double>(size));
  return copy;
}
}  // namespace

void CalendarControl::SetGroupFont(int32_t group, std::shared_ptr<host::StdFont> value, StringView key) {
  m_labelFonts[static_cast<size_t>(group)] = value ? value->Clone() : nullptr;
  PropertyChanged(key);
  RebuildFont(group);
}

void CalendarControl::FontColumns(std::shared_ptr<host::StdFont> value) { SetGroupFont(0, std::move(value), u"FontColumns"); }
void CalendarControl::FontDays(std::shared_ptr<host::StdFont> value) { SetGroupFont(1, std::move(value), u"FontDays"); }
void CalendarControl::FontMonthYear(std::shared_ptr<host::StdFont> value) {
  SetGroupFont(2, std::move(value), u"FontMonthYear");
}
void CalendarControl::FontToday(std::shared_ptr<host::StdFont> value) { SetGroupFont(3, std::move(value), u"FontToday"); }
void CalendarControl::SetFontTimer(std::shared_ptr<host::StdFont> value) {
  SetGroupFont(4, std::move(value), u"FontTimer");
}

void CalendarControl::FontColumnsSize(float value) {
  m_fontColumnsSize = value;
  PropertyChanged(u"FontColumnsSize");
  m_labelFonts[0] = Sized(m_labelFonts[0], value);
  RebuildFont(0);
}
void CalendarControl::FontDaysSize(float value) {
  m_fontDaysSize = value;
  PropertyChanged(u"FontDaysSize");
  m_labelFonts[1] = Sized(m_labelFonts[1], value);
  RebuildFont(1);
}
void CalendarControl::FontMonthYearSize(float value) {
  m_fontMonthYearSize = value;
  PropertyChanged(u"FontMonthYearSize");
  m_labelFonts[2] = Sized(m_labelFonts[2], value);
  RebuildFont(2);
}
void CalendarControl::FontTodaySize(float value) {
  m_fontTodaySize = value;
  PropertyChanged(u"FontTodaySize");
  m_labelFonts[3] = Sized(m_labelFonts[3], value);
  RebuildFont(3);
}
void CalendarControl::SetFontTimerSize(float value) {
  m_fontTimerSize = value;
  PropertyChanged(u"FontTimerSize");
  m_labelFonts[4] = Sized(m_labelFonts[4], value);
  RebuildFont(4);
}

std::shared_ptr<host::StdFont> CalendarControl::LabelFont(int32_t group) const {
  if (group < 0 || group > 4) return nullptr;
  return m_labelFonts[static_cast<size_t>(group)];
}

void CalendarControl::ShowPreviousMonthButton(bool value) {
  m_showPreviousMonthButton = value;
  PropertyChanged(u"ShowPreviousMonthButton");
  ApplyButtonState();
}

void CalendarControl::ShowNextMonthButton(bool value) {
  m_showNextMonthButton = value;
  PropertyChanged(u"ShowNextMonthButton");
  ApplyButtonState();
}

void CalendarControl::ShowLastMonthDays(bool value) {
  m_showLastMonthDays = value;
  PropertyChanged(u"ShowLastMonthDays");
  DrawCalendarMonth();
}

void CalendarControl::ShowNextMonthDays(bool value) {
  m_showNextMonthDays = value;
  PropertyChanged(u"ShowNextMonthDays");
  DrawCalendarMonth();
}

void CalendarControl::ShowShortDays(bool value) {
  m_showShortDays = value;
  PropertyChanged(u"ShowShortDays");
  DrawCalendarMonth();
}

void CalendarControl::WeekStartsWith(int32_t value) {
  m_weekStartsWith = value;
  PropertyChanged(u"WeekStartsWith");
  DrawCalendarMonth();
}

void CalendarControl::Enabled(bool value) {
  UserControl::Enabled(value);
  PropertyChanged(u"Enabled");
}

// ---- Buttons ----------------------------------------------------------------------------------

void CalendarControl::CreateButtons() {
  if (m_btnPrevious || !UserControl::hWnd()) return;
  const CalendarGeometry& g = m_geometry;
  const host::Screen& screen = host::GetScreen();
  const float tx = screen.TwipsPerPixelX();
  const float ty = screen.TwipsPerPixelY();
  bool userMode = false;
  Step([&] { userMode = Ambient().UserMode(); });
  auto make = [&](int32_t left, const char16_t* caption) {
    auto b = std::make_shared<controls::USButton>();
    b->Move(static_cast<float>(left) * tx, static_cast<float>(g.buttonTop) * ty,
            static_cast<float>(g.buttonWidth) * tx, static_cast<float>(g.buttonHeight) * ty);
    // Hidden until the button state shows it: a button whose Show property is False from the
    // start never appears.
    b->Control::Visible(false);
    b->CreateControlWindow(UserControl::hWnd());
    b->LoadNew(userMode);
    Step([&] { b->Caption(caption); });
    b->ShowControl();
    return b;
  };
  m_btnPrevious = make(g.previousLeft, u"<");
  m_btnNext = make(g.nextLeft, u">");
  m_btnPrevious->Click.connect([this] { OnPreviousClick(); });
  m_btnNext->Click.connect([this] { OnNextClick(); });
}

void CalendarControl::ApplyButtonState() {
  // A button whose property is False is left as it is: it is not hidden here.
  auto apply = [&](const std::shared_ptr<controls::USButton>& b, bool show) {
    if (!b || !show) return;
    Step([&] { b->Theme(m_theme); });
    Step([&] { b->Control::Visible(true); });
    Step([&] { b->Refresh(); });
  };
  apply(m_btnPrevious, m_showPreviousMonthButton);
  apply(m_btnNext, m_showNextMonthButton);
}

void CalendarControl::OnPreviousClick() {
  Step([&] { m_currentDate = host::DateAdd(u"m", -1, m_currentDate); });
  Step([&] { DrawCalendarMonth(); });
  Step([&] { LastButtonClicked(host::DateValue{m_currentDate}); });
}

void CalendarControl::OnNextClick() {
  Step([&] { m_currentDate = host::DateAdd(u"m", 1, m_currentDate); });
  Step([&] { DrawCalendarMonth(); });
  Step([&] { NextButtonClicked(host::DateValue{m_currentDate}); });
}

namespace {

// The picture at an image's index (1 first) of the first list of an image list control, as PNG
// bytes the button can hold; null when there is no such image.
std::shared_ptr<host::StdPicture> ListPicture(const std::shared_ptr<controls::USImageList>& control,
                                              int32_t iconIndex) {
  if (!control || !control->ImageLists() || control->ImageLists()->Count() < 1) return nullptr;
  auto list = control->ImageLists()->Item(Variant(int32_t{1}));
  if (!list || !list->Images()) return nullptr;
  auto images = list->Images();
  auto item = images->Item(Variant(iconIndex));
  if (!item) return nullptr;
  image::API32bppDIB cell;
  std::vector<uint8_t> png;
  if (!images->CopyCell(item->Index() - 1, cell) || !cell.SaveToStream_PNG(png)) return nullptr;
  return host::StdPicture::FromBytes(host::ByteArray(png.begin(), png.end()));
}

}  // namespace

void CalendarControl::SetButtonTheme(int32_t SelectedButton,
                                     const std::shared_ptr<controls::USImageList>& USImageListControl,
                                     int32_t ButtonCropBorders, OLE_COLOR ButtonBorderColor,
                                     OLE_COLOR ButtonBorderColorDown, OLE_COLOR ButtonBorderColorOver,
                                     int32_t ButtonGradientColors, OLE_COLOR ButtonGradientColor1,
                                     OLE_COLOR ButtonGradientColor2, OLE_COLOR ButtonGradientColor3,
                                     OLE_COLOR ButtonGradientColor4, OLE_COLOR ButtonGradientColorDown1,
                                     OLE_COLOR ButtonGradientColorDown2, OLE_COLOR ButtonGradientColorDown3,
                                     OLE_COLOR ButtonGradientColorDown4, OLE_COLOR ButtonGradientColorOver1,
                                     OLE_COLOR ButtonGradientColorOver2, OLE_COLOR ButtonGradientColorOver3,
                                     OLE_COLOR ButtonGradientColorOver4, int32_t ButtonIconIndex) {
  std::vector<controls::USButton*> targets;
  switch (SelectedButton) {
    case BackButton: targets = {m_btnPrevious.get()}; break;
    case ForwardButton: targets = {m_btnNext.get()}; break;
    case AllButtons: targets = {m_btnPrevious.get(), m_btnNext.get()}; break;
    default: return;
  }
  const OLE_COLOR normal[4] = {ButtonGradientColor1, ButtonGradientColor2, ButtonGradientColor3, ButtonGradientColor4};
  const OLE_COLOR down[4] = {ButtonGradientColorDown1, ButtonGradientColorDown2, ButtonGradientColorDown3,
                             ButtonGradientColorDown4};
  const OLE_COLOR over[4] = {ButtonGradientColorOver1, ButtonGradientColorOver2, ButtonGradientColorOver3,
                             ButtonGradientColorOver4};
  std::shared_ptr<host::StdPicture> picture;
  Step([&] { picture = ListPicture(USImageListControl, ButtonIconIndex); });
  for (controls::USButton* b : targets) {
    if (!b) continue;
    // The button paints once, with everything set.
    Step([&] { b->Redraw(false); });
    Step([&] { b->CropBorders(ButtonCropBorders); });
    Step([&] { b->BorderColor(ButtonBorderColor); });
    Step([&] { b->BorderColorDown(ButtonBorderColorDown); });
    Step([&] { b->BorderColorOver(ButtonBorderColorOver); });
    Step([&] { b->GradientColors(ButtonGradientColors); });
    for (int32_t i = 0; i < 4; ++i) {
      Step([&] { b->GradientColor(i + 1, normal[i]); });
      Step([&] { b->GradientColorDown(i + 1, down[i]); });
      Step([&] { b->GradientColorOver(i + 1, over[i]); });
    }
    if (picture) {
      // A picture takes the place of the arrow caption.
      Step([&] { b->Caption(u""); });
      Step([&] { b->Picture(picture); });
    }
    Step([&] { b->Redraw(true); });
    Step([&] { b->Refresh(); });
  }
}

// ---- The month --------------------------------------------------------------------------------

void CalendarControl::DrawCalendarMonth() {
  ++m_redrawOff;
  Step([&] {
    m_selectedCell = -1;
    const int32_t month = host::Month(m_currentDate);
    const int32_t year = host::Year(m_currentDate);
    m_heading.caption = host::MonthName(month) + u" de " + Digits(year, 4);

    if (m_weekStartsWith == 0) m_weekStartsWith = host::vbSunday;
    for (int32_t i = 0; i < 7; ++i) {
      const int32_t weekday = (i + m_weekStartsWith - 1) % 7 + 1;
      const String name = host::WeekdayName(weekday, true, host::vbSunday);
      CalendarLabel& c = m_columns[static_cast<size_t>(i)];
      c.caption = m_showShortDays ? host::UCase(host::Left(name, 1)) : host::LCase(name);
      c.foreColor = m_columnsColor;
    }

    double first = 0;
    if (!BuildDate(1, month, year, first)) return;
    const int32_t weekday = host::Weekday(first, host::vbSunday);
    int32_t lead = (weekday + 7 - m_weekStartsWith) % 7;
    // The grid always starts with some of the month before: a month that begins on the first
    // day of the week gets a whole row of it.
    if (lead == 0) lead = 7;

    double d = first - lead;
    m_firstDayCell = 0;
    m_todayMark.visible = false;
    const String shownMonth = host::FormatDate(m_currentDate, u"yy/mm");
    const String today = host::FormatDate(host::Date(), u"mm/dd");
    for (int32_t i = 0; i < kCellCount; ++i) {
      CalendarLabel& cell = m_cells[static_cast<size_t>(i)];
      cell.caption = host::FormatDate(d, u"d");
      cell.bold = false;
      if (host::FormatDate(d, u"yy/mm") == shownMonth) {
        if (m_firstDayCell == 0) m_firstDayCell = i;
        cell.foreColor = m_daysColor;
        cell.tag = u"0";
        cell.visible = true;
      } else if ((i < 10 && m_showLastMonthDays) || (i >= 29 && m_showNextMonthDays)) {
        cell.foreColor = m_lastNextMonthDayColor;
        cell.tag = u"-1";
        cell.visible = true;
      } else {
        cell.tag = u"-1";
        cell.visible = false;
      }
      // Day and month only: the outline also marks today's date in other years, and may land
      // on a neighbouring month's cell.
      if (host::FormatDate(d, u"mm/dd") == today) {
        m_todayMark.rect = CentreOn(cell.rect, m_geometry.outlineWidth, m_geometry.outlineHeight, 0);
        m_todayMark.visible = true;
      }
      d += 1;
    }
    m_today.caption = host::FormatDate(host::Date(), u"Long Date");
    PositionSelectionMark();
  });
  --m_redrawOff;
  PaintSurface();
}

void CalendarControl::PositionSelectionMark() {
  // The mark is hidden while it moves and shown at the end, so a move is seen as one step.
  ++m_redrawOff;
  Step([&] {
    m_selectedMark.visible = false;
    if (m_selectedCell >= 0 && m_selectedCell < kCellCount) {
      m_cells[static_cast<size_t>(m_selectedCell)].foreColor = m_daysColor;
    }
    const int32_t cell = m_firstDayCell + host::Day(m_currentDate) - 1;
    if (cell < 0 || cell >= kCellCount) return;
    m_selectedCell = cell;
    CalendarLabel& label = m_cells[static_cast<size_t>(cell)];
    m_selectedMark.rect = CentreOn(label.rect, m_geometry.selectedWidth, m_geometry.selectedHeight, 0.5);
    label.foreColor = m_selectedForeColor;
    m_selectedMark.visible = true;
  });
  --m_redrawOff;
  PaintSurface();
}

// ---- Clicks -----------------------------------------------------------------------------------

void CalendarControl::OnDayClick(int32_t index, bool doubleClick) {
  if (index < 0 || index >= kCellCount) return;
  bool sameMonth = false;
  bool monthChanged = false;
  Step([&] {
    m_selectedMark.visible = true;
    const CalendarLabel& cell = m_cells[static_cast<size_t>(index)];
    const int32_t day = static_cast<int32_t>(host::Val(cell.caption));
    if (cell.tag != u"-1") {
      double date = 0;
      if (BuildDate(day, host::Month(m_currentDate), host::Year(m_currentDate), date)) m_currentDate = date;
      sameMonth = true;
    } else {
      // Cells 0 to 7 always count as the month before, the rest as the month after.
      const double other = host::DateAdd(u"m", index > 7 ? 1 : -1, m_currentDate);
      double date = 0;
      if (BuildDate(day, host::Month(other), host::Year(other), date)) m_currentDate = date;
      DrawCalendarMonth();
      monthChanged = true;
    }
  });
  Step([&] { PositionSelectionMark(); });
  if (monthChanged) Step([&] { MonthChanged(host::DateValue{m_currentDate}); });
  if (!doubleClick) {
    Step([&] {
      m_lastClickedDay = host::Day(m_currentDate);
      // After a month change this is the new month's cell at the same index.
      if (m_cells[static_cast<size_t>(index)].tag != u"-1") DateClicked(host::DateValue{m_currentDate});
    });
  } else if (sameMonth) {
    Step([&] {
      if (host::Day(m_currentDate) == m_lastClickedDay) DateDblClicked(host::DateValue{m_currentDate});
    });
  }
}

void CalendarControl::OnColumnClick(int32_t index, bool doubleClick) {
  int32_t weekday = (index + m_weekStartsWith) % 7;
  if (weekday == 0) weekday = 7;
  const auto w = static_cast<int16_t>(weekday);
  if (doubleClick) Step([&] { WeekHeadingDblClicked(w); });
  else Step([&] { WeekHeadingClicked(w); });
}

CalendarControl::Hit CalendarControl::HitTest(int32_t x, int32_t y) const {
  const auto inside = [&](const CalendarLabel& l) {
    return l.visible && x >= l.rect.left && x < l.rect.right && y >= l.rect.top && y < l.rect.bottom;
  };
  for (int32_t i = 0; i < kCellCount; ++i) {
    if (inside(m_cells[static_cast<size_t>(i)])) return {Part::Day, i};
  }
  for (int32_t i = 0; i < 7; ++i) {
    if (inside(m_columns[static_cast<size_t>(i)])) return {Part::Column, i};
  }
  if (inside(m_heading)) return {Part::Heading, 0};
  if (inside(m_today)) return {Part::Today, 0};
  return {};
}

CalendarControl::Hit CalendarControl::HitAtMessagePos() const {
  const platform::DWORD pos = platform::GetMessagePos();
  platform::POINT pt{static_cast<int16_t>(pos & 0xFFFF), static_cast<int16_t>((pos >> 16) & 0xFFFF)};
  platform::ScreenToClient(UserControl::hWnd(), &pt);
  return HitTest(pt.x, pt.y);
}

void CalendarControl::UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  m_downHit = HitTest(static_cast<int32_t>(X), static_cast<int32_t>(Y));
  m_upHit = {};
  if (m_downHit.part == Part::Today && Button == host::vbLeftButton) {
    Step([&] { m_currentDate = host::Date(); });
    Step([&] { DrawCalendarMonth(); });
    Step([&] { TodayClicked(host::DateValue{m_currentDate}); });
  } else if (m_downHit.part == Part::Heading) {
    if (Button == host::vbLeftButton) {
      Step([&] {
        m_selectedMark.visible = true;
        PositionSelectionMark();
      });
    }
    Step([&] { MonthHeadingClicked(host::DateValue{m_currentDate}); });
  }
}

void CalendarControl::UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  m_upHit = HitTest(static_cast<int32_t>(X), static_cast<int32_t>(Y));
}

void CalendarControl::UserControl_Click() {
  // A label's click needs the press and the release on the same label.
  const Hit hit = m_downHit;
  if (hit.part == Part::None || !(hit == m_upHit)) return;
  switch (hit.part) {
    case Part::Day: OnDayClick(hit.index, false); break;
    case Part::Column: OnColumnClick(hit.index, false); break;
    case Part::Heading: Step([&] { MonthHeadingClicked(host::DateValue{m_currentDate}); }); break;
    default: break;
  }
}

void CalendarControl::UserControl_DblClick() {
  // The second press of a double click comes here instead of MouseDown.
  const Hit hit = HitAtMessagePos();
  m_downHit = hit;
  m_upHit = {};
  switch (hit.part) {
    case Part::Day: OnDayClick(hit.index, true); break;
    case Part::Column: OnColumnClick(hit.index, true); break;
    case Part::Heading: Step([&] { MonthHeadingDblClicked(host::DateValue{m_currentDate}); }); break;
    default: break;
  }
}

// ---- Clock ------------------------------------------------------------------------------------

void CalendarControl::StartClock() {
  if (!m_geometry.hasClock || !m_runMode || !UserControl::hWnd()) return;
  const platform::UINT_PTR id = platform::SetTimer(UserControl::hWnd(), kClockTimerId, kClockInterval,
                                                   [this](platform::HWND, platform::UINT, platform::UINT_PTR,
                                                          platform::DWORD) { TickClock(); });
  m_clockRunning = id != 0;
}

void CalendarControl::StopClock() {
  if (m_clockRunning && UserControl::hWnd()) platform::KillTimer(UserControl::hWnd(), kClockTimerId);
  m_clockRunning = false;
}

void CalendarControl::TickClock() {
  Step([&] { m_timer.caption = host::FormatDate(host::Now(), u"hh:mm:ss AM/PM"); });
  Step([&] { PaintSurface(); });
}

// ---- Methods and lifecycle --------------------------------------------------------------------

void CalendarControl::About() { controls::ShowAboutBox(); }

void CalendarControl::Refresh() {
  DrawCalendarMonth();
  UserControl::Refresh();
}

void CalendarControl::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"DateClicked", DateClicked, u"DateDblClicked", DateDblClicked, u"LastButtonClicked",
                       LastButtonClicked, u"MonthChanged", MonthChanged, u"MonthHeadingClicked", MonthHeadingClicked,
                       u"MonthHeadingDblClicked", MonthHeadingDblClicked, u"NextButtonClicked", NextButtonClicked,
                       u"TodayClicked", TodayClicked, u"WeekHeadingClicked", WeekHeadingClicked,
                       u"WeekHeadingDblClicked", WeekHeadingDblClicked, u"WeekNumberClicked", WeekNumberClicked,
                       u"WeekNumberDblClicked", WeekNumberDblClicked);
}

void CalendarControl::UserControl_Initialize() { Step([&] { CreateButtons(); }); }

void CalendarControl::UserControl_InitProperties() {
  ++m_redrawOff;
  m_theme = frame::Windows_Theme;
  Step([&] { UserControl::BackColor(0x9A572B); });
  m_daysColor = 0xFFFFFF;
  m_columnsColor = 0xFFFFFF;
  for (CalendarLabel& c : m_columns) c.foreColor = m_columnsColor;
  m_heading.foreColor = 0xFFFFFF;
  m_today.foreColor = 0xF1BF6D;
  m_timer.foreColor = 0xFFFFFF;
  m_lastNextMonthDayColor = 0xC8A35F;
  m_selectedBackColor = 0xCB9022;
  m_selectedForeColor = 0xFFFFFF;
  m_daySelectedBorderColor = 0xCB9022;
  m_todayMarkColor = 0xCB9022;
  m_fontColumnsSize = 6;
  m_fontDaysSize = 8;
  m_fontMonthYearSize = 10;
  m_fontTodaySize = m_geometry.fontTodaySize;
  m_fontTimerSize = 20;
  // Every group starts from the container's font at the group's size.
  const float sizes[5] = {m_fontColumnsSize, m_fontDaysSize, m_fontMonthYearSize, m_fontTodaySize, m_fontTimerSize};
  for (int32_t g = 0; g < 5; ++g) {
    if (g == 4 && !m_geometry.hasClock) continue;
    Step([&] { m_labelFonts[static_cast<size_t>(g)] = Sized(Ambient().Font(), sizes[g]); });
  }
  for (int32_t g = 0; g < 5; ++g) RebuildFont(g);
  m_showPreviousMonthButton = m_showNextMonthButton = true;
  m_showLastMonthDays = m_showNextMonthDays = m_showShortDays = true;
  Step([&] { UserControl::Enabled(true); });
  m_weekStartsWith = 0;
  --m_redrawOff;
  Step([&] { ApplyButtonState(); });
  Step([&] { DrawCalendarMonth(); });
}

void CalendarControl::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  ++m_redrawOff;
  Step([&] { m_runMode = Ambient().UserMode(); });
  const BagReader saved(PropBag);
  auto readFont = [&](const char16_t* key) {
    std::shared_ptr<host::StdFont> ambient;
    Step([&] { ambient = Ambient().Font(); });
    auto font = std::dynamic_pointer_cast<host::StdFont>(saved.Read(key, Variant(ambient)).Obj());
    return font ? font : ambient;
  };

  m_theme = saved.Long(u"Theme", frame::Windows_Theme);
  Step([&] { UserControl::BackColor(saved.Long(u"BackColor", 0x9A572B)); });
  m_daysColor = saved.Long(u"DaysColor", 0xFFFFFF);
  m_columnsColor = saved.Long(u"ColumnsColor", 0xFFFFFF);
  for (CalendarLabel& c : m_columns) c.foreColor = m_columnsColor;
  m_heading.foreColor = saved.Long(u"MonthYearForeColor", 0xFFFFFF);
  m_today.foreColor = saved.Long(u"TodayColor", 0xF1BF6D);
  if (m_geometry.hasClock) m_timer.foreColor = saved.Long(u"TimerColor", 0xFFFFFF);
  m_lastNextMonthDayColor = saved.Long(u"LastNextMonthDayColor", 0xC8A35F);
  m_selectedBackColor = saved.Long(u"SelectedBackColor", 0xCB9022);
  m_selectedForeColor = saved.Long(u"SelectedForeColor", 0xFFFFFF);
  // Saved under its own key but read from the fill's: both marks come back in the fill colour.
  m_daySelectedBorderColor = saved.Long(u"SelectedBackColor", 0xCB9022);
  m_todayMarkColor = m_daySelectedBorderColor;

  m_fontColumnsSize = saved.Single(u"FontColumnsSize", 6);
  m_fontDaysSize = saved.Single(u"FontDaysSize", 8);
  m_fontMonthYearSize = saved.Single(u"FontMonthYearSize", 10);
  m_fontTodaySize = saved.Single(u"FontTodaySize", m_geometry.fontTodaySize);
  const char16_t* fontKeys[4] = {u"FontColumns", u"FontDays", u"FontMonthYear", u"FontToday"};
  const float sizes[4] = {m_fontColumnsSize, m_fontDaysSize, m_fontMonthYearSize, m_fontTodaySize};
  for (size_t g = 0; g < 4; ++g) {
    Step([&] { m_labelFonts[g] = readFont(fontKeys[g]); });
    Step([&] { m_labelFonts[g] = Sized(m_labelFonts[g], sizes[g]); });
  }
  if (m_geometry.hasClock) {
    // FontTimerSize is saved but not read: the clock keeps the size of its saved font.
    Step([&] { m_labelFonts[4] = readFont(u"FontTimer"); });
  }
  for (int32_t g = 0; g < 5; ++g) RebuildFont(g);

  m_showPreviousMonthButton = saved.Bool(u"ShowPreviousMonthButton", true);
  m_showNextMonthButton = saved.Bool(u"ShowNextMonthButton", true);
  m_showLastMonthDays = saved.Bool(u"ShowLastMonthDays", true);
  m_showNextMonthDays = saved.Bool(u"ShowNextMonthDays", true);
  m_showShortDays = saved.Bool(u"ShowShortDays", true);
  const bool enabled = saved.Bool(u"Enabled", true);
  m_weekStartsWith = saved.Long(u"WeekStartsWith", 0);

  Step([&] { UserControl::Enabled(enabled); });
  --m_redrawOff;
  Step([&] { ApplyButtonState(); });
  Step([&] { StartClock(); });
  Step([&] { DrawCalendarMonth(); });
}

void CalendarControl::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  auto write = [&](const char16_t* key, const Variant& value, const Variant& def) {
    Step([&] { PropBag.WriteProperty(key, value, def); });
  };
  auto writeFont = [&](const char16_t* key, const std::shared_ptr<host::StdFont>& font) {
    Step([&] { write(key, font ? Variant(font) : Variant::Nothing(), Variant(Ambient().Font())); });
  };
  write(u"Theme", Variant(m_theme), Variant(int32_t{frame::Windows_Theme}));
  write(u"BackColor", Variant(UserControl::BackColor()), Variant(OLE_COLOR{0x9A572B}));
  write(u"DaysColor", Variant(m_daysColor), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"ColumnsColor", Variant(m_columnsColor), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"MonthYearForeColor", Variant(m_heading.foreColor), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"TodayColor", Variant(m_today.foreColor), Variant(OLE_COLOR{0xF1BF6D}));
  if (m_geometry.hasClock) write(u"TimerColor", Variant(m_timer.foreColor), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"LastNextMonthDayColor", Variant(m_lastNextMonthDayColor), Variant(OLE_COLOR{0xC8A35F}));
  write(u"SelectedBackColor", Variant(m_selectedBackColor), Variant(OLE_COLOR{0xCB9022}));
  write(u"SelectedForeColor", Variant(m_selectedForeColor), Variant(OLE_COLOR{0xFFFFFF}));
  write(u"DaySelectedBorderColor", Variant(m_daySelectedBorderColor), Variant(OLE_COLOR{0xCB9022}));
  writeFont(u"FontColumns", m_labelFonts[0]);
  writeFont(u"FontDays", m_labelFonts[1]);
  writeFont(u"FontMonthYear", m_labelFonts[2]);
  writeFont(u"FontToday", m_labelFonts[3]);
  write(u"FontColumnsSize", Variant(m_fontColumnsSize), Variant(6.0F));
  write(u"FontDaysSize", Variant(m_fontDaysSize), Variant(8.0F));
  write(u"FontMonthYearSize", Variant(m_fontMonthYearSize), Variant(10.0F));
  write(u"FontTodaySize", Variant(m_fontTodaySize), Variant(m_geometry.fontTodaySize));
  if (m_geometry.hasClock) {
    writeFont(u"FontTimer", m_labelFonts[4]);
    write(u"FontTimerSize", Variant(m_fontTimerSize), Variant(20.0F));
  }
  write(u"ShowPreviousMonthButton", Variant(m_showPreviousMonthButton), Variant(true));
  write(u"ShowNextMonthButton", Variant(m_showNextMonthButton), Variant(true));
  write(u"ShowLastMonthDays", Variant(m_showLastMonthDays), Variant(true));
  write(u"ShowNextMonthDays", Variant(m_showNextMonthDays), Variant(true));
  write(u"ShowShortDays", Variant(m_showShortDays), Variant(true));
  write(u"Enabled", Variant(UserControl::Enabled()), Variant(true));
  write(u"WeekStartsWith", Variant(m_weekStartsWith), Variant(int32_t{0}));
}

void CalendarControl::UserControl_Resize() {
  platform::RECT rc{};
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  const host::Screen& screen = host::GetScreen();
  // The surface has one size; a host that sizes it otherwise is put back.
  if (rc.right != m_geometry.width) {
    Step([&] { Control::Width(static_cast<float>(m_geometry.width) * screen.TwipsPerPixelX()); });
  }
  if (rc.bottom != m_geometry.height) {
    Step([&] { Control::Height(static_cast<float>(m_geometry.height) * screen.TwipsPerPixelY()); });
  }
  Step([&] { Refresh(); });
}

void CalendarControl::UserControl_Terminate() {
  Step([&] { StopClock(); });
  m_runMode = false;
  for (auto* b : {&m_btnPrevious, &m_btnNext}) {
    if (*b) Step([&] { (*b)->TerminateControl(); });
    b->reset();
  }
  ReleaseFonts();
}

}  // namespace mx::dates
