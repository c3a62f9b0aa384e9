// USListBox: late binding and the event names. Item is the default member.
#include "controls/MemberTable.h"
#include "controls/USImageList.h"
#include "entry/USListBox.h"
#include "host/Err.h"

namespace mx::entry {

using host::Variant;
using T = USListBox;

namespace {

Variant Arg(std::span<Variant> args, size_t i) { return i < args.size() ? args[i] : Variant::Missing(); }

template <typename V>
V Or(const Variant& v, V fallback, V (*conv)(const Variant&)) {
  return v.IsMissing() ? fallback : conv(v);
}

int32_t AsLong(const Variant& v) { return v.ToLong(); }
bool AsBool(const Variant& v) { return v.ToBoolean(); }
String AsString(const Variant& v) { return v.ToString(); }

std::shared_ptr<host::StdPicture> AsPicture(const Variant& v) {
  return v.IsMissing() ? nullptr : std::dynamic_pointer_cast<host::StdPicture>(v.Obj());
}

}  // namespace

void USListBox::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"Click", Click, u"DblClick", DblClick, u"KeyDown", KeyDown, u"KeyPress", KeyPress,
                       u"KeyUp", KeyUp, u"ListIndexChange", ListIndexChange, u"MouseDown", MouseDown,
                       u"MouseMove", MouseMove, u"MouseUp", MouseUp, u"Scroll", Scroll, u"TopIndexChange",
                       TopIndexChange);
}

