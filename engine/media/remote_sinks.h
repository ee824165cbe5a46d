// The places where sinks of remote streams are attached, by stream: before the stream is there, and after it has gone.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>

#include "corvane_rtc/common.h"
#include "media/video_sink_slot.h"

namespace corvane::rtc {

/// Any thread.
class RemoteSinks {
 public:
  std::shared_ptr<VideoSinkSlot> find(const std::string& room, const std::string& user, int32_t stream_index) {
    const std::lock_guard lock(mutex_);
    std::shared_ptr<VideoSinkSlot>& slot = slots_[{room, user, stream_index}];
    if (slot == nullptr) slot = std::make_shared<VideoSinkSlot>();
    return slot;
  }

 private:
  std::mutex mutex_;
  std::map<std::tuple<std::string, std::string, int32_t>, std::shared_ptr<VideoSinkSlot>> slots_;
};

}  // namespace corvane::rtc
