#pragma once
// The host's own control classes in the class registry ("VB.TextBox"). Forms call this before
// they build controls by name, so a form file's intrinsic blocks become live controls; calling
// it again changes nothing.
namespace mx::host {

void RegisterHostControls();

}  // namespace mx::host
