#pragma once
// USScrollBar: a themed scroll bar, vertical or horizontal: an arrow button at each end, the track
// between them and a thumb whose length shows LargeChange against the range.
//
//   +---+-------------+=======+-----------+---+
//   | < |  track      | thumb |  track    | > |     Min at the left (top), Max at the right
//   +---+-------------+=======+-----------+---+     (bottom); Min may be above Max
//
// Input: an arrow steps by SmallChange and repeats on the clock while held over it; a press on the
// track pages by LargeChange towards the pointer, repeating until the thumb reaches it; the thumb
// drags (Scroll on each new value while dragging, Change once on release); the wheel steps by
// SmallChange times the system's wheel lines; keys step, page and jump to the ends. Change follows
// every other change of Value, from code too.
//
// It paints in the host's Paint event on the window, without a persistent image.
#include <cstdint>
#include <span>

#include "host/Event.h"
#include "host/PropertyBag.h"
#include "host/String.h"
#include "host/UserControl.h"
#include "host/Variant.h"

namespace mx::controls {

class USScrollBar : public host::UserControl {
 public:
  // The parts of the bar, as PartAt answers.
  enum Part : int32_t { PartNone = 0, PartArrowMin = 1, PartTrackMin = 2, PartThumb = 3, PartTrackMax = 4,
                        PartArrowMax = 5 };
  enum Orientations : int32_t { OrientationVertical = 0, OrientationHorizontal = 1 };
  // Auto-repeat: the first repeat after this long, then one each period.
  static constexpr uint32_t kRepeatDelayMs = 350;
  static constexpr uint32_t kRepeatPeriodMs = 50;
  // A thumb is never shorter than this; a track shorter than it shows none.
  static constexpr int32_t kMinThumb = 8;

  USScrollBar();
  ~USScrollBar() override;

  [[nodiscard]] host::String ProgId() const override { return u"Morvantix.USScrollBar"; }
  [[nodiscard]] host::String TypeName() const override { return u"USScrollBar"; }
  [[nodiscard]] platform::HWND hWnd() const override { return UserControl::hWnd(); }

  [[nodiscard]] int32_t Min() const { return m_min; }
  void Min(int32_t value);
  [[nodiscard]] int32_t Max() const { return m_max; }
  void Max(int32_t value);
  // The default member, held between Min and Max (whichever is larger).
  [[nodiscard]] int32_t Value() const { return m_value; }
  void Value(int32_t value);
  // Steps below 1 are held to 1.
  [[nodiscard]] int32_t SmallChange() const { return m_smallChange; }
  void SmallChange(int32_t value);
  [[nodiscard]] int32_t LargeChange() const { return m_largeChange; }
  void LargeChange(int32_t value);
  [[nodiscard]] int32_t Orientation() const { return m_orientation; }
  void Orientation(int32_t value);
  [[nodiscard]] bool Enabled() const { return UserControl::Enabled(); }
  void Enabled(bool value);
  [[nodiscard]] int32_t Theme() const { return m_theme; }
  // Stores the theme, copies its colours into the colour properties and repaints.
  void Theme(int32_t value);
  // The track.
  [[nodiscard]] host::OLE_COLOR BackColor() const { return m_trackColor; }
  void BackColor(host::OLE_COLOR value);
  [[nodiscard]] host::OLE_COLOR BorderColor() const { return m_borderColor; }
  void BorderColor(host::OLE_COLOR value);
  [[nodiscard]] host::OLE_COLOR ArrowColor() const { return m_arrowColor; }
  void ArrowColor(host::OLE_COLOR value);
  // The faces of the arrow buttons and the thumb, a gradient across the bar.
  [[nodiscard]] host::OLE_COLOR GradientColor1() const { return m_gradient1; }
  void GradientColor1(host::OLE_COLOR value);
  [[nodiscard]] host::OLE_COLOR GradientColor2() const { return m_gradient2; }
  void GradientColor2(host::OLE_COLOR value);

