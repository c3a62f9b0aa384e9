// The user control base: load orders, the translation of mouse and key messages into handlers,
// the persistent image, Resize and the host members that controls lean on.
#include <gtest/gtest.h>

#include "host/Err.h"
#include "host/HostTestSupport.h"
#include "host/Screen.h"
#include "host/StdPicture.h"
#include "platform/Gdi.h"

using namespace mx::host;
using namespace mx::host::testing;
using namespace mx::platform;
using mx::platform::testing::WindowingTest;
using Log = std::vector<std::string>;

namespace {

class UserControlTest : public WindowingTest {
 protected:
  // A control alone on the desktop at (100, 100), 80 x 30 pixels, loaded at run time and shown.
  std::shared_ptr<RecordingControl> MakeShown(bool autoShow = true) {
    auto c = std::make_shared<RecordingControl>();
    c->Move(1500, 1500, 80 * 15, 30 * 15);
    PropertyBag bag;
    c->LoadFrom(bag, true);
    if (autoShow) c->ShowControl();
    PumpMessages();
    c->log.clear();
    return c;
  }
};

TEST_F(UserControlTest, RunTimeAndDesignTimeLoadOrders) {
  RecordingControl design;
  design.Move(0, 0, 600, 300);
  design.LoadNew(false);
  design.ShowControl();
  PumpMessages();
  EXPECT_EQ(design.log, (Log{"Initialize", "InitProperties", "Resize", "Show", "Paint"}));
  EXPECT_FALSE(design.Ambient().UserMode());

  RecordingControl run;
  run.Move(0, 0, 600, 300);
  PropertyBag bag;
  run.LoadFrom(bag, true);
  run.ShowControl();
  PumpMessages();
  EXPECT_EQ(run.log, (Log{"Initialize", "ReadProperties", "Resize", "Show", "Paint"}));
  EXPECT_TRUE(run.userMode);

  // Unloading: Hide where shown, then Terminate; the window goes.
  const HWND hwnd = run.hWnd();
  run.log.clear();
  run.TerminateControl();
  EXPECT_EQ(run.log, (Log{"Hide", "Terminate"}));
  EXPECT_FALSE(IsWindow(hwnd));
  EXPECT_TRUE(run.IsTerminated());
  // A control never shown is not hidden.
  RecordingControl never;
  never.LoadNew(true);
  never.log.clear();
  never.TerminateControl();
  EXPECT_EQ(never.log, (Log{"Terminate"}));
}

TEST_F(UserControlTest, ClickOnlyWhenReleasedOverTheControl) {
  auto c = MakeShown();
  const HWND h = c->hWnd();
  PressAt(h, 10, 10);
  EXPECT_EQ(GetCapture(), h) << "the press takes the capture";
  POINT inside = ScreenPoint(h, 20, 12);
  ReleaseAtScreen(inside.x, inside.y);
  EXPECT_EQ(GetCapture(), 0u) << "the release lets it go";
  EXPECT_EQ(Filter(c->log, {"Mouse", "Click", "DblClick"}), (Log{"MouseDown 1 10,10", "MouseUp 1", "Click"}));

  // Released outside: MouseUp still comes (the capture brings it), Click does not.
  c->log.clear();
  RunFor(1000);  // past the double-click time
  PressAt(h, 10, 10);
  POINT outside = ScreenPoint(h, 200, 10);
  ReleaseAtScreen(outside.x, outside.y);
  EXPECT_EQ(Filter(c->log, {"Mouse", "Click"}), (Log{"MouseDown 1 10,10", "MouseUp 1"}));
  EXPECT_EQ(GetCapture(), 0u);

  // The right button: MouseDown and MouseUp with button 2, never Click.
  c->log.clear();
  RunFor(1000);
  PressAt(h, 5, 5, MouseButton::Right);
  POINT p = ScreenPoint(h, 5, 5);
  ReleaseAtScreen(p.x, p.y, MouseButton::Right);
  EXPECT_EQ(Filter(c->log, {"Mouse", "Click"}), (Log{"MouseDown 2 5,5", "MouseUp 2"}));
}

TEST_F(UserControlTest, DoubleClickOrder) {
  auto c = MakeShown();
  const HWND h = c->hWnd();
  POINT p = ScreenPoint(h, 10, 10);
  InjectMouseMove(p.x, p.y);
  InjectClick();
  InjectClick();
  PumpMessages();
  EXPECT_EQ(Filter(c->log, {"Mouse", "Click", "DblClick"}),
            (Log{"MouseDown 1 10,10", "MouseUp 1", "Click", "DblClick", "MouseUp 1"}));
  EXPECT_EQ(GetCapture(), 0u);
}

TEST_F(UserControlTest, PressGivesFocusBeforeMouseDown) {
  auto c = MakeShown();
  PressAt(c->hWnd(), 3, 3);
  EXPECT_EQ(Filter(c->log, {"EnterFocus", "GotFocus", "MouseDown"}), (Log{"EnterFocus", "GotFocus", "MouseDown 1 3,3"}));
  EXPECT_EQ(GetFocus(), c->hWnd());
}

TEST_F(UserControlTest, KeysReachTheFocusedControl) {
  auto c = MakeShown();
  SetFocus(c->hWnd());
  c->log.clear();
  InjectKeyPress('A');
  PumpMessages();
  EXPECT_EQ(Filter(c->log, {"Key"}), (Log{"KeyDown 65 0", "KeyPress 97", "KeyUp 65"}));
  c->log.clear();
  InjectKey(VK_SHIFT, true);
  InjectKeyPress(VK_TAB);
  InjectKey(VK_SHIFT, false);
  PumpMessages();
  // Alone on the desktop there is no form to take Tab: the control hears it, with Shift.
  EXPECT_EQ(Filter(c->log, {"KeyDown"}), (Log{"KeyDown 16 1", "KeyDown 9 1"}));
}

TEST_F(UserControlTest, FailingHandlerStaysInErr) {
  auto c = MakeShown();
  c->onClick = [] { Raise(kErrDivisionByZero, u"Recorder"); };
  Err().Clear();
  POINT p = ScreenPoint(c->hWnd(), 4, 4);
  InjectMouseMove(p.x, p.y);
  EXPECT_NO_THROW({
    InjectClick();
    PumpMessages();
  });
  EXPECT_EQ(Err().Number(), kErrDivisionByZero);
  EXPECT_EQ(GetCapture(), 0u) << "the capture is let go although Click failed";
  Err().Clear();
}

// What the window shows at a client point (the top-level surface under it).
COLORREF WindowPixel(HWND h, int x, int y) {
  HDC dc = GetDC(h);
  COLORREF c = GetPixel(dc, x, y);
  ReleaseDC(h, dc);
  return c;
}

void FillSolid(HDC dc, RECT r, COLORREF color) {
  HBRUSH b = CreateSolidBrush(color);
  FillRect(dc, &r, b);
  DeleteObject(b);
}

TEST_F(UserControlTest, PersistentImageSurvivesCoveringAndRepaint) {
  auto c = MakeShown();
  const HWND h = c->hWnd();
  c->BackColor(RGB(0, 0, 255));
  c->AutoRedraw(true);
  c->Cls();
  FillSolid(c->hDC(), RECT{0, 0, 10, 10}, RGB(255, 0, 0));
  c->AutoRedraw(false);
  // Shown at once when the image is handed back to the window.
  EXPECT_EQ(WindowPixel(h, 5, 5), RGB(255, 0, 0));
  EXPECT_EQ(WindowPixel(h, 50, 20), RGB(0, 0, 255));

  // Drawn with AutoRedraw off: on the window only, gone at the next repaint.
  FillSolid(c->hDC(), RECT{0, 0, 80, 30}, RGB(0, 255, 0));
  EXPECT_EQ(WindowPixel(h, 5, 5), RGB(0, 255, 0));

  // The system asks for a repaint of the whole window, as after it was covered.
  c->log.clear();
  InvalidateRect(h, nullptr, TRUE);
  PumpMessages();
  EXPECT_EQ(WindowPixel(h, 5, 5), RGB(255, 0, 0));
  EXPECT_EQ(WindowPixel(h, 50, 20), RGB(0, 0, 255));
  EXPECT_EQ(Filter(c->log, {"Paint"}), (Log{"Paint"})) << "Paint follows the copy while AutoRedraw is off";

  // With AutoRedraw on, a repaint copies the image and raises no Paint.
  c->AutoRedraw(true);
  c->log.clear();
  c->Refresh();
  EXPECT_TRUE(Filter(c->log, {"Paint"}).empty());
  c->AutoRedraw(false);
}

TEST_F(UserControlTest, ResizeIsNotReenteredAndMinimumSizeGrows) {
  auto c = MakeShown();
  // A minimum of 15 pixels enforced by setting Height from inside Resize.
  int depth = 0, maxDepth = 0;
  c->onResize = [&] {
    ++depth;
    maxDepth = std::max(maxDepth, depth);
    if (c->ScaleHeight() < 15) c->Height(15 * GetScreen().TwipsPerPixelY());
    if (c->ScaleWidth() < 15) c->Width(15 * GetScreen().TwipsPerPixelX());
    --depth;
  };
  c->Move(1500, 1500, 5 * 15, 5 * 15);
  EXPECT_EQ(maxDepth, 1);
  EXPECT_EQ(Filter(c->log, {"Resize"}), (Log{"Resize"}));
  EXPECT_EQ(c->ScaleWidth(), 15.0f);
  EXPECT_EQ(c->ScaleHeight(), 15.0f);
  EXPECT_EQ(c->Height(), 225.0f);
  RECT rc;
  GetClientRect(c->hWnd(), &rc);
  EXPECT_EQ(rc.height(), 15);

  // A size that rounds to the same pixels keeps its twips; one set by the platform becomes twips.
  c->onResize = nullptr;
  c->Height(458);
  EXPECT_EQ(c->Height(), 458.0f);
  SetWindowPos(c->hWnd(), 0, 0, 0, 40, 20, SWP_NOMOVE | SWP_NOZORDER);
  EXPECT_EQ(c->Width(), 600.0f);
  EXPECT_EQ(c->Height(), 300.0f);
}

TEST_F(UserControlTest, ImageFollowsTheSizeAndKeepsItsContent) {
  auto c = MakeShown();
  c->BackColor(RGB(10, 20, 30));
  c->AutoRedraw(true);
  c->Cls();
  FillSolid(c->hDC(), RECT{0, 0, 5, 5}, RGB(200, 0, 0));
  c->Width(120 * 15);
  EXPECT_EQ(GetPixel(c->hDC(), 2, 2), RGB(200, 0, 0));
  EXPECT_EQ(GetPixel(c->hDC(), 110, 5), RGB(10, 20, 30)) << "the new part shows the background";
  c->AutoRedraw(false);
}

TEST_F(UserControlTest, FontIsSelectedAndFollowsItsChanges) {
  auto c = MakeShown();
  auto font = std::make_shared<StdFont>(u"Tahoma", 12.0);
  c->Font(font);
  auto faceOf = [&](HDC dc) {
    LOGFONTW lf;
    GetObjectW(GetCurrentObject(dc, OBJ_FONT), sizeof(lf), &lf);
    return lf;
  };
  c->AutoRedraw(true);
  EXPECT_EQ(String(faceOf(c->hDC()).lfFaceName), u"Tahoma");
  EXPECT_EQ(GetBkMode(c->hDC()), TRANSPARENT) << "text draws without a box";
  EXPECT_EQ(faceOf(c->hDC()).lfHeight, -16);
  // The font object is shared: a change made through it reaches the surface.
  font->Bold(true);
  EXPECT_EQ(faceOf(c->hDC()).lfWeight, 700);
  c->AutoRedraw(false);
  EXPECT_EQ(faceOf(c->hDC()).lfWeight, 700) << "the window's DC has it too";
  c->FontSize(24);
  EXPECT_EQ(faceOf(c->hDC()).lfHeight, -32);
  EXPECT_THROW(c->Font(nullptr), RuntimeError);
}

TEST_F(UserControlTest, PointerShapes) {
  auto c = MakeShown();
  POINT p = ScreenPoint(c->hWnd(), 10, 10);
  c->MousePointer(vbIbeam);
  InjectMouseMove(p.x, p.y);
  PumpMessages();
  EXPECT_EQ(CursorId(GetCursor()), IDC_IBEAM);

  // 99 with an icon from the decoder: a pointer of the icon's size and hot spot.
  PictureDecoder decoder;
  HICON made = 0;
  decoder.decode = [&](const StdPicture&) -> uint32_t {
    HBITMAP mask = CreateBitmap(32, 32, 1, 32, nullptr);
    HBITMAP color = CreateBitmap(32, 32, 1, 32, nullptr);
    ICONINFO ii;
    ii.fIcon = FALSE;
    ii.xHotspot = 3;
    ii.yHotspot = 4;
    ii.hbmMask = mask;
    ii.hbmColor = color;
    made = CreateIconIndirect(&ii);
    DeleteObject(mask);
    DeleteObject(color);
    return made;
  };
  decoder.release = [](uint32_t h, int16_t) { DestroyIcon(h); };
  SetPictureDecoder(decoder);
  // A 1 x 1 BMP is enough for the picture object; the decoder makes the icon.
  ByteArray bmp = {'B', 'M', 58, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 32,
                   0, 0, 0, 0, 0, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 2, 3, 4};
  c->MouseIcon(StdPicture::FromBytes(bmp));
  c->MousePointer(vbCustom);
  InjectMouseMove(p.x + 1, p.y);
  PumpMessages();
  HCURSOR cur = GetCursor();
  EXPECT_EQ(CursorId(cur), 0) << "not a standard shape";
  POINT hot{};
  EXPECT_TRUE(GetCursorHotSpot(cur, &hot));
  EXPECT_EQ(hot, (POINT{3, 4}));
  // Back to the default: the class's arrow.
  c->MousePointer(vbDefault);
  InjectMouseMove(p.x, p.y);
  PumpMessages();
  EXPECT_EQ(CursorId(GetCursor()), IDC_ARROW);
  c->MouseIcon(nullptr);
  SetPictureDecoder({});
  EXPECT_THROW(c->MousePointer(16), RuntimeError);
}

TEST_F(UserControlTest, HostMembersByLateBinding) {
  auto c = MakeShown();
  c->Tag(u"x");
  EXPECT_EQ(CallByName(Variant(std::static_pointer_cast<Object>(c)), u"ScaleWidth", CallKind::Get).ToLong(), 80);
  Variant ext(std::shared_ptr<Object>(c, &c->Extender()));
  EXPECT_EQ(CallByName(ext, u"Tag", CallKind::Get).ToString(), u"x");
  EXPECT_EQ(CallByName(ext, u"hWnd", CallKind::Get).ToLong(), static_cast<int32_t>(c->hWnd()));
  // The site's members first, then the control's own.
  EXPECT_EQ(CallByName(ext, u"AutoRedraw", CallKind::Get).ToBoolean(), false);
  CallByName(ext, u"Width", CallKind::Let, {Variant(int32_t{1500})});
  EXPECT_EQ(c->ScaleWidth(), 100.0f);
  try {
    (void)CallByName(ext, u"NoSuchMember", CallKind::Get);
    FAIL() << "an unknown member raises";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), kErrMemberNotSupported);
  }
}

TEST_F(UserControlTest, ScaleConversions) {
  RecordingControl c;
  // HiMetric to pixels at 96 dpi: 2540 HiMetric is an inch, 96 pixels.
  EXPECT_FLOAT_EQ(c.ScaleX(2540), 96.0f);
  EXPECT_FLOAT_EQ(c.ScaleY(1270, vbHimetric, vbPixels), 48.0f);
  EXPECT_FLOAT_EQ(c.ScaleX(15, vbTwips, vbPixels), 1.0f);
  EXPECT_FLOAT_EQ(c.ScaleX(10, vbUser, vbTwips), 150.0f) << "the control's own scale is pixels";
}

}  // namespace
