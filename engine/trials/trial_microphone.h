// A microphone that is tried out, as it is: without volumes, cleaning or effects.
#pragma once

#include <functional>
#include <memory>

#include "capture/captured_sound.h"
#include "capture/sound_pump.h"
#include "capture/sound_queue.h"
#include "capture/sound_source.h"
#include "core/engine_context.h"

namespace corvane::rtc {

/// Engine thread only. It captures while it lives.
class TrialMicrophone final : private SoundTap, private CaptureSource::Listener {
 public:
  /// Takes 10 ms of one channel. On the capture's thread.
  using Taker = std::function<void(const SoundBlock& block)>;
  /// On the engine thread, and not from inside a call.
  using Failed = std::function<void(const CaptureFault& fault)>;

  TrialMicrophone(EngineContext& context, const MicrophoneId& microphone, Taker taker, Failed failed);
  ~TrialMicrophone();
  TrialMicrophone(const TrialMicrophone&) = delete;
  TrialMicrophone& operator=(const TrialMicrophone&) = delete;

 private:
  void onSound(const SoundBlock& block) override { taker_(block); }
  void onSourceDelivers() override {}
  void onSourceFailed(const CaptureFault& fault) override;

  EngineContext& context_;
  const Taker taker_;
  const Failed failed_;
  const std::shared_ptr<void> alive_ = std::make_shared<char>();
  SoundHooks hooks_;
  CapturedSound sound_{hooks_};
  SoundQueue queue_;
  std::unique_ptr<SoundSource> source_;
  std::unique_ptr<SoundPump> pump_;
};

}  // namespace corvane::rtc
