// Sound that the scripted engine makes and whose lifetime it watches.
#pragma once

#include <atomic>
#include <cstdint>

#include "core/fields.h"
#include "corvane_rtc/audio_frame.h"
#include "corvane_rtc/stream_mixing_events.h"
#include "frames/frame_statistics.h"
#include "frames/pixel_block.h"

namespace corvane::scripted {

/// What a test asks for.
struct AudioFrameSpec {
  int64_t timestamp_us = 0;
  int32_t sample_rate = 48000;
  int32_t channels = 2;
  int32_t samples = 480;  ///< of one channel, signed 16-bit
  int32_t frame_type = rtc::kAudioFrameTypePCM16;
  bool muted = false;
  bool null_data = false;
  uint32_t seed = 0;
};

AudioFrameSpec readAudioFrameSpec(const Value& value);
Value describeFrame(const rtc::IAudioFrame& frame);
inline Value describeFrameOrNull(const rtc::IAudioFrame* frame) {
  return frame == nullptr ? Value() : describeFrame(*frame);
}
Value describeBuilder(const rtc::AudioFrameBuilder& builder);

/// Deletes itself at its release, or belongs to the callback it is lent to.
class ScriptedAudioFrame final : public rtc::IAudioFrame {
 public:
  explicit ScriptedAudioFrame(const AudioFrameSpec& spec);
  explicit ScriptedAudioFrame(const rtc::AudioFrameBuilder& builder);
  /// Of a lent frame: the module has no use of it any more.
  ~ScriptedAudioFrame() { memory_.poison(); }

  int64_t timestampUs() const override { return timestamp_us_; }
  int32_t sampleRate() const override { return sample_rate_; }
  int32_t channels() const override { return channels_; }
  uint8_t* data() const override { return data_; }
  int32_t dataSize() const override { return data_size_; }
  int32_t frameType() const override { return frame_type_; }
  bool isMuted() const override { return muted_; }
  void release() override;

 private:
  int64_t timestamp_us_;
  int32_t sample_rate_;
  int32_t channels_;
  int32_t data_size_;
  int32_t frame_type_ = rtc::kAudioFrameTypePCM16;
  bool muted_ = false;
  bool lent_;
  PixelBlock memory_;
  uint8_t* data_;
};

/// Data of a mixed stream, valid during its callback.
class ScriptedDataFrame final : public rtc::IDataFrame {
 public:
  explicit ScriptedDataFrame(const Value& value);

  int32_t frameType() const override { return frame_type_; }
  const uint8_t* data() const override { return data_; }
  int32_t dataSize() const override { return data_size_; }
  int64_t timestampUs() const override { return timestamp_us_; }

 private:
  Arena arena_;
  int32_t frame_type_ = rtc::kDataFrameTypeSEI;
  const uint8_t* data_ = nullptr;
  int32_t data_size_ = 0;
  int64_t timestamp_us_ = 0;
};

}  // namespace corvane::scripted
