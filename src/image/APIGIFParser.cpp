#include "image/APIGIFParser.h"

#include <gif_lib.h>

#include <algorithm>
#include <cstdio>
#include <cctype>
#include <cstring>
#include <memory>
#include <new>

#include "image/API32bppDIB.h"
#include "image/DecodeLimits.h"
#include "image/GifLzwEncoder.h"
#include "image/GifPalette.h"

namespace mx::image {

namespace {

constexpr uint8_t kExtensionIntroducer = 0x21;
constexpr uint8_t kGraphicControlLabel = 0xF9;
constexpr uint8_t kImageSeparator = 0x2C;
constexpr uint8_t kTrailer = 0x3B;

uint16_t le16(const uint8_t* p) { return static_cast<uint16_t>(p[0] | (p[1] << 8)); }

void putLe16(std::vector<uint8_t>& out, int32_t v) {
  out.push_back(static_cast<uint8_t>(v & 0xFF));
  out.push_back(static_cast<uint8_t>((v >> 8) & 0xFF));
}

// Position just past the empty sub-block that ends a chain starting at pos, or 0 when the data
// ends first (0 can never be a valid answer: a chain starts after a header).
size_t skipSubBlocks(const uint8_t* p, size_t size, size_t pos) {
  while (pos < size) {
    const size_t len = p[pos++];
    if (len == 0) return pos;
    pos += len;
  }
  return 0;
}

// giflib reads through this; the one-frame copy lives in memory.
struct MemoryReader {
  const uint8_t* data;
  size_t size;
  size_t pos;
};

int readFromMemory(GifFileType* gif, GifByteType* buffer, int count) {
  auto* r = static_cast<MemoryReader*>(gif->UserData);
  if (count <= 0) return 0;
  const size_t n = std::min(static_cast<size_t>(count), r->size - r->pos);
  std::memcpy(buffer, r->data + r->pos, n);
  r->pos += n;
  return static_cast<int>(n);
}

struct GifCloser {
  void operator()(GifFileType* gif) const {
    int error = 0;
    DGifCloseFile(gif, &error);
  }
};

}  // namespace

// ---------------------------------------------------------------------------------------------
// Reading
// ---------------------------------------------------------------------------------------------

bool APIGIFParser::LoadStream(const std::vector<uint8_t>& inStream, API32bppDIB& outDIB, int32_t streamStart,
                              int32_t streamLength) {
  outDIB.DestroyDIB();
  if (streamStart < 0 || static_cast<size_t>(streamStart) >= inStream.size()) return false;
  size_t available = inStream.size() - static_cast<size_t>(streamStart);
  size_t length = streamLength <= 0 ? available : std::min(available, static_cast<size_t>(streamLength));
  try {
    if (buildFrame(inStream.data() + streamStart, length) && decodeFrame(outDIB)) {
      outDIB.SetImageType(imgGIF);
      return true;
    }
  } catch (...) {
    // Allocation failures and the like end the load like any other bad input.
  }
  outDIB.DestroyDIB();
  return false;
}

bool APIGIFParser::buildFrame(const uint8_t* p, size_t size) {
  m_frame.clear();
  m_original.clear();
  m_transparent = false;
  m_transparentIndex = 0;
  if (size < 13) return false;

  char magic[6];
  for (int i = 0; i < 6; ++i) magic[i] = static_cast<char>(std::tolower(p[i]));
  if (std::memcmp(magic, "gif89a", 6) != 0 && std::memcmp(magic, "gif87a", 6) != 0) return false;

  size_t colors = 0;
  size_t headerLength = 13;
  if (p[10] & 0x80) {
    colors = size_t{1} << ((p[10] & 7) + 1);
    headerLength += 3 * colors;
  }
  if (headerLength > size) return false;
  const uint8_t* table = colors ? p + 13 : nullptr;

  // Walk the blocks up to the first image descriptor. Only the graphic control extension
  // matters; application (looping) and comment blocks are passed over.
  size_t pos = headerLength;
  size_t controlAt = 0;
  bool haveControl = false;
  for (;;) {
    if (pos >= size) return false;
    const uint8_t b = p[pos];
    if (b == 0) {
      ++pos;
      continue;
    }
    if (b == kImageSeparator) break;
    if (b != kExtensionIntroducer || pos + 2 > size) return false;
    if (p[pos + 1] == kGraphicControlLabel) {
      if (pos + 7 > size || p[pos + 2] < 4) return false;
      haveControl = true;
      controlAt = pos;
      m_transparent = (p[pos + 3] & 1) != 0;
      m_transparentIndex = p[pos + 6];
    }
    pos = skipSubBlocks(p, size, pos + 2);
    if (pos == 0) return false;
  }

  // The image descriptor: separator, left, top, width, height, flags.
  const size_t frameAt = pos;
  if (frameAt + 11 > size) return false;
  const int32_t frameWidth = le16(p + frameAt + 5);
  const int32_t frameHeight = le16(p + frameAt + 7);
  const uint8_t frameFlags = p[frameAt + 9];
  size_t dataAt = frameAt + 10;
  size_t localTableAt = 0;
  if (frameFlags & 0x80) {
    colors = size_t{1} << ((frameFlags & 7) + 1);
    localTableAt = dataAt;
    table = p + dataAt;
    dataAt += 3 * colors;
  }
  if (dataAt >= size) return false;  // the LZW minimum code size byte
  const size_t frameEnd = skipSubBlocks(p, size, dataAt + 1);
  if (frameEnd == 0) return false;
  if (frameEnd - frameAt < 3 || colors == 0) return false;
  if (frameWidth == 0 || frameHeight == 0) return false;
  // One LZW code of at least two bits yields at most 4096 pixels, so the frame's data bounds the
  // pixels it can fill; a descriptor that claims more is refused before giflib allocates rows.
  const auto lzwBytes = static_cast<int64_t>(frameEnd - dataAt);
  if (!DecodedSizeAllowed(frameWidth, frameHeight) ||
      static_cast<int64_t>(frameWidth) * frameHeight > lzwBytes * 4 * 4096)
    return false;
  m_original.assign(table, table + 3 * colors);

  // The copy: header and global table, the control block, the frame, the trailer. The screen
  // takes the frame's size and the frame moves to the corner, so the decoder sees one picture
  // exactly the size of the frame.
  m_frame.reserve(headerLength + 8 + (frameEnd - frameAt) + 1);
  m_frame.assign(p, p + headerLength);
  // The signature test above ignores case; giflib does not, so the copy carries the canonical one.
  for (int i = 0; i < 6; ++i) m_frame[static_cast<size_t>(i)] = static_cast<uint8_t>(std::toupper(p[i]));
  m_frame[6] = p[frameAt + 5];
  m_frame[7] = p[frameAt + 6];
  m_frame[8] = p[frameAt + 7];
  m_frame[9] = p[frameAt + 8];
  if (haveControl) {
    // Rewritten in its standard 8-byte form from the fields that were read.
    const uint8_t* c = p + controlAt;
    m_frame.insert(m_frame.end(), {kExtensionIntroducer, kGraphicControlLabel, 4, c[3], c[4], c[5], c[6], 0});
  }
  const size_t frameCopyAt = m_frame.size();
  m_frame.insert(m_frame.end(), p + frameAt, p + frameEnd);
  std::fill(m_frame.begin() + static_cast<std::ptrdiff_t>(frameCopyAt + 1),
            m_frame.begin() + static_cast<std::ptrdiff_t>(frameCopyAt + 5), uint8_t{0});
  m_frame.push_back(kTrailer);

  if (m_transparent) {
    // The table the frame decodes with becomes a ramp, so each decoded colour is its index.
    uint8_t* ramp = localTableAt ? m_frame.data() + frameCopyAt + (localTableAt - frameAt) : m_frame.data() + 13;
    for (size_t i = 0; i < colors; ++i) std::memset(ramp + 3 * i, static_cast<int>(i), 3);
  }
  return true;
}

bool APIGIFParser::decodeFrame(API32bppDIB& dib) {
  MemoryReader reader{m_frame.data(), m_frame.size(), 0};
  int error = 0;
  std::unique_ptr<GifFileType, GifCloser> gif(DGifOpen(&reader, readFromMemory, &error));
  if (!gif) return false;
  if (DGifSlurp(gif.get()) != GIF_OK || gif->ImageCount < 1) return false;
  const SavedImage& image = gif->SavedImages[0];
  const int32_t width = image.ImageDesc.Width;
  const int32_t height = image.ImageDesc.Height;
  if (!image.RasterBits || width <= 0 || height <= 0) return false;
  const ColorMapObject* map = image.ImageDesc.ColorMap ? image.ImageDesc.ColorMap : gif->SColorMap;
  if (!map || map->ColorCount <= 0) return false;

  if (!dib.InitializeDIB(width, height)) return false;
  const size_t originalCount = m_original.size() / 3;
  uint8_t* bits = dib.BitsPointer();
  for (int32_t y = 0; y < height; ++y) {
    // Decoded rows run from the top; the surface's first row in memory is the bottom one.
    const GifByteType* src = image.RasterBits + static_cast<size_t>(y) * static_cast<size_t>(width);
    uint8_t* dst = bits + static_cast<size_t>(height - 1 - y) * static_cast<size_t>(width) * 4;
    for (int32_t x = 0; x < width; ++x, dst += 4) {
      const int32_t decoded = src[x];
      if (m_transparent) {
        // Through the ramp: the decoded colour's red is the index into the original table.
        const int32_t index = decoded < map->ColorCount ? map->Colors[decoded].Red : decoded;
        if (index == m_transparentIndex) continue;  // stays all zeros
        if (static_cast<size_t>(index) < originalCount) {
          const uint8_t* rgb = m_original.data() + 3 * static_cast<size_t>(index);
          dst[0] = rgb[2];
          dst[1] = rgb[1];
          dst[2] = rgb[0];
        }
        dst[3] = 255;
      } else if (decoded < map->ColorCount) {
        // Alpha is settled below, as for any picture drawn without an alpha channel.
        dst[0] = map->Colors[decoded].Blue;
        dst[1] = map->Colors[decoded].Green;
        dst[2] = map->Colors[decoded].Red;
      }
    }
  }

  if (m_transparent) {
    dib.Alpha(AlphaSimple);
  } else {
    int32_t type = 0;
    const size_t bytes = static_cast<size_t>(width) * static_cast<size_t>(height) * 4;
    API32bppDIB::ValidateAlphaChannel(std::span<uint8_t>(bits, bytes), true, type);
    dib.Alpha(AlphaNone);
  }
  return true;
}

// ---------------------------------------------------------------------------------------------
// Writing
// ---------------------------------------------------------------------------------------------

bool APIGIFParser::SaveAsGIF(const API32bppDIB& surface, const host::String& FileName,
                             std::vector<uint8_t>& outBytes, bool& UseAdaptivePalette,
                             int32_t OpaquenessTolerance) {
  // The file is opened before anything else, so a path that cannot be written costs nothing.
  std::FILE* file = nullptr;
  std::string path;
  if (!FileName.empty()) {
    path = host::ToUtf8(FileName);
    file = std::fopen(path.c_str(), "wb");
    if (!file) return false;
  }

  std::vector<uint8_t> out;
  bool ok = false;
  try {
    ok = encode(surface, out, UseAdaptivePalette, OpaquenessTolerance);
  } catch (...) {
    ok = false;
  }
  m_pixels.clear();
  m_pixels.shrink_to_fit();

  if (!file) {
    if (ok) outBytes = std::move(out);
    return ok;
  }
  if (ok) ok = std::fwrite(out.data(), 1, out.size(), file) == out.size();
  if (std::fclose(file) != 0) ok = false;
  // A failed save leaves no half-written file behind.
  if (!ok) std::remove(path.c_str());
  return ok;
}

bool APIGIFParser::encode(const API32bppDIB& surface, std::vector<uint8_t>& out, bool& UseAdaptivePalette,
                          int32_t OpaquenessTolerance) {
  if (!surface.Handle() || !surface.BitsPointer()) return false;
  const int32_t width = surface.Width();
  const int32_t height = surface.Height();
  if (width <= 0 || height <= 0 || width > 0xFFFF || height > 0xFFFF) return false;
  const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
  uint8_t* bits = surface.BitsPointer();

  int32_t validatedType = imgBmpPARGB;
  const ENUM_ALPHA_TYPE alpha =
      API32bppDIB::ValidateAlphaChannel(std::span<uint8_t>(bits, count * 4), false, validatedType);
  // Pixels that turned out to hold straight alpha are taken as they are, not divided again.
  const bool premultiplied = validatedType != imgBmpARGB;

  m_pixels.resize(count);
  bool anyTransparent = false;
  size_t at = 0;
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* px = bits + static_cast<size_t>(height - 1 - y) * static_cast<size_t>(width) * 4;
    for (int32_t x = 0; x < width; ++x, px += 4) {
      const int32_t a = px[3];
      int32_t r = px[2], g = px[1], b = px[0];
      if (a == 0 || (a <= 254 && a < OpaquenessTolerance)) {
        m_pixels[at++] = -1;
        anyTransparent = true;
        continue;
      }
      if (a <= 254 && premultiplied) {
        r = std::min(255, r * 255 / a);
        g = std::min(255, g * 255 / a);
        b = std::min(255, b * 255 / a);
      }
      m_pixels[at++] = r | (g << 8) | (b << 16);
    }
  }

