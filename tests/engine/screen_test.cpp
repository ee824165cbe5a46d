// Screens and windows of a real X server: what is listed, shown small and captured.
#include <unistd.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "corvane_rtc/screen_capture.h"
#include "support/engine_test.h"
#include "support/x_display.h"

namespace corvane::test {
namespace {

constexpr uint32_t kRed = 0xd03020;
constexpr uint32_t kGreen = 0x20c040;
constexpr uint32_t kBlue = 0x2040d0;

struct ReleaseList {
  void operator()(rtc::IScreenCaptureSourceList* list) const { list->release(); }
};
struct ReleaseFrame {
  void operator()(rtc::IVideoFrame* frame) const { frame->release(); }
};
using List = std::unique_ptr<rtc::IScreenCaptureSourceList, ReleaseList>;
using Frame = std::unique_ptr<rtc::IVideoFrame, ReleaseFrame>;

uint32_t colorAt(const rtc::IVideoFrame& frame, int32_t x, int32_t y) {
  const uint8_t* pixel = frame.planeData(0) + static_cast<ptrdiff_t>(y) * frame.planeStride(0) + 4L * x;
  return static_cast<uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]);
}

// Through I420 and back.
bool isNear(uint32_t a, uint32_t b) {
  for (int shift = 0; shift < 24; shift += 8) {
    if (std::abs(static_cast<int>((a >> shift) & 0xff) - static_cast<int>((b >> shift) & 0xff)) > 6) return false;
  }
  return true;
}

uint32_t middleOf(const SeenFrame& frame) {
  return static_cast<uint32_t>(frame.middle[2] << 16 | frame.middle[1] << 8 | frame.middle[0]);
}

rtc::ScreenCaptureSourceInfo source(int32_t type, int64_t id) {
  rtc::ScreenCaptureSourceInfo info = {};
  info.type = type;
  info.source_id = id;
  return info;
}

rtc::ScreenCaptureParameters region(const rtc::Rectangle& rectangle) {
  rtc::ScreenCaptureParameters parameters = {};
  parameters.region_rect = rectangle;
  return parameters;
}

rtc::ScreenCaptureParameters highlight(uint32_t color, int32_t width) {
  rtc::ScreenCaptureParameters parameters = {};
  parameters.highlight_config = {true, static_cast<int32_t>(color), width};
  return parameters;
}

class ScreenTest : public EngineTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(display.runs()) << "Xvfb does not start: scripts/setup.sh test installs it";
    client.emplace();
    EngineTest::SetUp();
    ASSERT_EQ(engine->setLocalVideoSink(rtc::kStreamIndexScreen, &sink, rtc::kVideoPixelFormatARGB), rtc::kSuccess);
  }

  void TearDown() override {
    EngineTest::TearDown();
    client.reset();
  }

  int64_t monitor() {
    const List list(engine->getScreenCaptureSourceList());
    rtc::ScreenCaptureSourceInfo info = {};
    return list != nullptr && list->getSourceInfo(0, info) == rtc::kSuccess ? info.source_id : 0;
  }

  int32_t startWindow(xcb_window_t window, const rtc::ScreenCaptureParameters& parameters = {}) {
    return engine->startScreenVideoCapture(source(rtc::kScreenCaptureSourceTypeWindow, window), parameters);
  }

  int32_t startMonitor(const rtc::ScreenCaptureParameters& parameters = {}) {
    return engine->startScreenVideoCapture(source(rtc::kScreenCaptureSourceTypeScreen, monitor()), parameters);
  }

  /// A picture of that size comes with that colour in its middle.
  bool shows(int32_t width, int32_t height, uint32_t color) {
    return sink.waitFor([=](const std::vector<SeenFrame>& frames) {
      return !frames.empty() && frames.back().width == width && frames.back().height == height &&
             isNear(middleOf(frames.back()), color);
    });
  }

  bool screenShows(int32_t x, int32_t y, uint32_t color) {
    for (int attempt = 0; attempt < 1000; ++attempt) {
      if (client->pixel(x, y) == color) return true;
      usleep(10'000);
    }
    return false;
  }

  TestDisplay display;
  std::optional<TestClient> client;
};

