// USAnimatedImage: reading on the clock, playing, painting, persistence and late binding.
#include "controls/USAnimatedImage.h"

#include <algorithm>
#include <filesystem>

#include "controls/ControlSupport.h"
#include "controls/MemberTable.h"
#include "host/Err.h"
#include "platform/Timer.h"
#include "platform/Window.h"

namespace mx::controls {

using detail::Step;
using detail::BagReader;
using host::OLE_COLOR;
using host::String;
using host::StringView;
using host::Variant;

namespace {

constexpr platform::UINT_PTR kReadTimer = 1;
constexpr platform::UINT_PTR kFrameTimer = 2;
constexpr OLE_COLOR kDefaultBackColor = host::vbButtonFace;
constexpr int32_t kTwipsPerPixel = 15;

}  // namespace

USAnimatedImage::USAnimatedImage() = default;

USAnimatedImage::~USAnimatedImage() = default;

// ---- Properties ----------------------------------------------------------------------------------

void USAnimatedImage::FileName(StringView value) {
  m_fileName = String(value);
  PropertyChanged(u"FileName");
  if (m_shown) StartRead();
}

void USAnimatedImage::AutoPlay(bool value) {
  m_autoPlay = value;
  PropertyChanged(u"AutoPlay");
}

void USAnimatedImage::LoopCount(int32_t value) {
  if (value < -1) host::Raise(380, u"USAnimatedImage");
  m_loopCount = value;
  PropertyChanged(u"LoopCount");
}

void USAnimatedImage::Stretch(bool value) {
  m_stretch = value;
  PropertyChanged(u"Stretch");
  Paint();
}

void USAnimatedImage::AutoSize(bool value) {
  m_autoSize = value;
  PropertyChanged(u"AutoSize");
  ApplyAutoSize();
}

void USAnimatedImage::BackStyle(int16_t value) {
  UserControl::BackStyle(value == 0 ? 0 : 1);
  PropertyChanged(u"BackStyle");
  Paint();
}

void USAnimatedImage::BackColor(OLE_COLOR value) {
  UserControl::BackColor(value);
  PropertyChanged(u"BackColor");
  Paint();
}

void USAnimatedImage::Enabled(bool value) {
  UserControl::Enabled(value);
  PropertyChanged(u"Enabled");
}

int32_t USAnimatedImage::FrameDelay(int32_t Index) const {
  if (Index < 0 || Index >= m_frames.Count()) host::Raise(9, u"USAnimatedImage");
  return m_frames.DelayMs(Index);
}

void USAnimatedImage::FrameIndex(int32_t value) {
  if (value < 0 || value >= m_frames.Count()) host::Raise(380, u"USAnimatedImage");
  const bool changed = value != m_frame;
  m_frame = value;
  m_ended = false;
  Paint();
  // A frame chosen while playing gets its full delay from now.
  if (m_playing) ArmFrameTimer();
  if (changed) Step([&] { FrameChange(m_frame); });
}

const image::API32bppDIB* USAnimatedImage::CurrentPicture() const {
  if (m_frame < 0 || m_frame >= m_frames.Count()) return nullptr;
  return m_frames.Frame(m_frame).picture.get();
}

void USAnimatedImage::About() {}

// ---- Playing ------------------------------------------------------------------------------------

void USAnimatedImage::Play() {
  // One frame (or none) has nothing to play.
  if (m_frames.Count() < 2 || m_playing) return;
  if (m_ended) {
    m_ended = false;
    m_playsDone = 0;
    m_frame = 0;
    Paint();
    Step([&] { FrameChange(m_frame); });
  }
  m_playing = true;
  ArmFrameTimer();
}

void USAnimatedImage::Pause() {
  m_playing = false;
  KillFrameTimer();
}

void USAnimatedImage::Stop() {
  m_playing = false;
  m_ended = false;
  m_playsDone = 0;
  KillFrameTimer();
  if (m_frame == 0) return;
  m_frame = 0;
  Paint();
  Step([&] { FrameChange(m_frame); });
}

void USAnimatedImage::ArmFrameTimer() {
  Step([&] {
    m_frameTimer = platform::SetTimer(UserControl::hWnd(), kFrameTimer,
                                      static_cast<platform::UINT>(m_frames.DelayMs(m_frame))) != 0;
  });
}

void USAnimatedImage::KillFrameTimer() {
  if (m_frameTimer) Step([&] { platform::KillTimer(UserControl::hWnd(), kFrameTimer); });
  m_frameTimer = false;
}

// The shown frame's delay has passed: the next one, or the end of a play.
void USAnimatedImage::FrameStep() {
  if (!m_playing || m_frames.Count() < 2) return KillFrameTimer();
  int32_t next = m_frame + 1;
  if (next >= m_frames.Count()) {
    ++m_playsDone;
    const int32_t plays = m_loopCount < 0 ? m_frames.FilePlays() : m_loopCount;
    if (plays != 0 && m_playsDone >= plays) {
      // The last frame stays on the screen.
      m_playing = false;
      m_ended = true;
      KillFrameTimer();
      Step([&] { PlayComplete(); });
      return;
    }
    next = 0;
  }
  m_frame = next;
  Paint();
  // The timer re-arms with this frame's own delay, from the moment its message was taken.
  ArmFrameTimer();
  Step([&] { FrameChange(m_frame); });
}

// ---- Reading --------------------------------------------------------------------------------------

void USAnimatedImage::CancelRead() {
  if (m_reading) Step([&] { platform::KillTimer(UserControl::hWnd(), kReadTimer); });
  m_reading = false;
  if (m_stream.is_open()) m_stream.close();
  m_stream.clear();
  m_data.clear();
  m_data.shrink_to_fit();
}

void USAnimatedImage::StartRead() {
  CancelRead();
  Pause();
  m_frames.Clear();
  m_frame = 0;
  m_playsDone = 0;
  m_ended = false;
  m_bytesRead = 0;
  m_bytesMax = 0;
  Paint();
  if (m_fileName.empty()) return;
  Step([&] {
    const std::filesystem::path path(host::ToUtf8(m_fileName));
    std::error_code ec;
    const auto size = std::filesystem::file_size(path, ec);
    if (!ec && std::filesystem::is_regular_file(path, ec)) {
      m_stream.open(path, std::ios::binary);
      m_bytesMax = static_cast<int64_t>(size);
    }
  });
  // Even a file that cannot be opened answers on the clock, as every read does: the caller
  // hears of the failure through AsyncReadComplete, never from the setter.
  Step([&] {
    m_reading = platform::SetTimer(UserControl::hWnd(), kReadTimer, kReadIntervalMs) != 0;
  });
}

void USAnimatedImage::ReadStep() {
  if (!m_reading) return;
  if (!m_stream.is_open()) return FinishRead(false);
  const size_t want = static_cast<size_t>(std::min<int64_t>(kReadChunk, std::max<int64_t>(0, m_bytesMax - m_bytesRead)));
  if (want > 0) {
    const size_t at = m_data.size();
    m_data.resize(at + want);
    m_stream.read(reinterpret_cast<char*>(m_data.data() + at), static_cast<std::streamsize>(want));
    const auto got = static_cast<size_t>(std::max<std::streamsize>(0, m_stream.gcount()));
    m_data.resize(at + got);
    m_bytesRead += static_cast<int64_t>(got);
    // A file that shrank under the read ends it where it ends.
    if (got < want) m_bytesMax = m_bytesRead;
  }
  int32_t read = static_cast<int32_t>(std::min<int64_t>(m_bytesRead, INT32_MAX));
  int32_t max = static_cast<int32_t>(std::min<int64_t>(m_bytesMax, INT32_MAX));
  Step([&] { AsyncReadProgress(read, max); });
  // A handler may have started another read, or ended this one.
  if (!m_reading) return;
  if (m_bytesRead >= m_bytesMax) FinishRead(true);
}

bool USAnimatedImage::LoadFromArray(std::span<const uint8_t> Bytes) {
  CancelRead();
  Pause();
  if (!m_fileName.empty()) {
    m_fileName.clear();
    PropertyChanged(u"FileName");
  }
  m_frame = 0;
  m_playsDone = 0;
  m_ended = false;
  const bool ok = m_frames.Decode(Bytes);
  ApplyAutoSize();
  Paint();
  if (ok && m_autoPlay && Ambient().UserMode()) Play();
  return ok;
}

void USAnimatedImage::FinishRead(bool opened) {
  std::vector<uint8_t> data = std::move(m_data);
  CancelRead();
  bool ok = opened && m_frames.Decode(data);
  m_frame = 0;
  ApplyAutoSize();
  Paint();
  Step([&] { AsyncReadComplete(ok); });
  if (ok && m_autoPlay && Ambient().UserMode()) Play();
}

// ---- Painting and size ----------------------------------------------------------------------------

void USAnimatedImage::ApplyAutoSize() {
  if (!m_autoSize || m_frames.Count() == 0) return;
  Step([&] {
    Move(Left(), Top(), static_cast<float>(m_frames.Width() * kTwipsPerPixel),
         static_cast<float>(m_frames.Height() * kTwipsPerPixel));
  });
}

void USAnimatedImage::Paint() {
  if (!hWnd()) return;
  Step([&] { AutoRedraw(true); });
  Step([&] { Cls(); });
  ++m_paintCount;
  Step([&] {
    if (m_frame < 0 || m_frame >= m_frames.Count()) return;
    image::API32bppDIB* picture = m_frames.Frame(m_frame).picture.get();
    if (m_stretch) picture->Render(UserControl::hDC(), 0, 0, m_clientWidth, m_clientHeight);
    else picture->Render(UserControl::hDC(), 0, 0);
  });
  Step([&] { AutoRedraw(false); });
}

void USAnimatedImage::UserControl_HitTest(float X, float Y, int16_t& HitResult) {
  HitResult = 3;
  if (UserControl::BackStyle() != 0) return;
  // Transparent: only where the frame shown has a pixel.
  HitResult = 0;
  const image::API32bppDIB* picture = CurrentPicture();
  if (!picture || X < 0 || Y < 0) return;
  int64_t px = static_cast<int64_t>(X);
  int64_t py = static_cast<int64_t>(Y);
  if (m_stretch) {
    if (m_clientWidth <= 0 || m_clientHeight <= 0) return;
    px = px * picture->Width() / m_clientWidth;
    py = py * picture->Height() / m_clientHeight;
  }
  if (px >= picture->Width() || py >= picture->Height()) return;
  uint8_t alpha = 0;
  if (picture->GetPixel(static_cast<int32_t>(px), static_cast<int32_t>(py), alpha) >= 0 && alpha > 0) HitResult = 3;
}

// ---- Lifecycle ------------------------------------------------------------------------------------

void USAnimatedImage::UserControl_InitProperties() {
  m_fileName.clear();
  m_autoPlay = true;
  m_loopCount = -1;
  m_stretch = false;
  m_autoSize = false;
  Step([&] { UserControl::BackStyle(0); });
  Step([&] { UserControl::BackColor(kDefaultBackColor); });
}

void USAnimatedImage::UserControl_ReadProperties(host::PropertyBag& PropBag) {
  const BagReader saved(PropBag);
  Step([&] { m_fileName = saved.Read(u"FileName", Variant(String())).ToString(); });
  Step([&] { m_autoPlay = saved.Read(u"AutoPlay", Variant(true)).ToBoolean(); });
  Step([&] { m_loopCount = std::max(-1, saved.Read(u"LoopCount", Variant(int32_t{-1})).ToLong()); });
  Step([&] { m_stretch = saved.Read(u"Stretch", Variant(false)).ToBoolean(); });
  Step([&] { m_autoSize = saved.Read(u"AutoSize", Variant(false)).ToBoolean(); });
  Step([&] { UserControl::BackStyle(saved.Read(u"BackStyle", Variant(int16_t{0})).ToLong() == 0 ? 0 : 1); });
  Step([&] { UserControl::BackColor(saved.Read(u"BackColor", Variant(kDefaultBackColor)).ToLong()); });
  Step([&] { UserControl::Enabled(saved.Read(u"Enabled", Variant(true)).ToBoolean()); });
}

void USAnimatedImage::UserControl_WriteProperties(host::PropertyBag& PropBag) {
  auto write = [&](const char16_t* key, const Variant& value, const Variant& def) {
    Step([&] { PropBag.WriteProperty(key, value, def); });
  };
  write(u"FileName", Variant(m_fileName), Variant(String()));
  write(u"AutoPlay", Variant(m_autoPlay), Variant(true));
  write(u"LoopCount", Variant(m_loopCount), Variant(int32_t{-1}));
  write(u"Stretch", Variant(m_stretch), Variant(false));
  write(u"AutoSize", Variant(m_autoSize), Variant(false));
  write(u"BackStyle", Variant(UserControl::BackStyle()), Variant(int16_t{0}));
  write(u"BackColor", Variant(UserControl::BackColor()), Variant(kDefaultBackColor));
  write(u"Enabled", Variant(UserControl::Enabled()), Variant(true));
}

void USAnimatedImage::UserControl_Resize() {
  platform::RECT rc{};
  Step([&] { platform::GetClientRect(UserControl::hWnd(), &rc); });
  m_clientWidth = rc.right;
  m_clientHeight = rc.bottom;
  Paint();
}

void USAnimatedImage::UserControl_Show() {
  // The first Show starts the read of the saved file; later ones find it read or reading.
  if (m_shown) return;
  m_shown = true;
  if (!m_fileName.empty()) StartRead();
  else Paint();
}

void USAnimatedImage::UserControl_Terminate() {
  CancelRead();
  Pause();
  m_frames.Clear();
  m_shown = false;
}

void USAnimatedImage::UserControl_Click() { Step([&] { Click(); }); }
void USAnimatedImage::UserControl_DblClick() { Step([&] { DblClick(); }); }
void USAnimatedImage::UserControl_MouseDown(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseDown(Button, Shift, X, Y); });
}
void USAnimatedImage::UserControl_MouseMove(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseMove(Button, Shift, X, Y); });
}
void USAnimatedImage::UserControl_MouseUp(int16_t& Button, int16_t& Shift, float& X, float& Y) {
  Step([&] { MouseUp(Button, Shift, X, Y); });
}

