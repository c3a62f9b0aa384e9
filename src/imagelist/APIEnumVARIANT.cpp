#include "imagelist/APIEnumVARIANT.h"

#include "host/Strings.h"

namespace mx::imagelist {

std::shared_ptr<APIEnumVARIANT> APIEnumVARIANT::Create(std::shared_ptr<APIItemData> collection) {
  collection->ClassDataLong(DataReset, 0, 0);
  return std::make_shared<APIEnumVARIANT>(std::move(collection));
}

int32_t APIEnumVARIANT::QueryInterface(std::u16string_view iid) const {
  return host::TextEquals(iid, kIID_IUnknown) || host::TextEquals(iid, kIID_IEnumVARIANT) ? S_OK_ : E_NOINTERFACE_;
}

int32_t APIEnumVARIANT::Next(uint32_t celt, std::vector<host::Variant>& out, uint32_t* fetched) {
  uint32_t n = 0;
  while (n < celt && m_collection->ClassDataLong(DataNext, 0) != 0) {
    out.push_back(m_collection->ClassDataObject(DataItem, 0));
    ++n;
  }
  if (fetched) *fetched = n;
  return n == celt ? S_OK_ : S_FALSE_;
}

int32_t APIEnumVARIANT::Skip(uint32_t celt) {
  for (uint32_t i = 0; i < celt; ++i)
    if (m_collection->ClassDataLong(DataNext, 0) == 0) return S_FALSE_;
  return S_OK_;
}

int32_t APIEnumVARIANT::Reset() {
  m_collection->ClassDataLong(DataReset, 0, 0);
  return S_OK_;
}

}  // namespace mx::imagelist
