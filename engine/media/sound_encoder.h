// Sound encoded once for all who send it.
#pragma once

#include <gst/app/app.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "capture/pipeline.h"
#include "core/engine_context.h"
#include "media/encoded_taps.h"
#include "media/sound_block.h"

namespace corvane::rtc {

struct SoundEncoding {
  int32_t bitrate = 40'000;  ///< bits a second
  bool is_wideband = false;  ///< up to 8 kHz, as sampled at 16 kHz; else everything that is heard
};

/// Opus, 20 ms in a packet. Engine thread, but for what is marked otherwise.
class SoundEncoder final : public SoundTap {
 public:
  class Listener {
   public:
    virtual void onSoundEncoderFailed(const std::string& reason) = 0;

   protected:
    ~Listener() = default;
  };

  SoundEncoder(EngineContext& context, Listener& listener);
  /// Sound must not come any more.
  ~SoundEncoder();
  SoundEncoder(const SoundEncoder&) = delete;
  SoundEncoder& operator=(const SoundEncoder&) = delete;

  /// Also while sound comes.
  void set(const SoundEncoding& encoding);

  EncodedTaps& taps() { return taps_; }
  /// Since the encoder was made. Any thread.
  int64_t bytesOut() const { return bytes_out_.load(std::memory_order_relaxed); }
  /// Any thread, one at a time.
  void onSound(const SoundBlock& block) override;

 private:
  void build();
  void fail(const std::string& reason);
  void onMessage(GstMessage* message);
  GstFlowReturn onSample(GstPtr<GstSample> sample);

  EngineContext& context_;
  Listener& listener_;
  const std::shared_ptr<void> alive_ = std::make_shared<char>();
  EncodedTaps taps_;
  std::atomic<int64_t> bytes_out_ = 0;
  Pipeline pipeline_;
  GstAppSrc* source_ = nullptr;
  GstElement* encoder_ = nullptr;
  AttachedSource watch_;
  bool failed_ = false;
  int32_t fed_channels_ = 0;  // the sound thread's
};

}  // namespace corvane::rtc