TEST_F(ScreenTest, ListsMonitorsAndWindowsWithWhatIsKnownOfThem) {
  const xcb_window_t first = client->open({20, 30, 200, 100}, kRed, "Grüße — 一", "Painter");
  const xcb_window_t second = client->open({300, 200, 160, 120}, kBlue, "Second", "");
  const List list(engine->getScreenCaptureSourceList());
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->getCount(), 3);
  rtc::ScreenCaptureSourceInfo info = {};
  ASSERT_EQ(list->getSourceInfo(0, info), rtc::kSuccess);
  EXPECT_EQ(info.type, rtc::kScreenCaptureSourceTypeScreen);
  EXPECT_NE(std::string(info.source_name), "");
  EXPECT_TRUE(info.primary_monitor);
  EXPECT_EQ(info.region_rect.width, TestDisplay::kWidth);
  EXPECT_EQ(info.region_rect.height, TestDisplay::kHeight);

  ASSERT_EQ(list->getSourceInfo(1, info), rtc::kSuccess);
  EXPECT_EQ(info.type, rtc::kScreenCaptureSourceTypeWindow);
  EXPECT_EQ(info.source_id, first);
  EXPECT_EQ(std::string(info.source_name), "Grüße — 一");
  EXPECT_EQ(std::string(info.application), "Painter");
  EXPECT_EQ(info.pid, getpid());
  EXPECT_FALSE(info.primary_monitor);
  EXPECT_EQ(info.region_rect.x, 20);
  EXPECT_EQ(info.region_rect.y, 30);
  EXPECT_EQ(info.region_rect.width, 200);
  EXPECT_EQ(info.region_rect.height, 100);

  ASSERT_EQ(list->getSourceInfo(2, info), rtc::kSuccess);
  EXPECT_EQ(info.source_id, second);
  // As its process is called, where the window itself says nothing.
  EXPECT_EQ(std::string(info.application), std::string(program_invocation_short_name).substr(0, 15));
  EXPECT_EQ(list->getSourceInfo(3, info), rtc::kInvalidParameter);
  EXPECT_EQ(list->getSourceInfo(-1, info), rtc::kInvalidParameter);
}

TEST_F(ScreenTest, GoesByTheWindowManagersList) {
  const xcb_window_t first = client->open({0, 0, 50, 40}, kRed, "first");
  const xcb_window_t dock = client->open({0, 500, 800, 20}, kRed, "dock");
  const xcb_window_t gone = client->open({0, 0, 50, 40}, kRed, "gone");
  const xcb_window_t minimised = client->open({0, 0, 50, 40}, kRed, "minimised");
  client->open({0, 0, 50, 40}, kRed, "unlisted");
  client->makeDock(dock);
  client->retitle(minimised,
                  "Gr\xfc\xdf"
                  "e");
  client->show(minimised, false);
  client->close(gone);
  client->list({minimised, dock, gone, first});
  const List list(engine->getScreenCaptureSourceList());
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->getCount(), 3);
  rtc::ScreenCaptureSourceInfo info = {};
  ASSERT_EQ(list->getSourceInfo(1, info), rtc::kSuccess);
  EXPECT_EQ(info.source_id, minimised);
  EXPECT_EQ(std::string(info.source_name), "Grüße");
  ASSERT_EQ(list->getSourceInfo(2, info), rtc::kSuccess);
  EXPECT_EQ(info.source_id, first);
}

TEST_F(ScreenTest, TellsMonitorsApart) {
  client->addMonitor("left", {0, 0, 300, 600}, false);
  client->addMonitor("right", {300, 0, 500, 400}, true);
  client->open({0, 0, 300, 600}, kRed);
  client->open({300, 0, 500, 400}, kBlue);
  const List list(engine->getScreenCaptureSourceList());
  ASSERT_NE(list, nullptr);
  std::map<std::string, rtc::ScreenCaptureSourceInfo> monitors;
  for (int32_t index = 0; index < list->getCount(); ++index) {
    rtc::ScreenCaptureSourceInfo info = {};
    ASSERT_EQ(list->getSourceInfo(index, info), rtc::kSuccess);
    if (info.type == rtc::kScreenCaptureSourceTypeScreen) monitors[info.source_name] = info;
    EXPECT_EQ(info.primary_monitor, index == 0);
  }
  ASSERT_TRUE(monitors.contains("left"));
  ASSERT_TRUE(monitors.contains("right"));
  EXPECT_TRUE(monitors["right"].primary_monitor);
  EXPECT_EQ(monitors["right"].region_rect.x, 300);
  ASSERT_EQ(engine->startScreenVideoCapture(monitors["right"], region({0, 0, 0, 0})), rtc::kSuccess);
  EXPECT_TRUE(shows(500, 400, kBlue));
  // Another source takes the first one's place.
  ASSERT_EQ(engine->startScreenVideoCapture(monitors["left"], region({0, 0, 0, 0})), rtc::kSuccess);
  EXPECT_TRUE(shows(300, 600, kRed));
  EXPECT_TRUE(events.waitFor("size 1 300x600"));
}

