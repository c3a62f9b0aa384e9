// Moving and sizing through the platform's loop, the size limits, placement, fades and
// translucency on the virtual clock, the dim layers, and the look of the frame.
#include "ChromeTestSupport.h"
#include "chrome/FormBack.h"
#include "platform/Gdi.h"
#include "support/Golden.h"

namespace mx::chrome::testing {
namespace {

using namespace platform;

TEST_F(ChromeTest, DraggingTheCaptionMovesTheForm) {
  auto chrome = Make();
  const HWND form = FormOf(*chrome).hWnd();
  std::vector<std::string> events;
  chrome->MouseDown.connect([&](int16_t&, int16_t&, float&, float&) { events.push_back("MouseDown"); });
  Drag(chrome->hWnd(), 60, 12, 30, 20);
  const RECT r = WindowRect(form);
  EXPECT_EQ(r.left, 130);
  EXPECT_EQ(r.top, 120);
  EXPECT_EQ(r.width(), 400);
  EXPECT_EQ(events, std::vector<std::string>{"MouseDown"});
  EXPECT_EQ(GetCapture(), HWND{0});
}

TEST_F(ChromeTest, NoMoveWhenNotAllowedOrFromAButton) {
  auto chrome = Make(Bag({{u"AllowMove", false}}));
  Drag(chrome->hWnd(), 60, 12, 30, 20);
  EXPECT_EQ(WindowRect(FormOf(*chrome).hWnd()).left, 100);
  chrome->AllowMove(true);
  // A press on a button holds the button, not the form.
  Drag(chrome->hWnd(), 280, 12, 30, 20);
  EXPECT_EQ(WindowRect(FormOf(*chrome).hWnd()).left, 100);
}

TEST_F(ChromeTest, SizingFromTheEdgeStrips) {
  auto chrome = Make(Bag({{u"AllowResize", true}, {u"BorderWidth", int32_t{3}}}));
  const HWND form = FormOf(*chrome).hWnd();
  Drag(chrome->EdgeWindow(2), 1, 100, 40, 0);
  EXPECT_EQ(WindowRect(form).width(), 440);
  // Bottom strip near its right end sizes both ways; the strips follow the new size.
  Drag(chrome->EdgeWindow(0), 436, 1, -20, 30);
  RECT r = WindowRect(form);
  EXPECT_EQ(r.width(), 420);
  EXPECT_EQ(r.height(), 270);
  EXPECT_EQ(WindowRect(chrome->EdgeWindow(0)).top, 100 + 270 - 3);
  EXPECT_EQ(WindowRect(chrome->hWnd()).width(), 420);
  // The left strip moves the left side.
  Drag(chrome->EdgeWindow(1), 1, 100, -50, 0);
  r = WindowRect(form);
  EXPECT_EQ(r.left, 50);
  EXPECT_EQ(r.width(), 470);
  // The size limits hold: 128 wide, BorderWidth + 32 high.
  Drag(chrome->EdgeWindow(0), 200, 1, 0, -400);
  EXPECT_EQ(WindowRect(form).height(), 35);
}

TEST_F(ChromeTest, EdgePointersFollowTheStripAndPosition) {
  auto chrome = Make(Bag({{u"AllowResize", true}}));
  MoveTo(chrome->EdgeWindow(1), 0, 100);
  EXPECT_EQ(GetCursor(), LoadCursorW(0, IDC_SIZEWE));
  MoveTo(chrome->EdgeWindow(0), 1, 0);
  EXPECT_EQ(GetCursor(), LoadCursorW(0, IDC_SIZENESW));
  MoveTo(chrome->EdgeWindow(0), 398, 0);
  EXPECT_EQ(GetCursor(), LoadCursorW(0, IDC_SIZENWSE));
  MoveTo(chrome->EdgeWindow(0), 200, 0);
  EXPECT_EQ(GetCursor(), LoadCursorW(0, IDC_SIZENS));
  // The caption's top band sizes from the top.
  MoveTo(chrome->hWnd(), 200, 0);
  EXPECT_EQ(chrome->MousePointer(), host::vbSizeNS);
  MoveTo(chrome->hWnd(), 3, 1);
  EXPECT_EQ(chrome->MousePointer(), host::vbSizeNWSE);
}

TEST_F(ChromeTest, NoSizingWithoutAllowResizeOrWhenMaximized) {
  auto chrome = Make();
  const HWND form = FormOf(*chrome).hWnd();
  MoveTo(chrome->EdgeWindow(2), 0, 100);
  EXPECT_NE(GetCursor(), LoadCursorW(0, IDC_SIZEWE));
  Drag(chrome->EdgeWindow(2), 0, 100, 40, 0);
  EXPECT_EQ(WindowRect(form).width(), 400);

  chrome->AllowResize(true);
  ShowWindow(form, SW_MAXIMIZE);
  PumpMessages();
  const int width = WindowRect(form).width();
  Drag(chrome->EdgeWindow(2), 0, 100, -40, 0);
  EXPECT_EQ(WindowRect(form).width(), width);
  MoveTo(chrome->EdgeWindow(1), 0, 100);
  EXPECT_NE(GetCursor(), LoadCursorW(0, IDC_SIZEWE));
}

TEST_F(ChromeTest, CenterAndFullScreenPlaceTheForm) {
  auto chrome = Make();
  const HWND form = FormOf(*chrome).hWnd();
  chrome->CenterOnScreen();
  // Work area 1280 x 760.
  EXPECT_EQ(WindowRect(form).left, 440);
  EXPECT_EQ(WindowRect(form).top, 260);
  EXPECT_TRUE(chrome->ShowOnFullScreen());
  const RECT r = WindowRect(form);
  EXPECT_EQ(r.left, 0);
  EXPECT_EQ(r.top, 0);
  EXPECT_EQ(r.right, 1280);
  EXPECT_EQ(r.bottom, 800);
  EXPECT_FALSE(chrome->ShowOnFullScreen());
}

TEST_F(ChromeTest, FadesReachTheirEndOnTheClock) {
  auto chrome = Make();
  const HWND form = FormOf(*chrome).hWnd();
  BYTE alpha = 0;
  DWORD flags = 0;
  const uint64_t start = GetTickCount64();
  chrome->DrawFadeIN();
  // 51 steps from 5 to 255, 25 ms between each.
  EXPECT_EQ(GetTickCount64() - start, 50u * 25u);
  ASSERT_TRUE(GetLayeredWindowAttributes(form, nullptr, &alpha, &flags));
  EXPECT_EQ(alpha, 255);
  EXPECT_EQ(flags, LWA_ALPHA);
  const uint64_t middle = GetTickCount64();
  chrome->DrawFadeOUT();
  EXPECT_EQ(GetTickCount64() - middle, 51u * 25u);
  ASSERT_TRUE(GetLayeredWindowAttributes(form, nullptr, &alpha, &flags));
  EXPECT_EQ(alpha, 0);
  chrome->TranslucentForm(128);
  ASSERT_TRUE(GetLayeredWindowAttributes(form, nullptr, &alpha, &flags));
  EXPECT_EQ(alpha, 128);
}

TEST_F(ChromeTest, TaskBarMembersSucceedWithoutATaskBar) {
  auto chrome = Make();
  const HWND form = FormOf(*chrome).hWnd();
  EXPECT_EQ(chrome->TaskBar_SetProgressState(form, 2), 0);
  EXPECT_EQ(chrome->TaskBar_SetProgressValue(form, 50), 0);
  EXPECT_EQ(chrome->TaskBar_SetThumbnailTooltip(form, u"x"), 0);
  EXPECT_EQ(chrome->Invoke(u"TaskBar_SetProgressValue", host::CallKind::Method, {}).ToLong(), 0);
}

std::vector<FormBack*> DimLayers() {
  std::vector<FormBack*> out;
  for (const auto& f : host::Forms())
    if (auto* layer = dynamic_cast<FormBack*>(f.get())) out.push_back(layer);
  return out;
}

TEST_F(ChromeTest, DimLayersCoverTheScreenOrTheFormAndCloseTogether) {
  auto chrome = Make();
  const HWND form = FormOf(*chrome).hWnd();
  // Nothing to close: nothing happens.
  chrome->AlphaWindowCloseAll();
  EXPECT_EQ(host::Forms().size(), 1u);

  chrome->AlphaWindowInitializeOnFullScreen(100, 0x202020);
  chrome->AlphaWindowInitializeOnModal();
  PumpMessages();
  const auto layers = DimLayers();
  ASSERT_EQ(layers.size(), 2u);
  const RECT full = WindowRect(layers[0]->hWnd());
  EXPECT_EQ(full.right, 1280);
  EXPECT_EQ(full.bottom, 800);
  EXPECT_EQ(WindowRect(layers[1]->hWnd()).left, 100);
  EXPECT_EQ(WindowRect(layers[1]->hWnd()).width(), 400);
  BYTE alpha = 0;
  ASSERT_TRUE(GetLayeredWindowAttributes(layers[0]->hWnd(), nullptr, &alpha, nullptr));
  EXPECT_EQ(alpha, 100);
  EXPECT_EQ(static_cast<HWND>(GetWindowLongPtr(layers[0]->hWnd(), GWLP_HWNDPARENT)), form);
  // The form that asked keeps the activation.
  EXPECT_EQ(GetActiveWindow(), form);
  // The screen shows the layer's colour blended over the desktop outside the form.
  chrome->AlphaWindowCloseAll();
  EXPECT_TRUE(DimLayers().empty());
  EXPECT_TRUE(FormOf(*chrome).IsLoaded());
}

// ---- The look -----------------------------------------------------------------------------------

class ChromeLookTest : public ChromeTest {
 protected:
  // The form as the screen shows it, checked against a golden of the size it was made at.
  void ExpectLook(const USForm& chrome, const char* name) {
    RunFor(10);
    const CapturedImage img = CaptureWindow(FormOf(chrome).hWnd());
    ASSERT_EQ(img.width(), 260);
    ASSERT_EQ(img.height(), 90);
    test::ExpectGolden("chrome", name, img.width(), img.height(), Pixels(img));
  }
  void Deactivate() {
    auto other = std::make_shared<host::Form>(u"frmOther");
    other->Move(0, host::Variant(600.0f * 15), host::Variant(60.0f * 15), host::Variant(60.0f * 15));
    m_forms.push_back(other);
    other->Show();
    PumpMessages();
  }
};

TEST_F(ChromeLookTest, WindowsLookActiveAndInactive) {
  auto chrome = Make(Bag({{u"AllowResize", true}, {u"BorderWidth", int32_t{2}}}), 100, 100, 260, 90,
                     u"Cadastro - Clientes - Novo");
  MoveTo(chrome->hWnd(), 220, 12);
  ASSERT_EQ(chrome->HoverButton(), CloseButton);
  ExpectLook(*chrome, "form_windows_active");
  MoveTo(chrome->hWnd(), 100, 60);
  Deactivate();
  ASSERT_FALSE(chrome->FormActive());
  ExpectLook(*chrome, "form_windows_inactive");
}

TEST_F(ChromeLookTest, OfficeLookActiveAndInactiveWithRoundedCorners) {
  auto chrome = Make(Bag({{u"Theme", int32_t{0}},
                          {u"ForeColor", int32_t{0x3B3B3B}},
                          {u"ForeColorDelimiter", int32_t{0xB75F31}},
                          {u"ForeColorInactive", int32_t{0xB75F31}},
                          {u"GradientColor1", int32_t{0xFFFFFF}},
                          {u"GradientColor2", int32_t{0xFCEDE1}},
                          {u"BorderColor", int32_t{0xB99C84}},
                          {u"BorderColorInactive", int32_t{0xC8C8C8}}}),
                     100, 100, 260, 90, u"Cadastro - Clientes");
  MoveTo(chrome->hWnd(), 213, 12);
  ASSERT_EQ(chrome->HoverButton(), MaximizeButton);
  Press(true);
  ExpectLook(*chrome, "form_office_active");
  // Let go away from the button, which then does nothing.
  MoveTo(chrome->hWnd(), 100, 12);
  Press(false);
  EXPECT_FALSE(IsZoomed(FormOf(*chrome).hWnd()));
  Deactivate();
  ExpectLook(*chrome, "form_office_inactive");
  // The corners are cut from the window: the desktop shows through them on the screen.
  HRGN probe = CreateRectRgn(0, 0, 0, 0);
  ASSERT_NE(GetWindowRgn(FormOf(*chrome).hWnd(), probe), 0);
  EXPECT_FALSE(PtInRegion(probe, 0, 0));
  EXPECT_FALSE(PtInRegion(probe, 0, 3));
  EXPECT_TRUE(PtInRegion(probe, 1, 2));
  EXPECT_FALSE(PtInRegion(probe, 259, 89));
  EXPECT_TRUE(PtInRegion(probe, 2, 2));
  DeleteObject(probe);
}

// The split is at the last delimiter: with a second one, more of the caption is in the fore
// colour and the delimiter colour starts further right.
TEST_F(ChromeLookTest, OnlyWhatFollowsTheLastDelimiterTakesItsColour) {
  const auto firstDelimiterColumn = [&](const char16_t* caption) {
    auto chrome = Make(Bag({{u"ForeColor", int32_t{0x0000FF}}, {u"ForeColorDelimiter", int32_t{0x00FF00}}}), 100,
                       100, 400, 60, caption);
    const CapturedImage img = CaptureWindow(chrome->hWnd());
    int minGreen = 1000, maxRed = -1;
    for (int y = 0; y < img.height(); ++y)
      for (int x = 0; x < 250; ++x) {
        // Glyph edges blend into the strip: a pixel counts by its strongest channel.
        const COLORREF c = img.color(x, y);
        const int r = c & 0xFF, g = (c >> 8) & 0xFF;
        if (g >= 0xC0 && r < 0x60) minGreen = std::min(minGreen, x);
        if (r >= 0xC0 && g < 0x60) maxRed = std::max(maxRed, x);
      }
    EXPECT_GE(maxRed, 0);
    EXPECT_LT(maxRed, minGreen) << "fore colour left of the delimiter colour";
    FormOf(*chrome).Unload();
    return minGreen;
  };
  const int one = firstDelimiterColumn(u"AAA-BBB");
  const int two = firstDelimiterColumn(u"AAA-BBB-CCC");
  EXPECT_GT(two, one + 10);
}

}  // namespace
}  // namespace mx::chrome::testing
