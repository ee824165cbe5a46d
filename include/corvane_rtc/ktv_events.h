// What the music library and its player report.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// Which kinds of lyrics a song has.
enum LyricStatus : int32_t {
  kLyricStatusNone = 0,
  kLyricStatusKRC = 1,
  kLyricStatusLRC = 2,
  kLyricStatusKRCAndLRC = 3,
};

/// One song of the library.
struct MusicInfo {
  const char* music_id;
  const char* music_name;
  const char* singer;
  const char* vendor_id;
  const char* vendor_name;
  int64_t update_timestamp;  ///< milliseconds since 1970 UTC
  const char* poster_url;
  int32_t lyric_status;       ///< LyricStatus
  int32_t duration;           ///< milliseconds
  bool enable_score;          ///< there is a melody to score by
  int32_t climax_start_time;  ///< milliseconds from the start; 0 without a climax
  int32_t climax_stop_time;   ///< milliseconds from the start; 0 without a climax
};

/// One list of popular songs.
struct HotMusicInfo {
  int32_t hot_type;  ///< MusicHotType
  const char* hot_name;
  const MusicInfo* musics;
  int32_t music_count;
};

enum DownloadFileType : int32_t {
  kDownloadFileTypeMusic = 1,
  kDownloadFileTypeKRC = 2,
  kDownloadFileTypeLRC = 3,
  kDownloadFileTypeMIDI = 4,
};

/// A file that has been downloaded.
struct DownloadResult {
  const char* local_file_path;
  const char* music_id;
  int32_t type;  ///< DownloadFileType
};

/// Results of the music library and its player.
enum KTVErrorCode : int32_t {
  kKTVErrorOk = 0,
  kKTVErrorInvalidParameter = 1,
  kKTVErrorMusicNotFound = 2,
  kKTVErrorNotDownloaded = 3,
  kKTVErrorNetwork = 4,
  kKTVErrorDiskFull = 5,
  kKTVErrorFileFailure = 6,
  kKTVErrorDecodeFailure = 7,
  kKTVErrorCancelled = 8,
  kKTVErrorNotPermitted = 9,
  kKTVErrorInternal = 10,
};

enum MusicPlayState : int32_t {
  kMusicPlayStatePlaying = 1,
  kMusicPlayStatePaused = 2,
  kMusicPlayStateStopped = 3,
  kMusicPlayStateFailed = 4,
  kMusicPlayStateFinished = 5,
};

/// Handler of the music library, given to IKTVManager::setEventHandler(). error_code: KTVErrorCode everywhere;
/// download_id: what the download operation returned.
///
/// Threads: called on threads of the library, in order for each download. A callback returns soon and calls no
/// engine operation. Lifetime: texts, records, lists and what they point to are valid during the callback only.
/// The handler stays the caller's and lives until replaced or until destroyRTCVideo() has returned.
class IKTVManagerEventHandler {
 public:
  /// Answers getMusicList(). total_musics_size: songs on all pages.
  virtual void onMusicListResult([[maybe_unused]] const MusicInfo* music_infos, [[maybe_unused]] int32_t music_count,
                                 [[maybe_unused]] int32_t total_musics_size, [[maybe_unused]] int32_t error_code) {}
  /// Answers searchMusic(). total_musics_size: songs on all pages.
  virtual void onSearchMusicResult([[maybe_unused]] const MusicInfo* music_infos, [[maybe_unused]] int32_t music_count,
                                   [[maybe_unused]] int32_t total_musics_size, [[maybe_unused]] int32_t error_code) {}
  virtual void onHotMusicResult([[maybe_unused]] const HotMusicInfo* hot_infos, [[maybe_unused]] int32_t hot_count,
                                [[maybe_unused]] int32_t error_code) {}
  /// music_info has empty texts and zeros when error_code is not 0.
  virtual void onMusicDetailResult([[maybe_unused]] const MusicInfo& music_info, [[maybe_unused]] int32_t error_code) {}
  virtual void onDownloadSuccess([[maybe_unused]] int32_t download_id,
                                 [[maybe_unused]] const DownloadResult& download_info) {}
  virtual void onDownloadFailed([[maybe_unused]] int32_t download_id, [[maybe_unused]] int32_t error_code) {}
  /// download_percentage: 0 to 100.
  virtual void onDownloadMusicProgress([[maybe_unused]] int32_t download_id,
                                       [[maybe_unused]] int32_t download_percentage) {}
  virtual void onClearCacheResult([[maybe_unused]] int32_t error_code) {}

 protected:
  ~IKTVManagerEventHandler() = default;
};

/// Handler of the player of songs, given to IKTVPlayer::setEventHandler(). Threads and lifetimes as for
/// IKTVManagerEventHandler; in order for each song.
class IKTVPlayerEventHandler {
 public:
  /// progress: milliseconds from the song's start, every second.
  virtual void onPlayProgress([[maybe_unused]] const char* music_id, [[maybe_unused]] int32_t progress) {}
  /// play_state: MusicPlayState, error_code: KTVErrorCode.
  virtual void onPlayStateChanged([[maybe_unused]] const char* music_id, [[maybe_unused]] int32_t play_state,
                                  [[maybe_unused]] int32_t error_code) {}

 protected:
  ~IKTVPlayerEventHandler() = default;
};

}  // namespace corvane::rtc
