// The form host: siting and adding controls, focus and tab order, access keys, Enter and Esc,
// DisplayAsDefault, the event sink, modal and modeless life, unloading and its clean-up.
#include <gtest/gtest.h>

#include "host/Err.h"
#include "host/Form.h"
#include "host/HostTestSupport.h"
#include "platform/Gdi.h"

using namespace mx::host;
using namespace mx::host::testing;
using namespace mx::platform;
using mx::platform::testing::WindowingTest;
using Log = std::vector<std::string>;

namespace {

int32_t ErrorNumberOf(const std::function<void()>& f) {
  try {
    f();
  } catch (const RuntimeError& e) {
    return e.Number();
  }
  return 0;
}

class FormTest : public WindowingTest {
 protected:
  void SetUp() override {
    WindowingTest::SetUp();
    RegisterRecorder();
  }

  // Three controls in a row, sited in the order a, b, c, loaded at run time; b is default-capable.
  std::shared_ptr<RecordingControl> Site(Form& form, const char16_t* name, float left) {
    auto c = std::make_shared<RecordingControl>();
    form.SiteControl(c, name);
    c->Move(left, 120, 1200, 450);
    PropertyBag bag;
    c->LoadFrom(bag, true);
    return c;
  }
};

TEST_F(FormTest, ShowFocusesFirstInTabOrderAndTabCycles) {
  auto form = std::make_shared<Form>(u"frmTab");
  auto a = Site(*form, u"a", 120);
  auto b = Site(*form, u"b", 1500);
  auto c = Site(*form, u"c", 3000);
  // The tab order is not the order of siting: c first, then a, then b.
  c->TabIndex(0);
  EXPECT_EQ(c->TabIndex(), 0);
  EXPECT_EQ(a->TabIndex(), 1);
  EXPECT_EQ(b->TabIndex(), 2);
  a->TabStop(false);
  form->Show();
  EXPECT_TRUE(form->Visible());
  EXPECT_EQ(GetFocus(), c->hWnd());
  EXPECT_EQ(form->ActiveControl(), c);

  InjectKeyPress(VK_TAB);
  PumpMessages();
  EXPECT_EQ(GetFocus(), b->hWnd()) << "a has TabStop False";
  EXPECT_TRUE(Filter(b->log, {"KeyDown 9", "KeyPress 9"}).empty()) << "the form takes Tab";
  InjectKeyPress(VK_TAB);
  PumpMessages();
  EXPECT_EQ(GetFocus(), c->hWnd()) << "wraps around";
  InjectKey(VK_SHIFT, true);
  InjectKeyPress(VK_TAB);
  InjectKey(VK_SHIFT, false);
  PumpMessages();
  EXPECT_EQ(GetFocus(), b->hWnd());
  EXPECT_EQ(Filter(c->log, {"EnterFocus", "GotFocus", "LostFocus", "ExitFocus"}),
            (Log{"EnterFocus", "GotFocus", "LostFocus", "ExitFocus", "EnterFocus", "GotFocus", "LostFocus", "ExitFocus"}));

  // A hidden or disabled control is passed over.
  c->Visible(false);
  InjectKeyPress(VK_TAB);
  PumpMessages();
  EXPECT_EQ(GetFocus(), b->hWnd()) << "b is the only one left";
  EXPECT_EQ(ErrorNumberOf([&] { c->SetFocus(); }), kErrInvalidProcedureCall);
  form->Unload();
}

TEST_F(FormTest, AltWithAccessKeyFocusesAndPresses) {
  auto form = std::make_shared<Form>(u"frmKeys");
  auto a = Site(*form, u"a", 120);
  auto b = Site(*form, u"b", 1500);
  b->AccessKeys(u"o");
  form->Show();
  ASSERT_EQ(GetFocus(), a->hWnd());
  a->log.clear();
  b->log.clear();
  InjectKey(VK_MENU, true);
  InjectKeyPress('O');
  InjectKey(VK_MENU, false);
  PumpMessages();
  EXPECT_EQ(GetFocus(), b->hWnd());
  EXPECT_EQ(Filter(b->log, {"GotFocus", "AccessKeyPress"}), (Log{"GotFocus", "AccessKeyPress 111"}));
  EXPECT_TRUE(Filter(a->log, {"AccessKeyPress"}).empty());

  // A letter no control has does nothing; a disabled control's key is not taken.
  b->Enabled(false);
  b->log.clear();
  InjectKey(VK_MENU, true);
  InjectKeyPress('O');
  InjectKeyPress('Z');
  InjectKey(VK_MENU, false);
  PumpMessages();
  EXPECT_TRUE(Filter(b->log, {"AccessKeyPress"}).empty());
  form->Unload();
}

TEST_F(FormTest, EnterAndEscapeGoToDefaultAndCancel) {
  auto form = std::make_shared<Form>(u"frmDefault");
  auto a = Site(*form, u"a", 120);
  auto ok = Site(*form, u"ok", 1500);
  auto cancel = Site(*form, u"cancel", 3000);
  ok->DefaultCancel(true);
  cancel->DefaultCancel(true);
  ok->Default(true);
  cancel->Cancel(true);
  form->Show();
  ASSERT_EQ(GetFocus(), a->hWnd());
  // The focus is on a plain control: the Default one shows as default.
  EXPECT_TRUE(ok->Ambient().DisplayAsDefault());
  EXPECT_FALSE(cancel->Ambient().DisplayAsDefault());
  a->log.clear();
  ok->log.clear();

  InjectKeyPress(VK_RETURN);
  PumpMessages();
  EXPECT_EQ(Filter(ok->log, {"AccessKeyPress"}), (Log{"AccessKeyPress 13"}));
  EXPECT_TRUE(Filter(a->log, {"KeyDown 13", "KeyPress"}).empty()) << "the form took Enter and its character";
  InjectKeyPress(VK_ESCAPE);
  PumpMessages();
  EXPECT_EQ(Filter(cancel->log, {"AccessKeyPress"}), (Log{"AccessKeyPress 27"}));

  // The focus on a default-capable control makes it the default for Enter and for the look;
  // the Default one is told it is no longer shown as such.
  ok->log.clear();
  cancel->log.clear();
  cancel->SetFocus();
  EXPECT_TRUE(cancel->Ambient().DisplayAsDefault());
  EXPECT_FALSE(ok->Ambient().DisplayAsDefault());
  EXPECT_EQ(Filter(ok->log, {"AmbientChanged"}), (Log{"AmbientChanged DisplayAsDefault"}));
  EXPECT_EQ(Filter(cancel->log, {"AmbientChanged"}), (Log{"AmbientChanged DisplayAsDefault"}));
  InjectKeyPress(VK_RETURN);
  PumpMessages();
  EXPECT_EQ(Filter(cancel->log, {"AccessKeyPress"}), (Log{"AccessKeyPress 13"}));
  EXPECT_TRUE(Filter(ok->log, {"AccessKeyPress"}).empty());

  // One Default per form: making a the Default takes it from ok.
  a->Default(true);
  EXPECT_FALSE(ok->Default());
  // Without a Default or Cancel, Enter and Esc reach the focused control as keys.
  a->Default(false);
  cancel->Cancel(false);
  a->SetFocus();
  a->log.clear();
  InjectKeyPress(VK_RETURN);
  InjectKeyPress(VK_ESCAPE);
  PumpMessages();
  EXPECT_EQ(Filter(a->log, {"KeyDown", "KeyPress"}), (Log{"KeyDown 13 0", "KeyPress 13", "KeyDown 27 0", "KeyPress 27"}));
  form->Unload();
}

TEST_F(FormTest, EventSinkNamesTheSourceAndWritesBack) {
  auto form = std::make_shared<Form>(u"frmSink");
  std::vector<std::string> seen;
  form->SetEventSink([&](StringView source, int32_t index, StringView event, std::span<Variant> args) {
    seen.push_back(ToUtf8(source) + "(" + std::to_string(index) + ")." + ToUtf8(event));
    // A handler bound by name changes the by-reference KeyCode.
    if (event == u"KeyDown") args[0] = Variant(int16_t{0});
  });
  auto a = std::make_shared<RecordingControl>();
  form->SiteControl(a, u"cmd", 2);
  a->Move(0, 0, 1200, 450);
  a->LoadNew(true);
  form->Show();
  seen.clear();
  InjectKeyPress('X');
  POINT p = ScreenPoint(a->hWnd(), 4, 4);
  InjectMouseMove(p.x, p.y);
  InjectClick();
  PumpMessages();
  EXPECT_EQ(seen, (Log{"cmd(2).KeyDown", "cmd(2).Click"}));
  EXPECT_EQ(Filter(a->log, {"KeyCode now"}), (Log{"KeyCode now 0"}));
  seen.clear();
  form->Unload();
  EXPECT_EQ(seen, (Log{"frmSink(-1).QueryUnload", "frmSink(-1).Unload"}));
}

TEST_F(FormTest, AddControlIsTheMadeByCodePath) {
  auto form = std::make_shared<Form>(u"frmAdd");
  form->Show();
  auto added = std::dynamic_pointer_cast<RecordingControl>(form->AddControl(u"test.RECORDER", u"dyn"));
  ASSERT_TRUE(added);
  EXPECT_EQ(Filter(added->log, {"Initialize", "InitProperties", "ReadProperties"}), (Log{"Initialize", "InitProperties"}));
  EXPECT_FALSE(added->userMode);
  EXPECT_TRUE(added->Ambient().UserMode()) << "the form runs";
  EXPECT_EQ(added->caption, u"dyn");
  // On a form already shown, the new control is shown at once; hidden, it is hidden again.
  EXPECT_EQ(Filter(added->log, {"Show"}), (Log{"Show"}));
  added->Visible(false);
  EXPECT_EQ(Filter(added->log, {"Show", "Hide"}), (Log{"Show", "Hide"}));
  EXPECT_FALSE(IsWindowVisible(added->hWnd()));
  EXPECT_EQ(form->FindControl(u"DYN"), added);

  EXPECT_EQ(ErrorNumberOf([&] { (void)form->AddControl(u"Test.Recorder", u"dyn"); }), 727);
  EXPECT_EQ(ErrorNumberOf([&] { (void)form->AddControl(u"Test.Nothing", u"other"); }), 429);
  EXPECT_EQ(form->Controls().size(), 1u);

  const HWND h = added->hWnd();
  added->Visible(true);
  added->log.clear();
  form->RemoveControl(u"dyn");
  EXPECT_EQ(added->log, (Log{"Hide", "Terminate"}));
  EXPECT_FALSE(IsWindow(h));
  EXPECT_TRUE(form->Controls().empty());
  // Controls sited as from a file are not removed by code.
  Site(*form, u"fixed", 0);
  EXPECT_EQ(ErrorNumberOf([&] { form->RemoveControl(u"fixed"); }), kErrInvalidProcedureCall);
  form->Unload();
}

TEST_F(FormTest, UnloadCanBeCancelledThenReleasesEverything) {
  const int windows = LiveHandleCount(HandleType::Window);
  const int dcs = LiveHandleCount(HandleType::DC);
  const int bitmaps = LiveHandleCount(HandleType::Bitmap);
  const int fonts = LiveHandleCount(HandleType::Font);
  const int brushes = LiveHandleCount(HandleType::Brush);
  std::weak_ptr<RecordingControl> weakA;
  {
    auto form = std::make_shared<Form>(u"frmBye");
    auto a = Site(*form, u"a", 120);
    auto b = Site(*form, u"b", 1500);
    weakA = a;
    form->Show();
    a->AutoRedraw(true);
    a->Cls();
    a->AutoRedraw(false);
    EXPECT_EQ(Forms().size(), 1u);

    int16_t seenMode = -1;
    form->QueryUnload.connect([&](int16_t& cancel, int16_t& mode) {
      seenMode = mode;
      cancel = 1;
    });
    EXPECT_FALSE(form->Unload());
    EXPECT_EQ(seenMode, vbFormCode);
    EXPECT_TRUE(form->IsLoaded());
    EXPECT_TRUE(Filter(a->log, {"Terminate"}).empty());

    // The close box asks with vbFormControlMenu; then the refusal is lifted.
    SendMessageW(form->hWnd(), WM_CLOSE, 0, 0);
    EXPECT_EQ(seenMode, vbFormControlMenu);
    form->QueryUnload.disconnect_all();
    a->log.clear();
    b->log.clear();
    EXPECT_TRUE(form->Unload());
    EXPECT_EQ(a->log, (Log{"LostFocus", "ExitFocus", "Hide", "Terminate"}));
    EXPECT_EQ(b->log, (Log{"Hide", "Terminate"}));
    EXPECT_FALSE(form->IsLoaded());
    EXPECT_TRUE(Forms().empty());
    EXPECT_TRUE(form->Controls().empty());
  }
  EXPECT_TRUE(weakA.expired()) << "the form released its controls";
  EXPECT_EQ(LiveHandleCount(HandleType::Window), windows);
  EXPECT_EQ(LiveHandleCount(HandleType::DC), dcs);
  EXPECT_EQ(LiveHandleCount(HandleType::Bitmap), bitmaps);
  EXPECT_EQ(LiveHandleCount(HandleType::Font), fonts);
  EXPECT_EQ(LiveHandleCount(HandleType::Brush), brushes);
}

TEST_F(FormTest, FormReleasedWhileShownTakesItsControlsAlong) {
  const int windows = LiveHandleCount(HandleType::Window);
  {
    auto form = std::make_shared<Form>(u"frmDropped");
    Site(*form, u"a", 120);
    auto b = Site(*form, u"b", 1500);
    form->Show();
    b->SetFocus();
  }
  // The focus leaving the controls' windows must not reach a form half destroyed.
  EXPECT_EQ(LiveHandleCount(HandleType::Window), windows);
}

TEST_F(FormTest, ModalShowReturnsWhenHidden) {
  auto owner = std::make_shared<Form>(u"frmOwner");
  owner->Show();
  auto dialog = std::make_shared<Form>(u"frmDialog");
  auto a = Site(*dialog, u"a", 120);
  bool ownerDisabledMeanwhile = false;
  // Work for the idle queue: it runs inside the modal loop.
  PushIdleAction([&] {
    ownerDisabledMeanwhile = !IsWindowEnabled(owner->hWnd());
    dialog->Hide();
  });
  dialog->Show(1, owner.get());
  EXPECT_TRUE(ownerDisabledMeanwhile);
  EXPECT_FALSE(dialog->Visible());
  EXPECT_TRUE(IsWindowEnabled(owner->hWnd()));
  EXPECT_EQ(Filter(a->log, {"Show", "Hide"}), (Log{"Show", "Hide"}));
  // Unloading from inside the loop ends it too.
  PushIdleAction([&] { dialog->Unload(); });
  dialog->Show(1);
  EXPECT_FALSE(dialog->IsLoaded());
  owner->Unload();
}

TEST_F(FormTest, ClsShowsTheContainerOrTheBackColor) {
  auto form = std::make_shared<Form>(u"frmCls");
  form->BackColor(RGB(0, 128, 0));
  auto a = Site(*form, u"a", 150);
  form->Show();
  a->BackColor(RGB(0, 0, 200));
  a->AutoRedraw(true);
  a->BackStyle(1);
  a->Cls();
  EXPECT_EQ(GetPixel(a->hDC(), 3, 3), RGB(0, 0, 200));
  a->BackStyle(0);
  a->Cls();
  EXPECT_EQ(GetPixel(a->hDC(), 3, 3), RGB(0, 128, 0)) << "transparent: what the form paints beneath";
  a->AutoRedraw(false);
  // The form itself shows its BackColor around the control.
  HDC dc = GetDC(form->hWnd());
  EXPECT_EQ(GetPixel(dc, 2, 2), RGB(0, 128, 0));
  ReleaseDC(form->hWnd(), dc);
  dc = GetDC(a->hWnd());
  EXPECT_EQ(GetPixel(dc, 2, 2), RGB(0, 128, 0)) << "the control's transparent image on the window";
  ReleaseDC(a->hWnd(), dc);
  form->Unload();
}

TEST_F(FormTest, TurningTransparentShowsTheContainerWithoutCls) {
  // A control that paints only in Paint never calls Cls: its image must follow the style itself.
  auto form = std::make_shared<Form>(u"frmStyle");
  form->BackColor(RGB(250, 250, 250));
  auto a = Site(*form, u"a", 150);
  a->BackColor(RGB(0, 0, 200));
  a->BackStyle(0);
  form->Show();
  HDC dc = GetDC(a->hWnd());
  EXPECT_EQ(GetPixel(dc, 2, 2), RGB(250, 250, 250));
  ReleaseDC(a->hWnd(), dc);
  a->BackStyle(1);
  a->Refresh();
  dc = GetDC(a->hWnd());
  EXPECT_EQ(GetPixel(dc, 2, 2), RGB(0, 0, 200)) << "opaque again: the back colour";
  ReleaseDC(a->hWnd(), dc);
  form->Unload();
}

TEST_F(FormTest, PropertiesAndLateBinding) {
  auto form = std::make_shared<Form>(u"frmProps");
  form->Caption(u"Clientes");
  form->ClientSize(4500, 3000);
  EXPECT_EQ(GetWindowTextString(form->hWnd()), u"Clientes");
  EXPECT_EQ(form->ScaleWidth(), 4500.0f);
  EXPECT_EQ(form->ScaleHeight(), 3000.0f);
  RECT rc;
  GetClientRect(form->hWnd(), &rc);
  EXPECT_EQ(rc.width(), 300);
  // Changing the border keeps the client area.
  form->BorderStyle(0);
  GetClientRect(form->hWnd(), &rc);
  EXPECT_EQ(rc.width(), 300);
  EXPECT_EQ(form->Width(), 4500.0f) << "no frame around it now";
  EXPECT_EQ(ErrorNumberOf([&] { form->BorderStyle(6); }), kErrInvalidPropertyValue);
  auto a = Site(*form, u"a", 0);
  Variant f(std::static_pointer_cast<Object>(form));
  EXPECT_EQ(CallByName(f, u"Caption", CallKind::Get).ToString(), u"Clientes");
  Variant control = CallByName(f, u"a", CallKind::Get);
  EXPECT_EQ(control.Obj(), a);
  // Through the control's extender: its Parent is the form.
  Variant ext(std::shared_ptr<Object>(a, &a->Extender()));
  EXPECT_EQ(CallByName(ext, u"Parent", CallKind::Get).Obj(), form);
  EXPECT_EQ(a->ParentControls().size(), 1u);
  EXPECT_EQ(a->Ambient().BackColor(), form->BackColor());
  form->Unload();
}

}  // namespace
