// Recordings to files.
#include <string>

#include "events/engine_handler.h"

namespace corvane {
namespace {

void putRecordingInfo(Payload& payload, const std::string& file_path, const rtc::RecordingInfo& info) {
  payload.object("info", [&](Payload& object) {
    object.put("file_path", file_path);
    object.put("video_codec_type", info.video_codec_type);
    object.put("width", info.width);
    object.put("height", info.height);
  });
}

}  // namespace

void KavRTCVideoEventHandler::onRecordingStateUpdate(int32_t type, int32_t state, int32_t error_code,
                                                     const rtc::RecordingInfo& info) {
  const int32_t status =
      post(__func__, [type, state, error_code, info, file_path = owned(info.file_path)](Payload& payload) {
        payload.put("type", type);
        payload.put("state", state);
        payload.put("error_code", error_code);
        putRecordingInfo(payload, file_path, info);
      });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, type:%d, state:%d, error_code:%d", __func__, __LINE__, status, type, state,
           error_code);
}

void KavRTCVideoEventHandler::onRecordingProgressUpdate(int32_t type, const rtc::RecordingProgress& process,
                                                        const rtc::RecordingInfo& info) {
  const int32_t status = post(__func__, [type, process, info, file_path = owned(info.file_path)](Payload& payload) {
    payload.put("type", type);
    payload.object("process", [&](Payload& object) {
      object.put("duration", process.duration);
      object.put("file_size", process.file_size);
    });
    putRecordingInfo(payload, file_path, info);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, type:%d, duration:%d, file_size:%d, file_path:%s", __func__, __LINE__,
           status, type, process.duration, static_cast<int>(process.file_size), shown(info.file_path));
}

void KavRTCVideoEventHandler::onAudioRecordingStateUpdate(int32_t state, int32_t error_code) {
  const int32_t status = post(__func__, [state, error_code](Payload& payload) {
    payload.put("state", state);
    payload.put("error_code", error_code);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, state:%d, error_code:%d", __func__, __LINE__, status, state, error_code);
}

}  // namespace corvane
