#pragma once
// CaptionControl: the font members of the controls that draw a caption (button, check box,
// option button, label, progress bar). Each setter changes the host's font, tells the host the
// property changed so that the form saves it, and repaints through the control's own hook, in
// that order: a PropertyChanged handler that reads the control sees the new font before the
// repaint, and the repaint lays out with it.
#include <memory>

#include "host/StdFont.h"
#include "host/String.h"
#include "host/UserControl.h"

namespace mx::controls {

class CaptionControl : public host::UserControl {
 public:
  [[nodiscard]] std::shared_ptr<host::StdFont> Font() const { return UserControl::Font(); }
  void Font(std::shared_ptr<host::StdFont> value);
  [[nodiscard]] bool FontBold() const { return UserControl::FontBold(); }
  void FontBold(bool value);
  [[nodiscard]] bool FontItalic() const { return UserControl::FontItalic(); }
  void FontItalic(bool value);
  [[nodiscard]] float FontSize() const { return UserControl::FontSize(); }
  void FontSize(float value);
  // The control spells it with a capital T; the saved property keeps the host's "FontStrikethru".
  [[nodiscard]] bool FontStrikeThru() const { return UserControl::FontStrikethru(); }
  void FontStrikeThru(bool value);
  [[nodiscard]] bool FontUnderline() const { return UserControl::FontUnderline(); }
  void FontUnderline(bool value);

 protected:
  // Paints the control again after a font change: the control's Refresh, or its paint routine.
  virtual void RepaintForFont() = 0;

 private:
  void Changed(host::StringView key);
};

}  // namespace mx::controls
