'use strict';
// The demo's microphone: the clip's own sound if it has any, else a test tone, and how loud it is. A clip that begins with
// a second of nothing but zeros counts as one without sound.

const audioStateFailed = 3;
const silentDb = -127;
const silentReports = 10;

class Microphone {
  #video;
  #failing = false;
  #silent = 0;
  /** The microphone's id; undefined where the engine has no sound. */
  id;
  /** In dB of full scale: of the last report, and the loudest of all. */
  level = silentDb;
  peak = silentDb;

  constructor(video) {
    this.#video = video;
  }

  /** `source`: the id of the camera whose sound it is, or of a microphone. */
  start(source) {
    const reports = { interval: 100, smooth: 1, local_main_report_mode: 0, audio_report_mode: 0 };
    const extras = { enable_spectrum: false, enable_vad: false, enable_voice_pitch: false };
    if (this.#video.enableAudioPropertiesReport({ ...reports, ...extras }) !== 0) return;
    this.#choose(source.startsWith('file:') ? source : 'test:sine');
    if (this.#video.startAudioCapture() !== 0) this.id = undefined;
  }

  stop() {
    if (this.id !== undefined) this.#video.stopAudioCapture();
  }

  /** Takes an event of the engine. True when it is about the microphone and done with. */
  take({ Type, Object: event }) {
    switch (Type) {
      case 'onLocalAudioPropertiesReport':
        this.#onReport(event.audio_properties_infos[0]?.audio_properties_info.nonlinear_volume);
        return true;
      case 'onLocalAudioStateChanged':
        if (event.state !== audioStateFailed) return true;
        this.#failing = true;
        // A clip without sound shows it only now; the capture goes on with what is chosen next.
        if (this.#isClip) this.#choose('test:sine');
        else this.id = undefined;
        return true;
      case 'onError':
        // The failure's last word.
        return this.#failing && !(this.#failing = false);
      default:
        return false;
    }
  }

  get #isClip() {
    return this.id?.startsWith('file:') ?? false;
  }

  /** `level` is undefined while nothing is captured. */
  #onReport(level) {
    this.level = level ?? silentDb;
    this.peak = Math.max(this.peak, this.level);
    if (level === silentDb && ++this.#silent === silentReports && this.peak === silentDb && this.#isClip) {
      this.#choose('test:sine');
    }
  }

  #choose(id) {
    this.id = this.#video.setAudioCaptureDevice(id) === 0 ? id : undefined;
  }
}

module.exports = { Microphone };
