#pragma once
// USAnimatedImage: plays the frames of an animated GIF file.
//
// The host has no asynchronous read of its own here, so the control reads its FileName itself a
// chunk at a time on a timer, raising AsyncReadProgress after each chunk and AsyncReadComplete
// at the end; only then is the file decoded (GifFrames) and, with AutoPlay at run time, played.
// A relative FileName is taken from the current directory.
//
// Playing shows each frame for its own delay on the clock:
//
//   stopped (frame 0) --Play--> playing --last frame's delay, plays left--> frame 0 ...
//        ^                        |   \--last frame's delay, no plays left--> ended (last frame,
//        +---------Stop-----------+                                            PlayComplete)
//                          Pause: stays on the frame shown; Play goes on from there
//
// LoopCount is the number of plays: -1 as the file asks (its looping extension), 0 for ever.
// Pixels the frames leave transparent show the control's background: BackColor with BackStyle
// 1, the container with BackStyle 0 (the default), and with BackStyle 0 only opaque pixels take
// the mouse (HitTest).
#include <cstdint>
#include <fstream>
#include <memory>
#include <span>
#include <vector>

#include "controls/GifFrames.h"
#include "host/Event.h"
#include "host/PropertyBag.h"
#include "host/String.h"
#include "host/UserControl.h"
#include "host/Variant.h"

namespace mx::controls {

class USAnimatedImage : public host::UserControl {
 public:
  // Bytes read per timer tick, and the tick.
  static constexpr int32_t kReadChunk = 4096;
  static constexpr uint32_t kReadIntervalMs = 10;

  USAnimatedImage();
  ~USAnimatedImage() override;

  [[nodiscard]] host::String ProgId() const override { return u"Morvantix.USAnimatedImage"; }
  [[nodiscard]] host::String TypeName() const override { return u"USAnimatedImage"; }
  [[nodiscard]] bool CanGetFocus() const override { return false; }
  [[nodiscard]] platform::HWND hWnd() const override { return UserControl::hWnd(); }

  // Setting it (once shown) drops the frames and starts reading the new file; "" just clears.
  [[nodiscard]] const host::String& FileName() const { return m_fileName; }
  void FileName(host::StringView value);
  // Takes the frames from bytes in memory at once (no read on the clock, no AsyncRead events).
  // The FileName is cleared, as the frames no longer come from a file; they are not saved with
  // the form. False, with no frames, for bytes that are no GIF.
  bool LoadFromArray(std::span<const uint8_t> Bytes);
  [[nodiscard]] bool AutoPlay() const { return m_autoPlay; }
  void AutoPlay(bool value);
  [[nodiscard]] int32_t LoopCount() const { return m_loopCount; }
  // Values below -1 raise 380 (invalid property value).
  void LoopCount(int32_t value);
  // Frames drawn to the control's size rather than at their own, from the top left corner.
  [[nodiscard]] bool Stretch() const { return m_stretch; }
  void Stretch(bool value);
  // The control takes the picture's size when a file has been read (and at once when set).
  [[nodiscard]] bool AutoSize() const { return m_autoSize; }
  void AutoSize(bool value);
  [[nodiscard]] int16_t BackStyle() const { return UserControl::BackStyle(); }
  void BackStyle(int16_t value);
  [[nodiscard]] host::OLE_COLOR BackColor() const { return UserControl::BackColor(); }
  void BackColor(host::OLE_COLOR value);
  [[nodiscard]] bool Enabled() const { return UserControl::Enabled(); }
  void Enabled(bool value);

  // What was read: frames and their delays, the picture's size, the plays the file asks for.
  [[nodiscard]] int32_t FrameCount() const { return m_frames.Count(); }
  // Milliseconds; raises 9 (subscript out of range) for an index that is not a frame's.
  [[nodiscard]] int32_t FrameDelay(int32_t Index) const;
  [[nodiscard]] int32_t PictureWidth() const { return m_frames.Width(); }
  [[nodiscard]] int32_t PictureHeight() const { return m_frames.Height(); }
  [[nodiscard]] int32_t FileLoopCount() const { return m_frames.FilePlays(); }
  // The frame shown, from 0. Setting one shows it (playing goes on from there); an index that
  // is not a frame's raises 380.
  [[nodiscard]] int32_t FrameIndex() const { return m_frame; }
  void FrameIndex(int32_t value);
  [[nodiscard]] bool Playing() const { return m_playing; }
  [[nodiscard]] bool Reading() const { return m_reading; }
  [[nodiscard]] int32_t BytesRead() const { return static_cast<int32_t>(m_bytesRead); }
  [[nodiscard]] const image::API32bppDIB* CurrentPicture() const;

  void Play();
  void Pause();
  // Stops and goes back to the first frame; the plays count again from the start.
  void Stop();
  void Refresh() { Paint(); }
  void About();

  host::Event<int32_t&, int32_t&> AsyncReadProgress;  // BytesRead, BytesMax
  host::Event<bool&> AsyncReadComplete;               // Success
  host::Event<int32_t&> FrameChange;                  // the frame now shown
  host::Event<> PlayComplete;
  host::Event<> Click;
  host::Event<> DblClick;
  host::Event<int16_t&, int16_t&, float&, float&> MouseDown;
  host::Event<int16_t&, int16_t&, float&, float&> MouseMove;
  host::Event<int16_t&, int16_t&, float&, float&> MouseUp;

  void ConnectEventSink(const host::EventSink& sink) override;
  host::Variant Invoke(host::StringView name, host::CallKind kind, std::span<host::Variant> args) override;

  [[nodiscard]] int32_t PaintCount() const { return m_paintCount; }

 protected:
  void UserControl_InitProperties() override;
  void UserControl_ReadProperties(host::PropertyBag& PropBag) override;
  void UserControl_WriteProperties(host::PropertyBag& PropBag) override;
  void UserControl_Resize() override;
  void UserControl_Show() override;
  void UserControl_Terminate() override;
  void UserControl_Click() override;
  void UserControl_DblClick() override;
  void UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) override;
  void UserControl_HitTest(float X, float Y, int16_t& HitResult) override;
  bool PreTranslateMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam, intptr_t& lResult) override;

 private:
  void StartRead();
  void CancelRead();
  void ReadStep();
  void FinishRead(bool opened);
  void FrameStep();
  void ArmFrameTimer();
  void KillFrameTimer();
  void ApplyAutoSize();
  void Paint();

  host::String m_fileName;
  bool m_autoPlay = true;
  int32_t m_loopCount = -1;
  bool m_stretch = false;
  bool m_autoSize = false;

  GifFrames m_frames;
  int32_t m_frame = 0;
  int32_t m_playsDone = 0;
  bool m_playing = false;
  bool m_ended = false;
  bool m_frameTimer = false;

  // The read in progress: the open file, its size, what has arrived.
  bool m_shown = false;
  bool m_reading = false;
  std::ifstream m_stream;
  int64_t m_bytesMax = 0;
  std::vector<uint8_t> m_data;
  int64_t m_bytesRead = 0;

  int32_t m_clientWidth = 0;
  int32_t m_clientHeight = 0;
  int32_t m_paintCount = 0;
};

}  // namespace mx::controls
