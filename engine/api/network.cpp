// The network, messages outside rooms, data inside streams.
#include "api/rtc_video.h"

namespace corvane::rtc {

// Network, proxies, encryption.

int32_t RtcVideo::setPublishFallbackOption(int32_t /*option*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setSubscribeFallbackOption(int32_t /*option*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setRemoteUserPriority(const char* /*room_id*/, const char* /*user_id*/, int32_t /*priority*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::startNetworkDetection(bool /*is_test_uplink*/, int32_t /*expected_uplink_bitrate*/,
                                        bool /*is_test_downlink*/, int32_t /*expected_downlink_bitrate*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::stopNetworkDetection() {
  return notSupported(__func__);
}

int32_t RtcVideo::startCloudProxy(const CloudProxyInfo* /*configurations*/, int32_t /*count*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::stopCloudProxy() {
  return notSupported(__func__);
}

int32_t RtcVideo::setLocalProxy(const LocalProxyConfiguration* /*configurations*/, int32_t /*count*/) {
  return notSupported(__func__);
}

int64_t RtcVideo::getNetworkTimeInfo() {
  notSupported(__func__);
  return 0;  // the time of a service that is not known
}

int32_t RtcVideo::setEncryptInfo(int32_t /*encrypt_type*/, const char* /*key*/) {
  return notSupported(__func__);
}

// Messages outside rooms, and data inside streams.

int32_t RtcVideo::login(const char* /*token*/, const char* /*uid*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::logout() {
  return notSupported(__func__);
}

int32_t RtcVideo::updateLoginToken(const char* /*token*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setServerParams(const char* /*signature*/, const char* /*url*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::getPeerOnlineStatus(const char* /*peer_user_id*/) {
  return notSupported(__func__);
}

int64_t RtcVideo::sendUserMessageOutsideRoom(const char* /*uid*/, const char* /*message*/, int32_t /*config*/) {
  return notSupported(__func__);
}

int64_t RtcVideo::sendUserBinaryMessageOutsideRoom(const char* /*uid*/, int32_t /*length*/, const uint8_t* /*message*/,
                                                   int32_t /*config*/) {
  return notSupported(__func__);
}

int64_t RtcVideo::sendServerMessage(const char* /*message*/) {
  return notSupported(__func__);
}

int64_t RtcVideo::sendServerBinaryMessage(int32_t /*length*/, const uint8_t* /*message*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::sendSEIMessage(int32_t /*stream_index*/, const uint8_t* /*message*/, int32_t /*length*/,
                                 int32_t /*repeat_count*/, int32_t /*mode*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::sendPublicStreamSEIMessage(int32_t /*stream_index*/, int32_t /*channel_id*/,
                                             const uint8_t* /*message*/, int32_t /*length*/, int32_t /*repeat_count*/,
                                             int32_t /*mode*/) {
  return notSupported(__func__);
}

int64_t RtcVideo::sendStreamSyncInfo(const uint8_t* /*data*/, int32_t /*length*/,
                                     const StreamSyncInfoConfig& /*config*/) {
  return notSupported(__func__);
}

}  // namespace corvane::rtc
