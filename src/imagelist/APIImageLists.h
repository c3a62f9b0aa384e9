#pragma once
// The lists of a USImageList, and the list blob ("LIVL") they travel as: the persisted form in
// a property bag, the content of a .lIL file, and the argument of import and export.
//
//   0   "LIVL"
//   4   version (2 written; 1 and 2 read)
//   8   formatPos: 1-based position of the format block
//   12  imagePos = formatPos + 3
//   16  key length k in bytes, then the key in UTF-16LE
//   h = 20 + k: image count, keyed count, Width, Height, then the name records
//               (or their compressor blob)
//   formatPos - 1: block size 3, DelayLoaded (-1/0, 2 bytes), format byte, image data to the end
#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/Variant.h"
#include "imagelist/APIItemData.h"
#include "imagelist/KeyIndex.h"

namespace mx::imagelist {

class APIEnumVARIANT;
class APIImageList;

class APIImageLists : public host::Object, public APIItemData {
 public:
  APIImageLists() = default;
  // Made through make_shared only: the lists hold it weakly.
  [[nodiscard]] static std::shared_ptr<APIImageLists> Create() { return std::make_shared<APIImageLists>(); }

  [[nodiscard]] std::shared_ptr<APIImageList> Find(const host::Variant& Index) const;
  // Raises 1962 when none matches.
  [[nodiscard]] std::shared_ptr<APIImageList> Item(const host::Variant& Index) const;
  [[nodiscard]] std::shared_ptr<APIImageList> operator[](const host::Variant& Index) const { return Item(Index); }
  [[nodiscard]] bool Compression() const { return m_compression; }
  void Compression(bool value) { m_compression = value; }
  // True when pictures have no fast PNG route (no system codec and no zlib).
  [[nodiscard]] bool CompressionNeeded() const;
  [[nodiscard]] int32_t Count() const { return static_cast<int32_t>(m_lists.size()); }
  void Clear();
  void Remove(const host::Variant& Index);
  [[nodiscard]] static int32_t MaxImages(int32_t imageWidth, int32_t imageHeight) {
    return MaxImagesFor(imageWidth, imageHeight);
  }
  // Raises 1963 for a key in use and 1973 when InitImageCount cells exceed the budget.
  std::shared_ptr<APIImageList> Add(int32_t Width, int32_t Height, host::StringView Key, int32_t InitImageCount = 1);
  [[nodiscard]] bool IsKeyAssigned(host::StringView Key) const { return m_keyIndex.Search(Key).found; }
  // Adds a list from a blob. Key is in-out: a key given replaces the blob's, and a key in use
  // gets " (n)"-style counters, "key(2)", until unique; Key returns the key in force. Nothing
  // for an array that is no blob; raises 1974 for a newer version, 1975 (or the error under
  // way) for a damaged one, leaving the collection as it was.
  std::shared_ptr<APIImageList> ImportImageList(std::span<const uint8_t> inData, host::String& Key);
  // Raises 1962 for an unknown list, 1976 when the blob cannot be made.
  void ExportImageList(const host::Variant& Index, std::vector<uint8_t>& outData);
  [[nodiscard]] std::shared_ptr<APIEnumVARIANT> xcom_IEnum();
  // The picture's sizes: one row (width, height) for a picture, one per entry for an icon;
  // -1 bounds and 0 rows when it cannot be read. Returns the row count.
  int32_t ImageSizesFromStream(const std::vector<uint8_t>& inStream, std::vector<std::array<int32_t, 2>>& arraySizes);

  // .lIL files: the blob as it stands, nothing around it.
  void ExportToFile(const host::Variant& Index, const std::string& path);
  std::shared_ptr<APIImageList> ImportFromFile(const std::string& path, host::String& Key);

  [[nodiscard]] int32_t ClassDataLong(ENUM_DATA_NAMES DataName, uint32_t oID) override;
  void ClassDataLong(ENUM_DATA_NAMES DataName, uint32_t oID, int32_t value) override;
  [[nodiscard]] host::String ClassDataString(ENUM_DATA_NAMES DataName, uint32_t oID) override;
  void ClassDataString(ENUM_DATA_NAMES DataName, uint32_t oID, host::StringView value) override;
  [[nodiscard]] host::Variant ClassDataObject(ENUM_DATA_NAMES DataName, uint32_t oID) override;

  using const_iterator = std::vector<std::shared_ptr<APIImageList>>::const_iterator;
  [[nodiscard]] const_iterator begin() const { return m_lists.begin(); }
  [[nodiscard]] const_iterator end() const { return m_lists.end(); }

  [[nodiscard]] host::String TypeName() const override { return u"APIImageLists"; }
  host::Variant Invoke(host::StringView name, host::CallKind kind, std::span<host::Variant> args) override;
  [[nodiscard]] std::vector<host::Variant> EnumerateItems() override;

 private:
  [[nodiscard]] int32_t Locate(const host::Variant& Index) const;
  [[nodiscard]] int32_t PositionOf(uint32_t id) const;
  [[nodiscard]] std::shared_ptr<APIItemData> Self();
  // Inserts a new list under a key already checked; the list is initialised by the caller.
  std::shared_ptr<APIImageList> Append(int32_t Width, int32_t Height, host::String key);
  void RemoveAt(int32_t position);

  std::vector<std::shared_ptr<APIImageList>> m_lists;
  std::vector<host::String> m_keys;  // per position
  KeyIndex m_keyIndex;
  int32_t m_gdiToken = 0;
  int32_t m_enumCursor = 0;
  bool m_compression = true;
};

}  // namespace mx::imagelist
