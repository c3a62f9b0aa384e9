#pragma once
// A grid driven the way a person drives it: pointer moves, presses and keys injected into the
// platform's queue, aimed at cells by their painted places.
#include <string>
#include <vector>

#include "GridPaintTestSupport.h"
#include "platform/Input.h"
#include "platform/Window.h"

namespace mx::grid::testing {

class GridInputTest : public GridPaintTest {
 protected:
  // A shown grid of 10 rows ("Row i", i * 3, unchecked) in the three columns of Fill, focused.
  std::shared_ptr<USFlexGrid> MakeFilled(int rows = 10, int w = 260, int h = 240) {
    auto g = Make(10, 10, w, h);
    Fill(*g, rows);
    platform::SetFocus(g->hWnd());
    platform::PumpMessages();
    return g;
  }

  // The top of a display row in view, in client pixels (rows from the first shown).
  static int RowTopOf(USFlexGrid& g, int row) {
    int y = g.Metrics().headerBottom;
    for (int r = g.GetScrollVerticalPosition(); r < row; ++r)
      if (g.RowVisible(r)) y += g.RowHeight(r);
    return y;
  }
  static platform::POINT CellCenter(USFlexGrid& g, int row, int col) {
    const platform::RECT c = g.GetColumnRect(col);
    return {(c.left + c.right) / 2, RowTopOf(g, row) + g.RowHeight(row) / 2};
  }
  static platform::POINT HeaderCenter(USFlexGrid& g, int col) {
    const platform::RECT c = g.GetColumnRect(col);
    return {(c.left + c.right) / 2, (g.Metrics().captionHeight + g.Metrics().headerBottom) / 2};
  }

  // Pointer and buttons, in the grid's client pixels.
  static void MoveTo(USFlexGrid& g, platform::POINT p) {
    platform::ClientToScreen(g.hWnd(), &p);
    platform::InjectMouseMove(p.x, p.y);
    platform::PumpMessages();
  }
  static void Button(bool down, platform::MouseButton b = platform::MouseButton::Left) {
    platform::InjectMouseButton(b, down);
    platform::PumpMessages();
  }
  // A click, then the double-click time passes, so that the next click is a click of its own.
  static void ClickAt(USFlexGrid& g, platform::POINT p, platform::MouseButton b = platform::MouseButton::Left) {
    MoveTo(g, p);
    Button(true, b);
    Button(false, b);
    platform::RunFor(platform::GetDoubleClickTime() + 1);
  }
  static void ClickCell(USFlexGrid& g, int row, int col) { ClickAt(g, CellCenter(g, row, col)); }
  // A click with a modifier key held (VK_SHIFT, VK_CONTROL).
  static void ClickCellWith(USFlexGrid& g, int vk, int row, int col) {
    platform::InjectKey(vk, true);
    ClickCell(g, row, col);
    platform::InjectKey(vk, false);
    platform::PumpMessages();
  }
  static void Key(int vk) {
    platform::InjectKeyPress(vk);
    platform::PumpMessages();
  }
  static void KeyWith(int modifier, int vk) {
    platform::InjectKey(modifier, true);
    platform::InjectKeyPress(vk);
    platform::InjectKey(modifier, false);
    platform::PumpMessages();
  }
  static void Type(std::u16string_view text) {
    platform::InjectText(text);
    platform::PumpMessages();
  }

  static std::vector<int> SelectedRows(USFlexGrid& g) {
    std::vector<int> out;
    for (int r = 0; r < g.Rows(); ++r)
      if (g.RowSelected(r)) out.push_back(r);
    return out;
  }
};

// Records the grid's events by name, with their main arguments, in the order raised.
class GridEventLog {
 public:
  explicit GridEventLog(USFlexGrid& g) {
    g.RowColChanged.connect([this] { m_log.push_back("RowColChanged"); });
    g.SelectionChanged.connect([this] { m_log.push_back("SelectionChanged"); });
    g.MouseDown.connect([this](int16_t&, int16_t&, float&, float&) { m_log.push_back("MouseDown"); });
    g.MouseUp.connect([this](int16_t&, int16_t&, float&, float&) { m_log.push_back("MouseUp"); });
    g.Click.connect([this] { m_log.push_back("Click"); });
    g.CellClick.connect([this](int32_t r, int32_t c, int16_t) { Add("CellClick", r, c); });
    g.CellClickEx.connect([this](int32_t r, int32_t c, int16_t, int16_t, float, float) { Add("CellClickEx", r, c); });
    g.BeforeEdit.connect([this](int32_t r, int32_t c, bool&) { Add("BeforeEdit", r, c); });
    g.AfterEdit.connect([this](int32_t r, int32_t c, host::String& v, bool&) {
      Add("AfterEdit", r, c);
      m_lastValue = v;
    });
    g.BeforeDelete.connect([this](int32_t r, bool&) { Add("BeforeDelete", r); });
    g.AfterDelete.connect([this] { m_log.push_back("AfterDelete"); });
    g.BeforeInsert.connect([this](int32_t r, bool&) { Add("BeforeInsert", r); });
    g.AfterInsert.connect([this](int32_t r) { Add("AfterInsert", r); });
    g.RowCountChanged.connect([this] { m_log.push_back("RowCountChanged"); });
    g.RowCheckedEvent.connect([this](int32_t r) { Add("RowChecked", r); });
    g.ColumnClick.connect([this](int32_t c) { Add("ColumnClick", c); });
    g.ColumnOrderChanged.connect([this](int32_t f, int32_t t) { Add("ColumnOrderChanged", f, t); });
    g.ColumnSizeChanged.connect([this](int32_t c, int32_t m) { Add("ColumnSizeChanged", c, m); });
  }
  [[nodiscard]] const std::vector<std::string>& Events() const { return m_log; }
  [[nodiscard]] const host::String& LastValue() const { return m_lastValue; }
  void Clear() { m_log.clear(); }
  [[nodiscard]] int Count(const std::string& prefix) const {
    int n = 0;
    for (const auto& e : m_log) n += e.rfind(prefix, 0) == 0 ? 1 : 0;
    return n;
  }

 private:
  void Add(const char* name, int a) { m_log.push_back(std::string(name) + "(" + std::to_string(a) + ")"); }
  void Add(const char* name, int a, int b) {
    m_log.push_back(std::string(name) + "(" + std::to_string(a) + "," + std::to_string(b) + ")");
  }
  std::vector<std::string> m_log;
  host::String m_lastValue;
};

}  // namespace mx::grid::testing
