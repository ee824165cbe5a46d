// Where the operations of KavRTCVideo's rows live: on the engine itself or on one of its sub-managers, which are
// fetched on every call. A missing one is logged with its line.
#pragma once

#include "binding/rows.h"
#include "corvane_rtc/audio_mixing.h"
#include "corvane_rtc/device_manager.h"
#include "corvane_rtc/ktv.h"
#include "corvane_rtc/sing_scoring.h"
#include "corvane_rtc/video_effect.h"
#include "rtc_video/rtc_video.h"

namespace corvane {

namespace detail {

template <class Manager>
Manager* present(Call& call, Manager* manager, const char* missing) {
  if (manager == nullptr) call.say(kLogInfo, missing);
  return manager;
}

}  // namespace detail

template <>
inline rtc::IRTCVideo* find<rtc::IRTCVideo>(Call& call) {
  return &engineOf(call);
}

template <>
inline rtc::IAudioDeviceManager* find<rtc::IAudioDeviceManager>(Call& call) {
  return detail::present(call, engineOf(call).getAudioDeviceManager(), "%s(%d), audioDeviceManager is nullptr");
}

template <>
inline rtc::IVideoDeviceManager* find<rtc::IVideoDeviceManager>(Call& call) {
  return detail::present(call, engineOf(call).getVideoDeviceManager(), "%s(%d), videoDeviceManager is nullptr");
}

template <>
inline rtc::IAudioMixingManager* find<rtc::IAudioMixingManager>(Call& call) {
  return detail::present(call, engineOf(call).getAudioMixingManager(), "%s(%d), pManager is nullptr");
}

template <>
inline rtc::IVideoEffect* find<rtc::IVideoEffect>(Call& call) {
  return detail::present(call, engineOf(call).getVideoEffectInterface(), "%s(%d), videoEffectInterface is nullptr");
}

template <>
inline rtc::IKTVManager* find<rtc::IKTVManager>(Call& call) {
  return detail::present(call, engineOf(call).getKTVManager(), "%s(%d), iKTVManagerPtr is nullptr");
}

template <>
inline rtc::IKTVPlayer* find<rtc::IKTVPlayer>(Call& call) {
  rtc::IKTVManager* manager = find<rtc::IKTVManager>(call);
  if (manager == nullptr) return nullptr;
  return detail::present(call, manager->getKTVPlayer(), "%s(%d), iKTVPlayerPtr is nullptr");
}

template <>
inline rtc::ISingScoringManager* find<rtc::ISingScoringManager>(Call& call) {
  return detail::present(call, engineOf(call).getSingScoringManager(), "%s(%d), iSingScoreManager is nullptr");
}

}  // namespace corvane
