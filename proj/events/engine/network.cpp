// The engine's connection, network tests and proxies.
#include "events/engine_handler.h"

namespace corvane {

void KavRTCVideoEventHandler::onConnectionStateChanged(int32_t state) {
  const int32_t status = post(__func__, [state](Payload& payload) { payload.put("state", state); });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, state:%d", __func__, __LINE__, status, state);
}

void KavRTCVideoEventHandler::onNetworkTypeChanged(int32_t type) {
  const int32_t status = post(__func__, [type](Payload& payload) { payload.put("type", type); });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, type:%d", __func__, __LINE__, status, type);
}

void KavRTCVideoEventHandler::onCreateRoomStateChanged(const char* room_id, int32_t error_code) {
  const int32_t status = post(__func__, [room_id = owned(room_id), error_code](Payload& payload) {
    payload.put("room_id", room_id);
    payload.put("error_code", error_code);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, room_id:%s, error_code:%d", __func__, __LINE__, status, shown(room_id),
           error_code);
}

void KavRTCVideoEventHandler::onHttpProxyState(int32_t state) {
  const int32_t status = post(__func__, [state](Payload& payload) { payload.put("state", state); });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, state:%d", __func__, __LINE__, status, state);
}

void KavRTCVideoEventHandler::onHttpsProxyState(int32_t state) {
  const int32_t status = post(__func__, [state](Payload& payload) { payload.put("state", state); });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, state:%d", __func__, __LINE__, status, state);
}

void KavRTCVideoEventHandler::onSocks5ProxyState(int32_t state, const char* cmd, const char* proxy_address,
                                                 const char* local_address, const char* remote_address) {
  const int32_t status =
      post(__func__, [state, cmd = owned(cmd), proxy_address = owned(proxy_address),
                      local_address = owned(local_address), remote_address = owned(remote_address)](Payload& payload) {
        payload.put("state", state);
        payload.put("cmd", cmd);
        payload.put("proxy_address", proxy_address);
        payload.put("local_address", local_address);
        payload.put("remote_address", remote_address);
      });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, state:%d, cmd:%s, proxy_address:%s, local_address:%s, remote_address:%s",
           __func__, __LINE__, status, state, shown(cmd), shown(proxy_address), shown(local_address),
           shown(remote_address));
}

void KavRTCVideoEventHandler::onLocalProxyStateChanged(int32_t local_proxy_type, int32_t local_proxy_state,
                                                       int32_t local_proxy_error) {
  const int32_t status = post(__func__, [local_proxy_type, local_proxy_state, local_proxy_error](Payload& payload) {
    payload.put("local_proxy_type", local_proxy_type);
    payload.put("local_proxy_state", local_proxy_state);
    payload.put("local_proxy_error", local_proxy_error);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCVideoEventHandler::onCloudProxyConnected(int32_t interval) {
  const int32_t status = post(__func__, [interval](Payload& payload) { payload.put("interval", interval); });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCVideoEventHandler::onNetworkDetectionResult(int32_t type, int32_t quality, int32_t rtt, double lost_rate,
                                                       int32_t bitrate, int32_t jitter) {
  const int32_t status = post(__func__, [type, quality, rtt, lost_rate, bitrate, jitter](Payload& payload) {
    payload.put("type", type);
    payload.put("quality", quality);
    payload.put("rtt", rtt);
    payload.put("lost_rate", lost_rate);
    payload.put("bit_rate", bitrate);
    payload.put("jitter", jitter);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, type:%d, quality:%d, rtt:%d, lost_rate:%lf, bitrate:%d, jitter:%d",
           __func__, __LINE__, status, type, quality, rtt, lost_rate, bitrate, jitter);
}

void KavRTCVideoEventHandler::onNetworkDetectionStopped(int32_t reason) {
  const int32_t status = post(__func__, [reason](Payload& payload) { payload.put("reason", reason); });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, reason:%d", __func__, __LINE__, status, reason);
}

void KavRTCVideoEventHandler::onNetworkTimeSynchronized() {
  const int32_t status = post(__func__, [](Payload&) {});
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

}  // namespace corvane
