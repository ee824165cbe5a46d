// Fields of records about sound: capture, devices, mixing, players, recording, sound in space.
#pragma once

#include "core/fields.h"
#include "corvane_rtc/audio_config.h"
#include "corvane_rtc/audio_effect_player.h"
#include "corvane_rtc/audio_frame.h"
#include "corvane_rtc/audio_mixing.h"
#include "corvane_rtc/audio_properties.h"
#include "corvane_rtc/device_manager.h"
#include "corvane_rtc/media_player.h"
#include "corvane_rtc/position.h"
#include "corvane_rtc/range_audio.h"
#include "corvane_rtc/recording.h"
#include "corvane_rtc/recording_events.h"
#include "corvane_rtc/spatial_audio.h"

namespace corvane::scripted {

template <>
struct Fields<rtc::Position> {
  static constexpr auto kFields =
      std::tuple{Field{"x", &rtc::Position::x}, Field{"y", &rtc::Position::y}, Field{"z", &rtc::Position::z}};
};

template <>
struct Fields<rtc::AudioPropertiesConfig> {
  static constexpr auto kFields =
      std::tuple{Field{"interval", &rtc::AudioPropertiesConfig::interval},
                 Field{"enable_spectrum", &rtc::AudioPropertiesConfig::enable_spectrum},
                 Field{"enable_vad", &rtc::AudioPropertiesConfig::enable_vad},
                 Field{"local_main_report_mode", &rtc::AudioPropertiesConfig::local_main_report_mode},
                 Field{"smooth", &rtc::AudioPropertiesConfig::smooth},
                 Field{"audio_report_mode", &rtc::AudioPropertiesConfig::audio_report_mode},
                 Field{"enable_voice_pitch", &rtc::AudioPropertiesConfig::enable_voice_pitch}};
};

template <>
struct Fields<rtc::VoiceEqualizationConfig> {
  static constexpr auto kFields = std::tuple{Field{"frequency", &rtc::VoiceEqualizationConfig::frequency},
                                             Field{"gain", &rtc::VoiceEqualizationConfig::gain}};
};

template <>
struct Fields<rtc::VoiceReverbConfig> {
  static constexpr auto kFields = std::tuple{
      Field{"room_size", &rtc::VoiceReverbConfig::room_size}, Field{"decay_time", &rtc::VoiceReverbConfig::decay_time},
      Field{"damping", &rtc::VoiceReverbConfig::damping},     Field{"wet_gain", &rtc::VoiceReverbConfig::wet_gain},
      Field{"dry_gain", &rtc::VoiceReverbConfig::dry_gain},   Field{"pre_delay", &rtc::VoiceReverbConfig::pre_delay}};
};

template <>
struct Fields<rtc::AudioFormat> {
  static constexpr auto kFields =
      std::tuple{Field{"sample_rate", &rtc::AudioFormat::sample_rate}, Field{"channel", &rtc::AudioFormat::channel},
                 Field{"samples_per_call", &rtc::AudioFormat::samples_per_call}};
};

template <>
struct Fields<rtc::AudioMixingConfig> {
  static constexpr auto kFields =
      std::tuple{Field{"type", &rtc::AudioMixingConfig::type}, Field{"play_count", &rtc::AudioMixingConfig::play_count},
                 Field{"position", &rtc::AudioMixingConfig::position},
                 Field{"callback_on_progress_interval", &rtc::AudioMixingConfig::callback_on_progress_interval},
                 Field{"sync_progress_to_record_frame", &rtc::AudioMixingConfig::sync_progress_to_record_frame}};
};

template <>
struct Fields<rtc::AudioPropertiesInfo> {
  static constexpr auto kFields = std::tuple{Field{"linear_volume", &rtc::AudioPropertiesInfo::linear_volume},
                                             Field{"nonlinear_volume", &rtc::AudioPropertiesInfo::nonlinear_volume},
                                             Field{"vad", &rtc::AudioPropertiesInfo::vad},
                                             Field{"voice_pitch", &rtc::AudioPropertiesInfo::voice_pitch},
                                             Field{"spectrum", &rtc::AudioPropertiesInfo::spectrum}};
};

template <>
struct Fields<rtc::LocalAudioPropertiesInfo> {
  static constexpr auto kFields =
      std::tuple{Field{"stream_index", &rtc::LocalAudioPropertiesInfo::stream_index},
                 Field{"audio_properties_info", &rtc::LocalAudioPropertiesInfo::audio_properties_info}};
};

template <>
struct Fields<rtc::RemoteAudioPropertiesInfo> {
  static constexpr auto kFields =
      std::tuple{Field{"stream_key", &rtc::RemoteAudioPropertiesInfo::stream_key},
                 Field{"audio_properties_info", &rtc::RemoteAudioPropertiesInfo::audio_properties_info}};
};

template <>
struct Fields<rtc::AudioEffectPlayerConfig> {
  static constexpr auto kFields = std::tuple{Field{"type", &rtc::AudioEffectPlayerConfig::type},
                                             Field{"play_count", &rtc::AudioEffectPlayerConfig::play_count},
                                             Field{"pitch", &rtc::AudioEffectPlayerConfig::pitch},
                                             Field{"start_pos", &rtc::AudioEffectPlayerConfig::start_pos}};
};

template <>
struct Fields<rtc::MediaPlayerConfig> {
  static constexpr auto kFields =
      std::tuple{Field{"type", &rtc::MediaPlayerConfig::type},
                 Field{"play_count", &rtc::MediaPlayerConfig::play_count},
                 Field{"start_pos", &rtc::MediaPlayerConfig::start_pos},
                 Field{"callback_on_progress_interval", &rtc::MediaPlayerConfig::callback_on_progress_interval},
                 Field{"sync_progress_to_record_frame", &rtc::MediaPlayerConfig::sync_progress_to_record_frame},
                 Field{"auto_play", &rtc::MediaPlayerConfig::auto_play}};
};

template <>
struct Fields<rtc::MediaPlayerCustomSource> {
  static constexpr auto kFields = std::tuple{Field{"mode", &rtc::MediaPlayerCustomSource::mode},
                                             Field{"type", &rtc::MediaPlayerCustomSource::type}};
};

template <>
struct Fields<rtc::EchoTestConfig> {
  static constexpr auto kFields =
      std::tuple{Field{"audio_properties_report_interval", &rtc::EchoTestConfig::audio_properties_report_interval},
                 Field{"uid", &rtc::EchoTestConfig::uid}, Field{"room_id", &rtc::EchoTestConfig::room_id},
                 Field{"token", &rtc::EchoTestConfig::token}};
};

template <>
struct Fields<rtc::RecordingConfig> {
  static constexpr auto kFields = std::tuple{Field{"dir_path", &rtc::RecordingConfig::dir_path},
                                             Field{"file_type", &rtc::RecordingConfig::file_type}};
};

template <>
struct Fields<rtc::AudioRecordingConfig> {
  static constexpr auto kFields = std::tuple{
      Field{"absolute_file_name", &rtc::AudioRecordingConfig::absolute_file_name},
      Field{"frame_source", &rtc::AudioRecordingConfig::frame_source},
      Field{"sample_rate", &rtc::AudioRecordingConfig::sample_rate},
      Field{"channel", &rtc::AudioRecordingConfig::channel}, Field{"quality", &rtc::AudioRecordingConfig::quality}};
};

template <>
struct Fields<rtc::RecordingInfo> {
  static constexpr auto kFields =
      std::tuple{Field{"file_path", &rtc::RecordingInfo::file_path},
                 Field{"video_codec_type", &rtc::RecordingInfo::video_codec_type},
                 Field{"width", &rtc::RecordingInfo::width}, Field{"height", &rtc::RecordingInfo::height}};
};

template <>
struct Fields<rtc::RecordingProgress> {
  static constexpr auto kFields = std::tuple{Field{"duration", &rtc::RecordingProgress::duration},
                                             Field{"file_size", &rtc::RecordingProgress::file_size}};
};

template <>
struct Fields<rtc::ReceiveRange> {
  static constexpr auto kFields =
      std::tuple{Field{"min", &rtc::ReceiveRange::min}, Field{"max", &rtc::ReceiveRange::max}};
};

template <>
struct Fields<rtc::Orientation> {
  static constexpr auto kFields =
      std::tuple{Field{"x", &rtc::Orientation::x}, Field{"y", &rtc::Orientation::y}, Field{"z", &rtc::Orientation::z}};
};

template <>
struct Fields<rtc::HumanOrientation> {
  static constexpr auto kFields =
      std::tuple{Field{"forward", &rtc::HumanOrientation::forward}, Field{"right", &rtc::HumanOrientation::right},
                 Field{"up", &rtc::HumanOrientation::up}};
};

template <>
struct Fields<rtc::PositionInfo> {
  static constexpr auto kFields = std::tuple{Field{"position", &rtc::PositionInfo::position},
                                             Field{"orientation", &rtc::PositionInfo::orientation}};
};

}  // namespace corvane::scripted
