// Messages outside rooms, and data that travels inside streams.
#include "binding/bytes.h"
#include "corvane_rtc/messaging.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"

namespace corvane {
namespace {

void sendUserMessageOutsideRoom(Call& call) {
  Reader reader(call.env);
  const Argument<const char*> uid(reader, call[0]);
  const Argument<const char*> message(reader, call[1]);
  call.say(kLogInfo, "%s(%d), message: %s", *message);
  // The exit line takes the lower 32 bits of the message id, and JavaScript gets what the line says.
  call.result = static_cast<int32_t>(engineOf(call).sendUserMessageOutsideRoom(*uid, *message, reader.int32(call[2])));
}

// The message's length is an argument of its own; beyond the typed array's end the engine would read foreign memory.
bool fits(const Call& call, int32_t length, const Bytes& message) {
  if (length >= 0 && static_cast<size_t>(length) <= message.size) return true;
  call.say(kLogInfo, call.row.refusals[0]);
  return false;
}

void sendUserBinaryMessageOutsideRoom(Call& call) {
  Reader reader(call.env);
  const Argument<const char*> uid(reader, call[0]);
  const int32_t length = reader.int32(call[1]);
  const Bytes message = reader.bytes(call[2]);
  if (!fits(call, length, message)) return;
  call.say(kLogInfo, "%s(%d), message: %s", loggedText(message.data, message.size).c_str());
  // As in sendUserMessageOutsideRoom().
  call.result = static_cast<int32_t>(
      engineOf(call).sendUserBinaryMessageOutsideRoom(*uid, length, message.data, reader.int32(call[3])));
}

void sendServerBinaryMessage(Call& call) {
  Reader reader(call.env);
  const int32_t length = reader.int32(call[0]);
  const Bytes message = reader.bytes(call[1]);
  if (!fits(call, length, message)) return;
  call.say(kLogInfo, "%s(%d), message: %s", loggedText(message.data, message.size).c_str());
  call.result = engineOf(call).sendServerBinaryMessage(length, message.data);
}

void sendSEIMessage(Call& call) {
  Reader reader(call.env);
  const int32_t stream_index = reader.int32(call[0]);
  const Bytes message = reader.bytes(call[1]);
  if (!isCountable(call, message, call.row.refusals[1])) return;
  const int32_t repeat_count = reader.int32(call[2]);
  const int32_t mode = reader.int32(call[3]);
  call.say(kLogInfo, "%s(%d) stream_index: %d, message: %s, repeat_count: %d, mode: %d ", stream_index,
           loggedText(message.data, message.size).c_str(), repeat_count, mode);
  call.result =
      engineOf(call).sendSEIMessage(stream_index, message.data, static_cast<int32_t>(message.size), repeat_count, mode);
}

void sendStreamSyncInfo(Call& call) {
  Reader reader(call.env);
  rtc::StreamSyncInfoConfig config{};
  config.stream_index = reader.int32(call[1], "stream_index");
  config.repeat_count = reader.int32(call[1], "repeat_count");
  config.stream_type = reader.int32(call[1], "stream_type");
  // After the record, whose getters may run code that detaches the array.
  const Bytes data = reader.bytes(call[0]);
  if (!isCountable(call, data, call.row.refusals[0])) return;
  call.say(kLogInfo, "%s(%d), data: %s, stream_index: %d, repeat_count: %d, stream_type: %d",
           loggedText(data.data, data.size).c_str(), config.stream_index, config.repeat_count, config.stream_type);
  call.result = engineOf(call).sendStreamSyncInfo(data.data, static_cast<int32_t>(data.size), config);
}

constexpr char kParamIsInvalid[] = "%s(%d), Param is invalid";

constexpr Row kRows[] = {
    plain<&rtc::IRTCVideo::login>("login").refuses(kParamIsInvalid).exits("-%s(%d)"),
    plain<&rtc::IRTCVideo::logout>("logout").exits("-%s(%d)"),
    plain<&rtc::IRTCVideo::updateLoginToken>("updateLoginToken").refuses(kParamIsInvalid),
    plain<&rtc::IRTCVideo::setServerParams>("setServerParams").refuses(kParamIsInvalid),
    plain<&rtc::IRTCVideo::getPeerOnlineStatus>("getPeerOnlineStatus").refuses(kParamIsInvalid),
    special("sendUserMessageOutsideRoom", &sendUserMessageOutsideRoom, {Kind::kString, Kind::kString, Kind::kNumber})
        .refuses(kParamIsInvalid),
    special("sendUserBinaryMessageOutsideRoom", &sendUserBinaryMessageOutsideRoom,
            {Kind::kString, Kind::kNumber, Kind::kBytes, Kind::kNumber})
        .refuses(kParamIsInvalid),
    plain<&rtc::IRTCVideo::sendServerMessage>("sendServerMessage").refuses(kParamIsInvalid).says("%s(%d), message: %s"),
    special("sendServerBinaryMessage", &sendServerBinaryMessage, {Kind::kNumber, Kind::kBytes})
        .refuses(kParamIsInvalid)
        .exitsWide("-%s(%d), ret: %lld"),

    special("sendSEIMessage", &sendSEIMessage, {Kind::kNumber, Kind::kBytes, Kind::kNumber, Kind::kNumber})
        .refuses(0, "%s(%d) param is not valid, stream_index")
        .refuses(1, "%s(%d) param is not valid, message")
        .refuses(2, "%s(%d) param is not valid, repeat_count")
        .refuses(3, "%s(%d) param is not valid, mode")
        .exits("-%s(%d), ret: %d "),
    special("sendStreamSyncInfo", &sendStreamSyncInfo, {Kind::kBytes, Kind::kObject})
        .refuses(0, "%s(%d), Param is invalid, data")
        .refuses(1, "%s(%d), Param is invalid, config")
        .exitsWide("-%s(%d), ret: %lld"),
};

}  // namespace

std::span<const Row> messageRows() {
  return kRows;
}

}  // namespace corvane
