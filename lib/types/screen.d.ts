// Screen sharing: what can be shared, pictures of it, and its capture.

import type { Absent, Rectangle, Result, StreamIndex } from './common';

/**
 * - `0` unknown
 * - `1` window
 * - `2` monitor
 */
export type ScreenCaptureSourceType = 0 | 1 | 2;

/** One monitor or window. */
export interface ScreenCaptureSourceInfo {
  type: ScreenCaptureSourceType;
  /** The system's id of the window or monitor. */
  source_id: number;
  /** Title of the window or name of the monitor. */
  source_name: string;
  /** Of a window; "" for monitors. */
  application: string;
  /** Process that owns the window; 0 for monitors. */
  pid: number;
  primary_monitor: boolean;
  /** On the desktop. */
  region_rect: Rectangle;
}

/** - `0` captured - `1` left out */
export type MouseCursorCaptureState = 0 | 1;

/** Border around the shared area. All keys are required. */
export interface ScreenHighlightConfig {
  enable_highlight: boolean;
  /** 0xAARRGGBB, as a signed 32-bit number. */
  border_color: number;
  /** Pixels. */
  border_width: number;
}

/** How a source is captured. All keys are required. */
export interface ScreenCaptureParameters {
  /** Within the source; a width or height of 0 captures all of it. */
  region_rect: Rectangle;
  capture_mouse_cursor: MouseCursorCaptureState;
  /** Source ids of the windows to leave out. */
  filter_config: number[];
  highlight_config: ScreenHighlightConfig;
}

/** A picture as text. */
export interface EncodedImage {
  /** PNG file in base64, or the text "null" when the engine's pixel format is not known. */
  data: string;
  /** Pixels. */
  width: number;
  /** Pixels. */
  height: number;
}

/** A picture, or an empty object when there is none: test `data`. */
export type ImageResult = EncodedImage | Absent<EncodedImage>;

export interface ScreenMethods {
  /** @returns what can be shared; empty without an engine */
  getScreenCaptureSourceList(): ScreenCaptureSourceInfo[];
  /** Small picture of a source. @param maxWidth pixels, 0 for any @param maxHeight pixels, 0 for any */
  getThumbnail(type: ScreenCaptureSourceType, sourceId: number, maxWidth?: number, maxHeight?: number): ImageResult;
  /** Icon of a window's application. @param maxWidth pixels, 0 for any @param maxHeight pixels, 0 for any */
  getWindowAppIcon(sourceId: number, maxWidth?: number, maxHeight?: number): ImageResult;

  startScreenVideoCapture(sourceInfo: ScreenCaptureSourceInfo, captureParams: ScreenCaptureParameters): Result;
  updateScreenCaptureRegion(regionRect: Rectangle): Result;
  updateScreenCaptureHighlightConfig(highlightConfig: ScreenHighlightConfig): Result;
  updateScreenCaptureMouseCursor(captureMouseCursor: MouseCursorCaptureState): Result;
  /** @param filterConfig source ids of the windows to leave out */
  updateScreenCaptureFilterConfig(filterConfig: number[]): Result;
  stopScreenVideoCapture(): Result;

  /** The machine's own sound. */
  startScreenAudioCapture(): Result;
  /** The machine's own sound, from a loop-back device. */
  startMacScreenAudioCapture(deviceId: string): Result;
  stopScreenAudioCapture(): Result;
  /** Which stream the screen's sound goes with. */
  setScreenAudioStreamIndex(streamIndex: StreamIndex): Result;
  /** @param channel count of channels */
  setScreenAudioChannel(channel: 1 | 2): Result;
}
