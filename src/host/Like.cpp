#include "host/Like.h"

#include <vector>

#include "host/Err.h"
#include "host/Locale.h"

namespace mx::host {
namespace {

struct Range {
  char16_t first, last;
};

// One element of a compiled pattern. Every element but a star matches exactly one character,
// which is what lets the matcher below backtrack only to the last star.
struct Element {
  enum Kind { Star, AnyChar, Digit, Literal, Class };
  explicit Element(Kind k, char16_t c = 0) : kind(k), literal(c) {}
  Kind kind;
  char16_t literal;
  bool negated = false;
  std::vector<Range> ranges;
};

std::vector<Element> Compile(StringView pattern, bool text) {
  auto fold = [text](char16_t c) { return text ? FoldLetter(c) : c; };
  std::vector<Element> elements;
  for (size_t i = 0; i < pattern.size(); ++i) {
    char16_t c = pattern[i];
    if (c == u'*') {
      // Consecutive stars mean no more than one.
      if (elements.empty() || elements.back().kind != Element::Star) elements.emplace_back(Element::Star);
    } else if (c == u'?') {
      elements.emplace_back(Element::AnyChar);
    } else if (c == u'#') {
      elements.emplace_back(Element::Digit);
    } else if (c == u'[') {
      size_t close = pattern.find(u']', i + 1);
      if (close == StringView::npos) Raise(93);
      StringView list = pattern.substr(i + 1, close - i - 1);
      i = close;
      if (list.empty()) continue;  // "[]": zero-length, matches without using a character
      Element element(Element::Class);
      size_t k = 0;
      if (list[0] == u'!') {
        element.negated = true;
        k = 1;
      }
      for (; k < list.size(); ++k) {
        char16_t first = list[k];
        if (k + 2 < list.size() && list[k + 1] == u'-') {
          char16_t last = list[k + 2];
          if (fold(last) < fold(first)) Raise(93);
          element.ranges.push_back({fold(first), fold(last)});
          k += 2;
        } else {
          element.ranges.push_back({fold(first), fold(first)});
        }
      }
      elements.push_back(std::move(element));
    } else {
      elements.emplace_back(Element::Literal, fold(c));
    }
  }
  return elements;
}

bool MatchesOne(const Element& element, char16_t c) {
  switch (element.kind) {
    case Element::AnyChar: return true;
    case Element::Digit: return c >= u'0' && c <= u'9';
    case Element::Literal: return element.literal == c;
    case Element::Class: {
      bool inList = false;
      for (const Range& range : element.ranges) {
        if (c >= range.first && c <= range.last) {
          inList = true;
          break;
        }
      }
      return inList != element.negated;
    }
    case Element::Star: break;
  }
  return false;
}

}  // namespace

bool Like(StringView text, StringView pattern, VbCompareMethod compare) {
  bool textCompare = compare != vbBinaryCompare;
  std::vector<Element> elements = Compile(pattern, textCompare);
  const size_t n = text.size(), m = elements.size();
  size_t ti = 0, pi = 0;
  size_t starElement = m, starText = 0;  // the last star seen and where its run began
  while (ti < n) {
    char16_t c = textCompare ? FoldLetter(text[ti]) : text[ti];
    if (pi < m && elements[pi].kind == Element::Star) {
      starElement = pi++;
      starText = ti;
    } else if (pi < m && MatchesOne(elements[pi], c)) {
      ++ti;
      ++pi;
    } else if (starElement < m) {
      // Let the last star take one more character and try again from there.
      pi = starElement + 1;
      ti = ++starText;
    } else {
      return false;
    }
  }
  while (pi < m && elements[pi].kind == Element::Star) ++pi;
  return pi == m;
}

}  // namespace mx::host
