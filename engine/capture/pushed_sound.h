// Sound that the application pushes instead of a microphone's.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

#include "capture/sound_queue.h"
#include "corvane_rtc/audio_frame.h"
#include "media/sound_converter.h"

namespace corvane::rtc {

/// Between the application's thread and the engine's. Any thread.
class PushedSound {
 public:
  void open();
  void close();

  /// Reads the frame, which stays the caller's: 8 to 96 kHz, one or two channels, up to half a second. kWrongState
  /// while closed, and when half a second waits already: nothing of the frame was taken then, and it may be pushed
  /// again.
  int32_t push(const IAudioFrame* frame);

  /// What was pushed, for the capture's thread.
  SoundQueue& queue() { return queue_; }
  /// Frames that were refused because too much waited.
  int64_t refused();

 private:
  std::mutex mutex_;
  bool open_ = false;
  int64_t refused_ = 0;
  SoundFormat format_ = {0, 0};
  std::optional<SoundConverter> converter_;  // from format_
  std::vector<int16_t> read_;
  std::vector<int16_t> converted_;
  SoundQueue queue_;
};

}  // namespace corvane::rtc
