// Message boxes: the style table, and whole boxes run through MX::USMsgBox on the virtual clock
// with keys injected from inside their modal loop.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>

#include "ChromeTestSupport.h"
#include "chrome/MessageForm.h"
#include "chrome/MessageFormButtons.h"
#include "chrome/MessageFormPanel.h"
#include "controls/USButton.h"
#include "controls/USLabel.h"
#include "platform/Desktop.h"
#include "platform/HandleTable.h"
#include "platform/Input.h"
#include "platform/MessageQueue.h"
#include "support/Golden.h"
#include "utility/MX.h"

namespace mx::chrome {
namespace {

using host::String;
using host::Variant;
using utility::MessageBoxRequest;
using utility::MX;
using namespace platform;

// ---- The style table ---------------------------------------------------------------------------

TEST(MessageStyleTest, DefaultButtonFlagsComeOffTheCode) {
  struct Row {
    int32_t buttons, style, defaultButton;
  };
  const Row rows[] = {
      {0, 64, 1},         // nothing asked: a plain Ok box with the information icon
      {4, 4, 1},    {4 + 256, 4, 2},  {3 + 48 + 512, 51, 3}, {256, 0, 2},
      {64 + 256, 64, 2},  // the largest value with the second-button flag
      {68, 68 - 256, 2},  // icon 64 with buttons is inside the first range: it drops below 0
      {580, 580, 1},      // past both ranges: left as it is, so it shows no button
      {4 + 512, 4, 3}
  };
  for (const Row& r : rows) {
    const MessageStyle s = ReadMessageStyle(r.buttons);
    EXPECT_EQ(s.style, r.style) << r.buttons;
    EXPECT_EQ(s.defaultButton, r.defaultButton) << r.buttons;
  }
}

TEST(MessageStyleTest, ButtonTableAndResults) {
  using V = std::vector<String>;
  EXPECT_EQ(MessageButtonCaptions(0), V{u"&Ok"});
  EXPECT_EQ(MessageButtonCaptions(65), (V{u"&Ok", u"&Cancelar"}));
  EXPECT_EQ(MessageButtonCaptions(18), (V{u"&Abortar", u"&Repetir", u"&Ignorar"}));
  EXPECT_EQ(MessageButtonCaptions(51), (V{u"&Sim", u"&Não", u"&Cancelar"}));
  EXPECT_EQ(MessageButtonCaptions(68), (V{u"&Sim", u"&Não"}));
  EXPECT_EQ(CountMessageButtons(ReadMessageStyle(68).style), 0);
  EXPECT_EQ(MessageButtonCaptions(5), (V{u"&Repetir", u"&Cancelar"}));
  // The question icon is not in the table, nor are styles past 69 or kinds past 5.
  for (int32_t style : {32, 33, 36, 6, 22, 70, 80, 325, -1}) EXPECT_EQ(CountMessageButtons(style), 0) << style;

  EXPECT_EQ(MessageButtonResult(u"&Ok"), 1);
  EXPECT_EQ(MessageButtonResult(u"&Cancelar"), 2);
  EXPECT_EQ(MessageButtonResult(u"&Abortar"), 3);
  EXPECT_EQ(MessageButtonResult(u"&Repetir"), 4);
  EXPECT_EQ(MessageButtonResult(u"&Ignorar"), 5);
  EXPECT_EQ(MessageButtonResult(u"&Sim"), 6);
  EXPECT_EQ(MessageButtonResult(u"&Não"), 7);
  EXPECT_EQ(MessageButtonResult(u"Sim"), 0);
}

// ---- Whole boxes -------------------------------------------------------------------------------

class MessageBoxTest : public testing::ChromeTest {
 protected:
  void SetUp() override {
    ChromeTest::SetUp();
    ResetMessageBeeps();
    MX().SetDefautlToolkitTheme(2);
    utility::SetApplicationTitle(u"Sistema");
  }
  void TearDown() override {
    SetMessageFormShownHandler(nullptr);
    MX().SetDefautlToolkitTheme(2);
    utility::SetApplicationTitle(u"");
    ChromeTest::TearDown();
  }

