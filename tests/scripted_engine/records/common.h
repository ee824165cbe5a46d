// Fields of records that many domains share, and of the engine itself.
#pragma once

#include "core/fields.h"
#include "corvane_rtc/common.h"
#include "corvane_rtc/entry_points.h"
#include "corvane_rtc/feedback.h"
#include "corvane_rtc/messaging.h"
#include "corvane_rtc/network.h"
#include "corvane_rtc/stream_events.h"
#include "corvane_rtc/system_statistics.h"

namespace corvane::scripted {

template <>
struct Fields<rtc::StreamKey> {
  static constexpr auto kFields =
      std::tuple{Field{"room_id", &rtc::StreamKey::room_id}, Field{"user_id", &rtc::StreamKey::user_id},
                 Field{"stream_index", &rtc::StreamKey::stream_index}};
};

template <>
struct Fields<rtc::VideoFrameInfo> {
  static constexpr auto kFields =
      std::tuple{Field{"width", &rtc::VideoFrameInfo::width}, Field{"height", &rtc::VideoFrameInfo::height},
                 Field{"rotation", &rtc::VideoFrameInfo::rotation}};
};

template <>
struct Fields<rtc::Rectangle> {
  static constexpr auto kFields =
      std::tuple{Field{"x", &rtc::Rectangle::x}, Field{"y", &rtc::Rectangle::y}, Field{"width", &rtc::Rectangle::width},
                 Field{"height", &rtc::Rectangle::height}};
};

template <>
struct Fields<rtc::SysStats> {
  static constexpr auto kFields = std::tuple{Field{"cpu_cores", &rtc::SysStats::cpu_cores},
                                             Field{"cpu_app_usage", &rtc::SysStats::cpu_app_usage},
                                             Field{"cpu_total_usage", &rtc::SysStats::cpu_total_usage},
                                             Field{"memory_usage", &rtc::SysStats::memory_usage},
                                             Field{"full_memory", &rtc::SysStats::full_memory},
                                             Field{"total_memory_usage", &rtc::SysStats::total_memory_usage},
                                             Field{"free_memory", &rtc::SysStats::free_memory},
                                             Field{"memory_ratio", &rtc::SysStats::memory_ratio},
                                             Field{"total_memory_ratio", &rtc::SysStats::total_memory_ratio}};
};

template <>
struct Fields<rtc::SourceWantedData> {
  static constexpr auto kFields =
      std::tuple{Field{"width", &rtc::SourceWantedData::width}, Field{"height", &rtc::SourceWantedData::height},
                 Field{"frame_rate", &rtc::SourceWantedData::frame_rate}};
};

template <>
struct Fields<rtc::RtcUser> {
  static constexpr auto kFields =
      std::tuple{Field{"user_id", &rtc::RtcUser::user_id}, Field{"meta_data", &rtc::RtcUser::meta_data}};
};

template <>
struct Fields<rtc::RemoteStreamSwitch> {
  static constexpr auto kFields = std::tuple{Field{"uid", &rtc::RemoteStreamSwitch::uid},
                                             Field{"is_screen", &rtc::RemoteStreamSwitch::is_screen},
                                             Field{"before_video_index", &rtc::RemoteStreamSwitch::before_video_index},
                                             Field{"after_video_index", &rtc::RemoteStreamSwitch::after_video_index},
                                             Field{"before_enable", &rtc::RemoteStreamSwitch::before_enable},
                                             Field{"after_enable", &rtc::RemoteStreamSwitch::after_enable},
                                             Field{"reason", &rtc::RemoteStreamSwitch::reason}};
};

template <>
struct Fields<rtc::LogConfig> {
  static constexpr auto kFields =
      std::tuple{Field{"log_path", &rtc::LogConfig::log_path}, Field{"log_level", &rtc::LogConfig::log_level},
                 Field{"log_file_size", &rtc::LogConfig::log_file_size},
                 Field{"log_filename_prefix", &rtc::LogConfig::log_filename_prefix}};
};

template <>
struct Fields<rtc::StreamSyncInfoConfig> {
  static constexpr auto kFields = std::tuple{Field{"stream_index", &rtc::StreamSyncInfoConfig::stream_index},
                                             Field{"repeat_count", &rtc::StreamSyncInfoConfig::repeat_count},
                                             Field{"stream_type", &rtc::StreamSyncInfoConfig::stream_type}};
};

template <>
struct Fields<rtc::FeedbackRoomInfo> {
  static constexpr auto kFields =
      std::tuple{Field{"room_id", &rtc::FeedbackRoomInfo::room_id}, Field{"user_id", &rtc::FeedbackRoomInfo::user_id}};
};

template <>
struct Fields<rtc::FeedbackInfo> {
  static constexpr auto kFields = std::tuple{
      Field{"problem_desc", &rtc::FeedbackInfo::problem_desc},
      ListField{"room_info", &rtc::FeedbackInfo::room_info, "room_info_count", &rtc::FeedbackInfo::room_info_count}};
};

template <>
struct Fields<rtc::CloudProxyInfo> {
  static constexpr auto kFields = std::tuple{Field{"cloud_proxy_ip", &rtc::CloudProxyInfo::cloud_proxy_ip},
                                             Field{"cloud_proxy_port", &rtc::CloudProxyInfo::cloud_proxy_port}};
};

template <>
struct Fields<rtc::LocalProxyConfiguration> {
  static constexpr auto kFields =
      std::tuple{Field{"local_proxy_ip", &rtc::LocalProxyConfiguration::local_proxy_ip},
                 Field{"local_proxy_username", &rtc::LocalProxyConfiguration::local_proxy_username},
                 Field{"local_proxy_password", &rtc::LocalProxyConfiguration::local_proxy_password},
                 Field{"local_proxy_type", &rtc::LocalProxyConfiguration::local_proxy_type},
                 Field{"local_proxy_port", &rtc::LocalProxyConfiguration::local_proxy_port}};
};

}  // namespace corvane::scripted
