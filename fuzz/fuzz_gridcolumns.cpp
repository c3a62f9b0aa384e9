// The grid's column order and column width files: the input is written to a file and read as
// both kinds into a grid of six columns. Whatever the file holds, the order must stay an order
// of every column (a damaged file is refused as a whole), and what loads must save and load back.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "grid/GridData.h"
#include "host/String.h"

namespace {

std::string TempPath(const char* kind) {
  std::string name = std::string("/tmp/mx_fuzz_gridcolumns_") + kind + "_XXXXXX";
  int fd = mkstemp(name.data());
  if (fd < 0) std::abort();
  close(fd);
  return name;
}

const std::string& InputPath() {
  static const std::string path = TempPath("in");
  return path;
}
const std::string& SavedPath() {
  static const std::string path = TempPath("saved");
  return path;
}

void CheckIsOrder(const mx::grid::GridData& g) {
  std::vector<bool> seen(static_cast<size_t>(g.Cols()), false);
  for (int32_t display = 0; display < g.Cols(); ++display) {
    const int32_t storage = g.StorageCol(display);
    if (storage < 0 || storage >= g.Cols() || seen[static_cast<size_t>(storage)]) std::abort();
    seen[static_cast<size_t>(storage)] = true;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FILE* f = std::fopen(InputPath().c_str(), "wb");
  if (!f) std::abort();
  if (size && std::fwrite(data, 1, size, f) != size) std::abort();
  std::fclose(f);

  mx::grid::GridData g;
  for (int c = 0; c < 6; ++c) g.AddColumn(u"Column");
  const mx::host::String in = mx::host::FromUtf8(InputPath()), saved = mx::host::FromUtf8(SavedPath());
  mx::host::String error;
  if (g.LoadColumnOrderFromFile(in, error)) {
    CheckIsOrder(g);
    // An order that loaded is written out and must read back to the same order.
    std::vector<int32_t> order;
    for (int32_t d = 0; d < g.Cols(); ++d) order.push_back(g.StorageCol(d));
    mx::grid::GridData back;
    for (int c = 0; c < 6; ++c) back.AddColumn(u"Column");
    if (!g.SaveColumnOrderToFile(saved, error) || !back.LoadColumnOrderFromFile(saved, error)) std::abort();
    for (int32_t d = 0; d < back.Cols(); ++d)
      if (back.StorageCol(d) != order[static_cast<size_t>(d)]) std::abort();
  }
  CheckIsOrder(g);
  (void)g.LoadColumnWidthsFromFile(in, error);
  return 0;
}
