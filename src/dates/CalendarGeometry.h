#pragma once
// Where the elements of the two calendars sit on their fixed-size surfaces, in pixels from the
// top left. The large calendar has a clock above today's date; the small one is laid out tighter,
// has no clock and draws an outline around itself.
#include <cstdint>

namespace mx::dates {

struct CalendarGeometry {
  int32_t width, height;           // the fixed client size
  bool hasClock;                   // the clock label and its timer
  bool hasBorder;                  // the outline of the whole surface
  int32_t timerLeft, timerTop, timerWidth, timerHeight;
  int32_t todayLeft, todayTop, todayWidth, todayHeight;
  int32_t headingLeft, headingTop, headingWidth, headingHeight;
  int32_t previousLeft, nextLeft, buttonTop, buttonWidth, buttonHeight;
  // Weekday headings: left = columnLeft + columnPitch * column.
  int32_t columnLeft, columnPitch, columnTop, columnWidth, columnHeight;
  // Day cells: left = cellLeft + columnPitch * column, top = cellTop + rowPitch * row.
  int32_t cellLeft, cellTop, rowPitch, cellWidth, cellHeight;
  int32_t selectedWidth, selectedHeight;  // the filled mark of the chosen day
  int32_t outlineWidth, outlineHeight;    // the outlined mark of today
  float fontTodaySize;                    // the default size of today's date
};

inline constexpr CalendarGeometry kLargeCalendar{
    245, 300, true,  false,
    15,  12,  138,   32,           // clock
    16,  50,  94,    13,           // today
    16,  80,  41,    16,           // heading
    176, 207, 76,    22,  24,      // buttons
    23,  32,  112,   8,   13,      // weekday headings
    21,  139, 26,    12,  13,      // day cells
    29,  20,  32,    23,
    7.0F};

inline constexpr CalendarGeometry kSmallCalendar{
    215, 226, false, true,
    0,   0,   0,     0,
    16,  12,  94,    13,
    16,  36,  41,    16,
    148, 180, 32,    22,  24,
    19,  28,  64,    8,   13,
    17,  87,  22,    12,  13,
    25,  18,  28,    21,
    8.0F};

}  // namespace mx::dates
