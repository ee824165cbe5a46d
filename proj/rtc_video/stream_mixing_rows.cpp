// Mixes and pushes that the service makes of streams, and public streams.
#include "binding/bytes.h"
#include "corvane_rtc/stream_mixing.h"
#include "rtc_video/mixing/builders.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"

namespace corvane {
namespace {

using Builder = int32_t (*)(const Call& call, Reader& reader, std::string_view operation, const char* id,
                            napi_value params);

void build(Call& call, Builder builder, std::string_view operation) {
  Reader reader(call.env);
  const Argument<const char*> id(reader, call[0]);
  call.result = builder(call, reader, operation, *id, call[1]);
}

void startLiveTranscoding(Call& call) {
  build(call, &buildLiveTranscodeParam, "StartLiveTranscoding");
}

void updateLiveTranscoding(Call& call) {
  build(call, &buildLiveTranscodeParam, "UpdateLiveTranscoding");
}

void startPushMixedStreamToCDN(Call& call) {
  build(call, &buildMixedStreamConfig, "startPushMixedStreamToCDN");
}

void updatePushMixedStreamToCDN(Call& call) {
  build(call, &buildMixedStreamConfig, "updatePushMixedStreamToCDN");
}

void startPushPublicStream(Call& call) {
  build(call, &buildPublicStreamParam, "startPushPublicStream");
}

void updatePublicStreamParam(Call& call) {
  build(call, &buildPublicStreamParam, "updatePublicStreamParam");
}

// The task id is converted, untested, before the engine is looked for.
template <int32_t (rtc::IRTCVideo::*Stop)(const char*)>
void stopTask(Call& call) {
  call.say(kLogInfo, call.row.entry);
  Reader reader(call.env);
  const Argument<const char*> task_id(reader, call[0]);
  auto* engine = static_cast<rtc::IRTCVideo*>(KavRTCVideo::findOwner(call));
  if (engine != nullptr) call.result = (engine->*Stop)(*task_id);
  call.say(kLogInfo, call.row.exit, static_cast<int>(call.result));
}

void startPushSingleStreamToCDN(Call& call) {
  Reader reader(call.env);
  const Argument<const char*> task_id(reader, call[0]);
  const Argument<const char*> room_id(reader, reader.get(call[1], "room_id"));
  const Argument<const char*> uri(reader, reader.get(call[1], "uri"));
  const Argument<const char*> user_id(reader, reader.get(call[1], "user_id"));
  const rtc::PushSingleStreamParam param = {*room_id, *uri, *user_id, reader.boolean(call[1], "is_screen_stream")};
  call.result = engineOf(call).startPushSingleStreamToCDN(*task_id, param, videoOf(call).observer());
}

void sendPublicStreamSEIMessage(Call& call) {
  Reader reader(call.env);
  const int32_t stream_index = reader.int32(call[0]);
  const int32_t channel_id = reader.int32(call[1]);
  const Bytes message = reader.bytes(call[2]);
  const int32_t repeat_count = reader.int32(call[3]);
  const int32_t mode = reader.int32(call[4]);
  if (message.size > static_cast<size_t>(std::numeric_limits<int32_t>::max())) {
    call.say(kLogInfo, call.row.refusals[2], typeCode(call.env, call[0]), typeCode(call.env, call[1]),
             typeCode(call.env, call[2]), typeCode(call.env, call[3]), typeCode(call.env, call[4]));
    return;
  }
  call.say(kLogInfo, "%s(%d) stream_index: %d, channel_id:%d, message: %s, repeat_count: %d, mode: %d", stream_index,
           channel_id, loggedText(message.data, message.size).c_str(), repeat_count, mode);
  call.result = engineOf(call).sendPublicStreamSEIMessage(stream_index, channel_id, message.data,
                                                          static_cast<int32_t>(message.size), repeat_count, mode);
}

constexpr char kParamIsInvalid[] = "%s(%d), Param is invalid";
constexpr char kTaskIdInvalid[] = "%s(%d), Param is invalid, task_id";
// Spelled as tools search for it.
constexpr char kParmasInvalid[] = "%s(%d), Param is invalid, parmas";

constexpr Row kRows[] = {
    special("startLiveTranscoding", &startLiveTranscoding, {Kind::kString, Kind::kObject})
        .refuses(0, kTaskIdInvalid)
        .refuses(1, kParmasInvalid),
    special("updateLiveTranscoding", &updateLiveTranscoding, {Kind::kAny, Kind::kObject}).refuses(kParamIsInvalid),
    bare("stopLiveTranscoding", &stopTask<&rtc::IRTCVideo::stopLiveTranscoding>),

    special("startPushMixedStreamToCDN", &startPushMixedStreamToCDN, {Kind::kString, Kind::kObject})
        .refuses(0, kTaskIdInvalid)
        .refuses(1, kParmasInvalid),
    special("updatePushMixedStreamToCDN", &updatePushMixedStreamToCDN, {Kind::kString, Kind::kObject})
        .refuses(0, kTaskIdInvalid)
        .refuses(1, kParmasInvalid),
    special("startPushSingleStreamToCDN", &startPushSingleStreamToCDN, {Kind::kString, Kind::kObject})
        .refuses(0, kTaskIdInvalid)
        .refuses(1, "%s(%d), Param is invalid, params"),
    bare("stopPushStreamToCDN", &stopTask<&rtc::IRTCVideo::stopPushStreamToCDN>),

    special("startPushPublicStream", &startPushPublicStream, {Kind::kString, Kind::kObject}).refuses(kParamIsInvalid),
    special("updatePublicStreamParam", &updatePublicStreamParam, {Kind::kString, Kind::kObject})
        .refuses(kParamIsInvalid),
    plain<&rtc::IRTCVideo::stopPushPublicStream>("stopPushPublicStream").refuses(kParamIsInvalid),
    plain<&rtc::IRTCVideo::startPlayPublicStream>("startPlayPublicStream").refuses(kParamIsInvalid),
    plain<&rtc::IRTCVideo::stopPlayPublicStream>("stopPlayPublicStream").refuses(kParamIsInvalid),
    plain<&rtc::IRTCVideo::setPublicStreamAudioPlaybackVolume>("setPublicStreamAudioPlaybackVolume")
        .enters(nullptr)
        .says("+%s(%d) streamId: %s, volume: %d")
        .refuses(0, "%s(%d), Param is invalid, stream_id")
        .refuses(1, "%s(%d), Param is invalid, volume"),
    special("sendPublicStreamSEIMessage", &sendPublicStreamSEIMessage,
            {Kind::kNumber, Kind::kNumber, Kind::kBytes, Kind::kNumber, Kind::kNumber})
        .refuses("%s(%d) param is invalid, %d, %d, %d, %d, %d"),
};

}  // namespace

std::span<const Row> streamMixingRows() {
  return kRows;
}

}  // namespace corvane
