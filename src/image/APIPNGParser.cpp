#include "image/APIPNGParser.h"

#include <cstring>
#include <fstream>
#include <memory>
#include <new>

#if defined(__linux__)
#include <sys/mman.h>
#endif

#include "image/API32bppDIB.h"
#include "image/DecodeLimits.h"
#include "image/Inflate.h"
#include "image/ZlibBinding.h"

// SSE2 is part of every x86-64 processor; the 64-bit moves below need the 64-bit mode.
#if defined(__SSE2__) && defined(__x86_64__)
#include <emmintrin.h>
#define MX_PNG_SSE2 1
#else
#define MX_PNG_SSE2 0
#endif

namespace mx::image {

namespace {

constexpr uint8_t kSignature[8] = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};

// Adam7, one column per pass 1..7; the last column (start 0, step 1) describes a plain image.
constexpr int kYStart[8] = {0, 0, 4, 0, 2, 0, 1, 0};
constexpr int kXStart[8] = {0, 4, 0, 2, 0, 1, 0, 0};
constexpr int kYStep[8] = {8, 8, 8, 4, 4, 2, 2, 1};
constexpr int kXStep[8] = {8, 8, 4, 4, 2, 2, 1, 1};

// DEFLATE cannot expand data by more than this factor; a header that promises more than the
// compressed bytes could ever hold is refused before anything that large is allocated.
constexpr uint64_t kMaxInflateRatio = 1032;

inline uint32_t be32(const uint8_t* p) {
  return (uint32_t{p[0]} << 24) | (uint32_t{p[1]} << 16) | (uint32_t{p[2]} << 8) | p[3];
}
inline bool isType(const uint8_t* t, const char* name) { return std::memcmp(t, name, 4) == 0; }

inline uint32_t pack(uint32_t r, uint32_t g, uint32_t b, uint32_t a) { return b | (g << 8) | (r << 16) | (a << 24); }

// Straight colour to the surface's form; integer division by 255 truncates, as everywhere.
inline uint32_t premultiplied(uint32_t r, uint32_t g, uint32_t b, uint32_t a) {
  if (a == 255) return pack(r, g, b, 255);
  return pack(r * a / 255, g * a / 255, b * a / 255, a);
}

int bitsPerPixel(int colorType, int depth) {
  switch (colorType) {
    case 6: return depth * 4;
    case 4: return depth * 2;
    case 2: return depth * 3;
    default: return depth;
  }
}

// Distance in bytes to the left neighbour for the filters.
int steppingBytes(int colorType, int depth) {
  switch (colorType) {
    case 6: return depth / 8 * 4;
    case 4: return depth / 8 * 2;
    case 2: return depth / 8 * 3;
    case 3: return 1;
    default: return depth < 8 ? 1 : depth / 8;
  }
}

inline uint64_t rowBytes(uint64_t pixels, int bpp) { return (pixels * static_cast<uint64_t>(bpp) + 7) / 8; }

inline int passExtent(int size, int start, int step) { return size / step + (size % step > start ? 1 : 0); }

// Filters. Every filter runs on one row in place; prior is the previous row of the same image
// or pass, already unfiltered (zeros for the first). Sub, Average and Paeth carry a dependency
// from each pixel to the next, so their vector forms work one whole pixel per step (all bytes
// of a pixel at once) rather than many pixels per step; Up has no such chain.

void unfilterSub(uint8_t* row, size_t len, size_t bpp) {
  size_t i = bpp;
#if MX_PNG_SSE2
  if (bpp == 4 && len >= 16) {
    // Four pixels per vector: a running sum over the lanes in two shifted adds, then the last
    // pixel of the previous vector added to all four.
    __m128i carry = _mm_setzero_si128();
    for (i = 0; i + 16 <= len; i += 16) {
      __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(row + i));
      v = _mm_add_epi8(v, _mm_slli_si128(v, 4));
      v = _mm_add_epi8(v, _mm_slli_si128(v, 8));
      v = _mm_add_epi8(v, carry);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(row + i), v);
      carry = _mm_shuffle_epi32(v, _MM_SHUFFLE(3, 3, 3, 3));
    }
  }
#endif
  for (; i < len; ++i) row[i] = static_cast<uint8_t>(row[i] + row[i - bpp]);
}

