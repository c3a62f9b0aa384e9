// USButton: late binding. Every property and method reachable by name, as the host's dispatch
// interface offers them; names are compared without regard to case.
#include <functional>
#include <unordered_map>

#include "controls/USButton.h"
#include "controls/USImageList.h"
#include "host/Err.h"
#include "host/Strings.h"

namespace mx::controls {

using host::CallKind;
using host::Variant;

namespace {

struct Member {
  // Property read (also serves a method call with no arguments when no method is given).
  std::function<Variant(USButton&)> get;
  // Property write, with the new value.
  std::function<void(USButton&, const Variant&)> let;
  // A method: the arguments as given.
  std::function<Variant(USButton&, std::span<Variant>)> method;
};

std::shared_ptr<host::StdPicture> ToPicture(const Variant& v) {
  auto picture = std::dynamic_pointer_cast<host::StdPicture>(v.ToObject());
  if (!picture && !v.IsNothing()) host::Raise(13, u"USButton");
  return picture;
}

Variant FromPicture(const std::shared_ptr<host::StdPicture>& p) { return p ? Variant(p) : Variant::Nothing(); }

// Properties of one plain type through a getter and a setter of the button.
template <typename T, typename Get, typename Let>
Member Plain(Get get, Let let) {
  Member m;
  m.get = [get](USButton& b) { return Variant((b.*get)()); };
  m.let = [let](USButton& b, const Variant& v) {
    if constexpr (std::is_same_v<T, bool>) (b.*let)(v.ToBoolean());
    else if constexpr (std::is_same_v<T, int16_t>) (b.*let)(v.ToInteger());
    else if constexpr (std::is_same_v<T, int32_t>) (b.*let)(v.ToLong());
    else if constexpr (std::is_same_v<T, float>) (b.*let)(v.ToSingle());
    else (b.*let)(v.ToString());
  };
  return m;
}

template <typename Get, typename Let>
Member Picture(Get get, Let let) {
  Member m;
  m.get = [get](USButton& b) { return FromPicture((b.*get)()); };
  m.let = [let](USButton& b, const Variant& v) { (b.*let)(ToPicture(v)); };
  return m;
}

// A method with arguments and a result.
Member Call(std::function<Variant(USButton&, std::span<Variant>)> call) {
  Member m;
  m.method = std::move(call);
  return m;
}

// An optional argument: its value, or the default when left out.
int32_t ArgLong(std::span<Variant> args, size_t i, int32_t def) {
  return i < args.size() && !args[i].IsMissing() ? args[i].ToLong() : def;
}

// A required argument, or error 449 (argument not optional).
const Variant& ArgRequired(std::span<Variant> args, size_t i) {
  if (i >= args.size() || args[i].IsMissing()) host::Raise(449, u"USButton");
  return args[i];
}

Member Method(std::function<void(USButton&)> call) {
  Member m;
  m.method = [call](USButton& b, std::span<Variant>) {
    call(b);
    return Variant();
  };
  return m;
}

using Table = std::unordered_map<String, Member>;

void AddColourSet(Table& t, const char16_t* name, OLE_COLOR (USButton::*get)(int32_t) const,
                  void (USButton::*let)(int32_t, OLE_COLOR)) {
  for (int32_t i = 1; i <= 4; ++i) {
    Member m;
    m.get = [get, i](USButton& b) { return Variant((b.*get)(i)); };
    m.let = [let, i](USButton& b, const Variant& v) { (b.*let)(i, v.ToLong()); };
    t[host::UCase(String(name) + static_cast<char16_t>(u'0' + i))] = std::move(m);
  }
}

const Table& Members() {
  static const Table table = [] {
    Table t;
    using B = USButton;
    auto add = [&](const char16_t* name, Member m) { t[host::UCase(name)] = std::move(m); };
    // Overloads are picked by the member-pointer types spelled here.
    using GetL = int32_t (B::*)() const;
    using LetL = void (B::*)(int32_t);
    using GetB = bool (B::*)() const;
    using LetB = void (B::*)(bool);
    using GetS = const String& (B::*)() const;
    using LetS = void (B::*)(StringView);
    add(u"Alignment", Plain<int32_t>(GetL(&B::Alignment), LetL(&B::Alignment)));
    add(u"CropBorders", Plain<int32_t>(GetL(&B::CropBorders), LetL(&B::CropBorders)));
    add(u"Caption", Plain<String>(GetS(&B::Caption), LetS(&B::Caption)));
    add(u"CaptionDistance",
        Plain<int16_t>(static_cast<int16_t (B::*)() const>(&B::CaptionDistance),
                       static_cast<void (B::*)(int16_t)>(&B::CaptionDistance)));
    add(u"CaptionWordBreak", Plain<bool>(GetB(&B::CaptionWordBreak), LetB(&B::CaptionWordBreak)));
    add(u"CheckBoxMode", Plain<bool>(GetB(&B::CheckBoxMode), LetB(&B::CheckBoxMode)));
    add(u"Enabled", Plain<bool>(GetB(&B::Enabled), LetB(&B::Enabled)));
    add(u"Locked", Plain<bool>(GetB(&B::Locked), LetB(&B::Locked)));
    add(u"Redraw", Plain<bool>(GetB(&B::Redraw), LetB(&B::Redraw)));
    add(u"Value", Plain<bool>(GetB(&B::Value), LetB(&B::Value)));
    add(u"HandPointer", Plain<bool>(GetB(&B::HandPointer), LetB(&B::HandPointer)));
    add(u"ShowFocusRect", Plain<bool>(GetB(&B::ShowFocusRect), LetB(&B::ShowFocusRect)));
    add(u"ShowFocusRectDown", Plain<bool>(GetB(&B::ShowFocusRectDown), LetB(&B::ShowFocusRectDown)));
    add(u"Theme", Plain<int32_t>(GetL(&B::Theme), LetL(&B::Theme)));
    add(u"GradientColors", Plain<int32_t>(GetL(&B::GradientColors), LetL(&B::GradientColors)));
    add(u"BorderColor", Plain<int32_t>(GetL(&B::BorderColor), LetL(&B::BorderColor)));
    add(u"BorderColorDisabled", Plain<int32_t>(GetL(&B::BorderColorDisabled), LetL(&B::BorderColorDisabled)));
    add(u"BorderColorOver", Plain<int32_t>(GetL(&B::BorderColorOver), LetL(&B::BorderColorOver)));
    add(u"BorderColorDown", Plain<int32_t>(GetL(&B::BorderColorDown), LetL(&B::BorderColorDown)));
    add(u"ForeColor", Plain<int32_t>(GetL(&B::ForeColor), LetL(&B::ForeColor)));
    add(u"ForeColorDisabled", Plain<int32_t>(GetL(&B::ForeColorDisabled), LetL(&B::ForeColorDisabled)));
    add(u"ForeColorOver", Plain<int32_t>(GetL(&B::ForeColorOver), LetL(&B::ForeColorOver)));
    add(u"ForeColorDown", Plain<int32_t>(GetL(&B::ForeColorDown), LetL(&B::ForeColorDown)));
    using GetC = OLE_COLOR (B::*)(int32_t) const;
    using LetC = void (B::*)(int32_t, OLE_COLOR);
    AddColourSet(t, u"GradientColor", GetC(&B::GradientColor), LetC(&B::GradientColor));
    AddColourSet(t, u"GradientColorDisabled", GetC(&B::GradientColorDisabled), LetC(&B::GradientColorDisabled));
    AddColourSet(t, u"GradientColorOver", GetC(&B::GradientColorOver), LetC(&B::GradientColorOver));
    AddColourSet(t, u"GradientColorDown", GetC(&B::GradientColorDown), LetC(&B::GradientColorDown));
    add(u"FontBold", Plain<bool>(GetB(&B::FontBold), LetB(&B::FontBold)));
    add(u"FontItalic", Plain<bool>(GetB(&B::FontItalic), LetB(&B::FontItalic)));
    add(u"FontStrikeThru", Plain<bool>(GetB(&B::FontStrikeThru), LetB(&B::FontStrikeThru)));
    add(u"FontUnderline", Plain<bool>(GetB(&B::FontUnderline), LetB(&B::FontUnderline)));
    add(u"FontSize", Plain<float>(static_cast<float (B::*)() const>(&B::FontSize),
                                  static_cast<void (B::*)(float)>(&B::FontSize)));
    add(u"MousePointer", Plain<int16_t>(static_cast<int16_t (B::*)() const>(&B::MousePointer),
                                        static_cast<void (B::*)(int16_t)>(&B::MousePointer)));
    {
      Member font;
      font.get = [](B& b) { return Variant(b.Font()); };
      font.let = [](B& b, const Variant& v) {
        auto f = std::dynamic_pointer_cast<host::StdFont>(v.ToObject());
        if (!f) host::Raise(13, u"USButton");
        b.Font(std::move(f));
      };
      add(u"Font", std::move(font));
    }
    using GetP = std::shared_ptr<host::StdPicture> (B::*)() const;
    using LetP = void (B::*)(std::shared_ptr<host::StdPicture>);
    add(u"MouseIcon", Picture(GetP(&B::MouseIcon), LetP(&B::MouseIcon)));
    add(u"Picture", Picture(GetP(&B::Picture), LetP(&B::Picture)));
    add(u"PictureOn", Picture(GetP(&B::PictureOn), LetP(&B::PictureOn)));
    add(u"PictureOver", Picture(GetP(&B::PictureOver), LetP(&B::PictureOver)));
    add(u"PictureToChange", Picture(GetP(&B::PictureToChange), LetP(&B::PictureToChange)));
    {
      Member bytes;
      bytes.get = [](B& b) { return Variant(b.PictureBytes()); };
      bytes.let = [](B& b, const Variant& v) { b.PictureBytes(v.ToBytes()); };
      add(u"PictureBytes", std::move(bytes));
    }
    add(u"PictureAlignment", Plain<int32_t>(GetL(&B::PictureAlignment), LetL(&B::PictureAlignment)));
    add(u"PictureOpacity", Plain<int32_t>(GetL(&B::PictureOpacity), LetL(&B::PictureOpacity)));
    add(u"PictureSize", Plain<int32_t>(GetL(&B::PictureSize), LetL(&B::PictureSize)));
    add(u"PictureSizeX", Plain<int32_t>(GetL(&B::PictureSizeX), LetL(&B::PictureSizeX)));
    add(u"PictureSizeY", Plain<int32_t>(GetL(&B::PictureSizeY), LetL(&B::PictureSizeY)));
    add(u"ToolDelayTime", Plain<int32_t>(GetL(&B::ToolDelayTime), LetL(&B::ToolDelayTime)));
    add(u"ToolTipBackColor", Plain<int32_t>(GetL(&B::ToolTipBackColor), LetL(&B::ToolTipBackColor)));
    add(u"ToolTipCentered", Plain<bool>(GetB(&B::ToolTipCentered), LetB(&B::ToolTipCentered)));
    add(u"ToolTipDescription", Plain<String>(GetS(&B::ToolTipDescription), LetS(&B::ToolTipDescription)));
    add(u"ToolTipForeColor", Plain<int32_t>(GetL(&B::ToolTipForeColor), LetL(&B::ToolTipForeColor)));
    add(u"ToolTipIcon", Plain<int32_t>(GetL(&B::ToolTipIcon), LetL(&B::ToolTipIcon)));
    add(u"ToolTipStyle", Plain<int32_t>(GetL(&B::ToolTipStyle), LetL(&B::ToolTipStyle)));
    add(u"ToolTipTitle", Plain<String>(GetS(&B::ToolTipTitle), LetS(&B::ToolTipTitle)));
    add(u"ToolTipVisibleTime", Plain<int32_t>(GetL(&B::ToolTipVisibleTime), LetL(&B::ToolTipVisibleTime)));
    {
      Member m;
      m.get = [](B& b) { return Variant(static_cast<int32_t>(b.hWnd())); };
      add(u"hWnd", std::move(m));
      Member dc;
      dc.get = [](B& b) { return Variant(static_cast<int32_t>(b.hDC())); };
      add(u"hDC", std::move(dc));
    }
    add(u"About", Method([](B& b) { b.About(); }));
    add(u"Dispose", Method([](B& b) { b.Dispose(); }));
    add(u"Refresh", Method([](B& b) { b.Refresh(); }));
    add(u"ClearPictureBytes", Method([](B& b) { b.ClearPictureBytes(); }));
    add(u"CreateToolTip", Method([](B& b) { b.CreateToolTip(); }));
    add(u"DestroyToolTip", Method([](B& b) { b.DestroyToolTip(); }));
    add(u"LoadImage_FromFile", Call([](B& b, std::span<Variant> v) {
          return Variant(b.LoadImage_FromFile(ArgRequired(v, 0).ToString(), ArgLong(v, 1, 0), ArgLong(v, 2, 0),
                                              ArgLong(v, 3, 32)));
        }));
    add(u"LoadImage_FromArray", Call([](B& b, std::span<Variant> v) {
          return Variant(
              b.LoadImage_FromArray(ArgRequired(v, 0).ToBytes(), ArgLong(v, 1, 0), ArgLong(v, 2, 0), ArgLong(v, 3, 32)));
        }));
    add(u"LoadImage_FromResource", Call([](B& b, std::span<Variant> v) {
          return Variant(b.LoadImage_FromResource(ArgRequired(v, 0), ArgRequired(v, 1).ToString(),
                                                  ArgRequired(v, 2).ToString(), ArgLong(v, 3, 0), ArgLong(v, 4, 0),
                                                  ArgLong(v, 5, 32)));
        }));
    add(u"LoadImage_FromStdPicture", Call([](B& b, std::span<Variant> v) {
          return Variant(b.LoadImage_FromStdPicture(ToPicture(ArgRequired(v, 0))));
        }));
    add(u"LoadImage_FromHandle", Call([](B& b, std::span<Variant> v) {
          return Variant(b.LoadImage_FromHandle(static_cast<uint32_t>(ArgRequired(v, 0).ToLong())));
        }));
    add(u"LoadImage_FromUSImageList", Call([](B& b, std::span<Variant> v) {
          auto list = std::dynamic_pointer_cast<USImageList>(ArgRequired(v, 0).ToObject());
          if (!list) host::Raise(13, u"USButton");
          return Variant(b.LoadImage_FromUSImageList(*list, ArgRequired(v, 1), ArgRequired(v, 2)));
        }));
    return t;
  }();
  return table;
}

}  // namespace

Variant USButton::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  // The default member is Caption.
  const String key = name.empty() ? String(u"CAPTION") : host::UCase(name);
  const auto& table = Members();
  const auto it = table.find(key);
  if (it == table.end()) return UserControl::Invoke(name, kind, args);
  const Member& m = it->second;
  if (m.method) return m.method(*this, args);
  if (kind == CallKind::Let || kind == CallKind::Set) {
    if (!m.let || args.empty()) host::Raise(m.let ? 450 : 383, u"USButton");
    m.let(*this, args.back());
    return Variant();
  }
  if (!m.get) host::Raise(451, u"USButton");
  return m.get(*this);
}

}  // namespace mx::controls
