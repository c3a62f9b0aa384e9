#include "imagelist/APIListImage.h"

#include "host/Err.h"
#include "host/Strings.h"
#include "imagelist/APIEnumVARIANT.h"

namespace mx::imagelist {

using host::String;
using host::StringView;
using host::Variant;

std::shared_ptr<APIItemData> APIListImage::Parent() const {
  auto p = m_parent.lock();
  if (!p) host::Raise(host::kErrObjectNotSet, u"Image");
  return p;
}

String APIListImage::Key() const { return Parent()->ClassDataString(DataKey, ObjectId()); }
void APIListImage::Key(StringView value) { Parent()->ClassDataString(DataKey, ObjectId(), value); }
int32_t APIListImage::Index() const { return Parent()->ClassDataLong(DataIndex, ObjectId()); }
void APIListImage::Index(int32_t value) { Parent()->ClassDataLong(DataIndex, ObjectId(), value); }
String APIListImage::Tag() const { return Parent()->ClassDataString(DataTag, ObjectId()); }
void APIListImage::Tag(StringView value) { Parent()->ClassDataString(DataTag, ObjectId(), value); }
int32_t APIListImage::Width() const { return Parent()->ClassDataLong(DataWidth, ObjectId()); }
int32_t APIListImage::Height() const { return Parent()->ClassDataLong(DataHeight, ObjectId()); }

std::shared_ptr<APIEnumVARIANT> APIListImage::xcom_IEnum() const { return APIEnumVARIANT::Create(Parent()); }

Variant APIListImage::Invoke(StringView name, host::CallKind kind, std::span<Variant> args) {
  auto is = [&](StringView n) { return host::TextEquals(name, n); };
  const bool let = kind == host::CallKind::Let;
  if (is(u"Key")) {
    if (let) Key(host::ArgumentAt(args, args.size() - 1).ToString());
    return let ? Variant() : Variant(Key());
  }
  if (is(u"Tag")) {
    if (let) Tag(host::ArgumentAt(args, args.size() - 1).ToString());
    return let ? Variant() : Variant(Tag());
  }
  if (is(u"Index")) {
    if (let) Index(host::ArgumentAt(args, args.size() - 1).ToLong());
    return let ? Variant() : Variant(Index());
  }
  if (is(u"Width")) return Variant(Width());
  if (is(u"Height")) return Variant(Height());
  return Object::Invoke(name, kind, args);
}

}  // namespace mx::imagelist
