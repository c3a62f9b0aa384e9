// USAnimatedImage and its frame decoder: disposal (keep, background, previous) and transparency
// composed into whole-screen frames, delays on the virtual clock, plays and the looping
// extension, the chunked read with its events, failed reads, HitTest, persistence, two faces.
#include "support/Golden.h"
#include "GifTestWriter.h"
#include "SmallControlTestSupport.h"
#include "controls/GifFrames.h"
#include "controls/USAnimatedImage.h"
#include "controls/Registration.h"
#include "host/Err.h"
#include "host/Form.h"
#include "platform/MessageQueue.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace mx::controls::testing {
namespace {

constexpr int32_t kRed = 0x0000FF, kGreen = 0x00A000, kBlue = 0xFF0000;  // 0xBBGGRR

// 24 x 24, four frames:
//   0  whole screen red, 50 ms, keep
//   1  green 12 x 12 at (6, 6) whose top-left 3 x 3 are the transparent index, 100 ms,
//      disposal background
//   2  blue 6 x 6 at (0, 0), delay 0 (plays at 100 ms), disposal previous
//   3  blue 6 x 6 at (18, 18), 200 ms
TestGif SampleGif(int repeat = 0) {
  TestGif g;
  g.width = 24;
  g.height = 24;
  g.palette = {GifColorType{0, 0, 0}, GifColorType{255, 0, 0}, GifColorType{0, 160, 0}, GifColorType{0, 0, 255}};
  g.repeat = repeat;
  g.frames.push_back(SolidFrame(0, 0, 24, 24, 1, 5, DISPOSE_DO_NOT));
  TestFrame green = SolidFrame(6, 6, 12, 12, 2, 10, DISPOSE_BACKGROUND, 0);
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 3; ++x) green.indexes[static_cast<size_t>(y) * 12 + x] = 0;
  g.frames.push_back(green);
  g.frames.push_back(SolidFrame(0, 0, 6, 6, 3, 0, DISPOSE_PREVIOUS));
  g.frames.push_back(SolidFrame(18, 18, 6, 6, 3, 20, DISPOSAL_UNSPECIFIED));
  return g;
}

// Colour (0xBBGGRR) of a frame's pixel, or -1 where it is transparent.
int32_t At(const GifFrames& f, int frame, int x, int y) {
  uint8_t alpha = 0;
  const int32_t c = f.Frame(frame).picture->GetPixel(x, y, alpha);
  return alpha == 0 ? -1 : c;
}

TEST(GifFramesTest, DisposalAndTransparencyComposeWholeFrames) {
  GifFrames f;
  ASSERT_TRUE(f.Decode(EncodeGif(SampleGif())));
  ASSERT_EQ(f.Count(), 4);
  EXPECT_EQ(f.Width(), 24);
  EXPECT_EQ(f.Height(), 24);

  EXPECT_EQ(At(f, 0, 0, 0), kRed);
  EXPECT_EQ(At(f, 0, 23, 23), kRed);
  // The transparent index shows what the first frame left; the rest of the rectangle is green.
  EXPECT_EQ(At(f, 1, 6, 6), kRed);
  EXPECT_EQ(At(f, 1, 8, 8), kRed);
  EXPECT_EQ(At(f, 1, 9, 9), kGreen);
  EXPECT_EQ(At(f, 1, 17, 17), kGreen);
  EXPECT_EQ(At(f, 1, 18, 18), kRed);
  // Background disposal of frame 1 cleared its whole rectangle, transparent pixels included.
  EXPECT_EQ(At(f, 2, 6, 6), -1);
  EXPECT_EQ(At(f, 2, 12, 12), -1);
  EXPECT_EQ(At(f, 2, 17, 17), -1);
  EXPECT_EQ(At(f, 2, 18, 12), kRed);
  EXPECT_EQ(At(f, 2, 0, 0), kBlue);
  EXPECT_EQ(At(f, 2, 5, 5), kBlue);
  // "Previous" put back the red under frame 2 before frame 3 was drawn; the hole stays.
  EXPECT_EQ(At(f, 3, 0, 0), kRed);
  EXPECT_EQ(At(f, 3, 5, 5), kRed);
  EXPECT_EQ(At(f, 3, 12, 12), -1);
  EXPECT_EQ(At(f, 3, 20, 20), kBlue);
  EXPECT_EQ(f.Frame(3).picture->Alpha(), image::AlphaSimple);
  EXPECT_EQ(f.Frame(0).picture->Alpha(), image::AlphaNone);

  EXPECT_EQ(f.DelayMs(0), 50);
  EXPECT_EQ(f.DelayMs(1), 100);
  EXPECT_EQ(f.DelayMs(2), GifFrames::kDefaultDelayMs);
  EXPECT_EQ(f.DelayMs(3), 200);
  EXPECT_EQ(f.Frame(1).disposal, DISPOSE_BACKGROUND);
  EXPECT_EQ(f.Frame(1).transparent, 0);
}

