#pragma once
// Hooks the host's picture object up to the image engine: a StdPicture's Handle is made by
// decoding its bytes into a surface and handing that over as a platform bitmap (pictures of the
// bitmap type) or icon (icons and cursors).
namespace mx::image {

// Registers the decoder with the host. Call once at start-up, on the UI thread; calling again
// changes nothing.
void InstallPictureDecoder();
// Removes it again (tests).
void UninstallPictureDecoder();

}  // namespace mx::image
