#include "capture/pushed_sound.h"

#include <cstring>

#include "corvane_rtc/common.h"

namespace corvane::rtc {

namespace {

constexpr int32_t kMinRate = 8000;
constexpr int32_t kMaxRate = 96000;

bool isUsable(const IAudioFrame& frame) {
  const int32_t rate = frame.sampleRate();
  const int32_t channels = frame.channels();
  if (frame.frameType() != kAudioFrameTypePCM16 || rate < kMinRate || rate > kMaxRate || channels < 1 ||
      channels > kMaxSoundChannels) {
    return false;
  }
  const int32_t frame_bytes = static_cast<int32_t>(sizeof(int16_t)) * channels;
  const int32_t size = frame.dataSize();
  return frame.data() != nullptr && size > 0 && size % frame_bytes == 0 && size / frame_bytes <= rate / 2;
}

}  // namespace

void PushedSound::open() {
  const std::lock_guard lock(mutex_);
  if (open_) return;
  open_ = true;
  queue_.clear();
}

void PushedSound::close() {
  const std::lock_guard lock(mutex_);
  open_ = false;
  converter_.reset();
  format_ = {0, 0};
}

int32_t PushedSound::push(const IAudioFrame* frame) {
  if (frame == nullptr || !isUsable(*frame)) return kInvalidParameter;
  const std::lock_guard lock(mutex_);
  if (!open_) return kWrongState;
  const SoundFormat format = {frame->sampleRate(), frame->channels()};
  if (format != format_) {
    format_ = format;
    converter_.emplace(format, SoundFormat{kSoundRate, 1});
  }
  const auto samples = static_cast<size_t>(frame->dataSize()) / sizeof(int16_t);
  // As many as come of the longest frame; asked for beforehand, as a converter keeps what it was given.
  const size_t most =
      samples / static_cast<size_t>(format.channels) * kSoundRate / static_cast<size_t>(format.sample_rate) + 1;
  if (!queue_.hasRoom(most)) {
    ++refused_;
    return kWrongState;
  }
  // The application's bytes may stand anywhere.
  read_.resize(samples);
  std::memcpy(read_.data(), frame->data(), samples * sizeof(int16_t));
  if (frame->isMuted()) read_.assign(samples, 0);
  converted_.clear();
  converter_->convert(read_, converted_);
  queue_.pushNewest(converted_, 0);
  return kSuccess;
}

int64_t PushedSound::refused() {
  const std::lock_guard lock(mutex_);
  return refused_;
}

}  // namespace corvane::rtc