TEST(GifFramesTest, LoopingExtensionCountsPlays) {
  GifFrames f;
  for (auto [repeat, plays] : {std::pair{-1, 1}, {0, 0}, {1, 2}, {5, 6}, {65535, 65536}}) {
    ASSERT_TRUE(f.Decode(EncodeGif(SampleGif(repeat)))) << repeat;
    EXPECT_EQ(f.FilePlays(), plays) << repeat;
  }
}

TEST(GifFramesTest, FramesOffTheScreenAreClippedAndBadDataRefused) {
  TestGif g = SampleGif();
  // A frame that runs past the right and bottom edges, and one with no visible part at all.
  g.frames.push_back(SolidFrame(20, 22, 10, 10, 2, 3, 0));
  g.frames.push_back(SolidFrame(40, 40, 4, 4, 2, 3, 0));
  GifFrames f;
  ASSERT_TRUE(f.Decode(EncodeGif(g)));
  ASSERT_EQ(f.Count(), 6);
  EXPECT_EQ(At(f, 4, 23, 23), kGreen);
  EXPECT_EQ(At(f, 4, 19, 23), kBlue);
  EXPECT_EQ(At(f, 5, 23, 23), kGreen);

  const std::vector<uint8_t> bytes = EncodeGif(SampleGif());
  EXPECT_FALSE(f.Decode({}));
  EXPECT_EQ(f.Count(), 0);
  std::vector<uint8_t> notGif(bytes);
  notGif[0] = 'X';
  EXPECT_FALSE(f.Decode(notGif));
  // Cut in the middle of the last frame's raster: the whole frames before it still play.
  std::vector<uint8_t> cut(bytes.begin(), bytes.end() - 8);
  ASSERT_TRUE(f.Decode(cut));
  EXPECT_EQ(f.Count(), 3);
  EXPECT_EQ(At(f, 2, 0, 0), kBlue);
  // Cut inside the header: nothing.
  EXPECT_FALSE(f.Decode(std::span<const uint8_t>(bytes.data(), 10)));
}

