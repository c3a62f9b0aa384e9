#pragma once
// GifFrames: every frame of an animated GIF, composed as a viewer shows it. giflib reads the
// file record by record; each frame's rows are drawn, as they arrive, over a copy of what the
// previous frame's disposal left, and that copy becomes the frame's picture. Pictures are
// whole-screen API32bppDIB surfaces, so painting a frame is one Render.
//
// Disposal of frame i, applied before frame i+1 is drawn:
//   0 unspecified, 1 keep     the canvas stays as frame i left it
//   2 background              frame i's rectangle becomes transparent (the control's own
//                             background shows there, as in browsers, not the file's colour)
//   3 previous                frame i's rectangle gets back what it held before frame i
// The canvas starts transparent.
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "image/API32bppDIB.h"

namespace mx::controls {

struct GifFrame {
  std::shared_ptr<image::API32bppDIB> picture;  // the whole screen after this frame
  int32_t left = 0, top = 0, width = 0, height = 0;  // the frame's own rectangle, as written
  int32_t delayCs = 0;     // delay as written, in hundredths of a second
  int32_t disposal = 0;    // 0..3 as above (others treated as 0)
  int32_t transparent = -1;  // transparent colour index, -1 for none
};

class GifFrames {
 public:
  // Frames whose written delay is below this (0 or 1) play at kDefaultDelayMs: writers leave
  // 0 meaning "as fast as you like", and viewers slow such files down to a usable speed.
  static constexpr int32_t kMinimumDelayCs = 2;
  static constexpr int32_t kDefaultDelayMs = 100;
  // Screens and frame counts are refused above this, before anything is allocated.
  static constexpr int64_t kMaxPixels = 64LL * 1024 * 1024;

  // Decodes a whole file; false (and no frames) for data giflib refuses, a zero-sized screen,
  // no whole frame, or more pixels in all frames' pictures together than kMaxPixels, which is
  // settled before each picture is made. A frame with no colour table leaves the screen as it
  // was. Data damaged or cut short after whole frames keeps those frames.
  bool Decode(std::span<const uint8_t> data);
  void Clear();

  [[nodiscard]] int32_t Width() const { return m_width; }
  [[nodiscard]] int32_t Height() const { return m_height; }
  [[nodiscard]] int32_t Count() const { return static_cast<int32_t>(m_frames.size()); }
  [[nodiscard]] const GifFrame& Frame(int32_t index) const { return m_frames[static_cast<size_t>(index)]; }
  // The time frame `index` stays on the screen, in milliseconds.
  [[nodiscard]] int32_t DelayMs(int32_t index) const;
  // The number of plays the file asks for through its looping extension: 0 for ever; a file
  // written with repeat count n plays n + 1 times; without the extension, once.
  [[nodiscard]] int32_t FilePlays() const { return m_filePlays; }

 private:
  int32_t m_width = 0;
  int32_t m_height = 0;
  int32_t m_filePlays = 1;
  std::vector<GifFrame> m_frames;
};

}  // namespace mx::controls
