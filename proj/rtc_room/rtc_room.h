// KavRTCRoom, the JavaScript class of one room.
#pragma once

#include <napi.h>

#include <memory>
#include <string>

#include "binding/row.h"
#include "corvane_rtc/rtc_room.h"
#include "events/channel.h"
#include "rtc_room/room_callback.h"

namespace corvane {

/// Everything runs on the JavaScript thread. A room that could not be made is an object whose methods refuse.
class KavRTCRoom final : public Napi::ObjectWrap<KavRTCRoom> {
 public:
  static Napi::Function define(Napi::Env env);
  static void* findOwner(const Call& call);

  explicit KavRTCRoom(const Napi::CallbackInfo& info);
  ~KavRTCRoom() override;

  /// 0, or -1 when there is no room.
  int32_t destroyRTCRoom();

  /// The engine's room, which may outlive its engine; null when none could be made and after destroyRTCRoom().
  rtc::IRTCRoom* m_pRtcRoom = nullptr;
  std::string m_roomId;

 private:
  // The engine calls the callback until its room is destroyed, and the callback posts on the channel.
  Channel channel_;
  std::unique_ptr<KavRTCRoomCallback> callback_;
};

/// The object behind a call of one of its methods.
inline KavRTCRoom& roomOf(const Call& call) {
  return *static_cast<KavRTCRoom*>(call.wrapper);
}
/// Its engine room; only in rows whose room test has passed.
inline rtc::IRTCRoom& engineRoomOf(const Call& call) {
  return *static_cast<rtc::IRTCRoom*>(call.owner);
}

}  // namespace corvane
