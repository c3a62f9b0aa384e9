// The form-file text reader with its companion file. The input is split at the first line
// "--frx--": the text before it, the companion's bytes after it (none without the line). A form
// that reads must write out and read back.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string_view>

#include "host/FormFile.h"
#include "host/FormFileReader.h"
#include "host/FormFileWriter.h"
#include "host/Frx.h"

using namespace mx::host;

namespace {

constexpr std::string_view kSplit = "\n--frx--\n";

bool Parse(std::span<const uint8_t> text, const FrxReader& frx, FormFile& form) {
  FormFileError error;
  return ParseFormText(text, [&](StringView) { return &frx; }, form, error);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const uint8_t* end = data + size;
  const uint8_t* split = std::search(data, end, kSplit.begin(), kSplit.end());
  std::span<const uint8_t> text(data, split);
  ByteArray companion;
  if (split != end) companion.assign(split + kSplit.size(), end);

  FrxReader frx(companion);
  // The companion reader on its own, at the offsets a damaged reference could name.
  for (uint32_t offset : {0u, 4u, 8u, 12u}) {
    FrxEntry entry;
    (void)frx.ReadEntry(offset, entry);
  }

  FormFile form;
  if (!Parse(text, frx, form)) return 0;
  FormFileBytes written = WriteFormText(form, u"fuzz.frx");
  FrxReader writtenFrx(written.companion);
  FormFile back;
  if (!Parse(written.text, writtenFrx, back)) std::abort();
  return 0;
}
