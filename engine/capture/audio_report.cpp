#include "capture/audio_report.h"

#include <algorithm>
#include <cmath>

namespace corvane::rtc {

namespace {

constexpr int32_t kShortestInterval = 100;
constexpr int32_t kSilentDb = -127;
constexpr double kLoudest = 255.0;

}  // namespace

bool isAudioPropertiesConfig(const AudioPropertiesConfig& config) {
  if (config.interval <= 0) return true;
  const bool known_modes = config.audio_report_mode >= kAudioReportModeNormal &&
                           config.audio_report_mode <= kAudioReportModeReset &&
                           config.local_main_report_mode >= kLocalMainReportMicrophone &&
                           config.local_main_report_mode <= kLocalMainReportMixed;
  // Written so that what is no number is refused, too.
  const bool smooths = config.smooth > 0.0 && config.smooth <= 1.0;
  return config.interval >= kShortestInterval && known_modes && smooths;
}

AudioReport::AudioReport(EngineContext& context, SoundTaps& microphone, SoundTaps& sent, RemoteSounds& remote)
    : context_(context), microphone_(microphone), sent_(sent), remote_(remote) {}

AudioReport::~AudioReport() {
  stop();
}

void AudioReport::configure(const AudioPropertiesConfig& config) {
  stop();
  config_ = config;
  if (config.interval <= 0) return;
  meter_.emplace(
      SoundMeterSettings{config.enable_spectrum, config.enable_vad, config.enable_voice_pitch, config.smooth});
  measured_ = config.local_main_report_mode == kLocalMainReportMixed ? &sent_ : &microphone_;
  measured_->add(*meter_);
  remote_.measure(SoundMeterSettings{config.enable_spectrum, config.enable_vad, false, config.smooth});
  due_ = std::chrono::steady_clock::now();
  scheduleNext();
}

void AudioReport::stop() {
  timer_.reset();
  if (!meter_) return;
  measured_->remove(*meter_);
  remote_.measure(std::nullopt);
  meter_.reset();
}

void AudioReport::scheduleNext() {
  const auto now = std::chrono::steady_clock::now();
  // Reports that could not be made in time are left out.
  due_ = std::max(due_ + std::chrono::milliseconds(config_.interval), now);
  timer_ = context_.thread.after(std::chrono::ceil<std::chrono::milliseconds>(due_ - now), [this] { report(); });
}

void AudioReport::report() {
  scheduleNext();
  reportLocal();
  reportRemote();
}

void AudioReport::reportLocal() {
  LocalAudioPropertiesInfo local = {};
  const std::optional<AudioPropertiesInfo> heard = meter_->take();
  if (heard) {
    local.audio_properties_info = *heard;
  } else {
    local.audio_properties_info.nonlinear_volume = kSilentDb;
  }
  // All modes report outside rooms, too; what is off or muted is left out, or counts as silent.
  const bool is_listed = heard || config_.audio_report_mode == kAudioReportModeReset;
  context_.events->onLocalAudioPropertiesReport(is_listed ? &local : nullptr, is_listed ? 1 : 0);
}

void AudioReport::reportRemote() {
  heard_.clear();
  double power = 0.0;
  remote_.forEach([&](RemoteSound& sound) {
    const std::optional<AudioPropertiesInfo> info = sound.takeProperties();
    if (!info) return;
    heard_.push_back({sound.key(), *info});
    power += static_cast<double>(info->linear_volume) * info->linear_volume;
  });
  const double total = std::min(std::sqrt(power), kLoudest);
  context_.events->onRemoteAudioPropertiesReport(heard_.data(), static_cast<int32_t>(heard_.size()),
                                                 static_cast<int32_t>(std::lround(total)));
  active_speakers_.update(heard_, [this](const std::string& room, const std::string& user) {
    context_.events->onActiveSpeaker(room.c_str(), user.c_str());
  });
}

}  // namespace corvane::rtc