void unfilterUp(uint8_t* row, const uint8_t* prior, size_t len) {
  size_t i = 0;
#if MX_PNG_SSE2
  for (; i + 16 <= len; i += 16) {
    __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(row + i));
    __m128i p = _mm_loadu_si128(reinterpret_cast<const __m128i*>(prior + i));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(row + i), _mm_add_epi8(v, p));
  }
#endif
  for (; i < len; ++i) row[i] = static_cast<uint8_t>(row[i] + prior[i]);
}

void unfilterAverageScalar(uint8_t* row, const uint8_t* prior, size_t len, size_t bpp) {
  for (size_t i = 0; i < bpp && i < len; ++i) row[i] = static_cast<uint8_t>(row[i] + (prior[i] >> 1));
  for (size_t i = bpp; i < len; ++i) row[i] = static_cast<uint8_t>(row[i] + ((row[i - bpp] + prior[i]) >> 1));
}

void unfilterPaethScalar(uint8_t* row, const uint8_t* prior, size_t len, size_t bpp) {
  for (size_t i = 0; i < bpp && i < len; ++i) row[i] = static_cast<uint8_t>(row[i] + prior[i]);
  for (size_t i = bpp; i < len; ++i) {
    int a = row[i - bpp], b = prior[i], c = prior[i - bpp];
    int pa = b - c, pb = a - c, pc = pa + pb;
    pa = pa < 0 ? -pa : pa;
    pb = pb < 0 ? -pb : pb;
    pc = pc < 0 ? -pc : pc;
    // Ties go to the left neighbour, then the one above, then the upper left.
    int pred = (pa <= pb && pa <= pc) ? a : (pb <= pc ? b : c);
    row[i] = static_cast<uint8_t>(row[i] + pred);
  }
}

#if MX_PNG_SSE2
// One pixel of Bpp bytes (3, 4, 6 or 8) widened to 16-bit lanes, and back.
template <size_t Bpp>
inline __m128i loadPixel(const uint8_t* p) {
  uint64_t v = 0;
  std::memcpy(&v, p, Bpp);
  return _mm_unpacklo_epi8(_mm_cvtsi64_si128(static_cast<long long>(v)), _mm_setzero_si128());
}
template <size_t Bpp>
inline void storePixel(uint8_t* p, __m128i v) {
  uint64_t x = static_cast<uint64_t>(_mm_cvtsi128_si64(_mm_packus_epi16(v, v)));
  std::memcpy(p, &x, Bpp);
}
inline __m128i abs16(__m128i v) { return _mm_max_epi16(v, _mm_sub_epi16(_mm_setzero_si128(), v)); }
inline __m128i select16(__m128i mask, __m128i yes, __m128i no) {
  return _mm_or_si128(_mm_and_si128(mask, yes), _mm_andnot_si128(mask, no));
}

// The lanes hold 0..255, so (a + b) >> 1 cannot overflow and the sum with the filtered byte is
// reduced modulo 256 by the mask.
template <size_t Bpp>
void unfilterAverageVector(uint8_t* row, const uint8_t* prior, size_t len) {
  const __m128i low = _mm_set1_epi16(0xFF);
  __m128i a = _mm_setzero_si128();
  for (size_t i = 0; i < len; i += Bpp) {
    __m128i b = loadPixel<Bpp>(prior + i), x = loadPixel<Bpp>(row + i);
    a = _mm_and_si128(_mm_add_epi16(x, _mm_srli_epi16(_mm_add_epi16(a, b), 1)), low);
    storePixel<Bpp>(row + i, a);
  }
}

// Paeth with p = a + b - c written as the three distances |b - c|, |a - c| and
// |(b - c) + (a - c)|. Picking b only when strictly nearer than a, then c only when strictly
// nearer than the pick, keeps the standard's order for ties.
template <size_t Bpp>
void unfilterPaethVector(uint8_t* row, const uint8_t* prior, size_t len) {
  const __m128i low = _mm_set1_epi16(0xFF);
  __m128i a = _mm_setzero_si128(), c = _mm_setzero_si128();
  for (size_t i = 0; i < len; i += Bpp) {
    __m128i b = loadPixel<Bpp>(prior + i), x = loadPixel<Bpp>(row + i);
    __m128i dbc = _mm_sub_epi16(b, c), dac = _mm_sub_epi16(a, c);
    __m128i pa = abs16(dbc), pb = abs16(dac), pc = abs16(_mm_add_epi16(dbc, dac));
    __m128i takeB = _mm_cmpgt_epi16(pa, pb);
    __m128i pred = select16(takeB, b, a);
    pa = _mm_min_epi16(pa, pb);
    pred = select16(_mm_cmpgt_epi16(pa, pc), c, pred);
    a = _mm_and_si128(_mm_add_epi16(x, pred), low);
    storePixel<Bpp>(row + i, a);
    c = b;
  }
}
#endif

