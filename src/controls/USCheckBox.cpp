// USCheckBox: its value, its glyph and its late binding; the rest is ToggleControl's.
#include "controls/USCheckBox.h"

#include "controls/ControlSupport.h"
#include "controls/ToggleGlyphs.h"
#include "frame/Drawing.h"
#include "frame/Gradient.h"
#include "host/Err.h"
#include "host/Strings.h"
#include "platform/Gdi.h"

namespace mx::controls {

using detail::Step;
using host::Variant;

namespace detail {

void FillGlyphInside(platform::HDC dc, const platform::RECT& r, OLE_COLOR top, OLE_COLOR bottom) {
  // The gradient painter fills equal colours over (x, y)-(width, height), which is not this
  // rectangle unless it sits at the origin: a solid inside is filled here instead.
  if (top == bottom) {
    frame::FillRectColor(dc, r, top);
    return;
  }
  frame::PaintGradientRect(dc, r.left, r.top, r.right - r.left, r.bottom - r.top, top, bottom,
                           frame::GradientTopToBottom);
}

}  // namespace detail

USCheckBox::USCheckBox() = default;

USCheckBox::~USCheckBox() = default;

void USCheckBox::Value(int16_t value) {
  if (value < kUnchecked || value > kGrayed) host::Raise(host::kErrInvalidPropertyValue, u"USCheckBox");
  m_value = value;
  PropertyChanged(u"Value");
  DrawState(-1, true);
}

void USCheckBox::ClickValue() {
  // Grayed and checked both go to clear; only a program sets the grayed state.
  m_value = m_value == kUnchecked ? kChecked : kUnchecked;
  Step([&] { PropertyChanged(u"Value"); });
}

void USCheckBox::PaintGlyph(platform::HDC dc, const platform::RECT& box, const ToggleGlyphColors& colours) {
  frame::FrameRectColor(dc, box, colours.border);
  detail::FillGlyphInside(dc, platform::RECT{box.left + 1, box.top + 1, box.right - 1, box.bottom - 1},
                          colours.fillTop, colours.fillBottom);
  const auto mark = static_cast<platform::COLORREF>(host::TranslateColor(colours.mark));
  if (m_value == kChecked) {
    // The check: seven columns three pixels tall, down two steps then up four.
    static constexpr int kColumnTop[7] = {5, 6, 7, 6, 5, 4, 3};
    for (int i = 0; i < 7; ++i)
      for (int dy = 0; dy < 3; ++dy) platform::SetPixelV(dc, box.left + 3 + i, box.top + kColumnTop[i] + dy, mark);
  } else if (m_value == kGrayed) {
    frame::FillRectColor(dc, platform::RECT{box.left + 3, box.top + 3, box.right - 3, box.bottom - 3},
                         colours.mark);
  }
}

void USCheckBox::ReadValue(host::PropertyBag& bag) {
  m_value = bag.ReadProperty(u"Value", Variant(int16_t{kUnchecked})).ToInteger();
  // A value outside the three states in a bag reads as clear rather than as an unpaintable state.
  if (m_value < kUnchecked || m_value > kGrayed) m_value = kUnchecked;
}

void USCheckBox::WriteValue(host::PropertyBag& bag) {
  bag.WriteProperty(u"Value", Variant(m_value), Variant(int16_t{kUnchecked}));
}

Variant USCheckBox::Invoke(StringView name, host::CallKind kind, std::span<Variant> args) {
  if (name.empty() || host::UCase(name) == u"VALUE") {
    if (kind == host::CallKind::Let || kind == host::CallKind::Set) {
      if (args.empty()) host::Raise(450, u"USCheckBox");
      Value(args.back().ToInteger());
      return Variant();
    }
    return Variant(m_value);
  }
  Variant result;
  if (InvokeCommon(name, kind, args, result)) return result;
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::controls
