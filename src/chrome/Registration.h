#pragma once
// Registers the controls of the window chrome with the host's class registry
// ("Morvantix.USForm"), so that forms loaded from files and Controls.Add can create them.
namespace mx::chrome {

// Registers every control of the layer; calling it again registers nothing more.
void RegisterControls();

}  // namespace mx::chrome
