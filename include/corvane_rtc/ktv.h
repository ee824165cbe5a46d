// Karaoke: the music library and the player of its songs.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

class IKTVManagerEventHandler;
class IKTVPlayerEventHandler;

/// Bit mask; a song passes when it has everything that is set.
enum MusicFilterType : int32_t {
  kMusicFilterTypeNone = 0,
  kMusicFilterTypeWithoutLyric = 1,
  kMusicFilterTypeUnsupportedScore = 2,
  kMusicFilterTypeUnsupportedAccompany = 4,
  kMusicFilterTypeUnsupportedClimax = 8,
};

/// Bit mask of the hot lists wanted.
enum MusicHotType : int32_t {
  kMusicHotTypeContentCenter = 1,  ///< the catalogue's own
  kMusicHotTypeProject = 2,        ///< the application's own
};

enum DownloadLyricType : int32_t {
  kDownloadLyricTypeKRC = 0,  ///< timed by word
  kDownloadLyricTypeLRC = 1,  ///< timed by line
};

enum AudioTrackType : int32_t {
  kAudioTrackTypeOriginal = 1,
  kAudioTrackTypeAccompany = 2,
};

/// Who hears a song.
enum AudioPlayType : int32_t {
  kAudioPlayTypeLocal = 0,
  kAudioPlayTypeRemote = 1,
  kAudioPlayTypeLocalAndRemote = 2,
};

/// Plays downloaded songs, told apart by music_id. Belongs to the engine; threads as for IRTCVideo.
/// States and progress go to the event handler. kNotFound: the song has not been downloaded or does not play.
class IKTVPlayer {
 public:
  /// Stays the caller's; null detaches.
  virtual int32_t setEventHandler(IKTVPlayerEventHandler* event_handler) = 0;

  /// track_type: AudioTrackType; play_type: AudioPlayType.
  virtual int32_t playMusic(const char* music_id, int32_t track_type, int32_t play_type) = 0;
  virtual int32_t pauseMusic(const char* music_id) = 0;
  virtual int32_t resumeMusic(const char* music_id) = 0;
  virtual int32_t stopMusic(const char* music_id) = 0;
  virtual int32_t seekMusic(const char* music_id, int32_t position) = 0;     ///< milliseconds
  virtual int32_t setMusicVolume(const char* music_id, int32_t volume) = 0;  ///< percent, 0 to 400
  virtual int32_t switchAudioTrackType(const char* music_id) = 0;            ///< original to accompaniment and back
  virtual int32_t setMusicPitch(const char* music_id, int32_t pitch) = 0;    ///< semitones, -12 to 12

 protected:
  ~IKTVPlayer() = default;
};

/// The music library. Belongs to the engine; threads as for IRTCVideo. Answers go to the event handler.
class IKTVManager {
 public:
  /// Stays the caller's; null detaches.
  virtual int32_t setEventHandler(IKTVManagerEventHandler* event_handler) = 0;
  virtual IKTVPlayer* getKTVPlayer() = 0;  ///< null when the library does not offer one

  // Looking songs up. page_num from 1, page_size 1 to 100, filters a mask of MusicFilterType.

  virtual int32_t getMusicList(int32_t page_num, int32_t page_size, int32_t filters) = 0;
  virtual int32_t searchMusic(const char* key_word, int32_t page_num, int32_t page_size, int32_t filters) = 0;
  virtual int32_t getHotMusic(int32_t hot_types, int32_t filters) = 0;  ///< hot_types: mask of MusicHotType
  virtual int32_t getMusicDetail(const char* music_id) = 0;

  // Downloads. Results: the download id that the events repeat (above 0), or a negative ReturnStatus without events.

  virtual int32_t downloadMusic(const char* music_id) = 0;
  virtual int32_t downloadLyric(const char* music_id, int32_t lyric_type) = 0;  ///< DownloadLyricType
  virtual int32_t downloadMidi(const char* music_id) = 0;
  virtual int32_t cancelDownload(int32_t download_id) = 0;

  virtual int32_t setMaxCacheSize(int32_t max_cache_size_mb) = 0;  ///< MB; the oldest files go first
  virtual int32_t clearCache() = 0;

 protected:
  ~IKTVManager() = default;
};

}  // namespace corvane::rtc
