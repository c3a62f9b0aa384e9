// CaptionControl: the font setters shared by the caption-drawing controls.
#include "controls/CaptionControl.h"

namespace mx::controls {

void CaptionControl::Changed(host::StringView key) {
  PropertyChanged(key);
  RepaintForFont();
}

void CaptionControl::Font(std::shared_ptr<host::StdFont> value) {
  UserControl::Font(std::move(value));
  Changed(u"Font");
}
void CaptionControl::FontBold(bool value) {
  UserControl::FontBold(value);
  Changed(u"FontBold");
}
void CaptionControl::FontItalic(bool value) {
  UserControl::FontItalic(value);
  Changed(u"FontItalic");
}
void CaptionControl::FontSize(float value) {
  UserControl::FontSize(value);
  Changed(u"FontSize");
}
void CaptionControl::FontStrikeThru(bool value) {
  UserControl::FontStrikethru(value);
  Changed(u"FontStrikethru");
}
void CaptionControl::FontUnderline(bool value) {
  UserControl::FontUnderline(value);
  Changed(u"FontUnderline");
}

}  // namespace mx::controls
