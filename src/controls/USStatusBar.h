#pragma once
// USStatusBar: a themed bar of text panels that docks at the bottom of its form: on Show and
// whenever the form is resized it takes the form's full inner width and sits on its bottom edge.
//
// Panels are numbered from 1. A panel has a width in pixels; an auto-size panel takes an equal
// share of what the fixed panels leave (never less than its own width), so the bar is always
// filled. A panel may show a picture, 16 x 16, before its text. A size grip at the right edge is
// drawn when the form can be resized.
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "host/Event.h"
#include "host/PropertyBag.h"
#include "host/StdFont.h"
#include "host/StdPicture.h"
#include "host/String.h"
#include "host/UserControl.h"
#include "host/Variant.h"

namespace mx::controls {

class USStatusBar : public host::UserControl {
 public:
  static constexpr int32_t kGripWidth = 14;
  static constexpr int32_t kIconSize = 16;

  USStatusBar();
  ~USStatusBar() override;

  [[nodiscard]] host::String ProgId() const override { return u"Morvantix.USStatusBar"; }
  [[nodiscard]] host::String TypeName() const override { return u"USStatusBar"; }
  [[nodiscard]] bool CanGetFocus() const override { return false; }
  [[nodiscard]] platform::HWND hWnd() const override { return UserControl::hWnd(); }

  // Adds a panel after the others and returns its number. Alignment: 0 left, 1 centre, 2 right.
  int32_t AddPanel(host::StringView Text = {}, int32_t Width = 100, int32_t Alignment = 0, bool AutoSize = false);
  // Raises 9 (subscript out of range) for a number that is not a panel's.
  void RemovePanel(int32_t Index);
  void ClearPanels();
  [[nodiscard]] int32_t PanelCount() const { return static_cast<int32_t>(m_panels.size()); }
  [[nodiscard]] host::String PanelText(int32_t Index) const;
  void PanelText(int32_t Index, host::StringView value);
  [[nodiscard]] int32_t PanelWidth(int32_t Index) const;
  void PanelWidth(int32_t Index, int32_t value);
  [[nodiscard]] int32_t PanelAlignment(int32_t Index) const;
  void PanelAlignment(int32_t Index, int32_t value);
  [[nodiscard]] bool PanelAutoSize(int32_t Index) const;
  void PanelAutoSize(int32_t Index, bool value);
  // Drawn 16 x 16 at the panel's left, the text moving 18 pixels right; Nothing (null) or an
  // empty picture shows no icon and leaves the text where it was.
  [[nodiscard]] std::shared_ptr<host::StdPicture> PanelPicture(int32_t Index) const;
  void PanelPicture(int32_t Index, std::shared_ptr<host::StdPicture> value);
  // Where the last layout put the panel, in client pixels.
  [[nodiscard]] int32_t PanelLeft(int32_t Index) const;
  [[nodiscard]] int32_t PanelRight(int32_t Index) const;
  // The panel under a client x, or 0.
  [[nodiscard]] int32_t PanelAt(int32_t x) const;

  [[nodiscard]] bool ShowSizeGrip() const { return m_showSizeGrip; }
  void ShowSizeGrip(bool value);
  [[nodiscard]] std::shared_ptr<host::StdFont> Font() const { return UserControl::Font(); }
  void Font(std::shared_ptr<host::StdFont> value);
  [[nodiscard]] int32_t Theme() const { return m_theme; }
  void Theme(int32_t value);
  [[nodiscard]] host::OLE_COLOR ForeColor() const { return UserControl::ForeColor(); }
  void ForeColor(host::OLE_COLOR value);
  [[nodiscard]] host::OLE_COLOR BorderColor() const { return m_borderColor; }
  void BorderColor(host::OLE_COLOR value);
  [[nodiscard]] host::OLE_COLOR GradientColor1() const { return m_gradient1; }
  void GradientColor1(host::OLE_COLOR value);
  [[nodiscard]] host::OLE_COLOR GradientColor2() const { return m_gradient2; }
  void GradientColor2(host::OLE_COLOR value);

  // Docks again, lays the panels out and paints.
  void Refresh();
  void About();

  host::Event<int32_t&> PanelClick;
  host::Event<int32_t&> PanelDblClick;
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
  void UserControl_Show() override;
  void UserControl_Terminate() override;
  void UserControl_Click() override;
  void UserControl_DblClick() override;
  void UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) override;

 private:
  struct Panel {
    host::String text;
    int32_t width = 100;
    int32_t alignment = 0;
    bool autoSize = false;
    std::shared_ptr<host::StdPicture> picture;
    int32_t left = 0;   // layout
    int32_t right = 0;  // layout
  };
  [[nodiscard]] const Panel& At(int32_t index) const;
  [[nodiscard]] Panel& At(int32_t index);
  [[nodiscard]] bool GripShown() const;
  void Dock();
  void Layout();
  void Paint();
  void PanelsChanged();
  void ApplyTheme();

  std::vector<Panel> m_panels;
  bool m_showSizeGrip = true;
  int32_t m_theme = 2;
  host::OLE_COLOR m_borderColor = 0;
  host::OLE_COLOR m_gradient1 = 0;
  host::OLE_COLOR m_gradient2 = 0;
  int32_t m_clientWidth = 0;
  int32_t m_clientHeight = 0;
  int32_t m_lastX = 0;
  // The form's Resize handler, while docked to one.
  host::Event<>::ConnectionId m_formResize = 0;
  bool m_docking = false;
};

}  // namespace mx::controls
