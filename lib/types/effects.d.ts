// Effects on the local camera's picture, its background and the faces found in it. Intensities run from 0 (none) to 1.

import type { Result, StreamIndex } from './common';

/** - `0` colour - `1` image */
export type VirtualBackgroundSourceType = 0 | 1;

/** What stands behind the person. All keys are required. */
export interface VirtualBackgroundSource {
  source_type: VirtualBackgroundSourceType;
  /** Image file; counts with the image type only. */
  source_path: string;
  /** 0xAARRGGBB; counts with the colour type only. */
  source_color: number;
}

/**
 * - `0` whitening
 * - `1` smoothing
 * - `2` sharpening
 */
export type EffectBeautyMode = 0 | 1 | 2;

/** Place of a watermark as shares of the picture's width and height, 0 to 1. All keys are required. */
export interface WatermarkPosition {
  width: number;
  height: number;
  /** Left edge. */
  x: number;
  /** Top edge. */
  y: number;
}

/** All keys are required. */
export interface WatermarkConfig {
  /** False: only receivers see it. */
  visible_in_preview: boolean;
  position_in_landscape_mode: WatermarkPosition;
  position_in_portrait_mode: WatermarkPosition;
}

export interface EffectMethods {
  enableVideoEffect(): Result;
  disableVideoEffect(): Result;
  enableEffectBeauty(enable: boolean): Result;
  setBeautyIntensity(beautyMode: EffectBeautyMode, intensity: number): Result;
  /** @param effectNodePath folder of one effect; "" removes it */
  setEffectNodes(effectNodePath: string): Result;
  updateEffectNode(effectNodePath: string, nodeKey: string, nodeValue: number): Result;
  /** @param filterPath folder of one filter; "" removes it */
  setColorFilter(filterPath: string): Result;
  setColorFilterIntensity(intensity: number): Result;
  /** @param bgStickerPath folder of the model that tells person from background */
  enableVirtualBackground(bgStickerPath: string, source: VirtualBackgroundSource): Result;
  disableVirtualBackground(): Result;
  /** Reports `onFaceDetectResult`. @param intervalMs shortest time between two results in milliseconds, above 0 */
  enableFaceDetection(intervalMs: number, faceModelPath: string): Result;
  disableFaceDetection(): Result;
  setVideoWatermark(streamIndex: StreamIndex, imagePath: string, config: WatermarkConfig): Result;
  clearVideoWatermark(streamIndex: StreamIndex): Result;
}

/** Where a face is, in pixels of the picture. */
export interface FaceRectangle {
  x: number;
  y: number;
  width: number;
  /** Spelled so. */
  heigth: number;
}

export interface EffectEvents {
  onFaceDetectResult: {
    /** 0, or a negative result; there are no faces then. */
    detect_result: number;
    face_count: number;
    rect: FaceRectangle[];
    /** Pixels. */
    image_width: number;
    /** Pixels. */
    image_height: number;
    /** Microseconds on the engine's clock. */
    frame_timestamp_us: number;
  };
}
