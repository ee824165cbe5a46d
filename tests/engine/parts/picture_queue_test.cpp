#include "capture/picture_queue.h"

#include <gtest/gtest.h>

#include <thread>

namespace corvane::rtc {
namespace {

CapturedPicture picture(GstClockTime time) {
  gst_init(nullptr, nullptr);
  GstPtr<GstBuffer> buffer(gst_buffer_new());
  GST_BUFFER_PTS(buffer.get()) = time;
  return {std::move(buffer), nullptr};
}

GstClockTime popTime(PictureQueue& queue) {
  return GST_BUFFER_PTS(queue.pop(std::stop_token())->buffer.get());
}

TEST(PictureQueue, KeepsTheNewestOfPicturesThatDoNotWait) {
  PictureQueue queue;
  for (GstClockTime time = 0; time < 10; ++time) queue.pushNewest(picture(time));
  for (GstClockTime time = 6; time < 10; ++time) EXPECT_EQ(popTime(queue), time);
}

TEST(PictureQueue, MakesPacedPicturesWaitForRoom) {
  PictureQueue queue;
  std::jthread producer([&](const std::stop_token& stop) {
    for (GstClockTime time = 0; time < 1000; ++time) ASSERT_TRUE(queue.pushWhenRoom(picture(time), stop));
  });
  for (GstClockTime time = 0; time < 1000; ++time) ASSERT_EQ(popTime(queue), time);
}

TEST(PictureQueue, LetsGoOfThoseWhoWaitWhenStopped) {
  PictureQueue queue;
  std::stop_source stop;
  std::thread waiting_for_picture([&] { EXPECT_FALSE(queue.pop(stop.get_token()).has_value()); });
  stop.request_stop();
  waiting_for_picture.join();

  for (GstClockTime time = 0; time < 4; ++time) queue.pushNewest(picture(time));
  std::stop_source stop_full;
  std::thread waiting_for_room([&] { EXPECT_FALSE(queue.pushWhenRoom(picture(4), stop_full.get_token())); });
  stop_full.request_stop();
  waiting_for_room.join();
  queue.clear();
  queue.pushNewest(picture(5));
  EXPECT_EQ(popTime(queue), 5U);
}

}  // namespace
}  // namespace corvane::rtc
