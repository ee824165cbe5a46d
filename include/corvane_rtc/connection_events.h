// Constants in reports of the connection, of network tests and of proxies.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// The engine's connection to its service.
enum ConnectionState : int32_t {
  kConnectionStateDisconnected = 0,
  kConnectionStateConnecting = 1,
  kConnectionStateConnected = 2,
  kConnectionStateReconnecting = 3,
  kConnectionStateReconnected = 4,
  kConnectionStateLost = 5,    ///< down for more than 10 seconds; the engine keeps trying
  kConnectionStateFailed = 6,  ///< the engine has stopped trying
};

enum NetworkType : int32_t {
  kNetworkTypeUnknown = -1,
  kNetworkTypeDisconnected = 0,
  kNetworkTypeLAN = 1,
  kNetworkTypeWifi = 2,
  kNetworkTypeMobile2G = 3,
  kNetworkTypeMobile3G = 4,
  kNetworkTypeMobile4G = 5,
  kNetworkTypeMobile5G = 6,
};

/// Which direction a network test measured.
enum NetworkDetectionLinkType : int32_t {
  kNetworkDetectionLinkUp = 0,
  kNetworkDetectionLinkDown = 1,
};

/// Why a network test ended.
enum NetworkDetectionStopReason : int32_t {
  kNetworkDetectionStopUser = 0,
  kNetworkDetectionStopTimeout = 1,
  kNetworkDetectionStopConnectionLost = 2,
  kNetworkDetectionStopStreaming = 3,  ///< publishing or subscribing began
  kNetworkDetectionStopInnerError = 4,
};

/// How well media can flow in one direction.
enum NetworkQuality : int32_t {
  kNetworkQualityUnknown = 0,
  kNetworkQualityExcellent = 1,
  kNetworkQualityGood = 2,
  kNetworkQualityPoor = 3,
  kNetworkQualityBad = 4,
  kNetworkQualityVeryBad = 5,
  kNetworkQualityDown = 6,
};

/// States of a connection through an HTTP, HTTPS or SOCKS5 proxy.
enum ProxyState : int32_t {
  kProxyStateInit = 0,
  kProxyStateConnected = 1,
  kProxyStateError = 2,
};

/// States of a proxy set with setLocalProxy().
enum LocalProxyState : int32_t {
  kLocalProxyStateInit = 0,
  kLocalProxyStateConnected = 1,
  kLocalProxyStateError = 2,
};

enum LocalProxyError : int32_t {
  kLocalProxyErrorOk = 0,
  kLocalProxyErrorUnreachable = 1,
  kLocalProxyErrorProtocol = 2,
  kLocalProxyErrorAuthentication = 3,
  kLocalProxyErrorClosed = 4,  ///< the proxy ended the connection
};

}  // namespace corvane::rtc