TEST_F(ScreenTest, MakesThumbnailsThatFitTheAskedSize) {
  const xcb_window_t window = client->open({100, 100, 400, 200}, kRed);
  client->open({100, 100, 200, 200}, kBlue);  // hides the left half
  const Frame screen(engine->getThumbnail(rtc::kScreenCaptureSourceTypeScreen, monitor(), 200, 200));
  ASSERT_NE(screen, nullptr);
  EXPECT_EQ(screen->pixelFormat(), rtc::kVideoPixelFormatARGB);
  EXPECT_EQ(screen->width(), 200);
  EXPECT_EQ(screen->height(), 150);
  EXPECT_EQ(screen->planeStride(0), 800);
  EXPECT_EQ(colorAt(*screen, 35, 35), kBlue);
  EXPECT_EQ(colorAt(*screen, 110, 35), kRed);
  EXPECT_EQ(screen->planeData(0)[3], 255);

  struct Case {
    int32_t max_width, max_height, width, height;
  };
  for (const Case& each : {Case{0, 0, 400, 200}, {100, 0, 100, 50}, {0, 100, 200, 100}, {4000, 4000, 400, 200}}) {
    const Frame thumbnail(
        engine->getThumbnail(rtc::kScreenCaptureSourceTypeWindow, window, each.max_width, each.max_height));
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(thumbnail->width(), each.width);
    EXPECT_EQ(thumbnail->height(), each.height);
    EXPECT_EQ(colorAt(*thumbnail, each.width - 5, each.height / 2), kRed);
  }
  client->show(window, false);
  EXPECT_EQ(engine->getThumbnail(rtc::kScreenCaptureSourceTypeWindow, window, 0, 0), nullptr);
  client->close(window);
  for (const int64_t id : {int64_t{window}, int64_t{0}, int64_t{-1}, int64_t{1} << 33}) {
    EXPECT_EQ(engine->getThumbnail(rtc::kScreenCaptureSourceTypeWindow, id, 0, 0), nullptr) << id;
    EXPECT_EQ(engine->getThumbnail(rtc::kScreenCaptureSourceTypeScreen, id, 0, 0), nullptr) << id;
    EXPECT_EQ(engine->getThumbnail(rtc::kScreenCaptureSourceTypeUnknown, id, 0, 0), nullptr) << id;
    EXPECT_EQ(engine->getWindowAppIcon(id, 0, 0), nullptr) << id;
  }
}

TEST_F(ScreenTest, TakesTheIconThatSuitsBest) {
  const xcb_window_t window = client->open({0, 0, 50, 50}, kRed);
  EXPECT_EQ(engine->getWindowAppIcon(window, 32, 32), nullptr);
  client->addIcon(window, 16, 0xff000000 | kRed);
  client->addIcon(window, 128, 0xff000000 | kBlue);
  client->addIcon(window, 48, 0x80000000 | kGreen);
  const Frame fitting(engine->getWindowAppIcon(window, 40, 40));
  ASSERT_NE(fitting, nullptr);
  EXPECT_EQ(fitting->width(), 40);
  EXPECT_EQ(fitting->height(), 40);
  EXPECT_TRUE(isNear(colorAt(*fitting, 20, 20), kGreen));
  EXPECT_NEAR(fitting->planeData(0)[3], 0x80, 2);
  const Frame largest(engine->getWindowAppIcon(window, 500, 500));
  ASSERT_NE(largest, nullptr);
  EXPECT_EQ(largest->width(), 128);
  EXPECT_EQ(colorAt(*largest, 64, 64), kBlue);
}