  // One entry goes to transparency whenever some pixel needs it, so at most 255 colours remain.
  const bool transparency = anyTransparent;
  const size_t allowed = (alpha == AlphaComplex || transparency) ? 255 : 256;

  std::vector<uint8_t> indices(count);
  if (BuildExactPalette(m_pixels, allowed, m_palette)) {
    if (transparency) m_palette.push_back(kGifTransparentMarker);
    const uint8_t transparentIndex = static_cast<uint8_t>(m_palette.size() - 1);
    for (size_t i = 0; i < count; ++i)
      indices[i] = m_pixels[i] < 0 ? transparentIndex
                                   : static_cast<uint8_t>(ExactPaletteIndex(m_palette, m_pixels[i]));
  } else {
    m_palette.clear();
    if (UseAdaptivePalette) {
      try {
        GifOctree tree(allowed);
        for (int32_t c : m_pixels)
          if (c >= 0) tree.AddColor(c);
        m_palette = tree.Palette();
      } catch (const std::bad_alloc&) {
        m_palette.clear();
      }
    }
    if (m_palette.empty()) m_palette = WebSafePalette();
    UseAdaptivePalette = true;
    const size_t searchable = m_palette.size();
    if (transparency) m_palette.push_back(kGifTransparentMarker);
    const uint8_t transparentIndex = static_cast<uint8_t>(m_palette.size() - 1);
    GifNearestColor nearest(m_palette, searchable);
    for (size_t i = 0; i < count; ++i)
      indices[i] = m_pixels[i] < 0 ? transparentIndex : static_cast<uint8_t>(nearest.Index(m_pixels[i]));
  }
  if (m_palette.empty()) return false;

