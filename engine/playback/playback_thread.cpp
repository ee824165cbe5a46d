#include "playback/playback_thread.h"

#include <utility>

#include "core/engine_thread.h"
#include "core/run_within.h"

namespace corvane::rtc {

namespace {

// A speaker that has begun to play the first block wants the third.
constexpr int64_t kStartedBlocks = 2;
// Two seconds: what is played in pieces does not open the speaker for each.
constexpr int64_t kIdleBlocks = 200;

}  // namespace

PlaybackThread::PlaybackThread(PlayedSound& sound, OutputMaker make_output, const Patience& patience)
    : sound_(sound), make_output_(std::move(make_output)), patience_(patience) {
  thread_ = std::jthread([this](const std::stop_token& stop) {
    nameThread("sound-playback");
    run(stop);
  });
}

PlaybackThread::~PlaybackThread() {
  rest();
  thread_.request_stop();
  thread_.join();
}

void PlaybackThread::play(SpeakerId speaker, PlaybackEvents events) {
  {
    const std::lock_guard lock(mutex_);
    current_.request_stop();
    next_ = Opening{std::move(speaker), std::move(events), {}};
    current_ = next_->end;
  }
  changed_.notify_all();
}

void PlaybackThread::rest() {
  const std::lock_guard lock(mutex_);
  current_.request_stop();
  next_.reset();
}

void PlaybackThread::run(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  while (changed_.wait(lock, stop, [this] { return next_.has_value(); })) {
    const Opening opening = std::move(*std::exchange(next_, std::nullopt));
    lock.unlock();
    playOn(opening);
    lock.lock();
  }
}

std::optional<CaptureFault> PlaybackThread::open(const std::shared_ptr<SoundOutput>& output) const {
  const auto fault = std::make_shared<std::optional<CaptureFault>>();
  if (runWithin(patience_.open, "speaker-open", [output, fault] { *fault = output->open(); })) return *fault;
  return CaptureFault{kDeviceFailure, kMediaDeviceErrorNoCallback, "the speaker does not open"};
}

void PlaybackThread::close(std::shared_ptr<SoundOutput> output) const {
  runWithin(patience_.close, "speaker-close", [output = std::move(output)]() mutable { output.reset(); });
}

void PlaybackThread::playOn(const Opening& opening) {
  const std::stop_token stop = opening.end.get_token();
  std::shared_ptr<SoundOutput> output = make_output_(opening.speaker);
  std::optional<CaptureFault> fault = open(output);
  int64_t played = 0;
  int64_t idle = 0;
  bool failed = false;
  SoundBlock block;
  while (!stop.stop_requested()) {
    if (fault) {
      failed = true;
      opening.events.failed(*std::exchange(fault, std::nullopt));
      close(std::exchange(output, make_output_(NullSpeaker())));
      output->open();
    }
    if (!output->wait(stop)) {
      fault = output->fault();
      continue;
    }
    if (played++ == kStartedBlocks && !failed) opening.events.started();
    sound_.mix(block, output->heardAtUs());
    output->play(block);
    idle = sound_.hasSources() ? 0 : idle + 1;
    if (idle == kIdleBlocks) opening.events.idle();
  }
  close(std::move(output));
}

}  // namespace corvane::rtc