// False for an unknown filter type, the row then being untouched. The vector forms need whole
// pixels of 3 bytes or more, which every byte-aligned format with such pixels has.
bool unfilter(uint8_t filter, uint8_t* row, const uint8_t* prior, size_t len, size_t bpp) {
  switch (filter) {
    case 0:
      return true;
    case 1:
      unfilterSub(row, len, bpp);
      return true;
    case 2:
      unfilterUp(row, prior, len);
      return true;
    case 3:
#if MX_PNG_SSE2
      if (len % bpp == 0) {
        switch (bpp) {
          case 3: unfilterAverageVector<3>(row, prior, len); return true;
          case 4: unfilterAverageVector<4>(row, prior, len); return true;
          case 6: unfilterAverageVector<6>(row, prior, len); return true;
          case 8: unfilterAverageVector<8>(row, prior, len); return true;
          default: break;
        }
      }
#endif
      unfilterAverageScalar(row, prior, len, bpp);
      return true;
    case 4:
#if MX_PNG_SSE2
      if (len % bpp == 0) {
        switch (bpp) {
          case 3: unfilterPaethVector<3>(row, prior, len); return true;
          case 4: unfilterPaethVector<4>(row, prior, len); return true;
          case 6: unfilterPaethVector<6>(row, prior, len); return true;
          case 8: unfilterPaethVector<8>(row, prior, len); return true;
          default: break;
        }
      }
#endif
      unfilterPaethScalar(row, prior, len, bpp);
      return true;
    default:
      return false;
  }
}

// Eight-bit RGBA to premultiplied BGRA over n pixels. c x a / 255 truncated equals
// (x + 1 + (x >> 8)) >> 8 for every product x = c x a in 0..65025, and that sum stays below
// 65536, so it runs in 16-bit lanes. The alpha lane is multiplied by 255, which the same
// formula returns unchanged; alpha 0 gives an all-zero pixel, as the surface expects.
void convertRgba8(const uint8_t* s, uint32_t* out, size_t n) {
  size_t i = 0;
#if MX_PNG_SSE2
  const __m128i zero = _mm_setzero_si128(), one = _mm_set1_epi16(1);
  const __m128i colourLanes = _mm_set_epi16(0, -1, -1, -1, 0, -1, -1, -1);
  const __m128i alphaLane255 = _mm_set_epi16(255, 0, 0, 0, 255, 0, 0, 0);
  auto half = [&](__m128i px) {
    // px: two pixels as R G B A in 16-bit lanes; reorder to B G R A.
    __m128i bgra = _mm_shufflehi_epi16(_mm_shufflelo_epi16(px, _MM_SHUFFLE(3, 0, 1, 2)), _MM_SHUFFLE(3, 0, 1, 2));
    __m128i alpha = _mm_shufflehi_epi16(_mm_shufflelo_epi16(px, _MM_SHUFFLE(3, 3, 3, 3)), _MM_SHUFFLE(3, 3, 3, 3));
    alpha = _mm_or_si128(_mm_and_si128(alpha, colourLanes), alphaLane255);
    __m128i x = _mm_mullo_epi16(bgra, alpha);
    return _mm_srli_epi16(_mm_add_epi16(_mm_add_epi16(x, one), _mm_srli_epi16(x, 8)), 8);
  };
  for (; i + 4 <= n; i += 4) {
    __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i * 4));
    __m128i lo = half(_mm_unpacklo_epi8(v, zero)), hi = half(_mm_unpackhi_epi8(v, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_packus_epi16(lo, hi));
  }
#endif
  for (; i < n; ++i) {
    const uint8_t* p = s + i * 4;
    out[i] = p[3] ? premultiplied(p[0], p[1], p[2], p[3]) : 0;
  }
}

