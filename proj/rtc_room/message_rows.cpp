// Messages to one user of the room and to all. Their entry lines carry the arguments, so they are written once the
// arguments have been tested; a refused call has none.
#include "binding/bytes.h"
#include "rtc_room/owners.h"
#include "rtc_room/tables.h"

namespace corvane {
namespace {

// Unlike the other three senders it answers 0: the message id goes to the log only.
void sendUserMessage(Call& call) {
  Reader reader(call.env);
  Text uid;
  Text message;
  reader.text(call[0], uid);
  reader.text(call[1], message);
  const int32_t config = reader.int32(call[2]);
  call.say(kLogInfo, "+%s(%d) uid=%s messgae=%s config=%d", uid.c_str(), message.c_str(), config);
  const int64_t id = engineRoomOf(call).sendUserMessage(uid.c_str(), message.c_str(), config);
  call.say(kLogInfo, "-%s(%d), res: %lld ", static_cast<long long>(id));
  call.result = 0;
}

// Bytes whose count is an argument of its own.
struct CountedBytes {
  const uint8_t* data = nullptr;
  int32_t count = 0;
};

std::string printable(const CountedBytes& bytes) {
  return loggedText(bytes.data, static_cast<size_t>(bytes.count));
}

// Refuses a count beyond the typed array's end, where the engine would read what is not the array's.
bool readCountedBytes(const Call& call, Reader& reader, size_t count_index, size_t bytes_index, CountedBytes& counted) {
  counted.count = reader.int32(call[count_index]);
  const Bytes bytes = reader.bytes(call[bytes_index]);
  counted.data = bytes.data;
  if (counted.count >= 0 && static_cast<size_t>(counted.count) <= bytes.size) return true;
  call.say(call.row.refusal_level, call.row.refusals[count_index]);
  return false;
}

void sendUserBinaryMessage(Call& call) {
  Reader reader(call.env);
  CountedBytes message;
  if (!readCountedBytes(call, reader, 1, 2, message)) return;
  Text uid;
  reader.text(call[0], uid);
  const int32_t config = reader.int32(call[3]);
  call.say(kLogInfo, "+%s(%d) uid=%s length=%d message=%s config=%d", uid.c_str(), message.count,
           printable(message).c_str(), config);
  call.result = engineRoomOf(call).sendUserBinaryMessage(uid.c_str(), message.count, message.data, config);
}

void sendRoomBinaryMessage(Call& call) {
  Reader reader(call.env);
  CountedBytes message;
  if (!readCountedBytes(call, reader, 0, 1, message)) return;
  call.say(kLogInfo, "+%s(%d) size=%d message=%s ", message.count, printable(message).c_str());
  call.result = engineRoomOf(call).sendRoomBinaryMessage(message.count, message.data);
}

constexpr Row kRows[] = {
    special("sendUserMessage", &sendUserMessage, {Kind::kString, Kind::kString, Kind::kNumber})
        .enters(nullptr)
        .exits("-%s(%d),  ret: %d "),
    special("sendUserBinaryMessage", &sendUserBinaryMessage,
            {Kind::kString, Kind::kNumber, Kind::kBytes, Kind::kNumber})
        .enters(nullptr)
        .exitsWide("-%s(%d) res: %lld"),
    plain<&rtc::IRTCRoom::sendRoomMessage>("sendRoomMessage")
        .enters(nullptr)
        .says("+%s(%d) message=%s ")
        .exitsWide("-%s(%d) res: %lld"),
    special("sendRoomBinaryMessage", &sendRoomBinaryMessage, {Kind::kNumber, Kind::kBytes})
        .enters(nullptr)
        .exitsWide("-%s(%d),  res: %lld"),
};

}  // namespace

std::span<const Row> roomMessageRows() {
  return kRows;
}

}  // namespace corvane
