#include "platform/PngEncoder.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "platform/Deflate.h"

namespace mx::platform {

namespace {

void putBE32(std::vector<uint8_t>& out, uint32_t v) {
  for (int s = 24; s >= 0; s -= 8) out.push_back(static_cast<uint8_t>(v >> s));
}

uint8_t paeth(int a, int b, int c) {
  int p = a + b - c;
  int pa = std::abs(p - a), pb = std::abs(p - b), pc = std::abs(p - c);
  if (pa <= pb && pa <= pc) return static_cast<uint8_t>(a);
  return static_cast<uint8_t>(pb <= pc ? b : c);
}

// One row of samples in file order (R, G, B[, A]).
void convertRow(const uint32_t* src, int width, const PngEncodeOptions& o, uint8_t* dst) {
  for (int x = 0; x < width; ++x) {
    uint32_t px = src[x];
    uint32_t a = px >> 24, r = (px >> 16) & 0xFF, g = (px >> 8) & 0xFF, b = px & 0xFF;
    if (o.dropAlpha) {
      *dst++ = static_cast<uint8_t>(r);
      *dst++ = static_cast<uint8_t>(g);
      *dst++ = static_cast<uint8_t>(b);
      continue;
    }
    if (o.premultiplied && a != 0 && a != 255) {
      // A channel above alpha is not valid premultiplied data; hold it to white, not wrap.
      r = std::min<uint32_t>(255, r * 255 / a);
      g = std::min<uint32_t>(255, g * 255 / a);
      b = std::min<uint32_t>(255, b * 255 / a);
    }
    *dst++ = static_cast<uint8_t>(r);
    *dst++ = static_cast<uint8_t>(g);
    *dst++ = static_cast<uint8_t>(b);
    *dst++ = static_cast<uint8_t>(a);
  }
}

// Filters a row with each of the five filters and keeps the one whose output, read as signed
// bytes, has the smallest sum of magnitudes: the usual heuristic, cheap and good on pictures.
void filterRow(const uint8_t* cur, const uint8_t* prev, size_t n, int bpp, std::vector<uint8_t>& tmp,
               uint8_t* out) {
  uint64_t best = UINT64_MAX;
  for (int f = 0; f < 5; ++f) {
    uint64_t sum = 0;
    for (size_t i = 0; i < n; ++i) {
      int a = i >= static_cast<size_t>(bpp) ? cur[i - bpp] : 0;
      int b = prev ? prev[i] : 0;
      int c = prev && i >= static_cast<size_t>(bpp) ? prev[i - bpp] : 0;
      int pred = f == 0 ? 0 : f == 1 ? a : f == 2 ? b : f == 3 ? (a + b) / 2 : paeth(a, b, c);
      uint8_t v = static_cast<uint8_t>(cur[i] - pred);
      tmp[i] = v;
      sum += v < 128 ? v : 256 - v;
    }
    if (sum < best) {
      best = sum;
      out[0] = static_cast<uint8_t>(f);
      std::copy(tmp.begin(), tmp.begin() + static_cast<ptrdiff_t>(n), out + 1);
    }
  }
}

}  // namespace

void AppendPngChunk(std::vector<uint8_t>& out, const char type[4], const uint8_t* data, size_t size) {
  putBE32(out, static_cast<uint32_t>(size));
  size_t start = out.size();
  out.insert(out.end(), type, type + 4);
  if (size) out.insert(out.end(), data, data + size);
  putBE32(out, Crc32(std::span<const uint8_t>(out.data() + start, size + 4)));
}

std::vector<uint8_t> EncodePng(const Surface& s, const PngEncodeOptions& o) {
  if (s.empty()) return {};
  const int bpp = o.dropAlpha ? 3 : 4;
  const size_t rowBytes = static_cast<size_t>(s.width) * bpp;

  std::vector<uint8_t> raw((rowBytes + 1) * static_cast<size_t>(s.height));
  std::vector<uint8_t> cur(rowBytes), prev(rowBytes), tmp(rowBytes);
  for (int y = 0; y < s.height; ++y) {
    convertRow(s.row(y), s.width, o, cur.data());
    filterRow(cur.data(), y ? prev.data() : nullptr, rowBytes, bpp, tmp, &raw[(rowBytes + 1) * static_cast<size_t>(y)]);
    std::swap(cur, prev);
  }
  std::vector<uint8_t> z = ZlibCompress(raw, o.level, o.allowSystemZlib);

  std::vector<uint8_t> out{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  std::vector<uint8_t> ihdr;
  putBE32(ihdr, static_cast<uint32_t>(s.width));
  putBE32(ihdr, static_cast<uint32_t>(s.height));
  ihdr.insert(ihdr.end(), {8, static_cast<uint8_t>(o.dropAlpha ? 2 : 6), 0, 0, 0});
  AppendPngChunk(out, "IHDR", ihdr.data(), ihdr.size());
  for (const PngChunk& c : o.extraChunks) AppendPngChunk(out, c.type, c.data.data(), c.data.size());
  // Image data in chunks of at most 1 MiB, which every reader handles comfortably.
  constexpr size_t kIdatMax = 1 << 20;
  for (size_t off = 0; off < z.size(); off += kIdatMax)
    AppendPngChunk(out, "IDAT", z.data() + off, std::min(kIdatMax, z.size() - off));
  AppendPngChunk(out, "IEND", nullptr, 0);
  return out;
}

bool WritePngFile(const Surface& surface, const std::string& path, const PngEncodeOptions& options) {
  std::vector<uint8_t> bytes = EncodePng(surface, options);
  if (bytes.empty()) return false;
  std::unique_ptr<FILE, int (*)(FILE*)> f(std::fopen(path.c_str(), "wb"), &std::fclose);
  if (!f) return false;
  bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f.get()) == bytes.size();
  return std::fclose(f.release()) == 0 && ok;
}

}  // namespace mx::platform
