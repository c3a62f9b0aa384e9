#pragma once
// The For Each enumerator of the image-list collections. The cursor lives in the collection, not
// here: every enumerator of one collection (and every clone) moves the same cursor, and making
// a new enumerator resets it.
//
//   Next   asks DataNext (cursor + 1, true while within Count), then DataItem for the object
//   Skip   repeats DataNext
//   Reset  sets DataReset
//   Clone  the same enumerator again, one more reference
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "host/Variant.h"
#include "imagelist/APIItemData.h"

namespace mx::imagelist {

// HRESULT values of the enumeration contract.
inline constexpr int32_t S_OK_ = 0;
inline constexpr int32_t S_FALSE_ = 1;
inline constexpr int32_t E_NOINTERFACE_ = static_cast<int32_t>(0x80004002u);

// The interfaces an enumerator answers to, by their identifiers in registry form.
inline constexpr std::u16string_view kIID_IUnknown = u"{00000000-0000-0000-C000-000000000046}";
inline constexpr std::u16string_view kIID_IEnumVARIANT = u"{00020404-0000-0000-C000-000000000046}";

class APIEnumVARIANT : public std::enable_shared_from_this<APIEnumVARIANT> {
 public:
  // Resets the collection's cursor.
  [[nodiscard]] static std::shared_ptr<APIEnumVARIANT> Create(std::shared_ptr<APIItemData> collection);

  // S_OK for IUnknown and IEnumVARIANT (compared without regard to case), else E_NOINTERFACE.
  [[nodiscard]] int32_t QueryInterface(std::u16string_view iid) const;
  // Fetches up to celt items, one at a time, appending to out; S_FALSE when fewer came.
  int32_t Next(uint32_t celt, std::vector<host::Variant>& out, uint32_t* fetched = nullptr);
  int32_t Skip(uint32_t celt);
  int32_t Reset();
  // Shares this enumerator, and so its cursor.
  [[nodiscard]] std::shared_ptr<APIEnumVARIANT> Clone() { return shared_from_this(); }

  explicit APIEnumVARIANT(std::shared_ptr<APIItemData> collection) : m_collection(std::move(collection)) {}

 private:
  std::shared_ptr<APIItemData> m_collection;
};

}  // namespace mx::imagelist
