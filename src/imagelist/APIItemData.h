#pragma once
// How the image-list classes talk to their parents. A child stores nothing of its own key,
// index or tag: it asks its parent each time, naming itself by its object id, which stays the
// same while keys and positions change.
//
//   APIImageLists ─┬─ APIImageList ── APIListImages ─┬─ APIListImage
//                  └─ APIImageList ...               └─ APIListImage ...
//
// Children hold their parent weakly: the collections own the children, never the reverse.
#include <cstdint>

#include "host/String.h"
#include "host/Variant.h"

namespace mx::imagelist {

enum ENUM_DATA_NAMES : int32_t {
  DataKey = 0,
  DataIndex = 1,
  DataWidth = 2,
  DataHeight = 3,
  DataTag = 4,
  DataGDIToken = 5,
  DataMaxImageCount = 6,
  DataReset = 7,
  DataNext = 8,
  DataItem = 9,
};

class APIItemData {
 public:
  virtual ~APIItemData() = default;
  [[nodiscard]] virtual int32_t ClassDataLong(ENUM_DATA_NAMES DataName, uint32_t oID) = 0;
  virtual void ClassDataLong(ENUM_DATA_NAMES DataName, uint32_t oID, int32_t value) = 0;
  [[nodiscard]] virtual host::String ClassDataString(ENUM_DATA_NAMES DataName, uint32_t oID) = 0;
  virtual void ClassDataString(ENUM_DATA_NAMES DataName, uint32_t oID, host::StringView value) = 0;
  [[nodiscard]] virtual host::Variant ClassDataObject(ENUM_DATA_NAMES DataName, uint32_t oID) = 0;
};

// The numbered errors of the collections.
enum : int32_t {
  kErrInvalidKeyOrIndex = 1962,
  kErrDuplicatedKey = 1963,
  kErrMaxImagesExceeded = 1973,
  kErrInvalidVersion = 1974,
  kErrImportFailed = 1975,
  kErrExportFailed = 1976,
  kErrLowResources = 1977,
};

inline constexpr char16_t kMsgInvalidKeyOrIndex[] = u"Invalid Key or Index";
inline constexpr char16_t kMsgDuplicatedKey[] = u"Duplicated Key. Key already exists in this collection";
inline constexpr char16_t kMsgMaxImages[] = u"Maximum number of images have been exceeded. Create new image list";
inline constexpr char16_t kMsgInvalidVersion[] = u"Invalid ImageList Version. Update your ImageList classes/control";
inline constexpr char16_t kMsgImportFailed[] = u"Failed to Import external image list";
inline constexpr char16_t kMsgExportFailed[] =
    u"Error exporting image list. Ensure enough disk space and valid write-permissions";
inline constexpr char16_t kMsgLowResources[] = u"Low system resource preventing appending additional images";

// The budget of one list: 1,024,000 pixels across all its cells.
[[nodiscard]] constexpr int32_t MaxImagesFor(int32_t width, int32_t height) {
  if (width < 1 || height < 1) return 0;
  return static_cast<int32_t>(1024000LL / (static_cast<int64_t>(width) * height));
}

}  // namespace mx::imagelist
