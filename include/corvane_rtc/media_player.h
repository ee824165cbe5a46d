// One long sound: a file, an address or samples that the application pushes.
#pragma once

#include "corvane_rtc/audio_effect_player.h"
#include "corvane_rtc/audio_frame.h"
#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// How a media player is opened.
struct MediaPlayerConfig {
  int32_t type;        ///< PlayerOutputType
  int32_t play_count;  ///< 0 or less repeats for ever
  int32_t start_pos;   ///< milliseconds from the start
  /// Milliseconds between progress events, at least 100; 0 or less for none.
  int64_t callback_on_progress_interval;
  bool sync_progress_to_record_frame;  ///< sends the progress along for setAudioAlignmentProperty()
  bool auto_play;                      ///< starts as soon as it is open
};

enum MediaPlayerCustomSourceMode : int32_t {
  kMediaPlayerCustomSourcePush = 0,  ///< the application calls pushExternalAudioFrame()
};

enum MediaPlayerCustomSourceType : int32_t {
  kMediaPlayerCustomSourcePCM = 0,  ///< signed 16-bit samples
};

/// A source that is not a file. Values a library does not know answer kNotSupported.
struct MediaPlayerCustomSource {
  int32_t mode;  ///< MediaPlayerCustomSourceMode
  int32_t type;  ///< MediaPlayerCustomSourceType
};

/// Which channels of stereo sound are heard.
enum PlayerDualMonoMode : int32_t {
  kPlayerDualMonoAuto = 0,  ///< both channels, as in the file
  kPlayerDualMonoLeft = 1,
  kPlayerDualMonoRight = 2,
  kPlayerDualMonoMix = 3,  ///< both, added up
};

/// Handler of one media player. Called on threads of the library, in order for each player; a callback returns soon
/// and calls no engine operation.
class IMediaPlayerEventHandler {
 public:
  /// state: PlayerState, error: PlayerError.
  virtual void onMediaPlayerStateChanged([[maybe_unused]] int32_t player_id, [[maybe_unused]] int32_t state,
                                         [[maybe_unused]] int32_t error) {}
  /// progress: milliseconds from the start.
  virtual void onMediaPlayerPlayingProgress([[maybe_unused]] int32_t player_id, [[maybe_unused]] int64_t progress) {}

 protected:
  ~IMediaPlayerEventHandler() = default;
};

/// One player, reached by its id through IRTCVideo::getMediaPlayer(). Belongs to the engine; threads as for IRTCVideo.
/// All times in milliseconds; volumes in percent, 0 to 400. Getters answer 0 or above, or a negative ReturnStatus.
/// kWrongState: nothing is open, or not playing where it must be.
class IMediaPlayer {
 public:
  /// A file path or an http(s) address. What was open before is closed.
  virtual int32_t open(const char* file_path, const MediaPlayerConfig& config) = 0;
  virtual int32_t openWithCustomSource(const MediaPlayerCustomSource& source, const MediaPlayerConfig& config) = 0;
  virtual int32_t start() = 0;
  virtual int32_t stop() = 0;
  virtual int32_t pause() = 0;
  virtual int32_t resume() = 0;
  virtual int32_t setVolume(int32_t volume, int32_t type) = 0;  ///< type: PlayerOutputType
  virtual int32_t getVolume(int32_t type) = 0;                  ///< type: PlayerOutputType, not both
  virtual int32_t getTotalDuration() = 0;
  virtual int32_t getPlaybackDuration() = 0;  ///< played so far, repeats included
  virtual int32_t getPosition() = 0;
  virtual int32_t setAudioPitch(int32_t pitch) = 0;  ///< semitones, -12 to 12
  virtual int32_t setPosition(int32_t position) = 0;
  virtual int32_t setAudioDualMonoMode(int32_t mode) = 0;  ///< PlayerDualMonoMode
  virtual int32_t getAudioTrackCount() = 0;
  virtual int32_t selectAudioTrack(int32_t index) = 0;        ///< 0 to getAudioTrackCount() - 1
  virtual int32_t setPlaybackSpeed(int32_t speed) = 0;        ///< percent, 50 to 200
  virtual int32_t setProgressInterval(int64_t interval) = 0;  ///< as callback_on_progress_interval
  virtual int32_t setLoudness(float loudness) = 0;            ///< LUFS aimed at, -70 to 0; 0 leaves sound unchanged
  /// The handler replaces the previous one and stays the caller's; null detaches. No call is inside the previous
  /// handler any more when this returns.
  virtual int32_t setEventHandler(IMediaPlayerEventHandler* handler) = 0;
  /// For a custom source. The frame stays the caller's: it is read during the call only.
  virtual int32_t pushExternalAudioFrame(IAudioFrame* audio_frame) = 0;

 protected:
  ~IMediaPlayer() = default;
};

}  // namespace corvane::rtc
