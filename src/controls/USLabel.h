#pragma once
// USLabel: a caption that renders a small markup (bold, italic, underline, struck-through,
// coloured stretches and line breaks: MarkupText.h), wraps words, and can size itself to its
// text. It never takes the focus. The caption is kept in an APIStringBuilder.
//
// Every setter repaints through Refresh, which lays the caption out again, applies AutoSize and
// paints the persistent image; Change follows a new Caption.
#include <cstdint>
#include <memory>
#include <span>

#include "controls/CaptionControl.h"
#include "controls/MarkupText.h"
#include "host/Event.h"
#include "host/PropertyBag.h"
#include "host/StdFont.h"
#include "host/StdPicture.h"
#include "host/String.h"
#include "host/UserControl.h"
#include "host/Variant.h"
#include "utility/APIStringBuilder.h"

namespace mx::frame {
class APIMouseEvents;
}

namespace mx::controls {

class USLabel : public CaptionControl {
 public:
  USLabel();
  ~USLabel() override;

  [[nodiscard]] host::String ProgId() const override { return u"Morvantix.USLabel"; }
  [[nodiscard]] host::String TypeName() const override { return u"USLabel"; }
  [[nodiscard]] bool CanGetFocus() const override { return false; }

  // The default member; markup is rendered unless it is turned off (see NoHTMLCaption).
  [[nodiscard]] host::String Caption() const { return m_caption.ToString(); }
  void Caption(host::StringView value);
  // The caption as it shows, tags taken out; kept in step with Caption and saved beside it.
  // Setting it gives the label that text as its caption, shown as it stands, tags and all.
  [[nodiscard]] const host::String& NoHTMLCaption() const { return m_noHtmlCaption; }
  void NoHTMLCaption(host::StringView value);
  // 0 left, 1 right, 2 centre.
  [[nodiscard]] int32_t Alignment() const { return m_alignment; }
  void Alignment(int32_t value);
  // Saved under the key "Autosize". Repaints only when set True.
  [[nodiscard]] bool AutoSize() const { return m_autoSize; }
  void AutoSize(bool value);
  [[nodiscard]] bool WordWrap() const { return m_wordWrap; }
  void WordWrap(bool value);
  [[nodiscard]] int16_t BackStyle() const { return UserControl::BackStyle(); }
  void BackStyle(int16_t value);
  [[nodiscard]] host::OLE_COLOR BackColor() const { return UserControl::BackColor(); }
  void BackColor(host::OLE_COLOR value);
  [[nodiscard]] host::OLE_COLOR ForeColor() const { return UserControl::ForeColor(); }
  void ForeColor(host::OLE_COLOR value);
  // Only stored: it decides at the next load whether the mouse is tracked.
  [[nodiscard]] bool DisableMouseEvents() const { return m_disableMouseEvents; }
  void DisableMouseEvents(bool value);

  [[nodiscard]] int16_t MousePointer() const { return UserControl::MousePointer(); }
  void MousePointer(int16_t value);
  [[nodiscard]] std::shared_ptr<host::StdPicture> MouseIcon() const { return UserControl::MouseIcon(); }
  // A picture sets MousePointer to 99, Nothing sets it to 0.
  void MouseIcon(std::shared_ptr<host::StdPicture> value);

  void About();
  void Dispose();
  // Lays the caption out again, applies AutoSize and paints.
  void Refresh();
  // Attaches a mouse tracker to the window, if there is none yet.
  void StartMouseEvents();

  // ---- Events, in the order of their identifiers -----------------------------------------------
  host::Event<> Click;
  host::Event<> DblClick;
  host::Event<> Change;
  host::Event<int16_t&, int16_t&> KeyDown;
  host::Event<int16_t&> KeyPress;
  host::Event<int16_t&, int16_t&> KeyUp;
  host::Event<int16_t&, int16_t&, float&, float&> MouseDown;
  host::Event<int16_t&, int16_t&, float&, float&> MouseMove;
  host::Event<int16_t&, int16_t&, float&, float&> MouseUp;
  host::Event<> MouseEnter;
  host::Event<> MouseExit;

  void ConnectEventSink(const host::EventSink& sink) override;
  host::Variant Invoke(host::StringView name, host::CallKind kind, std::span<host::Variant> args) override;

  // ---- Inspection, for tests and tools ---------------------------------------------------------
  [[nodiscard]] const MarkupLayout& CurrentLayout() const { return m_layout; }
  [[nodiscard]] int32_t PaintCount() const { return m_paintCount; }
  [[nodiscard]] bool HasMouseTracker() const { return m_mouseEx != nullptr; }

 protected:
  void RepaintForFont() override { Refresh(); }
  void UserControl_Initialize() override;
  void UserControl_InitProperties() override;
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Show() override;
  void UserControl_Terminate() override;
  void UserControl_Click() override;
  void UserControl_DblClick() override;
  void UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_KeyPress(int16_t& KeyAscii) override;
  void UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) override;

 private:
  void SetCaptionText(host::StringView value, bool literal);
  void Layout();
  void ApplyAutoSize();
  void Paint();

  utility::APIStringBuilder m_caption;
  host::String m_noHtmlCaption;
  // A caption given through NoHTMLCaption is shown without reading tags.
  bool m_literal = false;
  int32_t m_alignment = 0;
  bool m_autoSize = true;
  bool m_wordWrap = true;
  bool m_disableMouseEvents = false;

  bool m_userMode = false;
  bool m_shown = false;
  bool m_inRefresh = false;
  int32_t m_clientWidth = 0;
  int32_t m_clientHeight = 0;
  int32_t m_paintCount = 0;
  MarkupLayout m_layout;
  std::unique_ptr<frame::APIMouseEvents> m_mouseEx;
};

}  // namespace mx::controls
