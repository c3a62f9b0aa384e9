#pragma once
// USGroupBox: a themed frame with a caption band across its top, and a container: the controls
// placed in it are children of its window, and option buttons in it form a group of their own.
// Its face is its persistent image, which is also what transparent children show through them.
// The frame has rounded corners; the window is cut to the same curve, so the container shows
// outside it.
#include <cstdint>
#include <memory>
#include <span>

#include "host/Event.h"
#include "host/PropertyBag.h"
#include "host/StdFont.h"
#include "host/String.h"
#include "host/UserControl.h"
#include "host/Variant.h"

namespace mx::controls {

class USGroupBox : public host::UserControl {
 public:
  USGroupBox();
  ~USGroupBox() override;

  [[nodiscard]] host::String ProgId() const override { return u"Morvantix.USGroupBox"; }
  [[nodiscard]] host::String TypeName() const override { return u"USGroupBox"; }
  [[nodiscard]] bool CanGetFocus() const override { return false; }
  [[nodiscard]] platform::HWND hWnd() const override { return UserControl::hWnd(); }
  [[nodiscard]] platform::HDC hDC() const { return UserControl::hDC(); }

  // The default member.
  [[nodiscard]] const host::String& Caption() const { return m_caption; }
  void Caption(host::StringView value);
  // 0 left, 1 centre, 2 right, within the band.
  [[nodiscard]] int32_t Alignment() const { return m_alignment; }
  void Alignment(int32_t value);
  [[nodiscard]] std::shared_ptr<host::StdFont> Font() const { return UserControl::Font(); }
  void Font(std::shared_ptr<host::StdFont> value);
  [[nodiscard]] bool Enabled() const { return UserControl::Enabled(); }
  void Enabled(bool value);
  [[nodiscard]] int32_t Theme() const { return m_theme; }
  void Theme(int32_t value);
  [[nodiscard]] host::OLE_COLOR ForeColor() const { return UserControl::ForeColor(); }
  void ForeColor(host::OLE_COLOR value);
  [[nodiscard]] host::OLE_COLOR BorderColor() const { return m_borderColor; }
  void BorderColor(host::OLE_COLOR value);
  [[nodiscard]] host::OLE_COLOR GradientHeader1() const { return m_header1; }
  void GradientHeader1(host::OLE_COLOR value);
  [[nodiscard]] host::OLE_COLOR GradientHeader2() const { return m_header2; }
  void GradientHeader2(host::OLE_COLOR value);
  // The body, top to bottom below the band.
  [[nodiscard]] host::OLE_COLOR GradientColor1() const { return m_body1; }
  void GradientColor1(host::OLE_COLOR value);
  [[nodiscard]] host::OLE_COLOR GradientColor2() const { return m_body2; }
  void GradientColor2(host::OLE_COLOR value);

  // The band's height in pixels: the caption's line height plus 8, within the client height.
  [[nodiscard]] int32_t HeaderHeight() const { return m_headerHeight; }
  // The radius of the frame's corners in pixels: 5 in the Office looks, 3 in the Windows ones.
  [[nodiscard]] int32_t CornerRadius() const;

  void Refresh();
  void About();

  host::Event<> Click;
  host::Event<> DblClick;
  host::Event<int16_t&, int16_t&, float&, float&> MouseDown;
  host::Event<int16_t&, int16_t&, float&, float&> MouseMove;
  host::Event<int16_t&, int16_t&, float&, float&> MouseUp;

  void ConnectEventSink(const host::EventSink& sink) override;
  host::Variant Invoke(host::StringView name, host::CallKind kind, std::span<host::Variant> args) override;

 protected:
  void UserControl_InitProperties() override;
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Click() override;
  void UserControl_DblClick() override;
  void UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) override;

 private:
  void ApplyTheme();
  void Paint();
  // Transparent children took their ground from the old face: they paint again on the new one.
  void RepaintChildren();

  host::String m_caption;
  int32_t m_alignment = 0;
  int32_t m_theme = 2;
  host::OLE_COLOR m_borderColor = 0x9A572B;
  host::OLE_COLOR m_header1 = 0x9A572B;
  host::OLE_COLOR m_header2 = 0x9A572B;
  host::OLE_COLOR m_body1 = 0xFFFFFF;
  host::OLE_COLOR m_body2 = 0xFFFFFF;
  int32_t m_clientWidth = 0;
  int32_t m_clientHeight = 0;
  int32_t m_headerHeight = 0;
  // The size and radius the window's region was last cut to, so that an unchanged shape is not
  // set (and the window invalidated) again on every refresh.
  int32_t m_regionWidth = -1;
  int32_t m_regionHeight = -1;
  int32_t m_regionRadius = -1;
};

}  // namespace mx::controls
