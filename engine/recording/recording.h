// One recording from its start to its end: of a stream, or of sound alone.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

#include "core/engine_context.h"
#include "media/picture_taps.h"
#include "media/sound_taps.h"
#include "recording/media_file.h"
#include "recording/recorded_pictures.h"
#include "recording/sound_timeline.h"

namespace corvane::rtc {

/// Engine thread only.
class Recording final : public MediaFile::Listener {
 public:
  class Listener {
   public:
    virtual void onRecordingBegun(Recording& recording) = 0;
    virtual void onRecordingProgress(Recording& recording, const RecordingProgress& progress) = 0;
    /// The last that is told; it may go now. `error`: a RecordingErrorCode.
    virtual void onRecordingEnded(Recording& recording, RecordingErrorCode error) = 0;

   protected:
    ~Listener() = default;
  };

  /// `pictures` may be null, `sounds` empty: they live until this has gone. The settings' size is that of the first
  /// picture; when none comes for two seconds the recording begins with a black one.
  Recording(EngineContext& context, MediaFileSettings settings, PictureTaps* pictures,
            const std::vector<SoundTaps*>& sounds, Listener& listener);
  ~Recording();
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

  void start();
  /// Its end is told when all is written.
  void stop();
  /// Waits for that; its end is told before this returns.
  void stopNow();

  /// Of the file; its size is known when the recording has begun.
  const MediaFileSettings& settings() const { return settings_; }

 private:
  struct SoundInput {
    SoundTaps* taps;
    std::unique_ptr<SoundTimeline::Source> source;
  };

  void begin(int32_t width, int32_t height);
  void scheduleTick();
  void tick();
  void feedSound(int64_t until_us);
  void reportProgress();
  void detach();
  bool stopFeeding();
  void end(RecordingErrorCode error, const std::string& text);

  void onFileFinished() override;
  void onFileFailed(const RecordingFault& fault) override;

  EngineContext& context_;
  Listener& listener_;
  MediaFileSettings settings_;
  PictureTaps* const picture_taps_;
  const std::shared_ptr<void> alive_ = std::make_shared<char>();
  bool begun_ = false;
  bool feeding_ = false;
  GstClockTime origin_ = 0;
  int64_t reported_seconds_ = 0;
  AttachedSource timer_;
  SoundTimeline timeline_;
  std::vector<SoundInput> sounds_;
  std::unique_ptr<RecordedPictures> pictures_;
  std::unique_ptr<MediaFile> file_;
};

}  // namespace corvane::rtc
