#pragma once
// USDatePicker: a combo-style date field. A USTextBoxEx with a date mask (txtCombo) fills the
// left of the surface, an arrow glyph sits at the right, and a USCalendarSmall drops down below
// the control (or above it, where the work area ends) when the arrow is pressed.
//
//   +--------------------------------+---+
//   | txtCombo (Style 0)             | v |   LLine at width - 17 shows while the pointer is
//   +--------------------------------+---+   over the arrow area
//   +-----------------+
//   | USCalendarSmall |  torn off its parent while open: a tool window owned by the form, on
//   |                 |  the desktop, so that it can reach past the form's edges
//   +-----------------+
//
// The calendar's visibility is the open state; there is no separate flag. While it is open a
// 100 ms timer (TRelease) watches for a press outside it, because a top-level calendar hears
// nothing of the host's focus when the user clicks elsewhere; presses in the first 250 ms after
// opening are ignored, so that the press that opened it cannot close it again.
//
// Every close raises Click. EndDisplayCalendar is part of the interface and is never raised:
// hosts watch Click for the end of the drop-down.
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "controls/CaptionControl.h"
#include "entry/USComboBox.h"
#include "entry/USListBox.h"
#include "host/Event.h"
#include "host/PropertyBag.h"
#include "host/StdFont.h"
#include "host/StdPicture.h"
#include "host/String.h"
#include "host/Variant.h"
#include "platform/Types.h"

namespace mx::entry {
class USTextBoxEx;
}  // namespace mx::entry

namespace mx::frame {
class APIMouseEvents;
}  // namespace mx::frame

namespace mx::dates {

class USCalendarSmall;

using host::OLE_COLOR;
using host::String;
using host::StringView;

// The library's one combo style (0 an editable text, 1 a list) and gradient direction.
using entry::Dropdown_Combo;
using entry::Dropdown_List;
using entry::ENUM_COMBO_STYLE;
using entry::ENUM_POSITION;
using entry::Horizontal;
using entry::Vertical;

class USDatePicker : public controls::CaptionControl {
 public:
  // The surface never gets smaller than this on either axis, in pixels.
  static constexpr int32_t kMinimumSize = 18;
  // TRelease's interval, and the time after opening during which presses outside are ignored.
  static constexpr int32_t kReleaseInterval = 100;
  static constexpr uint32_t kReleaseGrace = 250;

  USDatePicker();
  ~USDatePicker() override;

  [[nodiscard]] String ProgId() const override { return u"Morvantix.USDatePicker"; }
  [[nodiscard]] String TypeName() const override { return u"USDatePicker"; }
  [[nodiscard]] platform::HWND hWnd() const override { return UserControl::hWnd(); }
  [[nodiscard]] platform::HDC hDC() const { return UserControl::hDC(); }

  // ---- Persisted properties ---------------------------------------------------------------------

