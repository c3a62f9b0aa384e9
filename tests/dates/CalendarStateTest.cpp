// Persistence with its two asymmetric keys, themes, the fixed size, the month buttons' state,
// SetButtonTheme and the clock.
#include "controls/USButton.h"
#include "dates/CalendarTestSupport.h"
#include "frame/Themes.h"
#include "platform/Timer.h"

namespace mx::dates::testing {
namespace {

using State = CalendarTest;

TEST_F(State, KeysRoundTripAndTheTwoAsymmetricOnesStaySo) {
  host::PropertyBag bag;
  {
    auto c = Make<USCalendar>();
    c->SelectedBackColor(0x0000FF);
    c->DaySelectedBorderColor(0x00FF00);
    // A size, then a font of another size: the font's size is what the labels show.
    auto nine = c->FontDays()->Clone();
    nine->Size(9.0);
    c->FontTimerSize(14);
    c->FontTimer(nine);
    c->FontDaysSize(14);
    c->FontDays(nine);
    EXPECT_DOUBLE_EQ(c->LabelFont(4)->SizePoints(), 9.0);
    c->WeekStartsWith(host::vbMonday);
    c->ShowShortDays(false);
    c->DaysColor(0x123456);
    c->SaveTo(bag);
  }
  EXPECT_EQ(bag.ReadProperty(u"DaySelectedBorderColor").ToLong(), 0x00FF00);
  EXPECT_EQ(bag.ReadProperty(u"FontTimerSize").ToSingle(), 14.0F);
  EXPECT_FALSE(bag.Contains(u"Theme")) << "defaults are not written";

  auto c = Make<USCalendar>(&bag);
  // The outline colour is read from the fill's key.
  EXPECT_EQ(c->DaySelectedBorderColor(), 0x0000FFu);
  EXPECT_EQ(c->DaySelectedBorderOutline(), 0x0000FFu);
  // The clock keeps its saved font's size; FontTimerSize is not read. The days, whose size key
  // is read, take the saved size over the font's.
  EXPECT_EQ(c->FontTimerSize(), 20.0F);
  EXPECT_DOUBLE_EQ(c->FontTimer()->SizePoints(), 9.0);
  EXPECT_DOUBLE_EQ(c->FontDays()->SizePoints(), 14.0);
  EXPECT_EQ(c->FontDaysSize(), 14.0F);
  EXPECT_EQ(c->WeekStartsWith(), 2);
  EXPECT_FALSE(c->ShowShortDays());
  EXPECT_EQ(c->DaysColor(), 0x123456u);
  EXPECT_EQ(c->DayCell(10).foreColor, 0x123456u);

  // A calendar loaded from a bag that never held the clock's font shows the container's font.
  host::PropertyBag empty;
  EXPECT_DOUBLE_EQ(Make<USCalendar>(&empty)->FontTimer()->SizePoints(), c->Ambient().Font()->SizePoints());

  // The small calendar has no clock keys at all.
  host::PropertyBag small;
  auto s = Make<USCalendarSmall>();
  s->FontTodaySize(8);
  s->SaveTo(small);
  EXPECT_FALSE(small.Contains(u"FontTodaySize")) << "its default is 8";
  EXPECT_FALSE(small.Contains(u"TimerColor"));
}

TEST_F(State, ThemesTwoAndAboveLoadTheirColoursAndZeroAndOneKeepThem) {
  auto c = Make<USCalendar>();
  c->DaysColor(0x111111);
  c->TodayColor(0x222222);
  c->BackColor(0x333333);
  for (int theme : {0, 1}) {
    c->Theme(theme);
    EXPECT_EQ(c->DaysColor(), 0x111111u);
    EXPECT_EQ(c->TodayColor(), 0x222222u);
    EXPECT_EQ(c->BackColor(), 0x333333u);
  }
  c->DaySelectedBorderColor(0x00FF00);
  c->Theme(frame::Windows_Theme_Red);
  EXPECT_EQ(c->BackColor(), 0x5050C7u);
  EXPECT_EQ(c->DaysColor(), 0xFFFFFFu);
  EXPECT_EQ(c->TodayColor(), 0xF1BF6Du);
  EXPECT_EQ(c->DaySelectedBorderColor(), 0xCB9022u);
  EXPECT_EQ(c->PreviousButton()->Theme(), frame::Windows_Theme_Red);
  EXPECT_EQ(c->NextButton()->BorderColor(), frame::GetThemeColor(4, frame::ThemeBorderColor));
}

TEST_F(State, SurfaceSnapsBackToItsFixedSize) {
  auto c = Make<USCalendar>();
  c->Width(100 * 15);
  c->Height(50 * 15);
  platform::RECT rc{};
  platform::GetClientRect(c->hWnd(), &rc);
  EXPECT_EQ(rc.right, 245);
  EXPECT_EQ(rc.bottom, 300);
  auto s = Make<USCalendarSmall>();
  s->Width(400 * 15);
  platform::GetClientRect(s->hWnd(), &rc);
  EXPECT_EQ(rc.right, 215);
  EXPECT_EQ(rc.bottom, 226);
}

TEST_F(State, AHiddenMonthButtonIsShownByItsPropertyButNeverHiddenAgain) {
  host::PropertyBag bag;
  bag.WriteProperty(u"ShowPreviousMonthButton", host::Variant(false));
  auto c = Make<USCalendar>(&bag);
  EXPECT_FALSE(c->PreviousButton()->Visible());
  EXPECT_TRUE(c->NextButton()->Visible());
  c->ShowPreviousMonthButton(true);
  EXPECT_TRUE(c->PreviousButton()->Visible());
  c->ShowPreviousMonthButton(false);
  EXPECT_TRUE(c->PreviousButton()->Visible());
}

TEST_F(State, SetButtonThemeStylesTheChosenButtons) {
  auto c = Make<USCalendar>();
  c->SetButtonTheme(ForwardButton, nullptr, 0, 0x0000FF, 0x00FF00, 0xFF0000, 1, 0x010101, 0x020202, 0x030303,
                    0x040404);
  EXPECT_EQ(c->NextButton()->BorderColor(), 0x0000FFu);
  EXPECT_EQ(c->NextButton()->BorderColorDown(), 0x00FF00u);
  EXPECT_EQ(c->NextButton()->GradientColors(), 1);
  EXPECT_EQ(c->NextButton()->GradientColor(4), 0x040404u);
  EXPECT_EQ(c->PreviousButton()->BorderColor(), 0x9A572Bu);
  // Values outside the three members change nothing.
  c->SetButtonTheme(3, nullptr, 0, 0x0000AA);
  EXPECT_EQ(c->PreviousButton()->BorderColor(), 0x9A572Bu);
  c->SetButtonTheme(AllButtons, nullptr);
  EXPECT_EQ(c->NextButton()->BorderColor(), 10114859u);
  EXPECT_EQ(c->PreviousButton()->GradientColorOver(2), 8076800u);
  EXPECT_TRUE(c->PreviousButton()->Redraw());
}

TEST_F(State, TheClockTicksEverySecondOnlyAtRunTimeAndStopsAtTheEnd) {
  const int timersBefore = platform::ActiveTimerCount();
  auto design = Make<USCalendar>(nullptr, false);
  host::PropertyBag bag;
  auto loadedAtDesign = Make<USCalendar>(&bag, false);
  EXPECT_FALSE(loadedAtDesign->ClockRunning());
  auto small = Make<USCalendarSmall>(&bag, true);
  EXPECT_FALSE(small->ClockRunning());
  EXPECT_EQ(platform::ActiveTimerCount(), timersBefore);

  auto c = Make<USCalendar>(&bag, true);
  ASSERT_TRUE(c->ClockRunning());
  EXPECT_TRUE(c->TimerCaption().caption.empty());
  platform::AdvanceVirtualClock(1000);
  platform::PumpMessages();
  EXPECT_EQ(std::string(c->TimerCaption().caption.begin(), c->TimerCaption().caption.end()), "10:30:01 AM");
  platform::AdvanceVirtualClock(1000);
  platform::PumpMessages();
  EXPECT_EQ(std::string(c->TimerCaption().caption.begin(), c->TimerCaption().caption.end()), "10:30:02 AM");
  c->TerminateControl();
  EXPECT_FALSE(c->ClockRunning());
  EXPECT_EQ(platform::ActiveTimerCount(), timersBefore);
}

}  // namespace
}  // namespace mx::dates::testing

