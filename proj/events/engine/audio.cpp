// Properties of sound, and audio mixing.
#include <vector>

#include "events/engine/payload_pieces.h"
#include "events/engine_handler.h"
#include "events/owned_list.h"

namespace corvane {
namespace {

struct RemoteProperties {
  OwnedStreamKey stream_key;
  rtc::AudioPropertiesInfo info;
};

void putVolumes(Payload& object, const rtc::AudioPropertiesInfo& info) {
  object.put("linear_volume", info.linear_volume);
  object.put("nonlinear_volume", info.nonlinear_volume);
  object.put("vad", info.vad);
}

void putSpectrum(Payload& object, const rtc::AudioPropertiesInfo& info) {
  object.numbers("spectrum", info.spectrum, rtc::kAudioSpectrumSize);
}

}  // namespace

void KavRTCVideoEventHandler::onLocalAudioPropertiesReport(const rtc::LocalAudioPropertiesInfo* audio_properties_infos,
                                                           int32_t audio_properties_info_number) {
  const int32_t status = post(__func__, [infos = ownedList(audio_properties_infos, audio_properties_info_number),
                                         audio_properties_info_number](Payload& payload) {
    payload.list("audio_properties_infos", infos, [](Payload& element, const rtc::LocalAudioPropertiesInfo& local) {
      element.put("stream_index", local.stream_index);
      element.object("audio_properties_info", [&](Payload& object) {
        putVolumes(object, local.audio_properties_info);
        object.put("voice_pitch", local.audio_properties_info.voice_pitch);
        putSpectrum(object, local.audio_properties_info);
      });
    });
    payload.put("audio_properties_info_number", audio_properties_info_number);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, audio_properties_info_number:%d", __func__, __LINE__, status,
           audio_properties_info_number);
}

void KavRTCVideoEventHandler::onRemoteAudioPropertiesReport(
    const rtc::RemoteAudioPropertiesInfo* audio_properties_infos, int32_t audio_properties_info_number,
    int32_t total_remote_volume) {
  const auto own = [](const rtc::RemoteAudioPropertiesInfo& remote) {
    return RemoteProperties{OwnedStreamKey(remote.stream_key), remote.audio_properties_info};
  };
  const int32_t status = post(__func__, [infos = ownedList(audio_properties_infos, audio_properties_info_number, own),
                                         audio_properties_info_number, total_remote_volume](Payload& payload) {
    payload.list("audio_properties_infos", infos, [](Payload& element, const RemoteProperties& remote) {
      putRoomUserIndex(element, "stream_key", remote.stream_key);
      element.object("audio_properties_info", [&](Payload& object) {
        putVolumes(object, remote.info);
        putSpectrum(object, remote.info);
      });
    });
    payload.put("audio_properties_info_number", audio_properties_info_number);
    payload.put("total_remote_volume", total_remote_volume);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, audio_properties_info_number:%d, total_remote_volume=%d", __func__,
           __LINE__, status, audio_properties_info_number, total_remote_volume);
}

void KavRTCVideoEventHandler::onActiveSpeaker(const char* room_id, const char* uid) {
  const int32_t status = post(__func__, [room_id = owned(room_id), uid = owned(uid)](Payload& payload) {
    payload.put("room_id", room_id);
    payload.put("uid", uid);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, room_id:%s, uid:%s", __func__, __LINE__, status, shown(room_id),
           shown(uid));
}

void KavRTCVideoEventHandler::onAudioMixingStateChanged(int32_t mix_id, int32_t state, int32_t error) {
  const int32_t status = post(__func__, [mix_id, state, error](Payload& payload) {
    payload.put("mix_id", mix_id);
    payload.put("state", state);
    payload.put("error", error);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, mix_id:%d, state:%d, error:%d", __func__, __LINE__, status, mix_id, state,
           error);
}

void KavRTCVideoEventHandler::onAudioMixingPlayingProgress(int32_t mix_id, int32_t progress) {
  const int32_t status = post(__func__, [mix_id, progress](Payload& payload) {
    payload.put("progress", progress);
    payload.put("mix_id", mix_id);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, mix_id:%d, progress:%d", __func__, __LINE__, status, mix_id, progress);
}

}  // namespace corvane
