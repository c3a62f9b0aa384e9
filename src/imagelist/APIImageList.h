#pragma once
// One list of a USImageList: a cell size, a key and its images. The key and position are the
// parent collection's to know; this object asks for them by its id.
#include <cstdint>
#include <memory>

#include "host/Variant.h"
#include "imagelist/APIItemData.h"

namespace mx::imagelist {

class APIEnumVARIANT;
class APIListImages;

class APIImageList : public host::Object, public APIItemData {
 public:
  APIImageList(std::weak_ptr<APIItemData> parent, int32_t Width, int32_t Height);
  // Creates the images collection, whose strip starts with room for initialCells images.
  void Initialize(int32_t initialCells);

  [[nodiscard]] std::shared_ptr<APIListImages> Images() const { return m_images; }
  [[nodiscard]] host::String Key() const;
  // Empty raises "Invalid Key"; a key in use raises 1963.
  void Key(host::StringView value);
  [[nodiscard]] int32_t Index() const;
  // Moves the list to another position; its key stays where it is in the key table.
  void Index(int32_t value);
  [[nodiscard]] int32_t Width() const { return m_width; }
  [[nodiscard]] int32_t Height() const { return m_height; }
  [[nodiscard]] int32_t MaxImages() const { return MaxImagesFor(m_width, m_height); }
  // An enumerator over this list's images.
  [[nodiscard]] std::shared_ptr<APIEnumVARIANT> xcom_IEnum() const;

  // Asked by the images collection: the cell size and budget from here, the rest from above.
  [[nodiscard]] int32_t ClassDataLong(ENUM_DATA_NAMES DataName, uint32_t oID) override;
  void ClassDataLong(ENUM_DATA_NAMES DataName, uint32_t oID, int32_t value) override;
  [[nodiscard]] host::String ClassDataString(ENUM_DATA_NAMES DataName, uint32_t oID) override;
  void ClassDataString(ENUM_DATA_NAMES DataName, uint32_t oID, host::StringView value) override;
  [[nodiscard]] host::Variant ClassDataObject(ENUM_DATA_NAMES DataName, uint32_t oID) override;

  [[nodiscard]] host::String TypeName() const override { return u"APIImageList"; }
  host::Variant Invoke(host::StringView name, host::CallKind kind, std::span<host::Variant> args) override;
  [[nodiscard]] std::vector<host::Variant> EnumerateItems() override;

 private:
  [[nodiscard]] std::shared_ptr<APIItemData> Parent() const;

  std::weak_ptr<APIItemData> m_parent;
  int32_t m_width;
  int32_t m_height;
  std::shared_ptr<APIListImages> m_images;
};

}  // namespace mx::imagelist
