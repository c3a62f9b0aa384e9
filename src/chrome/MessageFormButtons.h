#pragma once
// The buttons of a message box, read from its style code: which captions it shows (Portuguese,
// with the "&" of the hot key), which one is the default, and what each one answers.
//
//   style (after the default-button part)   buttons
//   0, 16, 48, 64                           &Ok
//   1, 17, 49, 65                           &Ok, &Cancelar
//   2, 18, 50, 66                           &Abortar, &Repetir, &Ignorar
//   3, 19, 51, 67                           &Sim, &Não, &Cancelar
//   4, 20, 52, 68                           &Sim, &Não
//   5, 21, 53, 69                           &Repetir, &Cancelar
//   anything else                           none
//
// The icon 32 is not among them: a box with that icon has no button and ends only by its
// time-out (or Esc). That is how the boxes behave, not an oversight to fix here.
#include <cstdint>
#include <vector>

#include "host/String.h"

namespace mx::chrome {

// The standard message-box results.
enum MessageBoxResult : int32_t {
  vbClosed = 0,  // no button: time-out, Esc, the close box
  vbOK = 1,
  vbCancel = 2,
  vbAbort = 3,
  vbRetry = 4,
  vbIgnore = 5,
  vbYes = 6,
  vbNo = 7,
};

struct MessageStyle {
  int32_t style = 64;          // the code left once the default-button part is taken off
  int32_t defaultButton = 1;   // 1, 2 or 3: the button that takes the focus
};

// Reads the default-button part off a style code: 0 is taken as 64 (a plain Ok box); 256 and
// 512 mark the second and the third button as the default.
[[nodiscard]] MessageStyle ReadMessageStyle(int32_t buttons);
// The captions of the buttons, left to right (empty when the style has none).
[[nodiscard]] std::vector<host::String> MessageButtonCaptions(int32_t style);
// How many buttons the style shows: 0 to 3.
[[nodiscard]] int32_t CountMessageButtons(int32_t style);
// The result of a button by its caption; 0 for a caption that is none of the table's.
[[nodiscard]] int32_t MessageButtonResult(host::StringView caption);
// The width in twips that the buttons' row needs at least: 2500, 3500 or 4500 for one, two or
// three buttons (0 for none).
[[nodiscard]] int32_t MessageButtonsMinimumWidth(int32_t count);
// The system sound that goes with the style's icon (MessageBeep's type).
[[nodiscard]] uint32_t MessageSoundForStyle(int32_t style);

}  // namespace mx::chrome
