#include "playback/speaker.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "devices/audio_device_id.h"

namespace corvane::rtc {

Speaker::Speaker(EngineContext& context, const AudioDeviceList& devices, PlayedSound& sound)
    : context_(context), devices_(devices), sound_(sound), thread_(sound) {}

void Speaker::wake() {
  if (state_ == State::kOff) open();
}

void Speaker::setSpeaker(const std::string& id) {
  chosen_ = id;
  const bool is_open = state_ == State::kOpening || state_ == State::kPlaying;
  if (state_ == State::kOff || (is_open && current() == opened_)) return;
  close();
  open();
}

void Speaker::onDevicesChanged() {
  if (state_ == State::kOff) return;
  // What the application chose stays, and is used again when it has come back; else the machine's default is followed.
  const bool was_listed = std::exchange(listed_, isListed(opened_));
  const bool is_back = state_ == State::kFailed && listed_ && !was_listed;
  const bool is_gone = state_ == State::kPlaying && !listed_ && was_listed;
  if (current() == opened_ && is_gone) return onGone();
  if (current() == opened_ && !is_back) return;
  close();
  open();
}

void Speaker::open() {
  opened_ = current();
  listed_ = isListed(opened_);
  state_ = State::kOpening;
  context_.log.info("speaker %s opens", opened_.c_str());
  play(opened_);
}

void Speaker::play(const std::string& id) {
  session_ = std::make_shared<char>();
  const std::weak_ptr<void> session = session_;
  thread_.play(parseSpeakerId(id),
               {
                   .started = [this, session] { context_.thread.post(session, [this] { onStarted(); }); },
                   .failed =
                       [this, session](const CaptureFault& fault) {
                         context_.thread.post(session, [this, fault] { onFailed(fault); });
                       },
                   .idle = [this, session] { context_.thread.post(session, [this] { onIdle(); }); },
               });
}

void Speaker::close() {
  session_.reset();
  thread_.rest();
  context_.log.info("speaker %s stopped", opened_.c_str());
  if (std::exchange(state_, State::kOff) == State::kPlaying) report(kMediaDeviceStateStopped, kMediaDeviceErrorOk);
}

void Speaker::report(MediaDeviceState state, MediaDeviceError error) {
  context_.events->onAudioDeviceStateChanged(opened_.c_str(), kAudioDeviceTypeRender, state, error);
}

std::string Speaker::current() const {
  return chosen_.empty() ? devices_.defaultId(AudioDeviceKind::kSpeaker) : chosen_;
}

bool Speaker::isListed(const std::string& id) const {
  const std::vector<AudioDeviceEntry> speakers = devices_.snapshot(AudioDeviceKind::kSpeaker);
  return std::any_of(speakers.begin(), speakers.end(), [&](const AudioDeviceEntry& entry) { return entry.id == id; });
}

void Speaker::onStarted() {
  if (state_ == State::kFailed) return;  // nobody hears it
  state_ = State::kPlaying;
  report(kMediaDeviceStateStarted, kMediaDeviceErrorOk);
}

void Speaker::onFailed(const CaptureFault& fault) {
  state_ = State::kFailed;
  context_.log.error("speaker %s failed: %s", opened_.c_str(), fault.text.c_str());
  report(kMediaDeviceStateRuntimeError, fault.device_error);
  context_.events->onError(fault.status);
}

// The server might play on where nobody has asked for it.
void Speaker::onGone() {
  play(std::string(kNullSpeaker));
  onFailed({kDeviceFailure, kMediaDeviceErrorDisconnected, "it is gone"});
}

void Speaker::onIdle() {
  if (sound_.hasSources()) return;
  close();
}

}  // namespace corvane::rtc
