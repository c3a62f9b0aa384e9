#pragma once
// Builds and decodes GIF files in memory with giflib, the independent party in the GIF tests.
#include <gif_lib.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "image/API32bppDIB.h"

namespace mx::image::test {

struct GifColor {
  uint8_t r, g, b;
};

struct GifFrameSpec {
  int left = 0, top = 0, width = 1, height = 1;
  std::vector<uint8_t> indices;    // top row first
  std::vector<GifColor> localMap;  // empty: no local table
  int transparent = -1;            // graphic control block with this index when >= 0
  bool interlace = false;
};

struct GifSpec {
  int screenWidth = 1, screenHeight = 1;
  std::vector<GifColor> globalMap;  // empty: no global table
  std::vector<GifFrameSpec> frames;
  bool loopBlock = false;  // NETSCAPE2.0 application block before the first frame
  bool comment = false;    // a comment block before the first frame
};

inline int writeToVector(GifFileType* gif, const GifByteType* data, int n) {
  auto* out = static_cast<std::vector<uint8_t>*>(gif->UserData);
  out->insert(out->end(), data, data + n);
  return n;
}

inline ColorMapObject* makeMap(const std::vector<GifColor>& colors) {
  int size = 2;
  while (size < static_cast<int>(colors.size())) size *= 2;
  std::vector<GifColorType> c(static_cast<size_t>(size), GifColorType{0, 0, 0});
  for (size_t i = 0; i < colors.size(); ++i) c[i] = GifColorType{colors[i].r, colors[i].g, colors[i].b};
  return GifMakeMapObject(size, c.data());
}

// A GIF89a written by giflib's encoder.
inline std::vector<uint8_t> makeGif(const GifSpec& s) {
  std::vector<uint8_t> out;
  int error = 0;
  GifFileType* gif = EGifOpen(&out, writeToVector, &error);
  EGifSetGifVersion(gif, true);
  ColorMapObject* global = s.globalMap.empty() ? nullptr : makeMap(s.globalMap);
  EGifPutScreenDesc(gif, s.screenWidth, s.screenHeight, global ? global->BitsPerPixel : 1, 0, global);
  if (s.loopBlock) {
    EGifPutExtensionLeader(gif, APPLICATION_EXT_FUNC_CODE);
    EGifPutExtensionBlock(gif, 11, "NETSCAPE2.0");
    const uint8_t loop[3] = {1, 0, 0};
    EGifPutExtensionBlock(gif, 3, loop);
    EGifPutExtensionTrailer(gif);
  }
  if (s.comment) EGifPutComment(gif, "made for a test");
  for (const GifFrameSpec& f : s.frames) {
    if (f.transparent >= 0) {
      const uint8_t gce[4] = {1, 10, 0, static_cast<uint8_t>(f.transparent)};
      EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, 4, gce);
    }
    ColorMapObject* local = f.localMap.empty() ? nullptr : makeMap(f.localMap);
    EGifPutImageDesc(gif, f.left, f.top, f.width, f.height, f.interlace, local);
    std::vector<uint8_t> rows = f.indices;
    if (f.interlace) {
      // Interlaced frames carry their rows in four passes.
      static const int start[4] = {0, 4, 2, 1}, step[4] = {8, 8, 4, 2};
      for (int pass = 0; pass < 4; ++pass)
        for (int y = start[pass]; y < f.height; y += step[pass])
          EGifPutLine(gif, rows.data() + static_cast<size_t>(y) * f.width, f.width);
    } else {
      EGifPutLine(gif, rows.data(), f.width * f.height);
    }
    if (local) GifFreeMapObject(local);
  }
  if (global) GifFreeMapObject(global);
  EGifCloseFile(gif, &error);
  return out;
}

struct DecodedGif {
  bool ok = false;
  int width = 0, height = 0;
  int frameCount = 0;
  std::vector<uint8_t> indices;  // first frame, top row first
  std::vector<GifColor> colors;  // the table the first frame uses
  int transparent = -1;
};

struct ReadState {
  const std::vector<uint8_t>* data;
  size_t pos;
};

inline int readFromVector(GifFileType* gif, GifByteType* buf, int n) {
  auto* st = static_cast<ReadState*>(gif->UserData);
  size_t left = st->data->size() - st->pos;
  size_t take = std::min(left, static_cast<size_t>(n));
  std::memcpy(buf, st->data->data() + st->pos, take);
  st->pos += take;
  return static_cast<int>(take);
}

inline DecodedGif decodeGif(const std::vector<uint8_t>& bytes) {
  DecodedGif d;
  ReadState st{&bytes, 0};
  int error = 0;
  GifFileType* gif = DGifOpen(&st, readFromVector, &error);
  if (!gif) return d;
  if (DGifSlurp(gif) == GIF_OK && gif->ImageCount > 0) {
    const SavedImage& im = gif->SavedImages[0];
    d.ok = true;
    d.width = gif->SWidth;
    d.height = gif->SHeight;
    d.frameCount = gif->ImageCount;
    d.indices.assign(im.RasterBits, im.RasterBits + static_cast<size_t>(im.ImageDesc.Width) * im.ImageDesc.Height);
    const ColorMapObject* map = im.ImageDesc.ColorMap ? im.ImageDesc.ColorMap : gif->SColorMap;
    if (map)
      for (int i = 0; i < map->ColorCount; ++i)
        d.colors.push_back({map->Colors[i].Red, map->Colors[i].Green, map->Colors[i].Blue});
    GraphicsControlBlock gcb;
    if (DGifSavedExtensionToGCB(gif, 0, &gcb) == GIF_OK) d.transparent = gcb.TransparentColor;
  }
  DGifCloseFile(gif, &error);
  return d;
}

// A surface from straight-alpha pixels given top row first as 0xAARRGGBB.
inline bool fillSurface(API32bppDIB& dib, int w, int h, const std::vector<uint32_t>& argb) {
  if (!dib.InitializeDIB(w, h)) return false;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      uint32_t c = argb[static_cast<size_t>(y) * w + x];
      uint8_t a = static_cast<uint8_t>(c >> 24);
      uint8_t* p = dib.BitsPointer() + (static_cast<size_t>(h - 1 - y) * w + x) * 4;
      p[0] = static_cast<uint8_t>((c & 0xFF) * a / 255);
      p[1] = static_cast<uint8_t>(((c >> 8) & 0xFF) * a / 255);
      p[2] = static_cast<uint8_t>(((c >> 16) & 0xFF) * a / 255);
      p[3] = a;
    }
  return true;
}

// Straight 0xAARRGGBB of the surface pixel at (x, y), y from the top, premultiplied as stored.
inline uint32_t surfacePixel(const API32bppDIB& dib, int x, int y) {
  const uint8_t* p = dib.BitsPointer() + (static_cast<size_t>(dib.Height() - 1 - y) * dib.Width() + x) * 4;
  return (uint32_t{p[3]} << 24) | (uint32_t{p[2]} << 16) | (uint32_t{p[1]} << 8) | p[0];
}

inline std::vector<uint8_t> readFile(const std::string& path) {
  std::ifstream f(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>()};
}

}  // namespace mx::image::test
