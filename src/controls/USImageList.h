#pragma once
// USImageList: the design-time holder of image lists. It has a fixed size on the form, is not
// shown at run time (a program sees only its lists), and persists its lists as list blobs in its property bag:
//
//   "Count"                  number of lists (Long, default 0)
//   "1Img", "2Img", ...      the export of list 1, 2, ... (byte arrays)
//
// Reading imports them in order; an entry that is empty or will not import is passed over.
#include <cstdint>
#include <memory>
#include <span>

#include "host/PropertyBag.h"
#include "host/String.h"
#include "host/UserControl.h"
#include "host/Variant.h"

namespace mx::imagelist {
class APIImageLists;
}

namespace mx::controls {

class USImageList : public host::UserControl {
 public:
  // The size the control always takes, in twips.
  static constexpr float kWidthTwips = 440;
  static constexpr float kHeightTwips = 510;

  USImageList();
  ~USImageList() override;

  [[nodiscard]] host::String ProgId() const override { return u"Morvantix.USImageList"; }
  [[nodiscard]] host::String TypeName() const override { return u"USImageList"; }

  [[nodiscard]] std::shared_ptr<imagelist::APIImageLists> ImageLists() const { return m_lists; }
  // The library's about box, modal.
  void About();
  // For the property page: marks the control changed so that the form saves its lists.
  void UpdateLists() { PropertyChanged(u"UpdateLists"); }

  host::Variant Invoke(host::StringView name, host::CallKind kind, std::span<host::Variant> args) override;

 protected:
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Show() override;

 private:
  std::shared_ptr<imagelist::APIImageLists> m_lists;
};

}  // namespace mx::controls