  const int32_t n = static_cast<int32_t>(m_palette.size());
  const int32_t codeSize = GifCodeSize(n);

  out.clear();
  out.reserve(count + 200);
  const char* signature = "GIF89a";
  out.insert(out.end(), signature, signature + 6);
  putLe16(out, width);
  putLe16(out, height);
  out.push_back(static_cast<uint8_t>((codeSize - 1) | 0x80));
  out.push_back(0);  // background colour index
  out.push_back(0);  // pixel aspect ratio: none given
  // The table is padded with black up to the size its flags announce.
  for (int32_t i = 0; i < (1 << codeSize); ++i) {
    const int32_t c = i < n ? m_palette[static_cast<size_t>(i)] : 0;
    out.push_back(static_cast<uint8_t>(c & 0xFF));
    out.push_back(static_cast<uint8_t>((c >> 8) & 0xFF));
    out.push_back(static_cast<uint8_t>((c >> 16) & 0xFF));
  }
  if (transparency)
    out.insert(out.end(), {kExtensionIntroducer, kGraphicControlLabel, 4, 1, 0, 0, static_cast<uint8_t>(n - 1), 0});
  out.push_back(kImageSeparator);
  putLe16(out, 0);
  putLe16(out, 0);
  putLe16(out, width);
  putLe16(out, height);
  out.push_back(0);  // no local table, not interlaced
  out.push_back(static_cast<uint8_t>(codeSize));
  GifLzwEncoder().Encode(indices, codeSize, out);
  out.push_back(kTrailer);
  return true;
}

bool SaveToFile_GIF(const API32bppDIB& surface, const host::String& FileName, bool UseAdaptivePalette,
                    int32_t OpaquenessTolerance) {
  if (FileName.empty()) return false;
  std::vector<uint8_t> unused;
  return APIGIFParser().SaveAsGIF(surface, FileName, unused, UseAdaptivePalette, OpaquenessTolerance);
}

bool SaveToStream_GIF(const API32bppDIB& surface, std::vector<uint8_t>& outBytes, bool UseAdaptivePalette,
                      int32_t OpaquenessTolerance) {
  return APIGIFParser().SaveAsGIF(surface, host::String(), outBytes, UseAdaptivePalette, OpaquenessTolerance);
}

}  // namespace mx::image