// The inflated image, filter bytes included: as large as the picture, used once, front to back.
// Large ones are mapped on their own and asked to be backed by huge pages, which spares the
// thousands of page faults a fresh buffer of that size otherwise costs. The memory is left
// uninitialised: the decompressor writes every byte up to what it produces, and the parser
// clears the rest.
class RawBuffer {
 public:
  explicit RawBuffer(size_t size) : m_size(size) {
#if defined(__linux__)
    if (size >= kHugePage) {
      size_t mapped = (size + kHugePage - 1) / kHugePage * kHugePage + kHugePage;
      void* p = mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
      if (p == MAP_FAILED) return;
      m_map = p;
      m_mapped = mapped;
      // Huge pages need an aligned start inside the mapping.
      auto at = (reinterpret_cast<uintptr_t>(p) + kHugePage - 1) & ~(uintptr_t{kHugePage} - 1);
      m_data = reinterpret_cast<uint8_t*>(at);
      madvise(m_data, mapped - (at - reinterpret_cast<uintptr_t>(p)), MADV_HUGEPAGE);
      return;
    }
#endif
    m_heap.reset(new (std::nothrow) uint8_t[size]);
    m_data = m_heap.get();
  }
  ~RawBuffer() {
#if defined(__linux__)
    if (m_map) munmap(m_map, m_mapped);
#endif
  }
  RawBuffer(const RawBuffer&) = delete;
  RawBuffer& operator=(const RawBuffer&) = delete;

  explicit operator bool() const { return m_data != nullptr; }
  [[nodiscard]] uint8_t* data() const { return m_data; }
  [[nodiscard]] size_t size() const { return m_size; }

 private:
  static constexpr size_t kHugePage = size_t{2} << 20;
  size_t m_size;
  uint8_t* m_data = nullptr;
  std::unique_ptr<uint8_t[]> m_heap;
  void* m_map = nullptr;
  size_t m_mapped = 0;
};

}  // namespace

bool APIPNGParser::LoadStream(const std::vector<uint8_t>& inStream, API32bppDIB& outDIB, int32_t streamStart,
                              int32_t streamLength, int32_t gdiToken) {
  (void)gdiToken;
  if (streamStart < 0) streamStart = 0;
  if (static_cast<size_t>(streamStart) >= inStream.size()) return false;
  size_t available = inStream.size() - static_cast<size_t>(streamStart);
  size_t length = streamLength <= 0 ? available : std::min<size_t>(available, static_cast<size_t>(streamLength));
  return ParsePNG(inStream.data() + streamStart, length, false, outDIB);
}

bool APIPNGParser::LoadFile(const host::String& FileName, API32bppDIB& outDIB, int32_t gdiToken,
                            int64_t& fileLength) {
  fileLength = 0;
  std::ifstream f(host::ToUtf8(FileName), std::ios::binary);
  if (!f) return false;
  std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
  fileLength = static_cast<int64_t>(bytes.size());
  return LoadFileData(bytes, outDIB, gdiToken);
}

bool APIPNGParser::LoadFileData(const std::vector<uint8_t>& fileBytes, API32bppDIB& outDIB, int32_t gdiToken) {
  (void)gdiToken;
  // The signature is read only from a file larger than 56 bytes.
  if (fileBytes.size() <= 56) return false;
  return ParsePNG(fileBytes.data(), fileBytes.size(), true, outDIB);
}

