#pragma once
// The pointing-hand pointer that buttons show over themselves: a 32 x 32, 16-colour cursor file
// of the library's own drawing, held as a host picture so that it can be a control's MouseIcon.
#include <memory>

#include "host/StdPicture.h"
#include "host/Variant.h"

namespace mx::controls {

// The bytes of the cursor file (".cur": one 32 x 32 image, 4 bits per pixel, hot spot on the
// tip of the index finger).
[[nodiscard]] host::ByteArray HandCursorFileBytes();

// One shared picture of the hand per thread, made on first use.
[[nodiscard]] std::shared_ptr<host::StdPicture> HandCursorPicture();

}  // namespace mx::controls
