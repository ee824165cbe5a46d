// The connection: fallback, tests, proxies, encryption, time.

import type { Open, Result } from './common';

/**
 * What a publisher may give up on a weak uplink.
 * - `0` nothing
 * - `1` the larger layers
 */
export type PublishFallbackOption = 0 | 1;

/**
 * What a subscriber may give up on a weak downlink.
 * - `0` nothing
 * - `1` down to the smallest layer
 * - `2` down to sound alone
 */
export type SubscribeFallbackOption = 0 | 1 | 2;

/**
 * Whose streams are kept longest on a weak downlink.
 * - `0` low
 * - `100` medium
 * - `200` high
 */
export type RemoteUserPriority = 0 | 100 | 200;

/** One proxy of the service. */
export interface CloudProxyInfo {
  cloud_proxy_ip: string;
  cloud_proxy_port: number;
}

/** - `1` SOCKS5 - `2` HTTP tunnel */
export type LocalProxyType = 1 | 2;

/** One proxy on the user's side. All keys are required. */
export interface LocalProxyConfiguration {
  local_proxy_ip: string;
  /** "" for no authentication. */
  local_proxy_username: string;
  /** It is written to the log file as it stands. */
  local_proxy_password: string;
  local_proxy_type: LocalProxyType;
  local_proxy_port: number;
}

/**
 * Encryption of media on top of the transport's own.
 * - `0` none
 * - `1` AES-128-CBC
 * - `2` AES-256-CBC
 * - `3` AES-128-ECB
 * - `4` AES-256-ECB
 */
export type EncryptType = 0 | 1 | 2 | 3 | 4;

export interface NetworkMethods {
  setPublishFallbackOption(option: PublishFallbackOption): Result;
  setSubscribeFallbackOption(option: SubscribeFallbackOption): Result;
  setRemoteUserPriority(roomId: string, userId: string, priority: RemoteUserPriority): Result;
  /**
   * Reports `onNetworkDetectionResult` until stopped.
   * @param expectedUplinkBitrate kbit/s, 0 for automatic
   * @param expectedDownlinkBitrate kbit/s, 0 for automatic
   */
  startNetworkDetection(
    isTestUplink: boolean,
    expectedUplinkBitrate: number,
    isTestDownlink: boolean,
    expectedDownlinkBitrate: number,
  ): Result;
  stopNetworkDetection(): Result;
  /** Before joining a room. */
  setEncryptInfo(encryptType: EncryptType, key: string): Result;
  /** @returns milliseconds since 1970-01-01 UTC on the service's clock; 0 before it is known, -1 without an engine */
  getNetworkTimeInfo(): number;
  /** @param configurations tried in order */
  startCloudProxy(configurations: CloudProxyInfo[]): Result;
  stopCloudProxy(): Result;
  /** @param configurations empty for none */
  setLocalProxy(configurations: LocalProxyConfiguration[]): Result;
}

/**
 * The engine's connection to its service.
 * - `0` disconnected
 * - `1` connecting
 * - `2` connected
 * - `3` reconnecting
 * - `4` reconnected
 * - `5` down for more than 10 seconds; the engine keeps trying
 * - `6` the engine has stopped trying
 */
export type ConnectionState = Open<0 | 1 | 2 | 3 | 4 | 5 | 6>;

/**
 * - `-1` unknown
 * - `0` disconnected
 * - `1` cable
 * - `2` Wi-Fi
 * - `3` to `6` mobile, 2G to 5G
 */
export type NetworkType = Open<-1 | 0 | 1 | 2 | 3 | 4 | 5 | 6>;

/** - `0` up - `1` down */
export type NetworkDetectionLinkType = Open<0 | 1>;

/**
 * - `0` stopped
 * - `1` timed out
 * - `2` the connection was lost
 * - `3` publishing or subscribing began
 * - `4` internal error
 */
export type NetworkDetectionStopReason = Open<0 | 1 | 2 | 3 | 4>;

/**
 * How well media can flow in one direction.
 * - `0` unknown
 * - `1` excellent
 * - `2` good
 * - `3` poor
 * - `4` bad
 * - `5` very bad
 * - `6` down
 */
export type NetworkQuality = Open<0 | 1 | 2 | 3 | 4 | 5 | 6>;

/**
 * - `0` initial
 * - `1` connected
 * - `2` failed
 */
export type ProxyState = Open<0 | 1 | 2>;

/**
 * - `0` none
 * - `1` unreachable
 * - `2` protocol error
 * - `3` authentication failed
 * - `4` the proxy ended the connection
 */
export type LocalProxyError = Open<0 | 1 | 2 | 3 | 4>;

export interface NetworkEvents {
  onConnectionStateChanged: { state: ConnectionState };
  onNetworkTypeChanged: { type: NetworkType };
  onHttpProxyState: { state: ProxyState };
  onHttpsProxyState: { state: ProxyState };
  /** `cmd` names the proxy step; the addresses are "host:port". */
  onSocks5ProxyState: {
    state: ProxyState;
    cmd: string;
    proxy_address: string;
    local_address: string;
    remote_address: string;
  };
  onLocalProxyStateChanged: {
    local_proxy_type: Open<LocalProxyType>;
    local_proxy_state: ProxyState;
    local_proxy_error: LocalProxyError;
  };
  /** `interval`: milliseconds that the connection took. */
  onCloudProxyConnected: { interval: number };
  /** Every 2 seconds while a test runs. */
  onNetworkDetectionResult: {
    type: NetworkDetectionLinkType;
    quality: NetworkQuality;
    /** Milliseconds. */
    rtt: number;
    /** 0 to 1. */
    lost_rate: number;
    /** kbit/s. */
    bit_rate: number;
    /** Milliseconds. */
    jitter: number;
  };
  onNetworkDetectionStopped: { reason: NetworkDetectionStopReason };
  /** `getNetworkTimeInfo` answers the service's time from now on. */
  onNetworkTimeSynchronized: {};
}
