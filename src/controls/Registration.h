#pragma once
// Registers the controls of this layer with the host's class registry under their library names
// ("Morvantix.USButton"), so that forms loaded from files and Controls.Add can create them.
namespace mx::controls {

// Registers every control of the layer; calling it again registers nothing more.
void RegisterControls();

}  // namespace mx::controls
