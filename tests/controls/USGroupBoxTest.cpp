// USGroupBox: a container whose option buttons form their own group, its band and theme, the bag,
// and the face of a form with two groups.
#include <string>

#include "support/Golden.h"
#include "SmallControlTestSupport.h"
#include "controls/Registration.h"
#include "controls/USGroupBox.h"
#include "controls/USOptionButton.h"
#include "host/Form.h"
#include "host/FormFileReader.h"
#include "platform/Input.h"

namespace mx::controls::testing {
namespace {

// Two groups of two options each, and one option on the form itself.
constexpr const char* kForm = R"(VERSION 5.00
Begin VB.Form frmGroups
   BackColor       =   &H00FFFFFF&
   ClientHeight    =   2700
   ClientWidth     =   5400
   BeginProperty Font
      Name            =   "Arial"
      Size            =   8
   EndProperty
   Begin Morvantix.USGroupBox grpCor
      Height          =   1800
      Left            =   120
      Top             =   120
      Width           =   2400
      Caption         =   "Cor"
      Begin Morvantix.USOptionButton optRed
         Height          =   330
         Left            =   120
         Top             =   480
         Width           =   2000
         Caption         =   "Vermelho"
         BackStyle       =   0
         Value           =   -1  'True
      End
      Begin Morvantix.USOptionButton optBlue
         Height          =   330
         Left            =   120
         Top             =   900
         Width           =   2000
         Caption         =   "Azul"
         BackStyle       =   0
      End
   End
   Begin Morvantix.USGroupBox grpTam
      Height          =   1800
      Left            =   2760
      Top             =   120
      Width           =   2400
      Caption         =   "Tamanho"
      Alignment       =   1
      ForeColor       =   &H00000000&
      BorderColor     =   &H00E2A981&
      GradientHeader1 =   &H00FFEFE3&
      GradientHeader2 =   &H00FFE3CE&
      GradientColor2  =   &H00FFEFE3&
      Theme           =   0
      Begin Morvantix.USOptionButton optSmall
         Height          =   330
         Left            =   120
         Top             =   480
         Width           =   2000
         Caption         =   "Pequeno"
         BackStyle       =   0
         Value           =   -1  'True
      End
      Begin Morvantix.USOptionButton optLarge
         Height          =   330
         Left            =   120
         Top             =   900
         Width           =   2000
         Caption         =   "Grande"
         BackStyle       =   0
      End
   End
   Begin Morvantix.USOptionButton optLoose
      Height          =   330
      Left            =   120
      Top             =   2100
      Width           =   2000
      Caption         =   "Solto"
      Value           =   -1  'True
   End
End
)";

class GroupBoxTest : public SmallControlTest {
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
  template <typename C>
  static std::shared_ptr<C> Get(host::Form& form, const char16_t* name) {
    return std::dynamic_pointer_cast<C>(form.FindControl(name));
  }
  static void ClickOn(const host::Control& c) {
    platform::POINT pt{5, 5};
    platform::ClientToScreen(c.hWnd(), &pt);
    platform::InjectMouseMove(pt.x, pt.y);
    platform::InjectClick();
    platform::PumpMessages();
  }
};

TEST_F(GroupBoxTest, OptionsInAGroupClearOnlyTheirOwn) {
  auto form = LoadForm();
  auto red = Get<USOptionButton>(*form, u"optRed");
  auto blue = Get<USOptionButton>(*form, u"optBlue");
  auto small = Get<USOptionButton>(*form, u"optSmall");
  auto large = Get<USOptionButton>(*form, u"optLarge");
  auto loose = Get<USOptionButton>(*form, u"optLoose");
  ASSERT_TRUE(red && blue && small && large && loose);
  // The options sit in their box's window.
  EXPECT_EQ(platform::GetParent(blue->hWnd()), form->FindControl(u"grpCor")->hWnd());

  ClickOn(*blue);
  EXPECT_TRUE(blue->Value());
  EXPECT_FALSE(red->Value());
  EXPECT_TRUE(small->Value());
  EXPECT_TRUE(loose->Value());
  ClickOn(*large);
  EXPECT_FALSE(small->Value());
  EXPECT_TRUE(blue->Value());
  EXPECT_TRUE(loose->Value());

  const platform::CapturedImage img = platform::CaptureWindow(form->hWnd());
  std::vector<uint32_t> px(static_cast<size_t>(img.width()) * img.height());
  for (int y = 0; y < img.height(); ++y)
    for (int x = 0; x < img.width(); ++x) px[static_cast<size_t>(y) * img.width() + x] = 0xFF000000 | img.pixel(x, y);
  test::ExpectGolden("controls", "groupbox_form", img.width(), img.height(), px);
  form->Unload();
}

TEST_F(GroupBoxTest, CornersAreRoundedAndShowTheFormBeyondTheCurve) {
  auto form = LoadForm();  // white form; the first box in the Windows look, the second in Office
  auto cor = Get<USGroupBox>(*form, u"grpCor");
  auto tam = Get<USGroupBox>(*form, u"grpTam");
  ASSERT_TRUE(cor && tam);
  EXPECT_EQ(cor->CornerRadius(), 3);
  EXPECT_EQ(tam->CornerRadius(), 5);
  const platform::CapturedImage screen = platform::CaptureScreen();
  const auto at = [&](const USGroupBox& box, int x, int y) {
    platform::POINT pt{x, y};
    platform::ClientToScreen(box.hWnd(), &pt);
    return screen.color(pt.x, pt.y);
  };
  const int w = 160, h = 120;  // both boxes are 2400 x 1800 twips
  const uint32_t border = cor->BorderColor();
  ASSERT_NE(border, 0xFFFFFFu);
  // The band is the border's colour in the Windows look: a square corner would show it.
  EXPECT_EQ(at(*cor, 0, 0), 0xFFFFFFu);
  EXPECT_EQ(at(*cor, w - 1, 0), 0xFFFFFFu);
  EXPECT_EQ(at(*cor, 0, h - 1), 0xFFFFFFu);
  EXPECT_EQ(at(*cor, w - 1, h - 1), 0xFFFFFFu);
  // Away from the corners the square frame runs on along the edges, and inside the curve the
  // band goes on.
  EXPECT_EQ(at(*cor, 0, h / 2), border);
  EXPECT_EQ(at(*cor, w / 2, h - 1), border);
  EXPECT_EQ(at(*cor, w - 1, h / 2), border);
  EXPECT_EQ(at(*cor, 3, 3), cor->GradientHeader1());
  // The larger Office radius cuts deeper: a pixel two in from the corner is still outside.
  EXPECT_EQ(at(*tam, 1, 1), 0xFFFFFFu);
  EXPECT_EQ(at(*tam, 0, 0), 0xFFFFFFu);
  EXPECT_EQ(at(*tam, 0, h / 2), tam->BorderColor());
  EXPECT_EQ(at(*cor, 1, 1), border);  // while the small one draws its curve there
  form->Unload();
}

TEST_F(GroupBoxTest, BandFollowsTheFontAndThemeSetsItsColours) {
  auto g = Make<USGroupBox>(0, 0, 160, 100);
  const int32_t small = g->HeaderHeight();
  auto font = std::make_shared<host::StdFont>();
  font->Name(u"Arial");
  font->Size(16);
  g->Font(font);
  EXPECT_GT(g->HeaderHeight(), small + 5);
  g->Theme(3);
  EXPECT_EQ(g->BorderColor(), 0x417400u);
  EXPECT_EQ(g->GradientHeader1(), 0x417400u);
  EXPECT_EQ(g->ForeColor(), 0xFFFFFFu);
  g->Caption(u"Verde");
  const platform::CapturedImage img = Capture(*g);
  EXPECT_EQ(img.color(80, 2), 0x417400u);          // the band
  EXPECT_EQ(img.color(80, 60), 0xFFFFFFu);         // the body
  EXPECT_EQ(img.color(0, 60), 0x417400u);          // the frame
  EXPECT_EQ(img.color(80, g->HeaderHeight() - 1), 0x417400u);

  host::PropertyBag bag;
  g->Alignment(2);
  g->SaveTo(bag);
  auto b = Make<USGroupBox>(0, 120, 160, 100, &bag);
  EXPECT_EQ(b->Caption(), u"Verde");
  EXPECT_EQ(b->Alignment(), 2);
  EXPECT_EQ(b->Theme(), 3);
  EXPECT_EQ(b->GradientHeader1(), 0x417400u);
  EXPECT_EQ(b->HeaderHeight(), g->HeaderHeight());
  // A box lower than its band shows the band only.
  auto t = Make<USGroupBox>(200, 0, 60, 6);
  EXPECT_EQ(t->HeaderHeight(), 6);
}

}  // namespace
}  // namespace mx::controls::testing
