// Ways to rooms, players and managers, and settings of the whole engine.
#include <utility>

#include "api/rtc_room.h"
#include "api/rtc_video.h"

namespace corvane::rtc {

// Rooms, players and managers.

IRTCRoom* RtcVideo::createRTCRoom(const char* room_id) {
  if (!isRoomOrUserId(room_id)) return nullptr;
  {
    const std::lock_guard lock(room_ids_mutex_);
    if (!room_ids_.insert(room_id).second) return nullptr;
  }
  context_.thread.post([this, id = std::string(room_id)] { rooms_->create(id); });
  return new RtcRoom(door_, room_id);  // the application's, until its destroy()
}

void RtcVideo::postToRoom(const std::string& room_id, std::function<void(Room&)> task) {
  context_.thread.post([this, room_id, task = std::move(task)] {
    if (const std::shared_ptr<Room> room = rooms_->find(room_id)) task(*room);
  });
}

void RtcVideo::setRoomHandler(const std::string& room_id, IRTCRoomEventHandler* handler) {
  context_.thread.postAndWait([this, room_id, handler] {
    if (const std::shared_ptr<Room> room = rooms_->find(room_id)) room->setHandler(handler);
  });
}

void RtcVideo::destroyRoom(const std::string& room_id) {
  context_.thread.postAndWait([this, room_id] { rooms_->destroy(room_id); });
  const std::lock_guard lock(room_ids_mutex_);
  room_ids_.erase(room_id);
}

IAudioDeviceManager* RtcVideo::getAudioDeviceManager() {
  return &audio_devices_;
}

IVideoDeviceManager* RtcVideo::getVideoDeviceManager() {
  return &video_devices_;
}

IAudioMixingManager* RtcVideo::getAudioMixingManager() {
  return &players_.mixing();
}

IVideoEffect* RtcVideo::getVideoEffectInterface() {
  return &video_effect_;
}

IKTVManager* RtcVideo::getKTVManager() {
  notSupported(__func__);
  return nullptr;
}

ISingScoringManager* RtcVideo::getSingScoringManager() {
  notSupported(__func__);
  return nullptr;
}

IAudioEffectPlayer* RtcVideo::getAudioEffectPlayer() {
  return &players_.effects();
}

IMediaPlayer* RtcVideo::getMediaPlayer(int32_t player_id) {
  return &players_.mediaPlayer(player_id);
}

// Engine-wide settings.

int32_t RtcVideo::setBusinessId(const char* /*business_id*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setRuntimeParameters(const char* /*json_string*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::feedback(uint64_t /*type*/, const FeedbackInfo& /*info*/) {
  return notSupported(__func__);
}

}  // namespace corvane::rtc
