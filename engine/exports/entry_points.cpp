// The library's C entry points, and the engines that live.
#include "corvane_rtc/entry_points.h"

#include <exception>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "api/rtc_video.h"
#include "exports/error_descriptions.h"
#include "media/memory_frames.h"
#include "mixing/stream_mixing_params.h"

namespace corvane::rtc {

namespace {

struct Process {
  std::mutex mutex;
  LogSettings log;  // of engines made from now on
  std::vector<std::unique_ptr<RtcVideo>> engines;
};

// Never destroyed: an application that exits without ending its engine must not meet its threads at the exit.
Process& process() {
  static Process& process = *std::make_unique<Process>().release();
  return process;
}

}  // namespace

IRTCVideo* createRTCVideo(const char* app_id, IRTCVideoEventHandler* handler, const char* parameters) {
  if (app_id == nullptr) return nullptr;
  Process& state = process();
  const std::lock_guard lock(state.mutex);
  try {
    state.engines.push_back(
        std::make_unique<RtcVideo>(state.log, app_id, handler, parameters != nullptr ? parameters : ""));
  } catch (const std::exception&) {
    return nullptr;  // no memory, or no thread to be had
  }
  return state.engines.back().get();
}

void destroyRTCVideo() {
  std::vector<std::unique_ptr<RtcVideo>> engines;
  {
    Process& state = process();
    const std::lock_guard lock(state.mutex);
    engines.swap(state.engines);
  }
  // Ended here, without the lock: callbacks that still run may ask the library for a frame or a description.
  engines.clear();
}

int32_t setLogConfig(const LogConfig& log_config) {
  Process& state = process();
  const std::lock_guard lock(state.mutex);
  return readLogConfig(log_config, state.log);
}

const char* getSDKVersion() {
  return CORVANE_RTC_VERSION;
}

const char* getErrorDescription(int32_t code) {
  return describeError(code);
}

IVideoFrame* buildVideoFrame(const VideoFrameBuilder& builder) {
  return makeMemoryVideoFrame(builder);
}

IAudioFrame* buildAudioFrame(const AudioFrameBuilder& builder) {
  return makeMemoryAudioFrame(builder);
}

ITranscoderParam* createTranscoderParam() {
  return std::make_unique<TranscoderParam>().release();
}

IMixedStreamConfig* createMixedStreamConfig() {
  return std::make_unique<MixedStreamConfig>().release();
}

IPublicStreamParam* createPublicStreamParam() {
  return std::make_unique<PublicStreamParam>().release();
}

}  // namespace corvane::rtc
