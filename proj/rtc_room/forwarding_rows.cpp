// What the service does with the local user's streams: forwarding to other rooms, subtitles.
#include "binding/room_records.h"
#include "rtc_room/owners.h"
#include "rtc_room/tables.h"

namespace corvane {
namespace {

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
    plain<&rtc::IRTCRoom::startForwardStreamToRooms>("startForwardStreamToRooms")
        .refuses(kParamIsNotValid)
        .exits("-%s(%d), ret: %d  "),
    plain<&rtc::IRTCRoom::updateForwardStreamToRooms>("updateForwardStreamToRooms")
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
