// A clip as a camera: decoded a few pictures ahead, played over and over at the speed it was made for.
#pragma once

#include <atomic>
#include <string>

#include "capture/clip_timeline.h"
#include "capture/video_source.h"

namespace corvane::rtc {

class ClipSource final : public VideoSource {
 public:
  ClipSource(EngineContext& context, PictureQueue& queue, Listener& listener, std::string path);
  ~ClipSource() override { stop(); }

 private:
  std::optional<CaptureFault> build() override;
  GstClockTime timeOf(const GstBuffer* picture, const GstSegment& segment) override;
  bool paced() const override { return true; }
  void onEnd() override;

  void onStream(GstPad* pad);
  void onStreamsKnown();

  const std::string path_;
  ClipTimeline timeline_;                // the pipeline's thread's
  std::atomic<bool> wound_back_ = true;  // the next picture is the clip's first
  std::atomic<bool> has_video_ = false;
  int64_t delivered_before_ = 0;  // pictures of earlier passes
};

}  // namespace corvane::rtc
