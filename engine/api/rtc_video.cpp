#include "api/rtc_video.h"

#include <utility>

#include "core/gstreamer.h"

namespace corvane::rtc {

namespace {

class NoEvents final : public IRTCVideoEventHandler {};
NoEvents no_events;

EngineParameters readParametersLogged(std::string_view text, EngineLog& log) {
  std::string problem;
  EngineParameters parameters = readParameters(text, problem);
  if (!problem.empty()) log.warning("parameters: %s; the defaults are used instead", problem.c_str());
  return parameters;
}

}  // namespace

RtcVideo::RtcVideo(LogSettings log, const char* app_id, IRTCVideoEventHandler* handler, std::string_view parameters)
    : context_{.log = EngineLog(std::move(log)), .events = handler != nullptr ? handler : &no_events, .thread = {}},
      parameters_(readParametersLogged(parameters, context_.log)),
      missing_operations_(context_.log),
      local_video_(snapshots_),
      video_effect_(context_, missing_operations_, local_video_),
      cameras_(context_, parameters_.cameras),
      video_devices_(
          cameras_,
          [this](const std::string& id) { context_.thread.post([this, id] { video_capture_->setCamera(id); }); }),
      captured_sound_(sound_hooks_),
      played_sound_(playback_, sound_hooks_, captured_sound_.taps()),
      sound_devices_(context_, parameters_.microphones),
      audio_devices_(sound_devices_, device_tests_, *this) {
  playback_.taps().add(captured_sound_.cleaner().reference());
  context_.log.info("engine %s of application \"%s\"", CORVANE_RTC_VERSION, app_id);
  playback_.onInput([this] { context_.thread.post([this] { speaker_->wake(); }); });
  context_.thread.post([this] {
    video_capture_ = std::make_unique<VideoCapture>(context_, cameras_, local_video_, pushed_video_);
    zoom_ = std::make_unique<DigitalZoom>(context_.thread, local_video_);
    audio_capture_ = std::make_unique<AudioCapture>(context_, sound_devices_, captured_sound_, pushed_sound_);
    audio_report_ = std::make_unique<AudioReport>(context_, captured_sound_.taps(), sent_sound_.taps(), remote_sounds_);
    speaker_ = std::make_unique<Speaker>(context_, sound_devices_, played_sound_);
    remote_sounds_.setPlaces(static_cast<size_t>(parameters_.heard_users));
    screen_sound_capture_ = std::make_unique<ScreenSoundCapture>(context_, sound_devices_, parameters_.screen_sound,
                                                                 screen_sound_, sent_sound_);
    screen_capture_ = std::make_unique<ScreenCapture>(context_, screen_sink_, screen_taps_, snapshots_);
    rooms_ = std::make_unique<Rooms>(
        context_, std::make_unique<LocalMedia>(context_, kStreamIndexMain, local_video_.taps(), sent_sound_.taps()),
        std::make_unique<LocalMedia>(context_, kStreamIndexScreen, screen_taps_, screen_sound_taps_), remote_sinks_,
        snapshots_, remote_sounds_, parameters_.services);
    context_.on_capturing = [this](int32_t stream_index, int32_t media, bool captures) {
      if (rooms_ != nullptr) rooms_->setCapturing(stream_index, media, captures);
    };
    device_trials_ = std::make_unique<DeviceTrials>(context_, sound_devices_,
                                                    DeviceUse{.captures = [this] { return audio_capture_->isOn(); },
                                                              .is_in_room = [this] { return rooms_->isInRoom(); }});
    std::string problem;
    const bool have_gstreamer = startGStreamer(problem);
    if (!have_gstreamer) {
      context_.log.error("GStreamer cannot be used: %s", problem.c_str());
      context_.events->onExtensionAccessError("GStreamer", problem.c_str());
    }
    cameras_.start(have_gstreamer);
    sound_devices_.start(have_gstreamer, [this] {
      audio_capture_->onDevicesChanged();
      speaker_->onDevicesChanged();
      screen_sound_capture_->onDevicesChanged();
    });
  });
}

RtcVideo::~RtcVideo() {
  door_->close();
  context_.thread.finish([this] {
    players_.shutDown();
    device_trials_.reset();
    rooms_.reset();
    recordings_.end();
    screen_capture_.reset();
    screen_sound_capture_.reset();
    zoom_.reset();
    speaker_.reset();
    audio_report_.reset();
    audio_capture_.reset();
    video_capture_.reset();
    sound_devices_.stop();
    cameras_.stop();
  });
  playback_.taps().remove(captured_sound_.cleaner().reference());
  pushed_video_.close();
  context_.log.info("engine ended");
}

int32_t RtcVideo::refuseScreen(const char* operation, const CaptureFault& fault) {
  if (fault.status == kNotSupported) notSupported(operation);
  context_.log.warning("%s: %s", operation, fault.text.c_str());
  return fault.status;
}

}  // namespace corvane::rtc