TEST(GifFramesTest, InterlacedRowsLandInPlaceAndDamageAfterWholeFramesKeepsThem) {
  // Eleven rows, each its own index, written in the four interlace passes.
  TestGif g;
  g.width = 3;
  g.height = 11;
  g.palette = {GifColorType{0, 0, 0}, GifColorType{255, 0, 0}, GifColorType{0, 160, 0}, GifColorType{0, 0, 255}};
  TestFrame rows = SolidFrame(0, 0, 3, 11, 0, 10, DISPOSE_DO_NOT);
  rows.interlaced = true;
  for (int y = 0; y < 11; ++y)
    for (int x = 0; x < 3; ++x) rows.indexes[static_cast<size_t>(y) * 3 + x] = static_cast<uint8_t>(1 + y % 3);
  g.frames.push_back(rows);
  GifFrames f;
  ASSERT_TRUE(f.Decode(EncodeGif(g)));
  const int32_t byIndex[] = {0, kRed, kGreen, kBlue};
  for (int y = 0; y < 11; ++y) EXPECT_EQ(At(f, 0, 1, y), byIndex[1 + y % 3]) << "row " << y;

  // A stray byte where the trailer belongs: the four whole frames before it all play.
  std::vector<uint8_t> bytes = EncodeGif(SampleGif());
  ASSERT_EQ(bytes.back(), 0x3B);
  bytes.back() = 0x99;
  ASSERT_TRUE(f.Decode(bytes));
  EXPECT_EQ(f.Count(), 4);
  EXPECT_EQ(At(f, 3, 20, 20), kBlue);
}

TEST(GifFramesTest, AFrameClaimingAHugeRectangleIsReadRowByRow) {
  // The last frame's descriptor rewritten from 6 x 6 to 60000 x 60000: its 36 pixels of data end
  // long before the claim is met, so that frame is dropped and the three before it play.
  std::vector<uint8_t> bytes = EncodeGif(SampleGif());
  const uint8_t last[] = {0x2C, 18, 0, 18, 0, 6, 0, 6, 0};
  auto at = std::search(bytes.begin(), bytes.end(), std::begin(last), std::end(last));
  ASSERT_NE(at, bytes.end());
  for (size_t k : {5u, 7u}) at[k] = 0x60, at[k + 1] = 0xEA;
  GifFrames f;
  ASSERT_TRUE(f.Decode(bytes));
  EXPECT_EQ(f.Count(), 3);
  EXPECT_EQ(At(f, 2, 0, 0), kBlue);
  EXPECT_EQ(At(f, 2, 20, 20), kRed);
}

// ---- The control ------------------------------------------------------------------------------

// The hit test opened, as the window procedure reaches it.
class HitImage : public USAnimatedImage {
 public:
  using USAnimatedImage::UserControl_HitTest;
};

class AnimatedTest : public SmallControlTest {
 protected:
  // An image control of w x h at screen (x, y), not playing by itself, with its events counted.
  std::shared_ptr<Open<USAnimatedImage>> Image(int x, int y, int w, int h) {
    auto a = Make<USAnimatedImage>(x, y, w, h);
    a->AutoPlay(false);
    a->AsyncReadProgress.connect([this](int32_t& read, int32_t& max) { progress.emplace_back(read, max); });
    a->AsyncReadComplete.connect([this](bool& ok) { completions.push_back(ok); });
    a->FrameChange.connect([this](int32_t& index) { frames.push_back(index); });
    a->PlayComplete.connect([this] { ++ends; });
    return a;
  }
  // Sets the file and lets the read run out.
  static void Load(USAnimatedImage& a, const std::string& path) {
    a.FileName(host::FromUtf8(path));
    platform::RunFor(1000);
  }

  std::vector<std::pair<int32_t, int32_t>> progress;
  std::vector<bool> completions;
  std::vector<int32_t> frames;
  int ends = 0;
};

