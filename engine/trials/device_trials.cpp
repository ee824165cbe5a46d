#include "trials/device_trials.h"

#include <algorithm>
#include <cerrno>
#include <stop_token>
#include <utility>

#include <unistd.h>

#include "capture/sound_queue.h"
#include "capture/sound_source.h"
#include "devices/audio_device_id.h"

namespace corvane::rtc {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kShortestInterval(20);
constexpr milliseconds kLook(200);
// Beyond the sound that is compared.
constexpr std::chrono::seconds kEchoDetectionPatience(20);
// Beyond the echo's delay.
constexpr std::chrono::seconds kEchoTestPatience(10);

int32_t readable(const std::string& path) {
  if (path.empty()) return kInvalidParameter;
  return access(path.c_str(), R_OK) == 0 ? kSuccess : fileFault(path, errno).status;
}

}  // namespace

/// A file's sound, over and over.
class DeviceTrials::Clip final : private CaptureSource::Listener {
 public:
  Clip(DeviceTrials& trials, const std::string& path)
      : trials_(trials), source_(makeSoundSource(trials.context_, queue_, *this, ClipMicrophone{path})) {
    source_->start();
  }
  ~Clip() = default;
  Clip(const Clip&) = delete;
  Clip& operator=(const Clip&) = delete;

  /// Nobody waits for sound any more.
  void close() { stop_.request_stop(); }

  /// On the playback thread.
  void next(SoundBlock& block) {
    const int64_t time_us = block.time_us;
    if (!queue_.pop(block, stop_.get_token())) std::fill(block.storage.begin(), block.storage.end(), int16_t{0});
    block.time_us = time_us;
  }

 private:
  void onSourceDelivers() override {}
  void onSourceFailed(const CaptureFault& fault) override {
    trials_.context_.thread.post(trials_.session_,
                                 [&trials = trials_, fault] { trials.fail(kAudioDeviceTypeUnknown, "", fault); });
  }

  DeviceTrials& trials_;
  std::stop_source stop_;
  SoundQueue queue_;
  std::unique_ptr<SoundSource> source_;
};

DeviceTrials::DeviceTrials(EngineContext& context, const AudioDeviceList& devices, DeviceUse use)
    : context_(context), devices_(devices), use_(std::move(use)) {}

DeviceTrials::~DeviceTrials() {
  end();
}

int32_t DeviceTrials::useSpeaker(const std::string& id) {
  if (kind_ != Kind::kNone) return kWrongState;
  test_speaker_ = id;
  return kSuccess;
}

int32_t DeviceTrials::useMicrophone(const std::string& id) {
  if (kind_ != Kind::kNone) return kWrongState;
  test_microphone_ = id;
  return kSuccess;
}

std::string DeviceTrials::speaker() const {
  if (!test_speaker_.empty()) return test_speaker_;
  return !chosen_speaker_.empty() ? chosen_speaker_ : devices_.defaultId(AudioDeviceKind::kSpeaker);
}

std::string DeviceTrials::microphone() const {
  if (!test_microphone_.empty()) return test_microphone_;
  return !chosen_microphone_.empty() ? chosen_microphone_ : devices_.defaultId(AudioDeviceKind::kMicrophone);
}

// Starting.

bool DeviceTrials::mayStart(bool records) const {
  return kind_ == Kind::kNone && !use_.is_in_room() && !(records && use_.captures());
}

void DeviceTrials::begin(Kind kind, int64_t interval) {
  kind_ = kind;
  interval_ = interval > 0 ? std::max(milliseconds(interval), kShortestInterval) : milliseconds(0);
  session_ = std::make_shared<char>();
}

int32_t DeviceTrials::startPlaying(const std::string& path, int64_t interval) {
  if (!mayStart(false)) return kWrongState;
  if (const int32_t status = readable(path); status != kSuccess) return status;
  begin(Kind::kPlaying, interval);
  openClip(path);
  openSpeaker([this](SoundBlock& block) { clip_->next(block); });
  repeat(interval_, [this] { reportPlayed(); });
  return kSuccess;
}

int32_t DeviceTrials::startRecording(int64_t interval) {
  if (!mayStart(true)) return kWrongState;
  if (microphone().empty()) return kNotFound;
  begin(Kind::kRecording, interval);
  meter_ = std::make_unique<SoundMeter>(SoundMeterSettings());
  recording_ = std::make_unique<RecordedSound>();
  openMicrophone([this](const SoundBlock& block) {
    recording_->add(block);
    meter_->onSound(block);
  });
  repeat(interval_, [this] { reportRecorded(); });
  return kSuccess;
}

int32_t DeviceTrials::replay() {
  if (kind_ != Kind::kRecording) return kWrongState;
  listening_.reset();
  kind_ = Kind::kReplaying;
  session_ = std::make_shared<char>();
  openSpeaker([this, session = std::weak_ptr(session_), over = false](SoundBlock& block) mutable {
    if (recording_->next(block) || std::exchange(over, true)) return;
    // The speaker still has some of it.
    context_.thread.post(session, [this] { deadline_ = context_.thread.after(kLook, [this] { end(); }); });
  });
  repeat(interval_, [this] { reportPlayed(); });
  return kSuccess;
}

