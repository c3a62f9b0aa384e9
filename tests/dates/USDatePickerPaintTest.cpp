// The date picker's face: exact colours of the border, ground and glyph in its states, and golden
// pictures of the two styles closed and of the combo style open with its calendar.
#include "dates/USDatePickerTestSupport.h"
#include "frame/Themes.h"
#include "platform/Desktop.h"
#include "support/Golden.h"

namespace mx::dates::testing {
namespace {

using PickerPaint = DatePickerTest;

platform::CapturedImage Capture(const USDatePicker& p) {
  platform::PumpMessages();
  return platform::CaptureWindow(p.hWnd());
}

// A part of the screen, top-down.
std::vector<uint32_t> ScreenPart(const platform::RECT& r) {
  platform::PumpMessages();
  const platform::CapturedImage screen = platform::CaptureScreen();
  std::vector<uint32_t> out;
  for (int y = r.top; y < r.bottom; ++y)
    for (int x = r.left; x < r.right; ++x) out.push_back(screen.pixel(x, y));
  return out;
}

std::vector<uint32_t> Pixels(const platform::CapturedImage& img) {
  std::vector<uint32_t> out;
  for (int y = 0; y < img.height(); ++y)
    for (int x = 0; x < img.width(); ++x) out.push_back(img.pixel(x, y));
  return out;
}

TEST_F(PickerPaint, BorderGroundAndGlyphFollowTheState) {
  picker->Text(u"15/01/2024");
  auto img = Capture(*picker);
  ASSERT_EQ(img.width(), 120);
  ASSERT_EQ(img.height(), 21);
  EXPECT_EQ(img.color(0, 0), 0xFFCFA3u);
  EXPECT_EQ(img.color(119, 20), 0xFFCFA3u);
  EXPECT_EQ(img.color(110, 2), 0xFFFFFFu) << "arrow area ground";
  // The glyph: 7 pixels at the top row from X = width - 12, one at the tip four rows down.
  const int top = 2 + (17 - 4) / 2;
  EXPECT_EQ(img.color(108, top), 0x000000u);
  EXPECT_EQ(img.color(114, top), 0x000000u);
  EXPECT_EQ(img.color(115, top), 0xFFFFFFu);
  EXPECT_EQ(img.color(111, top + 3), 0x000000u);
  EXPECT_EQ(img.color(110, top + 3), 0xFFFFFFu);
  // The field melts into the ground: no second border inside.
  EXPECT_EQ(img.color(1, 10), 0xFFFFFFu);

  // Focused: the border takes the over colour.
  FocusPicker();
  img = Capture(*picker);
  EXPECT_EQ(img.color(0, 0), 0xF3B678u);
  // Open: the ground turns to the calendar colour.
  picker->ShowCalendar();
  img = Capture(*picker);
  EXPECT_EQ(img.color(110, 2), 0xFFE3B7u);
  EXPECT_EQ(img.color(1, 10), 0xFFE3B7u);
  picker->ShowCalendar();

  // Disabled: grey glyph, disabled border.
  other->SetFocus();
  picker->BackColorDisabled(0xEEEEEE);
  picker->Enabled(false);
  img = Capture(*picker);
  EXPECT_EQ(img.color(0, 0), 0xDBCECCu);
  EXPECT_EQ(img.color(108, top), 0xA0A0A0u);
  EXPECT_EQ(img.color(110, 2), 0xEEEEEEu);
}

TEST_F(PickerPaint, TheLineShowsOverTheArrowArea) {
  MoveTo(At(110, 10));
  auto img = Capture(*picker);
  EXPECT_EQ(img.color(103, 1), 0xFFCFA3u);
  EXPECT_EQ(img.color(103, 19), 0xFFCFA3u);
  EXPECT_EQ(img.color(104, 10), 0xFFFFFFu);
  MoveTo(At(50, 1));
  img = Capture(*picker);
  EXPECT_EQ(img.color(103, 10), 0xFFFFFFu);
}

TEST_F(PickerPaint, ListStyleGradientAndFocusMark) {
  picker->Style(Dropdown_List);
  picker->GradientColor1(0xFFFFFF);
  picker->GradientColor2(0x808080);
  picker->Text(u"15/01/2024");
  auto img = Capture(*picker);
  // Vertical by default: the top row is the first colour, the bottom row near the second.
  EXPECT_GT(img.color(110, 1) & 0xFF, 0xF0u);
  EXPECT_LT(img.color(110, 19) & 0xFF, 0x90u);
  FocusPicker();
  img = Capture(*picker);
  // A dotted mark in the over colour from (2, 2), every other pixel.
  EXPECT_EQ(img.color(2, 2), 0xF3B678u);
  EXPECT_NE(img.color(3, 2), 0xF3B678u);
  EXPECT_EQ(img.color(4, 2), 0xF3B678u);
}

TEST_F(PickerPaint, GoldenClosedInBothStyles) {
  picker->Text(u"15/01/2024");
  test::ExpectGolden("dates", "datepicker_combo", 120, 21, Pixels(Capture(*picker)));

  picker->Theme(frame::Windows_Theme_Green);
  picker->Style(Dropdown_List);
  picker->GradientColor1(0xFFFFFF);
  picker->GradientColor2(0xC8E6C8);
  picker->Text(u"29/02/2024");
  FocusPicker();
  test::ExpectGolden("dates", "datepicker_list", 120, 21, Pixels(Capture(*picker)));
}

TEST_F(PickerPaint, GoldenOpen) {
  picker->Text(u"20/01/2024");
  FocusPicker();
  picker->ShowCalendar();
  const platform::RECT r = PickerRect();
  const platform::RECT area{r.left, r.top, r.left + 215, r.bottom + 1 + 226};
  test::ExpectGolden("dates", "datepicker_open", 215, area.bottom - area.top, ScreenPart(area));
}

}  // namespace
}  // namespace mx::dates::testing