Variant USListBox::Invoke(StringView name, host::CallKind kind, std::span<Variant> args) {
  static const controls::detail::MemberTable<T> table = [] {
    controls::detail::MemberTable<T> t;
#define MX_PROP(Name, conv) \
  t.Property(u## #Name, [](T& c) { return Variant(c.Name()); }, [](T& c, const Variant& v) { c.Name(v.conv()); })
#define MX_COLOUR(Name)                                                               \
  t.Property(u## #Name, [](T& c) { return Variant(static_cast<int32_t>(c.Name())); }, \
             [](T& c, const Variant& v) { c.Name(static_cast<OLE_COLOR>(v.ToLong())); })
#define MX_PICTURE(Name)                                                              \
  t.Property(u## #Name, [](T& c) { return c.Name() ? Variant(c.Name()) : Variant::Nothing(); }, \
             [](T& c, const Variant& v) { c.Name(std::dynamic_pointer_cast<host::StdPicture>(v.Obj())); })
// An indexed item field: one argument reads, two (index, value) write.
#define MX_ITEM(Name, conv)                                                              \
  t.Method(u## #Name, [](T& c, std::span<Variant> a) {                                  \
    if (a.empty()) host::Raise(450, u"USListBox");                                      \
    if (a.size() >= 2) {                                                                \
      c.Name(a[0].ToLong(), a[1].conv());                                               \
      return Variant();                                                                 \
    }                                                                                   \
    return Variant(c.Name(a[0].ToLong()));                                              \
  })
    MX_PROP(Alignment, ToLong);
    MX_COLOUR(BackColor);
    MX_COLOUR(BackColorEvenRows);
    MX_PROP(BackColorEvenRowsEnabled, ToBoolean);
    MX_COLOUR(BorderColor);
    MX_PROP(CacheIncrement, ToLong);
    MX_PROP(Enabled, ToBoolean);
    MX_COLOUR(ForeColor);
    MX_COLOUR(ForeColorSelected);
    MX_PROP(GradientMode, ToLong);
    MX_PROP(HoverSelection, ToBoolean);
    MX_PROP(ItemHeight, ToLong);
    MX_PROP(ItemHeightAuto, ToBoolean);
    MX_PROP(ItemOffset, ToLong);
    MX_COLOUR(ItemSelectedBackColor);
    MX_COLOUR(ItemSelectedBorderColor);
    MX_COLOUR(ItemSelectedColor1);
    MX_COLOUR(ItemSelectedColor2);
    MX_PROP(ItemTextLeft, ToLong);
    MX_PROP(ListGradient, ToBoolean);
    MX_PROP(MousePointer, ToInteger);
    MX_PICTURE(MouseIcon);
    MX_PROP(OrderType, ToLong);
    MX_PROP(Redraw, ToBoolean);
    MX_PROP(ScrollBarWidth, ToLong);
    MX_PICTURE(SelectionPicture);
    MX_PROP(SelectMode, ToLong);
    MX_PROP(Theme, ToLong);
    MX_PROP(VisibleRows, ToLong);
    MX_PROP(WordWrap, ToBoolean);
    MX_PROP(ListIndex, ToLong);
    MX_PROP(TopIndex, ToLong);
    t.Property(u"ListCount", [](T& c) { return Variant(c.ListCount()); });
    t.Property(u"hWnd", [](T& c) { return Variant(static_cast<int32_t>(c.hWnd())); });
    t.Property(u"hDC", [](T& c) { return Variant(static_cast<int32_t>(c.hDC())); });
    t.Property(u"Font", [](T& c) { return Variant(c.Font()); },
               [](T& c, const Variant& v) { c.Font(std::dynamic_pointer_cast<host::StdFont>(v.Obj())); });
    t.Method(u"Item", [](T& c, std::span<Variant> a) {
      if (a.empty()) host::Raise(450, u"USListBox");
      if (a.size() >= 2) {
        c.Item(a[0].ToLong(), a[1]);
        return Variant();
      }
      return c.Item(a[0].ToLong());
    });
    MX_ITEM(ItemData, ToLong);
    MX_ITEM(ItemIcon, ToLong);
    MX_ITEM(ItemIconSelected, ToLong);
    MX_ITEM(ItemForeColor, ToLong);
    MX_ITEM(ItemEnabled, ToBoolean);
    MX_ITEM(ItemToolTip, ToString);
    MX_ITEM(ItemSeparatorLine, ToBoolean);
    MX_ITEM(ItemTag, ToString);
    MX_ITEM(ItemSelected, ToBoolean);
    t.Method(u"ItemMouseIcon", [](T& c, std::span<Variant> a) {
      if (a.empty()) host::Raise(450, u"USListBox");
      if (a.size() >= 2) {
        c.ItemMouseIcon(a[0].ToLong(), std::dynamic_pointer_cast<host::StdPicture>(a[1].Obj()));
        return Variant();
      }
      auto p = c.ItemMouseIcon(a[0].ToLong());
      return p ? Variant(p) : Variant::Nothing();
    });
#undef MX_PROP
#undef MX_COLOUR
#undef MX_PICTURE
#undef MX_ITEM
    auto itemArgs = [](T& c, std::span<Variant> a, size_t first, bool modify) {
      const int32_t index = modify ? a[0].ToLong() : 0;
      const Variant item = Arg(a, first);
      const int32_t data = Or<int32_t>(Arg(a, first + 1), 0, AsLong);
      const int32_t icon = Or<int32_t>(Arg(a, first + 2), -1, AsLong);
      const int32_t iconSelected = Or<int32_t>(Arg(a, first + 3), -1, AsLong);
      const int32_t fore = Or<int32_t>(Arg(a, first + 4), T::kListForeColor, AsLong);
      const bool enabled = Or<bool>(Arg(a, first + 5), true, AsBool);
      const String tip = Or<String>(Arg(a, first + 6), String(), AsString);
      auto mouseIcon = AsPicture(Arg(a, first + 7));
      const bool separator = Or<bool>(Arg(a, first + 8), false, AsBool);
      const String tag = Or<String>(Arg(a, first + 9), String(), AsString);
      if (modify) {
        c.ModifyItem(index, item, data, icon, iconSelected, fore, enabled, tip, mouseIcon, separator, tag);
        return Variant();
      }
      return Variant(c.AddItem(item, data, icon, iconSelected, fore, enabled, tip, mouseIcon, separator, tag));
    };
    t.Method(u"AddItem", [itemArgs](T& c, std::span<Variant> a) {
      if (a.empty()) host::Raise(450, u"USListBox");
      return itemArgs(c, a, 0, false);
    });
    t.Method(u"ModifyItem", [itemArgs](T& c, std::span<Variant> a) {
      if (a.size() < 2) host::Raise(450, u"USListBox");
      return itemArgs(c, a, 1, true);
    });
    t.Method(u"RemoveItem", [](T& c, std::span<Variant> a) { c.RemoveItem(Arg(a, 0).ToLong()); return Variant(); });
    t.Method(u"Clear", [](T& c, std::span<Variant>) { c.Clear(); return Variant(); });
    t.Method(u"Order", [](T& c, std::span<Variant>) { c.Order(); return Variant(); });
    t.Method(u"Refresh", [](T& c, std::span<Variant>) { c.Refresh(); return Variant(); });
    t.Method(u"FindFirst", [](T& c, std::span<Variant> a) {
      return Variant(c.FindFirst(Arg(a, 0).ToString(), Or<int32_t>(Arg(a, 1), 0, AsLong),
                                 Or<bool>(Arg(a, 2), false, AsBool)));
    });
    t.Method(u"GetIndexFromData", [](T& c, std::span<Variant> a) {
      return Variant(c.GetIndexFromData(Arg(a, 0).ToLong(), Or<bool>(Arg(a, 1), true, AsBool)));
    });
    t.Method(u"GetIndexFromStr", [](T& c, std::span<Variant> a) {
      return Variant(c.GetIndexFromStr(Arg(a, 0).ToString(), Or<int32_t>(Arg(a, 1), 0, AsLong),
                                       Or<bool>(Arg(a, 2), true, AsBool)));
    });
    t.Method(u"IncreaseBarValue", [](T& c, std::span<Variant>) { c.IncreaseBarValue(); return Variant(); });
    t.Method(u"DecreaseBarValue", [](T& c, std::span<Variant>) { c.DecreaseBarValue(); return Variant(); });
    t.Method(u"StartEdit", [](T& c, std::span<Variant>) { c.StartEdit(); return Variant(); });
    t.Method(u"EndEdit", [](T& c, std::span<Variant> a) { c.EndEdit(Arg(a, 0).ToBoolean()); return Variant(); });
    t.Method(u"DisableMouseMove", [](T& c, std::span<Variant> a) {
      c.DisableMouseMove(Arg(a, 0).ToBoolean());
      return Variant();
    });
    t.Method(u"SetUSImageList", [](T& c, std::span<Variant> a) {
      auto control = std::dynamic_pointer_cast<controls::USImageList>(Arg(a, 0).Obj());
      c.SetUSImageList(control, Or<String>(Arg(a, 1), String(u"Key"), AsString));
      return Variant();
    });
    t.Method(u"About", [](T& c, std::span<Variant>) { c.About(); return Variant(); });
    return t;
  }();
  Variant result;
  if (table.Dispatch(*this, name.empty() ? StringView(u"Item") : name, kind, args, result, u"USListBox"))
    return result;
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::entry
