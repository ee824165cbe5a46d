// How the records of audio capture, processing and reports cross over from JavaScript objects: fields in the order of
// the record.
#pragma once

#include "binding/from.h"
#include "corvane_rtc/audio_config.h"
#include "corvane_rtc/audio_frame.h"
#include "corvane_rtc/audio_mixing.h"

namespace corvane {

/// {"interval", "enable_spectrum", "enable_vad", "local_main_report_mode", "smooth", "audio_report_mode",
/// "enable_voice_pitch"}
template <>
struct From<rtc::AudioPropertiesConfig> : FlatRecord<rtc::AudioPropertiesConfig> {
  static void read(Reader& reader, napi_value value, Held& held) {
    held.interval = reader.int32(value, "interval");
    held.enable_spectrum = reader.boolean(value, "enable_spectrum");
    held.enable_vad = reader.boolean(value, "enable_vad");
    held.local_main_report_mode = reader.int32(value, "local_main_report_mode");
    held.smooth = reader.number(value, "smooth");
    held.audio_report_mode = reader.int32(value, "audio_report_mode");
    held.enable_voice_pitch = reader.boolean(value, "enable_voice_pitch");
  }
};

/// {"frequency", "gain"}
template <>
struct From<rtc::VoiceEqualizationConfig> : FlatRecord<rtc::VoiceEqualizationConfig> {
  static void read(Reader& reader, napi_value value, Held& held) {
    held.frequency = reader.int32(value, "frequency");
    held.gain = reader.int32(value, "gain");
  }
};

/// {"room_size", "decay_time", "damping", "wet_gain", "dry_gain", "pre_delay"}
template <>
struct From<rtc::VoiceReverbConfig> : FlatRecord<rtc::VoiceReverbConfig> {
  static void read(Reader& reader, napi_value value, Held& held) {
    held.room_size = reader.int32(value, "room_size");
    held.decay_time = reader.int32(value, "decay_time");
    held.damping = reader.int32(value, "damping");
    held.wet_gain = reader.int32(value, "wet_gain");
    held.dry_gain = reader.int32(value, "dry_gain");
    held.pre_delay = reader.int32(value, "pre_delay");
  }
};

/// {"sample_rate", "channel", "samples_per_call"}
template <>
struct From<rtc::AudioFormat> : FlatRecord<rtc::AudioFormat> {
  static void read(Reader& reader, napi_value value, Held& held) {
    held.sample_rate = reader.int32(value, "sample_rate");
    held.channel = reader.int32(value, "channel");
    held.samples_per_call = reader.int32(value, "samples_per_call");
  }
};

/// {"type", "play_count", "position", "callback_on_progress_interval", "sync_progress_to_record_frame"}
template <>
struct From<rtc::AudioMixingConfig> : FlatRecord<rtc::AudioMixingConfig> {
  static void read(Reader& reader, napi_value value, Held& held) {
    held.type = reader.int32(value, "type");
    held.play_count = reader.int32(value, "play_count");
    held.position = reader.int32(value, "position");
    held.callback_on_progress_interval = reader.int32(value, "callback_on_progress_interval");
    held.sync_progress_to_record_frame = reader.boolean(value, "sync_progress_to_record_frame");
  }
};

}  // namespace corvane
