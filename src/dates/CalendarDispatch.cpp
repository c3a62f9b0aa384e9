// The calendars' late binding: every property and method by name; "" is CurrentDate.
#include "controls/MemberTable.h"
#include "controls/USImageList.h"
#include "dates/CalendarControl.h"
#include "dates/USCalendar.h"
#include "host/Err.h"

namespace mx::dates {

using host::CallKind;
using host::Variant;

namespace {

using Table = controls::detail::MemberTable<CalendarControl>;
using C = CalendarControl;

std::shared_ptr<host::StdFont> ToFont(const Variant& v, StringView source) {
  auto font = std::dynamic_pointer_cast<host::StdFont>(v.ToObject());
  if (!font && !v.IsNothing()) host::Raise(13, source);
  return font;
}

Variant FromFont(const std::shared_ptr<host::StdFont>& f) { return f ? Variant(f) : Variant::Nothing(); }

template <typename T>
void AddPlain(Table& t, StringView name, T (C::*get)() const, void (C::*let)(T)) {
  t.Property(
      name, [get](C& c) { return Variant((c.*get)()); },
      [let](C& c, const Variant& v) {
        if constexpr (std::is_same_v<T, bool>) (c.*let)(v.ToBoolean());
        else if constexpr (std::is_same_v<T, float>) (c.*let)(v.ToSingle());
        else (c.*let)(v.ToLong());
      });
}

void AddFont(Table& t, StringView name, std::shared_ptr<host::StdFont> (C::*get)() const,
             void (C::*let)(std::shared_ptr<host::StdFont>)) {
  t.Property(
      name, [get](C& c) { return FromFont((c.*get)()); },
      [let, name](C& c, const Variant& v) { (c.*let)(ToFont(v, name)); });
}

const Table& Members() {
  static const Table table = [] {
    Table t;
    t.Property(
        u"CurrentDate", [](C& c) { return Variant::FromDate(c.CurrentDate()); },
        [](C& c, const Variant& v) { c.CurrentDate(v.ToDate().days); });
    t.Property(u"", [](C& c) { return Variant::FromDate(c.CurrentDate()); },
               [](C& c, const Variant& v) { c.CurrentDate(v.ToDate().days); });
    t.Property(u"hWnd", [](C& c) { return Variant(static_cast<int32_t>(c.hWnd())); });
    AddPlain<int32_t>(t, u"Theme", &C::Theme, &C::Theme);
    AddPlain<OLE_COLOR>(t, u"BackColor", &C::BackColor, &C::BackColor);
    AddPlain<OLE_COLOR>(t, u"DaysColor", &C::DaysColor, &C::DaysColor);
    AddPlain<OLE_COLOR>(t, u"ColumnsColor", &C::ColumnsColor, &C::ColumnsColor);
    AddPlain<OLE_COLOR>(t, u"MonthYearForeColor", &C::MonthYearForeColor, &C::MonthYearForeColor);
    AddPlain<OLE_COLOR>(t, u"TodayColor", &C::TodayColor, &C::TodayColor);
    AddPlain<OLE_COLOR>(t, u"LastNextMonthDayColor", &C::LastNextMonthDayColor, &C::LastNextMonthDayColor);
    AddPlain<OLE_COLOR>(t, u"SelectedBackColor", &C::SelectedBackColor, &C::SelectedBackColor);
    AddPlain<OLE_COLOR>(t, u"SelectedForeColor", &C::SelectedForeColor, &C::SelectedForeColor);
    AddPlain<OLE_COLOR>(t, u"DaySelectedBorderColor", &C::DaySelectedBorderColor, &C::DaySelectedBorderColor);
    AddFont(t, u"FontColumns", &C::FontColumns, &C::FontColumns);
    AddFont(t, u"FontDays", &C::FontDays, &C::FontDays);
    AddFont(t, u"FontMonthYear", &C::FontMonthYear, &C::FontMonthYear);
    AddFont(t, u"FontToday", &C::FontToday, &C::FontToday);
    AddPlain<float>(t, u"FontColumnsSize", &C::FontColumnsSize, &C::FontColumnsSize);
    AddPlain<float>(t, u"FontDaysSize", &C::FontDaysSize, &C::FontDaysSize);
    AddPlain<float>(t, u"FontMonthYearSize", &C::FontMonthYearSize, &C::FontMonthYearSize);
    AddPlain<float>(t, u"FontTodaySize", &C::FontTodaySize, &C::FontTodaySize);
    AddPlain<bool>(t, u"ShowPreviousMonthButton", &C::ShowPreviousMonthButton, &C::ShowPreviousMonthButton);
    AddPlain<bool>(t, u"ShowNextMonthButton", &C::ShowNextMonthButton, &C::ShowNextMonthButton);
    AddPlain<bool>(t, u"ShowLastMonthDays", &C::ShowLastMonthDays, &C::ShowLastMonthDays);
    AddPlain<bool>(t, u"ShowNextMonthDays", &C::ShowNextMonthDays, &C::ShowNextMonthDays);
    AddPlain<bool>(t, u"ShowShortDays", &C::ShowShortDays, &C::ShowShortDays);
    AddPlain<bool>(t, u"Enabled", &C::Enabled, &C::Enabled);
    AddPlain<int32_t>(t, u"WeekStartsWith", &C::WeekStartsWith, &C::WeekStartsWith);
    t.Method(u"About", [](C& c, std::span<Variant>) {
      c.About();
      return Variant();
    });
    t.Method(u"Refresh", [](C& c, std::span<Variant>) {
      c.Refresh();
      return Variant();
    });
    // Arguments as given; a missing one takes the method's default.
    t.Method(u"SetButtonTheme", [](C& c, std::span<Variant> args) {
      auto arg = [&](size_t i, int32_t def) {
        return i < args.size() && !args[i].IsMissing() ? args[i].ToLong() : def;
      };
      std::shared_ptr<controls::USImageList> list;
      if (args.size() > 1) list = std::dynamic_pointer_cast<controls::USImageList>(args[1].ToObject());
      c.SetButtonTheme(arg(0, 0), list, arg(2, 0), arg(3, 10114859), arg(4, 5249536), arg(5, 8076800), arg(6, 0),
                       arg(7, 10114859), arg(8, 10114859), arg(9, 10114859), arg(10, 10114859), arg(11, 5249536),
                       arg(12, 5249536), arg(13, 5249536), arg(14, 5249536), arg(15, 8076800), arg(16, 8076800),
                       arg(17, 8076800), arg(18, 8076800), arg(19, 0));
      return Variant();
    });
    return t;
  }();
  return table;
}

}  // namespace

Variant CalendarControl::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  Variant result;
  if (Members().Dispatch(*this, name, kind, args, result, TypeName())) return result;
  return UserControl::Invoke(name, kind, args);
}

Variant USCalendar::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  static const controls::detail::MemberTable<USCalendar> clock = [] {
    controls::detail::MemberTable<USCalendar> t;
    t.Property(
        u"TimerColor", [](USCalendar& c) { return Variant(c.TimerColor()); },
        [](USCalendar& c, const Variant& v) { c.TimerColor(v.ToLong()); });
    t.Property(
        u"FontTimer", [](USCalendar& c) { return FromFont(c.FontTimer()); },
        [](USCalendar& c, const Variant& v) { c.FontTimer(ToFont(v, u"USCalendar")); });
    t.Property(
        u"FontTimerSize", [](USCalendar& c) { return Variant(c.FontTimerSize()); },
        [](USCalendar& c, const Variant& v) { c.FontTimerSize(v.ToSingle()); });
    return t;
  }();
  Variant result;
  if (clock.Dispatch(*this, name, kind, args, result, TypeName())) return result;
  return CalendarControl::Invoke(name, kind, args);
}

}  // namespace mx::dates
