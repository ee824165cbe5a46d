// KavRTCTranscodingObserver: what mixing tasks report, and the mixed media that comes back from them.
//
// Threads: the engine's own, several at once; the observer has no state. Nothing that the engine lends is kept.
#pragma once

#include <cstdint>

#include "corvane_rtc/stream_mixing_events.h"

namespace corvane {

class KavRTCTranscodingObserver final : public rtc::ITranscodingObserver {
 public:
  void onStreamMixingEvent(int32_t event, const char* task_id, int32_t error, int32_t mix_type) override;
  void onMixingEvent(int32_t event, const char* task_id, int32_t error, int32_t mix_type) override;
  void onMixingAudioFrame(const char* task_id, const rtc::IAudioFrame* audio_frame) override;
  /// Takes the frame over; it travels with the other video frames.
  void onMixingVideoFrame(const char* task_id, rtc::IVideoFrame* video_frame) override;
  void onMixingDataFrame(const char* task_id, const rtc::IDataFrame* data_frame) override;
};

}  // namespace corvane
