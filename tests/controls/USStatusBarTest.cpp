// USStatusBar: docking at the bottom of its form through resizes, the panel layout with
// auto-size panels, panel clicks, the bag and the face.
#include <string>

#include "support/Golden.h"
#include "SmallControlTestSupport.h"
#include "controls/Registration.h"
#include "controls/USStatusBar.h"
#include "host/Err.h"
#include "host/Form.h"
#include "host/FormFileReader.h"
#include "host/StdPicture.h"
#include "image/API32bppDIB.h"
#include "image/PictureBinding.h"
#include "platform/Input.h"

namespace mx::controls::testing {
namespace {

constexpr const char* kForm = R"(VERSION 5.00
Begin VB.Form frmStatus
   BackColor       =   &H00FFFFFF&
   ClientHeight    =   1800
   ClientWidth     =   4800
   BeginProperty Font
      Name            =   "Arial"
      Size            =   8
   EndProperty
   Begin Morvantix.USStatusBar sbr
      Height          =   330
      Left            =   600
      Top             =   300
      Width           =   1200
      PanelCount      =   3
      Panel1Text      =   "Pronto"
      Panel1Width     =   80
      Panel2Text      =   "Registro 1 de 10"
      Panel2Width     =   40
      Panel2AutoSize  =   -1  'True
      Panel3Text      =   "NUM"
      Panel3Width     =   50
      Panel3Alignment =   1
   End
End
)";

class StatusBarTest : public SmallControlTest {
 protected:
  std::shared_ptr<host::Form> LoadForm() {
    RegisterControls();
    host::FormFile file;
    host::FormFileError error;
    const std::string text(kForm);
    EXPECT_TRUE(host::ParseFormText(std::span(reinterpret_cast<const uint8_t*>(text.data()), text.size()),
                                    [](host::StringView) { return nullptr; }, file, error));
    auto form = host::Form::FromFormFile(file);
    form->Show();
    platform::PumpMessages();
    return form;
  }
  static platform::RECT ClientRectInForm(const host::Form& form, platform::HWND hwnd) {
    platform::RECT r{};
    platform::GetWindowRect(hwnd, &r);
    platform::POINT a{r.left, r.top}, b{r.right, r.bottom};
    platform::ScreenToClient(form.hWnd(), &a);
    platform::ScreenToClient(form.hWnd(), &b);
    return platform::RECT{a.x, a.y, b.x, b.y};
  }
};

TEST_F(StatusBarTest, DocksAtTheBottomAndLaysPanelsOutAfterAFormResize) {
  auto form = LoadForm();
  auto bar = std::dynamic_pointer_cast<USStatusBar>(form->FindControl(u"sbr"));
  ASSERT_TRUE(bar);
  // 4800 x 1800 twips is 320 x 120 pixels; the bar keeps its 22 pixels of height.
  platform::RECT r = ClientRectInForm(*form, bar->hWnd());
  EXPECT_EQ(r.left, 0);
  EXPECT_EQ(r.top, 98);
  EXPECT_EQ(r.right, 320);
  EXPECT_EQ(r.bottom, 120);
  // 320 less the grip (14) and the fixed 80 and 50: the auto-size panel takes 176.
  EXPECT_EQ(bar->PanelLeft(2), 80);
  EXPECT_EQ(bar->PanelRight(2), 256);
  EXPECT_EQ(bar->PanelLeft(3), 256);
  EXPECT_EQ(bar->PanelRight(3), 306);

  form->ClientSize(6000, 2400);  // 400 x 160
  platform::PumpMessages();
  r = ClientRectInForm(*form, bar->hWnd());
  EXPECT_EQ(r.top, 138);
  EXPECT_EQ(r.right, 400);
  EXPECT_EQ(bar->PanelRight(2), 336);
  EXPECT_EQ(bar->PanelRight(3), 386);

  // Narrower than the fixed panels: the auto-size panel keeps its own width as its least.
  form->ClientSize(2400, 1200);
  platform::PumpMessages();
  EXPECT_EQ(bar->PanelRight(2), 120);
  EXPECT_EQ(bar->PanelRight(3), 170);

  // Two auto-size panels share evenly, the last taking the odd pixel; no grip on a fixed form.
  form->BorderStyle(1);
  form->ClientSize(4815, 1800);  // 321 pixels
  platform::PumpMessages();
  bar->PanelAutoSize(3, true);
  EXPECT_EQ(bar->PanelRight(2) - bar->PanelLeft(2), 120);
  EXPECT_EQ(bar->PanelRight(3) - bar->PanelLeft(3), 121);
  form->Unload();
}

TEST_F(StatusBarTest, PanelClicksAndBadIndexes) {
  auto bar = Make<USStatusBar>(0, 0, 300, 22);
  bar->AddPanel(u"A", 100);
  bar->AddPanel(u"B", 50, 2, true);
  EXPECT_EQ(bar->AddPanel(u"C", 60), 3);
  std::vector<int32_t> clicked;
  bar->PanelClick.connect([&](int32_t& i) { clicked.push_back(i); });
  for (int x : {10, 150, 250, 299}) {
    platform::InjectMouseMove(x, 10);
    platform::InjectClick();
    platform::PumpMessages();
  }
  // 300 less the grip of a bar without a form: panel 2 spans 100..226, panel 3 226..286.
  EXPECT_EQ(clicked, (std::vector<int32_t>{1, 2, 3}));
  EXPECT_THROW((void)bar->PanelText(4), host::RuntimeError);
  EXPECT_THROW(bar->RemovePanel(0), host::RuntimeError);
  bar->RemovePanel(1);
  EXPECT_EQ(bar->PanelText(1), u"B");
  EXPECT_EQ(bar->PanelLeft(1), 0);

  // By name, the panel properties take the index first and the value last.
  using host::Variant;
  std::vector<Variant> set{Variant(int32_t{2}), Variant(int32_t{90})};
  bar->Invoke(u"panelwidth", host::CallKind::Let, set);
  EXPECT_EQ(bar->PanelWidth(2), 90);
  std::vector<Variant> get{Variant(int32_t{1})};
  EXPECT_TRUE(bar->Invoke(u"PanelAutoSize", host::CallKind::Get, get).ToBoolean());
  EXPECT_EQ(bar->Invoke(u"PanelAlignment", host::CallKind::Get, get).ToLong(), 2);
  std::vector<Variant> bad{Variant(int32_t{7})};
  EXPECT_THROW(bar->Invoke(u"PanelWidth", host::CallKind::Get, bad), host::RuntimeError);
}

TEST_F(StatusBarTest, BagKeepsPanelsAndTheFace) {
  auto a = Make<USStatusBar>(0, 0, 260, 22);
  auto font = std::make_shared<host::StdFont>();
  font->Name(u"Arial");
  font->Size(8);
  a->Font(font);
  a->AddPanel(u"Pronto", 70);
  a->AddPanel(u"Arquivo salvo", 60, 0, true);
  a->AddPanel(u"12:30", 50, 1);
  host::PropertyBag bag;
  a->SaveTo(bag);
  auto b = Make<USStatusBar>(0, 30, 260, 22, &bag);
  ASSERT_EQ(b->PanelCount(), 3);
  EXPECT_EQ(b->PanelText(2), u"Arquivo salvo");
  EXPECT_TRUE(b->PanelAutoSize(2));
  EXPECT_EQ(b->PanelAlignment(3), 1);
  EXPECT_EQ(b->PanelRight(3), a->PanelRight(3));

  std::vector<platform::CapturedImage> shots{Capture(*a)};
  for (int theme : {0, 4}) {
    b->Theme(theme);
    shots.push_back(Capture(*b));
  }
  int w = 0, h = 0;
  std::vector<uint32_t> px = Stack(shots, w, h);
  test::ExpectGolden("controls", "statusbar_themes", w, h, px);
}

// A w x h bitmap file of one opaque colour (a COLORREF).
host::ByteArray SolidBmp(int w, int h, platform::COLORREF colour) {
  image::API32bppDIB dib;
  EXPECT_TRUE(dib.InitializeDIB(w, h));
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) dib.SetPixel(x, y, static_cast<int32_t>(colour), 255);
  host::ByteArray out;
  EXPECT_TRUE(dib.SaveToStream_Bitmap(out));
  return out;
}

