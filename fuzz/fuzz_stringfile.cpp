// MX::LoadStringFromFile over a file holding the input, in every encoding it can be asked for.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/String.h"
#include "utility/MX.h"

namespace {

const std::string& TempPath() {
  static const std::string path = [] {
    char name[] = "/tmp/mx_fuzz_stringfile_XXXXXX";
    int fd = mkstemp(name);
    if (fd < 0) std::abort();
    close(fd);
    return std::string(name);
  }();
  return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string& path = TempPath();
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) std::abort();
  if (size && std::fwrite(data, 1, size, f) != size) std::abort();
  std::fclose(f);

  mx::utility::MX mx;
  const mx::host::String file = mx::host::FromUtf8(path);
  for (int encoding = mx::utility::EncUnknown; encoding <= mx::utility::EncUnicodeBigEndian; ++encoding)
    (void)mx.LoadStringFromFile(file, static_cast<mx::utility::ENUM_ENCODIND_TYPE>(encoding));
  return 0;
}
