#include "voice/voice_cleaner.h"

#include "corvane_rtc/audio_config.h"
#include "voice/voice_processor.h"

namespace corvane::rtc {

VoiceCleaner::VoiceCleaner() = default;
VoiceCleaner::~VoiceCleaner() = default;

VoiceCleaner::Work VoiceCleaner::wanted() const {
  if (left_to_card_.load(std::memory_order_relaxed)) return {};
  const bool is_device = is_device_.load(std::memory_order_relaxed);
  const int32_t noise = noise_.load(std::memory_order_relaxed);
  const int32_t gain = gain_.load(std::memory_order_relaxed);
  return {
      .echo = is_device && !headphones_.load(std::memory_order_relaxed),
      .noise = noise != kByMicrophone ? noise
               : is_device            ? kAnsModeAutomatic
                                      : kAnsModeDisable,
      .gain = gain != kByMicrophone ? gain != 0 : is_device,
  };
}

void VoiceCleaner::process(SoundBlock& block) {
  const Work work = wanted();
  if (work != work_) {
    work_ = work;
    reference_.turn(work.echo);
    if (work == Work()) {
      processor_.reset();
    } else {
      if (processor_ == nullptr) processor_ = std::make_unique<VoiceProcessor>();
      processor_->setEchoCancellation(work.echo);
      processor_->setNoiseSuppression(work.noise);
      processor_->setGainControl(work.gain);
    }
  }
  if (processor_ == nullptr || block.channels != 1) return;
  if (work.echo) {
    PlayedBlock played;
    while (reference_.pop(played)) processor_->hear(played);
  }
  processor_->process(block);
}

}  // namespace corvane::rtc
