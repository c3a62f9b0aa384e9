#pragma once
// The host's font object: the description of a font (face name, size in points, weight, style,
// character set), shared by reference between a control and whoever set it, persisted in form
// files as a BeginProperty block.
//
// Size is kept as the host keeps it, a Currency count of points: exact to four decimals, so 8.25
// stays 8.25 however often it is saved. It is not rounded to a size the screen can show; that
// happens only when a platform font is made from it (ToLogFont), where the pixel height is
// rounded.
#include <cstdint>
#include <memory>

#include "host/Event.h"
#include "host/String.h"
#include "host/Variant.h"
#include "platform/LogFont.h"

namespace mx::host {

// The class identifier that marks a font in a form file's BeginProperty line.
inline constexpr char16_t kStdFontClassId[] = u"{0BE35203-8F91-11CE-9DE3-00AA004BB851}";

class StdFont : public Object {
 public:
  static constexpr int16_t kWeightNormal = 400;
  static constexpr int16_t kWeightBold = 700;

  // The host's default font: "MS Sans Serif", 8.25 points, normal weight, character set 0.
  StdFont();
  StdFont(String name, double size, bool bold = false, bool italic = false);
  // A new font object with the same description (events are not copied).
  [[nodiscard]] std::shared_ptr<StdFont> Clone() const;

  [[nodiscard]] const String& Name() const { return m_name; }
  // Raises 380 for an empty name.
  void Name(StringView value);
  [[nodiscard]] Currency Size() const { return m_size; }
  [[nodiscard]] double SizePoints() const { return m_size.ToDouble(); }
  // Raises 380 for a size that is not above 0 or above 2160 points, the host's limits.
  void Size(Currency value);
  void Size(double points);
  // Bold is a view of the weight: set True it makes the weight 700, False 400; it reads True for
  // any weight above the half-way mark between normal and bold (so 600 is bold, 500 is not).
  [[nodiscard]] bool Bold() const { return m_weight > 550; }
  void Bold(bool value);
  [[nodiscard]] bool Italic() const { return m_italic; }
  void Italic(bool value);
  [[nodiscard]] bool Underline() const { return m_underline; }
  void Underline(bool value);
  [[nodiscard]] bool Strikethrough() const { return m_strikethrough; }
  void Strikethrough(bool value);
  [[nodiscard]] int16_t Weight() const { return m_weight; }
  // Raises 380 outside 0..1000.
  void Weight(int16_t value);
  [[nodiscard]] int16_t Charset() const { return m_charset; }
  // Raises 380 outside 0..255.
  void Charset(int16_t value);

  // The same description: face names compared without regard to case, sizes exactly.
  [[nodiscard]] bool SameAs(const StdFont& other) const;

  // A platform font description for a screen of the given dpi: the height is the character
  // height in pixels, negative, rounded as MulDiv rounds: -MulDiv(size, dpi, 72). The face name
  // is cut to what the structure holds.
  [[nodiscard]] platform::LOGFONTW ToLogFont(int dpi = 96) const;
  // The description of a platform font (the size from its height at that dpi; a positive cell
  // height is taken as the character height, as there are no metrics to subtract here).
  [[nodiscard]] static std::shared_ptr<StdFont> FromLogFont(const platform::LOGFONTW& logFont, int dpi = 96);

  // Raised after a property changed, with the property's name ("Size", "Bold", ...), which is how
  // a control that holds the font learns that it must repaint and save.
  Event<const String&> FontChanged;

  // Late binding: Name (the default member), Size, Bold, Italic, Underline, Strikethrough,
  // Weight, Charset.
  [[nodiscard]] String TypeName() const override { return u"StdFont"; }
  Variant Invoke(StringView name, CallKind kind, std::span<Variant> args) override;

 private:
  void Changed(const char16_t* property);

  String m_name;
  Currency m_size;
  int16_t m_weight = kWeightNormal;
  int16_t m_charset = 0;
  bool m_italic = false;
  bool m_underline = false;
  bool m_strikethrough = false;
};

}  // namespace mx::host
