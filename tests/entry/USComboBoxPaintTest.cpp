// USComboBox's faces: exact pixels of the border, the text area and the arrow in each state,
// hover from the mouse tracker, Redraw, and golden pictures of the closed faces and of an open
// list.
#include "USComboBoxTestSupport.h"

#include "frame/Themes.h"
#include "image/API32bppDIB.h"
#include "support/Golden.h"

namespace mx::entry::testing {
namespace {

using platform::RECT;

class ComboPaintTest : public ComboTest {
 protected:
  platform::CapturedImage Capture() {
    platform::PumpMessages();
    return platform::CaptureWindow(combo->hWnd());
  }
  void PointerTo(platform::HWND hwnd, int x, int y) {
    platform::POINT pt{x, y};
    platform::ClientToScreen(hwnd, &pt);
    platform::InjectMouseMove(pt.x, pt.y);
    platform::PumpMessages();
  }
  // The top-left pixel of the arrow, and its single bottom pixel.
  [[nodiscard]] platform::POINT ArrowTop() const {
    const RECT b = combo->ButtonRect();
    return platform::POINT{b.left + (b.right - b.left - 7) / 2, b.top + (b.bottom - b.top - 4) / 2};
  }
};

TEST_F(ComboPaintTest, EachStateHasItsBorderBackAndArrow) {
  const platform::CapturedImage normal = Capture();
  ASSERT_EQ(normal.width(), 160);
  ASSERT_EQ(normal.height(), 23);
  EXPECT_EQ(normal.color(0, 0), combo->BorderColor());
  EXPECT_EQ(normal.color(159, 22), combo->BorderColor());
  EXPECT_EQ(normal.color(1, 1), 0xFFFFFFu);
  const platform::POINT a = ArrowTop();
  EXPECT_EQ(combo->ButtonRect().left, 160 - 1 - USComboBox::kButtonWidth);
  EXPECT_EQ(normal.color(a.x, a.y), 0x000000u);
  EXPECT_EQ(normal.color(a.x + 6, a.y), 0x000000u);
  EXPECT_EQ(normal.color(a.x - 1, a.y), 0xFFFFFFu);
  EXPECT_EQ(normal.color(a.x + 3, a.y + 3), 0x000000u);
  EXPECT_EQ(normal.color(a.x + 2, a.y + 3), 0xFFFFFFu);
  EXPECT_EQ(normal.color(a.x + 3, a.y + 4), 0xFFFFFFu);

  // Hover: the pointer over the text box is over the combo.
  PointerTo(combo->txtCombo().hWnd(), 10, 5);
  EXPECT_EQ(combo->PaintedState(), USComboBox::kStateOver);
  const platform::CapturedImage over = Capture();
  EXPECT_EQ(over.color(0, 0), combo->BorderColorOver());
  EXPECT_EQ(over.color(1, 1), 0xF4FFFFu);
  EXPECT_EQ(combo->txtCombo().BackColor(), 0xF4FFFFu);

  combo->AddItem(host::Variant(host::String(u"Aracaju")));
  combo->ShowList();
  const platform::CapturedImage open = Capture();
  EXPECT_EQ(open.color(1, 1), combo->BackColorOnShowList());
  combo->HideList();

  combo->Enabled(false);
  const platform::CapturedImage disabled = Capture();
  EXPECT_EQ(disabled.color(0, 0), 0xDBCECCu);
  EXPECT_EQ(disabled.color(a.x, a.y), 0xDBCECCu);
}

TEST_F(ComboPaintTest, HoverEntersOnceAcrossTheTextBoxAndLeavesOnce) {
  std::vector<std::string> hover;
  combo->MouseEnter.connect([&] { hover.push_back("enter"); });
  combo->MouseExit.connect([&] { hover.push_back("exit"); });
  const RECT b = combo->ButtonRect();
  PointerTo(combo->hWnd(), b.left + 3, 5);  // the arrow button
  PointerTo(combo->txtCombo().hWnd(), 10, 5);
  PointerTo(combo->hWnd(), 1, 10);  // the border
  EXPECT_EQ(hover, (std::vector<std::string>{"enter"}));
  PointerTo(form->hWnd(), 300, 150);
  EXPECT_EQ(hover, (std::vector<std::string>{"enter", "exit"}));
  EXPECT_EQ(combo->PaintedState(), USComboBox::kStateNormal);
}

TEST_F(ComboPaintTest, CornerLineAndGradientButton) {
  combo->ShowCorner(true);
  combo->GradientColor1(0xFF0000);
  combo->GradientColor2(0x0000FF);
  combo->GradientMode(1);
  const platform::CapturedImage img = Capture();
  const RECT b = combo->ButtonRect();
  EXPECT_EQ(img.color(b.left - 1, 5), combo->BorderColor());
  // Top to bottom, 21 rows: the first row is colour 1, the last colour 2.
  EXPECT_EQ(img.color(b.left, b.top), 0xFF0000u);
  EXPECT_EQ(img.color(b.left, b.bottom - 1), 0x0000FFu);
}

// A square PNG of one opaque colour (0xBBGGRR), as a picture object.
std::shared_ptr<host::StdPicture> SolidPicture(int size, int32_t colour) {
  image::API32bppDIB dib;
  EXPECT_TRUE(dib.InitializeDIB(size, size));
  for (int y = 0; y < size; ++y)
    for (int x = 0; x < size; ++x) dib.SetPixel(x, y, colour, 255);
  std::vector<uint8_t> png;
  EXPECT_TRUE(dib.SaveToStream_PNG(png));
  return host::StdPicture::FromBytes(host::ByteArray(png.begin(), png.end()));
}

TEST_F(ComboPaintTest, ListPicturesReplaceTheArrowAndFollowHover) {
  combo->ListPicture(SolidPicture(9, 0x0000FF));
  combo->ListPictureOver(SolidPicture(9, 0xFF0000));
  const RECT b = combo->ButtonRect();
  const int cx = (b.left + b.right) / 2, cy = (b.top + b.bottom) / 2;
  const int left = b.left + (b.right - b.left - 9) / 2;
  platform::CapturedImage img = Capture();
  EXPECT_EQ(img.color(cx, cy), 0x0000FFu);
  EXPECT_EQ(img.color(left, cy), 0x0000FFu);
  EXPECT_EQ(img.color(left - 1, cy), 0xFFFFFFu) << "the picture is centred, the rest is the face";
  PointerTo(combo->hWnd(), cx, cy);
  img = Capture();
  EXPECT_EQ(img.color(cx, cy), 0xFF0000u);
  // A picture larger than the button is shrunk into it.
  combo->ListPicture(SolidPicture(40, 0x00FF00));
  combo->ListPictureOver(nullptr);
  img = Capture();
  EXPECT_EQ(img.color(b.left, cy), 0x00FF00u);
  EXPECT_EQ(img.color(b.right - 1, cy), 0x00FF00u);
}

TEST_F(ComboPaintTest, RedrawOffPaintsNothingUntilTurnedOn) {
  combo->Redraw(false);
  combo->BorderColor(0x0000FF);
  combo->BackColor(0x00FF00);
  EXPECT_EQ(Capture().color(0, 0), 0xFFCFA3u);
  combo->Redraw(true);
  const platform::CapturedImage img = Capture();
  EXPECT_EQ(img.color(0, 0), 0x0000FFu);
  EXPECT_EQ(img.color(1, 1), 0x00FF00u);
}

// Three combos one above the other: normal with text, under the pointer, disabled.
constexpr const char* kFacesForm = R"(VERSION 5.00
Begin VB.Form frmFaces
   BackColor       =   &H00FFFFFF&
   ClientHeight    =   1800
   ClientWidth     =   3000
   BeginProperty Font
      Name            =   "Tahoma"
      Size            =   8.25
   EndProperty
   Begin Morvantix.USComboBox cbo1
      Height          =   345
      Left            =   120
      Top             =   120
      Width           =   2400
      Redraw          =   -1  'True
      Text            =   "Curitiba"
   End
   Begin Morvantix.USComboBox cbo2
      Height          =   345
      Left            =   120
      Top             =   600
      Width           =   2400
      Redraw          =   -1  'True
      Text            =   "Curitiba"
      ShowCorner      =   -1  'True
   End
   Begin Morvantix.USComboBox cbo3
      Height          =   345
      Left            =   120
      Top             =   1080
      Width           =   2400
      Redraw          =   -1  'True
      Text            =   "Curitiba"
      Enabled         =   0   'False
   End
End
)";

TEST_F(ComboPaintTest, GoldenClosedFaces) {
  auto faces = LoadForm(kFacesForm);
  auto hot = faces->FindControl(u"cbo2");
  PointerTo(hot->hWnd(), 150, 10);
  std::vector<uint32_t> px;
  for (const char16_t* name : {u"cbo1", u"cbo2", u"cbo3"}) {
    const platform::CapturedImage img = platform::CaptureWindow(faces->FindControl(name)->hWnd());
    ASSERT_EQ(img.width(), 160);
    ASSERT_EQ(img.height(), 23);
    for (int y = 0; y < img.height(); ++y)
      for (int x = 0; x < img.width(); ++x) px.push_back(img.pixel(x, y));
  }
  faces->Unload();
  mx::test::ExpectGolden("entry", "combo_faces", 160, 23 * 3, px);
}

TEST_F(ComboPaintTest, GoldenOpenList) {
  Fill({u"Aracaju", u"Belém", u"Curitiba", u"Dourados", u"Encantado"});
  combo->NumberItemsToShow(4);
  combo->ListIndex(1);
  combo->ShowList();
  platform::PumpMessages();
  const RECT control = WindowRect(combo->hWnd());
  const RECT list = WindowRect(combo->USListBox1().hWnd());
  ASSERT_EQ(list.top, control.bottom);
  const platform::CapturedImage screen = platform::CaptureScreen();
  const int w = control.right - control.left, h = list.bottom - control.top;
  std::vector<uint32_t> px;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) px.push_back(screen.pixel(control.left + x, control.top + y));
  mx::test::ExpectGolden("entry", "combo_open", w, h, px);
}

}  // namespace
}  // namespace mx::entry::testing
