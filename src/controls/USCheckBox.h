#pragma once
// USCheckBox: a themed check box. Value 0 is clear, 1 checked and 2 grayed (the mixed state a
// program sets; a click never leads to it). A click, Space or the access key toggles between
// clear and checked; a grayed box becomes clear.
#include <cstdint>

#include "controls/ToggleControl.h"

namespace mx::controls {

class USCheckBox : public ToggleControl {
 public:
  static constexpr int16_t kUnchecked = 0;
  static constexpr int16_t kChecked = 1;
  static constexpr int16_t kGrayed = 2;

  USCheckBox();
  ~USCheckBox() override;

  [[nodiscard]] String ProgId() const override { return u"Morvantix.USCheckBox"; }
  [[nodiscard]] String TypeName() const override { return u"USCheckBox"; }

  // The default member. Values outside 0..2 raise 380.
  [[nodiscard]] int16_t Value() const { return m_value; }
  void Value(int16_t value);

  // Late binding: every property and method by name; "" is Value.
  host::Variant Invoke(StringView name, host::CallKind kind, std::span<host::Variant> args) override;

 protected:
  [[nodiscard]] const char16_t* ClassName() const override { return u"USCheckBox"; }
  void ClickValue() override;
  void PaintGlyph(platform::HDC dc, const platform::RECT& box, const ToggleGlyphColors& colours) override;
  void ReadValue(host::PropertyBag& bag) override;
  void WriteValue(host::PropertyBag& bag) override;
  void ResetValue() override { m_value = kUnchecked; }

 private:
  int16_t m_value = kUnchecked;
};

}  // namespace mx::controls
