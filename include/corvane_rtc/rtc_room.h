// One room: joining, publishing, subscribing, messages, forwarding, subtitles and sound in space.
#pragma once

#include "corvane_rtc/common.h"
#include "corvane_rtc/range_audio.h"
#include "corvane_rtc/spatial_audio.h"

namespace corvane::rtc {

class IRTCRoomEventHandler;

/// What a room is for. Chooses how sound is encoded and how much delay is accepted for smoothness.
enum RoomProfileType : int32_t {
  kRoomProfileCommunication = 0,
  kRoomProfileLiveBroadcasting = 1,
  kRoomProfileGame = 2,
  kRoomProfileCloudGame = 3,  ///< least delay
  kRoomProfileMeeting = 4,
  kRoomProfileMusic = 5,  ///< best sound
};

/// Who a user is in a room.
struct UserInfo {
  const char* uid;         ///< 1 to 128 bytes, unique in the room
  const char* extra_info;  ///< told to the others, up to 200 bytes
};

/// The largest picture wanted of a remote user. A value of 0 leaves it to the publisher.
struct RemoteVideoConfig {
  int32_t framerate;          ///< frames a second
  int32_t resolution_width;   ///< pixels
  int32_t resolution_height;  ///< pixels
};

/// How a room is joined.
struct RTCRoomConfig {
  int32_t room_profile_type;     ///< RoomProfileType
  bool is_auto_publish;          ///< publishes camera and microphone once they capture
  bool is_auto_subscribe_audio;  ///< subscribes to the sound of everyone who publishes
  bool is_auto_subscribe_video;  ///< subscribes to the video of everyone who publishes
  RemoteVideoConfig remote_video_config;
};

/// One room that streams are forwarded to.
struct ForwardStreamInfo {
  const char* room_id;
  const char* token;  ///< of the local user for that room
};

/// The rooms that the local streams are forwarded to.
struct ForwardStreamConfiguration {
  const ForwardStreamInfo* forward_stream_dests;
  int32_t count;
};

/// Whose sound is heard when more users talk than the room mixes.
enum AudioSelectionPriority : int32_t {
  kAudioSelectionPriorityNormal = 0,  ///< the loudest
  kAudioSelectionPriorityHigh = 1,    ///< the local user is heard in any case
};

enum SubtitleMode : int32_t {
  kSubtitleModeRecognition = 0,  ///< what is said, in the language spoken
  kSubtitleModeTranslation = 1,  ///< what is said, and translated into the target language
};

/// What subtitles are wanted.
struct SubtitleConfig {
  int32_t mode;                 ///< SubtitleMode
  const char* target_language;  ///< language tag, such as "en"; for translation
};

/// One room, made by IRTCVideo::createRTCRoom().
///
/// Threads: operations may be called from any one thread at a time, but not from inside an engine callback.
/// They return without waiting for the network; what takes time reports to IRTCRoomEventHandler.
/// Lifetime: the room belongs to the engine until destroy(), after which nothing of it may be used. A room that
/// outlives its engine may still be called: every operation but destroy() then answers kWrongState.
/// Errors: ReturnStatus. kWrongState where a room must have been joined and is not. media_type: MediaStreamType.
class IRTCRoom {
 public:
  /// Leaves the room if need be and ends it. No callback runs any more when this returns.
  virtual void destroy() = 0;
  /// Stays the caller's; null detaches. Must live until replaced or until destroy() has returned.
  virtual int32_t setRTCRoomEventHandler(IRTCRoomEventHandler* room_event_handler) = 0;

  // Presence.

  /// Reports onRoomStateChanged.
  virtual int32_t joinRoom(const char* token, const UserInfo& user_info, const RTCRoomConfig& room_config) = 0;
  virtual int32_t leaveRoom() = 0;  ///< reports onLeaveRoom
  /// Invisible users receive but are not announced and cannot publish. Reports onUserVisibilityChanged.
  virtual int32_t setUserVisibility(bool enable) = 0;
  /// Keeps the local video in step with the sound of `audio_user_id`, a user on another device; "" ends it.
  virtual int32_t setMultiDeviceAVSync(const char* audio_user_id) = 0;
  virtual int32_t updateToken(const char* token) = 0;
  /// Up to 10 pairs in a room; key up to 10 bytes, value up to 128 bytes.
  /// Result: the task id that onSetRoomExtraInfoResult repeats (0 or above), or a negative ReturnStatus.
  virtual int32_t setRoomExtraInfo(const char* key, const char* value) = 0;

  // Streams of the local user.

  virtual int32_t publishStream(int32_t media_type) = 0;
  virtual int32_t unpublishStream(int32_t media_type) = 0;
  virtual int32_t publishScreen(int32_t media_type) = 0;
  virtual int32_t unpublishScreen(int32_t media_type) = 0;

  // Streams of others. The four with a user id report onStreamSubscribed.

  virtual int32_t setRemoteVideoConfig(const char* user_id, const RemoteVideoConfig& config) = 0;
  virtual int32_t subscribeStream(const char* user_id, int32_t media_type) = 0;
  virtual int32_t unsubscribeStream(const char* user_id, int32_t media_type) = 0;
  virtual int32_t subscribeScreen(const char* user_id, int32_t media_type) = 0;
  virtual int32_t unsubscribeScreen(const char* user_id, int32_t media_type) = 0;
  virtual int32_t subscribeAllStreams(int32_t media_type) = 0;
  virtual int32_t unsubscribeAllStreams(int32_t media_type) = 0;
  virtual int32_t pauseAllSubscribedStream(int32_t media_type) = 0;  ///< nothing arrives, subscriptions stay
  virtual int32_t resumeAllSubscribedStream(int32_t media_type) = 0;
  virtual int32_t setRemoteRoomAudioPlaybackVolume(int32_t volume) = 0;           ///< percent, 0 to 400; the whole room
  virtual int32_t setAudioSelectionConfig(int32_t audio_selection_priority) = 0;  ///< AudioSelectionPriority

  // Messages, up to 64 kB. Results: the message id (above 0) that the send result event repeats, or a negative
  // ReturnStatus without an event. config: MessageConfig; length and size in bytes.

  virtual int64_t sendUserMessage(const char* uid, const char* message, int32_t config) = 0;
  virtual int64_t sendUserBinaryMessage(const char* uid, int32_t length, const uint8_t* message, int32_t config) = 0;
  virtual int64_t sendRoomMessage(const char* message) = 0;
  virtual int64_t sendRoomBinaryMessage(int32_t size, const uint8_t* message) = 0;

  // Forwarding of the local streams to other rooms. Reports onForwardStreamStateChanged and onForwardStreamEvent.

  virtual int32_t startForwardStreamToRooms(const ForwardStreamConfiguration& configuration) = 0;
  virtual int32_t updateForwardStreamToRooms(const ForwardStreamConfiguration& configuration) = 0;  ///< the whole list
  virtual int32_t stopForwardStreamToRooms() = 0;
  virtual int32_t pauseForwardStreamToAllRooms() = 0;
  virtual int32_t resumeForwardStreamToAllRooms() = 0;

  // Subtitles. Reports onSubtitleStateChanged.

  virtual int32_t startSubtitle(const SubtitleConfig& config) = 0;
  virtual int32_t stopSubtitle() = 0;

  // Sound in space. The interfaces belong to the room and end with it; null when the library does not offer them.

  virtual IRangeAudio* getRangeAudio() = 0;
  virtual ISpatialAudio* getSpatialAudio() = 0;

 protected:
  ~IRTCRoom() = default;
};

}  // namespace corvane::rtc
