// USTextBoxEx: late binding and the event names. Text is the default member.
#include "controls/MemberTable.h"
#include "entry/USTextBoxEx.h"

namespace mx::entry {

using host::Variant;
using T = USTextBoxEx;

namespace {

Variant Arg(std::span<Variant> args, size_t i) { return i < args.size() ? args[i] : Variant::Missing(); }

}  // namespace

void USTextBoxEx::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"Change", Change, u"Click", Click, u"DblClick", DblClick, u"KeyUp", KeyUp,
                       u"KeyDown", KeyDown, u"KeyPress", KeyPress, u"MouseMove", MouseMove, u"MouseDown",
                       MouseDown, u"MouseUp", MouseUp);
}

Variant USTextBoxEx::Invoke(StringView name, host::CallKind kind, std::span<Variant> args) {
  static const controls::detail::MemberTable<T> table = [] {
    controls::detail::MemberTable<T> t;
#define MX_PROP(Name, conv) \
  t.Property(u## #Name, [](T& c) { return Variant(c.Name()); }, [](T& c, const Variant& v) { c.Name(v.conv()); })
#define MX_COLOUR(Name)                                                               \
  t.Property(u## #Name, [](T& c) { return Variant(static_cast<int32_t>(c.Name())); }, \
             [](T& c, const Variant& v) { c.Name(static_cast<OLE_COLOR>(v.ToLong())); })
#define MX_GET(Name) t.Property(u## #Name, [](T& c) { return Variant(c.Name()); })
    MX_PROP(Alignment, ToInteger);
    MX_PROP(AllowNegativeNumber, ToBoolean);
    MX_PROP(AutoFormatCurrency, ToBoolean);
    MX_PROP(AutoSelect, ToBoolean);
    MX_COLOUR(BackColor);
    MX_COLOUR(BackColorDisabled);
    MX_COLOUR(BackColorOver);
    MX_COLOUR(BorderColor);
    MX_COLOUR(BorderColorDisabled);
    MX_COLOUR(BorderColorOver);
    MX_PROP(CurrencyChar, ToString);
    MX_PROP(DataField, ToString);
    MX_PROP(Decimals, ToInteger);
    MX_PROP(DecimalSimbol, ToString);
    MX_PROP(Enabled, ToBoolean);
    MX_COLOUR(ForeColor);
    MX_COLOUR(ForeColorDisabled);
    MX_COLOUR(ForeColorOver);
    MX_PROP(FormatType, ToLong);
    MX_PROP(Locked, ToBoolean);
    MX_PROP(Mask, ToString);
    MX_PROP(MaskType, ToLong);
    MX_PROP(MaxLength, ToLong);
    MX_PROP(NumberOnly, ToBoolean);
    MX_PROP(OLEDragMode, ToInteger);
    MX_PROP(OLEDropMode, ToInteger);
    MX_PROP(PasswordChar, ToString);
    MX_PROP(Required, ToBoolean);
    MX_COLOUR(RequiredColor);
    MX_PROP(Text, ToString);
    MX_PROP(TextCase, ToLong);
    MX_PROP(Theme, ToLong);
    MX_COLOUR(ToolTipBackColor);
    MX_PROP(ToolTipCentered, ToBoolean);
    MX_PROP(ToolTipDescription, ToString);
    MX_COLOUR(ToolTipForeColor);
    MX_PROP(ToolTipIcon, ToLong);
    MX_PROP(ToolTipTitle, ToString);
    MX_PROP(ToolTipStyle, ToLong);
    MX_PROP(ToolTipVisibleTime, ToLong);
    MX_PROP(ToolDelayTime, ToLong);
    MX_PROP(SelStart, ToLong);
    MX_PROP(SelLength, ToLong);
    MX_PROP(SelText, ToString);
    MX_GET(Value);
    MX_GET(TextCdbl);
    MX_GET(TextTrim);
    MX_GET(TextLen);
    MX_GET(TextLenEx);
    MX_GET(TextUCase);
    MX_GET(TextLCase);
    MX_GET(TextNoMask);
    MX_GET(TextNoMaskEx);
    MX_GET(IsValidEmail);
    MX_GET(ReturnNumbersOnly);
    MX_GET(ReturnTextOnly);
    MX_GET(TotalLines);
    t.Property(u"hWndEx", [](T& c) { return Variant(static_cast<int32_t>(c.hWndEx())); });
    t.Property(u"Font", [](T& c) { return Variant(c.Font()); },
               [](T& c, const Variant& v) { c.Font(std::dynamic_pointer_cast<host::StdFont>(v.Obj())); });
#undef MX_PROP
#undef MX_COLOUR
#undef MX_GET
    t.Method(u"TextAsDate", [](T& c, std::span<Variant> a) {
      const Variant v = Arg(a, 0), r = Arg(a, 1);
      return c.TextAsDate(v.IsMissing() ? 1 : v.ToLong(), r.IsMissing() ? 25 : r.ToLong());
    });
    t.Method(u"LoadTextFile", [](T& c, std::span<Variant> a) { return Variant(c.LoadTextFile(Arg(a, 0).ToString())); });
    t.Method(u"ClearControl", [](T& c, std::span<Variant>) { c.ClearControl(); return Variant(); });
    t.Method(u"CreateToolTip", [](T& c, std::span<Variant>) { c.CreateToolTip(); return Variant(); });
    t.Method(u"DestroyToolTip", [](T& c, std::span<Variant>) { c.DestroyToolTip(); return Variant(); });
    t.Method(u"DestroySubClass", [](T& c, std::span<Variant>) { c.DestroySubClass(); return Variant(); });
    t.Method(u"AutoCompleteEx", [](T& c, std::span<Variant> a) {
      c.AutoCompleteEx(static_cast<uint32_t>(Arg(a, 0).ToLong()));
      return Variant();
    });
    t.Method(u"InitializeAutoComplete", [](T& c, std::span<Variant> a) {
      c.InitializeAutoComplete(Arg(a, 0), Arg(a, 1).ToString(), Arg(a, 2).ToString());
      return Variant();
    });
    t.Method(u"FinalizeAutoComplete", [](T& c, std::span<Variant>) { c.FinalizeAutoComplete(); return Variant(); });
    t.Method(u"About", [](T& c, std::span<Variant>) { c.About(); return Variant(); });
    return t;
  }();
  Variant result;
  if (table.Dispatch(*this, name.empty() ? StringView(u"Text") : name, kind, args, result, u"USTextBoxEx"))
    return result;
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::entry
