#pragma once
// USTextBoxEx: the library's text box. A host TextBox (the constituent control, inner box) sits
// inside the control's window, framed by a themed border; the control filters keys before they
// reach the inner box and rewrites its text after a change, for fixed-position masks, number
// and currency entry and letter case. Three looks: normal (1), focused (2) and disabled (-1),
// each with its own font, colours and border colour.
//
// The flow of one typed key: the inner box raises KeyDown, which the control raises first (a
// handler may change or zero the key), then handles: clipboard shortcuts are noted and skip all
// filtering; Delete and Backspace are done by the control itself in a mask. KeyPress follows
// the same way: raised, then filtered (number keys, decimals, case, mask positions). What the
// key leaves changes the inner text; the change handler then reformats (currency as typed, a
// mask laid anew), unless the change came from the control's own key or focus handling.
#include <cstdint>
#include <memory>
#include <span>

#include "entry/NumberEntry.h"
#include "entry/TextMask.h"
#include "frame/ToolTipSettings.h"
#include "host/Event.h"
#include "host/PropertyBag.h"
#include "host/StdFont.h"
#include "host/String.h"
#include "host/UserControl.h"
#include "host/Variant.h"
#include "platform/Types.h"

namespace mx::host {
class TextBox;
}  // namespace mx::host

namespace mx::frame {
class APITooltip;
}  // namespace mx::frame

namespace mx::entry {

using host::OLE_COLOR;
class APITextEvents;
class ShellAutoComplete;

// The shell auto-completion flags.
enum ENUM_AUTOCOMPLETEFLAGS : uint32_t {
  SHACF_DEFAULT = 0,
  SHACF_FILESYSTEM = 1,
  SHACF_URLHISTORY = 2,
  SHACF_URLMRU = 4,
  SHACF_USETAB = 8,
  SHACF_URLALL = 6,
  SHACF_FILESYS_ONLY = 16,
  SHACF_FILESYS_DIRS = 32,
  SHACF_AUTOSUGGEST_FORCE_ON = 0x10000000,
  SHACF_AUTOSUGGEST_FORCE_OFF = 0x20000000,
  SHACF_AUTOAPPEND_FORCE_ON = 0x40000000,
  SHACF_AUTOAPPEND_FORCE_OFF = 0x80000000,
};

class USTextBoxEx : public host::UserControl, public frame::ToolTipProperties {
 public:
  // The looks ApplyLook takes.
  static constexpr int32_t kLookDisabled = -1;
  static constexpr int32_t kLookNormal = 1;
  static constexpr int32_t kLookFocused = 2;
  // Resize raises a smaller client size to this, in pixels, on either axis.
  static constexpr int32_t kMinimumSize = 19;

  USTextBoxEx();
  ~USTextBoxEx() override;

  [[nodiscard]] String ProgId() const override { return u"Morvantix.USTextBoxEx"; }
  [[nodiscard]] String TypeName() const override { return u"USTextBoxEx"; }

  // ---- Persisted properties ---------------------------------------------------------------------

