#pragma once
// The picture transforms of the mximage convert command: parsed from the command line and
// applied to a loaded surface, always in this order whatever the order given:
//
//   --trim, --scale WxH [--nearest], --mirror h|v|hv, --rotate DEG, --gray FORMULA,
//   --light N, --invert, --transparent 0xBBGGRR, --shadow DEPTH [--shadow-color 0xBBGGRR],
//   --opacity N
//
// The result is rendered onto a transparent surface of the size it needs.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mx::image {

class API32bppDIB;

class ConvertOptions {
 public:
  // Takes the options it knows out of args and leaves the rest (file names, other options) in
  // their order. False, with a message, for a missing or malformed value.
  bool Parse(std::vector<std::string>& args, std::string& error);
  // True when no transform was asked for.
  [[nodiscard]] bool empty() const;
  // Applies the transforms to dib. False, with a message, when a step fails.
  bool Apply(API32bppDIB& dib, std::string& error) const;

  // The usage lines of the options, for the program's help.
  [[nodiscard]] static const char* Usage();

 private:
  bool m_trim = false;
  int32_t m_scaleWidth = 0, m_scaleHeight = 0;
  bool m_nearest = false;
  bool m_mirrorX = false, m_mirrorY = false;
  std::optional<float> m_rotate;
  std::optional<int32_t> m_gray;
  int32_t m_light = 0;
  bool m_invert = false;
  std::optional<int32_t> m_transparent;
  std::optional<int32_t> m_shadow;
  int32_t m_shadowColor = 0;
  int32_t m_opacity = 100;
};

}  // namespace mx::image
