// Fields of records about pictures: capture, effects, screens.
#pragma once

#include "core/fields.h"
#include "corvane_rtc/face_detection.h"
#include "corvane_rtc/screen_capture.h"
#include "corvane_rtc/video_config.h"
#include "corvane_rtc/video_effect.h"
#include "corvane_rtc/video_frame.h"

namespace corvane::scripted {

template <>
struct Fields<rtc::VideoEncoderConfig> {
  static constexpr auto kFields = std::tuple{Field{"width", &rtc::VideoEncoderConfig::width},
                                             Field{"height", &rtc::VideoEncoderConfig::height},
                                             Field{"frame_rate", &rtc::VideoEncoderConfig::frame_rate},
                                             Field{"max_bitrate", &rtc::VideoEncoderConfig::max_bitrate},
                                             Field{"min_bitrate", &rtc::VideoEncoderConfig::min_bitrate},
                                             Field{"encoder_preference", &rtc::VideoEncoderConfig::encoder_preference}};
};

template <>
struct Fields<rtc::VideoCaptureConfig> {
  static constexpr auto kFields =
      std::tuple{Field{"capture_preference", &rtc::VideoCaptureConfig::capture_preference},
                 Field{"frame_rate", &rtc::VideoCaptureConfig::frame_rate},
                 Field{"height", &rtc::VideoCaptureConfig::height}, Field{"width", &rtc::VideoCaptureConfig::width}};
};

template <>
struct Fields<rtc::VirtualBackgroundSource> {
  static constexpr auto kFields = std::tuple{Field{"source_type", &rtc::VirtualBackgroundSource::source_type},
                                             Field{"source_path", &rtc::VirtualBackgroundSource::source_path},
                                             Field{"source_color", &rtc::VirtualBackgroundSource::source_color}};
};

template <>
struct Fields<rtc::WatermarkPosition> {
  static constexpr auto kFields =
      std::tuple{Field{"width", &rtc::WatermarkPosition::width}, Field{"height", &rtc::WatermarkPosition::height},
                 Field{"x", &rtc::WatermarkPosition::x}, Field{"y", &rtc::WatermarkPosition::y}};
};

template <>
struct Fields<rtc::WatermarkConfig> {
  static constexpr auto kFields =
      std::tuple{Field{"visible_in_preview", &rtc::WatermarkConfig::visible_in_preview},
                 Field{"position_in_landscape_mode", &rtc::WatermarkConfig::position_in_landscape_mode},
                 Field{"position_in_portrait_mode", &rtc::WatermarkConfig::position_in_portrait_mode}};
};

template <>
struct Fields<rtc::VideoPreprocessorConfig> {
  static constexpr auto kFields =
      std::tuple{Field{"required_pixel_format", &rtc::VideoPreprocessorConfig::required_pixel_format}};
};

template <>
struct Fields<rtc::FaceDetectionResult> {
  static constexpr auto kFields = std::tuple{
      Field{"detect_result", &rtc::FaceDetectionResult::detect_result},
      ListField{"rect", &rtc::FaceDetectionResult::rect, "face_count", &rtc::FaceDetectionResult::face_count},
      Field{"image_width", &rtc::FaceDetectionResult::image_width},
      Field{"image_height", &rtc::FaceDetectionResult::image_height},
      Field{"frame_timestamp_us", &rtc::FaceDetectionResult::frame_timestamp_us}};
};

template <>
struct Fields<rtc::ScreenCaptureSourceInfo> {
  static constexpr auto kFields = std::tuple{Field{"type", &rtc::ScreenCaptureSourceInfo::type},
                                             Field{"source_id", &rtc::ScreenCaptureSourceInfo::source_id},
                                             Field{"source_name", &rtc::ScreenCaptureSourceInfo::source_name},
                                             Field{"application", &rtc::ScreenCaptureSourceInfo::application},
                                             Field{"pid", &rtc::ScreenCaptureSourceInfo::pid},
                                             Field{"primary_monitor", &rtc::ScreenCaptureSourceInfo::primary_monitor},
                                             Field{"region_rect", &rtc::ScreenCaptureSourceInfo::region_rect}};
};

template <>
struct Fields<rtc::ScreenFilterConfig> {
  static constexpr auto kFields =
      std::tuple{ListField{"excluded_window_list", &rtc::ScreenFilterConfig::excluded_window_list,
                           "excluded_window_count", &rtc::ScreenFilterConfig::excluded_window_count}};
};

template <>
struct Fields<rtc::ScreenHighlightConfig> {
  static constexpr auto kFields = std::tuple{Field{"enable_highlight", &rtc::ScreenHighlightConfig::enable_highlight},
                                             Field{"border_color", &rtc::ScreenHighlightConfig::border_color},
                                             Field{"border_width", &rtc::ScreenHighlightConfig::border_width}};
};

template <>
struct Fields<rtc::ScreenCaptureParameters> {
  static constexpr auto kFields =
      std::tuple{Field{"region_rect", &rtc::ScreenCaptureParameters::region_rect},
                 Field{"capture_mouse_cursor", &rtc::ScreenCaptureParameters::capture_mouse_cursor},
                 Field{"filter_config", &rtc::ScreenCaptureParameters::filter_config},
                 Field{"highlight_config", &rtc::ScreenCaptureParameters::highlight_config}};
};

}  // namespace corvane::scripted
