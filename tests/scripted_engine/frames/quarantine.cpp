#include "frames/quarantine.h"

#include <vector>

#include "frames/video_frame.h"

namespace corvane::scripted {

Quarantine& Quarantine::instance() {
  static auto* quarantine = new Quarantine;
  return *quarantine;
}

void Quarantine::take(std::unique_ptr<ScriptedVideoFrame> frame) {
  std::vector<std::unique_ptr<ScriptedVideoFrame>> freed;
  const std::lock_guard lock(mutex_);
  bytes_ += frame->memorySize();
  frames_.push_back(std::move(frame));
  while (frames_.size() > 1 && (frames_.size() > kMaxFrames || bytes_ > kMaxBytes)) {
    bytes_ -= frames_.front()->memorySize();
    freed.push_back(std::move(frames_.front()));
    frames_.pop_front();
  }
}

}  // namespace corvane::scripted
