#include "events/observers/owned_audio_frame.h"

#include <napi.h>

#include <algorithm>

namespace corvane {
namespace {

// A size without bytes counts as no sound.
size_t usableSize(const rtc::IAudioFrame& frame) {
  return frame.data() == nullptr ? 0 : static_cast<size_t>(std::max(frame.dataSize(), 0));
}

}  // namespace

OwnedAudioFrame::OwnedAudioFrame(const rtc::IAudioFrame& frame)
    : render_time_ms_(static_cast<int32_t>(frame.timestampUs() / 1000)),
      sample_rate_(frame.sampleRate()),
      channels_(frame.channels()),
      frame_type_(frame.frameType()),
      mute_(frame.isMuted()),
      size_(usableSize(frame)),
      samples_(std::make_unique_for_overwrite<uint8_t[]>(size_ + 1)) {
  std::copy_n(frame.data(), size_, samples_.get());
  samples_[size_] = 0;
}

void OwnedAudioFrame::put(Payload& payload) const {
  payload.object("audio_frame", [this](Payload& object) {
    object.put("render_time_ms", render_time_ms_);
    object.put("sample_rate", sample_rate_);
    object.put("channels", channels_);
    object.put("frame_type", frame_type_);
    putBytes(object, "buffer", samples_.get(), size_);
    object.put("mute", mute_);
  });
}

void putBytes(Payload& payload, const char* key, const uint8_t* bytes, size_t size) {
  payload.put(key, static_cast<napi_value>(Napi::Buffer<uint8_t>::Copy(payload.env(), bytes, size)));
}

}  // namespace corvane
