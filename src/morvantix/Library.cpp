#include "morvantix/Library.h"

#include "chrome/Registration.h"
#include "controls/Registration.h"
#include "dates/Registration.h"
#include "entry/Registration.h"
#include "grid/USFlexGrid.h"

namespace mx {

void RegisterLibrary() {
  // Each layer's registration is idempotent on its own; this is the one place that calls them all.
  controls::RegisterControls();
  dates::RegisterControls();
  entry::RegisterControls();
  grid::RegisterControls();
  chrome::RegisterControls();
}

}  // namespace mx