  [[nodiscard]] int16_t Alignment() const { return m_alignment; }
  void Alignment(int16_t value);
  [[nodiscard]] bool AllowNegativeNumber() const { return m_number.allowNegativeNumber; }
  void AllowNegativeNumber(bool value);
  [[nodiscard]] bool AutoFormatCurrency() const { return m_number.autoFormatCurrency; }
  void AutoFormatCurrency(bool value);
  [[nodiscard]] bool AutoSelect() const { return m_autoSelect; }
  void AutoSelect(bool value);
  [[nodiscard]] OLE_COLOR BackColor() const { return m_backColor; }
  void BackColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BackColorDisabled() const { return m_backColorDisabled; }
  void BackColorDisabled(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BackColorOver() const { return m_backColorOver; }
  void BackColorOver(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BorderColor() const { return m_borderColor; }
  void BorderColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BorderColorDisabled() const { return m_borderColorDisabled; }
  void BorderColorDisabled(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR BorderColorOver() const { return m_borderColorOver; }
  void BorderColorOver(OLE_COLOR value);
  [[nodiscard]] const String& CurrencyChar() const { return m_number.currencyChar; }
  void CurrencyChar(StringView value);
  [[nodiscard]] const String& DataField() const { return m_dataField; }
  void DataField(StringView value);
  [[nodiscard]] int16_t Decimals() const { return m_number.decimals; }
  void Decimals(int16_t value);
  // The decimal mark; the misspelt name is the public one.
  [[nodiscard]] const String& DecimalSimbol() const { return m_number.decimalSimbol; }
  void DecimalSimbol(StringView value);
  [[nodiscard]] bool Enabled() const { return UserControl::Enabled(); }
  void Enabled(bool value);
  [[nodiscard]] std::shared_ptr<host::StdFont> Font() const { return m_font; }
  void Font(std::shared_ptr<host::StdFont> value);
  [[nodiscard]] std::shared_ptr<host::StdFont> FontDisabled() const { return m_fontDisabled; }
  void FontDisabled(std::shared_ptr<host::StdFont> value);
  [[nodiscard]] std::shared_ptr<host::StdFont> FontOver() const { return m_fontOver; }
  void FontOver(std::shared_ptr<host::StdFont> value);
  [[nodiscard]] OLE_COLOR ForeColor() const { return m_foreColor; }
  void ForeColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColorDisabled() const { return m_foreColorDisabled; }
  void ForeColorDisabled(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColorOver() const { return m_foreColorOver; }
  void ForeColorOver(OLE_COLOR value);
  [[nodiscard]] int32_t FormatType() const { return m_number.formatType; }
  void FormatType(int32_t value);
  [[nodiscard]] bool Locked() const { return m_locked; }
  void Locked(bool value);
  [[nodiscard]] const String& Mask() const { return m_mask; }
  void Mask(StringView value);
  [[nodiscard]] int32_t MaskType() const { return m_maskType; }
  void MaskType(int32_t value);
  [[nodiscard]] int32_t MaxLength() const;
  void MaxLength(int32_t value);
  [[nodiscard]] bool NumberOnly() const { return m_numberOnly; }
  void NumberOnly(bool value);
  // Stored and persisted; the host has no drag and drop of data between windows.
  [[nodiscard]] int16_t OLEDragMode() const { return m_oleDragMode; }
  void OLEDragMode(int16_t value);
  [[nodiscard]] int16_t OLEDropMode() const { return m_oleDropMode; }
  void OLEDropMode(int16_t value);
  [[nodiscard]] String PasswordChar() const;
  void PasswordChar(StringView value);
  [[nodiscard]] bool Required() const { return m_required; }
  void Required(bool value);
  [[nodiscard]] OLE_COLOR RequiredColor() const { return m_requiredColor; }
  void RequiredColor(OLE_COLOR value);
  [[nodiscard]] String Text() const;
  void Text(StringView value);
  [[nodiscard]] int32_t TextCase() const { return m_textCase; }
  void TextCase(int32_t value);
  [[nodiscard]] int32_t Theme() const { return m_theme; }
  void Theme(int32_t value);

  // The tooltip settings (ToolTip*, ToolDelayTime) come from ToolTipProperties.

  // ---- Read-only views of the text ---------------------------------------------------------------

  // The text without CurrencyChar, trimmed, read as a number (0 when it is none).
  [[nodiscard]] double TextCdbl() const;
  [[nodiscard]] double Value() const { return TextCdbl(); }
  [[nodiscard]] String TextTrim() const;
  [[nodiscard]] int32_t TextLen() const;
  [[nodiscard]] int32_t TextLenEx() const;
  [[nodiscard]] String TextUCase() const;
  [[nodiscard]] String TextLCase() const;
  [[nodiscard]] String TextNoMask() const;
  [[nodiscard]] String TextNoMaskEx() const;
  // The text as a date in another layout when it holds exactly 8 digits and is a valid date in
  // the first layout; Null otherwise.
  [[nodiscard]] host::Variant TextAsDate(int32_t xFormatToValidate = 1, int32_t xFormatToReturn = 25) const;
  [[nodiscard]] platform::HWND hWndEx() const;
  [[nodiscard]] bool IsValidEmail() const;
  [[nodiscard]] String ReturnNumbersOnly() const;
  [[nodiscard]] String ReturnTextOnly() const;
  // 1 plus the line breaks of the trimmed text.
  [[nodiscard]] int32_t TotalLines() const;

  [[nodiscard]] int32_t SelStart() const;
  void SelStart(int32_t value);
  [[nodiscard]] int32_t SelLength() const;
  void SelLength(int32_t value);
  [[nodiscard]] String SelText() const;
  void SelText(StringView value);

  // ---- Methods -----------------------------------------------------------------------------------

  // Puts a whole file's bytes into the inner box as text (UTF-8 when it reads as UTF-8, else
  // Latin-1); a file that cannot be opened leaves the text alone and returns false.
  bool LoadTextFile(StringView FileName);
  void ClearControl();
  void CreateToolTip();
  void DestroyToolTip();
  // Stops routing the inner box's events through the control's filters.
  void DestroySubClass();
  void About();

  // Completion of file and directory names as typed (the ENUM_AUTOCOMPLETEFLAGS); a second
  // call replaces the flags.
  void AutoCompleteEx(uint32_t Flags);
  [[nodiscard]] ShellAutoComplete* ShellCompletion() const { return m_shellComplete.get(); }

  // Completion from a database column: every typed change is completed with the first value
  // that begins with the text. CurrentDb is a Connection or a database file name. Raises when
  // the query cannot run, and then leaves no completion behind.
  void InitializeAutoComplete(const host::Variant& CurrentDb, StringView TableName, StringView FieldName);
  void FinalizeAutoComplete();
  // The completion object while there is one (for a requery through Texto_AtualizarDados).
  [[nodiscard]] APITextEvents* TextEvents() const { return m_textEvents.get(); }

  // The look painted last (1, 2 or -1), the tooltip and the inner box: for tests and the date
  // picker.
  [[nodiscard]] int32_t CurrentLook() const { return m_look; }
  [[nodiscard]] frame::APITooltip* ToolTipObject() const { return m_toolTip.get(); }
  [[nodiscard]] host::TextBox& Inner() const { return *m_inner; }

  // ---- Events ------------------------------------------------------------------------------------

  host::Event<> Change;
  host::Event<> Click;
  host::Event<> DblClick;
  host::Event<int16_t&, int16_t&> KeyUp;
  host::Event<int16_t&, int16_t&> KeyDown;
  host::Event<int16_t&> KeyPress;
  host::Event<int16_t&, int16_t&, float&, float&> MouseMove;
  host::Event<int16_t&, int16_t&, float&, float&> MouseDown;
  host::Event<int16_t&, int16_t&, float&, float&> MouseUp;

  void ConnectEventSink(const host::EventSink& sink) override;
  host::Variant Invoke(StringView name, host::CallKind kind, std::span<host::Variant> args) override;

  // Paints the border and the required mark in a look, and gives the inner box the look's font
  // and colours. A disabled control always takes the disabled look.
  void ApplyLook(int32_t xState, bool xRefresh = true);

 protected:
  void ToolTipPropertyChanged(StringView key) override { PropertyChanged(key); }
  void UserControl_Initialize() override;
  void UserControl_InitProperties() override;
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Show() override;
  void UserControl_GotFocus() override;
  void UserControl_Terminate() override;

 private:
  friend class TextBoxExEvents;
  void ConnectInner();
  void Layout();
  void ApplyTheme();
  void ApplyMaxLength(int32_t value);
  void SetInnerText(StringView value);
  void GrowMaxLengthTo(int32_t length);
  void PrepareMaskEntry();
  void HandleKeyDown(int16_t& KeyCode, int16_t& Shift);
  void HandleKeyPress(int16_t& KeyAscii);
  void OnInnerKeyDown(int16_t& KeyCode, int16_t& Shift);
  void OnInnerKeyPress(int16_t& KeyAscii);
  void OnInnerChange();
  void OnInnerGotFocus();
  void OnInnerLostFocus();
  void LeaveFocus();
  bool OnInnerSiteMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam);
  void OnInnerClick();
  void OnChange();
  void OnFormatCurrencyAsTyped();
  [[nodiscard]] std::shared_ptr<host::StdFont> LookFont(int32_t look) const;

  std::shared_ptr<host::TextBox> m_inner;
  std::vector<uint64_t> m_innerConnections;
  std::unique_ptr<frame::APITooltip> m_toolTip;
  std::unique_ptr<APITextEvents> m_textEvents;
  std::unique_ptr<ShellAutoComplete> m_shellComplete;
  // A key the completion list took in KeyDown: its character does not reach the box.
  int16_t m_listTookChar = 0;
  // A Tab that took a completion: its character is swallowed too.
  bool m_tabTaken = false;

  NumberOptions m_number;
  int16_t m_alignment = 0;
  bool m_autoSelect = true;
  OLE_COLOR m_backColor = 0xFFFFFF;
  OLE_COLOR m_backColorDisabled = 0xFFFFFF;
  OLE_COLOR m_backColorOver = 0xF4FFFF;
  OLE_COLOR m_borderColor = 0;
  OLE_COLOR m_borderColorDisabled = 14405324;
  OLE_COLOR m_borderColorOver = 0;
  String m_dataField;
  std::shared_ptr<host::StdFont> m_font;
  std::shared_ptr<host::StdFont> m_fontDisabled;
  std::shared_ptr<host::StdFont> m_fontOver;
  OLE_COLOR m_foreColor = 0;
  OLE_COLOR m_foreColorDisabled = 0;
  OLE_COLOR m_foreColorOver = 0;
  bool m_locked = false;
  String m_mask;
  int32_t m_maskType = Text_And_Number;
  bool m_numberOnly = false;
  int16_t m_oleDragMode = 0;
  int16_t m_oleDropMode = 0;
  bool m_required = false;
  OLE_COLOR m_requiredColor = 0x0000C0;
  int32_t m_textCase = Case_Normal;
  int32_t m_theme = 2;

  // Private state of the key and change handling.
  String m_lastText;
  bool m_inHandler = false;
  int32_t m_maskCaret = 0;
  bool m_hasFocus = false;
  // The inner box lost the focus to the control's own window, which hands it straight back.
  bool m_focusPassing = false;
  // A Tab of the inner box went to the form; its character follows and goes the same way.
  bool m_tabPassed = false;
  bool m_ctrlZ = false, m_ctrlX = false, m_ctrlC = false, m_ctrlV = false;
  // A Backspace the key-down handling already did in a mask: its character is not typed again.
  bool m_swallowBackspace = false;
  bool m_userMode = false;
  bool m_routed = true;
  int32_t m_look = kLookNormal;
};

}  // namespace mx::entry
