#include "imagelist/APIImageList.h"

#include "host/Err.h"
#include "host/Strings.h"
#include "imagelist/APIEnumVARIANT.h"
#include "imagelist/APIListImages.h"

namespace mx::imagelist {

using host::String;
using host::StringView;
using host::Variant;

APIImageList::APIImageList(std::weak_ptr<APIItemData> parent, int32_t Width, int32_t Height)
    : m_parent(std::move(parent)), m_width(Width), m_height(Height) {}

void APIImageList::Initialize(int32_t initialCells) {
  auto self = std::static_pointer_cast<APIImageList>(shared_from_this());
  m_images = std::make_shared<APIListImages>(std::weak_ptr<APIItemData>(std::shared_ptr<APIItemData>(self)), m_width,
                                             m_height, initialCells);
}

std::shared_ptr<APIItemData> APIImageList::Parent() const {
  auto p = m_parent.lock();
  if (!p) host::Raise(host::kErrObjectNotSet, u"ImageList");
  return p;
}

String APIImageList::Key() const { return Parent()->ClassDataString(DataKey, ObjectId()); }
void APIImageList::Key(StringView value) { Parent()->ClassDataString(DataKey, ObjectId(), value); }
int32_t APIImageList::Index() const { return Parent()->ClassDataLong(DataIndex, ObjectId()); }
void APIImageList::Index(int32_t value) { Parent()->ClassDataLong(DataIndex, ObjectId(), value); }

std::shared_ptr<APIEnumVARIANT> APIImageList::xcom_IEnum() const { return m_images->xcom_IEnum(); }

int32_t APIImageList::ClassDataLong(ENUM_DATA_NAMES DataName, uint32_t oID) {
  switch (DataName) {
    case DataWidth:
      return m_width;
    case DataHeight:
      return m_height;
    case DataMaxImageCount:
      return MaxImages();
    default:
      if (auto p = m_parent.lock()) return p->ClassDataLong(DataName, ObjectId());
      return 0;
  }
}

// The cell size is fixed at creation (a list read from a blob is made with the blob's size), so
// nothing is taken from below.
void APIImageList::ClassDataLong(ENUM_DATA_NAMES, uint32_t, int32_t) {}

String APIImageList::ClassDataString(ENUM_DATA_NAMES, uint32_t) { return {}; }
void APIImageList::ClassDataString(ENUM_DATA_NAMES, uint32_t, StringView) {}
Variant APIImageList::ClassDataObject(ENUM_DATA_NAMES, uint32_t) { return Variant::Nothing(); }

std::vector<Variant> APIImageList::EnumerateItems() { return m_images->EnumerateItems(); }

Variant APIImageList::Invoke(StringView name, host::CallKind kind, std::span<Variant> args) {
  auto is = [&](StringView n) { return host::TextEquals(name, n); };
  const bool let = kind == host::CallKind::Let;
  if (is(u"Images")) return Variant(m_images);
  if (is(u"Key")) {
    if (let) Key(host::ArgumentAt(args, args.size() - 1).ToString());
    return let ? Variant() : Variant(Key());
  }
  if (is(u"Index")) {
    if (let) Index(host::ArgumentAt(args, args.size() - 1).ToLong());
    return let ? Variant() : Variant(Index());
  }
  if (is(u"Width")) return Variant(m_width);
  if (is(u"Height")) return Variant(m_height);
  if (is(u"MaxImages")) return Variant(MaxImages());
  return Object::Invoke(name, kind, args);
}

}  // namespace mx::imagelist
