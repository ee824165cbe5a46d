// Audio capture and playback, the local voice, reports about sound, and raw audio to JavaScript.
#include "binding/audio_records.h"
#include "binding/records.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"

namespace corvane {
namespace {

void setLocalVoiceEqualization(Call& call) {
  Reader reader(call.env);
  const Argument<rtc::VoiceEqualizationConfig> argument(reader, call[0]);
  const rtc::VoiceEqualizationConfig& config = *argument;
  call.say(kLogInfo, "%s(%d), frequency: %d, gain: %d", config.frequency, config.gain);
  call.result = engineOf(call).setLocalVoiceEqualization(config);
}

void setLocalVoiceReverbParam(Call& call) {
  Reader reader(call.env);
  const Argument<rtc::VoiceReverbConfig> argument(reader, call[0]);
  const rtc::VoiceReverbConfig& config = *argument;
  call.say(kLogInfo, "%s(%d), room_size: %d, decay_time: %d, damping: %d, wet_gain: %d, dry_gain: %d, pre_delay: %d",
           config.room_size, config.decay_time, config.damping, config.wet_gain, config.dry_gain, config.pre_delay);
  call.result = engineOf(call).setLocalVoiceReverbParam(config);
}

constexpr char kFrameCallbackExit[] = "%s(%d), ret: %d";

constexpr Row kRows[] = {
    plain<&rtc::IRTCVideo::startAudioCapture>("startAudioCapture"),
    plain<&rtc::IRTCVideo::stopAudioCapture>("stopAudioCapture"),
    plain<&rtc::IRTCVideo::muteAudioCapture>("muteAudioCapture")
        .enters(nullptr)
        .says("+%s(%d) streamIndex:%d, mute:%d"),
    plain<&rtc::IRTCVideo::setCaptureVolume>("setCaptureVolume"),
    plain<&rtc::IRTCVideo::setPlaybackVolume>("setPlaybackVolume"),
    plain<&rtc::IRTCVideo::setRemoteAudioPlaybackVolume>("setRemoteAudioPlaybackVolume")
        .refuses("Param Invalid: %s(%d)\n"),
    plain<&rtc::IRTCVideo::setEarMonitorMode>("setEarMonitorMode"),
    plain<&rtc::IRTCVideo::setEarMonitorVolume>("setEarMonitorVolume"),
    plain<&rtc::IRTCVideo::setAudioProfile>("setAudioProfile"),
    plain<&rtc::IRTCVideo::setAnsMode>("setAnsMode")
        .refuses("%s(%d), Param is invalid, ans_mode")
        .says("%s(%d) ans_mode: %d"),
    plain<&rtc::IRTCVideo::enableAGC>("enableAGC").refuses("%s(%d), Param is invalid, enableAGC"),
    plain<&rtc::IRTCVideo::enablePlaybackDucking>("enablePlaybackDucking"),
    plain<&rtc::IRTCVideo::enableExternalSoundCard>("enableExternalSoundCard"),
    plain<&rtc::IRTCVideo::setAudioAlignmentProperty>("setAudioAlignmentProperty"),

    plain<&rtc::IRTCVideo::setLocalVoicePitch>("setLocalVoicePitch"),
    special("setLocalVoiceEqualization", &setLocalVoiceEqualization, {Kind::kObject}),
    special("setLocalVoiceReverbParam", &setLocalVoiceReverbParam, {Kind::kObject})
        .refuses("%s(%d),  Param is invalid"),
    plain<&rtc::IRTCVideo::enableLocalVoiceReverb>("enableLocalVoiceReverb"),
    plain<&rtc::IAudioDeviceManager::enableVocalInstrumentBalance>("enableVocalInstrumentBalance"),

    // The line names a file path that the method does not have.
    plain<&rtc::IRTCVideo::enableAudioPropertiesReport>("enableAudioPropertiesReport")
        .refuses("Param Invalid: %s(%d)", kLogError)
        .says("%s(%d), file_path:"),

    plain<&rtc::IRTCVideo::enableAudioFrameCallback>("enableAudioFrameCallback").exits(kFrameCallbackExit),
    plain<&rtc::IRTCVideo::disableAudioFrameCallback>("disableAudioFrameCallback").exits(kFrameCallbackExit),
};

}  // namespace

std::span<const Row> audioRows() {
  return kRows;
}

}  // namespace corvane
