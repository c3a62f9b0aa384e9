#include "controls/GifFrames.h"

#include <gif_lib.h>

#include <algorithm>
#include <cstring>
#include <optional>

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

GraphicsControlBlock NoControlBlock() {
  GraphicsControlBlock gcb{};
  gcb.DisposalMode = DISPOSAL_UNSPECIFIED;
  gcb.TransparentColor = NO_TRANSPARENT_COLOR;
  return gcb;
}

// The looping extension: an application block "NETSCAPE2.0" (or the older "ANIMEXTS1.0") whose
// first sub-block is 1, count low, count high. giflib's blocks start with their length byte.
bool IsLoopingApplication(const GifByteType* block) {
  return block[0] == 11 && (std::memcmp(block + 1, "NETSCAPE2.0", 11) == 0 ||
                            std::memcmp(block + 1, "ANIMEXTS1.0", 11) == 0);
}

// Reads one extension to its end, keeping what the frames need: the control block that applies
// to the next frame, and the first looping count of the file. False when the data is damaged.
bool ReadExtension(GifFileType* gif, GraphicsControlBlock& next, int32_t& repeat) {
  int code = 0;
  GifByteType* block = nullptr;
  if (DGifGetExtension(gif, &code, &block) == GIF_ERROR) return false;
  if (block && code == GRAPHICS_EXT_FUNC_CODE) DGifExtensionToGCB(block[0], block + 1, &next);
  bool looping = block && code == APPLICATION_EXT_FUNC_CODE && IsLoopingApplication(block);
  while (block) {
    if (DGifGetExtensionNext(gif, &block) == GIF_ERROR) return false;
    if (looping && block) {
      if (repeat < 0 && block[0] >= 3 && block[1] == 1) repeat = block[2] | (block[3] << 8);
      looping = false;
    }
  }
  return true;
}

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

// One picture row as 32-bit words holding B, G, R, A in memory order. Bottom-up: the first row
// in memory is the last picture row. GIF colours are either fully opaque or fully transparent,
// so straight and premultiplied agree.
uint32_t* PictureRow(const image::API32bppDIB& picture, int32_t y) {
  return reinterpret_cast<uint32_t*>(picture.BitsPointer() + static_cast<size_t>(picture.Height() - 1 - y) * picture.scanWidth());
}

void FillRect(const image::API32bppDIB& picture, const Clip& clip, uint32_t value) {
  for (int32_t y = clip.y0; y < clip.y1; ++y) std::fill(PictureRow(picture, y) + clip.x0, PictureRow(picture, y) + clip.x1, value);
}

// Reads the current frame's rows in the file's order (an interlaced frame comes in four passes)
// and draws the visible part of each over `picture`. Only one row is held, so a frame claiming
// far more than the screen costs the time of its data and no memory. An index past the colour
// table is how some encoders write "nothing here": left alone, like the transparent one. False
// when the data runs out or is damaged.
bool DrawFrameRows(GifFileType* gif, const image::API32bppDIB& picture, const Clip& clip, const ColorMapObject* map,
                   int32_t transparent) {
  static constexpr int kPassStart[] = {0, 4, 2, 1};
  static constexpr int kPassStep[] = {8, 8, 4, 2};
  const GifImageDesc& d = gif->Image;
  std::vector<GifPixelType> row(static_cast<size_t>(d.Width));
  const int passes = d.Interlace ? 4 : 1;
  for (int pass = 0; pass < passes; ++pass) {
    const int step = d.Interlace ? kPassStep[pass] : 1;
    for (int r = d.Interlace ? kPassStart[pass] : 0; r < d.Height; r += step) {
      if (DGifGetLine(gif, row.data(), d.Width) == GIF_ERROR) return false;
      const int64_t y = static_cast<int64_t>(d.Top) + r;
      if (!map || y < clip.y0 || y >= clip.y1) continue;
      uint32_t* dst = PictureRow(picture, static_cast<int32_t>(y));
      for (int32_t x = clip.x0; x < clip.x1; ++x) {
        const int index = row[static_cast<size_t>(x - d.Left)];
        if (index != transparent && index < map->ColorCount) dst[x] = Opaque(map->Colors[index]);
      }
    }
  }
  return true;
}

