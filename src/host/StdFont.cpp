#include "host/StdFont.h"

#include <algorithm>
#include <cmath>

#include "host/Err.h"
#include "host/Strings.h"

namespace mx::host {

namespace {

constexpr int64_t kMaxSizeScaled = 2160 * Currency::kScale;

// MulDiv: a * b / c rounded half away from zero, in 64-bit so nothing overflows.
int64_t MulDivRound(int64_t a, int64_t b, int64_t c) {
  int64_t p = a * b;
  bool negative = (p < 0) != (c < 0);
  int64_t q = (std::llabs(p) + std::llabs(c) / 2) / std::llabs(c);
  return negative ? -q : q;
}

}  // namespace

StdFont::StdFont() : m_name(u"MS Sans Serif"), m_size{82500} {}

StdFont::StdFont(String name, double size, bool bold, bool italic) : StdFont() {
  Name(name);
  Size(size);
  Bold(bold);
  Italic(italic);
}

std::shared_ptr<StdFont> StdFont::Clone() const {
  auto copy = std::make_shared<StdFont>();
  copy->m_name = m_name;
  copy->m_size = m_size;
  copy->m_weight = m_weight;
  copy->m_charset = m_charset;
  copy->m_italic = m_italic;
  copy->m_underline = m_underline;
  copy->m_strikethrough = m_strikethrough;
  return copy;
}

void StdFont::Changed(const char16_t* property) { FontChanged(String(property)); }

void StdFont::Name(StringView value) {
  if (value.empty()) Raise(kErrInvalidPropertyValue, u"StdFont");
  if (m_name == value) return;
  m_name = String(value);
  Changed(u"Name");
}

void StdFont::Size(Currency value) {
  if (value.scaled <= 0 || value.scaled > kMaxSizeScaled) Raise(kErrInvalidPropertyValue, u"StdFont");
  if (m_size == value) return;
  m_size = value;
  Changed(u"Size");
}

void StdFont::Size(double points) {
  if (!std::isfinite(points) || points <= 0 || points > 2160) Raise(kErrInvalidPropertyValue, u"StdFont");
  Size(Currency::FromDouble(points));
}

void StdFont::Bold(bool value) { Weight(value ? kWeightBold : kWeightNormal); }

void StdFont::Italic(bool value) {
  if (m_italic == value) return;
  m_italic = value;
  Changed(u"Italic");
}

void StdFont::Underline(bool value) {
  if (m_underline == value) return;
  m_underline = value;
  Changed(u"Underline");
}

void StdFont::Strikethrough(bool value) {
  if (m_strikethrough == value) return;
  m_strikethrough = value;
  Changed(u"Strikethrough");
}

void StdFont::Weight(int16_t value) {
  if (value < 0 || value > 1000) Raise(kErrInvalidPropertyValue, u"StdFont");
  if (m_weight == value) return;
  bool wasBold = Bold();
  m_weight = value;
  Changed(u"Weight");
  if (wasBold != Bold()) Changed(u"Bold");
}

void StdFont::Charset(int16_t value) {
  if (value < 0 || value > 255) Raise(kErrInvalidPropertyValue, u"StdFont");
  if (m_charset == value) return;
  m_charset = value;
  Changed(u"Charset");
}

bool StdFont::SameAs(const StdFont& other) const {
  return FoldCase(m_name) == FoldCase(other.m_name) && m_size == other.m_size && m_weight == other.m_weight &&
         m_charset == other.m_charset && m_italic == other.m_italic && m_underline == other.m_underline &&
         m_strikethrough == other.m_strikethrough;
}

platform::LOGFONTW StdFont::ToLogFont(int dpi) const {
  platform::LOGFONTW lf;
  // Points to pixels: size * dpi / 72, with the size counted in ten-thousandths.
  lf.lfHeight = static_cast<platform::LONG>(-MulDivRound(m_size.scaled, dpi, 72 * Currency::kScale));
  lf.lfWeight = m_weight;
  lf.lfItalic = m_italic ? 1 : 0;
  lf.lfUnderline = m_underline ? 1 : 0;
  lf.lfStrikeOut = m_strikethrough ? 1 : 0;
  lf.lfCharSet = static_cast<platform::BYTE>(m_charset);
  size_t n = std::min<size_t>(m_name.size(), platform::LF_FACESIZE - 1);
  std::copy_n(m_name.begin(), n, lf.lfFaceName);
  lf.lfFaceName[n] = 0;
  return lf;
}

std::shared_ptr<StdFont> StdFont::FromLogFont(const platform::LOGFONTW& logFont, int dpi) {
  auto font = std::make_shared<StdFont>();
  size_t n = 0;
  while (n < platform::LF_FACESIZE && logFont.lfFaceName[n] != 0) ++n;
  if (n > 0) font->m_name.assign(logFont.lfFaceName, n);
  if (logFont.lfHeight != 0 && dpi > 0) {
    int64_t pixels = std::llabs(static_cast<int64_t>(logFont.lfHeight));
    int64_t scaled = MulDivRound(pixels * 72, Currency::kScale, dpi);
    font->m_size = Currency{std::clamp<int64_t>(scaled, 1, kMaxSizeScaled)};
  }
  font->m_weight = static_cast<int16_t>(std::clamp<int32_t>(logFont.lfWeight == 0 ? kWeightNormal : logFont.lfWeight,
                                                            0, 1000));
  font->m_italic = logFont.lfItalic != 0;
  font->m_underline = logFont.lfUnderline != 0;
  font->m_strikethrough = logFont.lfStrikeOut != 0;
  font->m_charset = logFont.lfCharSet;
  return font;
}

Variant StdFont::Invoke(StringView name, CallKind kind, std::span<Variant> args) {
  String member = FoldCase(name);
  bool let = kind == CallKind::Let;
  // Get or Let with the new value as the last argument; a method call reads like a Get.
  auto value = [&]() -> const Variant& {
    if (args.empty()) Raise(kErrWrongArgumentCount, u"StdFont");
    return args.back();
  };
  if (member.empty() || member == u"NAME") {
    if (let) Name(value().ToString());
    return let ? Variant() : Variant(m_name);
  }
  if (member == u"SIZE") {
    if (let) Size(value().ToCurrency());
    return let ? Variant() : Variant(m_size);
  }
  if (member == u"BOLD") {
    if (let) Bold(value().ToBoolean());
    return let ? Variant() : Variant(Bold());
  }
  if (member == u"ITALIC") {
    if (let) Italic(value().ToBoolean());
    return let ? Variant() : Variant(m_italic);
  }
  if (member == u"UNDERLINE") {
    if (let) Underline(value().ToBoolean());
    return let ? Variant() : Variant(m_underline);
  }
  if (member == u"STRIKETHROUGH") {
    if (let) Strikethrough(value().ToBoolean());
    return let ? Variant() : Variant(m_strikethrough);
  }
  if (member == u"WEIGHT") {
    if (let) Weight(value().ToInteger());
    return let ? Variant() : Variant(m_weight);
  }
  if (member == u"CHARSET") {
    if (let) Charset(value().ToInteger());
    return let ? Variant() : Variant(m_charset);
  }
  return Object::Invoke(name, kind, args);
}

}  // namespace mx::host
