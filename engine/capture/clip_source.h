// A clip as a camera: decoded a few pictures ahead, played over and over at the speed it was made for.
#pragma once

#include <string>

#include "capture/clip_reader.h"
#include "capture/clip_timeline.h"
#include "capture/video_source.h"

namespace corvane::rtc {

class ClipSource final : public VideoSource {
 public:
  ClipSource(EngineContext& context, PictureQueue& queue, Listener& listener, std::string path);
  ~ClipSource() override { stop(); }

 private:
  std::optional<CaptureFault> build() override { return reader_.build(pipeline(), end()); }
  GstClockTime timeOf(const GstBuffer* picture, const GstSegment& segment) override;
  bool paced() const override { return true; }
  void onEnd() override;

  ClipReader reader_;
  ClipTimeline timeline_;  // the pipeline's thread's
};

}  // namespace corvane::rtc