  // Makes the call; `whileShown` runs once the box is up, from inside its modal loop. Input it
  // injects is handled after it returns, as the loop goes on.
  int32_t RunBox(const std::function<int32_t()>& call, const std::function<void(MessageForm&)>& whileShown = {}) {
    bool shown = false;
    SetMessageFormShownHandler([&](const std::shared_ptr<host::Form>& form) {
      shown = true;
      MessageForm& box = form->Name() == u"frmMsgHTML" ? MessageForm::frmMsgHTML() : MessageForm::frmMsg();
      if (whileShown) whileShown(box);
    });
    const int32_t result = call();
    SetMessageFormShownHandler(nullptr);
    EXPECT_TRUE(shown) << "the box never came up";
    return result;
  }

  static void Key(int vk) {
    InjectKeyPress(vk);
    PumpMessages();
  }

  static std::vector<String> VisibleCaptions(const MessageForm& box) {
    std::vector<String> out;
    for (int32_t i = 0; i < 3; ++i)
      if (box.OButton(i)->Control::Visible()) out.push_back(box.OButton(i)->Caption());
    return out;
  }

  static String LabelText(const controls::USLabel& label) {
    String text;
    for (const auto& line : label.CurrentLayout().lines) {
      if (!text.empty()) text += u'\n';
      for (const auto& piece : line.pieces) text += piece.text;
    }
    return text;
  }
};

TEST_F(MessageBoxTest, YesNoWithSecondDefaultFocusesNo) {
  std::vector<String> captions;
  bool noFocused = false;
  const int32_t result = RunBox([] { return MX().USMsgBox(u"Excluir o registro?", 4 + 256); },
                                [&](MessageForm& box) {
                                  captions = VisibleCaptions(box);
                                  noFocused = GetFocus() == box.OButton(1)->hWnd();
                                  Key(VK_RETURN);
                                });
  EXPECT_EQ(captions, (std::vector<String>{u"&Sim", u"&Não"}));
  EXPECT_TRUE(noFocused);
  EXPECT_EQ(result, 7);  // Enter pressed the focused "&Não"
}

TEST_F(MessageBoxTest, HotKeysPressButtonsByTheLetterBehindTheAmpersand) {
  // The key code of a letter is its capital: "n" matches the "N" of "&Não".
  EXPECT_EQ(RunBox([] { return MX().USMsgBox(u"Continuar?", 4); }, [](MessageForm&) { Key('N'); }), 7);
  EXPECT_EQ(RunBox([] { return MX().USMsgBox(u"Continuar?", 3); }, [](MessageForm&) { Key('C'); }), 2);
  EXPECT_EQ(RunBox([] { return MX().USMsgBox(u"Falhou.", 2); }, [](MessageForm&) { Key('I'); }), 5);
  // A letter no caption has does nothing; the box then goes on until its time-out.
  MessageBoxRequest r;
  r.Prompt = u"Continuar?";
  r.Buttons = 4;
  r.WaitTimes = 500;
  EXPECT_EQ(RunBox([&] { return MX().USMsgBox(r); }, [](MessageForm&) { Key('X'); }), 0);
}

TEST_F(MessageBoxTest, EscClosesOnlyABoxWithOneButton) {
  bool stillUp = false;
  const int32_t result = RunBox([] { return MX().USMsgBox(u"Salvar?", 4); },
                                [&](MessageForm& box) {
                                  Key(VK_ESCAPE);
                                  RunFor(50);
                                  stillUp = box.Form()->IsLoaded();
                                  Key('S');
                                });
  EXPECT_TRUE(stillUp);
  EXPECT_EQ(result, 6);
  // One button: Esc closes without a button.
  EXPECT_EQ(RunBox([] { return MX().USMsgBox(u"Pronto.", 0); }, [](MessageForm&) { Key(VK_ESCAPE); }), 0);
  // EscToClose False keeps even a one-button box up; Enter still answers.
  bool keptUp = false;
  auto noEsc = [] {
    MessageBoxRequest r;
    r.Prompt = u"Pronto.";
    r.EscToClose = false;
    return MX().USMsgBox(r);
  };
  EXPECT_EQ(RunBox(noEsc,
                   [&](MessageForm& box) {
                     Key(VK_ESCAPE);
                     RunFor(50);
                     keptUp = box.Form()->IsLoaded();
                     Key(VK_RETURN);
                   }),
            1);
  EXPECT_TRUE(keptUp);
}

TEST_F(MessageBoxTest, SingleAmpersandShowsAsTextAndMakesNoHotKey) {
  String shown, accessKeys = u"?";
  bool stillUp = false;
  const int32_t result = RunBox([] { return MX().USMsgBox(u"Tom &Jerry", 1); },
                                [&](MessageForm& box) {
                                  shown = LabelText(*box.lblMensagemEx());
                                  accessKeys = box.lblMensagemEx()->AccessKeys();
                                  // "J", bare or with Alt, belongs to nothing.
                                  Key('J');
                                  InjectKey(VK_MENU, true);
                                  InjectKeyPress('J');
                                  InjectKey(VK_MENU, false);
                                  RunFor(50);
                                  stillUp = box.Form()->IsLoaded();
                                  Key('O');
                                });
  EXPECT_EQ(shown, u"Tom &Jerry");
  EXPECT_EQ(accessKeys, u"");
  EXPECT_TRUE(stillUp);
  EXPECT_EQ(result, 1);
}

TEST_F(MessageBoxTest, WidthLimitsAndSizing) {
  const float tpp = 15;
  // A short prompt: the label is held at 3500 twips; three buttons need 4500.
  float labelWidth = 0, formWidth = 0, formHeight = 0, labelHeight = 0;
  RunBox([] { return MX().USMsgBox(u"Ok?", 0); },
         [&](MessageForm& box) {
           labelWidth = box.lblMensagemEx()->Width();
           formWidth = box.Form()->Width();
           formHeight = box.Form()->Height();
           labelHeight = box.lblMensagemEx()->Height();
           Key(VK_RETURN);
         });
  EXPECT_EQ(labelWidth, 3500);
  EXPECT_EQ(formWidth, std::round((240 + 3500 + 240) / tpp) * tpp);
  EXPECT_NEAR(formHeight, 600 + labelHeight + 820, tpp / 2);

  RunBox([] { return MX().USMsgBox(u"Ok?", 2); },
         [&](MessageForm& box) {
           labelWidth = box.lblMensagemEx()->Width();
           Key('A');
         });
  EXPECT_EQ(labelWidth, 4500);

  // An empty prompt still gives a box at the minimum width.
  RunBox([] { return MX().USMsgBox(u"", 0); },
         [&](MessageForm& box) {
           labelWidth = box.lblMensagemEx()->Width();
           Key(VK_RETURN);
         });
  EXPECT_EQ(labelWidth, 3500);
}

TEST_F(MessageBoxTest, LongPromptWrapsAt8000Twips) {
  String prompt;
  for (int i = 0; i < 40; ++i) prompt += u"palavra" + host::FromUtf8(std::to_string(i)) + u" ";
  float labelWidth = 0, formWidth = 0;
  size_t lines = 0;
  int32_t widest = 0;
  RunBox([&] { return MX().USMsgBox(prompt, 0); },
         [&](MessageForm& box) {
           labelWidth = box.lblMensagemEx()->Width();
           formWidth = box.Form()->Width();
           lines = box.lblMensagemEx()->CurrentLayout().lines.size();
           widest = box.lblMensagemEx()->CurrentLayout().width;
           Key(VK_RETURN);
         });
  EXPECT_EQ(labelWidth, 8000);
  EXPECT_GT(lines, 1u);
  EXPECT_LE(widest, 8000 / 15);
  EXPECT_EQ(formWidth, 8475);  // 240 + 8000 + 240 twips, in whole pixels
}

TEST_F(MessageBoxTest, TimeOutEndsWithZeroAndZeroMeansNone) {
  auto timed = [](int32_t wait, int32_t buttons) {
    MessageBoxRequest r;
    r.Prompt = u"Aguarde";
    r.Buttons = buttons;
    r.WaitTimes = wait;
    return MX().USMsgBox(r);
  };
  uint64_t shownAt = 0;
  bool timerRunning = false;
  const int32_t result = RunBox([&] { return timed(3000, 4); },
                                [&](MessageForm& box) {
                                  shownAt = GetTickCount64();
                                  timerRunning = box.UnloadTimerRunning();
                                });
  EXPECT_TRUE(timerRunning);
  EXPECT_EQ(result, 0);
  EXPECT_GE(GetTickCount64() - shownAt, 2990u);
  EXPECT_LT(GetTickCount64() - shownAt, 3100u);
  EXPECT_FALSE(MessageForm::frmMsg().UnloadTimerRunning());

  // The icon 32 gives no button at all: only the time-out ends such a box.
  int32_t buttons = -1;
  EXPECT_EQ(RunBox([&] { return timed(1000, 32 + 4); },
                   [&](MessageForm& box) { buttons = static_cast<int32_t>(VisibleCaptions(box).size()); }),
            0);
  EXPECT_EQ(buttons, 0);

  // WaitTimes 0: a minute later the box is still there.
  bool stillUp = false;
  EXPECT_EQ(RunBox([&] { return timed(0, 0); },
                   [&](MessageForm& box) {
                     EXPECT_FALSE(box.UnloadTimerRunning());
                     RunFor(60000);
                     stillUp = box.Form()->IsLoaded();
                     Key(VK_RETURN);
                   }),
            1);
  EXPECT_TRUE(stillUp);
}

TEST_F(MessageBoxTest, MarkupFormOnAnyLessThan) {
  const int32_t plainBefore = MessageForm::frmMsg().ShowCount();
  const int32_t markupBefore = MessageForm::frmMsgHTML().ShowCount();
  String shown;
  EXPECT_EQ(RunBox([] { return MX().USMsgBoxEx(u"a < b", 0); },
                   [&](MessageForm& box) {
                     EXPECT_TRUE(box.IsMarkup());
                     shown = LabelText(*box.lblMensagemEx());
                     Key(VK_RETURN);
                   }),
            1);
  EXPECT_EQ(shown, u"a < b");
  // Tags are read; an "&" is still a character.
  bool bold = false;
  RunBox([] { return MX().USMsgBoxEx(u"<b>Atenção</b> & cuidado", 0); },
         [&](MessageForm& box) {
           const auto& pieces = box.lblMensagemEx()->CurrentLayout().lines.at(0).pieces;
           bold = !pieces.empty() && pieces.front().style.bold && pieces.front().text == u"Atenção";
           shown = LabelText(*box.lblMensagemEx());
           Key(VK_RETURN);
         });
  EXPECT_TRUE(bold);
  EXPECT_EQ(shown, u"Atenção & cuidado");
  // Without "<" USMsgBoxEx uses the plain form; USMsgBox always does, tags and all.
  RunBox([] { return MX().USMsgBoxEx(u"sem marcas", 0); }, [](MessageForm&) { Key(VK_RETURN); });
  RunBox([] { return MX().USMsgBox(u"<b>x</b>", 0); },
         [&](MessageForm& box) {
           shown = LabelText(*box.lblMensagemEx());
           Key(VK_RETURN);
         });
  EXPECT_EQ(shown, u"<b>x</b>");
  EXPECT_EQ(MessageForm::frmMsg().ShowCount() - plainBefore, 2);
  EXPECT_EQ(MessageForm::frmMsgHTML().ShowCount() - markupBefore, 2);
}

TEST_F(MessageBoxTest, DefaultThemeWinsAndArgumentsOnlyWhereAsked) {
  MX().SetDefautlToolkitTheme(0);
  auto font = std::make_shared<host::StdFont>(u"Arial", 12, true);
  int32_t frameTheme = -1, buttonTheme = -1;
  host::OLE_COLOR fore = 1, border = 1, gradient1 = 1;
  bool fontEverywhere = false;
  RunBox([&] { return MX().USMsgBox(u"Tema", 1, Variant(), 4, 0xFFFFFF, 0x0000FF, 0x7B3E00, 0x501A00, 0, 0x9A572B,
                                    0x9A572B, 0x9A572B, 0x9A572B, 0xFFFFFF, 0xFFFFFF, font); },
         [&](MessageForm& box) {
           frameTheme = box.USForm1()->Theme();
           buttonTheme = box.OButton(0)->Theme();
           fore = box.OButton(0)->ForeColor();
           border = box.OButton(1)->BorderColor();
           gradient1 = box.OButton(0)->GradientColor1();
           fontEverywhere = box.lblMensagemEx()->Font() == font && box.OButton(1)->Font() == font &&
                            box.USForm1()->Font() == font;
           Key(VK_RETURN);
         });
  EXPECT_TRUE(fontEverywhere);
  EXPECT_EQ(frameTheme, 0);
  EXPECT_EQ(buttonTheme, 0);
  EXPECT_EQ(fore, 0x000000u);      // the default argument left theme 0's colour
  EXPECT_EQ(border, 0x0000FFu);    // a differing one is applied
  EXPECT_EQ(gradient1, 0xFFEFE3u);  // theme 0's first gradient colour
}

TEST_F(MessageBoxTest, TitleSoundAndProvider) {
  String caption;
  RunBox([] { return MX().USMsgBox(u"x", 48); },
         [&](MessageForm& box) {
           caption = box.USForm1()->Caption();
           Key(VK_RETURN);
         });
  EXPECT_EQ(caption, u"Sistema");  // no title: the application's
  EXPECT_EQ(MessageBeepCount(), 1);
  EXPECT_EQ(LastMessageBeep(), 0x30u);

  RunBox([] { return MX().USMsgBox(u"x", 16, Variant(String(u"Erro"))); },
         [&](MessageForm& box) {
           caption = box.USForm1()->Caption();
           Key(VK_RETURN);
         });
  EXPECT_EQ(caption, u"Erro");
  EXPECT_EQ(LastMessageBeep(), 0x10u);

  MessageBoxRequest quiet;
  quiet.Prompt = u"x";
  quiet.PlaySound = false;
  RunBox([&] { return MX().USMsgBox(quiet); }, [](MessageForm&) { Key(VK_RETURN); });
  EXPECT_EQ(MessageBeepCount(), 2);

  // Without a provider nothing shows and the answer is 0.
  utility::SetMessageBoxProvider(nullptr);
  EXPECT_EQ(MX().USMsgBox(u"x", 0), 0);
  EXPECT_EQ(MessageBeepCount(), 2);
  InstallMessageForms();
  EXPECT_TRUE(utility::HasMessageBoxProvider());
}

TEST_F(MessageBoxTest, FormIsMadeOnceAndReused) {
  std::shared_ptr<host::Form> first, second;
  RunBox([] { return MX().USMsgBox(u"um", 0); },
         [&](MessageForm& box) {
           first = box.Form();
           Key(VK_RETURN);
         });
  EXPECT_FALSE(first->IsLoaded());  // the box unloads when it closes
  RunBox([] { return MX().USMsgBox(u"dois", 4); },
         [&](MessageForm& box) {
           second = box.Form();
           Key('S');
         });
  EXPECT_EQ(first, second);
  EXPECT_TRUE(host::Forms().empty());
}

TEST_F(MessageBoxTest, CloseBoxAnswersZeroAndNothingIsLeftBehind) {
  const HandleType types[] = {HandleType::Window, HandleType::DC, HandleType::Bitmap, HandleType::Font,
                              HandleType::Brush, HandleType::Region};
  std::vector<int> before;
  for (HandleType t : types) before.push_back(LiveHandleCount(t));
  const int32_t result = RunBox([] { return MX().USMsgBox(u"Fechar pela caixa?", 4); },
                                [](MessageForm& box) {
                                  const RECT r = box.USForm1()->ButtonRect(CloseButton);
                                  ClickAt(box.USForm1()->hWnd(), (r.left + r.right) / 2, (r.top + r.bottom) / 2);
                                });
  EXPECT_EQ(result, 0);
  RunFor(500);  // the subclass blocks go on their clean-up timers
  for (size_t i = 0; i < before.size(); ++i)
    EXPECT_EQ(LiveHandleCount(types[i]), before[i]) << "handle type " << static_cast<int>(types[i]);
}

TEST_F(MessageBoxTest, HostTimersRunWhileTheBoxWaits) {
  int ticks = 0;
  int32_t nested = -1;
  const UINT_PTR timer = SetTimer(0, 0, 100, [&](HWND, UINT, UINT_PTR, DWORD) {
    // A box asked for while the same form is up gets no second form: it answers 0 at once.
    if (++ticks == 3) nested = MX().USMsgBox(u"Outra", 0);
  });
  MessageBoxRequest r;
  r.Prompt = u"Aguarde";
  r.WaitTimes = 1000;
  EXPECT_EQ(RunBox([&] { return MX().USMsgBox(r); }), 0);
  KillTimer(0, timer);
  EXPECT_GE(ticks, 9);
  EXPECT_LE(ticks, 11);
  EXPECT_EQ(nested, 0);
}

TEST_F(MessageBoxTest, FadesTranslucencyAndGradient) {
  MessageBoxRequest r;
  r.Prompt = u"Efeitos";
  r.FadeIN = true;
  r.FadeOUT = true;
  uint64_t shownAt = 0, closeAt = 0;
  BYTE alpha = 0;
  const uint64_t start = GetTickCount64();
  RunBox([&] { return MX().USMsgBox(r); },
         [&](MessageForm& box) {
           shownAt = GetTickCount64();
           GetLayeredWindowAttributes(box.Form()->hWnd(), nullptr, &alpha, nullptr);
           closeAt = GetTickCount64();
           Key(VK_RETURN);
         });
  // The fade in (50 steps of 25 ms) is over when the box is ready, fully opaque.
  EXPECT_GE(shownAt - start, 1250u);
  EXPECT_EQ(alpha, 255);
  // The fade out runs before the box goes.
  EXPECT_GE(GetTickCount64() - closeAt, 1275u);

  MessageBoxRequest t;
  t.Prompt = u"Translúcido";
  t.TranslucentLevel = 128;
  t.DrawGradient = true;
  t.BackgoundGradientColor1 = 0x0000FF;  // red at the top
  t.BackgoundGradientColor2 = 0xFF0000;  // blue at the bottom
  std::vector<uint32_t> column;
  int height = 0;
  RunBox([&] { return MX().USMsgBox(t); },
         [&](MessageForm& box) {
           GetLayeredWindowAttributes(box.Form()->hWnd(), nullptr, &alpha, nullptr);
           RECT rc{};
           GetClientRect(box.Form()->hWnd(), &rc);
           height = rc.bottom;
           const CapturedImage img = CaptureWindow(box.Form()->hWnd());
           // Left margin, clear of the frame's edge strip: the ground itself.
           for (int y = 0; y < img.height(); ++y) column.push_back(img.pixel(8, y) & 0xFFFFFF);
           Key(VK_RETURN);
         });
  EXPECT_EQ(alpha, 128);
  ASSERT_GT(height, 100);
  // The ramp from red to blue over the client height, for rows below the caption strip and
  // above the buttons.
  const int n = height - 1;
  for (int y : {40, 60, height - 45}) {
    const uint32_t red = 255 - (255 * y) / n, blue = (255 * y) / n;
    EXPECT_EQ(column.at(static_cast<size_t>(y)), (red << 16) | blue) << "row " << y;
  }
}

TEST_F(MessageBoxTest, GoldenPlainAndMarkupBoxes) {
  auto shoot = [&](const std::function<int32_t()>& call, const char* name) {
    RunBox(call, [&](MessageForm& box) {
      PumpMessages();
      const CapturedImage img = CaptureWindow(box.Form()->hWnd());
      test::ExpectGolden("chrome", name, img.width(), img.height(), Pixels(img));
      Key(VK_RETURN);
    });
  };
  shoot([] { return MX().USMsgBox(u"Deseja salvar as alterações?", 3 + 48, Variant(String(u"Cadastro"))); },
        "msgbox_plain");
  shoot([] { return MX().USMsgBoxEx(u"<b>Atenção:</b> o arquivo <c=red>não</c> foi salvo.<br>Tentar de novo?", 5,
                                    Variant(String(u"Arquivo"))); },
        "msgbox_markup");
}

}  // namespace
}  // namespace mx::chrome
