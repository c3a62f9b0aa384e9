#pragma once
// GIF reader and writer.
//
// Reading takes the first frame only. It does not decode LZW itself: the frame is cut out into a
// small one-frame GIF whose logical screen is the frame, and giflib decodes that. When the frame
// has a transparent index, the copy's colour table becomes a ramp (entry i = grey i), so the
// decoded colours are the indices themselves and the transparent one can be told apart from an
// equal colour elsewhere in the table.
//
// Writing makes a single-frame GIF89a: an exact palette when the picture has few enough colours,
// else an octree palette, else the web-safe one, then the hashed LZW encoder.
#include <cstdint>
#include <vector>

#include "host/String.h"

namespace mx::image {

class API32bppDIB;

class APIGIFParser {
 public:
  // Reads inStream[streamStart .. streamStart + streamLength); streamLength 0 means to the end.
  // On failure the surface is left empty.
  bool LoadStream(const std::vector<uint8_t>& inStream, API32bppDIB& outDIB, int32_t streamStart = 0,
                  int32_t streamLength = 0);

  // FileName empty: the file goes to outBytes; otherwise to the file, and outBytes is left
  // alone. UseAdaptivePalette comes back True whenever the colours had to be reduced.
  // Partially transparent pixels with alpha of at least OpaquenessTolerance become solid, the
  // others transparent.
  bool SaveAsGIF(const API32bppDIB& surface, const host::String& FileName, std::vector<uint8_t>& outBytes,
                 bool& UseAdaptivePalette, int32_t OpaquenessTolerance);

  // The one-frame GIF built by the last LoadStream, before decoding (kept for inspection).
  [[nodiscard]] const std::vector<uint8_t>& FrameBytes() const { return m_frame; }

 private:
  bool buildFrame(const uint8_t* src, size_t size);
  bool decodeFrame(API32bppDIB& dib);
  bool encode(const API32bppDIB& surface, std::vector<uint8_t>& out, bool& UseAdaptivePalette,
              int32_t OpaquenessTolerance);

  // Reading state.
  std::vector<uint8_t> m_frame;     // header, table, control block, frame, trailer
  std::vector<uint8_t> m_original;  // the frame's own colour table, 3 bytes an entry
  bool m_transparent = false;
  uint8_t m_transparentIndex = 0;

  // Writing state: one Long per pixel, top row first, -1 for transparent.
  std::vector<int32_t> m_pixels;
  std::vector<int32_t> m_palette;
};

// The surface's GIF save operations, as free functions over the surface.
bool SaveToFile_GIF(const API32bppDIB& surface, const host::String& FileName, bool UseAdaptivePalette = true,
                    int32_t OpaquenessTolerance = 128);
bool SaveToStream_GIF(const API32bppDIB& surface, std::vector<uint8_t>& outBytes, bool UseAdaptivePalette = true,
                      int32_t OpaquenessTolerance = 128);

}  // namespace mx::image
