#pragma once
// ToolTipSettings: the tooltip keys a control persists ("ToolTip*" and "ToolDelayTime") and hands
// to its APITooltip when it makes one. ToolTipProperties gives a control those keys as its own
// properties; the control says what a change means (usually only PropertyChanged), since the
// values reach a tip at its next CreateToolTip.
#include <cstdint>
#include <utility>

#include "host/Colors.h"
#include "host/String.h"
#include "platform/Types.h"

namespace mx::host {
class PropertyBag;
}

namespace mx::frame {

using host::OLE_COLOR;

class APITooltip;

struct ToolTipSettings {
  OLE_COLOR backColor = 0xF4FFFF;
  bool centered = false;
  host::String description;
  OLE_COLOR foreColor = 0x000000;
  int32_t icon = 0;
  int32_t style = 1;
  host::String title;
  int32_t visibleTime = 5000;
  int32_t delayTime = 1500;

  // Each key is read on its own: a value that does not convert leaves that field as it was.
  void Read(const host::PropertyBag& bag);
  // Keys equal to their defaults are left out.
  void Write(host::PropertyBag& bag) const;
  // Fills the tip from these settings and makes its window over owner (any earlier one goes).
  void CreateOn(APITooltip& tip, platform::HWND owner) const;
};

class ToolTipProperties {
 public:
  [[nodiscard]] int32_t ToolDelayTime() const { return m_tip.delayTime; }
  void ToolDelayTime(int32_t value) { Store(m_tip.delayTime, value, u"ToolDelayTime"); }
  [[nodiscard]] OLE_COLOR ToolTipBackColor() const { return m_tip.backColor; }
  void ToolTipBackColor(OLE_COLOR value) { Store(m_tip.backColor, value, u"ToolTipBackColor"); }
  [[nodiscard]] bool ToolTipCentered() const { return m_tip.centered; }
  void ToolTipCentered(bool value) { Store(m_tip.centered, value, u"ToolTipCentered"); }
  [[nodiscard]] const host::String& ToolTipDescription() const { return m_tip.description; }
  void ToolTipDescription(host::StringView value) { Store(m_tip.description, host::String(value), u"ToolTipDescription"); }
  [[nodiscard]] OLE_COLOR ToolTipForeColor() const { return m_tip.foreColor; }
  void ToolTipForeColor(OLE_COLOR value) { Store(m_tip.foreColor, value, u"ToolTipForeColor"); }
  [[nodiscard]] int32_t ToolTipIcon() const { return m_tip.icon; }
  void ToolTipIcon(int32_t value) { Store(m_tip.icon, value, u"ToolTipIcon"); }
  [[nodiscard]] int32_t ToolTipStyle() const { return m_tip.style; }
  void ToolTipStyle(int32_t value) { Store(m_tip.style, value, u"ToolTipStyle"); }
  [[nodiscard]] const host::String& ToolTipTitle() const { return m_tip.title; }
  void ToolTipTitle(host::StringView value) { Store(m_tip.title, host::String(value), u"ToolTipTitle"); }
  [[nodiscard]] int32_t ToolTipVisibleTime() const { return m_tip.visibleTime; }
  void ToolTipVisibleTime(int32_t value) { Store(m_tip.visibleTime, value, u"ToolTipVisibleTime"); }

 protected:
  ToolTipProperties() = default;
  ~ToolTipProperties() = default;
  // Called after each property above is stored, with its key.
  virtual void ToolTipPropertyChanged(host::StringView key) = 0;

  ToolTipSettings m_tip;

 private:
  template <typename T>
  void Store(T& field, T value, host::StringView key) {
    field = std::move(value);
    ToolTipPropertyChanged(key);
  }
};

}  // namespace mx::frame