bool APIPNGParser::ParsePNG(const uint8_t* src, size_t size, bool fromFile, API32bppDIB& dib) {
  m_transColor = -1;
  if (size < 8 || std::memcmp(src, kSignature, 8) != 0) return false;
  // The system codec would be asked first here; this build has none, so the own decoder runs.
  try {
    const bool zlibPresent = zlib::Available();
    // The compressed data: a single IDAT is read where it lies in the source; only a second one
    // makes the reader gather them all into one buffer.
    std::vector<uint8_t> gathered;
    const uint8_t* idatData = nullptr;
    size_t idatSize = 0;
    bool error = false, haveHeader = false;
    size_t pos = 8;
    // A stream's running total starts one lower than its position, so a stream may claim one
    // byte more than it has; the reads below still stay inside it.
    uint64_t total = fromFile ? 8 : 7;
    while (pos < size) {
      if (size - pos < 8) {
        error = true;
        break;
      }
      uint32_t len = be32(src + pos);
      total += uint64_t{len} + 12;
      if (total > size || len > size - pos - 8) {
        error = true;
        break;
      }
      const uint8_t* type = src + pos + 4;
      const uint8_t* data = type + 4;
      uint32_t storedCrc = 0;
      if (zlibPresent) {
        if (size - pos - 8 - len < 4) {
          error = true;
          break;
        }
        storedCrc = be32(data + len);
      }
      pos += size_t{len} + 12;
      if (len == 0) {
        if (isType(type, "IEND")) break;
        continue;
      }
      bool isHeader = isType(type, "IHDR"), isPalette = isType(type, "PLTE"), isTrns = isType(type, "tRNS"),
           isData = isType(type, "IDAT");
      if (isType(type, "IEND")) break;
      if (!(isHeader || isPalette || isTrns || isData)) continue;  // ancillary: skipped unread
      // A stored CRC of 0 is taken as "not given".
      if (zlibPresent && storedCrc != 0) {
        uint32_t crc = zlib::Crc32(0, type, size_t{len} + 4);
        if (crc == 0 || crc != storedCrc) {
          error = true;
          break;
        }
      }
      if (isHeader) {
        if (len < 13) {
          error = true;
          break;
        }
        int32_t w = static_cast<int32_t>(be32(data)), h = static_cast<int32_t>(be32(data + 4));
        uint8_t depth = data[8], ct = data[9];
        bool depthOk = depth == 1 || depth == 2 || depth == 4 || depth == 8 || depth == 16;
        bool typeOk = ct == 0 || ct == 2 || ct == 3 || ct == 4 || ct == 6;
        if (w < 1 || h < 1 || data[10] != 0 || data[11] != 0 || !depthOk || !typeOk || data[12] >= 2) {
          error = true;
          break;
        }
        m_width = w;
        m_height = h;
        m_bitDepth = depth;
        m_colorType = ct;
        m_interlace = data[12];
        haveHeader = true;
        int bpp = bitsPerPixel(ct, depth);
        uint64_t total64 = 0;
        if (m_interlace == 0) {
          total64 = (rowBytes(static_cast<uint64_t>(w), bpp) + 1) * static_cast<uint64_t>(h);
        } else {
          for (int p = 0; p < 7; ++p) {
            int pw = passExtent(w, kXStart[p], kXStep[p]);
            int ph = passExtent(h, kYStart[p], kYStep[p]);
            // An empty pass still counts its filter bytes here.
            total64 += (rowBytes(static_cast<uint64_t>(pw), bpp) + 1) * static_cast<uint64_t>(ph);
          }
        }
        m_rawSize = static_cast<size_t>(total64);
      } else if (isPalette) {
        if (m_colorType == 0 || m_colorType == 4) continue;
        if (len % 3 != 0) {
          error = true;
          break;
        }
        m_palette.assign(data, data + len);
      } else if (isTrns) {
        if (m_colorType == 4 || m_colorType == 6) continue;
        if (m_colorType == 0) {
          if (len < 2) continue;
          m_trns.assign(data, data + len);
          m_transColor = data[1];
          if (m_bitDepth < 16) m_transColor &= (1 << m_bitDepth) - 1;
        } else if (m_colorType == 2) {
          if (len < 6) continue;
          m_trns.assign(data, data + len);
          m_transColor = (data[1] << 16) | (data[3] << 8) | data[5];
        } else {
          m_trns.assign(data, data + std::min<uint32_t>(len, 256));
          m_trns.resize(256, 255);
          m_transColor = 0;  // only a mark: the alpha table is in use
        }
      } else {
        if (idatData == nullptr) {
          idatData = data;
        } else {
          if (gathered.empty()) {
            gathered.reserve(std::max(size / 2 + 1, idatSize + len));
            gathered.assign(idatData, idatData + idatSize);
          }
          gathered.insert(gathered.end(), data, data + len);
          idatData = gathered.data();
        }
        idatSize += len;
      }
    }
    if (error || idatSize == 0 || !haveHeader) return false;

    // The surface must stay within the readers' limit; refuse early rather than allocate the raw
    // rows. The inflate ratio below bounds the raw rows, not the surface: one byte of 1-bit
    // rows is 32 bytes of surface.
    if (!DecodedSizeAllowed(m_width, m_height)) return false;
    if (m_rawSize > idatSize * kMaxInflateRatio + 4096) return false;

    RawBuffer raw(m_rawSize);
    if (!raw) return false;
    size_t produced = m_rawSize;
    bool inflated = false;
    if (zlibPresent) inflated = zlib::Uncompress(raw.data(), produced, idatData, idatSize) == zlib::Z_OK;
    if (!inflated) {
      // After zlib has refused the data the own decoder reads length 258 the Deflate64 way;
      // without zlib it reads plain DEFLATE. Bytes 0 and 1 are the zlib header.
      if (idatSize < 2) return false;
      std::span<const uint8_t> body(idatData + 2, idatSize - 2);
      InflateResult r = InflateRaw(body, std::span<uint8_t>(raw.data(), m_rawSize), zlibPresent);
      if (!r.ok) return false;
      produced = r.produced;
    }
    // Rows the data did not reach read as zeros, whatever a refused attempt left there.
    std::fill(raw.data() + produced, raw.data() + m_rawSize, uint8_t{0});
    std::vector<uint8_t>().swap(gathered);
    return decode(raw.data(), dib);
  } catch (const std::bad_alloc&) {
    dib.DestroyDIB();
    return false;
  }
}

