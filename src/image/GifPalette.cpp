#include "image/GifPalette.h"

#include <algorithm>

namespace mx::image {

namespace {

constexpr int32_t rgb(int32_t r, int32_t g, int32_t b) { return r | (g << 8) | (b << 16); }

}  // namespace

bool BuildExactPalette(std::span<const int32_t> pixels, size_t maxColors, std::vector<int32_t>& palette) {
  palette.clear();
  // Runs of one colour are common; skipping the search for a repeat halves the work on flat art.
  bool havePrevious = false;
  int32_t previous = 0;
  for (int32_t c : pixels) {
    if (c < 0) continue;
    if (havePrevious && c == previous) continue;
    havePrevious = true;
    previous = c;
    auto at = std::lower_bound(palette.begin(), palette.end(), c);
    if (at != palette.end() && *at == c) continue;
    if (palette.size() >= maxColors) return false;
    palette.insert(at, c);
  }
  return true;
}

int32_t ExactPaletteIndex(std::span<const int32_t> palette, int32_t color) {
  auto at = std::lower_bound(palette.begin(), palette.end(), color);
  if (at == palette.end() || *at != color) return -1;
  return static_cast<int32_t>(at - palette.begin());
}

std::vector<int32_t> WebSafePalette() {
  std::vector<int32_t> out;
  out.reserve(247);
  for (int32_t r = 0; r <= 255; r += 51)
    for (int32_t g = 0; g <= 255; g += 51)
      for (int32_t b = 0; b <= 255; b += 51) out.push_back(rgb(r, g, b));
  for (int32_t grey = 8; grey <= 248; grey += 8) out.push_back(rgb(grey, grey, grey));
  return out;
}

int32_t GifCodeSize(int32_t n) {
  if (n > 128) return 8;
  if (n > 64) return 7;
  if (n > 32) return 6;
  if (n > 16) return 5;
  if (n >= 9) return 4;
  if (n >= 5) return 3;
  return 2;
}

GifOctree::GifOctree(size_t maxColors) : m_maxColors(maxColors) {
  std::fill(std::begin(m_reducible), std::end(m_reducible), -1);
  m_nodes.reserve(50);
  newNode(0);
}

int32_t GifOctree::newNode(int level) {
  int32_t id;
  if (m_freeHead >= 0) {
    id = m_freeHead;
    m_freeHead = m_nodes[static_cast<size_t>(id)].nextReducible;
    m_nodes[static_cast<size_t>(id)] = Node{};
  } else {
    // Grown by a tenth at a time: a reduced tree holds few hundred nodes, and reuse through
    // the free list keeps it near that.
    if (m_nodes.size() == m_nodes.capacity()) m_nodes.reserve(m_nodes.size() + m_nodes.size() / 10 + 1);
    id = static_cast<int32_t>(m_nodes.size());
    m_nodes.emplace_back();
  }
  Node& n = m_nodes[static_cast<size_t>(id)];
  n.inUse = true;
  if (level == kDepth) {
    n.isLeaf = true;
    ++m_leafCount;
  } else {
    n.nextReducible = m_reducible[level];
    m_reducible[level] = id;
  }
  return id;
}

void GifOctree::AddColor(int32_t color) {
  const int32_t value[3] = {color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF};  // r, g, b
  int32_t low[3] = {0, 0, 0};
  int32_t high[3] = {255, 255, 255};
  static constexpr int32_t weight[3] = {4, 2, 1};

  int32_t node = 0;
  for (int level = 0; level < kDepth && !m_nodes[static_cast<size_t>(node)].isLeaf; ++level) {
    int32_t octant = 0;
    for (int ch = 0; ch < 3; ++ch) {
      int32_t mid = (low[ch] + high[ch]) / 2;  // both are non-negative: the floor of the midpoint
      if (value[ch] > mid) {
        octant |= weight[ch];
        low[ch] = mid + 1;
      } else {
        high[ch] = mid;
      }
    }
    int32_t next = m_nodes[static_cast<size_t>(node)].child[octant];
    if (next < 0) {
      next = newNode(level + 1);  // may reallocate: index again afterwards
      m_nodes[static_cast<size_t>(node)].child[octant] = next;
    }
    node = next;
  }
  Node& leaf = m_nodes[static_cast<size_t>(node)];
  leaf.red += static_cast<uint64_t>(value[0]);
  leaf.green += static_cast<uint64_t>(value[1]);
  leaf.blue += static_cast<uint64_t>(value[2]);
  ++leaf.count;
  while (m_leafCount > m_maxColors) reduce();
}

void GifOctree::reduce() {
  int level = kDepth - 1;
  while (level >= 0 && m_reducible[level] < 0) --level;
  if (level < 0) return;  // only the root is left; cannot happen for limits above one
  int32_t id = m_reducible[level];
  Node& n = m_nodes[static_cast<size_t>(id)];
  m_reducible[level] = n.nextReducible;
  n.nextReducible = -1;
  // Deeper lists are empty, so every child here is a leaf.
  size_t merged = 0;
  for (int32_t& c : n.child) {
    if (c < 0) continue;
    Node& child = m_nodes[static_cast<size_t>(c)];
    n.red += child.red;
    n.green += child.green;
    n.blue += child.blue;
    n.count += child.count;
    child = Node{};
    child.nextReducible = m_freeHead;
    m_freeHead = c;
    c = -1;
    ++merged;
  }
  n.isLeaf = true;
  m_leafCount = m_leafCount + 1 - merged;
}

std::vector<int32_t> GifOctree::Palette() const {
  std::vector<int32_t> out;
  for (const Node& n : m_nodes) {
    if (!n.inUse || !n.isLeaf || n.count == 0) continue;
    out.push_back(rgb(static_cast<int32_t>(n.red / n.count), static_cast<int32_t>(n.green / n.count),
                      static_cast<int32_t>(n.blue / n.count)));
  }
  return out;
}

GifNearestColor::GifNearestColor(std::span<const int32_t> palette, size_t searchCount)
    : m_palette(palette.begin(), palette.begin() + static_cast<std::ptrdiff_t>(std::min(searchCount, palette.size()))) {}

int32_t GifNearestColor::Index(int32_t color) {
  if (auto hit = m_cache.find(color); hit != m_cache.end()) return hit->second;
  const int32_t r = color & 0xFF, g = (color >> 8) & 0xFF, b = (color >> 16) & 0xFF;
  int32_t best = 0;
  int64_t bestDistance = INT64_MAX;
  for (size_t i = 0; i < m_palette.size(); ++i) {
    const int32_t p = m_palette[i];
    const int64_t dr = r - (p & 0xFF), dg = g - ((p >> 8) & 0xFF), db = b - ((p >> 16) & 0xFF);
    const int64_t d = dr * dr + dg * dg + db * db;
    if (d < bestDistance) {
      bestDistance = d;
      best = static_cast<int32_t>(i);
      if (d == 0) break;
    }
  }
  m_cache.emplace(color, best);
  return best;
}

}  // namespace mx::image
