#pragma once
// Registers the calendars with the host's class registry under their library names
// ("Morvantix.USCalendar"), so that forms loaded from files and Controls.Add can create them.
namespace mx::dates {

// Registers every control of the layer; calling it again registers nothing more.
void RegisterControls();

}  // namespace mx::dates
