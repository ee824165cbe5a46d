#include "players/preload.h"

#include <utility>

namespace corvane::rtc {

// Collects what the decoder writes on its thread; read when that has ended.
class Preload::Gatherer final : public PcmSink {
 public:
  bool write(std::span<const int16_t> samples, int64_t /*frame*/) override {
    if (samples_.size() + samples.size() > static_cast<size_t>(framesOf(kMaxMs)) * kPcmChannels) {
      too_long_ = true;
      return true;  // read to its end, so that the end is told
    }
    samples_.insert(samples_.end(), samples.begin(), samples.end());
    return true;
  }

  std::vector<int16_t> samples_;
  bool too_long_ = false;
};

Preload::Preload(EngineContext& context, std::string path) : context_(context), path_(std::move(path)) {}

void Preload::start() {
  context_.thread.post([self = shared_from_this()] {
    self->gatherer_ = std::make_shared<Gatherer>();
    SoundDecoder::Listener& listener = *self;
    self->decoder_ = std::make_unique<SoundDecoder>(self->context_, self->path_, 1, self->gatherer_, listener);
    self->decoder_->open();
  });
}

void Preload::then(Done done) {
  context_.thread.post([self = shared_from_this(), done = std::move(done)] {
    if (self->done_) return done(self->memory(), self->error_);
    self->waiting_.push_back(done);
  });
}

void Preload::cancel() {
  context_.thread.post([self = shared_from_this()] { self->shutDown(); });
}

void Preload::shutDown() {
  waiting_.clear();
  decoder_.reset();
}

std::shared_ptr<const PcmMemory> Preload::memory() const {
  const std::lock_guard lock(mutex_);
  return memory_;
}

void Preload::onDecoderReady(int64_t duration_ms, int32_t tracks) {
  tracks_ = tracks;
  if (duration_ms > kMaxMs) {
    return onDecoderFailed({kPlayerErrorFormatNotSupported, path_ + ": it is too long to be kept in memory"});
  }
  decoder_->run(0);
}

void Preload::onDecoderFailed(const DecodingFault& fault) {
  context_.log.warning("preloading %s", fault.text.c_str());
  finish(nullptr, fault.error);
}

void Preload::onDecoderEnded() {
  // Its thread is done with the gatherer before that is read.
  decoder_.reset();
  if (gatherer_->too_long_) {
    return onDecoderFailed({kPlayerErrorFormatNotSupported, path_ + ": it is too long to be kept in memory"});
  }
  auto memory = std::make_shared<PcmMemory>();
  memory->samples = std::move(gatherer_->samples_);
  memory->samples.shrink_to_fit();
  memory->tracks = tracks_;
  finish(memory, kPlayerErrorOk);
}

void Preload::finish(const std::shared_ptr<const PcmMemory>& memory, PlayerError error) {
  decoder_.reset();
  gatherer_.reset();
  done_ = true;
  error_ = error;
  {
    const std::lock_guard lock(mutex_);
    memory_ = memory;
  }
  for (const Done& done : std::exchange(waiting_, {})) done(memory, error);
}

}  // namespace corvane::rtc
