#pragma once
// CalendarControl: the month view that USCalendar and USCalendarSmall share. Both are made of
// labels and two marks on a surface of fixed size: one label per day cell (42, six rows of
// seven), one per weekday column, one for the month heading, one for today's date, the clock on
// the large calendar, the filled mark of the chosen day, the outlined mark of today, and two
// USButtons that step the month. The geometry (CalendarGeometry.h) is the only difference.
//
// Behaviour and painting are apart: DrawCalendarMonth and PositionSelectionMark only fill the
// label and mark records; PaintSurface draws the records into the persistent image, once per
// change (a month fill of 42 labels is one paint, not 42).
//
// Cells carry a Tag as the labels of a form do: "0" for a day of the month shown, "-1" for a day
// of a neighbouring month. A click on a neighbour's cell moves to that month: cells 0 to 7 count
// as the month before, the rest as the month after.
#include <array>
#include <cstdint>
#include <memory>
#include <span>

#include "dates/CalendarGeometry.h"
#include "host/Event.h"
#include "host/PropertyBag.h"
#include "host/StdFont.h"
#include "host/String.h"
#include "host/UserControl.h"
#include "host/Variant.h"
#include "platform/Types.h"

namespace mx::controls {
class USButton;
class USImageList;
}  // namespace mx::controls

namespace mx::dates {

using host::OLE_COLOR;
using host::String;
using host::StringView;

enum ENUM_CALENDAR_BUTTONS : int32_t { BackButton = 0, ForwardButton = 1, AllButtons = 2 };

// One label of the surface as it stands: where it is, what it shows, and how.
struct CalendarLabel {
  platform::RECT rect{};  // the box; labels that size themselves to their text grow from the left
  String caption;
  OLE_COLOR foreColor = 0xFFFFFF;
  bool visible = true;
  bool bold = false;
  String tag;
};

// One of the two marks: a rectangle, filled or outlined.
struct CalendarMark {
  platform::RECT rect{};
  bool visible = false;
};

// The date order of the regional setting, found by experiment: "1/1/2000" plus one month against
// "2/1/2000". True when the setting reads the day first.
[[nodiscard]] bool GetDateOrder();

class CalendarControl : public host::UserControl {
 public:
  static constexpr int32_t kCellCount = 42;
  static constexpr int32_t kClockInterval = 1000;

  explicit CalendarControl(const CalendarGeometry& geometry);
  ~CalendarControl() override;

  // ---- Properties ----------------------------------------------------------------------------

  [[nodiscard]] platform::HWND hWnd() const override { return UserControl::hWnd(); }

  // The default member. Reading drops any time of day; writing stores, marks and redraws.
  [[nodiscard]] double CurrentDate() const;
  void CurrentDate(double value);

  [[nodiscard]] int32_t Theme() const { return m_theme; }
  // Themes 2 and above load a fixed set of colours; themes 0 and 1 only store the number.
  void Theme(int32_t value);
  [[nodiscard]] OLE_COLOR BackColor() const { return UserControl::BackColor(); }
  void BackColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR DaysColor() const { return m_daysColor; }
  void DaysColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ColumnsColor() const { return m_columnsColor; }
  void ColumnsColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR MonthYearForeColor() const { return m_heading.foreColor; }
  void MonthYearForeColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR TodayColor() const { return m_today.foreColor; }
  void TodayColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR LastNextMonthDayColor() const { return m_lastNextMonthDayColor; }
  void LastNextMonthDayColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR SelectedBackColor() const { return m_selectedBackColor; }
  void SelectedBackColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR SelectedForeColor() const { return m_selectedForeColor; }
  void SelectedForeColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR DaySelectedBorderColor() const { return m_daySelectedBorderColor; }
  void DaySelectedBorderColor(OLE_COLOR value);

  // Fonts of the label groups: each is the font its labels draw with. Setting one gives the
  // labels a copy of it, size included; the size properties then change the labels' size.
  [[nodiscard]] std::shared_ptr<host::StdFont> FontColumns() const { return m_labelFonts[0]; }
  void FontColumns(std::shared_ptr<host::StdFont> value);
  [[nodiscard]] std::shared_ptr<host::StdFont> FontDays() const { return m_labelFonts[1]; }
  void FontDays(std::shared_ptr<host::StdFont> value);
  [[nodiscard]] std::shared_ptr<host::StdFont> FontMonthYear() const { return m_labelFonts[2]; }
  void FontMonthYear(std::shared_ptr<host::StdFont> value);
  [[nodiscard]] std::shared_ptr<host::StdFont> FontToday() const { return m_labelFonts[3]; }
  void FontToday(std::shared_ptr<host::StdFont> value);
  [[nodiscard]] float FontColumnsSize() const { return m_fontColumnsSize; }
  void FontColumnsSize(float value);
  [[nodiscard]] float FontDaysSize() const { return m_fontDaysSize; }
  void FontDaysSize(float value);
  [[nodiscard]] float FontMonthYearSize() const { return m_fontMonthYearSize; }
  void FontMonthYearSize(float value);
  [[nodiscard]] float FontTodaySize() const { return m_fontTodaySize; }
  void FontTodaySize(float value);

