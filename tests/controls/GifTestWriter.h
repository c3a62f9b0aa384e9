#pragma once
// Writes small animated GIFs through giflib for the tests of the frame decoder and the animated
// image: each frame with its own rectangle, colour indexes, delay, disposal and transparent index,
// and an optional looping extension.
#include <gif_lib.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <unistd.h>
#include <vector>

namespace mx::controls::testing {

struct TestFrame {
  int left = 0, top = 0, width = 0, height = 0;
  std::vector<uint8_t> indexes;  // width x height, top-down
  int delayCs = 0;
  int disposal = 0;
  int transparent = -1;
  bool interlaced = false;  // rows written in the four passes of an interlaced image
};

struct TestGif {
  int width = 0, height = 0;
  std::vector<GifColorType> palette;  // a power of two in size
  int repeat = -1;                    // the looping extension's count; -1 for none
  std::vector<TestFrame> frames;
};

// A frame of one colour index.
inline TestFrame SolidFrame(int left, int top, int width, int height, uint8_t index, int delayCs, int disposal,
                            int transparent = -1) {
  TestFrame f{left, top, width, height, std::vector<uint8_t>(static_cast<size_t>(width) * height, index), delayCs,
              disposal, transparent};
  return f;
}

namespace detail {
inline int WriteToVector(GifFileType* gif, const GifByteType* bytes, int count) {
  auto* out = static_cast<std::vector<uint8_t>*>(gif->UserData);
  out->insert(out->end(), bytes, bytes + count);
  return count;
}
}  // namespace detail

inline std::vector<uint8_t> EncodeGif(const TestGif& g) {
  std::vector<uint8_t> out;
  int error = 0;
  GifFileType* gif = EGifOpen(&out, detail::WriteToVector, &error);
  if (!gif) return {};
  EGifSetGifVersion(gif, true);
  ColorMapObject* map = GifMakeMapObject(static_cast<int>(g.palette.size()), g.palette.data());
  EGifPutScreenDesc(gif, g.width, g.height, 8, 0, map);
  if (g.repeat >= 0) {
    const uint8_t loop[3] = {1, static_cast<uint8_t>(g.repeat & 0xFF), static_cast<uint8_t>(g.repeat >> 8)};
    EGifPutExtensionLeader(gif, APPLICATION_EXT_FUNC_CODE);
    EGifPutExtensionBlock(gif, 11, "NETSCAPE2.0");
    EGifPutExtensionBlock(gif, 3, loop);
    EGifPutExtensionTrailer(gif);
  }
  for (const TestFrame& f : g.frames) {
    GraphicsControlBlock gcb{};
    gcb.DisposalMode = f.disposal;
    gcb.DelayTime = f.delayCs;
    gcb.TransparentColor = f.transparent;
    GifByteType ext[4];
    const size_t n = EGifGCBToExtension(&gcb, ext);
    EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(n), ext);
    EGifPutImageDesc(gif, f.left, f.top, f.width, f.height, f.interlaced, nullptr);
    std::vector<int> rows;
    if (f.interlaced) {
      for (auto [start, step] : {std::pair{0, 8}, std::pair{4, 8}, std::pair{2, 4}, std::pair{1, 2}})
        for (int y = start; y < f.height; y += step) rows.push_back(y);
    } else {
      for (int y = 0; y < f.height; ++y) rows.push_back(y);
    }
    for (int y : rows)
      EGifPutLine(gif, const_cast<GifPixelType*>(f.indexes.data() + static_cast<size_t>(y) * f.width), f.width);
  }
  EGifCloseFile(gif, &error);
  GifFreeMapObject(map);
  return out;
}

// A file in the temporary folder, removed with the object.
class TempFile {
 public:
  explicit TempFile(const std::string& name, const std::vector<uint8_t>& bytes)
      : m_path(std::filesystem::temp_directory_path() /
               ("mx_anim_" + std::to_string(::getpid()) + "_" + name)) {
    std::ofstream(m_path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()),
                                                  static_cast<std::streamsize>(bytes.size()));
  }
  ~TempFile() {
    std::error_code ec;
    std::filesystem::remove(m_path, ec);
  }
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;
  [[nodiscard]] std::string path() const { return m_path.string(); }

 private:
  std::filesystem::path m_path;
};

}  // namespace mx::controls::testing
