#include "rtc_room/rtc_room.h"

#include "log/log.h"
#include "log/standard_output.h"
#include "rtc_room/method_names.h"
#include "rtc_room/room_gate.h"
#include "rtc_room/tables.h"
#include "rtc_video/rtc_video.h"

namespace corvane {
namespace {

constexpr char kClassName[] = "KavRTCRoom";

// When an environment ends, its rooms' events end, and with the one gate those of every other environment.
void onChannelFinalized(napi_env) {
  static constexpr char kLine[] = "KavRTCRoom tsfn Finalizer. ";
  printLine(kLine);
  LogWrite(kLogInfo, kLine);
  closeRoomGate();
}

// Makes the engine room, or logs why there is none.
rtc::IRTCRoom* createEngineRoom(const std::string& room_id) {
  const KavRTCVideo* video = KavRTCVideo::getInstance();
  if (video == nullptr) {
    LogWrite(kLogError, "%s(%d), KavRTCRoom error: getInstance is null", kClassName, __LINE__);
    return nullptr;
  }
  if (video->m_pRtcVideo == nullptr) {
    LogWrite(kLogError, "KavRTCRoom, 错误: 还没有创建Video, IVIideo指针为空");
    return nullptr;
  }
  rtc::IRTCRoom* room = video->m_pRtcVideo->createRTCRoom(room_id.c_str());
  LogWrite(kLogInfo, "%s(%d), roomId: %s", kClassName, __LINE__, room_id.c_str());
  if (room == nullptr) LogWrite(kLogError, "createRTCRoom error!");
  return room;
}

}  // namespace

Napi::Function KavRTCRoom::define(Napi::Env env) {
  const std::span<const Row> tables[] = {roomLifecycleRows(),  roomStreamRows(),     roomMessageRows(),
                                         roomForwardingRows(), roomRangeAudioRows(), roomSpatialAudioRows()};
  Napi::Function constructor = defineClass<KavRTCRoom>(env, kClassName, kRoomMethodNames, tables);
  keepConstructor(constructor);
  return constructor;
}

void* KavRTCRoom::findOwner(const Call& call) {
  rtc::IRTCRoom* room = roomOf(call).m_pRtcRoom;
  if (room == nullptr) call.say(kLogInfo, "%s(%d), m_pRtcRoom is nullptr");
  return room;
}

KavRTCRoom::KavRTCRoom(const Napi::CallbackInfo& info) : Napi::ObjectWrap<KavRTCRoom>(info) {
  LogWrite(kLogInfo, "+%s(%d", kClassName, __LINE__);
  if (!info[0].IsString() || !info[1].IsFunction()) {
    LogWrite(kLogError, "%s(%d), Param Invalid", kClassName, __LINE__);
    return;
  }
  m_roomId = Reader(info.Env()).string(info[0]);
  m_pRtcRoom = createEngineRoom(m_roomId);
  if (m_pRtcRoom == nullptr) return;

  openRoomGate();
  channel_ = Channel::open(info.Env(), info[1].As<Napi::Function>(), "KavRTCRoomCallback", &onChannelFinalized);
  callback_ = std::make_unique<KavRTCRoomCallback>(&channel_);
  m_pRtcRoom->setRTCRoomEventHandler(callback_.get());
  LogWrite(kLogInfo, "%s(%d)", kClassName, __LINE__);
}

KavRTCRoom::~KavRTCRoom() {
  LastReceiver<KavRTCRoom>::forget(this);
  if (m_pRtcRoom != nullptr) destroyRTCRoom();
  LogWrite(kLogInfo, "KavRTCRoom destructure");
}

int32_t KavRTCRoom::destroyRTCRoom() {
  LogWrite(kLogInfo, "+%s(%d", __func__, __LINE__);
  if (m_pRtcRoom == nullptr) return -1;
  closeRoomGate();  // what arrives during the destruction is dropped
  m_pRtcRoom->destroy();
  m_pRtcRoom = nullptr;
  m_roomId.clear();
  callback_.reset();
  LogWrite(kLogInfo, "-%s(%d)", __func__, __LINE__);
  return 0;
}

}  // namespace corvane
