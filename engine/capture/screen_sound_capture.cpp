#include "capture/screen_sound_capture.h"

#include <string_view>
#include <utility>

#include "devices/audio_device_id.h"

namespace corvane::rtc {

ScreenSoundCapture::ScreenSoundCapture(EngineContext& context, const AudioDeviceList& devices, std::string source,
                                       ScreenSound& sound, SentSound& sent)
    : context_(context), devices_(devices), source_id_(std::move(source)), sound_(sound), sent_(sent) {}

ScreenSoundCapture::~ScreenSoundCapture() {
  close();
}

void ScreenSoundCapture::start() {
  if (state_ == State::kOff || state_ == State::kFailed) open();
}

void ScreenSoundCapture::stop() {
  const State ended = std::exchange(state_, State::kOff);
  close();
  if (ended == State::kOpening || ended == State::kDelivering) {
    context_.log.info("the screen's sound stopped");
    report(kMediaDeviceStateStopped, kMediaDeviceErrorOk);
  }
}

void ScreenSoundCapture::setStream(int32_t stream_index) {
  stream_index_ = stream_index;
  if (source_ != nullptr) route();
}

void ScreenSoundCapture::onDevicesChanged() {
  const bool is_open = state_ == State::kOpening || state_ == State::kDelivering;
  // A speaker that goes is often followed by another at once.
  if ((is_open || state_ == State::kFailed) && current() != opened_) open();
}

void ScreenSoundCapture::open() {
  close();
  opened_ = current();
  state_ = State::kOpening;
  if (opened_.empty()) {
    return fail({kNotFound, kMediaDeviceErrorNotFound,
                 "what the default speaker plays can be heard through PulseAudio only, and it has none"});
  }
  context_.log.info("the screen's sound is taken from %s", opened_.c_str());
  queue_ = std::make_unique<SoundQueue>(kMaxSoundChannels);
  source_ = makeSoundSource(context_, *queue_, *this, parseMicrophoneId(opened_));
  route();
  session_ = std::make_shared<char>();
  const SoundPumpEvents events = {
      .first_block =
          [this, session = std::weak_ptr(session_)] {
            context_.thread.post(session, [this] { context_.events->onFirstLocalAudioFrame(kStreamIndexScreen); });
          },
      .silence = [] {},  // a screen is silent most of the time
  };
  pump_ = std::make_unique<SoundPump>(*queue_, sound_, source_->paced(), events);
  source_->start();
}

void ScreenSoundCapture::close() {
  source_.reset();
  pump_.reset();
  queue_.reset();
  session_.reset();
  sound_.setMix(nullptr);
}

void ScreenSoundCapture::route() {
  sound_.setMix(stream_index_ == kStreamIndexMain ? sent_.addInput() : nullptr);
}

void ScreenSoundCapture::fail(const CaptureFault& fault) {
  close();
  state_ = State::kFailed;
  context_.log.error("the screen's sound failed: %s", fault.text.c_str());
  report(kMediaDeviceStateRuntimeError, fault.device_error);
  context_.events->onError(fault.status);
}

void ScreenSoundCapture::report(MediaDeviceState state, MediaDeviceError error) {
  context_.events->onAudioDeviceStateChanged(opened_.c_str(), kAudioDeviceTypeScreenCapture, state, error);
}

std::string ScreenSoundCapture::current() const {
  if (!source_id_.empty()) return source_id_;
  const std::string speaker = devices_.defaultId(AudioDeviceKind::kSpeaker);
  constexpr std::string_view kServer = "pulse:";
  return speaker.starts_with(kServer) ? speaker + ".monitor" : "";
}

void ScreenSoundCapture::onSourceDelivers() {
  state_ = State::kDelivering;
  report(kMediaDeviceStateStarted, kMediaDeviceErrorOk);
}

}  // namespace corvane::rtc
