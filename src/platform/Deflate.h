#pragma once
// DEFLATE compression and the two checksums that travel with it.
//
// The system zlib (libz.so.1) is bound by name at run time and used when it is there; the
// compressor here is the fallback and is complete on its own: LZ77 over a 32 KiB window with
// hash chains, each block sent stored, with the fixed codes or with its own Huffman codes,
// whichever is shortest.
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace mx::platform {

// CRC-32 as PNG and zip use it (reflected 0xEDB88320). Pass the previous result to continue.
[[nodiscard]] uint32_t Crc32(std::span<const uint8_t> data, uint32_t crc = 0);
// Adler-32 as zlib streams end with it. Start with 1.
[[nodiscard]] uint32_t Adler32(std::span<const uint8_t> data, uint32_t adler = 1);

// Raw DEFLATE (no zlib header) by the built-in compressor. level 0 stores, 1..9 trade speed
// for size by how far the match search goes.
[[nodiscard]] std::vector<uint8_t> DeflateRaw(std::span<const uint8_t> data, int level = 6);

// A zlib stream (header, DEFLATE data, Adler-32). Uses the system zlib when allowed and
// present, else DeflateRaw.
[[nodiscard]] std::vector<uint8_t> ZlibCompress(std::span<const uint8_t> data, int level = 6,
                                                bool allowSystemZlib = true);

// Whether libz.so.1 could be bound.
[[nodiscard]] bool SystemZlibAvailable();

}  // namespace mx::platform
