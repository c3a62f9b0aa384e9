#include "frame/ToolTipSettings.h"

#include "frame/APITooltip.h"
#include "host/PropertyBag.h"
#include "host/Variant.h"

namespace mx::frame {

using host::String;
using host::Variant;

namespace {

// A key that holds something unconvertible keeps the field's value: one bad entry in a form
// file must not cost the control the rest of its properties.
template <typename Convert>
void ReadKey(const host::PropertyBag& bag, host::StringView key, const Variant& def, Convert convert) {
  try {
    convert(bag.ReadProperty(key, def));
  } catch (...) {
  }
}

}  // namespace

void ToolTipSettings::Read(const host::PropertyBag& bag) {
  ReadKey(bag, u"ToolDelayTime", Variant(int32_t{1500}), [&](const Variant& v) { delayTime = v.ToLong(); });
  ReadKey(bag, u"ToolTipBackColor", Variant(OLE_COLOR{0xF4FFFF}), [&](const Variant& v) { backColor = v.ToLong(); });
  ReadKey(bag, u"ToolTipCentered", Variant(false), [&](const Variant& v) { centered = v.ToBoolean(); });
  ReadKey(bag, u"ToolTipDescription", Variant(String()), [&](const Variant& v) { description = v.ToString(); });
  ReadKey(bag, u"ToolTipForeColor", Variant(OLE_COLOR{0}), [&](const Variant& v) { foreColor = v.ToLong(); });
  ReadKey(bag, u"ToolTipIcon", Variant(int32_t{0}), [&](const Variant& v) { icon = v.ToLong(); });
  ReadKey(bag, u"ToolTipStyle", Variant(int32_t{1}), [&](const Variant& v) { style = v.ToLong(); });
  ReadKey(bag, u"ToolTipTitle", Variant(String()), [&](const Variant& v) { title = v.ToString(); });
  ReadKey(bag, u"ToolTipVisibleTime", Variant(int32_t{5000}), [&](const Variant& v) { visibleTime = v.ToLong(); });
}

void ToolTipSettings::Write(host::PropertyBag& bag) const {
  bag.WriteProperty(u"ToolDelayTime", Variant(delayTime), Variant(int32_t{1500}));
  bag.WriteProperty(u"ToolTipBackColor", Variant(backColor), Variant(OLE_COLOR{0xF4FFFF}));
  bag.WriteProperty(u"ToolTipCentered", Variant(centered), Variant(false));
  bag.WriteProperty(u"ToolTipDescription", Variant(description), Variant(String()));
  bag.WriteProperty(u"ToolTipForeColor", Variant(foreColor), Variant(OLE_COLOR{0}));
  bag.WriteProperty(u"ToolTipIcon", Variant(icon), Variant(int32_t{0}));
  bag.WriteProperty(u"ToolTipStyle", Variant(style), Variant(int32_t{1}));
  bag.WriteProperty(u"ToolTipTitle", Variant(title), Variant(String()));
  bag.WriteProperty(u"ToolTipVisibleTime", Variant(visibleTime), Variant(int32_t{5000}));
}

void ToolTipSettings::CreateOn(APITooltip& tip, platform::HWND owner) const {
  tip.Destroy();
  tip.BackColor(backColor);
  tip.Centered(centered);
  tip.DelayTime(delayTime);
  tip.ForeColor(foreColor);
  tip.Icon(static_cast<ENUM_TOOLTIP_ICON>(icon));
  tip.Style(static_cast<ENUM_TOOLTIP_STYLE>(style));
  tip.TipText(description);
  tip.Title(title);
  tip.VisibleTime(visibleTime);
  tip.Create(owner);
}

}  // namespace mx::frame
