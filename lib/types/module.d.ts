// What concerns the module as a whole.

import type { Result } from './common';

/**
 * How much is logged.
 * - `-1` everything, details included
 * - `0` information, warnings and errors
 * - `1` warnings and errors
 * - `2` errors
 * - `3` nothing
 */
export type LogLevel = -1 | 0 | 1 | 2 | 3;

/** Where and how much module and engine log. */
export interface LogConfig {
  /** An existing folder. The module's own log file moves there with the next `createRTCVideo`. */
  log_path: string;
  /** For the module at once; for engines made afterwards. */
  log_level: LogLevel;
  /** MB that all of the engine's log files together may take, 1 to 100. */
  log_file_size: number;
  /** Letters, digits, '-' and '_'; "" for none. */
  log_filename_prefix: string;
}

/**
 * What `require` throws when the module cannot be loaded. Its message names all that is below and tells the fix.
 * There is no class to test against: nothing was loaded that could carry one. Its `name` is "CorvaneLoadError".
 */
export interface CorvaneLoadError extends Error {
  name: 'CorvaneLoadError';
  /**
   * - `ERR_CORVANE_PLATFORM` there is no build for this system or processor
   * - `ERR_CORVANE_MODULE_NOT_FOUND` corvane_meeting_sdk.node is in none of the folders
   * - `ERR_CORVANE_ENGINE_NOT_FOUND` the module is there, the engine library is not
   * - `ERR_CORVANE_DEPENDENCY_NOT_FOUND` a system library that module or engine need is missing
   * - `ERR_CORVANE_LIBRARY_UNUSABLE` the file is there but is damaged, or was built for something else
   */
  code:
    | 'ERR_CORVANE_PLATFORM'
    | 'ERR_CORVANE_MODULE_NOT_FOUND'
    | 'ERR_CORVANE_ENGINE_NOT_FOUND'
    | 'ERR_CORVANE_DEPENDENCY_NOT_FOUND'
    | 'ERR_CORVANE_LIBRARY_UNUSABLE';
  /** This process's system and processor, such as "linux-x64". */
  platform: string;
  /** File name of the library at fault. */
  library: string;
  /** Every path that was looked at, in order. */
  pathsTried: string[];
  /** The system loader's own error, where it came that far. */
  cause?: unknown;
}

/**
 * Sets where and how much is logged. The module's own threshold changes even when the engine refuses the record.
 * @returns the engine's result, or -1 when `config` is no object
 */
export function setLogConfig(config: LogConfig): Result;

/** The engine library's version: three numbers and an optional suffix ("1.2.3-name"). */
export function getSDKVersion(): string;

/** Wall-clock milliseconds since 1970-01-01 UTC. */
export function getTimestampMs(): number;

/** Wall-clock microseconds since 1970-01-01 UTC. */
export function getTimestampUs(): number;

/** This process's id in decimal digits: a string. */
export function getCurrentProcessId(): string;

/**
 * One English sentence about a `Result` or an event's error code.
 * @returns "" for an unknown code, and when `code` is no number
 */
export function getErrorDescription(code: number): string;
