// USComboBox: late binding and the event names. Text is the default member. The grid reaches a
// bound combo only this way, so every member is here.
#include "controls/MemberTable.h"
#include "controls/USImageList.h"
#include "entry/USComboBox.h"
#include "host/Err.h"

namespace mx::entry {

using host::Variant;
using T = USComboBox;

namespace {

[[nodiscard]] bool Given(std::span<Variant> args, size_t i) { return i < args.size() && !args[i].IsMissing(); }

int32_t ArgLong(std::span<Variant> args, size_t i, int32_t def) { return Given(args, i) ? args[i].ToLong() : def; }
bool ArgBool(std::span<Variant> args, size_t i, bool def) { return Given(args, i) ? args[i].ToBoolean() : def; }
String ArgString(std::span<Variant> args, size_t i) { return Given(args, i) ? args[i].ToString() : String(); }

const Variant& Required(std::span<Variant> args, size_t i) {
  if (!Given(args, i)) host::Raise(449, u"USComboBox");
  return args[i];
}

std::shared_ptr<host::StdPicture> ToPicture(const Variant& v) {
  if (v.IsNothing() || v.IsEmpty()) return nullptr;
  auto picture = std::dynamic_pointer_cast<host::StdPicture>(v.ToObject());
  if (!picture) host::Raise(13, u"USComboBox");
  return picture;
}

Variant FromPicture(const std::shared_ptr<host::StdPicture>& p) { return p ? Variant(p) : Variant::Nothing(); }

// An indexed item property: Get(Index), Let(Index, value).
template <typename Get, typename Let>
void Indexed(controls::detail::MemberTable<T>& t, host::StringView name, Get get, Let let) {
  t.Method(name, [get, let](T& c, std::span<Variant> a) -> Variant {
    const int32_t index = Required(a, 0).ToLong();
    if (a.size() >= 2) {
      let(c, index, a.back());
      return Variant();
    }
    return get(c, index);
  });
}

}  // namespace

void USComboBox::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"Change", Change, u"Click", Click, u"DblClick", DblClick, u"KeyDown", KeyDown,
                       u"KeyPress", KeyPress, u"KeyUp", KeyUp, u"ListIndexChange", ListIndexChange, u"MouseDown",
                       MouseDown, u"MouseMove", MouseMove, u"MouseUp", MouseUp, u"MouseEnter", MouseEnter,
                       u"MouseExit", MouseExit, u"Scroll", Scroll, u"TopIndexChange", TopIndexChange,
                       u"ItemClicked", ItemClicked, u"BeginDisplayList", BeginDisplayList, u"EndDisplayList",
                       EndDisplayList);
}

