// USRibbon: late binding. Every property and method by name, compared without regard to case.
#include "chrome/USRibbon.h"
#include "controls/MemberTable.h"
#include "controls/USImageList.h"
#include "host/Err.h"
#include "host/Strings.h"

namespace mx::chrome {

using host::Variant;
using Table = controls::detail::MemberTable<USRibbon>;

namespace {

Variant Arg(std::span<Variant> args, size_t i, Variant fallback) {
  return i < args.size() && !args[i].IsMissing() ? args[i] : fallback;
}

Variant Required(std::span<Variant> args, size_t i) {
  if (i >= args.size() || args[i].IsMissing()) host::Raise(449, u"USRibbon");
  return args[i];
}

std::shared_ptr<host::StdPicture> PictureArg(std::span<Variant> args, size_t i) {
  const Variant v = Arg(args, i, Variant::Nothing());
  return std::dynamic_pointer_cast<host::StdPicture>(v.Obj());
}

// A control array reaches late binding as an array of objects, or as one object.
std::vector<std::shared_ptr<host::Control>> ControlsArg(std::span<Variant> args) {
  std::vector<std::shared_ptr<host::Control>> out;
  const Variant v = Required(args, 0);
  if (const host::VariantArray* array = v.Array()) {
    for (const Variant& item : *array)
      if (auto control = std::dynamic_pointer_cast<host::Control>(item.Obj())) out.push_back(control);
  } else if (auto control = std::dynamic_pointer_cast<host::Control>(v.Obj())) {
    out.push_back(control);
  } else {
    host::Raise(13, u"USRibbon");
  }
  return out;
}

#define MX_LONG(table, Name) \
  table.Property(u## #Name, [](USRibbon& r) { return Variant(static_cast<int32_t>(r.Name())); }, \
                 [](USRibbon& r, const Variant& v) { r.Name(v.ToLong()); })
#define MX_BOOL(table, Name) \
  table.Property(u## #Name, [](USRibbon& r) { return Variant(r.Name()); }, \
                 [](USRibbon& r, const Variant& v) { r.Name(v.ToBoolean()); })

const Table& Members() {
  static const Table table = [] {
    Table t;
    MX_LONG(t, Theme);
    MX_LONG(t, TabOffset);
    MX_LONG(t, ForeColorCat);
    MX_LONG(t, ForeColorButton);
    MX_LONG(t, ForeColorTabSelected);
    MX_LONG(t, ForeColorTabNormal);
    MX_BOOL(t, ButtonHandPointer);
    MX_BOOL(t, TabButtonHandPointer);
    MX_BOOL(t, ShowButtonFocus);
    MX_BOOL(t, ShowTabs);
    MX_BOOL(t, ButtonCenter);
    t.Property(u"ImageListKey", [](USRibbon& r) { return Variant(r.ImageListKey()); },
               [](USRibbon& r, const Variant& v) { r.ImageListKey(v.ToString()); });
    t.Property(u"ImageList", [](USRibbon& r) { return r.ImageList() ? Variant(r.ImageList()) : Variant::Nothing(); },
               [](USRibbon& r, const Variant& v) {
                 const auto object = v.ToObject();
                 auto list = std::dynamic_pointer_cast<controls::USImageList>(object);
                 if (object && !list) host::Raise(13, u"USRibbon");
                 r.ImageList(list);
               });
    t.Property(u"Font", [](USRibbon& r) { return Variant(r.Font()); },
               [](USRibbon& r, const Variant& v) {
                 if (auto font = std::dynamic_pointer_cast<host::StdFont>(v.ToObject())) r.Font(font);
                 else host::Raise(13, u"USRibbon");
               });
    t.Property(u"hWnd", [](USRibbon& r) { return Variant(static_cast<int32_t>(r.hWnd())); });
    t.Property(u"hDC", [](USRibbon& r) { return Variant(static_cast<int32_t>(r.hDC())); });

    auto method = [&t](const char16_t* name, std::function<Variant(USRibbon&, std::span<Variant>)> call) {
      t.Method(name, std::move(call));
    };
    method(u"AddTab", [](USRibbon& r, std::span<Variant> a) {
      r.AddTab(Required(a, 0).ToLong(), Required(a, 1).ToString());
      return Variant();
    });
    method(u"AddCat", [](USRibbon& r, std::span<Variant> a) {
      r.AddCat(Required(a, 0).ToLong(), Required(a, 1).ToLong(), Required(a, 2).ToString(),
               Arg(a, 3, Variant(false)).ToBoolean());
      return Variant();
    });
    method(u"AddButton", [](USRibbon& r, std::span<Variant> a) {
      r.AddButton(Required(a, 0).ToLong(), Required(a, 1).ToLong(), Required(a, 2).ToString(), PictureArg(a, 3),
                  Arg(a, 4, Variant::Missing()), Arg(a, 5, Variant(false)).ToBoolean(),
                  Arg(a, 6, Variant(String())).ToString());
      return Variant();
    });
    method(u"AddTabButton", [](USRibbon& r, std::span<Variant> a) {
      r.AddTabButton(Required(a, 0).ToLong(), PictureArg(a, 1), Arg(a, 2, Variant::Missing()),
                     Arg(a, 3, Variant(String())).ToString());
      return Variant();
    });
    method(u"Clear", [](USRibbon& r, std::span<Variant>) { r.Clear(); return Variant(); });
    method(u"RemoveButton", [](USRibbon& r, std::span<Variant>) { r.RemoveButton(); return Variant(); });
    method(u"RemoveCat", [](USRibbon& r, std::span<Variant>) { r.RemoveCat(); return Variant(); });
    method(u"RemoveTab", [](USRibbon& r, std::span<Variant>) { r.RemoveTab(); return Variant(); });
    method(u"ActivateTab", [](USRibbon& r, std::span<Variant> a) {
      r.ActivateTab(Required(a, 0).ToLong());
      return Variant();
    });
    method(u"Refresh", [](USRibbon& r, std::span<Variant>) { r.Refresh(); return Variant(); });
    method(u"BindPictureArray", [](USRibbon& r, std::span<Variant> a) {
      r.BindPictureArray(ControlsArg(a));
      return Variant();
    });
    method(u"RemovePictureArray", [](USRibbon& r, std::span<Variant> a) {
      r.RemovePictureArray(ControlsArg(a));
      return Variant();
    });
    return t;
  }();
  return table;
}

#undef MX_LONG
#undef MX_BOOL

}  // namespace

Variant USRibbon::Invoke(StringView name, host::CallKind kind, std::span<Variant> args) {
  // The one indexed property: its Index comes first, the value (on a Let) last.
  if (host::TextEquals(name, u"ButtonEnabled")) {
    const int32_t index = Required(args, 0).ToLong();
    if (kind == host::CallKind::Let || kind == host::CallKind::Set) {
      if (args.size() < 2) host::Raise(450, u"USRibbon");
      ButtonEnabled(index, args.back().ToBoolean());
      return Variant();
    }
    return Variant(ButtonEnabled(index));
  }
  Variant result;
  if (Members().Dispatch(*this, name, kind, args, result, u"USRibbon")) return result;
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::chrome
