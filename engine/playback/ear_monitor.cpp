#include "playback/ear_monitor.h"

namespace corvane::rtc {

void EarMonitor::turn(bool on) {
  const std::lock_guard lock(mutex_);
  if (on == (input_ != nullptr)) return;
  if (on) {
    input_ = playback_.addInput(SoundMixer::Origin::kEarMonitor);
    input_->setGain(volume_);
    microphone_.add(*this);
  } else {
    microphone_.remove(*this);
    input_.reset();
  }
}

void EarMonitor::setVolume(float factor) {
  const std::lock_guard lock(mutex_);
  volume_ = factor;
  if (input_ != nullptr) input_->setGain(factor);
}

}  // namespace corvane::rtc
