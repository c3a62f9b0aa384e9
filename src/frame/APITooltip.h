#pragma once
// APITooltip: one tip window of the library's tooltip class, tied to one control's window. A
// control makes it at run time, fills it from its own tooltip properties and drops it again.
//
// Colours, text, title and icon reach a live tip at once; Style, Centered, VisibleTime and
// DelayTime are read only by Create, so changing them takes effect at the next Create.
#include <cstdint>
#include <string>

#include "frame/TooltipWindow.h"
#include "host/Colors.h"
#include "host/String.h"
#include "platform/Types.h"

namespace mx::frame {

enum ENUM_TOOLTIP_STYLE : int32_t {
  ToolTip_Standard = 0,
  ToolTip_Balloon = 1,
};

enum ENUM_TOOLTIP_ICON : int32_t {
  No_Icon = 0,
  Icon_Info = 1,
  Icon_Warning = 2,
  Icon_Error = 3,
};

class APITooltip {
 public:
  APITooltip() = default;
  ~APITooltip() { Destroy(); }
  APITooltip(const APITooltip&) = delete;
  APITooltip& operator=(const APITooltip&) = delete;

  // Replaces any earlier tip window with a new one for xOwner. True when the window was made
  // and took the owner as its tool; a failed window leaves the handle 0, and every later
  // message is skipped.
  bool Create(platform::HWND xOwner);
  void Destroy();

  [[nodiscard]] ENUM_TOOLTIP_STYLE Style() const { return m_style; }
  void Style(ENUM_TOOLTIP_STYLE xValue) { m_style = xValue; }
  [[nodiscard]] bool Centered() const { return m_centered; }
  void Centered(bool xValue) { m_centered = xValue; }
  [[nodiscard]] ENUM_TOOLTIP_ICON Icon() const { return m_icon; }
  void Icon(ENUM_TOOLTIP_ICON xValue);
  [[nodiscard]] const host::String& Title() const { return m_title; }
  void Title(host::StringView xValue);
  [[nodiscard]] const host::String& TipText() const { return m_tipText; }
  void TipText(host::StringView xValue);
  [[nodiscard]] host::OLE_COLOR ForeColor() const { return m_foreColor; }
  void ForeColor(host::OLE_COLOR xValue);
  [[nodiscard]] host::OLE_COLOR BackColor() const { return m_backColor; }
  void BackColor(host::OLE_COLOR xValue);
  [[nodiscard]] int32_t VisibleTime() const { return m_visibleTime; }
  void VisibleTime(int32_t xValue) { m_visibleTime = xValue; }
  [[nodiscard]] int32_t DelayTime() const { return m_delayTime; }
  void DelayTime(int32_t xValue) { m_delayTime = xValue; }

  // The tip window, 0 when there is none.
  [[nodiscard]] platform::HWND hWnd() const { return m_tip; }

 private:
  void SendTitle();

  ENUM_TOOLTIP_STYLE m_style = ToolTip_Standard;
  bool m_centered = false;
  ENUM_TOOLTIP_ICON m_icon = No_Icon;
  host::String m_title;
  host::String m_tipText;
  host::OLE_COLOR m_foreColor = 0;
  host::OLE_COLOR m_backColor = 0;
  int32_t m_visibleTime = 5000;
  int32_t m_delayTime = 500;

  platform::HWND m_tip = 0;
  platform::HWND m_owner = 0;
  // The tool record made by Create and kept for updates; its text points into m_ansiText.
  TOOLINFOA m_info;
  std::string m_ansiText;
  std::string m_ansiTitle;
};

}  // namespace mx::frame
