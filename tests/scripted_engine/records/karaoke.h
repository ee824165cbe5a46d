// Fields of records about songs and scores.
#pragma once

#include "core/fields.h"
#include "corvane_rtc/ktv_events.h"
#include "corvane_rtc/sing_scoring.h"
#include "corvane_rtc/sing_scoring_events.h"

namespace corvane::scripted {

template <>
struct Fields<rtc::MusicInfo> {
  static constexpr auto kFields = std::tuple{Field{"music_id", &rtc::MusicInfo::music_id},
                                             Field{"music_name", &rtc::MusicInfo::music_name},
                                             Field{"singer", &rtc::MusicInfo::singer},
                                             Field{"vendor_id", &rtc::MusicInfo::vendor_id},
                                             Field{"vendor_name", &rtc::MusicInfo::vendor_name},
                                             Field{"update_timestamp", &rtc::MusicInfo::update_timestamp},
                                             Field{"poster_url", &rtc::MusicInfo::poster_url},
                                             Field{"lyric_status", &rtc::MusicInfo::lyric_status},
                                             Field{"duration", &rtc::MusicInfo::duration},
                                             Field{"enable_score", &rtc::MusicInfo::enable_score},
                                             Field{"climax_start_time", &rtc::MusicInfo::climax_start_time},
                                             Field{"climax_stop_time", &rtc::MusicInfo::climax_stop_time}};
};

template <>
struct Fields<rtc::HotMusicInfo> {
  static constexpr auto kFields =
      std::tuple{Field{"hot_type", &rtc::HotMusicInfo::hot_type}, Field{"hot_name", &rtc::HotMusicInfo::hot_name},
                 ListField{"musics", &rtc::HotMusicInfo::musics, "music_count", &rtc::HotMusicInfo::music_count}};
};

template <>
struct Fields<rtc::DownloadResult> {
  static constexpr auto kFields =
      std::tuple{Field{"local_file_path", &rtc::DownloadResult::local_file_path},
                 Field{"music_id", &rtc::DownloadResult::music_id}, Field{"type", &rtc::DownloadResult::type}};
};

template <>
struct Fields<rtc::SingScoringConfig> {
  static constexpr auto kFields = std::tuple{Field{"sample_rate", &rtc::SingScoringConfig::sample_rate},
                                             Field{"mode", &rtc::SingScoringConfig::mode},
                                             Field{"lyrics_filepath", &rtc::SingScoringConfig::lyrics_filepath},
                                             Field{"midi_filepath", &rtc::SingScoringConfig::midi_filepath}};
};

template <>
struct Fields<rtc::StandardPitchInfo> {
  static constexpr auto kFields =
      std::tuple{Field{"start_time", &rtc::StandardPitchInfo::start_time},
                 Field{"duration", &rtc::StandardPitchInfo::duration}, Field{"pitch", &rtc::StandardPitchInfo::pitch}};
};

template <>
struct Fields<rtc::SingScoringRealtimeInfo> {
  static constexpr auto kFields = std::tuple{Field{"current_position", &rtc::SingScoringRealtimeInfo::current_position},
                                             Field{"user_pitch", &rtc::SingScoringRealtimeInfo::user_pitch},
                                             Field{"standard_pitch", &rtc::SingScoringRealtimeInfo::standard_pitch},
                                             Field{"sentence_index", &rtc::SingScoringRealtimeInfo::sentence_index},
                                             Field{"sentence_score", &rtc::SingScoringRealtimeInfo::sentence_score},
                                             Field{"total_score", &rtc::SingScoringRealtimeInfo::total_score},
                                             Field{"average_score", &rtc::SingScoringRealtimeInfo::average_score}};
};

}  // namespace corvane::scripted
