#pragma once
// FormBack: the dim layer. A form without a frame whose only job is to lie, translucent, over
// the screen or over one form, so that what is beneath looks dimmed while a modal form is up.
// It takes the form that asked for it as its owner, so it stays above that form, and gives the
// activation straight back to it.
#include <cstdint>

#include "host/Colors.h"
#include "host/Form.h"
#include "platform/Types.h"

namespace mx::chrome {

class FormBack : public host::Form {
 public:
  // Every dim layer is named so: AlphaWindowCloseAll finds them by this name among the forms.
  static constexpr const char16_t* kName = u"FormBack";

  FormBack();

  // Covers the work area grown by the task bar's height (the whole screen when the task bar is
  // at the bottom), at TranslucentLevel (0 clear to 255 opaque) in BackColor.
  void AlphaWindowInitializeOnFullScreen(platform::HWND xOwner, int32_t TranslucentLevel, host::OLE_COLOR BackColor);
  // Covers only the window rectangle of xForm.
  void AlphaWindowInitializeOnModal(platform::HWND xForm, int32_t TranslucentLevel, host::OLE_COLOR BackColor);
  // Unloads the layer and gives the activation to xOwner when it is a visible window.
  void UnloadMe(platform::HWND xOwner);

  [[nodiscard]] platform::HWND OwnerWindow() const { return m_owner; }

 private:
  void Cover(platform::HWND xOwner, const platform::RECT& area, int32_t level, host::OLE_COLOR colour);

  platform::HWND m_owner = 0;
};

}  // namespace mx::chrome
