#include "players/deck.h"

#include <algorithm>
#include <utility>

#include "corvane_rtc/common.h"

namespace corvane::rtc {

Deck::Deck(EngineContext& context, VoiceMix& mix, Events events)
    : context_(context), mix_(mix), events_(std::move(events)) {}

void Deck::openFile(std::string path, const DeckConfig& config) {
  const std::lock_guard lock(mutex_);
  path_ = std::move(path);
  begin(Source::kFile, config);
}

void Deck::openPreloaded(std::shared_ptr<Preload> preload, const DeckConfig& config) {
  const std::lock_guard lock(mutex_);
  preload_ = std::move(preload);
  begin(Source::kMemory, config);
}

void Deck::openPushed(const DeckConfig& config) {
  const std::lock_guard lock(mutex_);
  begin(Source::kPushed, config);
}

void Deck::begin(Source source, const DeckConfig& config) {
  close();
  if (ended_) return;
  source_ = source;
  config_ = config;
  state_ = config.waits ? kPlayerStateOpened : kPlayerStatePlaying;
  waits_ = config.waits && !config.starts;
  loading_ = true;
  duration_ms_ = -1;
  tracks_ = 0;
  switch (source) {
    case Source::kNone:
      break;
    case Source::kFile:
      openDecoder();
      break;
    case Source::kMemory:
      if (const auto memory = preload_->memory()) {
        memory_ = std::make_shared<PcmMemorySource>(memory, config.play_count, 0);
        return loaded(memory_, msOf(memory->frames()), memory->tracks);
      }
      preload_->then([self = shared_from_this(), load = load_](const auto& memory, PlayerError error) {
        const std::lock_guard lock(self->mutex_);
        if (load != self->load_) return;
        if (memory == nullptr) return self->fail(error);
        self->memory_ = std::make_shared<PcmMemorySource>(memory, self->config_.play_count, 0);
        self->loaded(self->memory_, msOf(memory->frames()), memory->tracks);
      });
      break;
    case Source::kPushed:
      queue_ = std::make_shared<PcmQueue>();
      loaded(queue_, -1, 1);
      break;
  }
}

void Deck::openDecoder() {
  queue_ = std::make_shared<PcmQueue>();
  context_.thread.post(
      [self = shared_from_this(), load = load_, path = path_, count = config_.play_count, queue = queue_] {
        SoundDecoder::Listener& listener = *self;
        self->decoder_ = std::make_unique<SoundDecoder>(self->context_, path, count, queue, listener);
        self->decoder_load_ = load;
        self->decoder_->open();
      });
}

void Deck::close() {
  ++load_;
  loading_ = false;
  if (voice_ != nullptr) mix_.remove(voice_);
  voice_.reset();
  memory_.reset();
  if (queue_ == nullptr) return;
  queue_->close();
  queue_.reset();
  if (source_ == Source::kFile) context_.thread.post([self = shared_from_this()] { self->decoder_.reset(); });
}

void Deck::loaded(std::shared_ptr<PcmSource> source, int64_t duration_ms, int32_t tracks) {
  duration_ms_ = duration_ms;
  tracks_ = tracks;
  if (duration_ms >= 0 && config_.start_ms > duration_ms) return fail(kPlayerErrorInvalidPosition);
  if (memory_ != nullptr) memory_->seek(std::min(framesOf(config_.start_ms), framesOf(duration_ms)));
  loading_ = false;
  Voice::Events events;
  events.ended = [weak = weak_from_this(), load = load_, &thread = context_.thread] {
    thread.post([weak, load] {
      if (const auto self = weak.lock()) self->onVoiceEnded(load);
    });
  };
  events.progress = [weak = weak_from_this(), load = load_, &thread = context_.thread](int64_t ms) {
    thread.post([weak, load, ms] {
      if (const auto self = weak.lock()) self->onVoiceProgress(load, ms);
    });
  };
  voice_ = std::make_shared<Voice>(std::move(source), settings_, std::move(events));
  if (waits_ || config_.waits) enter(kPlayerStateOpened);
  if (waits_) return;
  if (state_ != kPlayerStatePaused) mix_.add(voice_);
  enter(state_ == kPlayerStatePaused ? kPlayerStatePaused : kPlayerStatePlaying);
}

void Deck::enter(PlayerState state, PlayerError error) {
  state_ = state;
  tell(state, error);
}

void Deck::tell(PlayerState state, PlayerError error) {
  context_.thread.post([self = shared_from_this(), state, error] { self->events_.state(state, error); });
}

void Deck::fail(PlayerError error) {
  close();
  enter(kPlayerStateFailed, error);
}

bool Deck::isActive() const {
  return state_ == kPlayerStatePlaying || state_ == kPlayerStatePaused;
}

bool Deck::isOpen() const {
  return voice_ != nullptr;
}

int32_t Deck::start() {
  const std::lock_guard lock(mutex_);
  if (state_ == kPlayerStateStopped || state_ == kPlayerStateFinished) {
    DeckConfig config = config_;
    config.waits = false;
    begin(source_, config);
    return kSuccess;
  }
  if (state_ != kPlayerStateOpened || !waits_) return kWrongState;
  waits_ = false;
  if (loading_) return kSuccess;
  mix_.add(voice_);
  enter(kPlayerStatePlaying);
  return kSuccess;
}

int32_t Deck::stop() {
  const std::lock_guard lock(mutex_);
  if (!isActive() && state_ != kPlayerStateOpened) return kWrongState;
  close();
  enter(kPlayerStateStopped);
  return kSuccess;
}

int32_t Deck::pause() {
  const std::lock_guard lock(mutex_);
  if (state_ != kPlayerStatePlaying) return kWrongState;
  state_ = kPlayerStatePaused;
  if (loading_) return kSuccess;
  mix_.remove(voice_);
  enter(kPlayerStatePaused);
  return kSuccess;
}

int32_t Deck::resume() {
  const std::lock_guard lock(mutex_);
  if (state_ != kPlayerStatePaused) return kWrongState;
  state_ = kPlayerStatePlaying;
  if (loading_) return kSuccess;
  mix_.add(voice_);
  enter(kPlayerStatePlaying);
  return kSuccess;
}

int32_t Deck::setPosition(int64_t ms) {
  const std::lock_guard lock(mutex_);
  if (ms < 0) return kInvalidParameter;
  if (source_ == Source::kPushed) return kNotSupported;
  if (loading_) {
    config_.start_ms = ms;
    return kSuccess;
  }
  if (!isOpen()) return kWrongState;
  if (duration_ms_ >= 0 && ms > duration_ms_) return kInvalidParameter;
  if (memory_ != nullptr) {
    memory_->seek(framesOf(ms));
  } else {
    queue_->announceSeek(framesOf(ms));
    context_.thread.post([self = shared_from_this(), load = load_, ms] {
      if (self->decoder_ != nullptr && self->decoder_load_ == load) self->decoder_->seek(ms);
    });
  }
  voice_->onSeek();
  return kSuccess;
}

int32_t Deck::selectTrack(int32_t track) {
  const std::lock_guard lock(mutex_);
  if (!isOpen()) return kWrongState;
  if (track < 0 || track >= tracks_) return kInvalidParameter;
  // One track alone is kept in memory.
  if (source_ != Source::kFile) return track == 0 ? kSuccess : kNotSupported;
  const int64_t ms = voice_->positionMs();
  queue_->announceSeek(framesOf(ms));
  context_.thread.post([self = shared_from_this(), load = load_, track, ms] {
    if (self->decoder_ != nullptr && self->decoder_load_ == load) self->decoder_->selectTrack(track, ms);
  });
  return kSuccess;
}

int32_t Deck::push(std::span<const int16_t> samples) {
  const std::lock_guard lock(mutex_);
  if (source_ != Source::kPushed || state_ != kPlayerStatePlaying) return kWrongState;
  return queue_->tryWrite(samples) ? kSuccess : kFailure;
}

bool Deck::active() const {
  const std::lock_guard lock(mutex_);
  return isActive();
}

VoiceSettings Deck::settings() const {
  const std::lock_guard lock(mutex_);
  return settings_;
}

int64_t Deck::position() const {
  const std::lock_guard lock(mutex_);
  if (isOpen()) return voice_->positionMs();
  return loading_ ? config_.start_ms : int64_t{kWrongState};
}

int64_t Deck::played() const {
  const std::lock_guard lock(mutex_);
  if (isOpen()) return voice_->playedMs();
  return loading_ ? 0 : int64_t{kWrongState};
}

int64_t Deck::duration() const {
  const std::lock_guard lock(mutex_);
  return duration_ms_ >= 0 ? duration_ms_ : int64_t{kWrongState};
}

int32_t Deck::tracks() const {
  const std::lock_guard lock(mutex_);
  return tracks_ > 0 ? tracks_ : int32_t{kWrongState};
}

void Deck::onDecoderReady(int64_t duration_ms, int32_t tracks) {
  const std::lock_guard lock(mutex_);
  if (decoder_load_ != load_) return;
  // Not before the seek has brought something is it known by itself.
  if (config_.start_ms > 0) queue_->announceSeek(framesOf(config_.start_ms));
  loaded(queue_, duration_ms, tracks);
  if (decoder_load_ == load_) decoder_->run(config_.start_ms);
}

void Deck::onDecoderFailed(const DecodingFault& fault) {
  const std::lock_guard lock(mutex_);
  if (decoder_load_ != load_) return;
  context_.log.warning("playing %s", fault.text.c_str());
  fail(fault.error);
}

void Deck::onVoiceEnded(int64_t load) {
  const std::lock_guard lock(mutex_);
  if (load != load_ || state_ != kPlayerStatePlaying) return;
  close();
  enter(kPlayerStateFinished);
}

void Deck::onVoiceProgress(int64_t load, int64_t position_ms) {
  {
    const std::lock_guard lock(mutex_);
    if (load != load_ || state_ != kPlayerStatePlaying) return;
  }
  events_.progress(position_ms);
}

void Deck::onSeekFailed() {
  const std::lock_guard lock(mutex_);
  if (decoder_load_ != load_ || queue_ == nullptr) return;
  queue_->cancelSeek();
  tell(state_, kPlayerErrorInvalidPosition);
}

void Deck::shutDown() {
  const std::lock_guard lock(mutex_);
  ended_ = true;
  close();
  decoder_.reset();
}

}  // namespace corvane::rtc
