// Fields of records about mixing and pushing by the service.
#pragma once

#include "core/fields.h"
#include "corvane_rtc/stream_mixing.h"

namespace corvane::scripted {

template <>
struct Fields<rtc::MixImageParam> {
  static constexpr auto kFields = std::tuple{Field{"image_width", &rtc::MixImageParam::image_width},
                                             Field{"image_height", &rtc::MixImageParam::image_height}};
};

template <>
struct Fields<rtc::MixSpatialPosition> {
  static constexpr auto kFields =
      std::tuple{Field{"x", &rtc::MixSpatialPosition::x}, Field{"y", &rtc::MixSpatialPosition::y},
                 Field{"z", &rtc::MixSpatialPosition::z}};
};

template <>
struct Fields<rtc::TranscoderAudioParam> {
  static constexpr auto kFields =
      std::tuple{Field{"i32_sample_rate", &rtc::TranscoderAudioParam::i32_sample_rate},
                 Field{"i32_channel_num", &rtc::TranscoderAudioParam::i32_channel_num},
                 Field{"i32_bitrate_kbps", &rtc::TranscoderAudioParam::i32_bitrate_kbps},
                 Field{"audio_codec_profile", &rtc::TranscoderAudioParam::audio_codec_profile},
                 Field{"audio_codec_type", &rtc::TranscoderAudioParam::audio_codec_type}};
};

template <>
struct Fields<rtc::TranscoderVideoParam> {
  static constexpr auto kFields = std::tuple{Field{"i32_width", &rtc::TranscoderVideoParam::i32_width},
                                             Field{"i32_height", &rtc::TranscoderVideoParam::i32_height},
                                             Field{"i32_fps", &rtc::TranscoderVideoParam::i32_fps},
                                             Field{"i32_gop", &rtc::TranscoderVideoParam::i32_gop},
                                             Field{"i32_bitrate_kbps", &rtc::TranscoderVideoParam::i32_bitrate_kbps},
                                             Field{"video_codec_type", &rtc::TranscoderVideoParam::video_codec_type},
                                             Field{"b_frame", &rtc::TranscoderVideoParam::b_frame}};
};

template <>
struct Fields<rtc::TranscoderLayoutRegion> {
  static constexpr auto kFields = std::tuple{
      Field{"region_id", &rtc::TranscoderLayoutRegion::region_id},
      Field{"room_id", &rtc::TranscoderLayoutRegion::room_id},
      Field{"x", &rtc::TranscoderLayoutRegion::x},
      Field{"y", &rtc::TranscoderLayoutRegion::y},
      Field{"width", &rtc::TranscoderLayoutRegion::width},
      Field{"height", &rtc::TranscoderLayoutRegion::height},
      Field{"alpha", &rtc::TranscoderLayoutRegion::alpha},
      Field{"corner_radius", &rtc::TranscoderLayoutRegion::corner_radius},
      Field{"i32_z_order", &rtc::TranscoderLayoutRegion::i32_z_order},
      Field{"local_user", &rtc::TranscoderLayoutRegion::local_user},
      Field{"screen_stream", &rtc::TranscoderLayoutRegion::screen_stream},
      Field{"content_control", &rtc::TranscoderLayoutRegion::content_control},
      Field{"render_mode", &rtc::TranscoderLayoutRegion::render_mode},
      Field{"type", &rtc::TranscoderLayoutRegion::type},
      ListField{"data", &rtc::TranscoderLayoutRegion::data, "data_size", &rtc::TranscoderLayoutRegion::data_size},
      Field{"data_param", &rtc::TranscoderLayoutRegion::data_param},
      Field{"spatial_position", &rtc::TranscoderLayoutRegion::spatial_position},
      Field{"apply_spatial_audio", &rtc::TranscoderLayoutRegion::apply_spatial_audio}};
};

template <>
struct Fields<rtc::MixedStreamAudioConfig> {
  static constexpr auto kFields = std::tuple{Field{"sample_rate", &rtc::MixedStreamAudioConfig::sample_rate},
                                             Field{"channels", &rtc::MixedStreamAudioConfig::channels},
                                             Field{"bitrate", &rtc::MixedStreamAudioConfig::bitrate},
                                             Field{"audio_profile", &rtc::MixedStreamAudioConfig::audio_profile},
                                             Field{"audio_codec", &rtc::MixedStreamAudioConfig::audio_codec}};
};

template <>
struct Fields<rtc::MixedStreamVideoConfig> {
  static constexpr auto kFields = std::tuple{Field{"width", &rtc::MixedStreamVideoConfig::width},
                                             Field{"height", &rtc::MixedStreamVideoConfig::height},
                                             Field{"fps", &rtc::MixedStreamVideoConfig::fps},
                                             Field{"gop", &rtc::MixedStreamVideoConfig::gop},
                                             Field{"bitrate", &rtc::MixedStreamVideoConfig::bitrate},
                                             Field{"video_codec", &rtc::MixedStreamVideoConfig::video_codec},
                                             Field{"enable_bframe", &rtc::MixedStreamVideoConfig::enable_bframe}};
};

template <>
struct Fields<rtc::MixedStreamClientMixConfig> {
  static constexpr auto kFields =
      std::tuple{Field{"use_audio_mixer", &rtc::MixedStreamClientMixConfig::use_audio_mixer},
                 Field{"video_format", &rtc::MixedStreamClientMixConfig::video_format}};
};

template <>
struct Fields<rtc::MixedStreamServerControlConfig> {
  static constexpr auto kFields =
      std::tuple{Field{"enable_volume_indication", &rtc::MixedStreamServerControlConfig::enable_volume_indication},
                 Field{"volume_indication_interval", &rtc::MixedStreamServerControlConfig::volume_indication_interval},
                 Field{"talk_volume", &rtc::MixedStreamServerControlConfig::talk_volume},
                 Field{"is_add_volume_value", &rtc::MixedStreamServerControlConfig::is_add_volume_value},
                 Field{"sei_content_mode", &rtc::MixedStreamServerControlConfig::sei_content_mode},
                 Field{"sei_payload_type", &rtc::MixedStreamServerControlConfig::sei_payload_type},
                 Field{"sei_payload_uuid", &rtc::MixedStreamServerControlConfig::sei_payload_uuid},
                 Field{"media_type", &rtc::MixedStreamServerControlConfig::media_type},
                 Field{"push_stream_mode", &rtc::MixedStreamServerControlConfig::push_stream_mode}};
};

template <>
struct Fields<rtc::MixedStreamLayoutRegionConfig> {
  static constexpr auto kFields =
      std::tuple{Field{"region_id", &rtc::MixedStreamLayoutRegionConfig::region_id},
                 Field{"room_id", &rtc::MixedStreamLayoutRegionConfig::room_id},
                 Field{"alternate_image_url", &rtc::MixedStreamLayoutRegionConfig::alternate_image_url},
                 Field{"location_x", &rtc::MixedStreamLayoutRegionConfig::location_x},
                 Field{"location_y", &rtc::MixedStreamLayoutRegionConfig::location_y},
                 Field{"width", &rtc::MixedStreamLayoutRegionConfig::width},
                 Field{"height", &rtc::MixedStreamLayoutRegionConfig::height},
                 Field{"alpha", &rtc::MixedStreamLayoutRegionConfig::alpha},
                 Field{"corner_radius", &rtc::MixedStreamLayoutRegionConfig::corner_radius},
                 Field{"z_order", &rtc::MixedStreamLayoutRegionConfig::z_order},
                 Field{"is_local_user", &rtc::MixedStreamLayoutRegionConfig::is_local_user},
                 Field{"stream_type", &rtc::MixedStreamLayoutRegionConfig::stream_type},
                 Field{"media_type", &rtc::MixedStreamLayoutRegionConfig::media_type},
                 Field{"render_mode", &rtc::MixedStreamLayoutRegionConfig::render_mode},
                 Field{"region_content_type", &rtc::MixedStreamLayoutRegionConfig::region_content_type},
                 Field{"alternate_image_fill_mode", &rtc::MixedStreamLayoutRegionConfig::alternate_image_fill_mode},
                 ListField{"image_water_mark", &rtc::MixedStreamLayoutRegionConfig::image_water_mark,
                           "image_water_mark_size", &rtc::MixedStreamLayoutRegionConfig::image_water_mark_size},
                 Field{"image_water_mark_param", &rtc::MixedStreamLayoutRegionConfig::image_water_mark_param},
                 Field{"spatial_position", &rtc::MixedStreamLayoutRegionConfig::spatial_position},
                 Field{"apply_spatial_audio", &rtc::MixedStreamLayoutRegionConfig::apply_spatial_audio}};
};

template <>
struct Fields<rtc::PushSingleStreamParam> {
  static constexpr auto kFields =
      std::tuple{Field{"room_id", &rtc::PushSingleStreamParam::room_id}, Field{"uri", &rtc::PushSingleStreamParam::uri},
                 Field{"user_id", &rtc::PushSingleStreamParam::user_id},
                 Field{"is_screen_stream", &rtc::PushSingleStreamParam::is_screen_stream}};
};

template <>
struct Fields<rtc::PublicStreamAudioParam> {
  static constexpr auto kFields = std::tuple{Field{"sample_rate", &rtc::PublicStreamAudioParam::sample_rate},
                                             Field{"channel_num", &rtc::PublicStreamAudioParam::channel_num},
                                             Field{"bitrate_kbps", &rtc::PublicStreamAudioParam::bitrate_kbps}};
};

template <>
struct Fields<rtc::PublicStreamVideoParam> {
  static constexpr auto kFields =
      std::tuple{Field{"width", &rtc::PublicStreamVideoParam::width},
                 Field{"height", &rtc::PublicStreamVideoParam::height}, Field{"fps", &rtc::PublicStreamVideoParam::fps},
                 Field{"bitrate_kbps", &rtc::PublicStreamVideoParam::bitrate_kbps}};
};

template <>
struct Fields<rtc::PublicStreamSourceCrop> {
  static constexpr auto kFields =
      std::tuple{Field{"location_x", &rtc::PublicStreamSourceCrop::location_x},
                 Field{"location_y", &rtc::PublicStreamSourceCrop::location_y},
                 Field{"width_proportion", &rtc::PublicStreamSourceCrop::width_proportion},
                 Field{"height_proportion", &rtc::PublicStreamSourceCrop::height_proportion}};
};

template <>
struct Fields<rtc::PublicStreamRegion> {
  static constexpr auto kFields =
      std::tuple{Field{"room_id", &rtc::PublicStreamRegion::room_id},
                 Field{"user_id", &rtc::PublicStreamRegion::user_id},
                 Field{"alternate_image_uri", &rtc::PublicStreamRegion::alternate_image_uri},
                 Field{"x", &rtc::PublicStreamRegion::x},
                 Field{"y", &rtc::PublicStreamRegion::y},
                 Field{"width", &rtc::PublicStreamRegion::width},
                 Field{"height", &rtc::PublicStreamRegion::height},
                 Field{"alpha", &rtc::PublicStreamRegion::alpha},
                 Field{"z_order", &rtc::PublicStreamRegion::z_order},
                 Field{"stream_type", &rtc::PublicStreamRegion::stream_type},
                 Field{"media_type", &rtc::PublicStreamRegion::media_type},
                 Field{"render_mode", &rtc::PublicStreamRegion::render_mode},
                 Field{"source_crop", &rtc::PublicStreamRegion::source_crop}};
};

}  // namespace corvane::scripted