  [[nodiscard]] bool ShowPreviousMonthButton() const { return m_showPreviousMonthButton; }
  void ShowPreviousMonthButton(bool value);
  [[nodiscard]] bool ShowNextMonthButton() const { return m_showNextMonthButton; }
  void ShowNextMonthButton(bool value);
  [[nodiscard]] bool ShowLastMonthDays() const { return m_showLastMonthDays; }
  void ShowLastMonthDays(bool value);
  [[nodiscard]] bool ShowNextMonthDays() const { return m_showNextMonthDays; }
  void ShowNextMonthDays(bool value);
  [[nodiscard]] bool ShowShortDays() const { return m_showShortDays; }
  void ShowShortDays(bool value);
  [[nodiscard]] bool Enabled() const { return UserControl::Enabled(); }
  void Enabled(bool value);
  // 1 Sunday ... 7 Saturday; 0 (the default) becomes 1 at the first month fill.
  [[nodiscard]] int32_t WeekStartsWith() const { return m_weekStartsWith; }
  void WeekStartsWith(int32_t value);

  // ---- Methods -----------------------------------------------------------------------------

  void About();
  // Fills the month again, then shows the surface.
  void Refresh();
  // Styles the month buttons (ENUM_CALENDAR_BUTTONS; other values do nothing) and gives them the
  // picture at ButtonIconIndex of the image list control's first list.
  void SetButtonTheme(int32_t SelectedButton, const std::shared_ptr<controls::USImageList>& USImageListControl,
                      int32_t ButtonCropBorders = 0, OLE_COLOR ButtonBorderColor = 10114859,
                      OLE_COLOR ButtonBorderColorDown = 5249536, OLE_COLOR ButtonBorderColorOver = 8076800,
                      int32_t ButtonGradientColors = 0, OLE_COLOR ButtonGradientColor1 = 10114859,
                      OLE_COLOR ButtonGradientColor2 = 10114859, OLE_COLOR ButtonGradientColor3 = 10114859,
                      OLE_COLOR ButtonGradientColor4 = 10114859, OLE_COLOR ButtonGradientColorDown1 = 5249536,
                      OLE_COLOR ButtonGradientColorDown2 = 5249536, OLE_COLOR ButtonGradientColorDown3 = 5249536,
                      OLE_COLOR ButtonGradientColorDown4 = 5249536, OLE_COLOR ButtonGradientColorOver1 = 8076800,
                      OLE_COLOR ButtonGradientColorOver2 = 8076800, OLE_COLOR ButtonGradientColorOver3 = 8076800,
                      OLE_COLOR ButtonGradientColorOver4 = 8076800, int32_t ButtonIconIndex = 0);

  // The one routine that fills the month: heading, weekday columns, the 42 cells, today's mark
  // and date, then the selection mark.
  void DrawCalendarMonth();
  // Moves the filled mark to the cell of the current date's day and gives that cell the
  // selected colour (the cell left before gets DaysColor again).
  void PositionSelectionMark();

  // ---- Events, raised after the calendar's own handling ----------------------------------------

  host::Event<host::DateValue> DateClicked;
  host::Event<host::DateValue> DateDblClicked;
  host::Event<host::DateValue> LastButtonClicked;
  host::Event<host::DateValue> MonthChanged;
  host::Event<host::DateValue> MonthHeadingClicked;
  host::Event<host::DateValue> MonthHeadingDblClicked;
  host::Event<host::DateValue> NextButtonClicked;
  host::Event<host::DateValue> TodayClicked;
  host::Event<int16_t> WeekHeadingClicked;
  host::Event<int16_t> WeekHeadingDblClicked;
  // Part of the interface; the calendar has no week numbers to click, so they are never raised.
  host::Event<int16_t> WeekNumberClicked;
  host::Event<int16_t> WeekNumberDblClicked;

  void ConnectEventSink(const host::EventSink& sink) override;
  host::Variant Invoke(StringView name, host::CallKind kind, std::span<host::Variant> args) override;

  // ---- Inspection: the surface's elements as they stand, for tests and tools ------------------

  [[nodiscard]] const CalendarGeometry& Geometry() const { return m_geometry; }
  [[nodiscard]] const CalendarLabel& DayCell(int32_t index) const { return m_cells.at(static_cast<size_t>(index)); }
  [[nodiscard]] const CalendarLabel& ColumnCell(int32_t index) const {
    return m_columns.at(static_cast<size_t>(index));
  }
  [[nodiscard]] const CalendarLabel& MonthYearCaption() const { return m_heading; }
  [[nodiscard]] const CalendarLabel& TodayCaption() const { return m_today; }
  [[nodiscard]] const CalendarLabel& TimerCaption() const { return m_timer; }
  [[nodiscard]] const CalendarMark& DaySelected() const { return m_selectedMark; }
  [[nodiscard]] const CalendarMark& DaySelectedBorder() const { return m_todayMark; }
  // The outline colour of today's mark as drawn (it can differ from DaySelectedBorderColor).
  [[nodiscard]] OLE_COLOR DaySelectedBorderOutline() const { return m_todayMarkColor; }
  [[nodiscard]] int32_t FirstDayCell() const { return m_firstDayCell; }
  [[nodiscard]] int32_t SelectedCell() const { return m_selectedCell; }
  [[nodiscard]] controls::USButton* PreviousButton() const { return m_btnPrevious.get(); }
  [[nodiscard]] controls::USButton* NextButton() const { return m_btnNext.get(); }
  [[nodiscard]] bool ClockRunning() const { return m_clockRunning; }
  // The font a label group draws with (its size included): 0 columns, 1 days, 2 heading,
  // 3 today, 4 clock.
  [[nodiscard]] std::shared_ptr<host::StdFont> LabelFont(int32_t group) const;

