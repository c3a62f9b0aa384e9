#pragma once
// host::TextBox: the host's edit control ("VB.TextBox"), with its own child window, caret,
// selection, editing, one level of undo and the clipboard.
//
// Two ways to use it:
//   on a form      the form creates it by class name (Form::AddControl, a form file's
//                  "Begin VB.TextBox" block) and drives it like any control;
//   constituent    a user control makes one, calls Create(parentWindow, x, y, w, h) with its own
//                  window as parent and pixel coordinates, then Show()s it. Move it later with
//                  MoveWindow on hWnd() (pixels) or Control::Move (twips).
//
// Events, in the host's order:
//   a key          KeyDown(KeyCode, Shift) before the control handles the key: a handler that
//                  sets KeyCode to 0 stops the key's own action (Delete, arrows...), another code
//                  is handled as that key; then for a character KeyPress(KeyAscii): 0 cancels
//                  it, another value is inserted instead; Change when the text changed; KeyUp.
//   the mouse      MouseDown, MouseMove, MouseUp, then Click for the left button; a double click
//                  gives MouseDown, MouseUp, Click, DblClick, MouseUp. X and Y in twips.
//   focus          GotFocus, LostFocus.
//   Change         after every change of Text: typing, Backspace, Delete, cut, paste, undo,
//                  Text or SelText from code, WM_SETTEXT. Setting the same text again raises
//                  none.
//
// Positions and lengths are in UTF-16 units. A multi-line box stores line breaks as "\r\n", as
// the host's does; Enter inserts one (two units), and the caret never stands between them.
//
// The window answers the edit messages: EM_GETSEL, EM_SETSEL (start -1 removes the selection,
// end -1 means the end of the text), EM_UNDO / WM_UNDO, EM_CANUNDO, EM_EMPTYUNDOBUFFER,
// EM_LIMITTEXT, EM_GETLIMITTEXT, EM_REPLACESEL, EM_SETREADONLY, EM_SETPASSWORDCHAR,
// EM_GETLINECOUNT, EM_LINEINDEX, EM_LINELENGTH, EM_LINEFROMCHAR, EM_GETMODIFY, EM_SETMODIFY,
// WM_SETTEXT, WM_GETTEXT, WM_GETTEXTLENGTH, WM_CUT, WM_COPY, WM_PASTE, WM_CLEAR, so that a
// subclass (SetWindowLong GWL_WNDPROC) can send and intercept them as on the host.
#include <cstdint>
#include <memory>
#include <span>

#include "host/Colors.h"
#include "host/Event.h"
#include "host/IntrinsicControl.h"
#include "host/StdFont.h"
#include "host/String.h"
#include "host/Variant.h"
#include "platform/Types.h"

namespace mx::host {

// The platform's edit-control messages.
inline constexpr uint32_t EM_GETSEL = 0x00B0;
inline constexpr uint32_t EM_SETSEL = 0x00B1;
inline constexpr uint32_t EM_GETMODIFY = 0x00B8;
inline constexpr uint32_t EM_SETMODIFY = 0x00B9;
inline constexpr uint32_t EM_GETLINECOUNT = 0x00BA;
inline constexpr uint32_t EM_LINEINDEX = 0x00BB;
inline constexpr uint32_t EM_LINELENGTH = 0x00C1;
inline constexpr uint32_t EM_REPLACESEL = 0x00C2;
inline constexpr uint32_t EM_LIMITTEXT = 0x00C5;
inline constexpr uint32_t EM_CANUNDO = 0x00C6;
inline constexpr uint32_t EM_UNDO = 0x00C7;
inline constexpr uint32_t EM_LINEFROMCHAR = 0x00C9;
inline constexpr uint32_t EM_SETPASSWORDCHAR = 0x00CC;
inline constexpr uint32_t EM_EMPTYUNDOBUFFER = 0x00CD;
inline constexpr uint32_t EM_SETREADONLY = 0x00CF;
inline constexpr uint32_t EM_GETLIMITTEXT = 0x00D5;

class TextBox : public IntrinsicControl {
 public:
  // Host defaults: empty text, MaxLength 0 (no limit), left aligned, single line, border 1,
  // window colours, the host's default font, HideSelection True.
  TextBox();
  ~TextBox() override;

  [[nodiscard]] String ProgId() const override { return u"VB.TextBox"; }
  [[nodiscard]] platform::HWND hWnd() const override { return m_hwnd; }

  // ---- As a constituent control --------------------------------------------------------------

  // Creates the window as a child of parent at x, y with size width x height in pixels; the
  // window is hidden until Show(). Calling it again moves the existing window there.
  void Create(platform::HWND parent, int x, int y, int width, int height);
  // Shows or hides the window (Visible, for a control outside a form).
  void Show() { ShowControl(); }
  // Repaints now.
  void Refresh();

  // ---- Properties --------------------------------------------------------------------------------

