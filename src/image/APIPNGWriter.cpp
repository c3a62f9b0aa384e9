// PNG writing with chunk properties.
#include "image/APIPNGWriter.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "host/DateTime.h"
#include "image/API32bppDIB.h"
#include "platform/Deflate.h"
#include "platform/PngEncoder.h"

namespace mx::image {

namespace {

// Latin-1 texts longer than this are compressed (zTXt); shorter ones are not worth it.
constexpr size_t kCompressAbove = 1024;

bool isTextKind(int32_t t) { return t >= txtTitle && t <= txtLargeBlockText && (t & (t - 1)) == 0; }

bool isLatin1(const host::String& s) {
  for (char16_t c : s)
    if (c > 0xFF) return false;
  return true;
}

bool validKeyword(const host::String& k) {
  if (k.empty() || k.size() > 79 || !isLatin1(k)) return false;
  if (k.front() == u' ' || k.back() == u' ') return false;
  for (size_t i = 0; i < k.size(); ++i) {
    char16_t c = k[i];
    // Printable Latin-1 only, and no run of two blanks.
    if (c < 32 || (c > 126 && c < 161)) return false;
    if (c == u' ' && i + 1 < k.size() && k[i + 1] == u' ') return false;
  }
  return true;
}

void appendLatin1(std::vector<uint8_t>& out, const host::String& s) {
  for (char16_t c : s) out.push_back(static_cast<uint8_t>(c));
}

platform::PngChunk chunk(const char* type, std::vector<uint8_t> data) {
  platform::PngChunk c;
  for (int i = 0; i < 4; ++i) c.type[i] = type[i];
  c.data = std::move(data);
  return c;
}

platform::Surface viewOf(const API32bppDIB& s) {
  platform::Surface v;
  v.width = s.Width();
  v.height = s.Height();
  v.bits = s.BitsPointer();
  v.stride = s.Width() * 4;
  v.bottomUp = true;
  return v;
}

}  // namespace

host::String APIPNGWriter::keywordFor(int32_t xType, const host::String& custom) {
  switch (xType) {
    case txtTitle: return u"Title";
    case txtAuthor: return u"Author";
    case txtDescription: return u"Description";
    case txtCopyright: return u"Copyright";
    case txtCreationTime: return u"Creation Time";
    case txtSoftware: return u"Software";
    case txtDisclaimer: return u"Disclaimer";
    case txtWarning: return u"Warning";
    case txtSource: return u"Source";
    case txtComment: return u"Comment";
    case txtLargeBlockText: return custom;
    case dateTimeModified: return u"tIME";
    case clrDefaultBkg: return u"bKGD";
    default: return {};
  }
}

bool APIPNGWriter::PropertySet(int32_t xType, const host::Variant& Value, const host::String& Keyword) {
  host::String key = keywordFor(xType, Keyword);
  if (key.empty() || (xType == txtLargeBlockText && !validKeyword(key))) return false;
  auto it = std::find_if(m_props.begin(), m_props.end(),
                         [&](const Property& p) { return p.type == xType && p.keyword == key; });
  if (Value.IsMissing()) {
    if (it != m_props.end()) m_props.erase(it);
    return true;
  }
  host::Variant stored;
  try {
    if (xType == dateTimeModified) {
      stored = host::Variant(host::DateValue{Value.ToDate()});
    } else if (xType == clrDefaultBkg) {
      stored = host::Variant(Value.ToLong());
    } else {
      stored = host::Variant(Value.ToString());
    }
  } catch (...) {
    return false;  // a value that does not convert to the property's kind
  }
  if (it != m_props.end()) {
    it->value = std::move(stored);
  } else {
    m_props.push_back(Property{xType, std::move(key), std::move(stored)});
  }
  return true;
}

host::Variant APIPNGWriter::PropertyGet(int32_t xType, const host::String& Keyword) const {
  host::String key = keywordFor(xType, Keyword);
  for (const Property& p : m_props)
    if (p.type == xType && p.keyword == key) return p.value;
  if (xType == clrDefaultBkg) return host::Variant(int32_t{-1});
  if (xType == dateTimeModified) return host::Variant::FromDate(0);
  return host::Variant(host::String());
}

std::vector<uint8_t> APIPNGWriter::encode(const API32bppDIB& surface) const {
  if (!surface.Handle()) return {};
  platform::PngEncodeOptions options;
  options.premultiplied = true;
  options.dropAlpha = surface.Alpha() == AlphaNone;

  const Property* background = nullptr;
  const Property* time = nullptr;
  for (const Property& p : m_props) {
    if (p.type == clrDefaultBkg) background = &p;
    if (p.type == dateTimeModified) time = &p;
  }
  if (background) {
    int32_t c = background->value.ToLong();
    // A negative colour means "none": the property is kept but writes nothing.
    if (c >= 0) {
      std::vector<uint8_t> d;
      for (int shift : {0, 8, 16}) {
        d.push_back(0);
        d.push_back(static_cast<uint8_t>(c >> shift));
      }
      options.extraChunks.push_back(chunk("bKGD", std::move(d)));
    }
  }
  if (time) {
    double t = time->value.ToDouble();
    int year = host::Year(t);
    if (year > 0) {
      std::vector<uint8_t> d = {static_cast<uint8_t>(year >> 8),      static_cast<uint8_t>(year),
                                static_cast<uint8_t>(host::Month(t)), static_cast<uint8_t>(host::Day(t)),
                                static_cast<uint8_t>(host::Hour(t)),  static_cast<uint8_t>(host::Minute(t)),
                                static_cast<uint8_t>(host::Second(t))};
      options.extraChunks.push_back(chunk("tIME", std::move(d)));
    }
  }
  for (const Property& p : m_props) {
    if (!isTextKind(p.type)) continue;
    host::String text = p.value.ToString();
    std::vector<uint8_t> d;
    appendLatin1(d, p.keyword);
    d.push_back(0);
    if (!isLatin1(text)) {
      // iTXt: not compressed, no language, no translated keyword, UTF-8 text.
      d.insert(d.end(), {0, 0, 0, 0});
      std::string utf8 = host::ToUtf8(text);
      d.insert(d.end(), utf8.begin(), utf8.end());
      options.extraChunks.push_back(chunk("iTXt", std::move(d)));
    } else if (text.size() > kCompressAbove) {
      std::vector<uint8_t> raw;
      appendLatin1(raw, text);
      d.push_back(0);  // compression method: zlib
      std::vector<uint8_t> z = platform::ZlibCompress(raw);
      d.insert(d.end(), z.begin(), z.end());
      options.extraChunks.push_back(chunk("zTXt", std::move(d)));
    } else {
      appendLatin1(d, text);
      options.extraChunks.push_back(chunk("tEXt", std::move(d)));
    }
  }
  return platform::EncodePng(viewOf(surface), options);
}

std::vector<uint8_t> APIPNGWriter::Encode(const API32bppDIB& surface) { return APIPNGWriter().encode(surface); }

bool APIPNGWriter::SaveToPNG(const API32bppDIB& surface, const host::String& FileName,
                             std::vector<uint8_t>& outBytes) const {
  if (!surface.Handle()) return false;
  std::vector<uint8_t> png;
  try {
    png = encode(surface);
  } catch (...) {
    return false;
  }
  if (png.empty()) return false;
  if (FileName.empty()) {
    outBytes = std::move(png);
    return true;
  }
  std::string path = host::ToUtf8(FileName);
  std::FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return false;
  bool ok = std::fwrite(png.data(), 1, png.size(), f) == png.size();
  if (std::fclose(f) != 0) ok = false;
  if (!ok) std::remove(path.c_str());
  return ok;
}

}  // namespace mx::image
