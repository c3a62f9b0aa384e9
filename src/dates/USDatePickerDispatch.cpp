// USDatePicker: late binding, the members by name.
#include "controls/MemberTable.h"
#include "dates/USDatePicker.h"
#include "host/Conversion.h"

namespace mx::dates {

using host::Variant;

namespace {

int32_t OptionalLong(std::span<Variant> args, size_t index, int32_t fallback) {
  if (index >= args.size() || args[index].IsMissing()) return fallback;
  return args[index].ToLong();
}

}  // namespace

Variant USDatePicker::Invoke(StringView name, host::CallKind kind, std::span<Variant> args) {
  using P = USDatePicker;
  static const controls::detail::MemberTable<P> table = [] {
    controls::detail::MemberTable<P> t;
    const auto color = [&t](const char16_t* key, OLE_COLOR (P::*get)() const, void (P::*let)(OLE_COLOR)) {
      t.Property(key, [get](P& c) { return Variant((c.*get)()); },
                 [let](P& c, const Variant& v) { (c.*let)(v.ToLong()); });
    };
    const auto flag = [&t](const char16_t* key, bool (P::*get)() const, void (P::*let)(bool)) {
      t.Property(key, [get](P& c) { return Variant((c.*get)()); },
                 [let](P& c, const Variant& v) { (c.*let)(v.ToBoolean()); });
    };
    const auto number = [&t](const char16_t* key, int32_t (P::*get)() const, void (P::*let)(int32_t)) {
      t.Property(key, [get](P& c) { return Variant((c.*get)()); },
                 [let](P& c, const Variant& v) { (c.*let)(v.ToLong()); });
    };
    number(u"Theme", &P::Theme, &P::Theme);
    number(u"FormatDate", &P::FormatDate, &P::FormatDate);
    number(u"Style", &P::Style, &P::Style);
    number(u"GradientMode", &P::GradientMode, &P::GradientMode);
    number(u"SelStart", &P::SelStart, &P::SelStart);
    number(u"SelLength", &P::SelLength, &P::SelLength);
    flag(u"ShowCorner", &P::ShowCorner, &P::ShowCorner);
    flag(u"AutoOpenOnChange", &P::AutoOpenOnChange, &P::AutoOpenOnChange);
    flag(u"Enabled", &P::Enabled, &P::Enabled);
    color(u"BackColor", &P::BackColor, &P::BackColor);
    color(u"BackColorDisabled", &P::BackColorDisabled, &P::BackColorDisabled);
    color(u"BackColorOver", &P::BackColorOver, &P::BackColorOver);
    color(u"BackColorOnShowCalendar", &P::BackColorOnShowCalendar, &P::BackColorOnShowCalendar);
    color(u"BorderColor", &P::BorderColor, &P::BorderColor);
    color(u"BorderColorDisabled", &P::BorderColorDisabled, &P::BorderColorDisabled);
    color(u"BorderColorOver", &P::BorderColorOver, &P::BorderColorOver);
    color(u"ForeColor", &P::ForeColor, &P::ForeColor);
    color(u"ForeColorDisabled", &P::ForeColorDisabled, &P::ForeColorDisabled);
    color(u"GradientColor1", &P::GradientColor1, &P::GradientColor1);
    color(u"GradientColor2", &P::GradientColor2, &P::GradientColor2);
    t.Property(u"Alignment", [](P& c) { return Variant(int32_t{c.Alignment()}); },
               [](P& c, const Variant& v) { c.Alignment(static_cast<int16_t>(v.ToLong())); });
    t.Property(u"MousePointer", [](P& c) { return Variant(int32_t{c.MousePointer()}); },
               [](P& c, const Variant& v) { c.MousePointer(static_cast<int16_t>(v.ToLong())); });
    t.Property(u"MouseIcon", [](P& c) { return c.MouseIcon() ? Variant(c.MouseIcon()) : Variant::Nothing(); },
               [](P& c, const Variant& v) { c.MouseIcon(std::dynamic_pointer_cast<host::StdPicture>(v.Obj())); });
    t.Property(u"Font", [](P& c) { return Variant(c.Font()); },
               [](P& c, const Variant& v) {
                 if (auto f = std::dynamic_pointer_cast<host::StdFont>(v.Obj())) c.Font(f);
               });
    t.Property(u"Text", [](P& c) { return Variant(c.Text()); },
               [](P& c, const Variant& v) { c.Text(v.ToString()); });
    t.Property(u"SelText", [](P& c) { return Variant(c.SelText()); },
               [](P& c, const Variant& v) { c.SelText(v.ToString()); });
    t.Property(u"hWnd", [](P& c) { return Variant(static_cast<int32_t>(c.hWnd())); });
    t.Property(u"hDC", [](P& c) { return Variant(static_cast<int32_t>(c.hDC())); });
    t.Property(u"TextTrim", [](P& c) { return Variant(c.TextTrim()); });
    t.Property(u"TextLen", [](P& c) { return Variant(c.TextLen()); });
    t.Property(u"TextLenEx", [](P& c) { return Variant(c.TextLenEx()); });
    t.Method(u"TextAsDate", [](P& c, std::span<Variant> a) {
      return c.TextAsDate(OptionalLong(a, 0, 1), OptionalLong(a, 1, 25));
    });
    t.Method(u"IsValidDate", [](P& c, std::span<Variant> a) { return Variant(c.IsValidDate(OptionalLong(a, 0, 1))); });
    t.Method(u"ShowCalendar", [](P& c, std::span<Variant>) {
      c.ShowCalendar();
      return Variant();
    });
    t.Method(u"Clear", [](P& c, std::span<Variant>) {
      c.Clear();
      return Variant();
    });
    return t;
  }();
  Variant result;
  // The text is the default member.
  if (table.Dispatch(*this, name.empty() ? StringView(u"Text") : name, kind, args, result, u"USDatePicker")) return result;
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::dates
