// The ribbon's model and layout: text handling on add, looks, persistence, the placement of tabs,
// categories, buttons and tab buttons, tab selection, removals, pictures and late binding.
#include <gtest/gtest.h>

#include "USRibbonTestSupport.h"
#include "chrome/USRibbonExample.h"
#include "controls/Registration.h"
#include "controls/USButton.h"
#include "controls/USImageList.h"
#include "host/ControlRegistry.h"
#include "host/Err.h"
#include "image/API32bppDIB.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImages.h"

namespace mx::chrome::testing {
namespace {

using A = RibbonArray;
using host::Variant;

TEST(RibbonText, ToolTipIsCleanedFromTheTextOrTheCaption) {
  struct Case {
    const char16_t* tip;
    const char16_t* caption;
    const char16_t* expected;
  } cases[] = {
      {u"", u"  &Salvar\r\ncomo  ", u"Salvar como"},
      {u"Abre   o\r\n\r\narquivo", u"&Abrir", u"Abre o arquivo"},
      {u"  R&&D  ", u"x", u"RD"},
      {u"", u"", u""},
      {u"   ", u"Cap", u""},
      // A lone line feed is not a CR LF and stays.
      {u"a\nb", u"", u"a\nb"},
  };
  for (const Case& c : cases) EXPECT_EQ(CleanToolTipText(c.tip, c.caption), String(c.expected)) << host::ToUtf8(c.caption);
}

TEST(RibbonText, HotKeyIsTheLastMarkerNotPartOfADoubledAmpersand) {
  struct Case {
    const char16_t* caption;
    const char16_t* key;
  } cases[] = {
      {u"&Colar", u"c"},       {u"Co&Piar", u"p"},   {u"&Abrir &Salvar", u"s"},
      {u"Salvar && Sair", u""}, {u"Sair&&", u""},     {u"a&&b", u""},
      {u"&A&&", u"a"},          {u"&&&X", u"x"},      {u"X", u""},
      {u"&", u""},              {u"", u""},           {u"Fim&", u""},
  };
  for (const Case& c : cases) EXPECT_EQ(RibbonHotKey(c.caption), String(c.key)) << host::ToUtf8(c.caption);
}

TEST_F(RibbonTest, AddKeepsCaptionsWithCrLfAsBlanksAndTheHotKeyPerButton) {
  auto r = MakeFilled();
  EXPECT_EQ(r->TabCount(), 3);
  EXPECT_EQ(r->CatCount(), 3);
  EXPECT_EQ(r->ButtonCount(), 5);
  EXPECT_EQ(r->TabButtonCount(), 2);
  EXPECT_EQ(r->CatCaption(0), u"\u00c1rea de Transfer\u00eancia");
  EXPECT_EQ(r->ButtonToolTip(0), u"Colar");
  EXPECT_EQ(r->ButtonToolTip(3), u"Localizar texto");
  EXPECT_EQ(r->ButtonHotKey(1), u"p");
  EXPECT_EQ(r->TabButtonToolTip(0), u"Ajuda");
  // Alt with the hot keys of the current tab's buttons reaches the ribbon.
  EXPECT_EQ(r->AccessKeys(), u"cptl");
}

TEST_F(RibbonTest, ThemeSetsTheTextColoursTheTabOffsetAndTheLayoutValue) {
  auto r = MakeFilled();
  for (int32_t theme = 0; theme <= 6; ++theme) {
    r->Theme(theme);
    const bool office = theme <= 1;
    const OLE_COLOR text = office ? 0x80000012 : 0x000000;
    EXPECT_EQ(r->ForeColorButton(), text) << theme;
    EXPECT_EQ(r->ForeColorCat(), text) << theme;
    EXPECT_EQ(r->ForeColorTabSelected(), text) << theme;
    EXPECT_EQ(r->ForeColorTabNormal(), office ? 0x80000012u : 0xFFFFFFu) << theme;
    EXPECT_EQ(r->TabOffset(), office ? 90 : 20) << theme;
    EXPECT_EQ(r->LastLayoutValue(), office ? 390 : 430) << theme;
    // The category plates stand at the layout value in pixels.
    EXPECT_EQ(r->Element(A::Cat_Left_off, 0).Top, office ? 26 : 28) << theme;
    EXPECT_EQ(r->Element(A::Tab_left, 0).Left, office ? 90 : 20) << theme;
  }
  r->ShowTabs(false);
  EXPECT_EQ(r->LastLayoutValue(), 90);
  r->Theme(1);
  EXPECT_EQ(r->LastLayoutValue(), 50);
  EXPECT_EQ(r->Element(A::Cat_Left_off, 0).Top, 3);
}

TEST_F(RibbonTest, DefaultsAreNotWrittenAndEveryPropertyRoundTrips) {
  auto r = MakeRibbon();
  host::PropertyBag empty;
  r->SaveTo(empty);
  for (const char16_t* key : {u"Theme", u"TabOffSet", u"ButtonHandPointer", u"TabButtonHandPointer", u"ShowButtonFocus",
                              u"ShowTabs", u"ButtonCenter", u"ForeColorCat", u"ForeColorButton",
                              u"ForeColorTabSelected", u"ForeColorTabNormal", u"ImageList", u"ImageListKey"})
    EXPECT_TRUE(empty.ReadProperty(key, Variant(u"absent")).IsString()) << host::ToUtf8(key);

  r->Theme(4);
  r->TabOffset(33);
  r->ButtonHandPointer(true);
  r->TabButtonHandPointer(true);
  r->ShowButtonFocus(true);
  r->ShowTabs(false);
  r->ButtonCenter(true);
  r->ForeColorCat(0x112233);
  r->ForeColorButton(0x445566);
  r->ForeColorTabSelected(0x778899);
  r->ForeColorTabNormal(0x0000FF);
  r->ImageListKey(u"icons");
  host::PropertyBag bag;
  r->SaveTo(bag);
  // The offset keeps its capital S in the bag.
  EXPECT_EQ(bag.ReadProperty(u"TabOffSet", Variant(int32_t{-1})).ToLong(), 33);

  auto copy = MakeRibbon(bag);
  EXPECT_EQ(copy->Theme(), 4);
  EXPECT_EQ(copy->TabOffset(), 33);
  EXPECT_TRUE(copy->ButtonHandPointer());
  EXPECT_TRUE(copy->TabButtonHandPointer());
  EXPECT_TRUE(copy->ShowButtonFocus());
  EXPECT_FALSE(copy->ShowTabs());
  EXPECT_TRUE(copy->ButtonCenter());
  // The saved colours apply, not the look's.
  EXPECT_EQ(copy->ForeColorCat(), 0x112233u);
  EXPECT_EQ(copy->ForeColorButton(), 0x445566u);
  EXPECT_EQ(copy->ForeColorTabSelected(), 0x778899u);
  EXPECT_EQ(copy->ForeColorTabNormal(), 0x0000FFu);
  EXPECT_EQ(copy->ImageListKey(), u"icons");
}

TEST_F(RibbonTest, TabsRunFromTheOffsetAndOnlyTheCurrentOneShowsItsSlices) {
  auto r = MakeFilled();
  EXPECT_EQ(r->CurrentTab(), 0);
  int32_t x = 20;
  for (int32_t row = 0; row < 3; ++row) {
    const RibbonElement& left = r->Element(A::Tab_left, row);
    const RibbonElement& centre = r->Element(A::Tab_center, row);
    const RibbonElement& right = r->Element(A::Tab_right, row);
    EXPECT_EQ(left.Left, x) << row;
    // Slices join without a gap, and the hit area covers all three.
    EXPECT_EQ(centre.Left, left.Left + left.Width);
    EXPECT_EQ(right.Left, centre.Left + centre.Width);
    const RibbonElement& mouse = r->Element(A::TabMouse, row);
    EXPECT_EQ(mouse.Left, left.Left);
    EXPECT_EQ(mouse.Width, left.Width + centre.Width + right.Width);
    EXPECT_EQ(left.Visible, row == 0);
    EXPECT_EQ(r->Element(A::Tab_caption, row).ForeColor, row == 0 ? 0x000000u : 0xFFFFFFu);
    x = mouse.Left + mouse.Width + 2;
  }
  // Each tab is as wide as its caption plus padding and slices: a longer caption, a wider tab.
  EXPECT_GT(r->Element(A::TabMouse, 1).Width, r->Element(A::TabMouse, 2).Width);
}

TEST_F(RibbonTest, CategoriesOfTheCurrentTabSitSideBySideWithTheirButtons) {
  auto r = MakeFilled();
  const RibbonElement& clip = r->Element(A::CatMouse, 0);
  const RibbonElement& edit = r->Element(A::CatMouse, 1);
  EXPECT_TRUE(clip.Visible);
  EXPECT_TRUE(edit.Visible);
  EXPECT_FALSE(r->Element(A::CatMouse, 2).Visible);
  EXPECT_EQ(clip.Left, 4);
  EXPECT_EQ(edit.Left, clip.Left + clip.Width + 3);
  // Buttons in order from the plate's margin, each as wide as the wider of picture and caption
  // plus 20.
  int32_t x = clip.Left + 4;
  for (int32_t row = 0; row < 3; ++row) {
    const RibbonElement& b = r->Element(A::ButMouse, row);
    EXPECT_EQ(b.Left, x) << row;
    const int32_t caption = r->Element(A::Button_Caption, row).Width;
    EXPECT_EQ(b.Width, std::max(32, caption) + 20) << row;
    EXPECT_EQ(r->Element(A::Button_Icon, row).Width, 32);
    x += b.Width;
  }
  EXPECT_GE(clip.Width, x - clip.Left + 4);
  EXPECT_FALSE(r->Element(A::ButMouse, 4).Visible);
  // The button with a menu shows its mark under the caption.
  EXPECT_TRUE(r->Element(A::Glip_off, 0).Visible);
  EXPECT_FALSE(r->Element(A::Glip_off, 1).Visible);
  EXPECT_GT(r->Element(A::Glip_off, 0).Top, r->Element(A::Button_Caption, 0).Top);

  // The launcher sits 15 pixels in from the plate's right, the caption centred in what is left
  // of the plate beside the launcher's band of 30.
  const RibbonElement& dlg = r->Element(A::Cat_Dlg, 0);
  EXPECT_TRUE(dlg.Visible);
  EXPECT_EQ(dlg.Left, clip.Left + clip.Width - 15);
  const RibbonElement& caption = r->Element(A::Cat_Caption, 0);
  EXPECT_EQ(caption.Left, clip.Left + (clip.Width - 30 - caption.Width) / 2);
  EXPECT_LE(caption.Left + caption.Width, dlg.Left);
  EXPECT_FALSE(r->Element(A::Cat_Dlg, 1).Visible);
  const RibbonElement& editCaption = r->Element(A::Cat_Caption, 1);
  EXPECT_EQ(editCaption.Left, edit.Left + (edit.Width - editCaption.Width) / 2);
}

TEST_F(RibbonTest, ALongCategoryCaptionWidensItsPlate) {
  auto r = MakeRibbon();
  r->AddTab(0, u"T");
  r->AddCat(1, 0, u"C");
  r->AddCat(2, 0, u"Uma categoria com um t\u00edtulo bem comprido");
  for (int32_t cat : {1, 2}) r->AddButton(cat * 10, cat, u"B", ExamplePicture("star.png"));
  r->Refresh();
  const RibbonElement& narrow = r->Element(A::CatMouse, 0);
  const RibbonElement& wide = r->Element(A::CatMouse, 1);
  // The short one is as wide as its button plus the margins; the long one as its caption.
  EXPECT_EQ(narrow.Width, 32 + 20 + 8);
  EXPECT_EQ(wide.Width, r->Element(A::Cat_Caption, 1).Width + 12);
  EXPECT_GT(wide.Width, narrow.Width * 3);
  // The plate's slices follow the width.
  EXPECT_EQ(r->Element(A::Cat_Right_off, 1).Left + 3, wide.Left + wide.Width);
}

TEST_F(RibbonTest, ButtonCenterCentresPictureAndCaptionInTheButton) {
  auto r = MakeRibbon(Bag({{u"ButtonCenter", true}}));
  r->AddTab(0, u"T");
  r->AddCat(1, 0, u"C");
  r->AddButton(5, 1, u"Um r\u00f3tulo longo", ExamplePicture("star.png"));
  r->Refresh();
  const RibbonElement& b = r->Element(A::ButMouse, 0);
  const RibbonElement& icon = r->Element(A::Button_Icon, 0);
  const RibbonElement& caption = r->Element(A::Button_Caption, 0);
  EXPECT_EQ(icon.Left, b.Left + (b.Width - 32) / 2);
  EXPECT_EQ(caption.Left, b.Left + 10);
  r->ButtonCenter(false);
  EXPECT_EQ(r->Element(A::Button_Icon, 0).Left, b.Left + 10);
}

TEST_F(RibbonTest, TabButtonsStandFortyPixelsApartFromTheRightEdge) {
  auto r = MakeFilled();
  platform::RECT rc{};
  platform::GetClientRect(r->hWnd(), &rc);
  for (int32_t row = 0; row < 2; ++row) {
    const RibbonElement& mouse = r->Element(A::ButTabMouse, row);
    EXPECT_EQ(mouse.Left, rc.right - 40 * (row + 1) + 8) << row;
    EXPECT_TRUE(mouse.Visible);
    EXPECT_EQ(r->Element(A::TabButon_Icon, row).Width, 16);
  }
}

TEST_F(RibbonTest, ActivateTabSelectsInRangeAndIgnoresTheCurrentOneAndOutOfRange) {
  auto r = MakeFilled();
  const int32_t composed = r->ComposeCount();
  r->ActivateTab(0);
  EXPECT_EQ(r->ComposeCount(), composed);
  r->ActivateTab(-1);
  r->ActivateTab(4);
  EXPECT_EQ(r->CurrentTab(), 0);
  EXPECT_EQ(r->ComposeCount(), composed);

  r->ActivateTab(1);
  EXPECT_EQ(r->CurrentTab(), 1);
  EXPECT_TRUE(r->Element(A::CatMouse, 2).Visible);
  EXPECT_FALSE(r->Element(A::CatMouse, 0).Visible);
  EXPECT_TRUE(r->Element(A::ButMouse, 4).Visible);
  EXPECT_FALSE(r->Element(A::ButMouse, 0).Visible);
  EXPECT_TRUE(r->Element(A::Tab_center, 1).Visible);
  EXPECT_FALSE(r->Element(A::Tab_center, 0).Visible);
  EXPECT_EQ(r->Element(A::Tab_caption, 1).ForeColor, 0x000000u);
  EXPECT_EQ(r->Element(A::Tab_caption, 0).ForeColor, 0xFFFFFFu);
  EXPECT_EQ(r->AccessKeys(), u"t");

  // The count itself is inside the range: no tab has that Index, so the row is empty.
  r->ActivateTab(3);
  EXPECT_EQ(r->CurrentTab(), 3);
  for (int32_t row = 0; row < 3; ++row) EXPECT_FALSE(r->Element(A::CatMouse, row).Visible);
  EXPECT_EQ(r->AccessKeys(), u"");
}

TEST_F(RibbonTest, ItemsOfUnknownOwnersAreKeptButNotShown) {
  auto r = MakeRibbon();
  r->AddTab(0, u"T");
  r->AddCat(1, 0, u"C");
  r->AddCat(2, 9, u"Sem aba");
  r->AddButton(7, 1, u"B", ExamplePicture("star.png"));
  r->AddButton(8, 42, u"Sem categoria");
  r->Refresh();
  EXPECT_EQ(r->CatCount(), 2);
  EXPECT_EQ(r->ButtonCount(), 2);
  EXPECT_TRUE(r->Element(A::CatMouse, 0).Visible);
  EXPECT_FALSE(r->Element(A::CatMouse, 1).Visible);
  EXPECT_TRUE(r->Element(A::ButMouse, 0).Visible);
  EXPECT_FALSE(r->Element(A::ButMouse, 1).Visible);
}

TEST_F(RibbonTest, RemovalsTakeTheirArraysBackToTheTemplate) {
  auto r = MakeRibbon();
  // Nothing added: nothing to remove, and nothing breaks.
  r->RemoveButton();
  r->RemoveCat();
  r->RemoveTab();
  r->Clear();
  EXPECT_EQ(r->Elements(A::ButMouse).size(), 1u);

  FillStandard(*r);
  r->Refresh();
  EXPECT_EQ(r->Elements(A::ButMouse).size(), 6u);
  EXPECT_EQ(r->Elements(A::Glip_on).size(), 6u);
  r->RemoveButton();
  EXPECT_EQ(r->ButtonCount(), 0);
  for (A a : {A::Button_left, A::Button_center_over, A::Button_Icon, A::Button_Caption, A::Glip_off, A::ButMouse})
    EXPECT_EQ(r->Elements(a).size(), 1u) << host::ToUtf8(RibbonArrayName(a));
  EXPECT_EQ(r->AccessKeys(), u"");
  // Categories stay until they go themselves.
  EXPECT_EQ(r->Elements(A::CatMouse).size(), 4u);
  r->RemoveCat();
  EXPECT_EQ(r->Elements(A::Cat_Dlg_down).size(), 1u);
  EXPECT_EQ(r->Elements(A::Tab_caption).size(), 4u);
  r->RemoveTab();
  EXPECT_EQ(r->Elements(A::TabMouse).size(), 1u);
  EXPECT_EQ(r->TabButtonCount(), 2);
  r->Clear();
  EXPECT_EQ(r->TabButtonCount(), 0);
  EXPECT_EQ(r->Elements(A::ButTabMouse).size(), 1u);
  EXPECT_EQ(r->HitTest(r->Element(A::BarraCenter, 0).Left + 50, 60).kind, RibbonHit::None);
}

TEST_F(RibbonTest, HiddenTabStripKeepsTheFirstTabsView) {
  auto r = MakeRibbon(Bag({{u"ShowTabs", false}}));
  FillStandard(*r);
  r->Refresh();
  EXPECT_EQ(r->CurrentTab(), 0);
  for (int32_t row = 0; row < 3; ++row) {
    EXPECT_FALSE(r->Element(A::TabMouse, row).Visible);
    EXPECT_FALSE(r->Element(A::Tab_caption, row).Visible);
    EXPECT_FALSE(r->Element(A::Tab_center, row).Visible);
  }
  EXPECT_FALSE(r->Element(A::ButTabMouse, 0).Visible);
  EXPECT_TRUE(r->Element(A::CatMouse, 0).Visible);
  EXPECT_TRUE(r->Element(A::ButMouse, 0).Visible);
  // The band is lower by the strip and the control shrinks to it.
  EXPECT_EQ(r->BandHeight(), 6 + 88 + 4);
  platform::RECT rc{};
  platform::GetClientRect(r->hWnd(), &rc);
  EXPECT_EQ(rc.bottom, r->BandHeight());
  EXPECT_EQ(r->HitTest(30, 2).kind, RibbonHit::None);
  // With tabs shown again the strip comes back over the same view.
  r->ShowTabs(true);
  EXPECT_TRUE(r->Element(A::Tab_center, 0).Visible);
  EXPECT_EQ(r->BandHeight(), 28 + 88 + 4);
}

TEST_F(RibbonTest, ButtonEnabledIsKeptPerIndexNotPerRow) {
  auto r = MakeRibbon();
  r->AddTab(0, u"T");
  r->AddCat(1, 0, u"C");
  r->AddButton(50, 1, u"&A");
  r->AddButton(7, 1, u"&B");
  r->Refresh();
  EXPECT_TRUE(r->ButtonEnabled(50));
  EXPECT_TRUE(r->ButtonEnabled(7));
  EXPECT_FALSE(r->ButtonEnabled(1));  // row 1 is not Index 1
  r->ButtonEnabled(7, false);
  EXPECT_TRUE(r->ButtonEnabled(50));
  EXPECT_FALSE(r->ButtonEnabled(7));
  // A disabled button's hot key is dropped from the access keys.
  EXPECT_EQ(r->AccessKeys(), u"a");
}

TEST_F(RibbonTest, PicturesComeFromThePictureThenTheImageListThenABoundArray) {
  auto r = MakeRibbon();
  auto list = std::make_shared<controls::USImageList>();
  auto icons = list->ImageLists()->Add(24, 24, u"icons");
  auto solid = std::make_unique<image::API32bppDIB>();
  ASSERT_TRUE(solid->InitializeDIB(24, 24));
  icons->Images()->AddImage_fromDIB(*solid);
  r->ImageList(list);
  r->ImageListKey(u"icons");
  r->AddTab(0, u"T");
  r->AddCat(1, 0, u"C");
  r->AddButton(1, 1, u"", ExamplePicture("star.png"), Variant(int32_t{1}));
  r->AddButton(2, 1, u"", nullptr, Variant(int32_t{1}));
  r->AddButton(3, 1, u"", nullptr, Variant(int32_t{7}));
  r->AddButton(4, 1, u"");
  r->Refresh();
  EXPECT_EQ(r->Element(A::Button_Icon, 0).Width, 32);  // its own picture wins
  EXPECT_EQ(r->Element(A::Button_Icon, 1).Width, 24);  // from the list
  EXPECT_FALSE(r->Element(A::Button_Icon, 2).Visible);  // no such image
  EXPECT_FALSE(r->Element(A::Button_Icon, 3).Visible);
  EXPECT_EQ(r->Element(A::ButMouse, 3).Width, 20);     // no picture, no caption: the margin

  // Without a list, a bound array serves by position; its members are hidden.
  r->ImageList(nullptr);
  auto holder = std::make_shared<controls::USButton>();
  holder->Picture(ExamplePicture("heart.png"));
  r->BindPictureArray({holder});
  EXPECT_FALSE(holder->Visible());
  EXPECT_EQ(r->Element(A::Button_Icon, 1).Width, 0);  // index 1 is past the one member
  r->RemovePictureArray({holder});
  r->Clear();
  r->AddTab(0, u"T");
  r->AddCat(1, 0, u"C");
  r->AddButton(9, 1, u"", nullptr, Variant(int32_t{0}));
  r->BindPictureArray({holder});
  EXPECT_EQ(r->Element(A::Button_Icon, 0).Width, 32);
}

TEST_F(RibbonTest, AtDesignTimeOnlyTheEmptyBandIsShown) {
  auto form = std::make_shared<host::Form>(u"frmDesign", host::FormMode::Design);
  form->Move(0, Variant(0.0f), Variant(400 * 15.0f), Variant(200 * 15.0f));
  m_forms.push_back(form);
  form->Show();
  auto control = form->AddControl(u"Morvantix.USRibbon", u"USRibbon1");
  auto r = std::dynamic_pointer_cast<USRibbon>(control);
  ASSERT_NE(r, nullptr);
  // A new ribbon takes the top of its form at the band's height.
  EXPECT_EQ(r->Left(), 0);
  EXPECT_EQ(r->Top(), 0);
  platform::RECT client{};
  platform::GetClientRect(form->hWnd(), &client);
  EXPECT_EQ(r->Width(), client.right * 15.0f);
  EXPECT_EQ(r->Height(), r->BandHeight() * 15.0f);
  FillStandard(*r);
  r->Refresh();
  EXPECT_EQ(r->TabCount(), 3);
  EXPECT_EQ(r->Elements(A::TabMouse).size(), 1u);
  EXPECT_EQ(r->Elements(A::ButMouse).size(), 1u);
  EXPECT_TRUE(r->Element(A::BarraCenter, 0).Visible);
  EXPECT_EQ(r->HitTest(30, 10).kind, RibbonHit::None);
}

TEST_F(RibbonTest, ARibbonAtTheFormsLeftKeepsTheFormsWidth) {
  auto r = MakeFilled();
  host::Form& form = *r->Parent();
  form.Move(form.Left(), Variant(form.Top()), Variant(form.Width() + 120 * 15));
  platform::PumpMessages();
  platform::RECT client{};
  platform::GetClientRect(form.hWnd(), &client);
  EXPECT_EQ(r->Width(), client.right * 15.0f);
  // The band and the tab buttons follow the new width.
  platform::RECT rc{};
  platform::GetClientRect(r->hWnd(), &rc);
  EXPECT_EQ(rc.right, client.right);
  EXPECT_EQ(r->Element(A::BarraRight, 0).Left, rc.right - 3);
  EXPECT_EQ(r->Element(A::ButTabMouse, 0).Left, rc.right - 40 + 8);
  // One placed elsewhere by its host stays as it is.
  r->Left(300);
  const float width = r->Width();
  form.Move(form.Left(), Variant(form.Top()), Variant(form.Width() - 60 * 15));
  platform::PumpMessages();
  EXPECT_EQ(r->Width(), width);
}

TEST_F(RibbonTest, TheImageListIsSavedByNameAndFoundOnTheFormAtShow) {
  controls::RegisterControls();
  auto r = MakeRibbon();
  auto list = std::dynamic_pointer_cast<controls::USImageList>(
      r->Parent()->AddControl(u"Morvantix.USImageList", u"ilIcons"));
  ASSERT_NE(list, nullptr);
  r->ImageList(list);
  host::PropertyBag bag;
  r->SaveTo(bag);
  EXPECT_EQ(bag.ReadProperty(u"ImageList", Variant(String())).ToString(), u"ilIcons");

  auto form = std::make_shared<host::Form>(u"frmOther");
  m_forms.push_back(form);
  auto other = std::dynamic_pointer_cast<controls::USImageList>(form->AddControl(u"Morvantix.USImageList", u"ilIcons"));
  auto copy = std::make_shared<USRibbon>();
  form->SiteControl(copy, u"USRibbon1");
  copy->LoadFrom(bag, true);
  EXPECT_EQ(copy->ImageList(), nullptr);  // not looked up before the form shows
  form->Show();
  platform::PumpMessages();
  EXPECT_EQ(copy->ImageList(), other);
}

TEST_F(RibbonTest, LateBindingAndTheRegistry) {
  auto made = host::CreateControl(u"Morvantix.USRibbon");
  ASSERT_TRUE(std::dynamic_pointer_cast<USRibbon>(made));
  auto r = MakeRibbon();
  auto call = [&](const char16_t* name, std::vector<Variant> args, host::CallKind kind = host::CallKind::Method) {
    return r->Invoke(name, kind, args);
  };
  call(u"AddTab", {Variant(int32_t{0}), Variant(u"Arquivo")});
  call(u"addcat", {Variant(int32_t{1}), Variant(int32_t{0}), Variant(u"Geral"), Variant(true)});
  call(u"AddButton", {Variant(int32_t{5}), Variant(int32_t{1}), Variant(u"&Novo")});
  call(u"AddTabButton", {Variant(int32_t{1})});
  call(u"Refresh", {});
  EXPECT_EQ(r->ButtonCount(), 1);
  EXPECT_TRUE(r->Element(A::Cat_Dlg, 0).Visible);
  call(u"ButtonEnabled", {Variant(int32_t{5}), Variant(false)}, host::CallKind::Let);
  EXPECT_FALSE(call(u"ButtonEnabled", {Variant(int32_t{5})}, host::CallKind::Get).ToBoolean());
  call(u"Theme", {Variant(int32_t{0})}, host::CallKind::Let);
  EXPECT_EQ(call(u"TabOffset", {}, host::CallKind::Get).ToLong(), 90);
  EXPECT_EQ(call(u"hWnd", {}, host::CallKind::Get).ToLong(), static_cast<int32_t>(r->hWnd()));
  EXPECT_THROW(call(u"AddTab", {Variant(int32_t{0})}), host::RuntimeError);
}

}  // namespace
}  // namespace mx::chrome::testing