bool USAnimatedImage::PreTranslateMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam, intptr_t& lResult) {
  if (msg != platform::WM_TIMER || (wParam != kReadTimer && wParam != kFrameTimer)) return false;
  Step([&] {
    if (wParam == kReadTimer) ReadStep();
    else FrameStep();
  });
  lResult = 0;
  return true;
}

void USAnimatedImage::ConnectEventSink(const host::EventSink& sink) {
  host::BindEventSinks(sink, u"AsyncReadProgress", AsyncReadProgress, u"AsyncReadComplete", AsyncReadComplete,
                       u"FrameChange", FrameChange, u"PlayComplete", PlayComplete, u"Click", Click, u"DblClick",
                       DblClick, u"MouseDown", MouseDown, u"MouseMove", MouseMove, u"MouseUp", MouseUp);
}

Variant USAnimatedImage::Invoke(StringView name, host::CallKind kind, std::span<Variant> args) {
  using P = USAnimatedImage;
  static const detail::MemberTable<P> table = [] {
    detail::MemberTable<P> t;
    t.Property(u"FileName", [](P& c) { return Variant(c.FileName()); },
               [](P& c, const Variant& v) { c.FileName(v.ToString()); });
    t.Property(u"AutoPlay", [](P& c) { return Variant(c.AutoPlay()); },
               [](P& c, const Variant& v) { c.AutoPlay(v.ToBoolean()); });
    t.Property(u"LoopCount", [](P& c) { return Variant(c.LoopCount()); },
               [](P& c, const Variant& v) { c.LoopCount(v.ToLong()); });
    t.Property(u"Stretch", [](P& c) { return Variant(c.Stretch()); },
               [](P& c, const Variant& v) { c.Stretch(v.ToBoolean()); });
    t.Property(u"AutoSize", [](P& c) { return Variant(c.AutoSize()); },
               [](P& c, const Variant& v) { c.AutoSize(v.ToBoolean()); });
    t.Property(u"BackStyle", [](P& c) { return Variant(c.BackStyle()); },
               [](P& c, const Variant& v) { c.BackStyle(static_cast<int16_t>(v.ToLong())); });
    t.Property(u"BackColor", [](P& c) { return Variant(c.BackColor()); },
               [](P& c, const Variant& v) { c.BackColor(v.ToLong()); });
    t.Property(u"Enabled", [](P& c) { return Variant(c.Enabled()); },
               [](P& c, const Variant& v) { c.Enabled(v.ToBoolean()); });
    t.Property(u"FrameIndex", [](P& c) { return Variant(c.FrameIndex()); },
               [](P& c, const Variant& v) { c.FrameIndex(v.ToLong()); });
    t.Property(u"FrameCount", [](P& c) { return Variant(c.FrameCount()); });
    t.Property(u"PictureWidth", [](P& c) { return Variant(c.PictureWidth()); });
    t.Property(u"PictureHeight", [](P& c) { return Variant(c.PictureHeight()); });
    t.Property(u"FileLoopCount", [](P& c) { return Variant(c.FileLoopCount()); });
    t.Property(u"Playing", [](P& c) { return Variant(c.Playing()); });
    t.Property(u"hWnd", [](P& c) { return Variant(static_cast<int32_t>(c.hWnd())); });
    t.Method(u"FrameDelay", [](P& c, std::span<Variant> a) {
      if (a.empty()) host::Raise(450, u"USAnimatedImage");
      return Variant(c.FrameDelay(a[0].ToLong()));
    });
    t.Method(u"LoadFromArray", [](P& c, std::span<Variant> a) {
      if (a.empty()) host::Raise(450, u"USAnimatedImage");
      const host::ByteArray bytes = a[0].ToBytes();
      return Variant(c.LoadFromArray(bytes));
    });
    t.Method(u"Play", [](P& c, std::span<Variant>) { c.Play(); return Variant(); });
    t.Method(u"Pause", [](P& c, std::span<Variant>) { c.Pause(); return Variant(); });
    t.Method(u"Stop", [](P& c, std::span<Variant>) { c.Stop(); return Variant(); });
    t.Method(u"Refresh", [](P& c, std::span<Variant>) { c.Refresh(); return Variant(); });
    t.Method(u"About", [](P& c, std::span<Variant>) { c.About(); return Variant(); });
    return t;
  }();
  Variant result;
  if (table.Dispatch(*this, name, kind, args, result, u"USAnimatedImage")) return result;
  return UserControl::Invoke(name, kind, args);
}

}  // namespace mx::controls