int32_t DeviceTrials::startEchoTest(int64_t interval, int32_t delay_seconds) {
  if (!mayStart(true)) return kWrongState;
  if (microphone().empty()) return kNotFound;
  begin(Kind::kEchoTest, interval);
  came_back_ = false;
  meter_ = std::make_unique<SoundMeter>(SoundMeterSettings());
  delayed_ = std::make_unique<DelayedSound>(delay_seconds);
  openMicrophone([this](const SoundBlock& block) {
    delayed_->add(block);
    meter_->onSound(block);
  });
  openSpeaker([this, session = std::weak_ptr(session_), told = false](SoundBlock& block) mutable {
    if (!delayed_->next(block) || std::exchange(told, true)) return;
    context_.thread.post(session, [this] {
      came_back_ = true;
      deadline_.reset();
      context_.events->onEchoTestResult(kEchoTestSuccess);
    });
  });
  repeat(interval_, [this] { reportRecorded(); });
  deadline_ = context_.thread.after(std::chrono::seconds(delay_seconds) + kEchoTestPatience, [this] {
    end();
    context_.events->onEchoTestResult(kEchoTestTimeout);
  });
  return kSuccess;
}

int32_t DeviceTrials::startEchoDetection(const std::string& path) {
  if (!mayStart(true)) return kWrongState;
  if (const int32_t status = readable(path); status != kSuccess) return status;
  if (microphone().empty()) return kNotFound;
  begin(Kind::kEchoDetection, 0);
  finder_ = std::make_unique<EchoFinder>();
  openMicrophone([this](const SoundBlock& block) { finder_->addHeard(block); });
  openClip(path);
  openSpeaker([this](SoundBlock& block) {
    clip_->next(block);
    finder_->addPlayed(block);
  });
  repeat(kLook, [this] { listenForEcho(); });
  deadline_ = context_.thread.after(kEchoDetectionPatience, [this] {
    end();
    context_.events->onHardwareEchoDetectionResult(kHardwareEchoDetectionUnknown);
  });
  return kSuccess;
}

void DeviceTrials::openSpeaker(TrialSpeaker::Source source) {
  const std::string id = speaker();
  context_.log.info("speaker %s is tried out", id.c_str());
  playing_ = std::make_unique<TrialSpeaker>(
      parseSpeakerId(id), std::move(source), [this, id, session = std::weak_ptr(session_)](const CaptureFault& fault) {
        context_.thread.post(session, [this, id, fault] { fail(kAudioDeviceTypeRender, id, fault); });
      });
}

void DeviceTrials::openMicrophone(TrialMicrophone::Taker taker) {
  const std::string id = microphone();
  context_.log.info("microphone %s is tried out", id.c_str());
  listening_ = std::make_unique<TrialMicrophone>(
      context_, parseMicrophoneId(id), std::move(taker),
      [this, id](const CaptureFault& fault) { fail(kAudioDeviceTypeCapture, id, fault); });
}

void DeviceTrials::openClip(const std::string& path) {
  clip_ = std::make_unique<Clip>(*this, path);
}

// While it runs.

void DeviceTrials::repeat(milliseconds interval, std::function<void()> report) {
  if (interval == milliseconds(0)) return;
  timer_ = context_.thread.after(interval, [this, interval, report = std::move(report)] {
    const std::weak_ptr<void> session = session_;
    report();
    if (!session.expired()) repeat(interval, report);
  });
}

void DeviceTrials::reportPlayed() {
  context_.events->onAudioPlaybackDeviceTestVolume(playing_->takeVolume());
}

void DeviceTrials::reportRecorded() {
  const std::optional<AudioPropertiesInfo> heard = meter_->take();
  if (!heard) return;
  const LocalAudioPropertiesInfo local = {kStreamIndexMain, *heard};
  context_.events->onLocalAudioPropertiesReport(&local, 1);
}

void DeviceTrials::listenForEcho() {
  const std::optional<HardwareEchoDetectionResult> result = finder_->result();
  if (!result) return;
  end();
  context_.events->onHardwareEchoDetectionResult(*result);
}

// Ending.

int32_t DeviceTrials::stop(Kind kind) {
  if (kind_ != kind) return kWrongState;
  end();
  return kSuccess;
}

int32_t DeviceTrials::stopEchoTest() {
  const bool came_back = came_back_;
  const int32_t status = stop(Kind::kEchoTest);
  if (status == kSuccess && !came_back) {
    context_.thread.post([this] { context_.events->onEchoTestResult(kEchoTestTooShort); });
  }
  return status;
}

int32_t DeviceTrials::stopEchoDetection() {
  const int32_t status = stop(Kind::kEchoDetection);
  if (status == kSuccess) {
    context_.thread.post([this] { context_.events->onHardwareEchoDetectionResult(kHardwareEchoDetectionStopped); });
  }
  return status;
}

void DeviceTrials::end() {
  kind_ = Kind::kNone;
  session_.reset();
  timer_.reset();
  deadline_.reset();
  if (clip_ != nullptr) clip_->close();
  playing_.reset();
  listening_.reset();
  clip_.reset();
  finder_.reset();
  delayed_.reset();
  recording_.reset();
  meter_.reset();
}

void DeviceTrials::fail(AudioDeviceType type, const std::string& device, const CaptureFault& fault) {
  const Kind kind = kind_;
  end();
  context_.log.error("trying out %s failed: %s", device.empty() ? "a file" : device.c_str(), fault.text.c_str());
  if (type != kAudioDeviceTypeUnknown) {
    context_.events->onAudioDeviceStateChanged(device.c_str(), type, kMediaDeviceStateRuntimeError, fault.device_error);
  }
  if (kind == Kind::kEchoTest) context_.events->onEchoTestResult(kEchoTestDeviceFailure);
  if (kind == Kind::kEchoDetection) context_.events->onHardwareEchoDetectionResult(kHardwareEchoDetectionUnknown);
  context_.events->onError(fault.status);
}

}  // namespace corvane::rtc