 protected:
  // The clock's members; only the large calendar publishes them.
  [[nodiscard]] OLE_COLOR TimerColorValue() const { return m_timer.foreColor; }
  void SetTimerColor(OLE_COLOR value);
  [[nodiscard]] std::shared_ptr<host::StdFont> FontTimerValue() const { return m_labelFonts[4]; }
  void SetFontTimer(std::shared_ptr<host::StdFont> value);
  [[nodiscard]] float FontTimerSizeValue() const { return m_fontTimerSize; }
  void SetFontTimerSize(float value);

  void UserControl_Initialize() override;
  void UserControl_InitProperties() override;
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Terminate() override;
  void UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_Click() override;
  void UserControl_DblClick() override;

 private:
  // What a point of the surface falls on.
  enum class Part { None, Day, Column, Heading, Today };
  struct Hit {
    Part part = Part::None;
    int32_t index = -1;
    bool operator==(const Hit&) const = default;
  };

  void LayoutLabels();
  void SetGroupFont(int32_t group, std::shared_ptr<host::StdFont> value, StringView key);
  void CreateButtons();
  void ApplyButtonState();
  void ApplyTheme();
  void StartClock();
  void StopClock();
  void TickClock();
  void OnPreviousClick();
  void OnNextClick();
  void OnDayClick(int32_t index, bool doubleClick);
  void OnColumnClick(int32_t index, bool doubleClick);
  [[nodiscard]] Hit HitTest(int32_t x, int32_t y) const;
  [[nodiscard]] Hit HitAtMessagePos() const;
  // A date text of day/month/year built in the setting's order, read back as a date; false when
  // it does not make one (the current date then stays).
  [[nodiscard]] bool BuildDate(int32_t day, int32_t month, int32_t year, double& out) const;

  // Painting (CalendarPaint.cpp).
  void PaintSurface();
  void SizeAutoLabels();
  void RebuildFont(int32_t group);
  void ReleaseFonts();
  void DrawLabel(platform::HDC dc, const CalendarLabel& label, int32_t group, uint32_t flags);

  const CalendarGeometry& m_geometry;

  // Persisted.
  int32_t m_theme = 2;
  OLE_COLOR m_daysColor = 0xFFFFFF;
  OLE_COLOR m_columnsColor = 0xFFFFFF;
  OLE_COLOR m_lastNextMonthDayColor = 0xC8A35F;
  OLE_COLOR m_selectedBackColor = 0xCB9022;
  OLE_COLOR m_selectedForeColor = 0xFFFFFF;
  OLE_COLOR m_daySelectedBorderColor = 0xCB9022;
  float m_fontColumnsSize = 6;
  float m_fontDaysSize = 8;
  float m_fontMonthYearSize = 10;
  float m_fontTodaySize = 7;
  float m_fontTimerSize = 20;
  bool m_showPreviousMonthButton = true;
  bool m_showNextMonthButton = true;
  bool m_showLastMonthDays = true;
  bool m_showNextMonthDays = true;
  bool m_showShortDays = true;
  int32_t m_weekStartsWith = 0;

  // State.
  double m_currentDate = 0;
  int32_t m_firstDayCell = 0;
  int32_t m_selectedCell = -1;
  int32_t m_lastClickedDay = 0;
  bool m_runMode = false;
  bool m_clockRunning = false;
  // Painting waits while a fill is under way; a paint asked for meanwhile is done at the end.
  int32_t m_redrawOff = 0;
  bool m_paintPending = false;
  Hit m_downHit;
  Hit m_upHit;

  // Elements of the surface.
  std::array<CalendarLabel, kCellCount> m_cells;
  std::array<CalendarLabel, 7> m_columns;
  CalendarLabel m_heading;
  CalendarLabel m_today;
  CalendarLabel m_timer;
  CalendarMark m_selectedMark;
  CalendarMark m_todayMark;
  OLE_COLOR m_todayMarkColor = 0xCB9022;
  // The label groups' fonts, as drawn and as their properties answer: [0] columns ... [4] clock.
  std::array<std::shared_ptr<host::StdFont>, 5> m_labelFonts;
  std::array<platform::HFONT, 5> m_fontHandles{};
  std::shared_ptr<controls::USButton> m_btnPrevious;
  std::shared_ptr<controls::USButton> m_btnNext;
};

}  // namespace mx::dates
