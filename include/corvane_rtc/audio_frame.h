// Raw audio: frames, how an application builds one, and who receives or changes them.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// The one layout of raw samples: signed 16-bit, little-endian, channels interleaved.
enum AudioFrameType : int32_t {
  kAudioFrameTypePCM16 = 0,
};

/// One stretch of sound, 10 ms unless asked for otherwise.
class IAudioFrame {
 public:
  virtual int64_t timestampUs() const = 0;  ///< microseconds on the engine's clock
  virtual int32_t sampleRate() const = 0;   ///< samples a second in one channel
  virtual int32_t channels() const = 0;     ///< 1 or 2
  virtual uint8_t* data() const = 0;        ///< may be written by an audio processor only
  virtual int32_t dataSize() const = 0;     ///< bytes
  virtual int32_t frameType() const = 0;    ///< AudioFrameType
  virtual bool isMuted() const = 0;         ///< true when the source is muted and the samples are silence
  /// Gives a frame made by buildAudioFrame() back. Frames handed to observers and processors belong to the engine.
  virtual void release() = 0;

 protected:
  ~IAudioFrame() = default;
};

/// What buildAudioFrame() needs.
struct AudioFrameBuilder {
  int32_t sample_rate;   ///< samples a second
  int32_t channels;      ///< 1 or 2
  int64_t timestamp_us;  ///< microseconds
  const uint8_t* data;
  int64_t data_size;  ///< bytes
  bool deep_copy;     ///< true: the samples are copied during the call; false: they must outlive the frame
};

/// The shape in which frames are wanted. 0 leaves a value to the engine.
struct AudioFormat {
  int32_t sample_rate;       ///< samples a second
  int32_t channel;           ///< 1 or 2
  int32_t samples_per_call;  ///< samples of one channel in one callback
};

/// Receives raw audio. Called on the engine's audio threads; a frame is valid during the call only.
class IAudioFrameObserver {
 public:
  virtual void onRecordAudioFrame(const IAudioFrame* audio_frame) = 0;
  virtual void onPlaybackAudioFrame(const IAudioFrame* audio_frame) = 0;
  virtual void onRemoteUserAudioFrame(const StreamKey& stream_info, const IAudioFrame* audio_frame) = 0;
  virtual void onMixedAudioFrame(const IAudioFrame* audio_frame) = 0;
  virtual void onRecordScreenAudioFrame(const IAudioFrame* audio_frame) = 0;

 protected:
  ~IAudioFrameObserver() = default;
};

/// Changes raw audio in place. Called on the engine's audio threads; returns 0.
class IAudioFrameProcessor {
 public:
  virtual int32_t onProcessRecordAudioFrame(IAudioFrame* audio_frame) = 0;
  virtual int32_t onProcessPlayBackAudioFrame(IAudioFrame* audio_frame) = 0;
  virtual int32_t onProcessRemoteUserAudioFrame(const StreamKey& stream_info, IAudioFrame* audio_frame) = 0;
  virtual int32_t onProcessScreenAudioFrame(IAudioFrame* audio_frame) = 0;

 protected:
  ~IAudioFrameProcessor() = default;
};

}  // namespace corvane::rtc
