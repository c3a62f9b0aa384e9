#pragma once
// The class registry: creates controls by their "Library.Class" name ("Morvantix.USButton",
// "VB.TextBox"), as the host creates the controls of a form file. Each layer that defines
// controls registers them once at start-up (see morvantix/Library.h: RegisterLibrary()).
#include <functional>
#include <memory>
#include <vector>

#include "host/Control.h"
#include "host/String.h"

namespace mx::host {

using ControlFactory = std::function<std::shared_ptr<Control>()>;

// Registers (or replaces) a class. Names are compared without regard to case.
void RegisterControlClass(StringView progId, ControlFactory factory);
[[nodiscard]] bool IsControlClassRegistered(StringView progId);
// A new, unsited control of the class; raises 429 "ActiveX component can't create object" for
// a name that is not registered.
[[nodiscard]] std::shared_ptr<Control> CreateControl(StringView progId);
[[nodiscard]] std::vector<String> RegisteredControlClasses();

}  // namespace mx::host
