#pragma once
// The image list's own byte compressor: a static Huffman code over byte values, stored with its
// code table in front of the data. It packs name blocks and, where no PNG route exists, picture
// bytes. Two source kinds share the format; a surface adds its width and height to the header.
//
//   bytes                      surface
//   0   magic 0D "3EH"         0   magic 0D "3EH"
//   4   uncompressed length    4   uncompressed length
//   8   total blob length      8   width
//   12  symbols in use (u16)   12  height
//   14  table                  16  total blob length
//                              20  symbols in use (u16)
//                              22  table
//
// The table holds (symbol, code length in bits) pairs by ascending symbol; then come the code
// bits of every symbol in table order, padded to a byte, then the data as codes. Bits fill each
// byte from bit 0 upward.
//
// Magic 0D "0EH" marks the uncompressed variant, written when coding would not shrink the data:
// the raw bytes stand at offset 14 (bytes) or 16 (surface).
#include <cstdint>
#include <span>
#include <vector>

namespace mx::image {
class API32bppDIB;
}

namespace mx::imagelist {

class APIHuffman {
 public:
  // Compresses source's pixel memory when a surface is given, otherwise the bytes. Always True.
  bool Compress(const image::API32bppDIB* source, std::span<const uint8_t> bytes, std::vector<uint8_t>& outBlob);
  // Decodes the blob that starts at position. With a target surface the pixels go straight into
  // it (sized from the blob's width and height) and outBytes stays empty. False for a blob that
  // is damaged, truncated or of the wrong kind; nothing is read outside the span.
  bool Decompress(std::span<const uint8_t> blob, size_t position, std::vector<uint8_t>& outBytes,
                  image::API32bppDIB* target);

  // Whether the bytes at position start a compressor blob of either variant.
  [[nodiscard]] static bool IsBlob(std::span<const uint8_t> blob, size_t position);
};

}  // namespace mx::imagelist
