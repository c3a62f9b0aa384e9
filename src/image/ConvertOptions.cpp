// Parsing and applying the convert transforms of mximage.
#include "image/ConvertOptions.h"

#include <charconv>
#include <cmath>

#include "image/API32bppDIB.h"

namespace mx::image {

namespace {

bool parseInt(const std::string& text, int32_t& out) {
  const char* first = text.data();
  const char* last = first + text.size();
  int base = 10;
  bool negative = false;
  if (first != last && (*first == '-' || *first == '+')) {
    negative = *first == '-';
    ++first;
  }
  if (last - first > 2 && first[0] == '0' && (first[1] == 'x' || first[1] == 'X')) {
    base = 16;
    first += 2;
  }
  int64_t v = 0;
  auto [ptr, ec] = std::from_chars(first, last, v, base);
  if (ec != std::errc() || ptr != last || first == last) return false;
  if (negative) v = -v;
  if (v < INT32_MIN || v > INT32_MAX) return false;
  out = static_cast<int32_t>(v);
  return true;
}

bool parseFloat(const std::string& text, float& out) {
  const char* first = text.data();
  const char* last = first + text.size();
  if (first != last && *first == '+') ++first;
  auto [ptr, ec] = std::from_chars(first, last, out);
  return ec == std::errc() && ptr == last && first != last && std::isfinite(out);
}

// A colour 0xBBGGRR (or a decimal Long) within 24 bits.
bool parseColor(const std::string& text, int32_t& out) {
  return parseInt(text, out) && out >= 0 && out <= 0xFFFFFF;
}

bool parseSize(const std::string& text, int32_t& w, int32_t& h) {
  size_t x = text.find_first_of("xX");
  if (x == std::string::npos) return false;
  return parseInt(text.substr(0, x), w) && parseInt(text.substr(x + 1), h) && w > 0 && h > 0;
}

// Whole degrees of a rotation as the rotating path takes them.
double wholeDegrees(float angle) { return std::fmod(std::nearbyint(static_cast<double>(angle)), 360.0); }

}  // namespace

const char* ConvertOptions::Usage() {
  return "  --trim                 cut transparent borders\n"
         "  --scale WxH            resample to W x H (bilinear; --nearest for nearest pixel)\n"
         "  --mirror h|v|hv        mirror left-right, top-bottom or both\n"
         "  --rotate DEG           rotate clockwise about the centre\n"
         "  --gray FORMULA         grey by formula -1 (none) to 7\n"
         "  --light N              lighter (1..100) or darker (-100..-1)\n"
         "  --invert               invert the colours\n"
         "  --transparent 0xBBGGRR make that opaque colour transparent\n"
         "  --shadow DEPTH         add a drop shadow of depth 0..10 (--shadow-color 0xBBGGRR)\n"
         "  --opacity N            overall opacity 0..100\n";
}

bool ConvertOptions::Parse(std::vector<std::string>& args, std::string& error) {
  std::vector<std::string> rest;
  for (size_t i = 0; i < args.size(); ++i) {
    const std::string& a = args[i];
    auto value = [&](std::string& out) {
      if (i + 1 >= args.size()) {
        error = a + " needs a value";
        return false;
      }
      out = args[++i];
      return true;
    };
    auto bad = [&](const std::string& v, const char* what) {
      error = "bad value for " + a + ": \"" + v + "\" (" + what + ")";
      return false;
    };
    std::string v;
    if (a == "--trim") {
      m_trim = true;
    } else if (a == "--nearest") {
      m_nearest = true;
    } else if (a == "--invert") {
      m_invert = true;
    } else if (a == "--scale") {
      if (!value(v)) return false;
      if (!parseSize(v, m_scaleWidth, m_scaleHeight)) return bad(v, "expected WxH, both above 0");
    } else if (a == "--mirror") {
      if (!value(v)) return false;
      m_mirrorX = v == "h" || v == "hv" || v == "vh";
      m_mirrorY = v == "v" || v == "hv" || v == "vh";
      if (!m_mirrorX && !m_mirrorY) return bad(v, "expected h, v or hv");
    } else if (a == "--rotate") {
      float deg = 0;
      if (!value(v)) return false;
      if (!parseFloat(v, deg)) return bad(v, "expected degrees");
      m_rotate = deg;
    } else if (a == "--gray") {
      int32_t f = 0;
      if (!value(v)) return false;
      if (!parseInt(v, f) || f < -1 || f > 7) return bad(v, "expected a formula from -1 to 7");
      m_gray = f;
    } else if (a == "--light") {
      if (!value(v)) return false;
      if (!parseInt(v, m_light) || m_light < -100 || m_light > 100) return bad(v, "expected -100 to 100");
    } else if (a == "--transparent") {
      int32_t c = 0;
      if (!value(v)) return false;
      if (!parseColor(v, c)) return bad(v, "expected a colour 0xBBGGRR");
      m_transparent = c;
    } else if (a == "--shadow") {
      int32_t d = 0;
      if (!value(v)) return false;
      if (!parseInt(v, d) || d < 0 || d > 10) return bad(v, "expected a depth from 0 to 10");
      m_shadow = d;
    } else if (a == "--shadow-color") {
      if (!value(v)) return false;
      if (!parseColor(v, m_shadowColor)) return bad(v, "expected a colour 0xBBGGRR");
    } else if (a == "--opacity") {
      if (!value(v)) return false;
      if (!parseInt(v, m_opacity) || m_opacity < 0 || m_opacity > 100) return bad(v, "expected 0 to 100");
    } else {
      rest.push_back(a);
    }
  }
  args = std::move(rest);
  return true;
}

bool ConvertOptions::empty() const {
  return !m_trim && m_scaleWidth == 0 && !m_mirrorX && !m_mirrorY && !m_rotate && !m_gray && m_light == 0 &&
         !m_invert && !m_transparent && !m_shadow && m_opacity == 100;
}

bool ConvertOptions::Apply(API32bppDIB& dib, std::string& error) const {
  if (!dib.Handle()) {
    error = "no picture to convert";
    return false;
  }
  if (m_trim) {
    int32_t x, y, w, h;
    // A fully transparent picture has nothing to trim to and stays as it is.
    dib.TrimImage(true, trimAll, x, y, w, h);
  }
  if (m_scaleWidth > 0) {
    const bool quality = dib.HighQualityInterpolation();
    dib.HighQualityInterpolation(!m_nearest);
    bool ok = dib.Resize(m_scaleWidth, m_scaleHeight);
    dib.HighQualityInterpolation(quality);
    if (!ok) {
      error = "cannot scale to " + std::to_string(m_scaleWidth) + "x" + std::to_string(m_scaleHeight);
      return false;
    }
  }
  if (m_mirrorX || m_mirrorY) dib.MirrorImage(m_mirrorX, m_mirrorY);
  if (m_rotate && wholeDegrees(*m_rotate) != 0.0) {
    // The box that holds the rotated picture; the drawing centres the picture in it.
    const double r = wholeDegrees(*m_rotate) * std::acos(-1.0) / 180.0;
    const double c = std::fabs(std::cos(r)), s = std::fabs(std::sin(r));
    const double w = dib.Width(), h = dib.Height();
    const auto bw = static_cast<int32_t>(std::ceil(w * c + h * s - 1e-6));
    const auto bh = static_cast<int32_t>(std::ceil(w * s + h * c - 1e-6));
    API32bppDIB out;
    if (!out.InitializeDIB(std::max(bw, 1), std::max(bh, 1))) {
      error = "cannot make the rotated picture";
      return false;
    }
    const bool quality = dib.HighQualityInterpolation();
    dib.HighQualityInterpolation(!m_nearest);
    dib.Render(0, out.Width() / 2, out.Height() / 2, 0, 0, 0, 0, 0, 0, 100, true, true, &out, -1, 0, *m_rotate, true);
    dib.HighQualityInterpolation(quality);
    out.Alpha(AlphaComplex);
    out.SetImageType(imgBmpPARGB);
    dib.SwapDIBs(out);
  }
  if (m_gray) dib.MakeGrayScale(*m_gray);
  if (m_light != 0) dib.MakeLighterDarker(m_light);
  if (m_invert) dib.MakeImageInverse();
  if (m_transparent) dib.MakeTransparent(*m_transparent, false);
  if (m_shadow) {
    std::shared_ptr<API32bppDIB> shadow = dib.CreateDropShadow(*m_shadow, m_shadowColor);
    if (!shadow) {
      error = "cannot make the shadow";
      return false;
    }
    // The picture over its shadow, which lies Depth pixels down and to the right.
    dib.Render(0, 0, 0, 0, 0, 0, 0, 0, 0, 100, true, true, shadow.get());
    dib.SwapDIBs(*shadow);
    dib.Alpha(AlphaComplex);
  }
  API32bppDIB out;
  if (!out.InitializeDIB(dib.Width(), dib.Height())) {
    error = "cannot make the result";
    return false;
  }
  dib.Render(0, 0, 0, 0, 0, 0, 0, 0, 0, m_opacity, true, true, &out);
  out.Alpha(m_opacity == 100 ? dib.Alpha() : AlphaComplex);
  out.SetImageType(dib.ImageType());
  dib.SwapDIBs(out);
  return true;
}

}  // namespace mx::image
