// The rows of the handlers of players, songs and scores.

#include <array>
#include <span>

#include "corvane_rtc/audio_effect_player.h"
#include "corvane_rtc/ktv_events.h"
#include "corvane_rtc/media_player.h"
#include "corvane_rtc/sing_scoring_events.h"
#include "events/event_row.h"
#include "events/registry.h"
#include "records/audio.h"
#include "records/karaoke.h"

namespace corvane::scripted {

namespace {

using rtc::IAudioEffectPlayerEventHandler;
using rtc::IKTVManagerEventHandler;
using rtc::IKTVPlayerEventHandler;
using rtc::IMediaPlayerEventHandler;
using rtc::ISingScoringEventHandler;

constexpr auto kRows = std::to_array<EventRow>({
    event<&IAudioEffectPlayerEventHandler::onAudioEffectPlayerStateChanged>(
        "IAudioEffectPlayerEventHandler", "onAudioEffectPlayerStateChanged", "effect_id", "state", "error"),
    event<&IMediaPlayerEventHandler::onMediaPlayerStateChanged>("IMediaPlayerEventHandler", "onMediaPlayerStateChanged",
                                                                "player_id", "state", "error"),
    event<&IMediaPlayerEventHandler::onMediaPlayerPlayingProgress>(
        "IMediaPlayerEventHandler", "onMediaPlayerPlayingProgress", "player_id", "progress"),
    event<&IKTVManagerEventHandler::onMusicListResult>("IKTVManagerEventHandler", "onMusicListResult", "music_infos",
                                                       "music_count", "total_musics_size", "error_code"),
    event<&IKTVManagerEventHandler::onSearchMusicResult>("IKTVManagerEventHandler", "onSearchMusicResult",
                                                         "music_infos", "music_count", "total_musics_size",
                                                         "error_code"),
    event<&IKTVManagerEventHandler::onHotMusicResult>("IKTVManagerEventHandler", "onHotMusicResult", "hot_infos",
                                                      "hot_count", "error_code"),
    event<&IKTVManagerEventHandler::onMusicDetailResult>("IKTVManagerEventHandler", "onMusicDetailResult", "music_info",
                                                         "error_code"),
    event<&IKTVManagerEventHandler::onDownloadSuccess>("IKTVManagerEventHandler", "onDownloadSuccess", "download_id",
                                                       "download_info"),
    event<&IKTVManagerEventHandler::onDownloadFailed>("IKTVManagerEventHandler", "onDownloadFailed", "download_id",
                                                      "error_code"),
    event<&IKTVManagerEventHandler::onDownloadMusicProgress>("IKTVManagerEventHandler", "onDownloadMusicProgress",
                                                             "download_id", "download_percentage"),
    event<&IKTVManagerEventHandler::onClearCacheResult>("IKTVManagerEventHandler", "onClearCacheResult", "error_code"),
    event<&IKTVPlayerEventHandler::onPlayProgress>("IKTVPlayerEventHandler", "onPlayProgress", "music_id", "progress"),
    event<&IKTVPlayerEventHandler::onPlayStateChanged>("IKTVPlayerEventHandler", "onPlayStateChanged", "music_id",
                                                       "play_state", "error_code"),
    event<&ISingScoringEventHandler::onCurrentScoringInfo>("ISingScoringEventHandler", "onCurrentScoringInfo", "info"),
});

}  // namespace

std::span<const EventRow> playerEvents() {
  return kRows;
}

}  // namespace corvane::scripted
