// The recordings of an engine: one of each stream at a time, and one of sound alone.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/engine_context.h"
#include "corvane_rtc/common.h"
#include "corvane_rtc/recording.h"
#include "recording/recording.h"

namespace corvane::rtc {

/// Where recordings take what they record. They outlive all recordings.
struct RecordedStreams {
  PictureTaps& camera;
  PictureTaps& screen;
  SoundTaps& sent;  ///< with the camera
  SoundTaps& screen_sound;
  SoundTaps& microphone;
  SoundTaps& playback;
};

/// Operations: any thread; each answers a ReturnStatus.
class Recordings final : public Recording::Listener {
 public:
  Recordings(EngineContext& context, const RecordedStreams& streams) : context_(context), streams_(streams) {}

  int32_t startFile(int32_t stream_index, const RecordingConfig& config, int32_t type);
  int32_t stopFile(int32_t stream_index);
  int32_t startSound(const AudioRecordingConfig& config);
  int32_t stopSound();

  /// Finishes all files. Engine thread, once; nothing is started any more.
  void end();

 private:
  // One may be started in each; its number is in runs_ from then on until it is stopped, or has failed.
  enum Place : size_t { kMain, kScreen, kSoundAlone, kPlaces };

  struct Running {
    Place place;
    int64_t run;
    int32_t type;  // RecordingType
    std::unique_ptr<Recording> recording;
  };

  struct Request {
    Place place;
    int32_t type;
    MediaFileSettings settings;  // without a path for a stream
    std::string folder;
    std::vector<SoundTaps*> sounds;
  };

  int32_t start(Request request);
  int32_t stop(Place place);
  void begin(int64_t run, Request request);
  Running& runningOf(const Recording& recording);
  void report(const Running& running, RecordingState state, RecordingErrorCode error, const MediaFileSettings& file);

  void onRecordingBegun(Recording& recording) override;
  void onRecordingProgress(Recording& recording, const RecordingProgress& progress) override;
  void onRecordingEnded(Recording& recording, RecordingErrorCode error) override;

  EngineContext& context_;
  const RecordedStreams streams_;
  std::atomic<int64_t> last_run_ = 0;
  std::array<std::atomic<int64_t>, kPlaces> runs_ = {};
  std::vector<Running> running_;  // the engine thread's, with those that have been stopped and are being finished
};

}  // namespace corvane::rtc