void SetAlphaKind(image::API32bppDIB& picture) {
  const auto* p = reinterpret_cast<const uint32_t*>(picture.BitsPointer());
  const bool anyClear = std::any_of(p, p + static_cast<size_t>(picture.Width()) * picture.Height(),
                                    [](uint32_t v) { return (v >> 24) == 0; });
  picture.SetImageType(image::imgGIF);
  picture.Alpha(anyClear ? image::AlphaSimple : image::AlphaNone);
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
  const int32_t w = gif->SWidth;
  const int32_t h = gif->SHeight;
  const int64_t screen = static_cast<int64_t>(w) * h;
  if (w <= 0 || h <= 0 || screen > kMaxPixels) return false;

  std::vector<GifFrame> frames;
  int32_t repeat = -1;
  GraphicsControlBlock control = NoControlBlock();
  // What the next frame is drawn over: the picture `base` (none: all transparent) with `cleared`
  // made transparent. Disposal "previous" leaves both as they were before the frame.
  std::shared_ptr<image::API32bppDIB> base;
  std::optional<Clip> cleared;
  // Records are read until the trailer. A file cut short or damaged after some whole frames plays
  // those frames, as a viewer does with a partly read file; the frame being read when the data
  // ran out is dropped.
  for (bool reading = true; reading;) {
    GifRecordType type = UNDEFINED_RECORD_TYPE;
    if (DGifGetRecordType(gif.get(), &type) == GIF_ERROR) break;
    if (type == EXTENSION_RECORD_TYPE) {
      reading = ReadExtension(gif.get(), control, repeat);
      continue;
    }
    if (type != IMAGE_DESC_RECORD_TYPE || DGifGetImageDesc(gif.get()) == GIF_ERROR) break;
    const GifImageDesc& d = gif->Image;
    if (d.Width <= 0 || d.Height <= 0) break;
    // Every frame keeps a picture of the whole screen.
    if (screen * static_cast<int64_t>(frames.size() + 1) > kMaxPixels) return false;

    auto picture = std::make_shared<image::API32bppDIB>();
    if (!picture->InitializeDIB(w, h)) return false;
    if (base) std::memcpy(picture->BitsPointer(), base->BitsPointer(), static_cast<size_t>(screen) * 4);
    if (cleared) FillRect(*picture, *cleared, 0);

    GifFrame f;
    f.left = d.Left;
    f.top = d.Top;
    f.width = d.Width;
    f.height = d.Height;
    f.delayCs = control.DelayTime;
    f.disposal = control.DisposalMode >= 0 && control.DisposalMode <= 3 ? control.DisposalMode : 0;
    f.transparent = control.TransparentColor;
    control = NoControlBlock();
    const Clip clip = ClipToScreen(d, w, h);
    const ColorMapObject* map = d.ColorMap ? d.ColorMap : gif->SColorMap;
    if (map && map->ColorCount <= 0) map = nullptr;
    if (!DrawFrameRows(gif.get(), *picture, clip, map, f.transparent)) break;
    SetAlphaKind(*picture);

    if (f.disposal != DISPOSE_PREVIOUS) {
      base = picture;
      cleared = f.disposal == DISPOSE_BACKGROUND ? std::optional<Clip>(clip) : std::nullopt;
    }
    f.picture = std::move(picture);
    frames.push_back(std::move(f));
  }
  if (frames.empty()) return false;
  m_width = w;
  m_height = h;
  m_filePlays = repeat < 0 ? 1 : repeat == 0 ? 0 : repeat + 1;
  m_frames = std::move(frames);
  return true;
}

}  // namespace mx::controls
