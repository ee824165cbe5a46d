// Sound files mixed into playback and into what is sent. The methods of one mix print its id in their exit lines.
#include "binding/audio_records.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"

namespace corvane {
namespace {

// The methods of all mixes miss their manager with a line of their own.
template <int32_t (rtc::IAudioMixingManager::*Operation)()>
void onAllMixes(Call& call) {
  auto* manager =
      detail::present(call, engineOf(call).getAudioMixingManager(), "%s(%d), audioMixingManager is nullptr");
  if (manager != nullptr) call.result = (manager->*Operation)();
}

using Mixing = rtc::IAudioMixingManager;

constexpr char kParamsInvalid[] = "%s(%d), Params Invalid";
constexpr char kExit[] = "-%s(%d), ret: %d id = %d";
constexpr char kGetterExit[] = "-%s(%d), ret: %d ,id = %d";

// What most methods of one mix share.
template <auto Operation>
consteval auto mix(const char* name, const char* exit = kExit, int32_t line = __builtin_LINE()) {
  return plain<Operation>(name, line).refuses(kParamsInvalid).exitsWithArguments(exit);
}

constexpr Row kRows[] = {
    mix<&Mixing::startAudioMixing>("startAudioMixing").refuses(kParamsInvalid, kLogWarning),
    mix<&Mixing::stopAudioMixing>("stopAudioMixing", "-%s(%d), ret: %d id =%d"),
    mix<&Mixing::pauseAudioMixing>("pauseAudioMixing"),
    mix<&Mixing::resumeAudioMixing>("resumeAudioMixing"),
    mix<&Mixing::preloadAudioMixing>("preloadAudioMixing")
        .refuses(0, "%s(%d), Params Invalid, mix_id")
        .refuses(1, "%s(%d), Params Invalid, file_path"),
    mix<&Mixing::unloadAudioMixing>("unloadAudioMixing"),

    mix<&Mixing::setAudioMixingVolume>("setAudioMixingVolume").missesOwnerWith("%s(%d), m_pRtcVideo is nullptr"),
    mix<&Mixing::setAudioMixingPosition>("setAudioMixingPosition"),
    mix<&Mixing::setAudioMixingDualMonoMode>("setAudioMixingDualMonoMode"),
    mix<&Mixing::setAudioMixingPitch>("setAudioMixingPitch"),
    mix<&Mixing::setAudioMixingPlaybackSpeed>("setAudioMixingPlaybackSpeed"),
    mix<&Mixing::setAudioMixingLoudness>("setAudioMixingLoudness"),
    mix<&Mixing::setAudioMixingProgressInterval>("setAudioMixingProgressInterval"),
    mix<&Mixing::selectAudioTrack>("selectAudioTrack"),

    mix<&Mixing::getAudioMixingDuration>("getAudioMixingDuration", kGetterExit),
    mix<&Mixing::getAudioMixingCurrentPosition>("getAudioMixingCurrentPosition", kGetterExit),
    mix<&Mixing::getAudioMixingPlaybackDuration>("getAudioMixingPlaybackDuration"),
    mix<&Mixing::getAudioTrackCount>("getAudioTrackCount"),

    special("stopAllAudioMixing", &onAllMixes<&Mixing::stopAllAudioMixing>),
    special("pauseAllAudioMixing", &onAllMixes<&Mixing::pauseAllAudioMixing>),
    special("resumeAllAudioMixing", &onAllMixes<&Mixing::resumeAllAudioMixing>),
};

}  // namespace

std::span<const Row> audioMixingRows() {
  return kRows;
}

}  // namespace corvane
