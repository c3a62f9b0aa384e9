// Objects the system keeps for the thread's lifetime stay out of the live counts that leak
// checks compare, and what a class owns goes when the class goes.
#include <gtest/gtest.h>

#include "platform/Cursor.h"
#include "platform/Gdi.h"
#include "platform/HandleTable.h"
#include "platform/SysColors.h"
#include "platform/Window.h"

namespace mx::platform {
namespace {

TEST(SystemObjects, SystemBrushesAndStandardCursorsAreNotCountedAsLive) {
  const int brushes = LiveHandleCount(HandleType::Brush), cursors = LiveHandleCount(HandleType::Cursor);
  // First use makes them; later uses hand out the same ones.
  HBRUSH face = GetSysColorBrush(COLOR_BTNFACE);
  HCURSOR arrow = LoadCursorW(0, IDC_ARROW), hand = LoadCursorW(0, IDC_HAND);
  ASSERT_NE(face, 0u);
  ASSERT_NE(arrow, 0u);
  EXPECT_EQ(GetSysColorBrush(COLOR_BTNFACE), face);
  EXPECT_EQ(LoadCursorW(0, IDC_HAND), hand);
  EXPECT_EQ(LiveHandleCount(HandleType::Brush), brushes);
  EXPECT_EQ(LiveHandleCount(HandleType::Cursor), cursors);
  // A brush or cursor of one's own is still counted.
  HBRUSH own = CreateSolidBrush(RGB(1, 2, 3));
  EXPECT_EQ(LiveHandleCount(HandleType::Brush), brushes + 1);
  DeleteObject(own);
  EXPECT_EQ(LiveHandleCount(HandleType::Brush), brushes);
}

TEST(SystemObjects, UnregisteringAClassFreesTheProcedureItWasGiven) {
  const int procs = LiveHandleCount(HandleType::Proc);
  ASSERT_NE(RegisterWindowClass(u"SystemObjectsTestClass", [](HWND, UINT, WPARAM, LPARAM) -> LRESULT { return 42; }),
            0);
  // The class's procedure lives with the class and is not counted as a live object.
  EXPECT_EQ(LiveHandleCount(HandleType::Proc), procs);
  WNDCLASSEXW info;
  ASSERT_NE(GetClassInfoExW(0, u"SystemObjectsTestClass", &info), 0);
  EXPECT_EQ(CallWindowProc(info.lpfnWndProc, 0, WM_USER, 0, 0), 42);

  ASSERT_TRUE(UnregisterClassW(u"SystemObjectsTestClass", 0));
  EXPECT_EQ(CallWindowProc(info.lpfnWndProc, 0, WM_USER, 0, 0), 0);  // the procedure is gone
  EXPECT_EQ(LiveHandleCount(HandleType::Proc), procs);
  // The name can be registered again.
  EXPECT_NE(RegisterWindowClass(u"SystemObjectsTestClass", [](HWND, UINT, WPARAM, LPARAM) -> LRESULT { return 7; }),
            0);
  EXPECT_TRUE(UnregisterClassW(u"SystemObjectsTestClass", 0));
}

}  // namespace
}  // namespace mx::platform
