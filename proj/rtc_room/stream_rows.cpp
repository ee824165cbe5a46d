// Publishing, subscribing, and how remote streams are wanted.
#include "rtc_room/owners.h"
#include "rtc_room/tables.h"

namespace corvane {
namespace {

int32_t numberOrZero(const Call& call, Reader& reader, napi_value record, const char* key) {
  napi_value value = reader.get(record, key);
  return isKind(call.env, value, Kind::kNumber) ? reader.int32(value) : 0;
}

void setRemoteVideoConfig(Call& call) {
  Reader reader(call.env);
  Text user_id;
  reader.text(call[0], user_id);
  rtc::RemoteVideoConfig config{};
  config.framerate = numberOrZero(call, reader, call[1], "framerate");
  config.resolution_width = numberOrZero(call, reader, call[1], "resolution_width");
  config.resolution_height = numberOrZero(call, reader, call[1], "resolution_height");
  call.say(kLogInfo, "%s(%d), user_id: %s framerate=%d resolution_height=%d resolution_width=%d", user_id.c_str(),
           config.framerate, config.resolution_height, config.resolution_width);
  call.result = engineRoomOf(call).setRemoteVideoConfig(user_id.c_str(), config);
}

constexpr char kParamIsInvalid[] = "%s(%d), Param is invalid";
constexpr char kParamIsNotValid[] = "%s(%d) param is not valid";
constexpr char kExitWithoutComma[] = "-%s(%d) ret: %d";

/// The local user's streams.
template <auto Operation>
consteval auto publishing(const char* name, int32_t line = __builtin_LINE()) {
  return plain<Operation>(name, line).refuses(kParamIsInvalid).says("+%s(%d) mediatype: %d");
}

/// One remote user's streams.
template <auto Operation>
consteval auto subscribing(const char* name, int32_t line = __builtin_LINE()) {
  return plain<Operation>(name, line)
      .refuses(kParamIsInvalid)
      .says("+%s(%d) user_id: %s mediatype: %d")
      .exits(kExitWithoutComma);
}

/// All remote streams, without ending a subscription.
template <auto Operation>
consteval auto pausing(const char* name, int32_t line = __builtin_LINE()) {
  return plain<Operation>(name, line).refuses(kParamIsNotValid).exitsWithArguments("-%s(%d), ret: %d controlType = %d");
}

/// All remote streams.
template <auto Operation>
consteval auto subscribingAll(const char* name, int32_t line = __builtin_LINE()) {
  return plain<Operation>(name, line).refuses("%s(%d) param is not valid ").says("+%s(%d)  mediatype: %d");
}

constexpr Row kRows[] = {
    special("setRemoteVideoConfig", &setRemoteVideoConfig, {Kind::kString, Kind::kObject}).refuses(kParamIsInvalid),
    publishing<&rtc::IRTCRoom::publishStream>("publishStream"),
    publishing<&rtc::IRTCRoom::unpublishStream>("unpublishStream"),
    publishing<&rtc::IRTCRoom::publishScreen>("publishScreen").exits(kExitWithoutComma),
    publishing<&rtc::IRTCRoom::unpublishScreen>("unpublishScreen").exits(kExitWithoutComma),
    subscribing<&rtc::IRTCRoom::subscribeStream>("subscribeStream"),
    subscribing<&rtc::IRTCRoom::unsubscribeStream>("unsubscribeStream"),
    subscribing<&rtc::IRTCRoom::subscribeScreen>("subscribeScreen"),
    subscribing<&rtc::IRTCRoom::unsubscribeScreen>("unsubscribeScreen"),
    pausing<&rtc::IRTCRoom::pauseAllSubscribedStream>("pauseAllSubscribedStream"),
    pausing<&rtc::IRTCRoom::resumeAllSubscribedStream>("resumeAllSubscribedStream"),
    subscribingAll<&rtc::IRTCRoom::subscribeAllStreams>("subscribeAllStreams"),
    subscribingAll<&rtc::IRTCRoom::unsubscribeAllStreams>("unsubscribeAllStreams"),
    plain<&rtc::IRTCRoom::setAudioSelectionConfig>("setAudioSelectionConfig")
        .refuses(kParamIsNotValid)
        .says("+%s(%d) audio_selection_priority: %d"),
    plain<&rtc::IRTCRoom::setRemoteRoomAudioPlaybackVolume>("setRemoteRoomAudioPlaybackVolume")
        .refuses("%s(%d), param is not valid, volume", kLogWarning)
        .says("+%s(%d), voluem: %d")
        .exits("%s(%d)  ret: %d"),
};

}  // namespace

std::span<const Row> roomStreamRows() {
  return kRows;
}

}  // namespace corvane
