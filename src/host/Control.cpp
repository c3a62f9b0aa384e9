#include "host/Control.h"

#include <algorithm>

#include "host/Err.h"
#include "host/Form.h"
#include "host/Strings.h"
#include "platform/User.h"

namespace mx::host {

Control::Control() = default;
Control::~Control() = default;

void Control::Left(float value) {
  m_left = value;
  ApplyGeometry();
}

void Control::Top(float value) {
  m_top = value;
  ApplyGeometry();
}

void Control::Width(float value) {
  // The host refuses negative sizes with "Invalid property value".
  if (value < 0) Raise(kErrInvalidPropertyValue, u"Control");
  m_width = value;
  ApplyGeometry();
}

void Control::Height(float value) {
  if (value < 0) Raise(kErrInvalidPropertyValue, u"Control");
  m_height = value;
  ApplyGeometry();
}

void Control::Move(float left, float top, float width, float height) {
  if (width < 0 || height < 0) Raise(kErrInvalidPropertyValue, u"Control");
  m_left = left;
  m_top = top;
  m_width = width;
  m_height = height;
  ApplyGeometry();
}

void Control::Visible(bool value) {
  if (m_visible == value) return;
  m_visible = value;
  ApplyVisible();
}

void Control::TabIndex(int16_t value) {
  if (value < 0) Raise(kErrInvalidPropertyValue, u"Control");
  if (!m_form) {
    m_tabIndex = value;
    return;
  }
  m_form->SetTabIndex(*this, value);
}

void Control::Default(bool value) {
  m_default = value;
  if (m_form) m_form->DefaultOrCancelChanged(*this, /*isDefault=*/true, value);
}

void Control::Cancel(bool value) {
  m_cancel = value;
  if (m_form) m_form->DefaultOrCancelChanged(*this, /*isDefault=*/false, value);
}

void Control::SetFocus() {
  const platform::HWND hwnd = hWnd();
  // The host's "Invalid procedure call" for a control that cannot hold the focus now.
  if (!hwnd || !m_visible || !CanGetFocus() || !platform::IsWindowEnabled(hwnd) || !platform::IsWindowVisible(hwnd))
    Raise(kErrInvalidProcedureCall, u"Control");
  platform::SetFocus(hwnd);
}

void Control::ZOrder(int16_t position) {
  const platform::HWND hwnd = hWnd();
  if (!hwnd) return;
  platform::SetWindowPos(hwnd, position == 0 ? platform::HWND_TOP : platform::HWND_BOTTOM, 0, 0, 0, 0,
                         platform::SWP_NOMOVE | platform::SWP_NOSIZE | platform::SWP_NOACTIVATE);
}

namespace {

const Variant& LastArg(std::span<Variant> args, const char16_t* source) {
  if (args.empty()) Raise(kErrWrongArgumentCount, source);
  return args.back();
}

// An optional argument of Move: the current value when left out.
float OptionalSingle(std::span<Variant> args, size_t i, float current) {
  const Variant& v = ArgumentAt(args, i);
  return v.IsMissing() ? current : v.ToSingle();
}

}  // namespace

Variant Control::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  const String member = FoldCase(name);
  const bool let = kind == CallKind::Let || kind == CallKind::Set;
  const char16_t* src = u"Control";
  auto objectOrNothing = [](Object* o) -> Variant {
    if (!o) return Variant::Nothing();
    std::shared_ptr<Object> ref = o->weak_from_this().lock();
    return ref ? Variant(ref) : Variant::Nothing();
  };

  if (member == u"NAME") {
    if (let) Raise(kErrInvalidProcedureCall, src, u"Name is read-only at run time");
    return m_name;
  }
  if (member == u"INDEX") {
    if (let) Raise(kErrInvalidProcedureCall, src);
    return m_index;
  }
  if (member == u"LEFT") {
    if (let) Left(LastArg(args, src).ToSingle());
    return let ? Variant() : Variant(m_left);
  }
  if (member == u"TOP") {
    if (let) Top(LastArg(args, src).ToSingle());
    return let ? Variant() : Variant(m_top);
  }
  if (member == u"WIDTH") {
    if (let) Width(LastArg(args, src).ToSingle());
    return let ? Variant() : Variant(m_width);
  }
  if (member == u"HEIGHT") {
    if (let) Height(LastArg(args, src).ToSingle());
    return let ? Variant() : Variant(m_height);
  }
  if (member == u"VISIBLE") {
    if (let) Visible(LastArg(args, src).ToBoolean());
    return let ? Variant() : Variant(m_visible);
  }
  if (member == u"TABINDEX") {
    if (let) TabIndex(LastArg(args, src).ToInteger());
    return let ? Variant() : Variant(m_tabIndex);
  }
  if (member == u"TABSTOP") {
    if (let) TabStop(LastArg(args, src).ToBoolean());
    return let ? Variant() : Variant(m_tabStop);
  }
  if (member == u"TAG") {
    if (let) Tag(LastArg(args, src).ToString());
    return let ? Variant() : Variant(m_tag);
  }
  if (member == u"DEFAULT") {
    if (let) Default(LastArg(args, src).ToBoolean());
    return let ? Variant() : Variant(m_default);
  }
  if (member == u"CANCEL") {
    if (let) Cancel(LastArg(args, src).ToBoolean());
    return let ? Variant() : Variant(m_cancel);
  }
  if (member == u"PARENT") return objectOrNothing(m_form);
  if (member == u"CONTAINER") {
    if (m_container) return objectOrNothing(m_container);
    return objectOrNothing(m_form);
  }
  if (member == u"HWND") return static_cast<int32_t>(hWnd());
  if (member == u"MOVE") {
    if (args.empty()) Raise(kErrWrongArgumentCount, src);
    Move(args[0].ToSingle(), OptionalSingle(args, 1, m_top), OptionalSingle(args, 2, m_width),
         OptionalSingle(args, 3, m_height));
    return {};
  }
  if (member == u"SETFOCUS") {
    SetFocus();
    return {};
  }
  if (member == u"ZORDER") {
    const Variant& pos = ArgumentAt(args, 0);
    ZOrder(pos.IsMissing() ? int16_t{0} : pos.ToInteger());
    return {};
  }
  return Object::Invoke(name, kind, args);
}

}  // namespace mx::host