TEST_F(AnimatedTest, ReadsInChunksOnTheClockThenCompletes) {
  // Noise in 256 colours does not compress: the file spans several chunks.
  TestGif g;
  g.width = 96;
  g.height = 96;
  for (int i = 0; i < 256; ++i)
    g.palette.push_back(GifColorType{static_cast<uint8_t>(i), static_cast<uint8_t>(i * 7), static_cast<uint8_t>(i * 13)});
  TestFrame noise = SolidFrame(0, 0, 96, 96, 0, 4, 0);
  uint32_t seed = 12345;
  for (uint8_t& b : noise.indexes) b = static_cast<uint8_t>((seed = seed * 1103515245u + 12345u) >> 24);
  g.frames = {noise, SolidFrame(10, 10, 5, 5, 7, 4, 0)};
  const std::vector<uint8_t> bytes = EncodeGif(g);
  ASSERT_GT(bytes.size(), 2u * USAnimatedImage::kReadChunk);
  TempFile file("noise.gif", bytes);
  const int32_t size = static_cast<int32_t>(bytes.size());

  auto a = Image(0, 0, 96, 96);
  a->FileName(host::FromUtf8(file.path()));
  EXPECT_TRUE(a->Reading());
  EXPECT_TRUE(progress.empty());  // nothing arrives from the setter itself
  platform::RunFor(USAnimatedImage::kReadIntervalMs);
  ASSERT_EQ(progress.size(), 1u);
  EXPECT_EQ(progress[0], std::make_pair(USAnimatedImage::kReadChunk, size));
  EXPECT_TRUE(completions.empty());
  platform::RunFor(1000);

  const size_t chunks = (bytes.size() + USAnimatedImage::kReadChunk - 1) / USAnimatedImage::kReadChunk;
  ASSERT_EQ(progress.size(), chunks);
  EXPECT_EQ(progress.back(), std::make_pair(size, size));
  ASSERT_EQ(completions, std::vector<bool>{true});
  EXPECT_FALSE(a->Reading());
  EXPECT_EQ(a->BytesRead(), size);
  EXPECT_EQ(a->FrameCount(), 2);
  EXPECT_FALSE(a->Playing());  // AutoPlay is off
}

TEST_F(AnimatedTest, MissingAndBrokenFilesCompleteUnsuccessfully) {
  auto a = Image(0, 0, 24, 24);
  a->FileName(u"/nonexistent/nothing.gif");
  EXPECT_TRUE(completions.empty());
  platform::RunFor(100);
  EXPECT_EQ(completions, std::vector<bool>{false});
  EXPECT_TRUE(progress.empty());
  EXPECT_EQ(a->FrameCount(), 0);

  TempFile junk("junk.gif", std::vector<uint8_t>(100, 0x42));
  Load(*a, junk.path());
  EXPECT_EQ(completions, (std::vector<bool>{false, false}));
  EXPECT_EQ(progress.size(), 1u);
  EXPECT_EQ(a->FrameCount(), 0);
  a->Play();  // nothing to play: no timer, no events
  platform::RunFor(1000);
  EXPECT_FALSE(a->Playing());
  EXPECT_TRUE(frames.empty());
  EXPECT_THROW(a->FrameIndex(0), host::RuntimeError);
  EXPECT_THROW((void)a->FrameDelay(0), host::RuntimeError);
}

TEST_F(AnimatedTest, FramesAdvanceOnTheirOwnDelays) {
  TempFile file("sample.gif", EncodeGif(SampleGif()));
  auto a = Image(0, 0, 24, 24);
  Load(*a, file.path());
  ASSERT_EQ(a->FrameCount(), 4);
  EXPECT_EQ(a->FrameDelay(2), 100);

  a->Play();
  EXPECT_TRUE(a->Playing());
  // Frame n shows for its delay and not a millisecond less: 50, 100, 100 (written as 0), 200.
  const int delays[] = {50, 100, 100, 200, 50};
  for (int step = 0; step < 5; ++step) {
    platform::RunFor(delays[step] - 1);
    EXPECT_EQ(a->FrameIndex(), step % 4) << step;
    platform::RunFor(1);
    EXPECT_EQ(a->FrameIndex(), (step + 1) % 4) << step;
  }
  EXPECT_EQ(frames, (std::vector<int32_t>{1, 2, 3, 0, 1}));

  // Pause holds the frame; Play goes on from it with its full delay.
  a->Pause();
  platform::RunFor(5000);
  EXPECT_EQ(a->FrameIndex(), 1);
  a->Play();
  platform::RunFor(99);
  EXPECT_EQ(a->FrameIndex(), 1);
  platform::RunFor(1);
  EXPECT_EQ(a->FrameIndex(), 2);
  // Stop goes back to the first frame.
  a->Stop();
  EXPECT_EQ(a->FrameIndex(), 0);
  EXPECT_FALSE(a->Playing());
  platform::RunFor(5000);
  EXPECT_EQ(a->FrameIndex(), 0);
  EXPECT_EQ(frames.back(), 0);
  EXPECT_EQ(ends, 0);  // the file loops for ever
}

