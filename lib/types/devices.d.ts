// Microphones, speakers and cameras: listing, choosing, volumes and tests.

import type { Open, Result } from './common';

/** One microphone, speaker or camera. Texts are cut to 511 bytes of UTF-8. */
export interface MediaDevice {
  device_name: string;
  /** What the `set...Device` methods take. */
  device_id: string;
}

/** What an echo test needs: it talks to the service in a room of its own. All keys are required. */
export interface EchoTestConfig {
  /** Milliseconds between volume reports, at least 100; 0 for none. */
  audio_properties_report_interval: number;
  uid: string;
  room_id: string;
  token: string;
}

/** -4: no device has the id, or there is none at all. Device volumes run from 0 to 255. */
export interface DeviceMethods {
  /** @returns the cameras; empty on failure */
  enumerateVideoCaptureDevices(): MediaDevice[];
  /** Chooses the camera, also while capturing. */
  setVideoCaptureDevice(deviceId: string): Result;
  /** @returns the chosen camera's id; "" on failure */
  getVideoCaptureDevice(): string;

  /** @returns the speakers; empty on failure */
  enumerateAudioPlaybackDevices(): MediaDevice[];
  /** @returns the microphones; empty on failure */
  enumerateAudioCaptureDevices(): MediaDevice[];
  /** Chooses the speaker and ends following the system's default. */
  setAudioPlaybackDevice(deviceId: string): Result;
  /** Chooses the microphone and ends following the system's default. */
  setAudioCaptureDevice(deviceId: string): Result;
  /** @returns the chosen speaker's id; "" on failure */
  getAudioPlaybackDevice(): string;
  /** @returns the chosen microphone's id; "" on failure */
  getAudioCaptureDevice(): string;
  /** Uses the system's default as it changes. */
  followSystemCaptureDevice(followed: boolean): Result;
  /** Uses the system's default as it changes. */
  followSystemPlaybackDevice(followed: boolean): Result;
  /** Lists no devices that cannot make a sound. */
  enableFilterSilentDevice(enable: boolean): Result;

  setAudioPlaybackDeviceVolume(volume: number): Result;
  /** @returns 0 to 255, or a negative result */
  getAudioPlaybackDeviceVolume(): number;
  setAudioCaptureDeviceVolume(volume: number): Result;
  /** @returns 0 to 255, or a negative result */
  getAudioCaptureDeviceVolume(): number;
  setAudioPlaybackDeviceMute(mute: boolean): Result;
  /** @returns whether it is muted, or a negative result */
  getAudioPlaybackDeviceMute(): boolean | Result;
  setAudioCaptureDeviceMute(mute: boolean): Result;
  /** @returns whether it is muted, or a negative result */
  getAudioCaptureDeviceMute(): boolean | Result;

  // Tests, one at a time: -3 while another runs. Intervals in milliseconds between volume reports.

  /**
   * Plays back what is said after `delayTime` seconds, 2 to 10. Reports `onEchoTestResult`.
   */
  startEchoTest(config: EchoTestConfig, delayTime: number): Result;
  stopEchoTest(): Result;
  initAudioPlaybackDeviceForTest(deviceId: string): Result;
  initAudioCaptureDeviceForTest(deviceId: string): Result;
  /** Plays a WAV, MP3 or AAC file over and over. Reports `onAudioPlaybackDeviceTestVolume`. */
  startAudioPlaybackDeviceTest(testAudioFilePath: string, indicationInterval: number): Result;
  stopAudioPlaybackDeviceTest(): Result;
  startAudioDeviceRecordTest(indicationInterval: number): Result;
  /** Ends the recording and plays it. */
  stopAudioDeviceRecordAndPlayTest(): Result;
  stopAudioDevicePlayTest(): Result;
  /** Plays a file and listens for it. Reports `onHardwareEchoDetectionResult`. Outside rooms only. */
  startHardwareEchoDetection(testAudioFilePath: string): Result;
  stopHardwareEchoDetection(): Result;

  /** Brings the loudness of music from mixing and players and that of the local voice into line. */
  enableVocalInstrumentBalance(enable: boolean): Result;
}

/**
 * - `-1` unknown
 * - `0` speaker
 * - `1` microphone
 * - `2` the screen's sound
 */
export type AudioDeviceType = Open<-1 | 0 | 1 | 2>;

/**
 * - `-1` unknown
 * - `0` display
 * - `1` camera
 * - `2` screen
 */
export type VideoDeviceType = Open<-1 | 0 | 1 | 2>;

/**
 * - `1` started
 * - `2` stopped
 * - `3` failed while running; the error tells why
 * - `4` plugged in
 * - `5` unplugged
 */
export type MediaDeviceState = Open<1 | 2 | 3 | 4 | 5>;

/**
 * - `0` none
 * - `1` no permission
 * - `2` busy
 * - `3` failure
 * - `4` not found
 * - `5` disconnected
 * - `6` open, but it delivers nothing
 * - `7` unsupported format
 */
export type MediaDeviceError = Open<0 | 1 | 2 | 3 | 4 | 5 | 6 | 7>;

/**
 * - `0` none
 * - `1` operation denied
 * - `2` a microphone has delivered nothing but silence for a while
 * - `3` a speaker takes no sound
 * - `4` microphone and speaker feed each other
 */
export type MediaDeviceWarning = Open<0 | 1 | 2 | 3 | 4>;

/**
 * - `0` success
 * - `1` what was sent did not come back
 * - `2` stopped before anything could come back
 * - `3` nothing could be recorded or played
 * - `4` service failure
 * - `5` internal error
 */
export type EchoTestResult = Open<0 | 1 | 2 | 3 | 4 | 5>;

/**
 * - `0` stopped before there was a result
 * - `1` unknown
 * - `2` no echo
 * - `3` the microphone hears the speaker: headphones would help
 */
export type HardwareEchoDetectionResult = Open<0 | 1 | 2 | 3>;

/** Device ids are those of {@link MediaDevice}. */
export interface DeviceEvents {
  onAudioDeviceStateChanged: {
    device_id: string;
    device_type: AudioDeviceType;
    device_state: MediaDeviceState;
    device_error: MediaDeviceError;
  };
  onVideoDeviceStateChanged: {
    device_id: string;
    device_type: VideoDeviceType;
    device_state: MediaDeviceState;
    device_error: MediaDeviceError;
  };
  onAudioDeviceWarning: { device_id: string; device_type: AudioDeviceType; device_warning: MediaDeviceWarning };
  onVideoDeviceWarning: { device_id: string; device_type: VideoDeviceType; device_warning: MediaDeviceWarning };
  /** `volume`: 0 to 255. */
  onAudioDeviceVolumeChanged: { device_type: AudioDeviceType; volume: number; muted: boolean };
  /** `volume` of the test sound, 0 to 255. */
  onAudioPlaybackDeviceTestVolume: { volume: number };
  onEchoTestResult: { result: EchoTestResult };
  onHardwareEchoDetectionResult: { hardware_echo_detection_result: HardwareEchoDetectionResult };
}
