#include "platform/FontEngine.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_DRIVER_H
#include FT_MODULE_H
#include FT_SYNTHESIS_H
#include FT_TRUETYPE_TABLES_H

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <mutex>
#include <stdexcept>

namespace mx::platform {

namespace {

// Classic face names and the installed faces that stand in for them. The Liberation faces are
// metric-compatible with the faces they replace, so captions measure the same; Tahoma is the
// narrow sibling of Verdana, as DejaVu Sans Condensed is of DejaVu Sans.
struct Substitute {
  const char* classic;  // as the classic system spells it; matched without regard to case
  const char* installed;
};
constexpr Substitute kSubstitutes[] = {
    {"Arial", "Liberation Sans"},
    {"Helvetica", "Liberation Sans"},
    {"MS Sans Serif", "Liberation Sans"},
    {"Microsoft Sans Serif", "Liberation Sans"},
    {"MS Shell Dlg", "Liberation Sans"},
    {"MS Shell Dlg 2", "Liberation Sans"},
    {"Segoe UI", "Liberation Sans"},
    {"System", "Liberation Sans"},
    {"Tahoma", "DejaVu Sans Condensed"},
    {"Verdana", "DejaVu Sans"},
    {"Times New Roman", "Liberation Serif"},
    {"Times", "Liberation Serif"},
    {"MS Serif", "Liberation Serif"},
    {"Courier New", "Liberation Mono"},
    {"Courier", "Liberation Mono"},
    {"Lucida Console", "Liberation Mono"},
    {"Consolas", "Liberation Mono"},
    {"Fixedsys", "Liberation Mono"},
    {"Terminal", "Liberation Mono"},
};
constexpr const char* kDefaultFamily = "Liberation Sans";
// Code points a face lacks are taken from this face, which covers far more of Unicode.
constexpr const char* kFallbackFamily = "DejaVu Sans";

// A cell height of 16 pixels when a description leaves the height to the system.
constexpr LONG kDefaultCellHeight = 16;
// Sizes beyond this are clamped: a glyph cache of giant bitmaps helps nobody.
constexpr int64_t kMaxPixelSize = 2048;

// Fixed load flags: hinted outlines, no embedded bitmaps, grey anti-aliasing. The same FreeType
// and the same font files therefore give the same pixels on every run.
constexpr FT_Int32 kLoadFlags = FT_LOAD_NO_BITMAP | FT_LOAD_TARGET_NORMAL;
constexpr FT_Int32 kLoadFlagsMono = FT_LOAD_NO_BITMAP | FT_LOAD_TARGET_MONO;
constexpr BYTE NONANTIALIASED_QUALITY = 3;

std::string ToUtf8(std::u16string_view s) {
  std::string out;
  std::u32string cps = DecodeUtf16(s);
  for (char32_t c : cps) {
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else if (c < 0x800) {
      out += static_cast<char>(0xC0 | (c >> 6));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      out += static_cast<char>(0xE0 | (c >> 12));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
      out += static_cast<char>(0xF0 | (c >> 18));
      out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return out;
}

std::string Lower(std::string s) {
  for (char& c : s)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return s;
}

std::string Trimmed(std::string s) {
  size_t b = s.find_first_not_of(' ');
  if (b == std::string::npos) return {};
  size_t e = s.find_last_not_of(' ');
  return s.substr(b, e - b + 1);
}

// Rounds a / b to the nearest integer, halves away from zero; b > 0.
int64_t RoundDiv(int64_t a, int64_t b) { return a >= 0 ? (a + b / 2) / b : -((-a + b / 2) / b); }

void EnsureFontconfig() {
  static std::once_flag once;
  std::call_once(once, [] {
    FcInit();
    // Hand fontconfig's caches back at exit, so that leak checkers see only real leaks.
    std::atexit([] { FcFini(); });
  });
}

// The face name as stored in a LOGFONTW: up to the first zero, at most LF_FACESIZE units.
std::u16string_view FaceNameOf(const LOGFONTW& lf) {
  size_t n = 0;
  while (n < static_cast<size_t>(LF_FACESIZE) && lf.lfFaceName[n]) ++n;
  return {lf.lfFaceName, n};
}

}  // namespace

// One face file opened at one pixel size, with the glyphs rendered from it so far.
struct SizedFace {
  FT_Face face = nullptr;
  bool synthBold = false;
  bool synthItalic = false;
  bool mono = false;
  SizedFace* fallback = nullptr;  // null when this is the fallback face itself
  std::unordered_map<char32_t, Glyph> glyphs;

  ~SizedFace() {
    if (face) FT_Done_Face(face);
  }

  // Renders glyph index gid into out; false when FreeType cannot.
  bool render(FT_UInt gid, Glyph& out) {
    if (FT_Load_Glyph(face, gid, mono ? kLoadFlagsMono : kLoadFlags) != 0) return false;
    FT_GlyphSlot slot = face->glyph;
    if (synthItalic) FT_GlyphSlot_Oblique(slot);
    if (synthBold) FT_GlyphSlot_Embolden(slot);
    if (FT_Render_Glyph(slot, mono ? FT_RENDER_MODE_MONO : FT_RENDER_MODE_NORMAL) != 0) return false;
    const FT_Bitmap& bm = slot->bitmap;
    out.advance = static_cast<int>((slot->advance.x + 32) >> 6);
    out.left = slot->bitmap_left;
    out.top = slot->bitmap_top;
    out.width = static_cast<int>(bm.width);
    out.height = static_cast<int>(bm.rows);
    out.coverage.assign(static_cast<size_t>(out.width) * out.height, 0);
    for (int y = 0; y < out.height; ++y) {
      const unsigned char* src = bm.buffer + static_cast<intptr_t>(y) * bm.pitch;
      uint8_t* dst = out.coverage.data() + static_cast<size_t>(y) * out.width;
      if (bm.pixel_mode == FT_PIXEL_MODE_MONO) {
        for (int x = 0; x < out.width; ++x) dst[x] = (src[x >> 3] & (0x80 >> (x & 7))) ? 255 : 0;
      } else if (bm.pixel_mode == FT_PIXEL_MODE_GRAY) {
        // 256 grey levels are the norm; other level counts are scaled to 0..255.
        if (bm.num_grays == 256) {
          std::memcpy(dst, src, static_cast<size_t>(out.width));
        } else {
          for (int x = 0; x < out.width; ++x) dst[x] = static_cast<uint8_t>(src[x] * 255 / (bm.num_grays - 1));
        }
      } else {
        return false;
      }
    }
    return true;
  }

  const Glyph& glyph(char32_t cp) {
    auto it = glyphs.find(cp);
    if (it != glyphs.end()) return it->second;
    Glyph g;
    FT_UInt gid = FT_Get_Char_Index(face, cp);
    bool done = false;
    if (gid == 0 && fallback) {
      FT_UInt fgid = FT_Get_Char_Index(fallback->face, cp);
      if (fgid != 0) done = fallback->render(fgid, g);
    }
    if (!done && !render(gid, g)) g = Glyph{};  // an empty glyph rather than a failure
    return glyphs.emplace(cp, std::move(g)).first->second;
  }
};

TEXTMETRICW Font::textMetrics() const {
  TEXTMETRICW tm;
  tm.tmHeight = m_metrics.height();
  tm.tmAscent = m_metrics.ascent;
  tm.tmDescent = m_metrics.descent;
  tm.tmInternalLeading = m_metrics.internalLeading;
  tm.tmExternalLeading = m_metrics.externalLeading;
  tm.tmAveCharWidth = m_metrics.aveCharWidth;
  tm.tmMaxCharWidth = m_metrics.maxCharWidth;
  tm.tmWeight = m_logFont.lfWeight > 0 ? m_logFont.lfWeight : 400;
  tm.tmOverhang = 0;
  tm.tmItalic = m_logFont.lfItalic ? 1 : 0;
  tm.tmUnderlined = m_logFont.lfUnderline ? 1 : 0;
  tm.tmStruckOut = m_logFont.lfStrikeOut ? 1 : 0;
  tm.tmCharSet = m_logFont.lfCharSet;
  // Low bit set means variable pitch (the classic sense of the bit is inverted); 0x06 says a
  // TrueType vector face.
  bool fixed = m_face && FT_IS_FIXED_WIDTH(m_face->face);
  tm.tmPitchAndFamily = static_cast<BYTE>((fixed ? 0 : 1) | 0x06 | (m_logFont.lfPitchAndFamily & 0xF0));
  return tm;
}

const Glyph& Font::glyph(char32_t cp) const { return m_face->glyph(cp); }

struct FontEngine::Impl {
  FT_Library library = nullptr;
  std::unordered_map<std::string, std::unique_ptr<SizedFace>> faces;
  std::unordered_map<std::string, std::unique_ptr<Font>> fonts;
  std::unordered_map<std::string, std::string> families;  // lower-case name -> installed family
  // Font files read once and shared by every size of their faces: a face opened from a path
  // would hold the file open for its lifetime, one descriptor per size.
  std::unordered_map<std::string, std::vector<FT_Byte>> files;

  // Opens a face from the file's bytes; false when the file cannot be read or parsed.
  bool openFace(const std::string& path, int index, FT_Face* face) {
    auto it = files.find(path);
    if (it == files.end()) {
      std::ifstream in(path, std::ios::binary);
      if (!in) return false;
      std::vector<FT_Byte> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
      if (bytes.empty()) return false;
      it = files.emplace(path, std::move(bytes)).first;
    }
    return FT_New_Memory_Face(library, it->second.data(), static_cast<FT_Long>(it->second.size()), index, face) == 0;
  }

  ~Impl() {
    fonts.clear();
    faces.clear();  // faces before the library that owns them
    if (library) FT_Done_FreeType(library);
  }

  // True when fontconfig knows a face whose family list holds this name exactly.
  static bool familyInstalled(const std::string& family) {
    EnsureFontconfig();
    FcPattern* pat = FcPatternCreate();
    FcPatternAddString(pat, FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
    FcConfigSubstitute(nullptr, pat, FcMatchPattern);
    FcDefaultSubstitute(pat);
    FcResult result;
    FcPattern* match = FcFontMatch(nullptr, pat, &result);
    bool found = false;
    if (match) {
      FcChar8* name = nullptr;
      for (int i = 0; FcPatternGetString(match, FC_FAMILY, i, &name) == FcResultMatch; ++i) {
        if (Lower(reinterpret_cast<const char*>(name)) == Lower(family)) {
          found = true;
          break;
        }
      }
      FcPatternDestroy(match);
    }
    FcPatternDestroy(pat);
    return found;
  }

  struct FaceFile {
    std::string path;
    int index = 0;
    bool isBold = false;
    bool isItalic = false;
  };

  // The file fontconfig picks for a family and style. Whether that file really is bold or
  // italic is read from the face itself: for a family with one style, fontconfig reports the
  // style that was asked for rather than the one the file has.
  bool findFile(const std::string& family, bool bold, bool italic, FaceFile& out) {
    EnsureFontconfig();
    FcPattern* pat = FcPatternCreate();
    FcPatternAddString(pat, FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
    FcPatternAddInteger(pat, FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(pat, FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(pat, FC_SCALABLE, FcTrue);
    FcConfigSubstitute(nullptr, pat, FcMatchPattern);
    FcDefaultSubstitute(pat);
    FcResult result;
    FcPattern* match = FcFontMatch(nullptr, pat, &result);
    bool ok = false;
    if (match) {
      FcChar8* file = nullptr;
      if (FcPatternGetString(match, FC_FILE, 0, &file) == FcResultMatch) {
        out.path = reinterpret_cast<const char*>(file);
        int index = 0;
        FcPatternGetInteger(match, FC_INDEX, 0, &index);
        out.index = index;
        FT_Face probe = nullptr;
        if (openFace(out.path, index, &probe)) {
          auto* os2 = static_cast<TT_OS2*>(FT_Get_Sfnt_Table(probe, FT_SFNT_OS2));
          out.isBold = (os2 && os2->version != 0xFFFF) ? os2->usWeightClass >= 600
                                                       : (probe->style_flags & FT_STYLE_FLAG_BOLD) != 0;
          out.isItalic = (probe->style_flags & FT_STYLE_FLAG_ITALIC) != 0;
          FT_Done_Face(probe);
          ok = true;
        }
      }
      FcPatternDestroy(match);
    }
    FcPatternDestroy(pat);
    return ok;
  }

  std::string resolveFamily(std::u16string_view faceName) {
    std::string key = Lower(Trimmed(ToUtf8(faceName)));
    auto it = families.find(key);
    if (it != families.end()) return it->second;
    std::string family = kDefaultFamily;
    bool substituted = false;
    for (const Substitute& s : kSubstitutes) {
      if (key == Lower(s.classic)) {
        family = s.installed;
        substituted = true;
        break;
      }
    }
    // Any other name is used when it is installed under exactly that name; fontconfig's own
    // guess for an unknown name differs between machines, so it is not taken.
    if (!substituted && !key.empty() && familyInstalled(Trimmed(ToUtf8(faceName))))
      family = Trimmed(ToUtf8(faceName));
    families.emplace(key, family);
    return family;
  }

  SizedFace* sizedFace(const FaceFile& file, int xppem, int ppem, bool synthBold, bool synthItalic, bool mono) {
    std::string key = file.path + '|' + std::to_string(file.index) + '|' + std::to_string(xppem) + '|' +
                      std::to_string(ppem) + '|' + char('0' + synthBold) + char('0' + synthItalic) +
                      char('0' + mono);
    auto it = faces.find(key);
    if (it != faces.end()) return it->second.get();
    auto sf = std::make_unique<SizedFace>();
    if (!openFace(file.path, file.index, &sf->face)) {
      sf->face = nullptr;
      return nullptr;
    }
    if (FT_Set_Pixel_Sizes(sf->face, static_cast<FT_UInt>(xppem), static_cast<FT_UInt>(ppem)) != 0) return nullptr;
    sf->synthBold = synthBold;
    sf->synthItalic = synthItalic;
    sf->mono = mono;
    SizedFace* raw = sf.get();
    faces.emplace(std::move(key), std::move(sf));
    return raw;
  }
};

FontEngine& FontEngine::instance() {
  static thread_local FontEngine engine;
  return engine;
}

FontEngine::FontEngine() : m_impl(std::make_unique<Impl>()) {
  if (FT_Init_FreeType(&m_impl->library) != 0) {
    m_impl->library = nullptr;
    return;
  }
  // Pin the hinting engines rather than take FreeType's defaults, which a FREETYPE_PROPERTIES
  // setting in the environment could change: the same files then give the same pixels.
  FT_UInt interpreter = TT_INTERPRETER_VERSION_40;
  FT_Property_Set(m_impl->library, "truetype", "interpreter-version", &interpreter);
  FT_Bool noStemDarkening = 1;
  FT_Property_Set(m_impl->library, "autofitter", "no-stem-darkening", &noStemDarkening);
}

FontEngine::~FontEngine() = default;

std::string FontEngine::resolveFamily(std::u16string_view faceName) { return m_impl->resolveFamily(faceName); }

std::vector<std::string> ClassicFaceNames() {
  std::vector<std::string> names;
  for (const Substitute& s : kSubstitutes) names.emplace_back(s.classic);
  return names;
}

size_t FontEngine::cachedGlyphCount() const {
  size_t n = 0;
  for (const auto& [key, face] : m_impl->faces) n += face->glyphs.size();
  return n;
}

const Font& FontEngine::font(const LOGFONTW& lfIn) {
  Impl& impl = *m_impl;
  if (!impl.library) throw std::runtime_error("FreeType could not be initialised");

  LOGFONTW lf = lfIn;
  // Fields that make no difference to the result are normalised so that equal fonts share
  // one cache entry.
  std::u16string_view faceName = FaceNameOf(lf);
  bool bold = lf.lfWeight >= 600;
  bool italic = lf.lfItalic != 0;
  bool mono = lf.lfQuality == NONANTIALIASED_QUALITY;
  int64_t height = lf.lfHeight == 0 ? kDefaultCellHeight : lf.lfHeight;
  int64_t width = std::clamp<int64_t>(lf.lfWidth, 0, kMaxPixelSize);

  std::string key = ToUtf8(faceName) + '|' + std::to_string(height) + '|' + std::to_string(width) + '|' +
                    char('0' + bold) + char('0' + italic) + char('0' + mono) + char('0' + (lf.lfUnderline != 0)) +
                    char('0' + (lf.lfStrikeOut != 0)) + '|' + std::to_string(lf.lfWeight) + '|' +
                    std::to_string(lf.lfCharSet) + '|' + std::to_string(lf.lfPitchAndFamily);
  auto found = impl.fonts.find(key);
  if (found != impl.fonts.end()) return *found->second;

  std::string family = impl.resolveFamily(faceName);
  Impl::FaceFile file;
  if (!impl.findFile(family, bold, italic, file) && !impl.findFile(kDefaultFamily, bold, italic, file))
    throw std::runtime_error("no usable font face is installed");

  // Unscaled metrics come from a probe of the file at a nominal size.
  FT_Face probe = nullptr;
  if (!impl.openFace(file.path, file.index, &probe))
    throw std::runtime_error("font file could not be opened: " + file.path);
  int64_t upem = probe->units_per_EM > 0 ? probe->units_per_EM : 2048;
  int64_t winAscent = probe->ascender, winDescent = -probe->descender;
  int64_t hheaAscent = probe->ascender, hheaDescent = -probe->descender, lineGap = probe->height - (hheaAscent + hheaDescent);
  int64_t avgWidth = 0, strikePos = 0, strikeSize = 0;
  if (auto* hhea = static_cast<TT_HoriHeader*>(FT_Get_Sfnt_Table(probe, FT_SFNT_HHEA))) {
    hheaAscent = hhea->Ascender;
    hheaDescent = -hhea->Descender;
    lineGap = hhea->Line_Gap;
  }
  if (auto* os2 = static_cast<TT_OS2*>(FT_Get_Sfnt_Table(probe, FT_SFNT_OS2)); os2 && os2->version != 0xFFFF) {
    // The classic line height is built from these two, not from the typographic values.
    if (os2->usWinAscent + os2->usWinDescent > 0) {
      winAscent = os2->usWinAscent;
      winDescent = os2->usWinDescent;
    }
    avgWidth = os2->xAvgCharWidth;
    strikePos = os2->yStrikeoutPosition;
    strikeSize = os2->yStrikeoutSize;
  }
  int64_t underlinePos = probe->underline_position, underlineThick = probe->underline_thickness;
  int64_t maxAdvance = probe->max_advance_width;
  FT_Done_Face(probe);
  int64_t cellUnits = std::max<int64_t>(1, winAscent + winDescent);

  // Negative heights give the em size; positive ones the cell (ascent + descent), which is
  // then kept exactly, so a font asked for 16 pixels measures 16 pixels high.
  int64_t ppem, ascent, descent;
  if (height < 0) {
    ppem = std::clamp<int64_t>(-height, 1, kMaxPixelSize);
    ascent = RoundDiv(winAscent * ppem, upem);
    descent = RoundDiv(winDescent * ppem, upem);
  } else {
    int64_t cell = std::clamp<int64_t>(height, 1, kMaxPixelSize);
    ppem = std::max<int64_t>(1, RoundDiv(cell * upem, cellUnits));
    ascent = RoundDiv(cell * winAscent, cellUnits);
    descent = cell - ascent;
  }
  int64_t xppem = ppem;
  if (width > 0 && avgWidth > 0) xppem = std::clamp<int64_t>(RoundDiv(width * upem, avgWidth), 1, kMaxPixelSize);

  bool synthBold = bold && !file.isBold;
  bool synthItalic = italic && !file.isItalic;
  SizedFace* face = impl.sizedFace(file, static_cast<int>(xppem), static_cast<int>(ppem), synthBold, synthItalic, mono);
  if (!face) throw std::runtime_error("font face could not be sized: " + file.path);
  if (family != kFallbackFamily && !face->fallback) {
    Impl::FaceFile fb;
    if (impl.findFile(kFallbackFamily, bold, italic, fb) && fb.path != file.path)
      face->fallback = impl.sizedFace(fb, static_cast<int>(xppem), static_cast<int>(ppem), bold && !fb.isBold,
                                      italic && !fb.isItalic, mono);
  }

  auto font = std::make_unique<Font>();
  font->m_logFont = lf;
  font->m_family = family;
  font->m_face = face;
  FontMetrics& m = font->m_metrics;
  m.ascent = static_cast<int>(ascent);
  m.descent = static_cast<int>(std::max<int64_t>(0, descent));
  m.internalLeading = std::max(0, m.height() - static_cast<int>(ppem));
  int64_t gapUnits = lineGap - (cellUnits - (hheaAscent + hheaDescent));
  m.externalLeading = static_cast<int>(std::max<int64_t>(0, RoundDiv(gapUnits * ppem, upem)));
  m.aveCharWidth = static_cast<int>(RoundDiv(avgWidth * xppem, upem));
  if (m.aveCharWidth <= 0) m.aveCharWidth = font->advance(U'x');
  m.maxCharWidth = static_cast<int>((maxAdvance * xppem + upem - 1) / upem);

  m.underlineThickness = static_cast<int>(std::max<int64_t>(1, RoundDiv(underlineThick * ppem, upem)));
  // The underline position is the centre of the stroke, negative below the baseline.
  m.underlinePos = static_cast<int>(RoundDiv(-underlinePos * ppem, upem)) - m.underlineThickness / 2;
  if (m.underlinePos < 1) m.underlinePos = 1;
  if (m.underlinePos + m.underlineThickness > m.descent) m.underlinePos = std::max(1, m.descent - m.underlineThickness);
  if (strikeSize <= 0) strikeSize = underlineThick;
  if (strikePos <= 0) strikePos = winAscent / 3;
  m.strikeoutThickness = static_cast<int>(std::max<int64_t>(1, RoundDiv(strikeSize * ppem, upem)));
  m.strikeoutPos = static_cast<int>(RoundDiv(strikePos * ppem, upem));

  const Font& out = *font;
  impl.fonts.emplace(std::move(key), std::move(font));
  return out;
}

const LOGFONTW& DefaultLogFont() {
  static const LOGFONTW lf = [] {
    LOGFONTW f;
    f.lfHeight = kDefaultCellHeight;
    f.lfWeight = 400;
    return f;
  }();
  return lf;
}

// ---- Runs ----------------------------------------------------------------------------------------

std::u32string DecodeUtf16(std::u16string_view text) {
  std::u32string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    char16_t c = text[i];
    if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
      out += static_cast<char32_t>(0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00));
      ++i;
    } else {
      out += static_cast<char32_t>(c);
    }
  }
  return out;
}

int RunWidth(const Font& font, std::u32string_view text) {
  int w = 0;
  for (char32_t c : text) w += font.advance(c);
  return w;
}

namespace {

RECT Intersect(const RECT& a, const RECT& b) {
  return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right), std::min(a.bottom, b.bottom)};
}

// Calls fn(rect) for every clip rectangle cut down to the area, the limit and the surface.
template <class Fn>
void ForEachClipped(const RunTarget& t, RECT area, Fn&& fn) {
  if (!t.surface || t.surface->empty() || !t.clip) return;
  area = Intersect(area, RECT{0, 0, t.surface->width, t.surface->height});
  if (t.limit) area = Intersect(area, *t.limit);
  if (area.empty()) return;
  for (const RECT& c : *t.clip) {
    RECT r = Intersect(area, c);
    if (!r.empty()) fn(r);
  }
}

}  // namespace

void FillDeviceRect(const RunTarget& target, RECT r) {
  // Fills know nothing of alpha: the colour goes in with the alpha byte at 0.
  uint32_t px = (static_cast<uint32_t>(GetRValue(target.color)) << 16) |
                (static_cast<uint32_t>(GetGValue(target.color)) << 8) | GetBValue(target.color);
  ForEachClipped(target, r, [&](const RECT& c) {
    for (int y = c.top; y < c.bottom; ++y) {
      uint32_t* row = target.surface->row(y);
      std::fill(row + c.left, row + c.right, px);
    }
  });
}

int DrawRun(const RunTarget& target, const Font& font, std::u32string_view text, int x, int baseline, const int* dx) {
  const int tr = GetRValue(target.color), tg = GetGValue(target.color), tb = GetBValue(target.color);
  int pen = x;
  for (size_t i = 0; i < text.size(); ++i) {
    const Glyph& g = font.glyph(text[i]);
    if (g.width > 0 && g.height > 0) {
      const int gx = pen + g.left;
      const int gy = baseline - g.top;
      ForEachClipped(target, RECT{gx, gy, gx + g.width, gy + g.height}, [&](const RECT& c) {
        for (int y = c.top; y < c.bottom; ++y) {
          const uint8_t* cov = g.coverage.data() + static_cast<size_t>(y - gy) * g.width + (c.left - gx);
          uint32_t* row = target.surface->row(y);
          for (int px = c.left; px < c.right; ++px) {
            const int a = cov[px - c.left];
            if (a == 0) continue;
            const uint32_t d = row[px];
            // Per channel: dst + (text - dst) * coverage / 255, truncating; alpha becomes 0.
            const int dr = (d >> 16) & 0xFF, dg = (d >> 8) & 0xFF, db = d & 0xFF;
            const int r = dr + (tr - dr) * a / 255;
            const int gg = dg + (tg - dg) * a / 255;
            const int b = db + (tb - db) * a / 255;
            row[px] = (static_cast<uint32_t>(r) << 16) | (static_cast<uint32_t>(gg) << 8) | static_cast<uint32_t>(b);
          }
        }
      });
    }
    pen += dx ? dx[i] : g.advance;
  }
  const int width = pen - x;
  if (width > 0) {
    const FontMetrics& m = font.metrics();
    int left = std::min(x, pen), right = std::max(x, pen);
    if (font.underline()) {
      int top = baseline + m.underlinePos;
      FillDeviceRect(target, RECT{left, top, right, top + m.underlineThickness});
    }
    if (font.strikeOut()) {
      int top = baseline - m.strikeoutPos;
      FillDeviceRect(target, RECT{left, top, right, top + m.strikeoutThickness});
    }
  }
  return width;
}

}  // namespace mx::platform