namespace mx::dates::testing {
namespace {

TEST_F(State, LateBindingReachesTheDefaultMemberAndTheClockOnlyOnTheLargeCalendar) {
  auto c = Make<USCalendar>();
  std::vector<host::Variant> args{host::Variant::FromDate(host::DateSerial(2025, 7, 4) + 0.5)};
  c->Invoke(u"", host::CallKind::Let, args);
  const host::Variant value = c->Invoke(u"", host::CallKind::Get, {});
  EXPECT_EQ(value.VarType(), host::vbDate);
  EXPECT_EQ(value.ToDate().days, host::DateSerial(2025, 7, 4));
  EXPECT_EQ(std::string(c->MonthYearCaption().caption.begin(), c->MonthYearCaption().caption.end()),
            "julho de 2025");
  std::vector<host::Variant> colour{host::Variant(int32_t{0x0000FF})};
  c->Invoke(u"timercolor", host::CallKind::Let, colour);
  EXPECT_EQ(c->TimerColor(), 0x0000FFu);

  auto s = Make<USCalendarSmall>();
  EXPECT_ANY_THROW(s->Invoke(u"TimerColor", host::CallKind::Get, {}));
  EXPECT_EQ(s->Invoke(u"WeekStartsWith", host::CallKind::Get, {}).ToLong(), 1);
}

}  // namespace
}  // namespace mx::dates::testing
