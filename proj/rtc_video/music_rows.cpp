// The music library and the player of its songs. Answers come as events.
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"

namespace corvane {
namespace {

using Library = rtc::IKTVManager;
using Player = rtc::IKTVPlayer;

constexpr char kNotMusicId[] = "%s(%d), Param is invalid, music_id";
constexpr char kNotPageNum[] = "%s(%d), Param is invalid, page_num";
constexpr char kNotPageSize[] = "%s(%d), Param is invalid, page_size";
constexpr char kNotFilters[] = "%s(%d), Param is invalid, filters";

constexpr Row kRows[] = {
    plain<&Library::setMaxCacheSize>("setMaxCacheSize")
        .enters(nullptr)
        .refuses("%s(%d), Param is invalid, max_cache_size_MB")
        .says("+%s(%d), max_cache_size_MB = %d"),
    plain<&Library::getMusicList>("getMusicList")
        .enters(nullptr)
        .refuses(0, kNotPageNum)
        .refuses(1, kNotPageSize)
        .refuses(2, kNotFilters)
        .says("+%s(%d), page_num = %d, page_size= %d, filters=%d"),
    plain<&Library::searchMusic>("searchMusic")
        .enters(nullptr)
        .refuses(0, "%s(%d), Param is invalid, key_world")
        .refuses(1, kNotPageNum)
        .refuses(2, kNotPageSize)
        .refuses(3, kNotFilters)
        .says("+%s(%d),key_world= %s,  page_num = %d, page_size= %d, filters=%d"),
    plain<&Library::getHotMusic>("getHotMusic")
        .refuses(0, "%s(%d), Param is invalid, hot_types")
        .refuses(1, kNotFilters),
    plain<&Library::getMusicDetail>("getMusicDetail").refuses(kNotMusicId),
    plain<&Library::downloadMusic>("downloadMusic").refuses(kNotMusicId),
    plain<&Library::downloadLyric>("downloadLyric")
        .refuses(0, kNotMusicId)
        .refuses(1, "%s(%d), Param is invalid, type"),
    plain<&Library::downloadMidi>("downloadMidi").refuses(kNotMusicId),
    plain<&Library::cancelDownload>("cancelDownload").refuses("%s(%d), Param is invalid, download_id"),
    plain<&Library::clearCache>("clearCache"),

    plain<&Player::playMusic>("playMusic")
        .refuses(0, kNotMusicId)
        .refuses(1, "%s(%d), Param is invalid, track_type")
        .refuses(2, "%s(%d), Param is invalid, play_type"),
    plain<&Player::pauseMusic>("pauseMusic").refuses(kNotMusicId),
    plain<&Player::resumeMusic>("resumeMusic").refuses(kNotMusicId),
    plain<&Player::stopMusic>("stopMusic").refuses(kNotMusicId),
    plain<&Player::seekMusic>("seekMusic").refuses(0, kNotMusicId).refuses(1, "%s(%d), Param is invalid, position"),
    plain<&Player::setMusicVolume>("setMusicVolume")
        .refuses(0, kNotMusicId)
        .refuses(1, "%s(%d), Param is invalid, volume"),
    plain<&Player::switchAudioTrackType>("switchAudioTrackType").refuses(kNotMusicId),
    plain<&Player::setMusicPitch>("setMusicPitch")
        .refuses(0, kNotMusicId)
        .refuses(1, "%s(%d), Param is invalid, pitch"),
};

}  // namespace

std::span<const Row> musicRows() {
  return kRows;
}

}  // namespace corvane
