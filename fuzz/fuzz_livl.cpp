// The image-list blob import: a list read from untrusted bytes, its strip decoded (an import
// may delay that), then exported and imported again.
#include <cstdint>
#include <span>
#include <vector>

#include "host/Err.h"
#include "imagelist/APIImageList.h"
#include "imagelist/APIImageLists.h"
#include "imagelist/APIListImages.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  auto lists = mx::imagelist::APIImageLists::Create();
  try {
    mx::host::String key;
    auto list = lists->ImportImageList(std::span<const uint8_t>(data, size), key);
    if (!list) return 0;
    (void)list->Images()->Sheet();
    std::vector<uint8_t> blob;
    lists->ExportImageList(mx::host::Variant(key), blob);
    mx::host::String again;
    (void)lists->ImportImageList(blob, again);
  } catch (const mx::host::RuntimeError&) {
    // Numbered errors are how the collection refuses a damaged blob.
  }
  return 0;
}