TEST_F(AnimatedTest, LoadsFromBytesAtOnceAndClearsTheFileName) {
  TempFile file("sample.gif", EncodeGif(SampleGif()));
  auto a = Image(0, 0, 24, 24);
  Load(*a, file.path());
  ASSERT_EQ(a->FrameCount(), 4);
  a->Play();
  platform::RunFor(50);
  ASSERT_EQ(a->FrameIndex(), 1);

  // A two-frame GIF from memory replaces the frames at once, back on the first frame.
  TestGif two;
  two.width = 24;
  two.height = 24;
  two.palette = {{0, 0, 0}, {255, 0, 0}, {0, 255, 0}, {0, 0, 255}};
  two.frames = {SolidFrame(0, 0, 24, 24, 1, 10, 0), SolidFrame(0, 0, 24, 24, 2, 10, 0)};
  completions.clear();
  EXPECT_TRUE(a->LoadFromArray(EncodeGif(two)));
  EXPECT_EQ(a->FrameCount(), 2);
  EXPECT_EQ(a->FrameIndex(), 0);
  EXPECT_FALSE(a->Playing());
  EXPECT_TRUE(a->FileName().empty());
  EXPECT_TRUE(completions.empty()) << "no read on the clock";

  // Bytes that are no GIF leave no frames.
  const std::vector<uint8_t> junk{'n', 'o', 't', ' ', 'a', ' ', 'g', 'i', 'f'};
  EXPECT_FALSE(a->LoadFromArray(junk));
  EXPECT_EQ(a->FrameCount(), 0);

  // By name, with the bytes in a Variant.
  std::vector<host::Variant> args{host::Variant(host::ByteArray(EncodeGif(two)))};
  EXPECT_TRUE(a->Invoke(u"LoadFromArray", host::CallKind::Method, args).ToBoolean());
  EXPECT_EQ(a->FrameCount(), 2);
}

TEST_F(AnimatedTest, PlaysAsManyTimesAsTheFileOrLoopCountSays) {
  constexpr int kLoopMs = 450;
  TempFile twice("twice.gif", EncodeGif(SampleGif(1)));
  auto a = Image(0, 0, 24, 24);
  Load(*a, twice.path());
  EXPECT_EQ(a->FileLoopCount(), 2);
  a->Play();
  platform::RunFor(kLoopMs * 2 - 1);
  EXPECT_TRUE(a->Playing());
  EXPECT_EQ(ends, 0);
  platform::RunFor(1);
  // The end keeps the last frame on the screen.
  EXPECT_FALSE(a->Playing());
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(a->FrameIndex(), 3);
  platform::RunFor(5000);
  EXPECT_EQ(a->FrameIndex(), 3);
  EXPECT_EQ(ends, 1);

  // Play after the end starts again from the first frame; LoopCount 1 overrides the file.
  a->LoopCount(1);
  frames.clear();
  a->Play();
  EXPECT_EQ(a->FrameIndex(), 0);
  platform::RunFor(kLoopMs);
  EXPECT_EQ(ends, 2);
  EXPECT_EQ(frames, (std::vector<int32_t>{0, 1, 2, 3}));

  // A file without the extension plays once; LoopCount 0 plays it for ever.
  TempFile once("once.gif", EncodeGif(SampleGif(-1)));
  Load(*a, once.path());
  EXPECT_EQ(a->FileLoopCount(), 1);
  a->LoopCount(-1);
  a->Play();
  platform::RunFor(kLoopMs);
  EXPECT_EQ(ends, 3);
  a->LoopCount(0);
  a->Play();
  platform::RunFor(kLoopMs * 20);
  EXPECT_TRUE(a->Playing());
  EXPECT_EQ(ends, 3);
  EXPECT_THROW(a->LoopCount(-2), host::RuntimeError);
}

