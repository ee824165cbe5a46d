#include "api/rtc_room.h"

#include <glib.h>

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "api/rtc_video.h"
#include "corvane_rtc/messaging.h"

namespace corvane::rtc {

namespace {

constexpr size_t kMaxIdBytes = 128;
constexpr size_t kMaxExtraInfo = 200;
constexpr size_t kMaxToken = 4096;
constexpr size_t kMaxInfoKey = 10;
constexpr size_t kMaxInfoValue = 128;
constexpr int32_t kMaxVolume = 400;
constexpr size_t kMaxMessage = 64 * 1024;
constexpr int32_t kMaxForwards = 32;

bool isText(const char* text, size_t limit) {
  const size_t length = strnlen(text, limit + 1);
  return length <= limit && g_utf8_validate(text, static_cast<gssize>(length), nullptr);
}

const char* orEmpty(const char* text) {
  return text != nullptr ? text : "";
}

bool isBinaryMessage(int32_t size, const uint8_t* message) {
  return message != nullptr && size >= 0 && static_cast<size_t>(size) <= kMaxMessage;
}

bool isMessageConfig(int32_t config) {
  return config >= kMessageConfigReliableOrdered && config <= kMessageConfigUnreliableUnordered;
}

bool isRemoteVideo(const RemoteVideoConfig& config) {
  return config.framerate >= 0 && config.resolution_width >= 0 && config.resolution_height >= 0;
}

}  // namespace

bool isRoomOrUserId(const char* id) {
  return id != nullptr && *id != '\0' && isText(id, kMaxIdBytes);
}

RtcRoom::RtcRoom(std::shared_ptr<RoomDoor> door, std::string id)
    : door_(std::move(door)), id_(std::move(id)), space_([this](RoomSoundSpace::Change change) {
        return post([change = std::move(change)](Room& room) { room.changeSpace(change); });
      }) {}

int32_t RtcRoom::notSupported(const char* operation) {
  int32_t result = kWrongState;
  door_->enter([&](RtcVideo& engine) { result = engine.notSupported(operation); });
  return result;
}

int32_t RtcRoom::post(std::function<void(Room&)> task) {
  const bool lives = door_->enter([&](RtcVideo& engine) { engine.postToRoom(id_, std::move(task)); });
  return lives ? kSuccess : kWrongState;
}

int32_t RtcRoom::postInRoom(std::function<void(Room&)> task) {
  if (in_room_ == nullptr || !in_room_->load()) return kWrongState;
  return post(std::move(task));
}

void RtcRoom::destroy() {
  // The engine is not asked to wait under the door's lock; it ends on the thread that is in here, or has ended.
  RtcVideo* living = nullptr;
  door_->enter([&](RtcVideo& engine) { living = &engine; });
  if (living != nullptr) living->destroyRoom(id_);
  delete this;
}

int32_t RtcRoom::setRTCRoomEventHandler(IRTCRoomEventHandler* room_event_handler) {
  RtcVideo* living = nullptr;
  door_->enter([&](RtcVideo& engine) { living = &engine; });
  if (living == nullptr) return kWrongState;
  living->setRoomHandler(id_, room_event_handler);
  return kSuccess;
}

// Presence.

int32_t RtcRoom::joinRoom(const char* token, const UserInfo& user_info, const RTCRoomConfig& room_config) {
  const bool valid = isText(orEmpty(token), kMaxToken) && isRoomOrUserId(user_info.uid) &&
                     isText(orEmpty(user_info.extra_info), kMaxExtraInfo) &&
                     room_config.room_profile_type >= kRoomProfileCommunication &&
                     room_config.room_profile_type <= kRoomProfileMusic &&
                     isRemoteVideo(room_config.remote_video_config);
  if (!valid) return kInvalidParameter;
  if (in_room_ != nullptr && in_room_->load()) return kWrongState;
  RoomJoin join = {.token = orEmpty(token),
                   .user_id = user_info.uid,
                   .extra_info = orEmpty(user_info.extra_info),
                   .auto_publish = room_config.is_auto_publish,
                   .auto_subscribe = (room_config.is_auto_subscribe_audio ? kMediaStreamAudio : 0) |
                                     (room_config.is_auto_subscribe_video ? kMediaStreamVideo : 0),
                   .remote_video = room_config.remote_video_config,
                   .in_room = std::make_shared<std::atomic<bool>>(true)};
  in_room_ = join.in_room;
  return post([join = std::move(join)](Room& room) { room.join(join); });
}

int32_t RtcRoom::leaveRoom() {
  const int32_t result = postInRoom([](Room& room) { room.leave(); });
  if (result == kSuccess) in_room_.reset();
  return result;
}

int32_t RtcRoom::setUserVisibility(bool enable) {
  return post([enable](Room& room) { room.setVisible(enable); });
}

int32_t RtcRoom::setMultiDeviceAVSync(const char* /*audio_user_id*/) {
  return notSupported(__func__);
}

int32_t RtcRoom::updateToken(const char* token) {
  if (!isText(orEmpty(token), kMaxToken)) return kInvalidParameter;
  return postInRoom([text = std::string(orEmpty(token))](Room& room) { room.setToken(text); });
}

int32_t RtcRoom::setRoomExtraInfo(const char* key, const char* value) {
  const bool valid =
      key != nullptr && *key != '\0' && isText(key, kMaxInfoKey) && isText(orEmpty(value), kMaxInfoValue);
  if (!valid) return kInvalidParameter;
  const int32_t task = last_task_;
  const int32_t result = postInRoom([task, name = std::string(key), text = std::string(orEmpty(value))](Room& room) {
    room.setExtraInfo(task, name, text);
  });
  if (result != kSuccess) return result;
  ++last_task_;
  return task;
}

// Streams of the local user.

int32_t RtcRoom::publishStream(int32_t media_type) {
  if (!isMedia(media_type)) return kInvalidParameter;
  return postInRoom([media_type](Room& room) { room.publish(kStreamIndexMain, media_type); });
}

int32_t RtcRoom::unpublishStream(int32_t media_type) {
  if (!isMedia(media_type)) return kInvalidParameter;
  return postInRoom([media_type](Room& room) { room.unpublish(kStreamIndexMain, media_type); });
}

int32_t RtcRoom::publishScreen(int32_t media_type) {
  if (!isMedia(media_type)) return kInvalidParameter;
  return postInRoom([media_type](Room& room) { room.publish(kStreamIndexScreen, media_type); });
}

int32_t RtcRoom::unpublishScreen(int32_t media_type) {
  if (!isMedia(media_type)) return kInvalidParameter;
  return postInRoom([media_type](Room& room) { room.unpublish(kStreamIndexScreen, media_type); });
}

// Streams of others.

int32_t RtcRoom::setRemoteVideoConfig(const char* user_id, const RemoteVideoConfig& config) {
  if (!isRoomOrUserId(user_id) || !isRemoteVideo(config)) return kInvalidParameter;
  return post([user = std::string(user_id), config](Room& room) { room.setRemoteVideo(user, config); });
}

int32_t RtcRoom::subscribeStream(const char* user_id, int32_t media_type) {
  if (!isRoomOrUserId(user_id) || !isMedia(media_type)) return kInvalidParameter;
  return postInRoom(
      [user = std::string(user_id), media_type](Room& room) { room.subscribe(user, kStreamIndexMain, media_type); });
}

int32_t RtcRoom::unsubscribeStream(const char* user_id, int32_t media_type) {
  if (!isRoomOrUserId(user_id) || !isMedia(media_type)) return kInvalidParameter;
  return postInRoom(
      [user = std::string(user_id), media_type](Room& room) { room.unsubscribe(user, kStreamIndexMain, media_type); });
}

int32_t RtcRoom::subscribeScreen(const char* user_id, int32_t media_type) {
  if (!isRoomOrUserId(user_id) || !isMedia(media_type)) return kInvalidParameter;
  return postInRoom(
      [user = std::string(user_id), media_type](Room& room) { room.subscribe(user, kStreamIndexScreen, media_type); });
}

int32_t RtcRoom::unsubscribeScreen(const char* user_id, int32_t media_type) {
  if (!isRoomOrUserId(user_id) || !isMedia(media_type)) return kInvalidParameter;
  return postInRoom([user = std::string(user_id), media_type](Room& room) {
    room.unsubscribe(user, kStreamIndexScreen, media_type);
  });
}

int32_t RtcRoom::subscribeAllStreams(int32_t media_type) {
  if (!isMedia(media_type)) return kInvalidParameter;
  return postInRoom([media_type](Room& room) { room.subscribeAll(media_type); });
}

int32_t RtcRoom::unsubscribeAllStreams(int32_t media_type) {
  if (!isMedia(media_type)) return kInvalidParameter;
  return postInRoom([media_type](Room& room) { room.unsubscribeAll(media_type); });
}

int32_t RtcRoom::pauseAllSubscribedStream(int32_t media_type) {
  if (!isMedia(media_type)) return kInvalidParameter;
  return postInRoom([media_type](Room& room) { room.setPaused(media_type, true); });
}

int32_t RtcRoom::resumeAllSubscribedStream(int32_t media_type) {
  if (!isMedia(media_type)) return kInvalidParameter;
  return postInRoom([media_type](Room& room) { room.setPaused(media_type, false); });
}

int32_t RtcRoom::setRemoteRoomAudioPlaybackVolume(int32_t volume) {
  if (volume < 0 || volume > kMaxVolume) return kInvalidParameter;
  return post([volume](Room& room) { room.setRoomVolume(volume); });
}

int32_t RtcRoom::setAudioSelectionConfig(int32_t audio_selection_priority) {
  const bool valid = audio_selection_priority == kAudioSelectionPriorityNormal ||
                     audio_selection_priority == kAudioSelectionPriorityHigh;
  if (!valid) return kInvalidParameter;
  return post([audio_selection_priority](Room& room) {
    room.setPreferred(audio_selection_priority == kAudioSelectionPriorityHigh);
  });
}

// Messages.

int64_t RtcRoom::send(const char* to, std::string body, bool is_binary) {
  OutgoingMessage message = {last_message_ + 1, to, std::move(body), is_binary};
  const int32_t result = postInRoom([message = std::move(message)](Room& room) { room.send(message); });
  return result == kSuccess ? ++last_message_ : result;
}

int64_t RtcRoom::sendUserMessage(const char* uid, const char* message, int32_t config) {
  if (!isRoomOrUserId(uid) || message == nullptr || !isMessageConfig(config) || !isText(message, kMaxMessage)) {
    return kInvalidParameter;
  }
  return send(uid, message, /*is_binary=*/false);
}

int64_t RtcRoom::sendUserBinaryMessage(const char* uid, int32_t length, const uint8_t* message, int32_t config) {
  if (!isRoomOrUserId(uid) || !isBinaryMessage(length, message) || !isMessageConfig(config)) return kInvalidParameter;
  return send(uid, std::string(reinterpret_cast<const char*>(message), static_cast<size_t>(length)), true);
}

int64_t RtcRoom::sendRoomMessage(const char* message) {
  if (message == nullptr || !isText(message, kMaxMessage)) return kInvalidParameter;
  return send("", message, /*is_binary=*/false);
}

int64_t RtcRoom::sendRoomBinaryMessage(int32_t size, const uint8_t* message) {
  if (!isBinaryMessage(size, message)) return kInvalidParameter;
  return send("", std::string(reinterpret_cast<const char*>(message), static_cast<size_t>(size)), true);
}

// Forwarding.

int32_t RtcRoom::forward(const ForwardStreamConfiguration& configuration, bool started) {
  const int32_t count = configuration.count;
  if (count < 1 || count > kMaxForwards || configuration.forward_stream_dests == nullptr) return kInvalidParameter;
  std::vector<ForwardTarget> targets;
  for (int32_t index = 0; index < count; ++index) {
    const ForwardStreamInfo& info = configuration.forward_stream_dests[index];
    const bool valid = isRoomOrUserId(info.room_id) && info.room_id != id_ && isText(orEmpty(info.token), kMaxToken);
    if (!valid) return kInvalidParameter;
    const bool is_new = std::none_of(targets.begin(), targets.end(),
                                     [&info](const ForwardTarget& known) { return known.room_id == info.room_id; });
    if (!is_new) return kInvalidParameter;
    targets.push_back({info.room_id, orEmpty(info.token)});
  }
  if (started != isForwarding()) return kWrongState;
  const int32_t result = postInRoom([targets = std::move(targets)](Room& room) { room.forwarding().set(targets); });
  if (result == kSuccess) forwarding_ = in_room_;
  return result;
}

int32_t RtcRoom::postForwarding(std::function<void(Forwarding&)> task) {
  if (!isForwarding()) return kWrongState;
  return postInRoom([task = std::move(task)](Room& room) { task(room.forwarding()); });
}

int32_t RtcRoom::startForwardStreamToRooms(const ForwardStreamConfiguration& configuration) {
  return forward(configuration, /*started=*/false);
}

int32_t RtcRoom::updateForwardStreamToRooms(const ForwardStreamConfiguration& configuration) {
  return forward(configuration, /*started=*/true);
}

int32_t RtcRoom::stopForwardStreamToRooms() {
  const int32_t result = postForwarding([](Forwarding& forwarding) { forwarding.stop(); });
  if (result == kSuccess) forwarding_.reset();
  return result;
}

int32_t RtcRoom::pauseForwardStreamToAllRooms() {
  return postForwarding([](Forwarding& forwarding) { forwarding.setPaused(true); });
}

int32_t RtcRoom::resumeForwardStreamToAllRooms() {
  return postForwarding([](Forwarding& forwarding) { forwarding.setPaused(false); });
}

// Subtitles.

int32_t RtcRoom::startSubtitle(const SubtitleConfig& /*config*/) {
  return notSupported(__func__);
}

int32_t RtcRoom::stopSubtitle() {
  return notSupported(__func__);
}

}  // namespace corvane::rtc
