// The animated image's frame reader: giflib's record walk, each frame's rows drawn over the
// previous frame's disposal. A file that decodes must give whole-screen pictures only.
#include <cstdint>
#include <cstdlib>
#include <span>

#include "controls/GifFrames.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  mx::controls::GifFrames frames;
  if (!frames.Decode(std::span<const uint8_t>(data, size))) {
    if (frames.Count() != 0) std::abort();
    return 0;
  }
  if (frames.Count() < 1) std::abort();
  for (int32_t i = 0; i < frames.Count(); ++i) {
    const auto& picture = frames.Frame(i).picture;
    if (!picture || picture->Width() != frames.Width() || picture->Height() != frames.Height()) std::abort();
  }
  return 0;
}