TEST_F(ScreenTest, CapturesAMonitorAndRegionsOfIt) {
  client->open({200, 100, 200, 200}, kRed);
  client->open({400, 100, 200, 200}, kBlue);
  ASSERT_EQ(startMonitor(region({250, 150, 100, 80})), rtc::kSuccess);
  EXPECT_TRUE(shows(100, 80, kRed));
  const std::string name = "screen:" + std::to_string(monitor());
  EXPECT_TRUE(events.waitFor("screen-device " + name + " 1 0"));
  EXPECT_TRUE(events.waitFor("stream 1 1 0"));
  EXPECT_TRUE(events.waitFor("first 1 100x80"));

  ASSERT_EQ(engine->updateScreenCaptureRegion({440, 150, 101, 91}), rtc::kSuccess);
  EXPECT_TRUE(shows(101, 91, kBlue));
  EXPECT_TRUE(events.waitFor("size 1 101x91"));
  // What of a region lies outside is left out.
  ASSERT_EQ(engine->updateScreenCaptureRegion({500, 150, 10'000, 100}), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("size 1 300x100"));
  ASSERT_EQ(engine->updateScreenCaptureRegion({}), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("size 1 800x600"));

  ASSERT_EQ(engine->stopScreenVideoCapture(), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("screen-device " + name + " 2 0"));
  EXPECT_TRUE(events.waitFor("stream 1 0 0"));
  const size_t count = events.count();
  // Again, and of a window.
  const xcb_window_t window = client->open({0, 0, 60, 40}, kGreen);
  ASSERT_EQ(startWindow(window), rtc::kSuccess);
  EXPECT_TRUE(shows(60, 40, kGreen));
  EXPECT_TRUE(events.waitFor("first 1 60x40"));
  EXPECT_EQ(events.count(), count + 3);
}

TEST_F(ScreenTest, CapturesAWindowAlsoWhereItIsHidden) {
  const xcb_window_t window = client->open({50, 50, 200, 100}, kRed);
  client->open({0, 0, 400, 300}, kBlue);
  ASSERT_EQ(startWindow(window), rtc::kSuccess);
  const std::string device = "screen-device window:" + std::to_string(window);
  EXPECT_TRUE(events.waitFor(device + " 1 0"));
  ASSERT_TRUE(shows(200, 100, kRed));
  for (const SeenFrame& frame : sink.frames()) EXPECT_TRUE(isNear(middleOf(frame), kRed));
  client->resize(window, 300, 160);
  EXPECT_TRUE(shows(300, 160, kRed));
  EXPECT_TRUE(events.waitFor("size 1 300x160"));
  // Minimised there is nothing to see; once it is back, it goes on.
  client->show(window, false);
  client->resize(window, 100, 90);
  client->show(window, true);
  EXPECT_TRUE(shows(100, 90, kRed));

  client->close(window);
  EXPECT_TRUE(events.waitFor(device + " 3 5"));
  EXPECT_TRUE(events.waitFor("stream 1 3 7"));
  EXPECT_TRUE(events.waitFor("error -5"));
  ASSERT_EQ(startWindow(window), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor(device + " 3 4"));
  EXPECT_TRUE(events.waitFor("stream 1 3 4"));
  EXPECT_TRUE(events.waitFor("error -4"));
}

TEST_F(ScreenTest, DrawsTheCursorWhereItIsWanted) {
  client->open({100, 100, 200, 200}, kRed);
  client->point(200, 200, kGreen);
  ASSERT_EQ(startMonitor(region({150, 150, 100, 100})), rtc::kSuccess);
  EXPECT_TRUE(shows(100, 100, kGreen));
  ASSERT_EQ(engine->updateScreenCaptureMouseCursor(rtc::kMouseCursorCaptureStateOff), rtc::kSuccess);
  EXPECT_TRUE(shows(100, 100, kRed));
  ASSERT_EQ(engine->updateScreenCaptureMouseCursor(rtc::kMouseCursorCaptureStateOn), rtc::kSuccess);
  EXPECT_TRUE(shows(100, 100, kGreen));
  client->point(160, 160, kGreen);
  EXPECT_TRUE(shows(100, 100, kRed));
  // Half of it outside the picture.
  ASSERT_EQ(engine->updateScreenCaptureRegion({160, 160, 6, 6}), rtc::kSuccess);
  EXPECT_TRUE(shows(6, 6, kGreen));
  ASSERT_EQ(engine->updateScreenCaptureRegion({154, 154, 4, 4}), rtc::kSuccess);
  EXPECT_TRUE(shows(4, 4, kGreen));
}

TEST_F(ScreenTest, DrawsABorderAroundWhatIsShared) {
  const xcb_window_t window = client->open({100, 100, 200, 200}, kRed);
  const uint32_t background = client->pixel(50, 50);
  ASSERT_EQ(startWindow(window, highlight(0xff000000 | kGreen, 6)), rtc::kSuccess);
  EXPECT_TRUE(screenShows(97, 200, kGreen));
  EXPECT_TRUE(screenShows(302, 200, kGreen));
  EXPECT_TRUE(screenShows(200, 97, kGreen));
  EXPECT_TRUE(screenShows(200, 302, kGreen));
  EXPECT_EQ(client->pixel(102, 102), kRed);
  ASSERT_EQ(engine->updateScreenCaptureHighlightConfig({true, static_cast<int32_t>(kBlue), 20}), rtc::kSuccess);
  EXPECT_TRUE(screenShows(85, 200, kBlue));
  EXPECT_TRUE(shows(200, 200, kRed));
  ASSERT_EQ(engine->updateScreenCaptureHighlightConfig({false, 0, 0}), rtc::kSuccess);
  EXPECT_TRUE(screenShows(97, 200, background));
  ASSERT_EQ(engine->updateScreenCaptureHighlightConfig({true, static_cast<int32_t>(kBlue), 3}), rtc::kSuccess);
  EXPECT_TRUE(screenShows(98, 200, kBlue));
  engine->stopScreenVideoCapture();
  EXPECT_TRUE(screenShows(98, 200, background));
}

TEST_F(ScreenTest, SurvivesTheServersEnd) {
  ASSERT_EQ(startMonitor(), rtc::kSuccess);
  ASSERT_TRUE(events.waitFor("first 1 800x600"));
  const std::string device = "screen-device screen:" + std::to_string(monitor());
  display.kill();
  EXPECT_TRUE(events.waitFor(device + " 3 5"));
  EXPECT_TRUE(events.waitFor("stream 1 3 7"));
  EXPECT_TRUE(events.waitFor("error -5"));
  EXPECT_EQ(engine->getScreenCaptureSourceList(), nullptr);
  EXPECT_EQ(engine->getThumbnail(rtc::kScreenCaptureSourceTypeScreen, 1, 0, 0), nullptr);
  EXPECT_EQ(startWindow(1), rtc::kNotFound);
  // A new server serves.
  TestDisplay other;
  ASSERT_TRUE(other.runs());
  ASSERT_EQ(startMonitor(), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("first 1 800x600"));
  rtc::destroyRTCVideo();
}

TEST_F(ScreenTest, RefusesWhatCannotBe) {
  const xcb_window_t window = client->open({0, 0, 64, 64}, kRed);
  EXPECT_EQ(engine->updateScreenCaptureRegion({}), rtc::kWrongState);
  EXPECT_EQ(engine->updateScreenCaptureMouseCursor(0), rtc::kWrongState);
  EXPECT_EQ(engine->updateScreenCaptureHighlightConfig({}), rtc::kWrongState);
  EXPECT_EQ(engine->updateScreenCaptureFilterConfig({}), rtc::kWrongState);
  EXPECT_EQ(engine->stopScreenVideoCapture(), rtc::kSuccess);
  EXPECT_EQ(engine->startScreenVideoCapture(source(3, 1), {}), rtc::kInvalidParameter);
  EXPECT_EQ(engine->startScreenVideoCapture(source(1, 0), {}), rtc::kInvalidParameter);
  EXPECT_EQ(startWindow(window, region({-1, 0, 10, 10})), rtc::kInvalidParameter);
  EXPECT_EQ(startWindow(window, region({0, 0, 40'000, 10})), rtc::kInvalidParameter);
  rtc::ScreenCaptureParameters parameters = {};
  parameters.capture_mouse_cursor = 2;
  EXPECT_EQ(startWindow(window, parameters), rtc::kInvalidParameter);
  EXPECT_EQ(startWindow(window, highlight(0, 0)), rtc::kInvalidParameter);
  const int64_t excluded = window;
  parameters = {};
  parameters.filter_config = {&excluded, 1};
  EXPECT_EQ(startWindow(window, parameters), rtc::kNotSupported);
  EXPECT_EQ(engine->updateScreenCaptureFilterConfig({&excluded, 1}), rtc::kNotSupported);
  EXPECT_EQ(engine->updateScreenCaptureFilterConfig({nullptr, -1}), rtc::kInvalidParameter);

  unsetenv("DISPLAY");
  EXPECT_EQ(startWindow(window), rtc::kNotFound);
  setenv("WAYLAND_DISPLAY", "wayland-0", 1);
  EXPECT_EQ(startWindow(window), rtc::kNotSupported);
  EXPECT_EQ(engine->getScreenCaptureSourceList(), nullptr);
  unsetenv("WAYLAND_DISPLAY");
  EXPECT_EQ(events.count(), 0U);
}

}  // namespace
}  // namespace corvane::test
