// What happens to pictures between capture and sink: rotation, mirror, zoom, watermark, the image instead of a camera.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <set>
#include <thread>

#include "corvane_rtc/video_config.h"
#include "corvane_rtc/video_effect.h"
#include "support/push_test.h"

namespace corvane::test {
namespace {

using EffectsTest = PushTest;

// The quarters of a picture by their places in another one.
Quarters arranged(size_t a, size_t b, size_t c, size_t d) {
  return {kQuarters[a], kQuarters[b], kQuarters[c], kQuarters[d]};
}

TEST_F(EffectsTest, TurnAndMirrorWhatIsSeenUpright) {
  struct Case {
    int32_t rotation;  // of the capture
    int32_t mirror;
    int32_t pushed_rotation;
    Quarters seen;
  };
  const Case cases[] = {
      {0, rtc::kMirrorTypeNone, 0, arranged(0, 1, 2, 3)},
      {90, rtc::kMirrorTypeNone, 0, arranged(2, 0, 3, 1)},
      {180, rtc::kMirrorTypeNone, 0, arranged(3, 2, 1, 0)},
      {270, rtc::kMirrorTypeNone, 0, arranged(1, 3, 0, 2)},
      {0, rtc::kMirrorTypeRender, 0, arranged(1, 0, 3, 2)},
      {90, rtc::kMirrorTypeRender, 0, arranged(0, 2, 1, 3)},
      {180, rtc::kMirrorTypeRenderAndEncoder, 0, arranged(2, 3, 0, 1)},
      {270, rtc::kMirrorTypeRenderAndEncoder, 0, arranged(3, 1, 2, 0)},
      // A picture that lies on its side is mirrored along the other axis, so that it is right once it is upright.
      {0, rtc::kMirrorTypeRender, 90, arranged(2, 3, 0, 1)},
      {0, rtc::kMirrorTypeRender, 180, arranged(1, 0, 3, 2)},
      {90, rtc::kMirrorTypeRender, 270, arranged(3, 1, 2, 0)},
  };
  for (const auto& [width, height] : {std::pair(64, 48), std::pair(35, 21)}) {
    for (const Case& each : cases) {
      ASSERT_EQ(engine->setVideoCaptureRotation(each.rotation), rtc::kSuccess);
      ASSERT_EQ(engine->setLocalVideoMirrorType(each.mirror), rtc::kSuccess);
      TestPicture picture = quartered(width, height);
      picture.rotation = each.pushed_rotation;
      const TestPicture seen = show(picture);
      const bool swapped = each.rotation % 180 != 0;
      EXPECT_EQ(seen.width, swapped ? height : width);
      EXPECT_EQ(seen.height, swapped ? width : height);
      EXPECT_EQ(seen.rotation, each.pushed_rotation);
      EXPECT_TRUE(isLike(quartersOf(seen), each.seen))
          << each.rotation << ", " << each.mirror << ", " << each.pushed_rotation;
    }
  }
  for (const int32_t bad : {-90, 45, 360}) EXPECT_EQ(engine->setVideoCaptureRotation(bad), rtc::kInvalidParameter);
  for (const int32_t bad : {-1, 2, 4}) EXPECT_EQ(engine->setLocalVideoMirrorType(bad), rtc::kInvalidParameter);
}

TEST_F(EffectsTest, RotationOfACameraChangesTheReportedSize) {
  ASSERT_EQ(engine->setVideoSourceType(rtc::kStreamIndexMain, rtc::kVideoSourceTypeInternal), rtc::kSuccess);
  capture("test:red?width=160&height=90&fps=60");
  ASSERT_TRUE(events.waitFor("first 0 160x90"));
  ASSERT_EQ(engine->setVideoCaptureRotation(90), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("size 0 90x160"));
}

TEST_F(EffectsTest, ZoomGoesInStepsAndStaysInThePicture) {
  const TestPicture picture = quartered(640, 480);
  const auto zoom_to = [&](std::initializer_list<int32_t> directions) {
    for (const int32_t direction : directions) {
      EXPECT_EQ(engine->setVideoDigitalZoomControl(direction), rtc::kSuccess);
    }
  };
  const auto is_whole = [&](const TestPicture& seen) { return seen.planes == picture.planes; };
  const auto shows = [](size_t quarter) {
    return [quarter](const TestPicture& seen) {
      return seen.width == 640 && isLike(quartersOf(seen), arranged(quarter, quarter, quarter, quarter), 1);
    };
  };
  ASSERT_EQ(engine->setVideoDigitalZoomConfig(rtc::kZoomConfigTypeFocusOffset, 1), rtc::kSuccess);
  ASSERT_EQ(engine->setVideoDigitalZoomConfig(rtc::kZoomConfigTypeMoveOffset, 0.25), rtc::kSuccess);

  // Twice as large, around the middle: the quarters meet where they did, a quarter of each is left.
  TestPicture marked = picture;
  for (const size_t at : {128300U, 128301U, 128940U, 128941U}) marked.planes[0][at] = 255;
  zoom_to({rtc::kZoomDirectionZoomIn});
  EXPECT_TRUE(becomes(marked, [](const TestPicture& seen) {
    return isLike(quartersOf(seen), kQuarters, 1) && seen.at(0, 281, 161) > 200 &&
           seen.at(0, 310, 100) == kQuarters[0][0] && seen.at(0, 330, 100) == kQuarters[1][0];
  }));

  // A quarter of the picture to the right and down: the last quarter alone.
  zoom_to({rtc::kZoomDirectionMoveRight, rtc::kZoomDirectionMoveDown});
  EXPECT_TRUE(becomes(picture, shows(3)));
  // There is nothing to be seen beyond.
  zoom_to({rtc::kZoomDirectionMoveRight, rtc::kZoomDirectionMoveLeft, rtc::kZoomDirectionMoveLeft,
           rtc::kZoomDirectionMoveUp, rtc::kZoomDirectionMoveUp});
  EXPECT_TRUE(becomes(picture, shows(0)));
  zoom_to({rtc::kZoomDirectionZoomOut, rtc::kZoomDirectionZoomOut});
  EXPECT_TRUE(becomes(picture, is_whole));
  zoom_to({rtc::kZoomDirectionZoomIn, rtc::kZoomDirectionMoveLeft, rtc::kZoomDirectionMoveUp});
  EXPECT_TRUE(becomes(picture, shows(0)));
  zoom_to({rtc::kZoomDirectionCameraReset});
  EXPECT_TRUE(becomes(picture, is_whole));

  for (const double bad : {-0.1, 7.1, std::nan("")}) {
    EXPECT_EQ(engine->setVideoDigitalZoomConfig(rtc::kZoomConfigTypeFocusOffset, bad), rtc::kInvalidParameter);
  }
  EXPECT_EQ(engine->setVideoDigitalZoomConfig(rtc::kZoomConfigTypeMoveOffset, 0.6), rtc::kInvalidParameter);
  EXPECT_EQ(engine->setVideoDigitalZoomConfig(2, 0.5), rtc::kInvalidParameter);
  for (const int32_t bad : {-1, 7}) {
    EXPECT_EQ(engine->setVideoDigitalZoomControl(bad), rtc::kInvalidParameter);
    EXPECT_EQ(engine->startVideoDigitalZoomControl(bad), rtc::kInvalidParameter);
  }
}

TEST_F(EffectsTest, ZoomLooksWhereTheUprightPictureSays) {
  ASSERT_EQ(engine->setVideoDigitalZoomConfig(rtc::kZoomConfigTypeFocusOffset, 1), rtc::kSuccess);
  ASSERT_EQ(engine->setVideoDigitalZoomConfig(rtc::kZoomConfigTypeMoveOffset, 0.25), rtc::kSuccess);
  for (const int32_t direction : {rtc::kZoomDirectionZoomIn, rtc::kZoomDirectionMoveLeft, rtc::kZoomDirectionMoveUp}) {
    ASSERT_EQ(engine->setVideoDigitalZoomControl(direction), rtc::kSuccess);
  }
  // The quarter that is up and left once the picture is upright.
  const struct {
    int32_t pushed;
    int32_t captured;
    size_t quarter;
  } cases[] = {{0, 0, 0}, {90, 0, 2}, {180, 0, 3}, {270, 0, 1}, {0, 90, 2}, {90, 180, 1}};
  for (const auto& each : cases) {
    ASSERT_EQ(engine->setVideoCaptureRotation(each.captured), rtc::kSuccess);
    TestPicture picture = quartered(640, 480);
    picture.rotation = each.pushed;
    const Quarters expected = arranged(each.quarter, each.quarter, each.quarter, each.quarter);
    EXPECT_TRUE(
        becomes(picture, [&expected](const TestPicture& seen) { return isLike(quartersOf(seen), expected, 1); }))
        << each.pushed << ", " << each.captured;
  }
}

TEST_F(EffectsTest, ZoomGoesOnUntilItIsStopped) {
  ASSERT_EQ(engine->setVideoDigitalZoomConfig(rtc::kZoomConfigTypeFocusOffset, 0.25), rtc::kSuccess);
  // A line beside the middle moves outwards from step to step.
  TestPicture picture = quartered(640, 480);
  for (size_t row = 0; row < 480; ++row) {
    for (size_t x = 330; x < 334; ++x) picture.planes[0][row * 640 + x] = 250;
  }
  const auto line_at = [&] {
    const TestPicture seen = show(picture);
    const auto row = seen.planes[0].begin() + 100 * 640;
    return std::distance(row, std::max_element(row, row + 640));
  };
  ASSERT_EQ(engine->startVideoDigitalZoomControl(rtc::kZoomDirectionZoomIn), rtc::kSuccess);
  std::set<ptrdiff_t> places;
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  while (places.size() < 4 && std::chrono::steady_clock::now() < deadline) places.insert(line_at());
  ASSERT_EQ(engine->stopVideoDigitalZoomControl(), rtc::kSuccess);
  EXPECT_GE(places.size(), 4U);
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  const ptrdiff_t stopped_at = line_at();
  std::this_thread::sleep_for(std::chrono::milliseconds(350));
  EXPECT_EQ(line_at(), stopped_at);
}

// A file of one colour, 40 by 40 pixels.
std::string imageFile(const TemporaryFolder& folder, const std::string& name, const std::string& encoder,
                      const std::string& colour) {
  std::string path = folder.file(name);
  EXPECT_TRUE(runPipeline("videotestsrc num-buffers=1 pattern=solid-color foreground-color=" + colour +
                          " ! video/x-raw,format=ARGB,width=40,height=40 ! videoconvert ! " + encoder +
                          " ! filesink location=" + path));
  return path;
}

rtc::WatermarkConfig placedAt(const rtc::WatermarkPosition& place) {
  return {true, place, place};
}

constexpr std::array<uint8_t, 3> kRed = {82, 90, 240};

bool isRed(const TestPicture& picture, int32_t x, int32_t y) {
  for (size_t plane = 0; plane < 3; ++plane) {
    if (std::abs(picture.at(plane, x, y) - kRed[plane]) > 4) return false;
  }
  return true;
}

TEST_F(EffectsTest, WatermarkStandsAtItsPlace) {
  rtc::IVideoEffect* effects = engine->getVideoEffectInterface();
  ASSERT_NE(effects, nullptr);
  const std::string red = imageFile(folder, "red.png", "pngenc", "0xffff0000");
  rtc::WatermarkConfig config = {true, {0.25, 0.2, 0.5, 0.1}, {0.5, 0.1, 0, 0.8}};
  ASSERT_EQ(effects->setVideoWatermark(rtc::kStreamIndexMain, red.c_str(), config), rtc::kSuccess);

  struct Box {
    int32_t x;
    int32_t y;
    int32_t width;
    int32_t height;
  };
  const auto check = [&](const TestPicture& seen, const Box& box) {
    TestPicture plain = quartered(seen.width, seen.height);
    for (int32_t y = 0; y < seen.height; y += 2) {
      for (int32_t x = 0; x < seen.width; x += 2) {
        const bool inside = x >= box.x && x < box.x + box.width && y >= box.y && y < box.y + box.height;
        if (inside ? !isRed(seen, x, y) : seen.at(0, x, y) != plain.at(0, x, y)) {
          ADD_FAILURE() << x << ", " << y << " of " << seen.width << "x" << seen.height << ", rotation "
                        << seen.rotation;
          return;
        }
      }
    }
  };
  check(show(quartered(320, 200)), {160, 20, 80, 40});
  check(show(quartered(200, 320)), {0, 256, 100, 32});
  // A picture that lies: it is upright in portrait, and so is the watermark.
  TestPicture lying = quartered(320, 200);
  lying.rotation = 90;
  check(show(lying), {256, 100, 32, 100});
  lying.rotation = 270;
  check(show(lying), {32, 0, 32, 100});
  lying.rotation = 180;
  check(show(lying), {80, 140, 80, 40});

  // Mirroring the picture leaves the watermark where it can be read.
  ASSERT_EQ(engine->setLocalVideoMirrorType(rtc::kMirrorTypeRender), rtc::kSuccess);
  EXPECT_TRUE(isRed(show(quartered(320, 200)), 170, 30));
  ASSERT_EQ(engine->setLocalVideoMirrorType(rtc::kMirrorTypeNone), rtc::kSuccess);

  // Cut off at the edge; unseen where it has no size.
  ASSERT_EQ(effects->setVideoWatermark(rtc::kStreamIndexMain, red.c_str(), placedAt({0.5, 0.5, 0.75, 0.75})),
            rtc::kSuccess);
  check(show(quartered(320, 200)), {240, 150, 80, 50});
  ASSERT_EQ(effects->setVideoWatermark(rtc::kStreamIndexMain, red.c_str(), placedAt({0, 0.5, 0.1, 0.1})),
            rtc::kSuccess);
  EXPECT_EQ(show(quartered(320, 200)).planes, quartered(320, 200).planes);
  config.visible_in_preview = false;
  ASSERT_EQ(effects->setVideoWatermark(rtc::kStreamIndexMain, red.c_str(), config), rtc::kSuccess);
  EXPECT_EQ(show(quartered(320, 200)).planes, quartered(320, 200).planes);
  config.visible_in_preview = true;
  ASSERT_EQ(effects->setVideoWatermark(rtc::kStreamIndexMain, red.c_str(), config), rtc::kSuccess);
  EXPECT_TRUE(isRed(show(quartered(33, 21)), 20, 4));
  ASSERT_EQ(effects->clearVideoWatermark(rtc::kStreamIndexMain), rtc::kSuccess);
  EXPECT_EQ(show(quartered(320, 200)).planes, quartered(320, 200).planes);
}

TEST_F(EffectsTest, WatermarkLetsThePictureThroughWhereItIsTransparent) {
  rtc::IVideoEffect* effects = engine->getVideoEffectInterface();
  const TestPicture picture = quartered(320, 200, {{{50, 128, 128}, {50, 128, 128}, {50, 128, 128}, {50, 128, 128}}});
  const auto centre = [&](const std::string& colour) {
    const std::string file = imageFile(folder, "image.png", "pngenc", colour);
    EXPECT_EQ(effects->setVideoWatermark(rtc::kStreamIndexMain, file.c_str(), placedAt({1, 1, 0, 0})), rtc::kSuccess);
    return show(picture).at(0, 100, 100);
  };
  EXPECT_NEAR(centre("0xffffffff"), 235, 2);
  EXPECT_NEAR(centre("0x80ffffff"), (235 + 50) / 2.0, 4);
  EXPECT_NEAR(centre("0x00ffffff"), 50, 1);
}

TEST_F(EffectsTest, ImagesThatAreNoneAreRefused) {
  rtc::IVideoEffect* effects = engine->getVideoEffectInterface();
  const auto written = [&](const std::string& name, const std::string& bytes) {
    std::ofstream(folder.file(name), std::ios::binary) << bytes;
    return folder.file(name);
  };
  const std::string png = imageFile(folder, "red.png", "pngenc", "0xffff0000");
  std::ifstream stream(png, std::ios::binary);
  std::string whole((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
  std::string enormous = whole;
  enormous.replace(16, 8, std::string("\x00\x00\xff\xff\x00\x00\xff\xff", 8));
  const struct {
    std::string path;
    int32_t result;
  } cases[] = {
      {folder.file("none.png"), rtc::kNotFound},
      {"", rtc::kNotFound},
      {folder.path(), rtc::kInvalidParameter},
      {"/dev/zero", rtc::kInvalidParameter},
      {written("empty.png", ""), rtc::kInvalidParameter},
      {written("text.png", "this is no picture at all"), rtc::kInvalidParameter},
      {written("enormous.png", enormous), rtc::kInvalidParameter},
      {written("cut.png", whole.substr(0, 40)), rtc::kMediaFailure},
      {written("head.png", whole.substr(0, 20)), rtc::kInvalidParameter},
  };
  const rtc::WatermarkConfig config = placedAt({1, 1, 0, 0});
  for (const auto& each : cases) {
    EXPECT_EQ(effects->setVideoWatermark(rtc::kStreamIndexMain, each.path.c_str(), config), each.result) << each.path;
    if (each.path.empty()) continue;  // "" takes the image away
    EXPECT_EQ(engine->setDummyCaptureImagePath(each.path.c_str()), each.result) << each.path;
  }
  EXPECT_EQ(effects->setVideoWatermark(rtc::kStreamIndexMain, nullptr, config), rtc::kInvalidParameter);
  for (const double bad : {-0.1, 1.1, std::nan("")}) {
    EXPECT_EQ(effects->setVideoWatermark(rtc::kStreamIndexMain, png.c_str(), placedAt({0.1, 0.1, bad, 0})),
              rtc::kInvalidParameter);
    EXPECT_EQ(effects->setVideoWatermark(rtc::kStreamIndexMain, png.c_str(), placedAt({0.1, bad, 0, 0})),
              rtc::kInvalidParameter);
  }
  EXPECT_EQ(effects->setVideoWatermark(7, png.c_str(), config), rtc::kInvalidParameter);
  EXPECT_EQ(effects->clearVideoWatermark(7), rtc::kInvalidParameter);
  EXPECT_EQ(effects->setVideoWatermark(rtc::kStreamIndexScreen, png.c_str(), config), rtc::kNotSupported);
  EXPECT_EQ(show(quartered(64, 48)).planes, quartered(64, 48).planes);
}

TEST_F(EffectsTest, AnImageStandsInForTheCameraThatIsOff) {
  ASSERT_EQ(engine->setVideoSourceType(rtc::kStreamIndexMain, rtc::kVideoSourceTypeInternal), rtc::kSuccess);
  // It is shown as it is, whatever becomes of the camera's pictures.
  ASSERT_EQ(engine->setVideoCaptureRotation(90), rtc::kSuccess);
  const std::string red = imageFile(folder, "red.png", "pngenc", "0xffff0000");
  const std::string blue = imageFile(folder, "blue.jpg", "video/x-raw,format=RGB ! jpegenc", "0xff0000ff");
  const auto is_image = [](const TestPicture& each) { return each.width == 40 && each.height == 40; };
  ASSERT_EQ(engine->setDummyCaptureImagePath(red.c_str()), rtc::kSuccess);
  auto seen = shown.waitFor(is_image);
  ASSERT_TRUE(seen.has_value());
  EXPECT_TRUE(isRed(*seen, 3, 37));

  ASSERT_EQ(engine->setDummyCaptureImagePath(blue.c_str()), rtc::kSuccess);
  ASSERT_TRUE(shown.waitFor([](const TestPicture& each) { return std::abs(each.at(1, 20, 20) - 240) < 4; }));
  EXPECT_EQ(events.count(), 0U);

  const std::string camera = "test:black?width=80&height=60&fps=60";
  ASSERT_EQ(engine->getVideoDeviceManager()->setVideoCaptureDevice(camera.c_str()), rtc::kSuccess);
  ASSERT_EQ(engine->startVideoCapture(), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("first 0 60x80"));
  shown.forget();
  ASSERT_TRUE(shown.waitFor([](const TestPicture& each) { return each.width == 60; }));
  const std::vector<TestPicture> pictures = shown.pictures();
  EXPECT_TRUE(std::none_of(pictures.begin(), pictures.end(), is_image));
  ASSERT_EQ(engine->stopVideoCapture(), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("stream 0 0 0"));
  shown.forget();
  EXPECT_TRUE(shown.waitFor(is_image));

  // In the size that is asked of the camera.
  ASSERT_EQ(engine->setVideoCaptureConfig({rtc::kCapturePreferenceManual, 0, 100, 100}), rtc::kSuccess);
  EXPECT_TRUE(shown.waitFor([](const TestPicture& each) { return each.width == 100 && each.height == 100; }));
  ASSERT_EQ(engine->setDummyCaptureImagePath(""), rtc::kSuccess);
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  shown.forget();
  EXPECT_FALSE(shown.waitFor([](const TestPicture&) { return true; }, std::chrono::milliseconds(500)));
}

}  // namespace
}  // namespace corvane::test
