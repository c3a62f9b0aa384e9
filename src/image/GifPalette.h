#pragma once
// Colour reduction for the GIF writer.
//
// Colours are Longs in the system's order, red in the low byte (0x00BBGGRR); -1 stands for a
// transparent pixel and never enters a palette.
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

namespace mx::image {

// Marks the transparent entry at the end of a palette. It sorts after every real colour, so an
// exact palette stays sorted when it is appended.
constexpr int32_t kGifTransparentMarker = 0x7FFFFFFF;

// All distinct colours of pixels, sorted ascending, by binary insertion. Returns false (and a
// partial list) as soon as more than maxColors distinct colours turn up.
[[nodiscard]] bool BuildExactPalette(std::span<const int32_t> pixels, size_t maxColors, std::vector<int32_t>& palette);

// Position of color in a sorted exact palette, or -1.
[[nodiscard]] int32_t ExactPaletteIndex(std::span<const int32_t> palette, int32_t color);

// 216 colours of the 0/51/102/153/204/255 cube (red slowest) followed by the 31 greys
// 8, 16 ... 248: 247 entries.
[[nodiscard]] std::vector<int32_t> WebSafePalette();

// The LZW minimum code size for a table of colorCount entries.
[[nodiscard]] int32_t GifCodeSize(int32_t colorCount);

// Adaptive palette by an octree six levels deep.
//
//   level 0            root: the whole cube 0..255 on each channel
//   level 1..5         inner nodes: each halves its box; octant = blue 1 + green 2 + red 4
//   level 6            leaves: sums of red, green, blue and a pixel count
//
// Inner nodes are kept in one list per level. Whenever the leaves outnumber the limit, the head
// of the deepest non-empty list folds its children into itself and becomes a leaf; the children
// go to a free list and their slots are reused, so the node array stays small.
class GifOctree {
 public:
  explicit GifOctree(size_t maxColors);

  void AddColor(int32_t color);
  [[nodiscard]] size_t LeafCount() const { return m_leafCount; }
  // The leaves in node-array order, each the average of the pixels it gathered.
  [[nodiscard]] std::vector<int32_t> Palette() const;

 private:
  static constexpr int kDepth = 6;
  struct Node {
    bool isLeaf = false;
    bool inUse = false;
    uint64_t red = 0, green = 0, blue = 0, count = 0;
    int32_t child[8] = {-1, -1, -1, -1, -1, -1, -1, -1};
    int32_t nextReducible = -1;  // also links the free list
  };

  int32_t newNode(int level);
  void reduce();

  std::vector<Node> m_nodes;
  int32_t m_freeHead = -1;
  int32_t m_reducible[kDepth];
  size_t m_leafCount = 0;
  size_t m_maxColors;
};

// Nearest palette entry by the smallest sum of squared channel differences; the first entry wins
// a tie. Answers are remembered per colour, since pictures repeat colours heavily.
class GifNearestColor {
 public:
  // Only the first searchCount entries take part (the transparency entry stays out).
  GifNearestColor(std::span<const int32_t> palette, size_t searchCount);
  [[nodiscard]] int32_t Index(int32_t color);

 private:
  std::vector<int32_t> m_palette;
  std::unordered_map<int32_t, int32_t> m_cache;
};

}  // namespace mx::image
