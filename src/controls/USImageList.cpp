#include "controls/USImageList.h"

#include <algorithm>

#include "controls/AboutBox.h"
#include "controls/ControlSupport.h"
#include "host/Err.h"
#include "host/Strings.h"
#include "imagelist/APIImageLists.h"

namespace mx::controls {

using detail::Step;
using host::String;
using host::Variant;

namespace {
String ListKey(int32_t i) { return host::FromUtf8(std::to_string(i)) + u"Img"; }
}  // namespace

USImageList::USImageList() : m_lists(imagelist::APIImageLists::Create()) {}

USImageList::~USImageList() = default;

void USImageList::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  int32_t count = 0;
  Step([&] { count = PropBag.ReadProperty(u"Count", Variant(int32_t{0})).ToLong(); });
  // Each list has a key of its own, so a damaged count cannot ask for more than the bag holds.
  count = std::min(count, PropBag.Count());
  for (int32_t i = 1; i <= count; ++i) {
    // A list that will not import is skipped and its error cleared; the rest still load.
    Step([&] {
      host::ByteArray blob = PropBag.ReadProperty(ListKey(i), Variant(host::ByteArray{})).ToBytes();
      if (blob.empty()) return;
      String key;
      (void)m_lists->ImportImageList(blob, key);
    });
  }
  host::Err().Clear();
}

void USImageList::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  const int32_t count = m_lists->Count();
  Step([&] { PropBag.WriteProperty(u"Count", Variant(count), Variant(int32_t{0})); });
  for (int32_t i = 1; i <= count; ++i) {
    // A list that cannot be exported leaves an empty entry, which a read passes over, so that
    // the numbering of the others holds.
    host::ByteArray blob;
    Step([&] { m_lists->ExportImageList(i, blob); });
    Step([&] { PropBag.WriteProperty(ListKey(i), Variant(std::move(blob))); });
  }
}

void USImageList::UserControl_Resize() {
  // A fixed size: whatever the form asks for, the control takes its own back.
  if (Width() != kWidthTwips) Step([&] { Width(kWidthTwips); });
  if (Height() != kHeightTwips) Step([&] { Height(kHeightTwips); });
}

void USImageList::UserControl_Show() {
  // Only the designer shows the control; at run time it is a holder of lists and nothing more.
  Step([&] {
    if (Ambient().UserMode()) Visible(false);
  });
}

void USImageList::About() { ShowAboutBox(); }

Variant USImageList::Invoke(host::StringView name, host::CallKind kind, std::span<Variant> args) {
  if (host::TextEquals(name, u"ImageLists")) return Variant(m_lists);
  if (host::TextEquals(name, u"About")) {
    About();
    return {};
  }
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::controls
