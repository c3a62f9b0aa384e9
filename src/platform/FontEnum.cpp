#include "platform/FontEnum.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/DeviceContext.h"
#include "platform/FontEngine.h"

namespace mx::platform {

namespace {

// One family as the enumeration hands it out.
struct FamilyEntry {
  std::u16string name;
  LONG weight = 400;
  bool italic = false;
  bool fixedPitch = false;
  BYTE charSet = ANSI_CHARSET;
  int score = 0;  // distance from the regular style; the lowest face of a family wins
};

// Lower-case ASCII only: family names are compared the way the text engine compares them.
std::u16string Folded(std::u16string_view s) {
  std::u16string out(s);
  for (char16_t& c : out)
    if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c - u'A' + u'a');
  return out;
}

// fontconfig hands out UTF-8; a malformed sequence yields U+FFFD rather than a cut name.
std::u16string FromUtf8(std::string_view s) {
  std::u16string out;
  for (size_t i = 0; i < s.size();) {
    auto b = static_cast<unsigned char>(s[i]);
    int extra = b < 0x80 ? 0 : (b & 0xE0) == 0xC0 ? 1 : (b & 0xF0) == 0xE0 ? 2 : (b & 0xF8) == 0xF0 ? 3 : -1;
    char32_t cp = extra == 0 ? b : extra == 1 ? (b & 0x1F) : extra == 2 ? (b & 0x0F) : (b & 0x07);
    bool ok = extra >= 0 && i + static_cast<size_t>(extra) < s.size();
    for (int k = 1; ok && k <= extra; ++k) {
      auto c = static_cast<unsigned char>(s[i + k]);
      if ((c & 0xC0) != 0x80) ok = false;
      else cp = (cp << 6) | (c & 0x3F);
    }
    if (!ok) {
      out += u'\uFFFD';
      ++i;
      continue;
    }
    i += static_cast<size_t>(extra) + 1;
    if (cp >= 0x10000) {
      cp -= 0x10000;
      out += static_cast<char16_t>(0xD800 + (cp >> 10));
      out += static_cast<char16_t>(0xDC00 + (cp & 0x3FF));
    } else {
      out += static_cast<char16_t>(cp);
    }
  }
  return out;
}

// A name must fit a LOGFONTW with its terminating zero; a cut name would select another face.
bool Fits(std::u16string_view name) { return !name.empty() && name.size() < static_cast<size_t>(LF_FACESIZE); }

// Every scalable family fontconfig knows, keyed by folded name, each with its most regular face.
std::map<std::u16string, FamilyEntry> InstalledFamilies() {
  FcInit();
  std::map<std::u16string, FamilyEntry> families;
  FcPattern* pat = FcPatternCreate();
  FcPatternAddBool(pat, FC_SCALABLE, FcTrue);
  FcObjectSet* os = FcObjectSetBuild(FC_FAMILY, FC_WEIGHT, FC_SLANT, FC_SPACING, FC_CHARSET, nullptr);
  FcFontSet* set = FcFontList(nullptr, pat, os);
  for (int f = 0; set && f < set->nfont; ++f) {
    FcPattern* face = set->fonts[f];
    int weight = FC_WEIGHT_REGULAR;
    int slant = FC_SLANT_ROMAN;
    int spacing = FC_PROPORTIONAL;
    FcPatternGetInteger(face, FC_WEIGHT, 0, &weight);
    FcPatternGetInteger(face, FC_SLANT, 0, &slant);
    FcPatternGetInteger(face, FC_SPACING, 0, &spacing);
    FcCharSet* cs = nullptr;
    // A face without the Latin letters is a symbol face to the classic API.
    bool latin = FcPatternGetCharSet(face, FC_CHARSET, 0, &cs) == FcResultMatch && FcCharSetHasChar(cs, 'A') &&
                 FcCharSetHasChar(cs, 'a');
    FamilyEntry entry;
    entry.weight = std::clamp(FcWeightToOpenType(weight), 1, 1000);
    entry.italic = slant != FC_SLANT_ROMAN;
    entry.fixedPitch = spacing == FC_MONO || spacing == FC_CHARCELL;
    entry.charSet = latin ? ANSI_CHARSET : SYMBOL_CHARSET;
    entry.score = (entry.italic ? 10000 : 0) + std::abs(weight - FC_WEIGHT_REGULAR);
    FcChar8* name = nullptr;
    for (int i = 0; FcPatternGetString(face, FC_FAMILY, i, &name) == FcResultMatch; ++i) {
      entry.name = FromUtf8(reinterpret_cast<const char*>(name));
      if (!Fits(entry.name)) continue;
      auto [it, inserted] = families.emplace(Folded(entry.name), entry);
      if (!inserted && entry.score < it->second.score) it->second = entry;
    }
  }
  if (set) FcFontSetDestroy(set);
  FcObjectSetDestroy(os);
  FcPatternDestroy(pat);
  return families;
}

// The installed families plus the classic names, sorted by folded name (ties by the name as it
// stands, so the order never depends on fontconfig's).
std::vector<FamilyEntry> AllFamilies() {
  std::map<std::u16string, FamilyEntry> families = InstalledFamilies();
  FontEngine& engine = FontEngine::instance();
  for (const std::string& classic : ClassicFaceNames()) {
    std::u16string name = FromUtf8(classic);
    std::u16string key = Folded(name);
    if (families.contains(key)) continue;  // the real face is installed under that name
    // A classic name takes the style of the face it stands for; when that face is missing the
    // name leads nowhere and is not listed.
    auto target = families.find(Folded(FromUtf8(engine.resolveFamily(name))));
    if (target == families.end()) continue;
    FamilyEntry entry = target->second;
    entry.name = std::move(name);
    families.emplace(std::move(key), std::move(entry));
  }
  std::vector<FamilyEntry> out;
  out.reserve(families.size());
  for (auto& [key, entry] : families) out.push_back(std::move(entry));
  return out;
}

LOGFONTW LogFontOf(const FamilyEntry& e) {
  LOGFONTW lf;
  lf.lfWeight = e.weight;
  lf.lfItalic = e.italic ? 1 : 0;
  lf.lfCharSet = e.charSet;
  lf.lfOutPrecision = 3;   // OUT_STROKE_PRECIS, as outline faces report it
  lf.lfClipPrecision = 2;  // CLIP_STROKE_PRECIS
  lf.lfQuality = 1;        // DRAFT_QUALITY
  lf.lfPitchAndFamily = e.fixedPitch ? static_cast<BYTE>(FIXED_PITCH | FF_MODERN) : VARIABLE_PITCH;
  std::copy(e.name.begin(), e.name.end(), lf.lfFaceName);
  return lf;
}

}  // namespace

