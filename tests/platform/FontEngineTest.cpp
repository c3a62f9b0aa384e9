// The font engine without device contexts: face lookup, the height rules, glyph selection and
// the pixels a run of glyphs leaves on a surface.
#include <gtest/gtest.h>

#include <vector>

#include "platform/FontEngine.h"

namespace mx::platform {
namespace {

LOGFONTW MakeFont(std::u16string_view face, LONG height, LONG weight = 400) {
  LOGFONTW lf;
  lf.lfHeight = height;
  lf.lfWeight = weight;
  for (size_t i = 0; i < face.size() && i + 1 < LF_FACESIZE; ++i) lf.lfFaceName[i] = face[i];
  return lf;
}

// A top-down surface of its own memory, filled with one pixel value.
struct Canvas {
  std::vector<uint32_t> pixels;
  Surface surface;
  std::vector<RECT> clip;
  Canvas(int w, int h, uint32_t fill) : pixels(static_cast<size_t>(w) * h, fill) {
    surface.width = w;
    surface.height = h;
    surface.bits = reinterpret_cast<uint8_t*>(pixels.data());
    surface.stride = w * 4;
    surface.bottomUp = false;
    clip = {RECT{0, 0, w, h}};
  }
  [[nodiscard]] uint32_t at(int x, int y) const { return pixels[static_cast<size_t>(y) * surface.width + x]; }
  [[nodiscard]] RunTarget target(COLORREF color) {
    RunTarget t;
    t.surface = &surface;
    t.clip = &clip;
    t.color = color;
    return t;
  }
};

TEST(FontEngine, ClassicNamesMapToInstalledFaces) {
  FontEngine& e = FontEngine::instance();
  EXPECT_EQ(e.resolveFamily(u"  microsoft SANS serif "), "Liberation Sans");  // case and blanks
  EXPECT_EQ(e.resolveFamily(u"Tahoma"), "DejaVu Sans Condensed");
  EXPECT_EQ(e.resolveFamily(u"Times New Roman"), "Liberation Serif");
  EXPECT_EQ(e.resolveFamily(u"Lucida Console"), "Liberation Mono");
  // The files behind the names are the right ones: the condensed face is narrower, the
  // monospaced one has one advance for all, the serif face differs from the sans one.
  const std::u32string sample = U"Wide iii MMM";
  EXPECT_LT(RunWidth(e.font(MakeFont(u"Tahoma", -12)), sample), RunWidth(e.font(MakeFont(u"Verdana", -12)), sample));
  const Font& mono = e.font(MakeFont(u"Courier New", -12));
  EXPECT_EQ(mono.advance(U'i'), mono.advance(U'M'));
  EXPECT_EQ(mono.textMetrics().tmPitchAndFamily & 1, 0);
  EXPECT_NE(e.font(MakeFont(u"Times New Roman", -12)).glyph(U'T').coverage,
            e.font(MakeFont(u"Arial", -12)).glyph(U'T').coverage);
  // An installed family is used as it stands; anything else gets the default face rather than
  // whatever the machine's font configuration would guess.
  EXPECT_EQ(e.resolveFamily(u"DejaVu Serif"), "DejaVu Serif");
  EXPECT_EQ(e.resolveFamily(u"No Such Face 123"), "Liberation Sans");
  EXPECT_EQ(e.resolveFamily(u""), "Liberation Sans");
}

TEST(FontEngine, HeightRules) {
  FontEngine& e = FontEngine::instance();
  for (const char16_t* face : {u"Arial", u"Tahoma", u"Times New Roman", u"Courier New"}) {
    for (LONG h : {8, 11, 13, 16, 24, 40}) {
      SCOPED_TRACE(h);
      // Positive: the cell height, kept exactly.
      const FontMetrics& cell = e.font(MakeFont(face, h)).metrics();
      EXPECT_EQ(cell.height(), h);
      // Negative: the em size; the cell is the em plus the internal leading.
      TEXTMETRICW em = e.font(MakeFont(face, -h)).textMetrics();
      EXPECT_EQ(em.tmHeight, em.tmAscent + em.tmDescent);
      EXPECT_EQ(em.tmHeight - em.tmInternalLeading, h);
      EXPECT_GT(em.tmHeight, h);  // every mapped face reaches above its em
      EXPECT_EQ(em.tmOverhang, 0);
    }
  }
  // Zero leaves the size to the system: a 16-pixel cell.
  EXPECT_EQ(e.font(MakeFont(u"Arial", 0)).metrics().height(), 16);
}

TEST(FontEngine, HostileSizesAreClampedNotFatal) {
  FontEngine& e = FontEngine::instance();
  EXPECT_GT(e.font(MakeFont(u"Arial", INT32_MIN)).metrics().height(), 0);
  EXPECT_GT(e.font(MakeFont(u"Arial", INT32_MAX)).metrics().height(), 0);
  LOGFONTW wide = MakeFont(u"Arial", -12);
  wide.lfWidth = -5;  // a negative width is ignored
  EXPECT_EQ(e.font(wide).metrics().aveCharWidth, e.font(MakeFont(u"Arial", -12)).metrics().aveCharWidth);
}

TEST(FontEngine, WeightAndWidthChangeTheFace) {
  FontEngine& e = FontEngine::instance();
  const Font& regular = e.font(MakeFont(u"Arial", -20, 400));
  const Font& almost = e.font(MakeFont(u"Arial", -20, 599));
  const Font& semibold = e.font(MakeFont(u"Arial", -20, 600));
  const Font& bold = e.font(MakeFont(u"Arial", -20, 700));
  const std::u32string text = U"Wide bold words";
  EXPECT_EQ(RunWidth(almost, text), RunWidth(regular, text));
  EXPECT_EQ(RunWidth(semibold, text), RunWidth(bold, text));
  EXPECT_GT(RunWidth(bold, text), RunWidth(regular, text));
  EXPECT_EQ(bold.textMetrics().tmWeight, 700);

  LOGFONTW narrow = MakeFont(u"Arial", -20);
  narrow.lfWidth = 5;  // average character width asked for
  const Font& n = e.font(narrow);
  EXPECT_NEAR(n.metrics().aveCharWidth, 5, 1);
  EXPECT_LT(RunWidth(n, text), RunWidth(regular, text));
  EXPECT_EQ(n.metrics().height(), regular.metrics().height());
}

TEST(FontEngine, MissingStylesAreSynthesisedAndQualityIsHonoured) {
  FontEngine& e = FontEngine::instance();
  // This family is installed in one style only, so bold and italic are made from the outline.
  const char16_t* face = u"DejaVu Math TeX Gyre";
  ASSERT_EQ(e.resolveFamily(face), "DejaVu Math TeX Gyre");
  const Font& regular = e.font(MakeFont(face, -24));
  const Font& bold = e.font(MakeFont(face, -24, 700));
  LOGFONTW italicLf = MakeFont(face, -24);
  italicLf.lfItalic = 1;
  const Font& italic = e.font(italicLf);
  auto ink = [](const Glyph& g) {
    int sum = 0;
    for (uint8_t c : g.coverage) sum += c;
    return sum;
  };
  EXPECT_GT(ink(bold.glyph(U'H')), ink(regular.glyph(U'H')) * 11 / 10);
  EXPECT_NE(italic.glyph(U'H').coverage, regular.glyph(U'H').coverage);
  EXPECT_GT(italic.glyph(U'H').width, regular.glyph(U'H').width);  // slanted stems reach further

  // Non-antialiased quality renders a bilevel mask.
  LOGFONTW crisp = MakeFont(u"Arial", -13);
  crisp.lfQuality = 3;
  for (uint8_t c : e.font(crisp).glyph(U'e').coverage) ASSERT_TRUE(c == 0 || c == 255);
}

TEST(FontEngine, SurrogatePairsDecodeToOneCodePoint) {
  EXPECT_EQ(DecodeUtf16(u"a\U0001F600b"), std::u32string(U"a\U0001F600b"));
  // Lone halves stand for themselves.
  const char16_t lone[] = {u'x', 0xD83D, u'y', 0xDE00};
  EXPECT_EQ(DecodeUtf16(std::u16string_view(lone, 4)), (std::u32string{U'x', 0xD83D, U'y', 0xDE00}));
}

TEST(FontEngine, MissingGlyphsComeFromTheFallbackFace) {
  FontEngine& e = FontEngine::instance();
  const Font& arial = e.font(MakeFont(u"Arial", -16));
  const Font& dejavu = e.font(MakeFont(u"DejaVu Sans", -16));
  // The snowman is in DejaVu Sans and not in Liberation Sans.
  const Glyph& snow = arial.glyph(U'\u2603');
  EXPECT_EQ(snow.advance, dejavu.glyph(U'\u2603').advance);
  EXPECT_EQ(snow.coverage, dejavu.glyph(U'\u2603').coverage);
  // A code point in neither face draws the face's own missing-glyph box.
  const Glyph& none = arial.glyph(U'\u4E2D');
  EXPECT_GT(none.advance, 0);
  EXPECT_GT(none.width * none.height, 0);
  EXPECT_EQ(none.coverage, arial.glyph(U'\uE000').coverage);  // same box for another unknown
}

// The blend and the alpha rule, checked pixel by pixel against the glyph's own coverage.
TEST(FontEngine, RunBlendsCoverageAndClearsAlpha) {
  const Font& f = FontEngine::instance().font(MakeFont(u"Times New Roman", -24));
  const uint32_t bg = 0xFF204080;  // alpha 255, r 0x20, g 0x40, b 0x80
  const COLORREF ink = RGB(0xF0, 0x10, 0x90);
  Canvas c(40, 40, bg);
  const int x = 5, baseline = 30;
  const int width = DrawRun(c.target(ink), f, U"g", x, baseline);
  const Glyph& g = f.glyph(U'g');
  EXPECT_EQ(width, g.advance);
  int touched = 0, partial = 0;
  for (int py = 0; py < 40; ++py) {
    for (int px = 0; px < 40; ++px) {
      const int gx = px - (x + g.left), gy = py - (baseline - g.top);
      int a = 0;
      if (gx >= 0 && gy >= 0 && gx < g.width && gy < g.height) a = g.coverage[gy * g.width + gx];
      uint32_t expect = bg;
      if (a > 0) {
        auto mix = [a](int d, int t) { return d + (t - d) * a / 255; };
        expect = (static_cast<uint32_t>(mix(0x20, 0xF0)) << 16) | (static_cast<uint32_t>(mix(0x40, 0x10)) << 8) |
                 static_cast<uint32_t>(mix(0x80, 0x90));
        ++touched;
        partial += a < 255;
      }
      ASSERT_EQ(c.at(px, py), expect) << px << "," << py;
    }
  }
  EXPECT_GT(touched, 20);
  EXPECT_GT(partial, 5);  // anti-aliased, not a bilevel mask
}

TEST(FontEngine, RunStaysInsideClipAndLimit) {
  const Font& f = FontEngine::instance().font(MakeFont(u"Arial", -20, 700));
  Canvas full(80, 30, 0xFFFFFFFF);
  DrawRun(full.target(0), f, U"WWWW", 0, 22);

  Canvas clipped(80, 30, 0xFFFFFFFF);
  clipped.clip = {RECT{0, 0, 80, 10}, RECT{10, 10, 30, 30}, RECT{50, 10, 60, 30}};
  RECT limit{0, 5, 55, 30};
  RunTarget t = clipped.target(0);
  t.limit = &limit;
  DrawRun(t, f, U"WWWW", 0, 22);
  int inside = 0;
  for (int y = 0; y < 30; ++y) {
    for (int x = 0; x < 80; ++x) {
      bool in = y >= 5 && x < 55 && (y < 10 || (x >= 10 && x < 30) || (x >= 50 && x < 60));
      if (in) {
        EXPECT_EQ(clipped.at(x, y), full.at(x, y)) << x << "," << y;
        inside += full.at(x, y) != 0xFFFFFFFF;
      } else {
        EXPECT_EQ(clipped.at(x, y), 0xFFFFFFFFu) << x << "," << y;
      }
    }
  }
  EXPECT_GT(inside, 0);
}

TEST(FontEngine, UnderlineAndStrikeOutUseTheFacePositions) {
  LOGFONTW lf = MakeFont(u"Arial", -20);
  lf.lfUnderline = 1;
  lf.lfStrikeOut = 1;
  const Font& f = FontEngine::instance().font(lf);
  const FontMetrics& m = f.metrics();
  Canvas c(100, 40, 0xFFFFFFFF);
  const int baseline = 25;
  const int w = DrawRun(c.target(RGB(0, 0, 255)), f, U"  ", 10, baseline);  // blanks: lines only
  ASSERT_GT(w, 0);
  auto lineRow = [&](int y) {
    for (int x = 0; x < 100; ++x) {
      uint32_t want = (x >= 10 && x < 10 + w) ? 0x000000FFu : 0xFFFFFFFFu;
      if (c.at(x, y) != want) return false;
    }
    return true;
  };
  for (int y = 0; y < 40; ++y) {
    bool under = y >= baseline + m.underlinePos && y < baseline + m.underlinePos + m.underlineThickness;
    bool strike = y >= baseline - m.strikeoutPos && y < baseline - m.strikeoutPos + m.strikeoutThickness;
    if (under || strike) {
      EXPECT_TRUE(lineRow(y)) << y;
    } else {
      for (int x = 0; x < 100; ++x) ASSERT_EQ(c.at(x, y), 0xFFFFFFFFu) << x << "," << y;
    }
  }
  EXPECT_GT(m.underlinePos, 0);
  EXPECT_LE(m.underlinePos + m.underlineThickness, m.descent);
  EXPECT_GT(m.strikeoutPos, 0);
  EXPECT_LT(m.strikeoutPos, m.ascent);
}

}  // namespace
}  // namespace mx::platform
