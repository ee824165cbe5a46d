// What is said in the room, as text.
#include <string>

#include "events/owned_list.h"
#include "rtc_room/room_callback.h"

namespace corvane {
namespace {

struct Subtitle {
  std::string user_id;
  std::string text;
  std::string language;
  int32_t mode;
  int32_t sequence;
  bool definite;
};

}  // namespace

void KavRTCRoomCallback::onSubtitleStateChanged(int32_t state, int32_t error_code, const char* error_message) {
  const int32_t status = post(__func__, [state, error_code, error_message = owned(error_message)](Payload& payload) {
    payload.put("state", state);
    payload.put("error_code", error_code);
    payload.put("error_message", error_message);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onSubtitleMessageReceived(const rtc::SubtitleMessage* subtitles, int32_t subtitle_count) {
  const auto own = [](const rtc::SubtitleMessage& message) {
    return Subtitle{owned(message.user_id), owned(message.text), owned(message.language),
                    message.mode,           message.sequence,    message.definite};
  };
  const int32_t status = post(__func__, [subtitles = ownedList(subtitles, subtitle_count, own)](Payload& payload) {
    payload.list("subtitles", subtitles, [](Payload& element, const Subtitle& subtitle) {
      element.put("user_id", subtitle.user_id);
      element.put("text", subtitle.text);
      element.put("language", subtitle.language);
      element.put("mode", subtitle.mode);
      element.put("sequence", subtitle.sequence);
      element.put("definite", subtitle.definite);
    });
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

}  // namespace corvane
