#include "capture/audio_capture.h"

#include <chrono>
#include <utility>

#include "devices/audio_device_id.h"

namespace corvane::rtc {

namespace {

// Wireless headsets take seconds to go over to their microphone.
constexpr std::chrono::seconds kFirstSoundTimeout(10);

}  // namespace

AudioCapture::AudioCapture(EngineContext& context, const AudioDeviceList& devices, CapturedSound& sound,
                           PushedSound& pushed)
    : context_(context), devices_(devices), sound_(sound), pushed_(pushed) {}

AudioCapture::~AudioCapture() {
  close();
}

void AudioCapture::start() {
  if (state_ == State::kPushed) return;
  wanted_ = true;
  if (state_ == State::kOff || state_ == State::kFailed) open();
}

void AudioCapture::stop() {
  wanted_ = false;
  if (state_ == State::kOff || state_ == State::kPushed) return;
  const bool delivered = state_ == State::kDelivering;
  close();
  state_ = State::kOff;
  context_.log.info("microphone %s stopped", opened_.c_str());
  if (delivered) reportDevice(kMediaDeviceStateStopped, kMediaDeviceErrorOk);
  reportStream(kLocalAudioStreamStateStopped, kLocalAudioStreamErrorOk);
}

void AudioCapture::setMicrophone(const std::string& id) {
  chosen_ = id;
  const bool is_open = state_ == State::kOpening || state_ == State::kDelivering;
  if (!wanted_ || (is_open && current() == opened_)) return;
  close();
  if (state_ == State::kDelivering) reportDevice(kMediaDeviceStateStopped, kMediaDeviceErrorOk);
  open();
}

void AudioCapture::setPushed(bool pushed) {
  if (pushed == (state_ == State::kPushed)) return;
  if (pushed) {
    stop();
    state_ = State::kPushed;
    session_ = std::make_shared<char>();
    context_.log.info("sound comes from the application");
    pump_ = std::make_unique<SoundPump>(pushed_.queue(), sound_, true,
                                        SoundPumpEvents{.first_block = tellOfFirstBlock(), .silence = [] {}});
    return;
  }
  close();
  state_ = State::kOff;
  context_.log.info("sound comes from the microphone; %lld of the application's frames were refused so far",
                    static_cast<long long>(pushed_.refused()));
  if (stream_reported_) reportStream(kLocalAudioStreamStateStopped, kLocalAudioStreamErrorOk);
}

void AudioCapture::onDevicesChanged() {
  // What the application chose stays; where it chose nothing, a microphone that comes, or becomes the default, is used.
  if (!chosen_.empty() || !wanted_ || current() == opened_) return;
  setMicrophone("");
}

void AudioCapture::open() {
  close();
  opened_ = current();
  state_ = State::kOpening;
  if (opened_.empty()) {
    return fail({kNotFound, kMediaDeviceErrorNotFound, "there is none on this machine, and none was chosen"});
  }
  context_.log.info("microphone %s opens", opened_.c_str());
  session_ = std::make_shared<char>();
  queue_ = std::make_unique<SoundQueue>();
  const MicrophoneId microphone = parseMicrophoneId(opened_);
  sound_.cleaner().setDevice(std::holds_alternative<SoundDevice>(microphone));
  source_ = makeSoundSource(context_, *queue_, *this, microphone);
  const SoundPumpEvents events = {
      .first_block = tellOfFirstBlock(),
      .silence =
          [this, session = std::weak_ptr(session_)] {
            context_.thread.post(session, [this] {
              context_.log.warning("microphone %s delivers nothing but silence", opened_.c_str());
              context_.events->onAudioDeviceWarning(opened_.c_str(), kAudioDeviceTypeCapture,
                                                    kMediaDeviceWarningCaptureSilence);
            });
          },
  };
  pump_ = std::make_unique<SoundPump>(*queue_, sound_, source_->paced(), events);
  watchdog_ = context_.thread.after(kFirstSoundTimeout, [this] {
    fail({kDeviceFailure, kMediaDeviceErrorNoCallback, "the microphone is open but delivers nothing"});
  });
  source_->start();
}

void AudioCapture::close() {
  watchdog_.reset();
  source_.reset();
  pump_.reset();
  queue_.reset();
  session_.reset();
}

void AudioCapture::fail(const CaptureFault& fault) {
  close();
  state_ = State::kFailed;
  context_.log.error("microphone %s failed: %s", opened_.c_str(), fault.text.c_str());
  reportDevice(kMediaDeviceStateRuntimeError, fault.device_error);
  reportStream(kLocalAudioStreamStateFailed, audioStreamError(fault));
  context_.events->onError(fault.status);
}

void AudioCapture::reportDevice(MediaDeviceState state, MediaDeviceError error) {
  context_.events->onAudioDeviceStateChanged(opened_.c_str(), kAudioDeviceTypeCapture, state, error);
}

void AudioCapture::reportStream(LocalAudioStreamState state, LocalAudioStreamError error) {
  stream_reported_ = state == kLocalAudioStreamStateRecording;
  context_.on_capturing(kStreamIndexMain, kMediaStreamAudio, stream_reported_);
  context_.events->onLocalAudioStateChanged(state, error);
}

std::string AudioCapture::current() const {
  return chosen_.empty() ? devices_.defaultId(AudioDeviceKind::kMicrophone) : chosen_;
}

std::function<void()> AudioCapture::tellOfFirstBlock() {
  return [this, session = std::weak_ptr(session_)] { context_.thread.post(session, [this] { onFirstBlock(); }); };
}

void AudioCapture::onSourceDelivers() {
  watchdog_.reset();
  state_ = State::kDelivering;
  reportDevice(kMediaDeviceStateStarted, kMediaDeviceErrorOk);
}

void AudioCapture::onSourceFailed(const CaptureFault& fault) {
  fail(fault);
}

void AudioCapture::onFirstBlock() {
  if (stream_reported_) return;
  reportStream(kLocalAudioStreamStateRecording, kLocalAudioStreamErrorOk);
  context_.events->onFirstLocalAudioFrame(kStreamIndexMain);
}

}  // namespace corvane::rtc
