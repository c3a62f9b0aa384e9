#pragma once
// A grid on the headless desktop for layout and paint tests: made at run time with its
// defaults, sized in pixels, shown, and read back as the screen shows it.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "grid/USFlexGrid.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/HandleTable.h"
#include "platform/MessageQueue.h"
#include "platform/User.h"

namespace mx::grid::testing {

class GridPaintTest : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::ResetWindowing();
    m_windowsAtStart = platform::LiveHandleCount(platform::HandleType::Window);
  }
  void TearDown() override {
    for (auto& g : m_grids) g->TerminateControl();
    m_grids.clear();
    EXPECT_EQ(platform::LiveHandleCount(platform::HandleType::Window), m_windowsAtStart);
    platform::ResetWindowing();
  }

  std::shared_ptr<USFlexGrid> Make(int x, int y, int w, int h) {
    auto g = std::make_shared<USFlexGrid>();
    g->Move(static_cast<float>(x * 15), static_cast<float>(y * 15), static_cast<float>(w * 15),
            static_cast<float>(h * 15));
    g->LoadNew(true);
    g->ShowControl();
    platform::PumpMessages();
    m_grids.push_back(g);
    return g;
  }

  // Columns "Name", "Qty" (numeric), "Done" (boolean) and rows "Row i".
  static void Fill(USFlexGrid& g, int rows) {
    g.Redraw(false);
    g.AddColumn(u"Name", 1500);
    g.AddColumn(u"Qty", 900, AlignToRightCenter, TypeNumeric);
    g.AddColumn(u"Done", 900, AlignToCenterCenter, TypeBoolean);
    for (int i = 0; i < rows; ++i) {
      const std::string s = "Row " + std::to_string(i) + "\t" + std::to_string(i * 3) + "\t";
      g.AddItem(host::String(s.begin(), s.end()));
    }
    g.Redraw(true);
  }

  static platform::CapturedImage Capture(const USFlexGrid& g) {
    platform::PumpMessages();
    return platform::CaptureWindow(g.hWnd());
  }
  static std::vector<uint32_t> Pixels(const platform::CapturedImage& img) {
    std::vector<uint32_t> out;
    for (int y = 0; y < img.height(); ++y)
      for (int x = 0; x < img.width(); ++x) out.push_back(img.pixel(x, y));
    return out;
  }

  platform::ScopedVirtualClock m_clock;
  std::vector<std::shared_ptr<USFlexGrid>> m_grids;
  int m_windowsAtStart = 0;
};

}  // namespace mx::grid::testing
