// The music library and its player.

#include <string>

#include "events/observer.h"
#include "events/observers/report.h"
#include "events/owned_list.h"

namespace corvane {
namespace {

struct OwnedMusic {
  explicit OwnedMusic(const rtc::MusicInfo& info)
      : music_id(owned(info.music_id)),
        music_name(owned(info.music_name)),
        singer(owned(info.singer)),
        vendor_id(owned(info.vendor_id)),
        vendor_name(owned(info.vendor_name)),
        update_timestamp(info.update_timestamp),
        poster_url(owned(info.poster_url)),
        lyric_status(info.lyric_status),
        duration(info.duration),
        enable_score(info.enable_score),
        climax_start_time(info.climax_start_time),
        climax_stop_time(info.climax_stop_time) {}

  std::string music_id;
  std::string music_name;
  std::string singer;
  std::string vendor_id;
  std::string vendor_name;
  int64_t update_timestamp;
  std::string poster_url;
  int32_t lyric_status;
  int32_t duration;
  bool enable_score;
  int32_t climax_start_time;
  int32_t climax_stop_time;
};

std::vector<OwnedMusic> ownedMusics(const rtc::MusicInfo* infos, int32_t count) {
  return ownedList(infos, count, [](const rtc::MusicInfo& info) { return OwnedMusic(info); });
}

struct OwnedHotMusic {
  explicit OwnedHotMusic(const rtc::HotMusicInfo& info)
      : hot_type(info.hot_type), hot_name(owned(info.hot_name)), musics(ownedMusics(info.musics, info.music_count)) {}

  int32_t hot_type;
  std::string hot_name;
  std::vector<OwnedMusic> musics;
};

void putMusic(Payload& object, const OwnedMusic& music) {
  object.put("music_id", music.music_id);
  object.put("music_name", music.music_name);
  object.put("singer", music.singer);
  object.put("vendor_id", music.vendor_id);
  object.put("vendor_name", music.vendor_name);
  object.put("update_timestamp", music.update_timestamp);
  object.put("poster_url", music.poster_url);
  object.put("lyric_status", music.lyric_status);
  object.put("duration", music.duration);
  object.put("enable_score", music.enable_score);
  object.put("climax_start_time", music.climax_start_time);
  object.put("climax_stop_time", music.climax_stop_time);
}

// One page of songs, listed or searched for.
void reportMusicPage(const char* event, const rtc::MusicInfo* infos, int32_t count, int32_t total_musics_size,
                     int32_t error_code, int32_t line = __builtin_LINE()) {
  report(
      event,
      [=, musics = ownedMusics(infos, count)](Payload& payload) {
        payload.list("music_infos", musics, putMusic);
        payload.put("total_musics_size", total_musics_size);
        payload.put("error_code", error_code);
      },
      kLogInfo, line);
}

}  // namespace

void KavRTCObserver::onMusicListResult(const rtc::MusicInfo* music_infos, int32_t music_count,
                                       int32_t total_musics_size, int32_t error_code) {
  reportMusicPage(__func__, music_infos, music_count, total_musics_size, error_code);
}

void KavRTCObserver::onSearchMusicResult(const rtc::MusicInfo* music_infos, int32_t music_count,
                                         int32_t total_musics_size, int32_t error_code) {
  reportMusicPage(__func__, music_infos, music_count, total_musics_size, error_code);
}

void KavRTCObserver::onHotMusicResult(const rtc::HotMusicInfo* hot_infos, int32_t hot_count, int32_t error_code) {
  auto lists = ownedList(hot_infos, hot_count, [](const rtc::HotMusicInfo& info) { return OwnedHotMusic(info); });
  report(__func__, [error_code, lists = std::move(lists)](Payload& payload) {
    payload.list("hot_infos", lists, [](Payload& object, const OwnedHotMusic& list) {
      object.put("hot_type", list.hot_type);
      object.put("hot_name", list.hot_name);
      object.list("musics", list.musics, putMusic);
    });
    payload.put("error_code", error_code);
  });
}

void KavRTCObserver::onMusicDetailResult(const rtc::MusicInfo& music_info, int32_t error_code) {
  LogWrite(kLogInfo, "+%s(%d),", __func__, __LINE__);
  report(__func__, [error_code, music = OwnedMusic(music_info)](Payload& payload) {
    payload.object("music_info", [&](Payload& object) { putMusic(object, music); });
    payload.put("error_code", error_code);
  });
}

void KavRTCObserver::onDownloadSuccess(int32_t download_id, const rtc::DownloadResult& download_info) {
  report(__func__, [download_id, path = owned(download_info.local_file_path), music = owned(download_info.music_id),
                    type = download_info.type](Payload& payload) {
    payload.put("download_id", download_id);
    payload.object("download_info", [&](Payload& object) {
      object.put("local_file_path", path);
      object.put("music_id", music);
      object.put("type", type);
    });
  });
}

void KavRTCObserver::onDownloadFailed(int32_t download_id, int32_t error_code) {
  report(__func__, [=](Payload& payload) {
    payload.put("download_id", download_id);
    payload.put("error_code", error_code);
  });
}

void KavRTCObserver::onDownloadMusicProgress(int32_t download_id, int32_t download_percentage) {
  report(__func__, [=](Payload& payload) {
    payload.put("download_id", download_id);
    payload.put("download_percentage", download_percentage);
  });
}

void KavRTCObserver::onClearCacheResult(int32_t error_code) {
  report(__func__, [error_code](Payload& payload) { payload.put("error_code", error_code); });
}

void KavRTCObserver::onPlayProgress(const char* music_id, int32_t progress) {
  report(__func__, [progress, music = owned(music_id)](Payload& payload) {
    payload.put("music_id", music);
    payload.put("progress", progress);
  });
}

void KavRTCObserver::onPlayStateChanged(const char* music_id, int32_t play_state, int32_t error_code) {
  report(__func__, [=, music = owned(music_id)](Payload& payload) {
    payload.put("music_id", music);
    payload.put("play_state", play_state);
    payload.put("error_code", error_code);
  });
}

}  // namespace corvane
