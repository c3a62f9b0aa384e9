#pragma once
// zlib bound by name at run time from libz.so.1. The library is optional: the PNG reader has its
// own inflate for when it is absent. MX_NO_ZLIB=1 in the environment makes it count as absent;
// the variable is read on every query so that a process can switch it.
#include <cstddef>
#include <cstdint>

namespace mx::image::zlib {

// zlib's own result codes, as uncompress reports them.
constexpr int Z_OK = 0;
constexpr int Z_BUF_ERROR = -5;
constexpr int Z_DATA_ERROR = -3;
constexpr int Z_UNAVAILABLE = -100;  // not a zlib code: the library is not bound

// libz.so.1 loads and exports uncompress. The lookup itself is made once per thread.
[[nodiscard]] bool Available();
// zlib's uncompress; destLen is in-out. Z_UNAVAILABLE when the library is absent.
int Uncompress(uint8_t* dest, size_t& destLen, const uint8_t* source, size_t sourceLen);
// zlib's crc32 continuing from crc; 0 when the library is absent.
[[nodiscard]] uint32_t Crc32(uint32_t crc, const uint8_t* data, size_t length);
// A fresh probe: loads libz.so.1, looks for crc32 and frees the library again at once.
[[nodiscard]] bool ProbeCrc32();

}  // namespace mx::image::zlib