TEST_F(AnimatedTest, AutoPlayStartsWhenTheReadCompletesAtRunTimeOnly) {
  TempFile file("sample.gif", EncodeGif(SampleGif()));
  auto run = Make<USAnimatedImage>(0, 0, 24, 24);
  run->FileName(host::FromUtf8(file.path()));
  platform::RunFor(USAnimatedImage::kReadIntervalMs);
  EXPECT_TRUE(run->Playing());
  auto design = Make<USAnimatedImage>(30, 0, 24, 24, nullptr, /*userMode=*/false);
  design->FileName(host::FromUtf8(file.path()));
  platform::RunFor(USAnimatedImage::kReadIntervalMs);
  EXPECT_EQ(design->FrameCount(), 4);
  EXPECT_FALSE(design->Playing());
  // A new file while playing stops the old frames at once.
  run->FileName(u"");
  EXPECT_FALSE(run->Playing());
  EXPECT_EQ(run->FrameCount(), 0);
}

TEST_F(AnimatedTest, HitTestFollowsOpaquePixelsWhenTransparent) {
  TempFile file("sample.gif", EncodeGif(SampleGif()));
  auto a = Make<HitImage>(0, 0, 48, 30);
  a->AutoPlay(false);
  a->FileName(host::FromUtf8(file.path()));
  platform::RunFor(100);
  auto hit = [&](float x, float y) {
    int16_t result = 3;
    a->UserControl_HitTest(x, y, result);
    return result;
  };
  a->FrameIndex(2);
  EXPECT_EQ(hit(2, 2), 3);    // blue
  EXPECT_EQ(hit(20, 3), 3);   // red
  EXPECT_EQ(hit(10, 10), 0);  // the cleared hole
  EXPECT_EQ(hit(30, 3), 0);   // right of the picture
  EXPECT_EQ(hit(3, 26), 0);   // below it
  // Stretched over 48 x 30, (20, 13) maps to the hole's (10, 10) and (40, 5) to red (20, 4).
  a->Stretch(true);
  EXPECT_EQ(hit(20, 13), 0);
  EXPECT_EQ(hit(40, 5), 3);
  EXPECT_EQ(hit(47, 29), 3);
  // Opaque: the whole control.
  a->BackStyle(1);
  EXPECT_EQ(hit(20, 13), 3);
  a->FileName(u"");
  EXPECT_EQ(hit(1, 1), 3);
  a->BackStyle(0);
  EXPECT_EQ(hit(1, 1), 0);
}

TEST_F(AnimatedTest, PropertiesKeepThroughTheBagAndAutoSizeFits) {
  TempFile file("sample.gif", EncodeGif(SampleGif()));
  auto a = Image(0, 0, 60, 50);
  a->FileName(host::FromUtf8(file.path()));
  a->AutoPlay(true);
  a->LoopCount(3);
  a->Stretch(true);
  a->BackStyle(1);
  a->BackColor(0x123456);
  a->AutoSize(true);
  host::PropertyBag bag;
  a->SaveTo(bag);

  host::PropertyBag empty;
  auto fresh = Make<USAnimatedImage>(0, 0, 10, 10);
  fresh->SaveTo(empty);
  for (const char16_t* key : {u"FileName", u"AutoPlay", u"LoopCount", u"Stretch", u"AutoSize", u"BackStyle"})
    EXPECT_TRUE(empty.ReadProperty(key, host::Variant(u"absent")).ToString() == u"absent") << host::ToUtf8(key);

  auto b = Make<USAnimatedImage>(0, 60, 60, 50, &bag);
  EXPECT_EQ(host::ToUtf8(b->FileName()), file.path());
  EXPECT_EQ(b->LoopCount(), 3);
  EXPECT_TRUE(b->Stretch());
  EXPECT_TRUE(b->AutoSize());
  EXPECT_EQ(b->BackStyle(), 1);
  EXPECT_EQ(b->BackColor(), 0x123456u);
  // The saved file is read after Show; AutoSize then takes the picture's size, and AutoPlay plays.
  platform::RunFor(USAnimatedImage::kReadIntervalMs);
  EXPECT_EQ(b->FrameCount(), 4);
  EXPECT_TRUE(b->Playing());
  EXPECT_FLOAT_EQ(b->Width(), 24 * 15.0f);
  EXPECT_FLOAT_EQ(b->Height(), 24 * 15.0f);
}