  void Refresh();
  void About();

  // ---- Geometry, in client pixels along the bar's axis --------------------------------------------
  [[nodiscard]] int32_t ArrowLength() const;
  [[nodiscard]] int32_t TrackStart() const { return ArrowLength(); }
  [[nodiscard]] int32_t TrackLength() const;
  // 0 when there is no thumb (no range, or no room for one).
  [[nodiscard]] int32_t ThumbLength() const;
  [[nodiscard]] int32_t ThumbStart() const;
  [[nodiscard]] Part PartAt(int32_t x, int32_t y) const;

  host::Event<> Change;
  host::Event<> Scroll;
  host::Event<int16_t&, int16_t&> KeyDown;
  host::Event<int16_t&, int16_t&> KeyUp;
  host::Event<int16_t&, int16_t&, float&, float&> MouseDown;
  host::Event<int16_t&, int16_t&, float&, float&> MouseMove;
  host::Event<int16_t&, int16_t&, float&, float&> MouseUp;

  void ConnectEventSink(const host::EventSink& sink) override;
  host::Variant Invoke(host::StringView name, host::CallKind kind, std::span<host::Variant> args) override;

  [[nodiscard]] int32_t PaintCount() const { return m_paintCount; }
  // The part held down by the mouse (PartNone when none).
  [[nodiscard]] Part PressedPart() const { return m_pressed; }

 protected:
  void UserControl_InitProperties() override;
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Paint() override;
  void UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_LostFocus() override;
  void UserControl_Terminate() override;
  bool PreTranslateMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam, intptr_t& lResult) override;

 private:
  [[nodiscard]] bool Vertical() const { return m_orientation == OrientationVertical; }
  [[nodiscard]] int32_t Thickness() const { return Vertical() ? m_clientWidth : m_clientHeight; }
  [[nodiscard]] int32_t Length() const { return Vertical() ? m_clientHeight : m_clientWidth; }
  [[nodiscard]] int32_t Lowest() const;
  [[nodiscard]] int32_t Highest() const;
  // +1 when Max is not below Min: the direction in which "towards Max" moves Value.
  [[nodiscard]] int32_t Direction() const { return m_max >= m_min ? 1 : -1; }
  // Moves Value by steps towards Max (negative: towards Min), held to the range; raises Change
  // when it moved. True when it moved.
  bool StepBy(int64_t amount);
  // Sets Value from user input: held, painted, and Change raised when it moved.
  bool SetFromUser(int64_t value, bool raiseChange);
  // One step of the held part (an arrow or the track) when the pointer is still on it.
  void RepeatStep();
  void StopRepeat();
  void ApplyTheme();
  void Invalidate();
  void PaintBar(platform::HDC dc);

  int32_t m_min = 0;
  int32_t m_max = 100;
  int32_t m_value = 0;
  int32_t m_smallChange = 1;
  int32_t m_largeChange = 10;
  int32_t m_orientation = OrientationVertical;
  int32_t m_theme = 2;
  host::OLE_COLOR m_trackColor = 0;
  host::OLE_COLOR m_borderColor = 0;
  host::OLE_COLOR m_arrowColor = 0;
  host::OLE_COLOR m_gradient1 = 0;
  host::OLE_COLOR m_gradient2 = 0;

  int32_t m_clientWidth = 0;
  int32_t m_clientHeight = 0;
  int32_t m_paintCount = 0;
  // Mouse state: the part held, where the pointer is now, the grip on the thumb, the value when
  // a drag began, and the wheel's turn not yet worth a step.
  Part m_pressed = PartNone;
  int32_t m_pointerX = 0;
  int32_t m_pointerY = 0;
  int32_t m_grabOffset = 0;
  int32_t m_dragStartValue = 0;
  int32_t m_wheelRemainder = 0;
  bool m_timerRunning = false;
};

}  // namespace mx::controls
