#include "controls/HandCursor.h"

#include <array>
#include <cstdint>

namespace mx::controls {

namespace {

constexpr int kSize = 32;
constexpr int kHotX = 5;
constexpr int kHotY = 0;
constexpr int kBlack = 0;   // palette index of the outline
constexpr int kWhite = 15;  // palette index of the fill

// The drawing, top row first: 'X' outline, 'o' fill, anything else transparent.
constexpr std::array<const char*, 21> kArt = {
    ".....XX..........",  //
    "....XooX.........",  //
    "....XooX.........",  //
    "....XooX.........",  //
    "....XooX.........",  //
    "....XooXXX.......",  //
    "....XooXooXXX....",  //
    "....XooXooXooXX..",  //
    ".XX.XooXooXooXoX.",  //
    "XooXXoooooooooooX",  //
    "XoooXoooooooooooX",  //
    ".XooXoooooooooooX",  //
    "..XoXoooooooooooX",  //
    "..XooooooooooooX.",  //
    "...XoooooooooooX.",  //
    "...XooooooooooX..",  //
    "....XoooooooooX..",  //
    "....XooooooooX...",  //
    ".....XoooooooX...",  //
    ".....XoooooooX...",  //
    ".....XXXXXXXXX...",  //
};

// The 16 colours of the classic palette; only black and white are drawn with.
constexpr std::array<uint32_t, 16> kPalette = {
    0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080, 0xC0C0C0,
    0x808080, 0xFF0000, 0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF,
};

void Put16(host::ByteArray& out, uint32_t v) {
  out.push_back(static_cast<uint8_t>(v));
  out.push_back(static_cast<uint8_t>(v >> 8));
}
void Put32(host::ByteArray& out, uint32_t v) {
  Put16(out, v & 0xFFFF);
  Put16(out, v >> 16);
}

char ArtAt(int x, int y) {
  if (y >= static_cast<int>(kArt.size())) return '.';
  const char* row = kArt[static_cast<size_t>(y)];
  for (int i = 0; i < x; ++i)
    if (!row[i]) return '.';
  return row[x] ? row[x] : '.';
}

}  // namespace

host::ByteArray HandCursorFileBytes() {
  constexpr uint32_t kXorBytes = kSize * kSize / 2;  // 4 bits per pixel, rows of 16 bytes
  constexpr uint32_t kAndBytes = kSize * kSize / 8;  // 1 bit per pixel, rows of 4 bytes
  constexpr uint32_t kImageBytes = 40 + 16 * 4 + kXorBytes + kAndBytes;

  host::ByteArray out;
  out.reserve(22 + kImageBytes);
  // File header: reserved, type 2 (cursor), one image.
  Put16(out, 0);
  Put16(out, 2);
  Put16(out, 1);
  // Directory entry; in a cursor file the planes and bit-count fields carry the hot spot.
  out.push_back(kSize);
  out.push_back(kSize);
  out.push_back(16);
  out.push_back(0);
  Put16(out, kHotX);
  Put16(out, kHotY);
  Put32(out, kImageBytes);
  Put32(out, 22);
  // The image: a bitmap header whose height counts the colour and mask planes together.
  Put32(out, 40);
  Put32(out, kSize);
  Put32(out, kSize * 2);
  Put16(out, 1);
  Put16(out, 4);
  Put32(out, 0);
  Put32(out, kXorBytes + kAndBytes);
  Put32(out, 0);
  Put32(out, 0);
  Put32(out, 16);
  Put32(out, 0);
  for (uint32_t rgb : kPalette) Put32(out, rgb);
  // Both planes are bottom-up: the first row stored is the last row of the picture.
  for (int y = kSize - 1; y >= 0; --y) {
    for (int x = 0; x < kSize; x += 2) {
      auto index = [&](int px) {
        const char c = ArtAt(px, y);
        return c == 'o' ? kWhite : kBlack;
      };
      out.push_back(static_cast<uint8_t>((index(x) << 4) | index(x + 1)));
    }
  }
  for (int y = kSize - 1; y >= 0; --y) {
    for (int x = 0; x < kSize; x += 8) {
      uint8_t bits = 0;
      for (int b = 0; b < 8; ++b) {
        const char c = ArtAt(x + b, y);
        // A set mask bit leaves the screen showing through.
        if (c != 'X' && c != 'o') bits |= static_cast<uint8_t>(0x80 >> b);
      }
      out.push_back(bits);
    }
  }
  return out;
}

std::shared_ptr<host::StdPicture> HandCursorPicture() {
  thread_local std::shared_ptr<host::StdPicture> picture = host::StdPicture::FromBytes(HandCursorFileBytes());
  return picture;
}

}  // namespace mx::controls
