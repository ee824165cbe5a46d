// What the service does with the local user's streams: forwarding to other rooms, subtitles.
#include <vector>

#include "binding/lists.h"
#include "rtc_room/owners.h"
#include "rtc_room/tables.h"

namespace corvane {
namespace {

// The rooms that the streams go to: {"forward_stream_dests": [{"room_id", "token"}]}.
template <int32_t (rtc::IRTCRoom::*Operation)(const rtc::ForwardStreamConfiguration&)>
void forwardStream(Call& call) {
  Reader reader(call.env);
  napi_value list = reader.get(call[0], "forward_stream_dests");
  const auto count = listLength(call, reader, list, call.row.refusals[0]);
  if (!count) return;
  Texts texts;
  std::vector<rtc::ForwardStreamInfo> rooms;
  for (uint32_t i = 0; i < *count; ++i) {
    napi_value element = reader.at(list, i);
    const char* room_id = texts.keep(reader.string(element, "room_id"));
    const char* token = texts.keep(reader.string(element, "token"));
    rooms.push_back({room_id, token});
  }
  call.result = (engineRoomOf(call).*Operation)({rooms.data(), static_cast<int32_t>(rooms.size())});
}

void startSubtitle(Call& call) {
  Reader reader(call.env);
  Text target_language;
  const int32_t mode = reader.int32(call[0], "mode");
  reader.text(call[0], "target_language", target_language);
  call.say(kLogInfo, "+%s(%d) mode: %d, target_language: %s", mode, target_language.c_str());
  call.result = engineRoomOf(call).startSubtitle({mode, target_language.c_str()});
}

constexpr char kParamIsNotValid[] = "%s(%d) param is not valid";

constexpr Row kRows[] = {
    special("startForwardStreamToRooms", &forwardStream<&rtc::IRTCRoom::startForwardStreamToRooms>, {Kind::kObject})
        .refuses(kParamIsNotValid)
        .exits("-%s(%d), ret: %d  "),
    special("updateForwardStreamToRooms", &forwardStream<&rtc::IRTCRoom::updateForwardStreamToRooms>, {Kind::kObject})
        .refuses(kParamIsNotValid)
        .exits("-%s(%d), ret: %d "),
    plain<&rtc::IRTCRoom::stopForwardStreamToRooms>("stopForwardStreamToRooms"),
    plain<&rtc::IRTCRoom::pauseForwardStreamToAllRooms>("pauseForwardStreamToAllRooms"),
    plain<&rtc::IRTCRoom::resumeForwardStreamToAllRooms>("resumeForwardStreamToAllRooms"),
    special("startSubtitle", &startSubtitle, {Kind::kObject}),
    plain<&rtc::IRTCRoom::stopSubtitle>("stopSubtitle"),
};

}  // namespace

std::span<const Row> roomForwardingRows() {
  return kRows;
}

}  // namespace corvane