TEST_F(AnimatedTest, FacesOfTwoFrames) {
  TempFile file("sample.gif", EncodeGif(SampleGif()));
  // Over a white ground: frame 1 (green over red) and frame 3 (hole, restored corner), each at
  // its own size in a 32 x 32 control, then stretched to 32 x 32.
  std::vector<platform::CapturedImage> shots;
  int y = 0;
  for (bool stretch : {false, true}) {
    for (int frame : {1, 3}) {
      auto a = Image(0, y += 40, 32, 32);
      a->BackStyle(1);
      a->BackColor(0xFFFFFF);
      a->Stretch(stretch);
      Load(*a, file.path());
      a->FrameIndex(frame);
      shots.push_back(Capture(*a));
    }
  }
  // Exact pixels of the unstretched faces: the ground shows through the hole and to the right.
  EXPECT_EQ(shots[0].color(10, 10), 0x00A000u);
  EXPECT_EQ(shots[0].color(7, 7), 0x0000FFu);
  EXPECT_EQ(shots[1].color(10, 10), 0xFFFFFFu);
  EXPECT_EQ(shots[1].color(2, 2), 0x0000FFu);
  EXPECT_EQ(shots[1].color(20, 20), 0xFF0000u);
  EXPECT_EQ(shots[1].color(28, 5), 0xFFFFFFu);
  int w = 0, h = 0;
  std::vector<uint32_t> pixels = Stack(shots, w, h);
  test::ExpectGolden("controls", "animated_frames", w, h, pixels);
}

// The example form: one of each control of this layer, read through the registry; its spinner
// names its file relative to the repository, where the demo runs.
TEST_F(AnimatedTest, ExampleFormLoadsEveryControlAndPlaysItsSpinner) {
  RegisterControls();
  const auto was = std::filesystem::current_path();
  std::filesystem::current_path(MX_SOURCE_DIR);
  auto form = host::LoadFormFile("examples/controls.frm");
  ASSERT_TRUE(form);
  form->Show();
  platform::RunFor(100);
  std::filesystem::current_path(was);

  std::set<std::string> classes;
  for (const auto& c : form->Controls()) classes.insert(host::ToUtf8(c->TypeName()));
  for (const char* name : {"USButton", "USCheckBox", "USOptionButton", "USLabel", "USProgressBar", "USScrollBar",
                           "USGroupBox", "USStatusBar", "USAnimatedImage"})
    EXPECT_TRUE(classes.count(name)) << name;
  auto spinner = std::dynamic_pointer_cast<USAnimatedImage>(form->FindControl(u"aniSpinner"));
  ASSERT_TRUE(spinner);
  EXPECT_EQ(spinner->FrameCount(), 9);
  EXPECT_EQ(spinner->FileLoopCount(), 0);
  EXPECT_TRUE(spinner->Playing());
  // 90 ms after the read ended (10 ms in), the 80 ms first frame has given way to the second.
  EXPECT_EQ(spinner->FrameIndex(), 1);
  form->Unload();
}

}  // namespace
}  // namespace mx::controls::testing
