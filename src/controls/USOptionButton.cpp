// USOptionButton: its value, the clearing of the other option buttons of its container, its
// round glyph and its late binding; the rest is ToggleControl's.
#include "controls/USOptionButton.h"

#include "controls/ControlSupport.h"
#include "controls/ToggleGlyphs.h"
#include "frame/Drawing.h"
#include "host/Err.h"
#include "host/Strings.h"
#include "platform/Gdi.h"

namespace mx::controls {

using detail::Step;
using host::Variant;

namespace {

// An ellipse over the rectangle in one colour, outline and inside alike, or only the outline.
void EllipseColor(platform::HDC dc, const platform::RECT& r, OLE_COLOR outline, const OLE_COLOR* inside) {
  const platform::HPEN pen =
      platform::CreatePen(platform::PS_SOLID, 1, static_cast<platform::COLORREF>(host::TranslateColor(outline)));
  const platform::HBRUSH brush =
      inside ? platform::CreateSolidBrush(static_cast<platform::COLORREF>(host::TranslateColor(*inside))) : 0;
  const platform::HGDIOBJ oldPen = platform::SelectObject(dc, pen);
  const platform::HGDIOBJ oldBrush =
      platform::SelectObject(dc, brush ? brush : platform::GetStockObject(platform::NULL_BRUSH));
  platform::Ellipse(dc, r.left, r.top, r.right, r.bottom);
  platform::SelectObject(dc, oldPen);
  platform::SelectObject(dc, oldBrush);
  platform::DeleteObject(pen);
  if (brush) platform::DeleteObject(brush);
}

}  // namespace

USOptionButton::USOptionButton() = default;

USOptionButton::~USOptionButton() = default;

void USOptionButton::Value(bool value) {
  m_value = value;
  PropertyChanged(u"Value");
  if (value) Step([&] { ClearSiblings(); });
  DrawState(-1, true);
}

void USOptionButton::ClearSiblings() {
  // The group is the container: option buttons on the form itself form one group, and those in
  // each frame another.
  for (const auto& control : ParentControls()) {
    auto other = std::dynamic_pointer_cast<USOptionButton>(control);
    if (!other || other.get() == this || other->Container() != Container()) continue;
    if (other->m_value) other->Value(false);
  }
}

void USOptionButton::ClickValue() {
  // A click on the chosen option changes nothing; on another it chooses this one.
  if (m_value) return;
  m_value = true;
  Step([&] { PropertyChanged(u"Value"); });
  Step([&] { ClearSiblings(); });
}

void USOptionButton::UserControl_AmbientChanged(const String& /*PropertyName*/) { Step([&] { DrawState(-1, true); }); }

void USOptionButton::PaintGlyph(platform::HDC dc, const platform::RECT& box, const ToggleGlyphColors& colours) {
  // The inside gradient is clipped to the circle; the outline goes over its edge.
  const platform::HRGN round = platform::CreateEllipticRgn(box.left, box.top, box.right, box.bottom);
  if (round) {
    platform::SelectClipRgn(dc, round);
    detail::FillGlyphInside(dc, box, colours.fillTop, colours.fillBottom);
    platform::SelectClipRgn(dc, 0);
    platform::DeleteObject(round);
  }
  EllipseColor(dc, box, colours.border, nullptr);
  if (m_value) {
    const platform::RECT dot{box.left + 4, box.top + 4, box.right - 4, box.bottom - 4};
    EllipseColor(dc, dot, colours.mark, &colours.mark);
  }
}

void USOptionButton::ReadValue(host::PropertyBag& bag) {
  m_value = bag.ReadProperty(u"Value", Variant(false)).ToBoolean();
}

void USOptionButton::WriteValue(host::PropertyBag& bag) {
  bag.WriteProperty(u"Value", Variant(m_value), Variant(false));
}

Variant USOptionButton::Invoke(StringView name, host::CallKind kind, std::span<Variant> args) {
  if (name.empty() || host::UCase(name) == u"VALUE") {
    if (kind == host::CallKind::Let || kind == host::CallKind::Set) {
      if (args.empty()) host::Raise(450, u"USOptionButton");
      Value(args.back().ToBoolean());
      return Variant();
    }
    return Variant(m_value);
  }
  Variant result;
  if (InvokeCommon(name, kind, args, result)) return result;
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::controls
