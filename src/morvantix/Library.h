#pragma once
// The library as a whole: one call that registers every control class with the host's class
// registry, so that forms loaded from files can create them by name ("Morvantix.USButton").
namespace mx {

// Registers every class of the library; calling it again does nothing more.
void RegisterLibrary();

}  // namespace mx