int EnumFontFamiliesExW(HDC hdc, const LOGFONTW* filter, const FONTENUMPROCW& proc, LPARAM lParam, DWORD flags) {
  if (!LookupDC(hdc) || !proc || flags != 0) return 0;
  std::u16string wanted;
  BYTE charSet = DEFAULT_CHARSET;
  if (filter) {
    size_t n = 0;
    while (n < static_cast<size_t>(LF_FACESIZE) && filter->lfFaceName[n]) ++n;
    wanted = Folded(std::u16string_view(filter->lfFaceName, n));
    charSet = filter->lfCharSet;
  }
  int last = 1;
  for (const FamilyEntry& e : AllFamilies()) {
    if (!wanted.empty() && Folded(e.name) != wanted) continue;
    if (charSet != DEFAULT_CHARSET && charSet != e.charSet) continue;
    LOGFONTW lf = LogFontOf(e);
    // Metrics at the default height, as the face that this very description selects has them.
    TEXTMETRICW tm = FontEngine::instance().font(lf).textMetrics();
    last = proc(&lf, &tm, TRUETYPE_FONTTYPE, lParam);
    if (last == 0) break;
  }
  return last;
}

int EnumFontFamiliesW(HDC hdc, const char16_t* family, const FONTENUMPROCW& proc, LPARAM lParam) {
  LOGFONTW filter;
  filter.lfCharSet = DEFAULT_CHARSET;
  if (family) {
    std::u16string_view name(family);
    // A name that cannot fit a LOGFONTW names no family.
    if (name.size() >= static_cast<size_t>(LF_FACESIZE)) return LookupDC(hdc) && proc ? 1 : 0;
    std::copy(name.begin(), name.end(), filter.lfFaceName);
  }
  return EnumFontFamiliesExW(hdc, &filter, proc, lParam, 0);
}

int EnumFontsW(HDC hdc, const char16_t* faceName, const FONTENUMPROCW& proc, LPARAM lParam) {
  return EnumFontFamiliesW(hdc, faceName, proc, lParam);
}

}  // namespace mx::platform
