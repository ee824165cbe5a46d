#include "trials/trial_microphone.h"

#include <utility>

namespace corvane::rtc {

TrialMicrophone::TrialMicrophone(EngineContext& context, const MicrophoneId& microphone, Taker taker, Failed failed)
    : context_(context), taker_(std::move(taker)), failed_(std::move(failed)) {
  sound_.taps().add(*this);
  source_ = makeSoundSource(context, queue_, *this, microphone);
  pump_ = std::make_unique<SoundPump>(queue_, sound_, source_->paced(),
                                      SoundPumpEvents{.first_block = [] {}, .silence = [] {}});
  source_->start();
}

TrialMicrophone::~TrialMicrophone() {
  source_.reset();
  pump_.reset();
}

void TrialMicrophone::onSourceFailed(const CaptureFault& fault) {
  context_.thread.post(alive_, [this, fault] {
    // Who is told may end this.
    const Failed failed = failed_;
    failed(fault);
  });
}

}  // namespace corvane::rtc
