// Cameras, microphones, speakers and their tests.
#include "events/engine_handler.h"

namespace corvane {
namespace {

auto deviceState(const char* device_id, int32_t device_type, int32_t device_state, int32_t device_error) {
  return [device_id = owned(device_id), device_type, device_state, device_error](Payload& payload) {
    payload.put("device_id", device_id);
    payload.put("device_type", device_type);
    payload.put("device_state", device_state);
    payload.put("device_error", device_error);
  };
}

auto deviceWarning(const char* device_id, int32_t device_type, int32_t device_warning) {
  return [device_id = owned(device_id), device_type, device_warning](Payload& payload) {
    payload.put("device_id", device_id);
    payload.put("device_type", device_type);
    payload.put("device_warning", device_warning);
  };
}

}  // namespace

void KavRTCVideoEventHandler::onAudioDeviceStateChanged(const char* device_id, int32_t device_type,
                                                        int32_t device_state, int32_t device_error) {
  const int32_t status = post(__func__, deviceState(device_id, device_type, device_state, device_error));
  LogWrite(kLogInfo, "%s(%d), n_status: %d, device_id:%s, device_type:%d, device_state:%d, device_error:%d", __func__,
           __LINE__, status, shown(device_id), device_type, device_state, device_error);
}

void KavRTCVideoEventHandler::onVideoDeviceStateChanged(const char* device_id, int32_t device_type,
                                                        int32_t device_state, int32_t device_error) {
  const int32_t status = post(__func__, deviceState(device_id, device_type, device_state, device_error));
  LogWrite(kLogInfo, "%s(%d), n_status: %d, device_id:%s, device_type:%d, device_state:%d, device_error:%d", __func__,
           __LINE__, status, shown(device_id), device_type, device_state, device_error);
}

void KavRTCVideoEventHandler::onAudioDeviceWarning(const char* device_id, int32_t device_type, int32_t device_warning) {
  const int32_t status = post(__func__, deviceWarning(device_id, device_type, device_warning));
  LogWrite(kLogInfo, "%s(%d), n_status: %d, device_id:%s, device_type:%d, device_warning:%d", __func__, __LINE__,
           status, shown(device_id), device_type, device_warning);
}

void KavRTCVideoEventHandler::onVideoDeviceWarning(const char* device_id, int32_t device_type, int32_t device_warning) {
  const int32_t status = post(__func__, deviceWarning(device_id, device_type, device_warning));
  LogWrite(kLogInfo, "%s(%d), n_status: %d, device_id:%s, device_type:%d, device_warning:%d", __func__, __LINE__,
           status, shown(device_id), device_type, device_warning);
}

void KavRTCVideoEventHandler::onAudioDeviceVolumeChanged(int32_t device_type, int32_t volume, bool muted) {
  const int32_t status = post(__func__, [device_type, volume, muted](Payload& payload) {
    payload.put("device_type", device_type);
    payload.put("volume", volume);
    payload.put("muted", muted);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, device_type:%d, volume:%d, muted:%d", __func__, __LINE__, status,
           device_type, volume, muted ? 1 : 0);
}

void KavRTCVideoEventHandler::onAudioPlaybackDeviceTestVolume(int32_t volume) {
  const int32_t status = post(__func__, [volume](Payload& payload) { payload.put("volume", volume); });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, volume:%d", __func__, __LINE__, status, volume);
}

void KavRTCVideoEventHandler::onEchoTestResult(int32_t result) {
  const int32_t status = post(__func__, [result](Payload& payload) { payload.put("result", result); });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCVideoEventHandler::onHardwareEchoDetectionResult(int32_t result) {
  const int32_t status =
      post(__func__, [result](Payload& payload) { payload.put("hardware_echo_detection_result", result); });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

}  // namespace corvane