  [[nodiscard]] const String& Text() const;
  // Replaces the text, cut to MaxLength (a single-line box keeps line breaks as they are, as the
  // host's does). The caret goes to 0 and the undo is reset. Change follows when the text
  // differs.
  void Text(StringView value);
  // The selection: SelStart is the anchor-independent start, SelLength its length. Setting
  // SelStart past the end puts it at the end and clears the selection; SelLength is cut to what
  // is left after SelStart. Negative values raise 380.
  [[nodiscard]] int32_t SelStart() const;
  void SelStart(int32_t value);
  [[nodiscard]] int32_t SelLength() const;
  void SelLength(int32_t value);
  [[nodiscard]] String SelText() const;
  // Replaces the selection (as typing it would, but without key events and ignoring Locked),
  // leaving the caret after the new text; Change follows.
  void SelText(StringView value);
  // 0 for no limit. Text set from code is cut to it as well; a lower value does not cut text
  // already there. Negative raises 380.
  [[nodiscard]] int32_t MaxLength() const;
  void MaxLength(int32_t value);
  // The character shown for every character of a single-line box (empty: none; only the first
  // character is kept). While set, Copy and Cut are refused.
  [[nodiscard]] String PasswordChar() const;
  void PasswordChar(StringView value);
  // No editing by the user: typing, Backspace, Delete, cut, paste and undo do nothing; the
  // caret, selection and copy still work. Code may still set Text and SelText.
  [[nodiscard]] bool Locked() const;
  void Locked(bool value);
  // 0 left, 1 right, 2 centre; other values raise 380.
  [[nodiscard]] int16_t Alignment() const;
  void Alignment(int16_t value);
  // Multi-line: Enter inserts a line break, up and down move between lines, long lines wrap at
  // the width when there is no horizontal scroll bar. A single line scrolls sideways instead.
  [[nodiscard]] bool MultiLine() const;
  void MultiLine(bool value);
  // 0 none, 1 horizontal, 2 vertical, 3 both (multi-line only): with a horizontal bar lines do
  // not wrap and scroll sideways; a vertical one adds the window's scroll bar.
  [[nodiscard]] int16_t ScrollBars() const;
  void ScrollBars(int16_t value);
  [[nodiscard]] OLE_COLOR BackColor() const;
  void BackColor(OLE_COLOR value);
  [[nodiscard]] OLE_COLOR ForeColor() const;
  void ForeColor(OLE_COLOR value);
  // Never null. The box follows changes made to the font object itself.
  [[nodiscard]] std::shared_ptr<StdFont> Font() const;
  void Font(std::shared_ptr<StdFont> value);
  // A disabled box takes no focus, mouse or keys and draws its text grey.
  [[nodiscard]] bool Enabled() const;
  void Enabled(bool value);
  // 0 none, 1 fixed single (a sunken 3D edge, two pixels on each side).
  [[nodiscard]] int16_t BorderStyle() const;
  void BorderStyle(int16_t value);
  // True: the selection is not shown while the box does not have the focus; False: it is shown
  // in the inactive selection colour.
  [[nodiscard]] bool HideSelection() const;
  void HideSelection(bool value);

  // ---- Methods -----------------------------------------------------------------------------------

  // Whether the box holds the keyboard focus.
  [[nodiscard]] bool HasFocus() const;
  // Undo, cut, copy, paste as the keys do (Locked and PasswordChar apply).
  void Undo();
  void Cut();
  void Copy();
  void Paste();
  // The text as it is drawn (PasswordChar applied), for tests and painting.
  [[nodiscard]] String DisplayText() const;
  // Number of lines as displayed (wrapped lines count), at least 1.
  [[nodiscard]] int32_t LineCount() const;

  // ---- Events ------------------------------------------------------------------------------------

  Event<> Change;
  Event<> Click;
  Event<> DblClick;
  Event<int16_t&, int16_t&> KeyDown;   // KeyCode, Shift
  Event<int16_t&> KeyPress;            // KeyAscii
  Event<int16_t&, int16_t&> KeyUp;     // KeyCode, Shift
  Event<int16_t&, int16_t&, float&, float&> MouseDown;  // Button, Shift, X, Y (twips)
  Event<int16_t&, int16_t&, float&, float&> MouseMove;
  Event<int16_t&, int16_t&, float&, float&> MouseUp;
  Event<> GotFocus;
  Event<> LostFocus;

  // ---- The form's side --------------------------------------------------------------------------

  void CreateControlWindow(platform::HWND parentWindow) override;
  void LoadNew(bool userMode) override;
  void LoadFrom(PropertyBag& bag, bool userMode) override;
  void SaveTo(PropertyBag& bag) const override;
  void ShowControl() override;
  void HideControl() override;
  void TerminateControl() override;
  void ConnectEventSink(const EventSink& sink) override;

  [[nodiscard]] String TypeName() const override { return u"TextBox"; }
  // Late binding: the properties and methods above by name, then the extender's.
  Variant Invoke(StringView name, CallKind kind, std::span<Variant> args) override;

 protected:
  void ApplyGeometry() override;
  void ApplyVisible() override;

 private:
  struct Impl;
  friend struct Impl;
  std::unique_ptr<Impl> m_impl;
  platform::HWND m_hwnd = 0;
};

}  // namespace mx::host
