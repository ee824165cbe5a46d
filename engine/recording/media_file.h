// A file of picture and sound that is written while it is fed, and that plays up to its end whatever ends it.
#pragma once

#include <gst/app/app.h>

#include <cstdint>
#include <memory>
#include <string>

#include "capture/pipeline.h"
#include "core/engine_context.h"
#include "corvane_rtc/recording_events.h"

namespace corvane::rtc {

enum class FileFormat { kMp4, kAac, kWav };

/// What a file is to hold. Sound is fed as a SoundTimeline gives it, pictures in any size.
struct MediaFileSettings {
  std::string path;  ///< of a file that is there, and is overwritten
  FileFormat format = FileFormat::kMp4;
  bool with_sound = false;
  bool with_picture = false;
  int32_t width = 0;  ///< pixels, even; pictures of another shape get black borders
  int32_t height = 0;
  int32_t sample_rate = 48000;     ///< samples a second of one channel
  int32_t channels = 2;            ///< 1 or 2
  int32_t sound_bitrate = 128000;  ///< bit/s of compressed sound
};

/// Why there is no recording, or no more of it.
struct RecordingFault {
  RecordingErrorCode code = kRecordingErrorOther;
  std::string text;  ///< for the log
};

/// Engine thread only.
class MediaFile {
 public:
  class Listener {
   public:
    /// After finish(): the file is complete and closed.
    virtual void onFileFinished() = 0;
    /// Nothing more is written; what was, can be played.
    virtual void onFileFailed(const RecordingFault& fault) = 0;

   protected:
    ~Listener() = default;
  };

  MediaFile(EngineContext& context, const MediaFileSettings& settings, Listener& listener);
  ~MediaFile();
  MediaFile(const MediaFile&) = delete;
  MediaFile& operator=(const MediaFile&) = delete;

  /// False, with the reason: the listener is not told then.
  bool open(RecordingFault& fault);

  // Where it is fed, from any threads; null where the file has no such medium. As long as this lives.
  GstAppSrc* pictures() const { return pictures_; }
  GstElement* pictureEncoder() const { return encoder_; }
  GstAppSrc* sound() const { return sound_; }

  /// Keeps up to date what the file's head says of its length, where the format has that.
  void updateHead();

  /// No more is fed. The listener is told when all is written.
  void finish();
  /// The same, waiting for it; whether it was. Takes the listener out.
  bool finishNow();

 private:
  void addPictures(GstElement* next);
  void addSound(GstElement* next);
  void onMessage(GstMessage* message);
  void close();

  EngineContext& context_;
  Listener& listener_;
  const MediaFileSettings settings_;
  Pipeline pipeline_;
  GstAppSrc* pictures_ = nullptr;
  GstElement* encoder_ = nullptr;
  GstAppSrc* sound_ = nullptr;
  AttachedSource watch_;
  AttachedSource patience_;
};

}  // namespace corvane::rtc
