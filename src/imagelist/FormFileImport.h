#pragma once
// Import of the image lists that the host's common controls keep inside a form (.frm, .ctl) and
// its companion file. The form is read by the host's form-file reader; in each block of class
// ComctlLib.ImageList or MSComctlLib.ImageList this walks the lines of its Images property:
//
//   NumListImages = n          the image count
//   Picture = "x.frx":0A3C     one image; its bytes are in the companion file: a byte count at
//                              offset + 24, then that many bytes of a picture file
//   Key = "..." / Object.Tag   the key and tag of the image in progress
//
// Each list becomes a new list keyed "<height>x<width>", with "(n)" added until the key is free.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace mx::imagelist {

class APIImageList;
class APIImageLists;

struct FormImportResult {
  bool isForm = false;  // false: not a form file, or one the reader refused
  std::string error;    // why, when isForm is false
  std::vector<std::shared_ptr<APIImageList>> lists;
  int32_t imagesSkipped = 0;  // pictures that could not be read, or keys already taken
};

// Adds every image list found in the form file to lists. Never throws for a bad file; errors of
// the collection (1973 for a list over the budget) are counted as skipped lists' images.
[[nodiscard]] FormImportResult ImportImageListsFromForm(APIImageLists& lists, const std::string& formPath);

}  // namespace mx::imagelist
