// Where the operations of KavRTCRoom's rows live: on the engine room itself or on one of its two sub-interfaces, which
// are fetched on every call. A missing one is logged with its line.
#pragma once

#include "binding/rows.h"
#include "rtc_room/rtc_room.h"

namespace corvane {

template <>
inline rtc::IRTCRoom* find<rtc::IRTCRoom>(Call& call) {
  return &engineRoomOf(call);
}

template <>
inline rtc::IRangeAudio* find<rtc::IRangeAudio>(Call& call) {
  rtc::IRangeAudio* range_audio = engineRoomOf(call).getRangeAudio();
  if (range_audio == nullptr) call.say(kLogInfo, "%s(%d), iRangeAudioPtr is nullptr");
  return range_audio;
}

template <>
inline rtc::ISpatialAudio* find<rtc::ISpatialAudio>(Call& call) {
  rtc::ISpatialAudio* spatial_audio = engineRoomOf(call).getSpatialAudio();
  if (spatial_audio == nullptr) call.say(kLogInfo, "%s(%d), iSpatialAudio is nullptr");
  return spatial_audio;
}

/// Switches one of the sub-interfaces. A bare row's run: its exit line puts the argument before the result.
template <auto Operation>
struct Switching;

template <class Owner, int32_t (Owner::*Operation)(bool)>
struct Switching<Operation> {
  static void run(Call& call) {
    call.say(kLogInfo, "+%s(%d)");
    const bool enable = perform(call);
    call.say(kLogInfo, "%s(%d)  enable: %d ret: %d", enable ? 1 : 0, static_cast<int>(call.result));
  }

 private:
  static bool perform(Call& call) {
    call.owner = KavRTCRoom::findOwner(call);
    Owner* owner = call.owner == nullptr ? nullptr : find<Owner>(call);
    if (owner == nullptr) return false;
    if (!call.is(0, Kind::kBoolean)) {
      call.say(kLogInfo, kParamInvalid);
      return false;
    }
    Reader reader(call.env);
    const bool enable = reader.boolean(call[0]);
    call.result = (owner->*Operation)(enable);
    return enable;
  }
};

template <auto Operation>
consteval RowMaker<SpecialShape> switching(const char* name, int32_t line = __builtin_LINE()) {
  return bare(name, &Switching<Operation>::run, line);
}

}  // namespace corvane
