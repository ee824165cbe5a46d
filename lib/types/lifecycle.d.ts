// Making and ending the engine, and what concerns it as a whole.

import type { Open, Result } from './common';
import type { EngineCallback } from './events';

/**
 * Bit mask of what was wrong with a call; other bits are the application's.
 * - `1` other
 * - `2` disconnected
 * - `4` sound lags
 * - `8` noise
 * - `16` echo
 * - `32` no sound
 * - `64` video lags
 * - `128` poor picture
 * - `256` no picture
 */
export type ProblemType = number;

/** One room and the user's id in it. */
export interface FeedbackRoomInfo {
  room_id: string;
  user_id: string;
}

/** What a user reports about the quality of a call. */
export interface FeedbackInfo {
  /** The user's own words. */
  problem_desc: string;
  room_info: FeedbackRoomInfo[];
}

export interface LifecycleMethods {
  /** Writes one line to the log. */
  test1(): void;

  /**
   * Makes the engine and opens the log file. All events of the engine, its observers and video frames go to `callback`.
   * @param appId the application's id
   * @param params JSON object of engine-specific settings, or ""
   */
  createRTCVideo(appId: string, callback: EngineCallback, params: string): Result;

  /**
   * Ends the engine and closes the log file. Rooms are to be destroyed before. -1 when there is no engine.
   */
  destroyRTCVideo(): Result;

  /** Sets a label that reports carry. */
  setBusinessId(businessId: string): Result;

  /** Passes engine-specific settings on. @param jsonString JSON object */
  setRuntimeParameters(jsonString: string): Result;

  /** Reports what a user found wrong. @param type bit mask, see {@link ProblemType} */
  feedback(type: ProblemType, info: FeedbackInfo): Result;
}

/**
 * Whether the engine may lower the published picture by itself.
 * - `0` it only reports what it would need
 * - `1` it lowers the stream as `setPublishFallbackOption` allows
 */
export type PerformanceAlarmMode = Open<0 | 1>;

/**
 * What made the engine report a picture it can sustain.
 * - `0` the network got worse
 * - `1` the network recovered
 * - `2` the machine is overloaded
 * - `3` the machine recovered
 */
export type PerformanceAlarmReason = Open<0 | 1 | 2 | 3>;

/** The picture the engine can sustain just now. */
export interface SourceWantedData {
  /** Pixels. */
  width: number;
  /** Pixels. */
  height: number;
  /** Frames a second. */
  frame_rate: number;
}

/** Load of the machine and the application's share of it. */
export interface SysStats {
  /** Logical processors. */
  cpu_cores: number;
  /** Share of all processors used by the application, 0 to 1. */
  cpu_app_usage: number;
  /** Share of all processors used by everything, 0 to 1. */
  cpu_total_usage: number;
  /** MB used by the application. */
  memory_usage: number;
  /** MB in the machine. */
  full_memory: number;
  /** MB used by everything. */
  total_memory_usage: number;
  /** MB free. */
  free_memory: number;
  /** The application's share of `full_memory`, 0 to 1. */
  memory_ratio: number;
  /** Everything's share of `full_memory`, 0 to 1. */
  total_memory_ratio: number;
}

export interface LifecycleEvents {
  /** `getErrorDescription` puts the code into words. */
  onWarning: { warn: number };
  /** `getErrorDescription` puts the code into words. */
  onError: { err: number };
  /** A task of the engine has not come back for `lasting_times` milliseconds. */
  onDeadLockError: { task_name: string; lasting_times: number };
  /** An optional part of the engine could not be loaded or used. */
  onExtensionAccessError: { extension_name: string; msg: string };
  onLogReport: { log_type: string; log_content: string };
  /** Load, every 2 seconds. */
  onSysStats: SysStats;
  /** `room_id` is "" when no single room is concerned. */
  onPerformanceAlarms: {
    mode: PerformanceAlarmMode;
    room_id: string;
    reason: PerformanceAlarmReason;
    data: SourceWantedData;
  };
  /** Whether the engine could make a room; `error_code` 0 when it could. */
  onCreateRoomStateChanged: { room_id: string; error_code: number };
}