TEST_F(StatusBarTest, PanelPictureIsDrawnAtIconSizeBeforeTheTextWhichMovesRight) {
  constexpr platform::COLORREF kRed = 0x0000FF;
  image::InstallPictureDecoder();
  struct Uninstall {
    ~Uninstall() { image::UninstallPictureDecoder(); }
  } uninstall;
  auto plain = Make<USStatusBar>(0, 0, 200, 22);
  auto iconic = Make<USStatusBar>(0, 40, 200, 22);
  for (auto* bar : {plain.get(), iconic.get()}) {
    bar->ShowSizeGrip(false);
    bar->AddPanel(u"Pronto", 120);
    bar->AddPanel(u"NUM", 70);
  }
  // A 24 x 24 picture is drawn at 16 x 16 all the same.
  iconic->PanelPicture(2, host::StdPicture::FromBytes(SolidBmp(24, 24, kRed)));
  const platform::CapturedImage a = Capture(*plain);
  const platform::CapturedImage b = Capture(*iconic);
  // The icon fills (124, 3)-(140, 19): the panel's left plus 4, centred below the top line.
  for (int y = 0; y < 22; ++y)
    for (int x = 120; x < 145; ++x) {
      const bool inside = x >= 124 && x < 140 && y >= 3 && y < 19;
      EXPECT_EQ(b.color(x, y) == kRed, inside) << x << "," << y;
    }
  // The first panel has no picture and looks the same in both bars.
  for (int y = 0; y < 22; ++y)
    for (int x = 0; x < 119; ++x) ASSERT_EQ(a.color(x, y), b.color(x, y)) << x << "," << y;
  // The second panel's text is the plain bar's, 18 pixels further right.
  int inked = 0;
  for (int y = 1; y < 22; ++y)
    for (int x = 124; x < 160; ++x) {
      ASSERT_EQ(b.color(x + 18, y), a.color(x, y)) << x << "," << y;
      if (a.color(x, y) != a.color(123, y)) ++inked;
    }
  EXPECT_GT(inked, 10);  // the comparison above did cover the text

  // The bag keeps the picture; Nothing takes it away again and the text returns.
  host::PropertyBag bag;
  iconic->SaveTo(bag);
  EXPECT_TRUE(bag.Contains(u"Panel2Picture"));
  EXPECT_FALSE(bag.Contains(u"Panel1Picture"));
  auto loaded = Make<USStatusBar>(0, 80, 200, 22, &bag);
  ASSERT_TRUE(loaded->PanelPicture(2));
  EXPECT_FALSE(loaded->PanelPicture(1));
  EXPECT_EQ(Capture(*loaded).color(130, 10), kRed);
  iconic->PanelPicture(2, nullptr);
  const platform::CapturedImage c = Capture(*iconic);
  for (int y = 0; y < 22; ++y)
    for (int x = 0; x < 200; ++x) ASSERT_EQ(c.color(x, y), a.color(x, y)) << x << "," << y;
  EXPECT_THROW((void)iconic->PanelPicture(3), host::RuntimeError);
}

}  // namespace
}  // namespace mx::controls::testing
