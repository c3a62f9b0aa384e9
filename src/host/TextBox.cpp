// host::TextBox: properties, the window's life and the form's side (loading, saving, events by
// name). Editing lives in TextBoxEdit.cpp, drawing in TextBoxView.cpp, messages in
// TextBoxWindow.cpp.
#include <algorithm>
#include <cmath>

#include "host/Err.h"
#include "host/Form.h"
#include "host/PropertyBag.h"
#include "host/Screen.h"
#include "host/Strings.h"
#include "host/TextBoxImpl.h"
#include "platform/Gdi.h"
#include "platform/User.h"

namespace mx::host {

using namespace mx::platform;

namespace {

constexpr char16_t kSource[] = u"TextBox";

int ToPixelsX(float twips) { return static_cast<int>(std::lround(twips / GetScreen().TwipsPerPixelX())); }
int ToPixelsY(float twips) { return static_cast<int>(std::lround(twips / GetScreen().TwipsPerPixelY())); }

}  // namespace

TextBox::TextBox() : m_impl(std::make_unique<Impl>(*this)) {
  // The host's size for a text box dropped on a form.
  m_width = 1215;
  m_height = 495;
  Font(std::make_shared<StdFont>());
}

TextBox::~TextBox() {
  *m_impl->alive = false;
  if (m_hwnd) {
    // The window may outlive nothing of ours: it stops answering before it goes.
    SetWindowLongPtr(m_hwnd, GWLP_USERDATA, 0);
    DestroyWindow(m_hwnd);
    m_hwnd = 0;
  }
  if (m_impl->font && m_impl->fontConnection) m_impl->font->FontChanged.disconnect(m_impl->fontConnection);
  m_impl->ReleaseFont();
}

// ---- window ------------------------------------------------------------------------------------

void TextBox::Impl::CreateWindowIn(HWND parentWindow, int x, int y, int w, int h) {
  parent = parentWindow;
  if (self.m_hwnd && IsWindow(self.m_hwnd)) {
    if (GetParent(self.m_hwnd) != parentWindow) SetParent(self.m_hwnd, parentWindow);
    MoveWindow(self.m_hwnd, x, y, w, h, TRUE);
    return;
  }
  RegisterClassOnce();
  DWORD style = WS_CHILD | WS_CLIPSIBLINGS;
  if (multiLine && (scrollBars & 2)) style |= WS_VSCROLL;
  if (multiLine && (scrollBars & 1)) style |= WS_HSCROLL;
  self.m_hwnd = CreateWindowExW(0, kTextBoxClass, u"", style, x, y, std::max(w, 0), std::max(h, 0), parentWindow, 0,
                                0, &self);
  if (!self.m_hwnd) Raise(kErrOutOfMemory, kSource, u"The text box's window could not be created");
  if (!enabled) EnableWindow(self.m_hwnd, FALSE);
  layoutValid = false;
}

void TextBox::Create(HWND parent, int x, int y, int width, int height) {
  const float tpx = GetScreen().TwipsPerPixelX(), tpy = GetScreen().TwipsPerPixelY();
  m_left = static_cast<float>(x) * tpx;
  m_top = static_cast<float>(y) * tpy;
  m_width = static_cast<float>(std::max(width, 0)) * tpx;
  m_height = static_cast<float>(std::max(height, 0)) * tpy;
  m_impl->CreateWindowIn(parent, x, y, width, height);
}

void TextBox::CreateControlWindow(HWND parentWindow) {
  m_impl->CreateWindowIn(parentWindow, ToPixelsX(m_left), ToPixelsY(m_top), ToPixelsX(m_width), ToPixelsY(m_height));
}

void TextBox::ApplyGeometry() {
  if (m_hwnd) MoveWindow(m_hwnd, ToPixelsX(m_left), ToPixelsY(m_top), ToPixelsX(m_width), ToPixelsY(m_height), TRUE);
}

void TextBox::ApplyVisible() {
  if (m_hwnd && m_impl->shown) ShowWindow(m_hwnd, m_visible ? SW_SHOWNA : SW_HIDE);
}

void TextBox::ShowControl() {
  if (!m_hwnd) return;
  m_impl->shown = true;
  if (m_visible) ShowWindow(m_hwnd, SW_SHOWNA);
}

void TextBox::HideControl() {
  if (!m_hwnd) return;
  m_impl->shown = false;
  ShowWindow(m_hwnd, SW_HIDE);
}

void TextBox::TerminateControl() {
  m_impl->terminated = true;
  m_impl->shown = false;
  if (m_hwnd) {
    HWND h = m_hwnd;
    m_hwnd = 0;
    DestroyWindow(h);
  }
}

void TextBox::Refresh() {
  if (!m_hwnd) return;
  InvalidateRect(m_hwnd, nullptr, TRUE);
  UpdateWindow(m_hwnd);
}

// ---- font --------------------------------------------------------------------------------------

void TextBox::Impl::EnsureFont() {
  if (hfont) return;
  const LOGFONTW lf = font->ToLogFont();
  hfont = CreateFontIndirectW(&lf);
  if (!measureDC) measureDC = CreateCompatibleDC(0);
  if (measureDC) SelectObject(measureDC, hfont);
}

void TextBox::Impl::ReleaseFont() {
  if (measureDC) {
    DeleteDC(measureDC);
    measureDC = 0;
  }
  if (hfont) {
    DeleteObject(hfont);
    hfont = 0;
  }
}

void TextBox::Impl::FontChanged() {
  ReleaseFont();
  layoutValid = false;
  Invalidate();
}

// ---- properties --------------------------------------------------------------------------------

const String& TextBox::Text() const { return m_impl->text; }
void TextBox::Text(StringView value) { m_impl->SetText(value); }

int32_t TextBox::SelStart() const { return m_impl->SelMin(); }

void TextBox::SelStart(int32_t value) {
  if (value < 0) Raise(kErrInvalidPropertyValue, kSource);
  const int32_t pos = std::min<int32_t>(value, static_cast<int32_t>(m_impl->text.size()));
  m_impl->SetSelection(pos, pos);
}

int32_t TextBox::SelLength() const { return m_impl->SelMax() - m_impl->SelMin(); }

void TextBox::SelLength(int32_t value) {
  if (value < 0) Raise(kErrInvalidPropertyValue, kSource);
  const int32_t start = m_impl->SelMin();
  const int32_t end = static_cast<int32_t>(
      std::min<int64_t>(static_cast<int64_t>(start) + value, static_cast<int64_t>(m_impl->text.size())));
  m_impl->SetSelection(start, end);
}

String TextBox::SelText() const {
  return m_impl->text.substr(static_cast<size_t>(m_impl->SelMin()),
                             static_cast<size_t>(m_impl->SelMax() - m_impl->SelMin()));
}

void TextBox::SelText(StringView value) {
  m_impl->typingRun = false;
  m_impl->ReplaceSelection(value, /*limit=*/false, /*typing=*/false);
}

int32_t TextBox::MaxLength() const { return m_impl->maxLength; }

void TextBox::MaxLength(int32_t value) {
  if (value < 0) Raise(kErrInvalidPropertyValue, kSource);
  m_impl->maxLength = value;
}

String TextBox::PasswordChar() const {
  return m_impl->passwordChar ? String(1, m_impl->passwordChar) : String();
}

void TextBox::PasswordChar(StringView value) {
  m_impl->passwordChar = value.empty() ? char16_t{0} : value[0];
  m_impl->layoutValid = false;
  m_impl->Invalidate();
}

bool TextBox::Locked() const { return m_impl->locked; }
void TextBox::Locked(bool value) { m_impl->locked = value; }

int16_t TextBox::Alignment() const { return m_impl->alignment; }

void TextBox::Alignment(int16_t value) {
  if (value < 0 || value > 2) Raise(kErrInvalidPropertyValue, kSource);
  m_impl->alignment = value;
  m_impl->Invalidate();
}

bool TextBox::MultiLine() const { return m_impl->multiLine; }

void TextBox::MultiLine(bool value) {
  m_impl->multiLine = value;
  m_impl->layoutValid = false;
  m_impl->scrollX = 0;
  m_impl->topLine = 0;
  m_impl->Invalidate();
}

int16_t TextBox::ScrollBars() const { return m_impl->scrollBars; }

void TextBox::ScrollBars(int16_t value) {
  if (value < 0 || value > 3) Raise(kErrInvalidPropertyValue, kSource);
  m_impl->scrollBars = value;
  if (m_hwnd) {
    LONG_PTR style = GetWindowLongPtr(m_hwnd, GWL_STYLE) & ~static_cast<LONG_PTR>(WS_VSCROLL | WS_HSCROLL);
    if (m_impl->multiLine && (value & 2)) style |= WS_VSCROLL;
    if (m_impl->multiLine && (value & 1)) style |= WS_HSCROLL;
    SetWindowLongPtr(m_hwnd, GWL_STYLE, style);
    SetWindowPos(m_hwnd, 0, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
  }
  m_impl->layoutValid = false;
  m_impl->Invalidate();
}

OLE_COLOR TextBox::BackColor() const { return m_impl->backColor; }
void TextBox::BackColor(OLE_COLOR value) {
  m_impl->backColor = value;
  m_impl->Invalidate();
}

OLE_COLOR TextBox::ForeColor() const { return m_impl->foreColor; }
void TextBox::ForeColor(OLE_COLOR value) {
  m_impl->foreColor = value;
  m_impl->Invalidate();
}

std::shared_ptr<StdFont> TextBox::Font() const { return m_impl->font; }

void TextBox::Font(std::shared_ptr<StdFont> value) {
  if (!value) Raise(kErrInvalidPropertyValue, kSource, u"A font object is required");
  if (m_impl->font && m_impl->fontConnection) m_impl->font->FontChanged.disconnect(m_impl->fontConnection);
  m_impl->font = std::move(value);
  // Changes made to the font object itself (Font.Bold = True) reach the box too.
  std::weak_ptr<bool> alive = m_impl->alive;
  Impl* impl = m_impl.get();
  m_impl->fontConnection = m_impl->font->FontChanged.connect([alive, impl](const String&) {
    if (auto a = alive.lock(); a && *a) impl->FontChanged();
  });
  m_impl->FontChanged();
}

bool TextBox::Enabled() const { return m_impl->enabled; }

void TextBox::Enabled(bool value) {
  m_impl->enabled = value;
  if (m_hwnd) EnableWindow(m_hwnd, value ? TRUE : FALSE);
  m_impl->Invalidate();
}

int16_t TextBox::BorderStyle() const { return m_impl->borderStyle; }

void TextBox::BorderStyle(int16_t value) {
  if (value < 0 || value > 1) Raise(kErrInvalidPropertyValue, kSource);
  m_impl->borderStyle = value;
  m_impl->layoutValid = false;
  m_impl->Invalidate();
}

bool TextBox::HideSelection() const { return m_impl->hideSelection; }
void TextBox::HideSelection(bool value) {
  m_impl->hideSelection = value;
  m_impl->Invalidate();
}

bool TextBox::HasFocus() const { return m_hwnd && GetFocus() == m_hwnd; }

void TextBox::Undo() { m_impl->DoUndo(); }
void TextBox::Cut() { m_impl->DoCut(); }
void TextBox::Copy() { m_impl->DoCopy(); }
void TextBox::Paste() { m_impl->DoPaste(); }

String TextBox::DisplayText() const { return m_impl->Display(); }

int32_t TextBox::LineCount() const {
  m_impl->Layout();
  return static_cast<int32_t>(m_impl->lines.size());
}

// ---- the form's side ------------------------------------------------------------------------------

void TextBox::ConnectEventSink(const EventSink& sink) {
  BindEventSinks(sink, u"Change", Change, u"Click", Click, u"DblClick", DblClick, u"KeyDown", KeyDown, u"KeyPress",
                 KeyPress, u"KeyUp", KeyUp, u"MouseDown", MouseDown, u"MouseMove", MouseMove, u"MouseUp", MouseUp,
                 u"GotFocus", GotFocus, u"LostFocus", LostFocus);
}

void TextBox::LoadNew(bool userMode) {
  m_impl->userMode = userMode;
  if (m_form) Font(m_form->Font()->Clone());
  // A new box shows its own name, as the host's does when one is drawn on a form.
  m_impl->text = m_name;
  m_impl->anchor = m_impl->caret = 0;
  m_impl->layoutValid = false;
}

void TextBox::LoadFrom(PropertyBag& bag, bool userMode) {
  Impl& im = *m_impl;
  im.userMode = userMode;
  Alignment(bag.ReadProperty(u"Alignment", int16_t{0}).ToInteger());
  BackColor(bag.ReadProperty(u"BackColor", vbWindowBackground).ToLong());
  ForeColor(bag.ReadProperty(u"ForeColor", vbWindowText).ToLong());
  BorderStyle(bag.ReadProperty(u"BorderStyle", int16_t{1}).ToInteger());
  HideSelection(bag.ReadProperty(u"HideSelection", true).ToBoolean());
  Locked(bag.ReadProperty(u"Locked", false).ToBoolean());
  MaxLength(bag.ReadProperty(u"MaxLength", int32_t{0}).ToLong());
  MultiLine(bag.ReadProperty(u"MultiLine", false).ToBoolean());
  ScrollBars(bag.ReadProperty(u"ScrollBars", int16_t{0}).ToInteger());
  PasswordChar(bag.ReadProperty(u"PasswordChar", String()).ToString());
  Enabled(bag.ReadProperty(u"Enabled", true).ToBoolean());
  std::shared_ptr<StdFont> font;
  if (bag.Contains(u"Font")) font = std::dynamic_pointer_cast<StdFont>(bag.ReadProperty(u"Font").ToObject());
  if (!font && m_form) font = m_form->Font()->Clone();
  if (font) Font(font);
  // Loading is not a change: the text goes in without Change and without the length limit.
  im.text = bag.ReadProperty(u"Text", String()).ToString();
  im.anchor = im.caret = 0;
  im.canUndo = false;
  im.layoutValid = false;
}

void TextBox::SaveTo(PropertyBag& bag) const {
  const Impl& im = *m_impl;
  // An entry the file had with the same value stays as it was (its place and spelling); the
  // others are written, or removed when back at their default.
  auto put = [&bag](StringView key, const Variant& value, const Variant& defaultValue) {
    if (const BagEntry* e = bag.Find(key); e && BagValuesEqual(value, e->value)) return;
    bag.WriteProperty(key, value, defaultValue);
  };
  put(u"Alignment", im.alignment, int16_t{0});
  put(u"BackColor", im.backColor, vbWindowBackground);
  put(u"BorderStyle", im.borderStyle, int16_t{1});
  put(u"Enabled", im.enabled, true);
  // The form's own font is the one a box has unless it was given another: not written then.
  if (m_form && m_form->Font() && im.font->SameAs(*m_form->Font())) bag.Remove(u"Font");
  else put(u"Font", Variant(im.font), Variant::Missing());
  put(u"ForeColor", im.foreColor, vbWindowText);
  put(u"HideSelection", im.hideSelection, true);
  put(u"Locked", im.locked, false);
  put(u"MaxLength", im.maxLength, int32_t{0});
  put(u"MultiLine", im.multiLine, false);
  put(u"PasswordChar", PasswordChar(), String());
  put(u"ScrollBars", im.scrollBars, int16_t{0});
  put(u"Text", im.text, String());
}

// ---- late binding ------------------------------------------------------------------------------------

Variant TextBox::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  const String member = FoldCase(name);
  const bool let = kind == CallKind::Let || kind == CallKind::Set;
  auto value = [&]() -> const Variant& {
    if (args.empty()) Raise(kErrWrongArgumentCount, kSource);
    return args.back();
  };
  if (member == u"TEXT") {
    if (let) Text(value().ToString());
    return let ? Variant() : Variant(Text());
  }
  if (member == u"SELSTART") {
    if (let) SelStart(value().ToLong());
    return let ? Variant() : Variant(SelStart());
  }
  if (member == u"SELLENGTH") {
    if (let) SelLength(value().ToLong());
    return let ? Variant() : Variant(SelLength());
  }
  if (member == u"SELTEXT") {
    if (let) SelText(value().ToString());
    return let ? Variant() : Variant(SelText());
  }
  if (member == u"MAXLENGTH") {
    if (let) MaxLength(value().ToLong());
    return let ? Variant() : Variant(MaxLength());
  }
  if (member == u"PASSWORDCHAR") {
    if (let) PasswordChar(value().ToString());
    return let ? Variant() : Variant(PasswordChar());
  }
  if (member == u"LOCKED") {
    if (let) Locked(value().ToBoolean());
    return let ? Variant() : Variant(Locked());
  }
  if (member == u"ALIGNMENT") {
    if (let) Alignment(value().ToInteger());
    return let ? Variant() : Variant(Alignment());
  }
  if (member == u"MULTILINE") {
    if (let) MultiLine(value().ToBoolean());
    return let ? Variant() : Variant(MultiLine());
  }
  if (member == u"SCROLLBARS") {
    if (let) ScrollBars(value().ToInteger());
    return let ? Variant() : Variant(ScrollBars());
  }
  if (member == u"BACKCOLOR") {
    if (let) BackColor(value().ToLong());
    return let ? Variant() : Variant(BackColor());
  }
  if (member == u"FORECOLOR") {
    if (let) ForeColor(value().ToLong());
    return let ? Variant() : Variant(ForeColor());
  }
  if (member == u"FONT") {
    if (let) Font(std::dynamic_pointer_cast<StdFont>(value().ToObject()));
    return let ? Variant() : Variant(Font());
  }
  if (member == u"ENABLED") {
    if (let) Enabled(value().ToBoolean());
    return let ? Variant() : Variant(Enabled());
  }
  if (member == u"BORDERSTYLE") {
    if (let) BorderStyle(value().ToInteger());
    return let ? Variant() : Variant(BorderStyle());
  }
  if (member == u"HIDESELECTION") {
    if (let) HideSelection(value().ToBoolean());
    return let ? Variant() : Variant(HideSelection());
  }
  if (member == u"REFRESH") {
    Refresh();
    return Variant();
  }
  return Control::Invoke(name, kind, args);
}

}  // namespace mx::host
