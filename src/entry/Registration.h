#pragma once
// Registers the data-entry controls with the host's class registry under their library names.
namespace mx::entry {

// Idempotent: a second call does nothing.
void RegisterControls();

}  // namespace mx::entry
