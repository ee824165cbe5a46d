// Forwarding of the local streams to other rooms.
#include <string>

#include "events/owned_list.h"
#include "rtc_room/room_callback.h"

namespace corvane {
namespace {

struct ForwardState {
  int32_t state;
  int32_t error;
  std::string room_id;
};

struct ForwardEvent {
  std::string room_id;
  int32_t event;
};

}  // namespace

void KavRTCRoomCallback::onForwardStreamStateChanged(const rtc::ForwardStreamStateInfo* infos, int32_t info_count) {
  const auto own = [](const rtc::ForwardStreamStateInfo& info) {
    return ForwardState{info.state, info.error, owned(info.room_id)};
  };
  const int32_t status = post(__func__, [infos = ownedList(infos, info_count, own), info_count](Payload& payload) {
    LogWrite(kLogInfo, "onForwardStreamStateChanged: roomCount: %d", info_count);
    payload.list("infos", infos, [](Payload& element, const ForwardState& info) {
      element.put("state", info.state);
      element.put("error", info.error);
      element.put("room_id", info.room_id);
    });
    payload.put("info_count", info_count);
  });
  LogWrite(kLogInfo, "-%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onForwardStreamEvent(const rtc::ForwardStreamEventInfo* infos, int32_t info_count) {
  const auto own = [](const rtc::ForwardStreamEventInfo& info) {
    return ForwardEvent{owned(info.room_id), info.event};
  };
  const int32_t status = post(__func__, [infos = ownedList(infos, info_count, own), info_count](Payload& payload) {
    payload.list("infos", infos, [](Payload& element, const ForwardEvent& info) {
      element.put("room_id", info.room_id);
      element.put("event", info.event);
    });
    payload.put("info_count", info_count);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

}  // namespace corvane
