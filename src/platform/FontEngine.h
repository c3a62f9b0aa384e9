#pragma once
// The text engine behind the font objects: it turns a LOGFONTW into an installed face at a pixel
// size (fontconfig finds the file, FreeType loads and renders it), keeps the faces and the
// rendered glyphs, and draws runs of glyphs into a surface within clip rectangles.
//
// Not a public header: code above the platform uses the functions of Text.h with HDC values.
//
// Everything here is per thread, as the rest of the platform is: each thread has its own
// engine, FreeType library and caches, so nothing is locked.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/LogFont.h"
#include "platform/Surface.h"
#include "platform/Types.h"

namespace mx::platform {

// One rendered glyph: an 8-bit coverage bitmap placed relative to the pen position on the
// baseline (left is rightwards, top is upwards, as FreeType gives them).
struct Glyph {
  int advance = 0;  // whole pixels
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  std::vector<uint8_t> coverage;  // width * height, top row first
};

// Metrics of a realised font in whole pixels.
struct FontMetrics {
  int ascent = 0;
  int descent = 0;
  int internalLeading = 0;
  int externalLeading = 0;
  int aveCharWidth = 0;
  int maxCharWidth = 0;
  int underlinePos = 0;  // offset of the underline's top edge below the baseline
  int underlineThickness = 1;
  int strikeoutPos = 0;  // offset of the strike-out line's top edge above the baseline
  int strikeoutThickness = 1;
  [[nodiscard]] int height() const { return ascent + descent; }
};

struct SizedFace;

// A LOGFONTW made real: a face at a size plus the decorations the description asks for.
class Font {
 public:
  [[nodiscard]] const FontMetrics& metrics() const { return m_metrics; }
  [[nodiscard]] const std::string& family() const { return m_family; }
  [[nodiscard]] const LOGFONTW& logFont() const { return m_logFont; }
  [[nodiscard]] bool underline() const { return m_logFont.lfUnderline != 0; }
  [[nodiscard]] bool strikeOut() const { return m_logFont.lfStrikeOut != 0; }
  [[nodiscard]] TEXTMETRICW textMetrics() const;

  // The glyph for one code point; a code point this face lacks comes from the fallback face,
  // and failing that from the face's own .notdef glyph. Never null.
  [[nodiscard]] const Glyph& glyph(char32_t cp) const;
  [[nodiscard]] int advance(char32_t cp) const { return glyph(cp).advance; }

 private:
  friend class FontEngine;
  LOGFONTW m_logFont{};
  std::string m_family;
  SizedFace* m_face = nullptr;
  FontMetrics m_metrics;
};

class FontEngine {
 public:
  // The engine of the calling thread, created on first use.
  [[nodiscard]] static FontEngine& instance();

  FontEngine();
  ~FontEngine();
  FontEngine(const FontEngine&) = delete;
  FontEngine& operator=(const FontEngine&) = delete;

  // The realised font for a description. The reference stays valid for the thread's lifetime.
  // Never fails while the Liberation fonts are installed; without any usable face at all it
  // throws std::runtime_error, which is an installation fault rather than bad input.
  [[nodiscard]] const Font& font(const LOGFONTW& lf);

  // The installed family that a classic face name stands for ("Arial" -> "Liberation Sans").
  // Names that are installed as they stand map to themselves; unknown ones to the default.
  [[nodiscard]] std::string resolveFamily(std::u16string_view faceName);

  // Number of glyph bitmaps held, over all faces (for tests of the cache).
  [[nodiscard]] size_t cachedGlyphCount() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> m_impl;
};

// The classic face names that resolveFamily maps to installed faces, in the classic spelling.
[[nodiscard]] std::vector<std::string> ClassicFaceNames();

// The description used when a DC has no font selected or a stale one.
[[nodiscard]] const LOGFONTW& DefaultLogFont();

// ---- Runs of text, shared by the text functions ------------------------------------------------

// One UTF-16 string decoded into code points; a surrogate pair is one code point, and a lone
// surrogate stands for itself (and draws as the missing glyph).
[[nodiscard]] std::u32string DecodeUtf16(std::u16string_view text);

// Sum of whole-pixel advances, no kerning.
[[nodiscard]] int RunWidth(const Font& font, std::u32string_view text);

// What a glyph run draws with: the colour, the clip rectangles (device coordinates, disjoint),
// and an extra rectangle every pixel must also lie in.
struct RunTarget {
  Surface* surface = nullptr;
  const std::vector<RECT>* clip = nullptr;
  const RECT* limit = nullptr;  // optional
  COLORREF color = 0;
};

// Draws glyphs with the pen starting at (x, baseline) in device coordinates. When dx is given,
// it holds the pen step after each code point instead of the advances. Underline and strike-out
// of the font are drawn across the run's width. Returns the run width.
int DrawRun(const RunTarget& target, const Font& font, std::u32string_view text, int x, int baseline,
            const int* dx = nullptr);

// Fills a rectangle (device coordinates) with a solid colour within the target's clip, alpha 0.
void FillDeviceRect(const RunTarget& target, RECT r);

// Narrow text in the Western code page (Windows-1252) as UTF-16; count -1 reads to the zero.
[[nodiscard]] std::u16string AnsiToUtf16(const char* text, int count);
// A counted or zero-terminated string as a view; null gives an empty view.
[[nodiscard]] std::u16string_view TextView(const char16_t* text, int count);

struct DeviceContext;
// The realised font selected into a DC (the default font when none or a stale one is).
[[nodiscard]] const Font& SelectedFont(const DeviceContext& dc);
// A run target drawing into the DC's surface within its clip, in the given colour.
[[nodiscard]] RunTarget TargetOf(DeviceContext& dc, COLORREF color, const RECT* limit = nullptr);

}  // namespace mx::platform
