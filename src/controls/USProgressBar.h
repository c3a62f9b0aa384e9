#pragma once
// USProgressBar: a bordered bar filled in a gradient of the theme's colours, in proportion to
// Value between Min and Max, with the percentage written over it when ShowText is on. Lying
// horizontally it fills from the left, standing vertically from the bottom. Value is held within
// Min..Max.
#include <cstdint>
#include <memory>
#include <span>

#include "controls/CaptionControl.h"
#include "host/Event.h"
#include "host/PropertyBag.h"
#include "host/StdFont.h"
#include "host/String.h"
#include "host/UserControl.h"
#include "host/Variant.h"

namespace mx::controls {

class USProgressBar : public CaptionControl {
 public:
  USProgressBar();
  ~USProgressBar() override;

  [[nodiscard]] host::String ProgId() const override { return u"Morvantix.USProgressBar"; }
  [[nodiscard]] host::String TypeName() const override { return u"USProgressBar"; }
  [[nodiscard]] bool CanGetFocus() const override { return false; }
  [[nodiscard]] platform::HWND hWnd() const override { return UserControl::hWnd(); }
  [[nodiscard]] platform::HDC hDC() const { return UserControl::hDC(); }

  [[nodiscard]] int32_t Min() const { return m_min; }
  void Min(int32_t value);
  [[nodiscard]] int32_t Max() const { return m_max; }
  void Max(int32_t value);
  // The default member; set outside Min..Max it is held to the nearer end.
  [[nodiscard]] int32_t Value() const { return m_value; }
  void Value(int32_t value);
  // Whole percent of the way from Min to Max, truncated; 0 when Max is not above Min.
  [[nodiscard]] int32_t Percent() const;
  [[nodiscard]] bool ShowText() const { return m_showText; }
  void ShowText(bool value);
  // 0 horizontal (fills from the left), 1 vertical (fills from the bottom); other values are held
  // to the nearer of the two.
  [[nodiscard]] int32_t Orientation() const { return m_orientation; }
  void Orientation(int32_t value);
  [[nodiscard]] int32_t Theme() const { return m_theme; }
  // Stores the theme, copies its colours into the four colour properties, and repaints.
  void Theme(int32_t value);
  [[nodiscard]] host::OLE_COLOR BackColor() const { return UserControl::BackColor(); }
  void BackColor(host::OLE_COLOR value);
  [[nodiscard]] host::OLE_COLOR ForeColor() const { return UserControl::ForeColor(); }
  void ForeColor(host::OLE_COLOR value);
  [[nodiscard]] host::OLE_COLOR BorderColor() const { return m_borderColor; }
  void BorderColor(host::OLE_COLOR value);
  [[nodiscard]] host::OLE_COLOR GradientColor1() const { return m_gradient1; }
  void GradientColor1(host::OLE_COLOR value);
  [[nodiscard]] host::OLE_COLOR GradientColor2() const { return m_gradient2; }
  void GradientColor2(host::OLE_COLOR value);

  void About();

  host::Event<> Change;
  host::Event<> Click;
  host::Event<int16_t&, int16_t&, float&, float&> MouseDown;
  host::Event<int16_t&, int16_t&, float&, float&> MouseMove;
  host::Event<int16_t&, int16_t&, float&, float&> MouseUp;

  void ConnectEventSink(const host::EventSink& sink) override;
  host::Variant Invoke(host::StringView name, host::CallKind kind, std::span<host::Variant> args) override;

  [[nodiscard]] int32_t PaintCount() const { return m_paintCount; }
  // The filled length of the last paint along the bar, in pixels: a width lying, a height standing.
  [[nodiscard]] int32_t FilledWidth() const { return m_filledWidth; }

 protected:
  void RepaintForFont() override { Paint(); }
  void UserControl_InitProperties() override;
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Click() override;
  void UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) override;

 private:
  void ApplyTheme();
  void Paint();

  int32_t m_min = 0;
  int32_t m_max = 100;
  int32_t m_value = 0;
  bool m_showText = false;
  int32_t m_orientation = 0;
  int32_t m_theme = 2;
  host::OLE_COLOR m_borderColor = 0x9A572B;
  host::OLE_COLOR m_gradient1 = 0xFFCFA3;
  host::OLE_COLOR m_gradient2 = 0x9A572B;

  int32_t m_clientWidth = 0;
  int32_t m_clientHeight = 0;
  int32_t m_paintCount = 0;
  int32_t m_filledWidth = 0;
};

}  // namespace mx::controls