bool APIPNGParser::decode(uint8_t* raw, API32bppDIB& dib) {
  const int ct = m_colorType, depth = m_bitDepth;
  // Depth and colour type are not checked against each other in the header; combinations the
  // converters cannot read (RGB of 4 bits, 16-bit indices, ...) are refused here.
  bool valid = (ct == 0) || (ct == 3 && depth <= 8) || ((ct == 2 || ct == 4 || ct == 6) && depth >= 8);
  if (!valid) return false;

  // Types 0 and 3 below 16 bits go through one table of finished pixels per sample value.
  uint32_t lut[256] = {};
  if (depth < 16 && (ct == 0 || ct == 3)) {
    if (ct == 0) {
      int maxSample = (1 << depth) - 1;
      int scale = 255 / maxSample;
      for (int i = 0; i <= maxSample; ++i) {
        uint32_t g = static_cast<uint32_t>(i * scale);
        lut[i] = (m_transColor != -1 && i == m_transColor) ? 0 : pack(g, g, g, 255);
      }
    } else {
      uint8_t pal[768] = {};
      if (!m_palette.empty()) {
        std::memcpy(pal, m_palette.data(), std::min<size_t>(m_palette.size(), sizeof pal));
      } else if (depth == 1) {
        pal[3] = pal[4] = pal[5] = 255;  // a missing palette of two entries is black and white
      }
      for (int i = 0; i < 256; ++i) {
        uint32_t r = pal[i * 3], g = pal[i * 3 + 1], b = pal[i * 3 + 2];
        if (m_transColor != -1) {
          // A tRNS met before IHDR may have been read for another colour type.
          uint32_t a = static_cast<size_t>(i) < m_trns.size() ? m_trns[static_cast<size_t>(i)] : 255;
          lut[i] = a == 0 ? 0 : premultiplied(r, g, b, a);
        } else {
          lut[i] = pack(r, g, b, 255);
        }
      }
    }
  }

  if (!dib.InitializeDIB(m_width, m_height)) return false;
  const int bpp = bitsPerPixel(ct, depth);
  const size_t stepping = static_cast<size_t>(steppingBytes(ct, depth));
  uint8_t* bits = dib.BitsPointer();
  const size_t stride = static_cast<size_t>(m_width) * 4;
  const int32_t key = m_transColor;
  const bool keyed16 = key != -1 && ((ct == 2 && m_trns.size() >= 6) || (ct == 0 && !m_trns.empty()));
  const uint8_t k0 = m_trns.size() > 0 ? m_trns[0] : 0, k2 = m_trns.size() > 2 ? m_trns[2] : 0,
                k4 = m_trns.size() > 4 ? m_trns[4] : 0;

  // Writes n pixels of one unfiltered row to picture row y at x0, x0 + dx, ... Pixels left
  // transparent keep the zeros InitializeDIB wrote.
  auto convert = [&](const uint8_t* s, int n, int y, int x0, int dx) {
    auto* out = reinterpret_cast<uint32_t*>(bits + static_cast<size_t>(m_height - 1 - y) * stride) + x0;
    if (depth < 16 && (ct == 0 || ct == 3)) {
      if (depth == 8) {
        if (dx == 1) {
          for (int i = 0; i < n; ++i) out[i] = lut[s[i]];
        } else {
          for (int i = 0; i < n; ++i, out += dx) *out = lut[s[i]];
        }
      } else {
        // Samples are packed most significant first; the shift walks down each byte.
        const int mask = (1 << depth) - 1, top = 8 - depth;
        int shift = top;
        for (int i = 0; i < n; ++i, out += dx) {
          *out = lut[(*s >> shift) & mask];
          if (shift == 0) {
            shift = top;
            ++s;
          } else {
            shift -= depth;
          }
        }
      }
      return;
    }
    if (depth == 8) {
      switch (ct) {
        case 6:
          if (dx == 1) {
            convertRgba8(s, out, static_cast<size_t>(n));
            break;
          }
          for (int i = 0; i < n; ++i, s += 4, out += dx)
            if (s[3]) *out = premultiplied(s[0], s[1], s[2], s[3]);
          break;
        case 4:
          for (int i = 0; i < n; ++i, s += 2, out += dx)
            if (s[1]) *out = premultiplied(s[0], s[0], s[0], s[1]);
          break;
        default:
          for (int i = 0; i < n; ++i, s += 3, out += dx) {
            if (key != -1 && ((s[0] << 16) | (s[1] << 8) | s[2]) == key) continue;
            *out = pack(s[0], s[1], s[2], 255);
          }
          break;
      }
      return;
    }
    // 16 bits: each sample is cut to its high byte; the key compares high bytes too.
    switch (ct) {
      case 6:
        for (int i = 0; i < n; ++i, s += 8, out += dx)
          if (s[6]) *out = premultiplied(s[0], s[2], s[4], s[6]);
        break;
      case 4:
        for (int i = 0; i < n; ++i, s += 4, out += dx)
          if (s[2]) *out = premultiplied(s[0], s[0], s[0], s[2]);
        break;
      case 2:
        for (int i = 0; i < n; ++i, s += 6, out += dx) {
          if (keyed16 && s[0] == k0 && s[2] == k2 && s[4] == k4) continue;
          *out = pack(s[0], s[2], s[4], 255);
        }
        break;
      default:
        for (int i = 0; i < n; ++i, s += 2, out += dx) {
          if (keyed16 && s[0] == k0) continue;
          *out = pack(s[0], s[0], s[0], 255);
        }
        break;
    }
  };

  const size_t fullRow = static_cast<size_t>(rowBytes(static_cast<uint64_t>(m_width), bpp));
  std::vector<uint8_t> zeros(fullRow + 1, 0);
  if (m_interlace == 0) {
    const uint8_t* prior = zeros.data();
    for (int y = 0; y < m_height; ++y) {
      uint8_t* row = raw + static_cast<size_t>(y) * (fullRow + 1);
      // An unknown filter leaves the row as it stands and decoding goes on.
      unfilter(row[0], row + 1, prior, fullRow, stepping);
      convert(row + 1, m_width, y, 0, 1);
      prior = row + 1;
    }
  } else {
    size_t offset = 0;
    for (int p = 0; p < 7; ++p) {
      int pw = passExtent(m_width, kXStart[p], kXStep[p]);
      int ph = passExtent(m_height, kYStart[p], kYStep[p]);
      if (pw == 0 || ph == 0) continue;  // an empty pass has no bytes in the data
      size_t rb = static_cast<size_t>(rowBytes(static_cast<uint64_t>(pw), bpp));
      const uint8_t* prior = zeros.data();
      for (int r = 0; r < ph; ++r) {
        uint8_t* row = raw + offset;
        // On an interlaced image an unknown filter ends decoding.
        if (!unfilter(row[0], row + 1, prior, rb, stepping)) {
          dib.DestroyDIB();
          return false;
        }
        convert(row + 1, pw, kYStart[p] + r * kYStep[p], kXStart[p], kXStep[p]);
        prior = row + 1;
        offset += rb + 1;
      }
    }
  }
  dib.Alpha(ct < 4 ? (m_transColor == -1 ? AlphaNone : AlphaSimple) : AlphaComplex);
  dib.SetImageType(imgPNG);
  return true;
}

}  // namespace mx::image
