// Records and constants of network fallback, proxies and encryption.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// What a publisher may give up on a weak uplink.
enum PublishFallbackOption : int32_t {
  kPublishFallbackDisabled = 0,
  kPublishFallbackSimulcast = 1,  ///< the larger layers
};

/// What a subscriber may give up on a weak downlink.
enum SubscribeFallbackOption : int32_t {
  kSubscribeFallbackDisabled = 0,
  kSubscribeFallbackVideoStreamLow = 1,  ///< down to the smallest layer
  kSubscribeFallbackAudioOnly = 2,       ///< down to sound alone
};

/// Whose streams are kept longest on a weak downlink.
enum RemoteUserPriority : int32_t {
  kRemoteUserPriorityLow = 0,
  kRemoteUserPriorityMedium = 100,
  kRemoteUserPriorityHigh = 200,
};

/// One proxy of the service.
struct CloudProxyInfo {
  const char* cloud_proxy_ip;
  int32_t cloud_proxy_port;
};

enum LocalProxyType : int32_t {
  kLocalProxyTypeSocks5 = 1,
  kLocalProxyTypeHttpTunnel = 2,
};

/// One proxy on the user's side. Empty user name: no authentication.
struct LocalProxyConfiguration {
  const char* local_proxy_ip;
  const char* local_proxy_username;
  const char* local_proxy_password;
  int32_t local_proxy_type;  ///< LocalProxyType
  int32_t local_proxy_port;
};

/// Encryption of media on top of the transport's own.
enum EncryptType : int32_t {
  kEncryptTypeNone = 0,
  kEncryptTypeAES128CBC = 1,
  kEncryptTypeAES256CBC = 2,
  kEncryptTypeAES128ECB = 3,
  kEncryptTypeAES256ECB = 4,
};

}  // namespace corvane::rtc
