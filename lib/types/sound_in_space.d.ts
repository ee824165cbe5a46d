// A room's sound in space: range audio fades with distance, spatial audio comes from where its user is.

import type { Result } from './common';

/** A place in the application's own coordinates. One unit is what the ranges of hearing are given in. */
export interface Position {
  x: number;
  y: number;
  z: number;
}

/** A direction. The three of one {@link HumanOrientation} are of length 1 and at right angles to each other. */
export interface Orientation {
  x: number;
  y: number;
  z: number;
}

/** Which way a head is turned. All keys are required. */
export interface HumanOrientation {
  forward: Orientation;
  right: Orientation;
  up: Orientation;
}

/** Where a head is and which way it is turned. All keys are required. */
export interface PositionInfo {
  position: Position;
  orientation: HumanOrientation;
}

/** Distances in the unit of positions, 0 <= min < max, whole numbers. */
export interface ReceiveRange {
  /** Full volume up to here. */
  min: number;
  /** Silent from here on. */
  max: number;
}

/**
 * How sound fades between the two distances of a {@link ReceiveRange}.
 * - `0` it does not
 * - `1` linearly
 * - `2` exponentially
 */
export type AttenuationType = 0 | 1 | 2;

export interface SoundInSpaceMethods {
  enableRangeAudio(enable: boolean): Result;
  updateReceiveRange(range: ReceiveRange): Result;
  /** Place of the local user for range audio. Coordinates are cut to whole numbers. */
  updateRangePosition(pos: Position): Result;
  /** @param coefficient above 0, for the exponential model */
  setAttenuationModel(type: AttenuationType, coefficient: number): Result;
  /** Users who share a flag hear each other at full volume. @param flags replaces the list */
  setNoAttenuationFlags(flags: string[]): Result;

  enableSpatialAudio(enable: boolean): Result;
  /** Place that the local user speaks from, as the others hear it. */
  updateSpatialPosition(pos: Position): Result;
  updateSelfOrientation(orientation: HumanOrientation): Result;
  /** Place and orientation of the local user at once. */
  updateSelfPosition(info: PositionInfo): Result;
  /** Voices are heard alike from before and behind their speakers. */
  disableRemoteOrientation(): Result;
  /** Place that the local user listens from; without it, where the user speaks from. */
  updateListenerPosition(pos: Position): Result;
  updateListenerOrientation(orientation: HumanOrientation): Result;
  /** Where another user is for the local listener only; takes the place of what that user reports. */
  updateRemotePosition(uid: string, info: PositionInfo): Result;
  removeRemotePosition(uid: string): Result;
  removeAllRemotePosition(): Result;
}
