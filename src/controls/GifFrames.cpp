#include "controls/GifFrames.h"

#include <gif_lib.h>

#include <algorithm>
#include <cstring>

namespace mx::controls {

namespace {

struct MemoryReader {
  const uint8_t* data;
  size_t size;
  size_t pos;
};

int readFromMemory(GifFileType* gif, GifByteType* buffer, int count) {
  auto* r = static_cast<MemoryReader*>(gif->UserData);
  if (count <= 0) return 0;
  const size_t n = std::min(static_cast<size_t>(count), r->size - r->pos);
  // Empty input has no data pointer at all, and memcpy may not be given a null one.
  if (n) std::memcpy(buffer, r->data + r->pos, n);
  r->pos += n;
  return static_cast<int>(n);
}

struct GifCloser {
  void operator()(GifFileType* gif) const {
    int error = 0;
    DGifCloseFile(gif, &error);
  }
};

// The looping extension: an application block "NETSCAPE2.0" (or the older "ANIMEXTS1.0")
// followed by a sub-block 1, count low, count high. Returns the count, or -1 when absent.
int32_t FindRepeatCount(const ExtensionBlock* blocks, int count) {
  for (int i = 0; i + 1 < count; ++i) {
    const ExtensionBlock& app = blocks[i];
    if (app.Function != APPLICATION_EXT_FUNC_CODE || app.ByteCount != 11) continue;
    if (std::memcmp(app.Bytes, "NETSCAPE2.0", 11) != 0 && std::memcmp(app.Bytes, "ANIMEXTS1.0", 11) != 0) continue;
    const ExtensionBlock& sub = blocks[i + 1];
    if (sub.Function != CONTINUE_EXT_FUNC_CODE || sub.ByteCount < 3 || sub.Bytes[0] != 1) continue;
    return sub.Bytes[1] | (sub.Bytes[2] << 8);
  }
  return -1;
}

// The canvas is top-down, one 32-bit word per pixel holding B, G, R, A in memory order. GIF
// colours are either fully opaque or fully transparent, so straight and premultiplied agree.
using Canvas = std::vector<uint32_t>;

uint32_t Opaque(const GifColorType& c) {
  return 0xFF000000u | (static_cast<uint32_t>(c.Red) << 16) | (static_cast<uint32_t>(c.Green) << 8) | c.Blue;
}

struct Clip {
  int32_t x0, y0, x1, y1;  // the frame rectangle within the screen, half-open
};

Clip ClipToScreen(const GifImageDesc& d, int32_t w, int32_t h) {
  const int64_t x1 = std::min<int64_t>(static_cast<int64_t>(d.Left) + d.Width, w);
  const int64_t y1 = std::min<int64_t>(static_cast<int64_t>(d.Top) + d.Height, h);
  const int32_t x0 = std::clamp<int32_t>(d.Left, 0, w);
  const int32_t y0 = std::clamp<int32_t>(d.Top, 0, h);
  return Clip{x0, y0, std::max<int32_t>(x0, static_cast<int32_t>(x1)), std::max<int32_t>(y0, static_cast<int32_t>(y1))};
}

void DrawFrame(Canvas& canvas, int32_t screenWidth, const SavedImage& image, const ColorMapObject& map,
               int32_t transparent, const Clip& clip) {
  const GifImageDesc& d = image.ImageDesc;
  for (int32_t y = clip.y0; y < clip.y1; ++y) {
    const GifByteType* src = image.RasterBits + static_cast<size_t>(y - d.Top) * d.Width + (clip.x0 - d.Left);
    uint32_t* dst = canvas.data() + static_cast<size_t>(y) * screenWidth + clip.x0;
    for (int32_t x = clip.x0; x < clip.x1; ++x, ++src, ++dst) {
      const int index = *src;
      // An index past the table is how some encoders write "nothing here": left alone as well.
      if (index == transparent || index >= map.ColorCount) continue;
      *dst = Opaque(map.Colors[index]);
    }
  }
}

void FillRect(Canvas& canvas, int32_t screenWidth, const Clip& clip, uint32_t value) {
  for (int32_t y = clip.y0; y < clip.y1; ++y)
    std::fill_n(canvas.data() + static_cast<size_t>(y) * screenWidth + clip.x0, clip.x1 - clip.x0, value);
}

void CopyRect(Canvas& to, const Canvas& from, int32_t screenWidth, const Clip& clip) {
  for (int32_t y = clip.y0; y < clip.y1; ++y) {
    const size_t at = static_cast<size_t>(y) * screenWidth + clip.x0;
    std::copy_n(from.data() + at, clip.x1 - clip.x0, to.data() + at);
  }
}

std::shared_ptr<image::API32bppDIB> ToPicture(const Canvas& canvas, int32_t w, int32_t h) {
  auto dib = std::make_shared<image::API32bppDIB>();
  if (!dib->InitializeDIB(w, h)) return nullptr;
  bool anyClear = false;
  // Bottom-up: the first row in memory is the last picture row.
  for (int32_t y = 0; y < h; ++y) {
    const uint32_t* src = canvas.data() + static_cast<size_t>(y) * w;
    uint8_t* dst = dib->BitsPointer() + static_cast<size_t>(h - 1 - y) * w * 4;
    std::memcpy(dst, src, static_cast<size_t>(w) * 4);
    if (!anyClear) anyClear = std::any_of(src, src + w, [](uint32_t p) { return (p >> 24) == 0; });
  }
  dib->SetImageType(image::imgGIF);
  dib->Alpha(anyClear ? image::AlphaSimple : image::AlphaNone);
  return dib;
}

}  // namespace

void GifFrames::Clear() {
  m_width = 0;
  m_height = 0;
  m_filePlays = 1;
  m_frames.clear();
}

int32_t GifFrames::DelayMs(int32_t index) const {
  if (index < 0 || index >= Count()) return kDefaultDelayMs;
  const int32_t cs = m_frames[static_cast<size_t>(index)].delayCs;
  return cs < kMinimumDelayCs ? kDefaultDelayMs : cs * 10;
}

bool GifFrames::Decode(std::span<const uint8_t> data) {
  Clear();
  MemoryReader reader{data.data(), data.size(), 0};
  int error = 0;
  std::unique_ptr<GifFileType, GifCloser> gif(DGifOpen(&reader, readFromMemory, &error));
  if (!gif) return false;
  // A file cut short after some whole frames still slurps those frames before the error: play
  // what arrived, as a viewer does with a partly read file. The frame being read when the data
  // ran out is dropped, its raster only partly written.
  const bool complete = DGifSlurp(gif.get()) == GIF_OK;
  if (gif->ImageCount < 1 || !gif->SavedImages) return false;
  const int imageCount = complete ? gif->ImageCount : gif->ImageCount - 1;
  const int32_t w = gif->SWidth;
  const int32_t h = gif->SHeight;
  if (w <= 0 || h <= 0) return false;
  int32_t usable = 0;
  for (int i = 0; i < imageCount; ++i) {
    if (gif->SavedImages[i].RasterBits) usable = i + 1;
    else break;
  }
  if (usable == 0) return false;
  if (static_cast<int64_t>(w) * h * usable > kMaxPixels) return false;

  int32_t repeat = FindRepeatCount(gif->ExtensionBlocks, gif->ExtensionBlockCount);
  for (int i = 0; i < usable && repeat < 0; ++i)
    repeat = FindRepeatCount(gif->SavedImages[i].ExtensionBlocks, gif->SavedImages[i].ExtensionBlockCount);
  m_filePlays = repeat < 0 ? 1 : repeat == 0 ? 0 : repeat + 1;

  Canvas canvas(static_cast<size_t>(w) * h, 0);
  Canvas saved;
  std::vector<GifFrame> frames;
  frames.reserve(static_cast<size_t>(usable));
  for (int i = 0; i < usable; ++i) {
    const SavedImage& image = gif->SavedImages[i];
    GraphicsControlBlock gcb{};
    gcb.DisposalMode = DISPOSAL_UNSPECIFIED;
    gcb.TransparentColor = NO_TRANSPARENT_COLOR;
    DGifSavedExtensionToGCB(gif.get(), i, &gcb);

    GifFrame f;
    f.left = image.ImageDesc.Left;
    f.top = image.ImageDesc.Top;
    f.width = image.ImageDesc.Width;
    f.height = image.ImageDesc.Height;
    f.delayCs = gcb.DelayTime;
    f.disposal = gcb.DisposalMode >= 0 && gcb.DisposalMode <= 3 ? gcb.DisposalMode : 0;
    f.transparent = gcb.TransparentColor;
    const Clip clip = ClipToScreen(image.ImageDesc, w, h);

    // What "previous" restores is the canvas as it was before this frame was drawn.
    if (f.disposal == DISPOSE_PREVIOUS) saved = canvas;
    const ColorMapObject* map = image.ImageDesc.ColorMap ? image.ImageDesc.ColorMap : gif->SColorMap;
    if (map && map->ColorCount > 0) DrawFrame(canvas, w, image, *map, f.transparent, clip);
    f.picture = ToPicture(canvas, w, h);
    if (!f.picture) return false;

    if (f.disposal == DISPOSE_BACKGROUND) FillRect(canvas, w, clip, 0);
    else if (f.disposal == DISPOSE_PREVIOUS) CopyRect(canvas, saved, w, clip);
    frames.push_back(std::move(f));
  }
  m_width = w;
  m_height = h;
  m_frames = std::move(frames);
  return true;
}

}  // namespace mx::controls
