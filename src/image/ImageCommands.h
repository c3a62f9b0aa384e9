#pragma once
// The work behind the mximage program, callable from tests:
//
//   info FILE                        width=W height=H type=T alpha=A
//   raw FILE OUT                     the surface memory as it stands: premultiplied BGRA, bottom
//                                    row first, Width x Height x 4 bytes
//   convert IN OUT [--adaptive]      saves by OUT's extension: .png .bmp .jpg .jpeg .gif
//   bench-decode FILE N              decodes N times, prints ms_per_decode=X
//
// Exit codes: 0 done, 1 a file that does not load or cannot be written (message on err),
// 2 bad arguments (usage on err).
#include <iosfwd>
#include <string>
#include <vector>

namespace mx::image {

class API32bppDIB;

// Options of convert that change the picture between loading and saving.
struct ConvertSettings {
  bool adaptivePalette = false;  // GIF: reduce with the octree instead of the web palette
  int quality = 90;              // JPEG
  std::vector<std::string> transformArgs;  // options not known here, for the transform step
};

[[nodiscard]] int RunImageCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

// Saves by the file's extension; false for an unknown extension or a failed write.
bool SaveByExtension(const API32bppDIB& dib, const std::string& path, const ConvertSettings& settings);

}  // namespace mx::image
