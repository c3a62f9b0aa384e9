// USAlphaImage: late binding. Properties and the methods a script or a bound caller reaches by
// name; by-reference outputs of methods are written back into their arguments.
#include "controls/ControlSupport.h"
#include "controls/MemberTable.h"
#include "controls/USAlphaImage.h"
#include "controls/USImageList.h"
#include "host/Err.h"

namespace mx::controls {

using host::Variant;

namespace {

using A = USAlphaImage;

// An optional argument: its value, or the default when left out.
int32_t ArgLong(std::span<Variant> args, size_t i, int32_t def) {
  return i < args.size() && !args[i].IsMissing() ? args[i].ToLong() : def;
}
bool ArgBool(std::span<Variant> args, size_t i, bool def) {
  return i < args.size() && !args[i].IsMissing() ? args[i].ToBoolean() : def;
}
host::String ArgString(std::span<Variant> args, size_t i) {
  if (i >= args.size() || args[i].IsMissing()) host::Raise(449, u"USAlphaImage");
  return args[i].ToString();
}

template <typename T>
void LongProperty(detail::MemberTable<A>& t, const char16_t* name, T (A::*get)() const, void (A::*let)(T)) {
  t.Property(
      name, [get](A& a) { return Variant(static_cast<int32_t>((a.*get)())); },
      [let](A& a, const Variant& v) { (a.*let)(static_cast<T>(v.ToLong())); });
}

void BoolProperty(detail::MemberTable<A>& t, const char16_t* name, bool (A::*get)() const, void (A::*let)(bool)) {
  t.Property(
      name, [get](A& a) { return Variant((a.*get)()); }, [let](A& a, const Variant& v) { (a.*let)(v.ToBoolean()); });
}

const detail::MemberTable<A>& Table() {
  static const detail::MemberTable<A> table = [] {
    detail::MemberTable<A> t;
    using GL = int32_t (A::*)() const;
    using LL = void (A::*)(int32_t);
    using GB = bool (A::*)() const;
    using LB = void (A::*)(bool);
    LongProperty(t, u"ScaleMethod", GL(&A::ScaleMethod), LL(&A::ScaleMethod));
    LongProperty(t, u"Opacity", GL(&A::Opacity), LL(&A::Opacity));
    LongProperty(t, u"Mirror", GL(&A::Mirror), LL(&A::Mirror));
    LongProperty(t, u"Rotation", GL(&A::Rotation), LL(&A::Rotation));
    LongProperty(t, u"OLEDropMode", GL(&A::OLEDropMode), LL(&A::OLEDropMode));
    LongProperty(t, u"grayScale", GL(&A::grayScale), LL(&A::grayScale));
    LongProperty(t, u"HitTest", GL(&A::HitTest), LL(&A::HitTest));
    LongProperty(t, u"MaskUsed", GL(&A::MaskUsed), LL(&A::MaskUsed));
    LongProperty(t, u"MaskColor", GL(&A::MaskColor), LL(&A::MaskColor));
    LongProperty(t, u"ShadowColor", GL(&A::ShadowColor), LL(&A::ShadowColor));
    LongProperty(t, u"ShadowDepth", GL(&A::ShadowDepth), LL(&A::ShadowDepth));
    LongProperty(t, u"ShadowOffsetX", GL(&A::ShadowOffsetX), LL(&A::ShadowOffsetX));
    LongProperty(t, u"ShadowOffsetY", GL(&A::ShadowOffsetY), LL(&A::ShadowOffsetY));
    LongProperty(t, u"ShadowOpacity", GL(&A::ShadowOpacity), LL(&A::ShadowOpacity));
    LongProperty(t, u"MousePointer", static_cast<int16_t (A::*)() const>(&A::MousePointer),
                 static_cast<void (A::*)(int16_t)>(&A::MousePointer));
    BoolProperty(t, u"Enabled", GB(&A::Enabled), LB(&A::Enabled));
    BoolProperty(t, u"StretchQuality", GB(&A::StretchQuality), LB(&A::StretchQuality));
    BoolProperty(t, u"AutoSize", GB(&A::AutoSize), LB(&A::AutoSize));
    BoolProperty(t, u"AutoRedraw", GB(&A::AutoRedraw), LB(&A::AutoRedraw));
    BoolProperty(t, u"KeepOriginalFormat", GB(&A::KeepOriginalFormat), LB(&A::KeepOriginalFormat));
    BoolProperty(t, u"InversedImage", GB(&A::InversedImage), LB(&A::InversedImage));
    BoolProperty(t, u"ShadowEnabled", GB(&A::ShadowEnabled), LB(&A::ShadowEnabled));
    BoolProperty(t, u"RotateEnabled", GB(&A::RotateEnabled), LB(&A::RotateEnabled));
    t.Property(
        u"IntensityOffset", [](A& a) { return Variant(a.IntensityOffset()); },
        [](A& a, const Variant& v) { a.IntensityOffset(v.ToSingle()); });
    t.Property(
        u"MouseIcon", [](A& a) { return a.MouseIcon() ? Variant(a.MouseIcon()) : Variant::Nothing(); },
        [](A& a, const Variant& v) { a.MouseIcon(std::dynamic_pointer_cast<host::StdPicture>(v.ToObject())); });

    // Read-only.
    t.Property(u"hWnd", [](A& a) { return Variant(static_cast<int32_t>(a.hWnd())); });
    t.Property(u"imageWidth", [](A& a) { return Variant(a.imageWidth()); });
    t.Property(u"imageHeight", [](A& a) { return Variant(a.imageHeight()); });
    t.Property(u"ImageType", [](A& a) { return Variant(a.ImageType()); });
    t.Property(u"GDIplusInitialized", [](A& a) { return Variant(a.GDIplusInitialized()); });
    t.Property(u"GDIplusEnabled", [](A& a) { return Variant(a.GDIplusEnabled()); });
    t.Property(u"isMouseOver", [](A& a) { return Variant(a.isMouseOver()); });

    auto method = [&](const char16_t* name, std::function<Variant(A&, std::span<Variant>)> call) {
      t.Method(name, std::move(call));
    };
    method(u"About", [](A& a, std::span<Variant>) { a.About(); return Variant(); });
    method(u"Refresh", [](A& a, std::span<Variant>) { a.Refresh(); return Variant(); });
    method(u"ClearImage", [](A& a, std::span<Variant>) { a.ClearImage(); return Variant(); });
    method(u"ResizeImage", [](A& a, std::span<Variant> v) {
      return Variant(a.ResizeImage(ArgLong(v, 0, 0), ArgLong(v, 1, 0)));
    });
    method(u"FadeInOut", [](A& a, std::span<Variant> v) {
      a.FadeInOut(ArgLong(v, 0, 100), ArgLong(v, 1, 10), ArgLong(v, 2, 30));
      return Variant();
    });
    method(u"OffsetShadow", [](A& a, std::span<Variant> v) {
      a.OffsetShadow(ArgLong(v, 0, 0), ArgLong(v, 1, 0));
      return Variant();
    });
    method(u"OffsetImage", [](A& a, std::span<Variant> v) {
      int32_t x = ArgLong(v, 1, 0), y = ArgLong(v, 2, 0), sx = ArgLong(v, 3, 0), sy = ArgLong(v, 4, 0);
      a.OffsetImage(ArgBool(v, 0, false), x, y, sx, sy);
      const int32_t out[] = {x, y, sx, sy};
      for (size_t i = 0; i < 4; ++i)
        if (i + 1 < v.size()) v[i + 1] = Variant(out[i]);
      return Variant();
    });
    method(u"GetImageScales", [](A& a, std::span<Variant> v) {
      int32_t w = 0, h = 0;
      a.GetImageScales(w, h, ArgLong(v, 2, -1), ArgLong(v, 3, 0), ArgLong(v, 4, 0), ArgBool(v, 5, false));
      if (v.size() > 0) v[0] = Variant(w);
      if (v.size() > 1) v[1] = Variant(h);
      return Variant();
    });
    method(u"LoadImage_FromFile", [](A& a, std::span<Variant> v) {
      return Variant(a.LoadImage_FromFile(ArgString(v, 0), ArgLong(v, 1, 0), ArgLong(v, 2, 0), ArgLong(v, 3, 32)));
    });
    method(u"LoadImage_FromArray", [](A& a, std::span<Variant> v) {
      if (v.empty()) host::Raise(449, u"USAlphaImage");
      return Variant(a.LoadImage_FromArray(v[0].ToBytes(), ArgLong(v, 1, 0), ArgLong(v, 2, 0), ArgLong(v, 3, 0),
                                           ArgLong(v, 4, 0), ArgLong(v, 5, 32)));
    });
    method(u"LoadImage_FromStdPicture", [](A& a, std::span<Variant> v) {
      if (v.empty()) host::Raise(449, u"USAlphaImage");
      return Variant(a.LoadImage_FromStdPicture(std::dynamic_pointer_cast<host::StdPicture>(v[0].ToObject())));
    });
    method(u"LoadImage_FromClipboard", [](A& a, std::span<Variant>) { return Variant(a.LoadImage_FromClipboard()); });
    method(u"LoadImage_FromHandle", [](A& a, std::span<Variant> v) {
      return Variant(a.LoadImage_FromHandle(static_cast<uint32_t>(ArgLong(v, 0, 0))));
    });
    method(u"LoadImage_FromOrignalBytes", [](A& a, std::span<Variant> v) {
      return Variant(a.LoadImage_FromOrignalBytes(ArgLong(v, 0, 0), ArgLong(v, 1, 0), ArgLong(v, 2, 32)));
    });
    method(u"LoadImage_FromUSImageList", [](A& a, std::span<Variant> v) {
      auto list = v.empty() ? nullptr : std::dynamic_pointer_cast<USImageList>(v[0].ToObject());
      if (!list) host::Raise(13, u"USAlphaImage");
      const Variant index = v.size() > 1 ? v[1] : Variant(int32_t{1});
      const Variant key = v.size() > 2 ? v[2] : Variant(int32_t{1});
      return Variant(a.LoadImage_FromUSImageList(*list, index, key));
    });
    method(u"GetStream", [](A& a, std::span<Variant> v) {
      std::vector<uint8_t> bytes;
      const bool ok = a.GetStream(bytes);
      if (!v.empty()) v[0] = Variant(host::ByteArray(std::move(bytes)));
      return Variant(ok);
    });
    method(u"SetStream", [](A& a, std::span<Variant> v) {
      if (v.empty()) host::Raise(449, u"USAlphaImage");
      return Variant(a.SetStream(v[0].ToBytes(), ArgLong(v, 1, 0), ArgLong(v, 2, 0), ArgLong(v, 3, 32)));
    });
    method(u"SaveToBMP", [](A& a, std::span<Variant> v) {
      return Variant(a.SaveToBMP(ArgString(v, 0), ArgBool(v, 1, false), ArgLong(v, 2, -1)));
    });
    method(u"SaveToGIF", [](A& a, std::span<Variant> v) {
      return Variant(a.SaveToGIF(ArgString(v, 0), ArgBool(v, 1, true), ArgLong(v, 2, 128)));
    });
    method(u"SaveToJPG", [](A& a, std::span<Variant> v) {
      return Variant(a.SaveToJPG(ArgString(v, 0), ArgLong(v, 1, 90), ArgLong(v, 2, -1)));
    });
    method(u"SaveToPNG", [](A& a, std::span<Variant> v) { return Variant(a.SaveToPNG(ArgString(v, 0))); });
    method(u"SaveRederedToBMP", [](A& a, std::span<Variant> v) {
      return Variant(a.SaveRederedToBMP(ArgString(v, 0), ArgBool(v, 1, false), ArgLong(v, 2, -1), ArgLong(v, 3, 0)));
    });
    method(u"SaveRederedToGIF", [](A& a, std::span<Variant> v) {
      return Variant(a.SaveRederedToGIF(ArgString(v, 0), ArgBool(v, 1, true), ArgLong(v, 2, 128), ArgLong(v, 3, 0)));
    });
    method(u"SaveRederedToJPG", [](A& a, std::span<Variant> v) {
      return Variant(a.SaveRederedToJPG(ArgString(v, 0), ArgLong(v, 1, 90), ArgLong(v, 2, -1), ArgLong(v, 3, 0)));
    });
    method(u"SaveRederedToPNG", [](A& a, std::span<Variant> v) {
      return Variant(a.SaveRederedToPNG(ArgString(v, 0), ArgLong(v, 1, 0)));
    });
    auto stream = [&](const char16_t* name, std::function<bool(A&, std::vector<uint8_t>&, std::span<Variant>)> save) {
      method(name, [save](A& a, std::span<Variant> v) {
        std::vector<uint8_t> bytes;
        const bool ok = save(a, bytes, v);
        if (!v.empty()) v[0] = Variant(host::ByteArray(std::move(bytes)));
        return Variant(ok);
      });
    };
    stream(u"SaveToBMPStream", [](A& a, std::vector<uint8_t>& b, std::span<Variant> v) {
      return a.SaveToBMPStream(b, ArgBool(v, 1, false), ArgLong(v, 2, -1));
    });
    stream(u"SaveToGIFStream", [](A& a, std::vector<uint8_t>& b, std::span<Variant> v) {
      return a.SaveToGIFStream(b, ArgBool(v, 1, true), ArgLong(v, 2, 128));
    });
    stream(u"SaveToJPGStream",
           [](A& a, std::vector<uint8_t>& b, std::span<Variant> v) { return a.SaveToJPGStream(b, ArgLong(v, 1, 90)); });
    stream(u"SaveToPNGStream", [](A& a, std::vector<uint8_t>& b, std::span<Variant>) { return a.SaveToPNGStream(b); });
    return t;
  }();
  return table;
}

}  // namespace

Variant USAlphaImage::Invoke(host::StringView name, host::CallKind kind, std::span<Variant> args) {
  Variant result;
  if (Table().Dispatch(*this, name, kind, args, result, u"USAlphaImage")) return result;
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::controls
