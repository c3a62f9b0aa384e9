#pragma once
// USOptionButton: a themed option button. Of the option buttons in one container (the form, or
// the frame that holds them) at most one is True: setting one True, by code or by a click,
// clears the others there.
#include <cstdint>

#include "controls/ToggleControl.h"

namespace mx::controls {

class USOptionButton : public ToggleControl {
 public:
  USOptionButton();
  ~USOptionButton() override;

  [[nodiscard]] String ProgId() const override { return u"Morvantix.USOptionButton"; }
  [[nodiscard]] String TypeName() const override { return u"USOptionButton"; }

  // The default member.
  [[nodiscard]] bool Value() const { return m_value; }
  void Value(bool value);

  // Late binding: every property and method by name; "" is Value.
  host::Variant Invoke(StringView name, host::CallKind kind, std::span<host::Variant> args) override;

 protected:
  [[nodiscard]] const char16_t* ClassName() const override { return u"USOptionButton"; }
  void ClickValue() override;
  void PaintGlyph(platform::HDC dc, const platform::RECT& box, const ToggleGlyphColors& colours) override;
  void ReadValue(host::PropertyBag& bag) override;
  void WriteValue(host::PropertyBag& bag) override;
  void ResetValue() override { m_value = false; }
  // Whatever changed in the container's ambient properties, the face is painted again.
  void UserControl_AmbientChanged(const String& PropertyName) override;

 private:
  // Clears Value on the other option buttons of the same container.
  void ClearSiblings();

  bool m_value = false;
};

}  // namespace mx::controls
