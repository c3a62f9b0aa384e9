#pragma once
// The library's about box: a small modal form with the product's name and version, closed by
// Esc, Enter or a click. Every control's About method shows it.
namespace mx::controls {

// Shows the about box modally and returns when it has been closed.
void ShowAboutBox();

}  // namespace mx::controls
