// USForm: late binding. Every property and method by name, as the host's dispatch interface
// offers them; names are compared without regard to case.
#include "chrome/USForm.h"
#include "controls/MemberTable.h"
#include "host/Err.h"

namespace mx::chrome {

using host::Variant;
using Table = controls::detail::MemberTable<USForm>;

namespace {

template <typename T>
T As(const Variant& v) {
  if constexpr (std::is_same_v<T, bool>) return v.ToBoolean();
  else if constexpr (std::is_same_v<T, int32_t>) return v.ToLong();
  else return v.ToString();
}

Variant Arg(std::span<Variant> args, size_t i, Variant fallback) {
  return i < args.size() && !args[i].IsMissing() ? args[i] : fallback;
}

#define MX_PLAIN(table, Name, Type) \
  table.Property(u## #Name, [](USForm& f) { return Variant(f.Name()); }, \
                 [](USForm& f, const Variant& v) { f.Name(As<Type>(v)); })

const Table& Members() {
  static const Table table = [] {
    Table t;
    MX_PLAIN(t, Theme, int32_t);
    MX_PLAIN(t, Enabled, bool);
    MX_PLAIN(t, AllowMove, bool);
    MX_PLAIN(t, AllowResize, bool);
    MX_PLAIN(t, BackColor, int32_t);
    MX_PLAIN(t, BackColorInactive, int32_t);
    MX_PLAIN(t, BackColorDisabled, int32_t);
    MX_PLAIN(t, BorderColor, int32_t);
    MX_PLAIN(t, BorderColorInactive, int32_t);
    MX_PLAIN(t, BorderColorDisabled, int32_t);
    MX_PLAIN(t, BorderWidth, int32_t);
    MX_PLAIN(t, CaptionDelimiter, String);
    MX_PLAIN(t, CaptionOnCenter, bool);
    MX_PLAIN(t, CaptionTop, int32_t);
    MX_PLAIN(t, EnableCloseButton, bool);
    MX_PLAIN(t, EnableMaximizeButton, bool);
    MX_PLAIN(t, EnableMinimizeButton, bool);
    MX_PLAIN(t, ShowControlBox, bool);
    MX_PLAIN(t, ShowCloseButton, bool);
    MX_PLAIN(t, ShowMaximizeButton, bool);
    MX_PLAIN(t, ShowMinimizeButton, bool);
    MX_PLAIN(t, ForeColor, int32_t);
    MX_PLAIN(t, ForeColorDelimiter, int32_t);
    MX_PLAIN(t, ForeColorInactive, int32_t);
    MX_PLAIN(t, ForeColorDisabled, int32_t);
    MX_PLAIN(t, GradientColor1, int32_t);
    MX_PLAIN(t, GradientColor2, int32_t);
    MX_PLAIN(t, IconSize, int32_t);
    MX_PLAIN(t, IconSizeX, int32_t);
    MX_PLAIN(t, IconSizeY, int32_t);
    MX_PLAIN(t, ChangeThemeControls, bool);
    MX_PLAIN(t, ShowInnerBorder, bool);
    MX_PLAIN(t, ToolTipClose, String);
    MX_PLAIN(t, ToolTipMaximize, String);
    MX_PLAIN(t, ToolTipMinimize, String);
    // The default member answers to "" as well.
    for (const char16_t* name : {u"Caption", u""})
      t.Property(name, [](USForm& f) { return Variant(f.Caption()); },
                 [](USForm& f, const Variant& v) { f.Caption(v.ToString()); });
    t.Property(u"hWnd", [](USForm& f) { return Variant(static_cast<int32_t>(f.hWnd())); });
    t.Property(u"Icon", [](USForm& f) { return f.Icon() ? Variant(f.Icon()) : Variant::Nothing(); },
               [](USForm& f, const Variant& v) { f.Icon(std::dynamic_pointer_cast<host::StdPicture>(v.ToObject())); });
    t.Property(u"Font", [](USForm& f) { return Variant(f.Font()); },
               [](USForm& f, const Variant& v) {
                 if (auto font = std::dynamic_pointer_cast<host::StdFont>(v.ToObject())) f.Font(font);
                 else host::Raise(13, u"USForm");
               });
    t.Property(u"PictureBytes", [](USForm& f) { return Variant(f.PictureBytes()); },
               [](USForm& f, const Variant& v) {
                 const host::ByteArray* bytes = v.Bytes();
                 f.PictureBytes(bytes ? *bytes : host::ByteArray{});
               });
    auto method = [&t](const char16_t* name, std::function<Variant(USForm&, std::span<Variant>)> call) {
      t.Method(name, std::move(call));
    };
    method(u"About", [](USForm& f, std::span<Variant>) { f.About(); return Variant(); });
    method(u"ClearPictureBytes", [](USForm& f, std::span<Variant>) { f.ClearPictureBytes(); return Variant(); });
    method(u"ConfigureActionsButtons", [](USForm& f, std::span<Variant> a) {
      if (a.size() < 3) host::Raise(450, u"USForm");
      f.ConfigureActionsButtons(a[0].ToBoolean(), a[1].ToBoolean(), a[2].ToBoolean());
      return Variant();
    });
    method(u"CenterOnScreen", [](USForm& f, std::span<Variant>) { f.CenterOnScreen(); return Variant(); });
    method(u"ShowOnFullScreen", [](USForm& f, std::span<Variant>) { return Variant(f.ShowOnFullScreen()); });
    method(u"TranslucentForm", [](USForm& f, std::span<Variant> a) {
      f.TranslucentForm(Arg(a, 0, Variant(int32_t{255})).ToLong());
      return Variant();
    });
    method(u"AlphaWindowInitializeOnFullScreen", [](USForm& f, std::span<Variant> a) {
      f.AlphaWindowInitializeOnFullScreen(Arg(a, 0, Variant(int32_t{125})).ToLong(), Arg(a, 1, Variant(int32_t{0})).ToLong());
      return Variant();
    });
    method(u"AlphaWindowInitializeOnModal", [](USForm& f, std::span<Variant> a) {
      f.AlphaWindowInitializeOnModal(Arg(a, 0, Variant(int32_t{125})).ToLong(), Arg(a, 1, Variant(int32_t{0})).ToLong());
      return Variant();
    });
    method(u"AlphaWindowCloseAll", [](USForm& f, std::span<Variant>) { f.AlphaWindowCloseAll(); return Variant(); });
    method(u"DrawGradient", [](USForm& f, std::span<Variant>) { f.DrawGradient(); return Variant(); });
    method(u"DrawFadeIN", [](USForm& f, std::span<Variant>) { f.DrawFadeIN(); return Variant(); });
    method(u"DrawFadeOUT", [](USForm& f, std::span<Variant>) { f.DrawFadeOUT(); return Variant(); });
    method(u"DrawForm", [](USForm& f, std::span<Variant>) { f.DrawForm(); return Variant(); });
    method(u"DestroySubClass", [](USForm& f, std::span<Variant>) { f.DestroySubClass(); return Variant(); });
    method(u"SetForegroundWindow", [](USForm& f, std::span<Variant> a) {
      f.SetForegroundWindow(static_cast<platform::HWND>(Arg(a, 0, Variant(int32_t{0})).ToLong()));
      return Variant();
    });
    method(u"UnloadMe", [](USForm& f, std::span<Variant>) { f.UnloadMe(); return Variant(); });
    method(u"UnloadMeEx", [](USForm& f, std::span<Variant>) { f.UnloadMeEx(); return Variant(); });
    // The task bar members succeed without a task bar.
    for (const char16_t* name : {u"TaskBar_SetProgressState", u"TaskBar_SetProgressValue", u"TaskBar_SetOverlayIcon",
                                 u"TaskBar_SetThumbnailClip", u"TaskBar_SetThumbnailTooltip"})
      method(name, [](USForm&, std::span<Variant>) { return Variant(int32_t{0}); });
    return t;
  }();
  return table;
}

#undef MX_PLAIN

}  // namespace

Variant USForm::Invoke(StringView name, host::CallKind kind, std::span<Variant> args) {
  Variant result;
  if (Members().Dispatch(*this, name, kind, args, result, u"USForm")) return result;
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::chrome