  [[nodiscard]] int32_t Theme() const { return m_theme; }
  // Loads the theme's colours into the colour properties, then paints.
  void Theme(int32_t value);
  // ENUM_DATE_FORMAT: the layout of the mask and of every date written into the text.
  [[nodiscard]] int32_t FormatDate() const { return m_formatDate; }
  void FormatDate(int32_t value);
  [[nodiscard]] bool ShowCorner() const { return m_showCorner; }
  void ShowCorner(bool value);
  // Typing a digit with the calendar closed opens it.
  [[nodiscard]] bool AutoOpenOnChange() const { return m_autoOpenOnChange; }
  void AutoOpenOnChange(bool value);
  // ENUM_COMBO_STYLE: 0 an editable text, 1 a list-like face that only the calendar changes.
  [[nodiscard]] int32_t Style() const { return m_style; }
  void Style(int32_t value);
  [[nodiscard]] OLE_COLOR BackColor() const { return m_backColor; }
  void BackColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BackColorDisabled() const { return m_backColorDisabled; }
  void BackColorDisabled(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BackColorOver() const { return m_backColorOver; }
  void BackColorOver(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BackColorOnShowCalendar() const { return m_backColorOnShowCalendar; }
  void BackColorOnShowCalendar(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BorderColor() const { return m_borderColor; }
  void BorderColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BorderColorDisabled() const { return m_borderColorDisabled; }
  void BorderColorDisabled(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BorderColorOver() const { return m_borderColorOver; }
  void BorderColorOver(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColor() const { return m_foreColor; }
  void ForeColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColorDisabled() const { return m_foreColorDisabled; }
  void ForeColorDisabled(OLE_COLOR value);
  // ENUM_POSITION: the direction of the Style 1 gradient.
  [[nodiscard]] int32_t GradientMode() const { return m_gradientMode; }
  void GradientMode(int32_t value);
  [[nodiscard]] OLE_COLOR GradientColor1() const { return m_gradientColor1; }
  void GradientColor1(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR GradientColor2() const { return m_gradientColor2; }
  void GradientColor2(OLE_COLOR value);
  // ENUM_ALIGNMENTS: 0 left, 1 right, 2 centre; the text field's, and the Style 1 face's.
  [[nodiscard]] int16_t Alignment() const { return m_alignment; }
  void Alignment(int16_t value);
  [[nodiscard]] bool Enabled() const { return UserControl::Enabled(); }
  void Enabled(bool value);
  [[nodiscard]] int16_t MousePointer() const { return UserControl::MousePointer(); }
  void MousePointer(int16_t value);
  [[nodiscard]] std::shared_ptr<host::StdPicture> MouseIcon() const { return UserControl::MouseIcon(); }
  void MouseIcon(std::shared_ptr<host::StdPicture> value);

  // The text field's text and selection.
  [[nodiscard]] String Text() const;
  // Lays the date mask of FormatDate on the field, then sets its text.
  void Text(StringView value);
  [[nodiscard]] int32_t SelStart() const;
  void SelStart(int32_t value);
  [[nodiscard]] int32_t SelLength() const;
  void SelLength(int32_t value);
  [[nodiscard]] String SelText() const;
  void SelText(StringView value);

  // ---- Methods and read-only members -----------------------------------------------------------

  // Opens the calendar (or closes it when open), whatever the style and the pointer.
  void ShowCalendar();
  // Empties the text and puts the calendar on today.
  void Clear();
  // The text trimmed, tabs removed.
  [[nodiscard]] String TextTrim() const;
  // The text's length, mask characters included.
  [[nodiscard]] int32_t TextLen() const;
  // The length of the trimmed text without its mask.
  [[nodiscard]] int32_t TextLenEx() const;
  [[nodiscard]] host::Variant TextAsDate(int32_t xFormatToValidate = 1, int32_t xFormatToReturn = 25) const;
  [[nodiscard]] bool IsValidDate(int32_t xFormat = 1) const;

  // ---- Events, raised after the control's own handling ------------------------------------------

  host::Event<> Change;
  host::Event<> Click;
  host::Event<int16_t&, int16_t&> KeyDown;
  host::Event<int16_t&> KeyPress;
  host::Event<int16_t&, int16_t&> KeyUp;
  host::Event<int16_t&, int16_t&, float&, float&> MouseDown;
  host::Event<> MouseEnter;
  host::Event<> MouseExit;
  host::Event<int16_t&, int16_t&, float&, float&> MouseMove;
  host::Event<int16_t&, int16_t&, float&, float&> MouseUp;
  host::Event<host::DateValue> DateClicked;
  host::Event<> BeginDisplayCalendar;
  host::Event<> EndDisplayCalendar;

  void ConnectEventSink(const host::EventSink& sink) override;
  host::Variant Invoke(StringView name, host::CallKind kind, std::span<host::Variant> args) override;

  // ---- Inspection, for tests and tools -----------------------------------------------------------

  [[nodiscard]] entry::USTextBoxEx& TextField() const { return *m_txtCombo; }
  [[nodiscard]] USCalendarSmall& Calendar() const { return *m_calendar; }
  [[nodiscard]] bool IsCalendarOpen() const;
  [[nodiscard]] bool IsReleaseTimerRunning() const { return m_releaseRunning; }
  [[nodiscard]] const platform::RECT& ArrowRect() const { return m_arrowRect; }
  // The separating line: its X and whether it shows.
  [[nodiscard]] int32_t LineX() const { return m_lineX; }
  [[nodiscard]] bool LineVisible() const { return m_lineVisible; }
  [[nodiscard]] bool HasFocus() const { return m_hasFocus; }
  [[nodiscard]] int32_t PaintCount() const { return m_paintCount; }

 protected:
  void RepaintForFont() override;
  void UserControl_Initialize() override;
  void UserControl_InitProperties() override;
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Show() override;
  void UserControl_GotFocus() override;
  void UserControl_LostFocus() override;
  void UserControl_Terminate() override;
  void UserControl_KeyDown(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_KeyPress(int16_t& KeyAscii) override;
  void UserControl_KeyUp(int16_t& KeyCode, int16_t& Shift) override;
  void UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) override;

 private:
  // Children and their wiring (USDatePicker.cpp).
  void CreateChildren();
  void ConnectChildren();
  void ApplyFontToChildren();

  // The date mask and the text.
  void ApplyDateMask(int32_t xFormat);
  [[nodiscard]] String FormatTag() const;
  // The text read as a date in the layout in force; false when it is not a valid date there.
  [[nodiscard]] bool TextToDate(double& out) const;
  // A date written in the layout in force.
  [[nodiscard]] String DateToText(double date) const;

  // The drop-down (USDatePickerCalendar.cpp).
  void ToggleCalendar();
  void OpenCalendar();
  void CloseCalendar();
  void PlaceCalendar();
  void ReturnCalendar();
  void StartRelease();
  void StopRelease();
  void ReleaseTick();
  void TakeDate(double date);
  void StepDate(int32_t days);

  // Keys, focus and hover (USDatePickerInput.cpp).
  void HandleKeyDown(int16_t& KeyCode, int16_t& Shift);
  void EnterControl();
  void LeaveControl();
  void OnFocusLeaving();
  [[nodiscard]] bool OwnsWindow(platform::HWND hwnd) const;
  [[nodiscard]] bool CalendarOwnsWindow(platform::HWND hwnd) const;
  void GiveFocusBack();
  void OnTrackerIn();
  void OnTrackerOut();
  void OnHoverMove(float x);
  void ShowLine(bool visible);
  void AttachTrackers();
  void ApplyCornerRegion();

  // Painting (USDatePickerPaint.cpp).
  void DrawDatePicker();
  void DrawLine(platform::HDC dc);
  [[nodiscard]] OLE_COLOR SurfaceColor() const;
  void DressTextField(OLE_COLOR back);

  void Changed(StringView key);
  void ApplyTheme();

  std::shared_ptr<entry::USTextBoxEx> m_txtCombo;
  std::shared_ptr<USCalendarSmall> m_calendar;
  std::unique_ptr<frame::APIMouseEvents> m_mouseExA;
  std::unique_ptr<frame::APIMouseEvents> m_mouseExB;
  // The field is two windows, its frame and the inner box: each needs its own tracker, or a
  // pointer leaving straight from the one not tracked would never be seen to go.
  std::unique_ptr<frame::APIMouseEvents> m_mouseExInner;
  std::vector<uint64_t> m_connections;

  // Persisted.
  int32_t m_theme = 2;
  int32_t m_formatDate = 1;
  bool m_showCorner = false;
  bool m_autoOpenOnChange = false;
  int32_t m_style = Dropdown_Combo;
  OLE_COLOR m_backColor = 0xFFFFFF;
  OLE_COLOR m_backColorDisabled = 0xFFFFFF;
  OLE_COLOR m_backColorOver = 0xF4FFFF;
  OLE_COLOR m_backColorOnShowCalendar = 0xFFE3B7;
  OLE_COLOR m_borderColor = 0xFFCFA3;
  OLE_COLOR m_borderColorDisabled = 0xDBCECC;
  OLE_COLOR m_borderColorOver = 0xF3B678;
  OLE_COLOR m_foreColor = 0x000000;
  OLE_COLOR m_foreColorDisabled = 0x000000;
  int32_t m_gradientMode = Vertical;
  OLE_COLOR m_gradientColor1 = 0xFFFFFF;
  OLE_COLOR m_gradientColor2 = 0xFFFFFF;
  int16_t m_alignment = 0;

  // State.
  platform::RECT m_arrowRect{};
  bool m_runMode = false;
  int32_t m_lastMouseX = 0;
  uint32_t m_calendarOpenedAt = 0;
  int32_t m_lineX = 0;
  bool m_lineVisible = false;
  bool m_hasFocus = false;
  bool m_mouseOver = false;
  bool m_releaseRunning = false;
  bool m_loading = true;
  int32_t m_paintCount = 0;
};

}  // namespace mx::dates