Variant USComboBox::Invoke(StringView name, host::CallKind kind, std::span<Variant> args) {
  // An indexed item property is assigned with the index and the value as its arguments.
  static const controls::detail::MemberTable<T> table = [] {
    controls::detail::MemberTable<T> t;
#define MX_PROP(Name, conv) \
  t.Property(u## #Name, [](T& c) { return Variant(c.Name()); }, [](T& c, const Variant& v) { c.Name(v.conv()); })
#define MX_COLOUR(Name)                                                               \
  t.Property(u## #Name, [](T& c) { return Variant(static_cast<int32_t>(c.Name())); }, \
             [](T& c, const Variant& v) { c.Name(static_cast<OLE_COLOR>(v.ToLong())); })
#define MX_PICTURE(Name) \
  t.Property(u## #Name, [](T& c) { return FromPicture(c.Name()); }, [](T& c, const Variant& v) { c.Name(ToPicture(v)); })
    MX_PROP(Alignment, ToInteger);
    MX_PROP(AutoComplete, ToBoolean);
    MX_PROP(AutoOpenOnChange, ToBoolean);
    MX_COLOUR(BackColor);
    MX_COLOUR(BackColorDisabled);
    MX_COLOUR(BackColorOver);
    MX_COLOUR(BackColorOnShowList);
    MX_COLOUR(BorderColor);
    MX_COLOUR(BorderColorDisabled);
    MX_COLOUR(BorderColorOver);
    MX_PROP(CacheIncrement, ToLong);
    MX_PROP(Enabled, ToBoolean);
    MX_COLOUR(ForeColor);
    MX_COLOUR(ForeColorDisabled);
    MX_COLOUR(GradientColor1);
    MX_COLOUR(GradientColor2);
    MX_PROP(GradientMode, ToLong);
    MX_COLOUR(ListBackColor);
    MX_COLOUR(ListBackColorEvenRows);
    MX_PROP(ListBackColorEvenRowsEnabled, ToBoolean);
    MX_COLOUR(ListForeColor);
    MX_PROP(ListGradient, ToBoolean);
    MX_PROP(ListItemHeight, ToLong);
    MX_PROP(ListItemWidth, ToSingle);
    MX_PROP(ListItemWidthCustom, ToBoolean);
    MX_COLOUR(ListItemSelectedBorderColor);
    MX_COLOUR(ListItemSelectedColor1);
    MX_COLOUR(ListItemSelectedColor2);
    MX_COLOUR(ListItemSelectedForeColor);
    MX_PICTURE(ListPicture);
    MX_PICTURE(ListPictureOver);
    MX_PROP(LockChange, ToBoolean);
    MX_PICTURE(MouseIcon);
    MX_PROP(MousePointer, ToInteger);
    MX_PROP(NumberItemsToShow, ToLong);
    MX_PROP(Redraw, ToBoolean);
    MX_PROP(SelLength, ToLong);
    MX_PROP(SelStart, ToLong);
    MX_PROP(SelText, ToString);
    MX_PROP(ShowCorner, ToBoolean);
    MX_PROP(ShowEmptyList, ToBoolean);
    MX_PROP(Style, ToLong);
    MX_PROP(Text, ToString);
    MX_PROP(Theme, ToLong);
    MX_PROP(TagID, ToLong);
    MX_PROP(ListIndex, ToLong);
#undef MX_PROP
#undef MX_COLOUR
#undef MX_PICTURE
    t.Property(u"ListCount", [](T& c) { return Variant(c.ListCount()); });
    t.Property(u"hWnd", [](T& c) { return Variant(static_cast<int32_t>(c.hWnd())); });
    t.Property(u"hDC", [](T& c) { return Variant(static_cast<int32_t>(c.hDC())); });
    t.Property(u"Font", [](T& c) { return Variant(c.Font()); },
               [](T& c, const Variant& v) { c.Font(std::dynamic_pointer_cast<host::StdFont>(v.ToObject())); });

    Indexed(t, u"Item", [](T& c, int32_t i) { return c.Item(i); }, [](T& c, int32_t i, const Variant& v) { c.Item(i, v); });
    Indexed(t, u"ItemData", [](T& c, int32_t i) { return Variant(c.ItemData(i)); },
            [](T& c, int32_t i, const Variant& v) { c.ItemData(i, v.ToLong()); });
    Indexed(t, u"ItemIcon", [](T& c, int32_t i) { return Variant(c.ItemIcon(i)); },
            [](T& c, int32_t i, const Variant& v) { c.ItemIcon(i, v.ToLong()); });
    Indexed(t, u"ItemIconSelected", [](T& c, int32_t i) { return Variant(c.ItemIconSelected(i)); },
            [](T& c, int32_t i, const Variant& v) { c.ItemIconSelected(i, v.ToLong()); });
    Indexed(t, u"ItemForeColor", [](T& c, int32_t i) { return Variant(c.ItemForeColor(i)); },
            [](T& c, int32_t i, const Variant& v) { c.ItemForeColor(i, v.ToLong()); });
    Indexed(t, u"ItemEnabled", [](T& c, int32_t i) { return Variant(c.ItemEnabled(i)); },
            [](T& c, int32_t i, const Variant& v) { c.ItemEnabled(i, v.ToBoolean()); });
    Indexed(t, u"ItemToolTip", [](T& c, int32_t i) { return Variant(c.ItemToolTip(i)); },
            [](T& c, int32_t i, const Variant& v) { c.ItemToolTip(i, v.ToString()); });
    Indexed(t, u"ItemMouseIcon", [](T& c, int32_t i) { return FromPicture(c.ItemMouseIcon(i)); },
            [](T& c, int32_t i, const Variant& v) { c.ItemMouseIcon(i, ToPicture(v)); });
    Indexed(t, u"ItemSeparatorLine", [](T& c, int32_t i) { return Variant(c.ItemSeparatorLine(i)); },
            [](T& c, int32_t i, const Variant& v) { c.ItemSeparatorLine(i, v.ToBoolean()); });
    Indexed(t, u"ItemTag", [](T& c, int32_t i) { return Variant(c.ItemTag(i)); },
            [](T& c, int32_t i, const Variant& v) { c.ItemTag(i, v.ToString()); });

    t.Method(u"AddItem", [](T& c, std::span<Variant> a) {
      c.AddItem(Required(a, 0), ArgLong(a, 1, 0), ArgLong(a, 2, -1), ArgLong(a, 3, -1), ArgLong(a, 4, -1),
                ArgBool(a, 5, true), ArgString(a, 6), Given(a, 7) ? ToPicture(a[7]) : nullptr, ArgBool(a, 8, false),
                ArgString(a, 9));
      return Variant();
    });
    t.Method(u"ModifyItem", [](T& c, std::span<Variant> a) {
      c.ModifyItem(Required(a, 0).ToLong(), Required(a, 1), ArgLong(a, 2, 0), ArgLong(a, 3, -1), ArgLong(a, 4, -1),
                   ArgLong(a, 5, -1), ArgBool(a, 6, true), ArgString(a, 7), Given(a, 8) ? ToPicture(a[8]) : nullptr,
                   ArgBool(a, 9, false), ArgString(a, 10));
      return Variant();
    });
    t.Method(u"RemoveItem", [](T& c, std::span<Variant> a) { c.RemoveItem(Required(a, 0).ToLong()); return Variant(); });
    t.Method(u"Clear", [](T& c, std::span<Variant>) { c.Clear(); return Variant(); });
    t.Method(u"ClearEx", [](T& c, std::span<Variant> a) { c.ClearEx(ArgBool(a, 0, true)); return Variant(); });
    t.Method(u"Order", [](T& c, std::span<Variant>) { c.Order(); return Variant(); });
    t.Method(u"SetUSImageList", [](T& c, std::span<Variant> a) {
      auto list = std::dynamic_pointer_cast<controls::USImageList>(Required(a, 0).ToObject());
      if (!list) host::Raise(13, u"USComboBox");
      c.SetUSImageList(list, Given(a, 1) ? a[1].ToString() : String(u"Key"));
      return Variant();
    });
    t.Method(u"BeginFill", [](T& c, std::span<Variant> a) { c.BeginFill(ArgLong(a, 0, -1), ArgLong(a, 1, -1)); return Variant(); });
    t.Method(u"EndFill", [](T& c, std::span<Variant> a) {
      c.EndFill(ArgLong(a, 0, -1), ArgBool(a, 1, true), ArgLong(a, 2, 0), ArgBool(a, 3, true));
      return Variant();
    });
    t.Method(u"SetCustomItemWidth", [](T& c, std::span<Variant> a) {
      c.SetCustomItemWidth(ArgLong(a, 0, 0), ArgBool(a, 1, true));
      return Variant();
    });
    t.Method(u"SetIndexPositionByStr", [](T& c, std::span<Variant> a) {
      c.SetIndexPositionByStr(Required(a, 0).ToString(), ArgLong(a, 1, -1), ArgLong(a, 2, 0), ArgBool(a, 3, true),
                              ArgLong(a, 4, 0), ArgBool(a, 5, true));
      return Variant();
    });
    t.Method(u"SetIndexPositionByNum", [](T& c, std::span<Variant> a) {
      c.SetIndexPositionByNum(Required(a, 0).ToLong(), ArgLong(a, 1, -1), ArgBool(a, 2, true), ArgLong(a, 3, 0),
                              ArgBool(a, 4, true));
      return Variant();
    });
    t.Method(u"SetIndexPositionByNumEx", [](T& c, std::span<Variant> a) {
      c.SetIndexPositionByNumEx(Required(a, 0).ToDouble(), ArgLong(a, 1, -1), ArgBool(a, 2, true), ArgLong(a, 3, 0),
                                ArgBool(a, 4, true), ArgBool(a, 5, true));
      return Variant();
    });
    t.Method(u"RedrawAndSetIndexPosition", [](T& c, std::span<Variant> a) {
      c.RedrawAndSetIndexPosition(Required(a, 0).ToLong());
      return Variant();
    });
    t.Method(u"GetIndexFromData", [](T& c, std::span<Variant> a) {
      return Variant(c.GetIndexFromData(Required(a, 0).ToLong(), ArgBool(a, 1, true)));
    });
    t.Method(u"GetIndexFromStr", [](T& c, std::span<Variant> a) {
      return Variant(c.GetIndexFromStr(Required(a, 0).ToString(), ArgLong(a, 1, 0), ArgBool(a, 2, true)));
    });
    t.Method(u"FindFirst", [](T& c, std::span<Variant> a) {
      return Variant(c.FindFirst(Required(a, 0).ToString(), ArgLong(a, 1, 0), ArgBool(a, 2, false)));
    });
    t.Method(u"ShowList", [](T& c, std::span<Variant>) { c.ShowList(); return Variant(); });
    t.Method(u"HideList", [](T& c, std::span<Variant>) { c.HideList(); return Variant(); });
    t.Method(u"About", [](T& c, std::span<Variant>) { c.About(); return Variant(); });
    return t;
  }();
  Variant result;
  if (table.Dispatch(*this, name.empty() ? StringView(u"Text") : name, kind, args, result, u"USComboBox")) return result;
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::entry