namespace mx::chrome::testing {
namespace {

// The example form carries a ribbon under its USForm; the example content fills it.
TEST_F(RibbonTest, ExampleFormHoldsARibbonThatTheExampleContentFills) {
  controls::RegisterControls();
  auto form = host::LoadFormFile(std::string(MX_SOURCE_DIR) + "/examples/chrome.frm");
  m_forms.push_back(form);
  auto ribbon = std::dynamic_pointer_cast<USRibbon>(form->FindControl(u"USRibbon1"));
  ASSERT_NE(ribbon, nullptr);
  EXPECT_TRUE(ribbon->ButtonHandPointer());
  EXPECT_TRUE(ribbon->ShowButtonFocus());
  EXPECT_EQ(ribbon->Font()->Name(), u"Tahoma");
  form->Show();
  platform::RunFor(20);
  FillExampleRibbon(*ribbon);
  EXPECT_EQ(ribbon->TabCount(), 3);
  EXPECT_EQ(ribbon->ButtonCount(), 7);
  EXPECT_EQ(ribbon->Element(RibbonArray::Button_Icon, 0).Width, 32);
  EXPECT_EQ(ribbon->Element(RibbonArray::TabButon_Icon, 1).Width, 16);
  // The band ends above the form's buttons.
  auto save = form->FindControl(u"cmdSave");
  ASSERT_NE(save, nullptr);
  EXPECT_LE(ribbon->Top() + ribbon->Height(), save->Top());
}

}  // namespace
}  // namespace mx::chrome::testing
