// Players of effects, media and songs, the song library and scores.
#pragma once

#include <string>

#include "core/attachments.h"
#include "core/scripted_object.h"
#include "corvane_rtc/audio_effect_player.h"
#include "corvane_rtc/ktv.h"
#include "corvane_rtc/ktv_events.h"
#include "corvane_rtc/media_player.h"
#include "corvane_rtc/sing_scoring.h"
#include "corvane_rtc/sing_scoring_events.h"
#include "frames/audio_frame.h"
#include "objects/releasable.h"
#include "records/audio.h"
#include "records/karaoke.h"

namespace corvane::scripted {

class AudioEffectPlayer final : public rtc::IAudioEffectPlayer, public ScriptedObject {
 public:
  AudioEffectPlayer() : ScriptedObject("IAudioEffectPlayer") {}

  int32_t start(int32_t effect_id, const char* file_path, const rtc::AudioEffectPlayerConfig& config) override {
    return call("start", arg("effect_id", effect_id), arg("file_path", file_path), arg("config", config));
  }
  int32_t stop(int32_t effect_id) override { return call("stop", arg("effect_id", effect_id)); }
  int32_t stopAll() override { return call("stopAll"); }
  int32_t preload(int32_t effect_id, const char* file_path) override {
    return call("preload", arg("effect_id", effect_id), arg("file_path", file_path));
  }
  int32_t unload(int32_t effect_id) override { return call("unload", arg("effect_id", effect_id)); }
  int32_t unloadAll() override { return call("unloadAll"); }
  int32_t pause(int32_t effect_id) override { return call("pause", arg("effect_id", effect_id)); }
  int32_t pauseAll() override { return call("pauseAll"); }
  int32_t resume(int32_t effect_id) override { return call("resume", arg("effect_id", effect_id)); }
  int32_t resumeAll() override { return call("resumeAll"); }
  int32_t setPosition(int32_t effect_id, int32_t position) override {
    return call("setPosition", arg("effect_id", effect_id), arg("position", position));
  }
  int32_t getPosition(int32_t effect_id) override { return call("getPosition", arg("effect_id", effect_id)); }
  int32_t setVolume(int32_t effect_id, int32_t volume) override {
    return call("setVolume", arg("effect_id", effect_id), arg("volume", volume));
  }
  int32_t setVolumeAll(int32_t volume) override { return call("setVolumeAll", arg("volume", volume)); }
  int32_t getVolume(int32_t effect_id) override { return call("getVolume", arg("effect_id", effect_id)); }
  int32_t getDuration(int32_t effect_id) override { return call("getDuration", arg("effect_id", effect_id)); }
  int32_t setEventHandler(rtc::IAudioEffectPlayerEventHandler* handler) override {
    Attachments::instance().attach("IAudioEffectPlayerEventHandler", {}, handler, nullptr, Attachments::kWait);
    return call("setEventHandler", arg("handler", handler));
  }
};

class MediaPlayer final : public rtc::IMediaPlayer, public ScriptedObject {
 public:
  explicit MediaPlayer(int32_t player_id) : ScriptedObject("IMediaPlayer", std::to_string(player_id)) {}

  int32_t open(const char* file_path, const rtc::MediaPlayerConfig& config) override {
    return call("open", arg("file_path", file_path), arg("config", config));
  }
  int32_t openWithCustomSource(const rtc::MediaPlayerCustomSource& source,
                               const rtc::MediaPlayerConfig& config) override {
    return call("openWithCustomSource", arg("source", source), arg("config", config));
  }
  int32_t start() override { return call("start"); }
  int32_t stop() override { return call("stop"); }
  int32_t pause() override { return call("pause"); }
  int32_t resume() override { return call("resume"); }
  int32_t setVolume(int32_t volume, int32_t type) override {
    return call("setVolume", arg("volume", volume), arg("type", type));
  }
  int32_t getVolume(int32_t type) override { return call("getVolume", arg("type", type)); }
  int32_t getTotalDuration() override { return call("getTotalDuration"); }
  int32_t getPlaybackDuration() override { return call("getPlaybackDuration"); }
  int32_t getPosition() override { return call("getPosition"); }
  int32_t setAudioPitch(int32_t pitch) override { return call("setAudioPitch", arg("pitch", pitch)); }
  int32_t setPosition(int32_t position) override { return call("setPosition", arg("position", position)); }
  int32_t setAudioDualMonoMode(int32_t mode) override { return call("setAudioDualMonoMode", arg("mode", mode)); }
  int32_t getAudioTrackCount() override { return call("getAudioTrackCount"); }
  int32_t selectAudioTrack(int32_t index) override { return call("selectAudioTrack", arg("index", index)); }
  int32_t setPlaybackSpeed(int32_t speed) override { return call("setPlaybackSpeed", arg("speed", speed)); }
  int32_t setProgressInterval(int64_t interval) override {
    return call("setProgressInterval", arg("interval", interval));
  }
  int32_t setLoudness(float loudness) override { return call("setLoudness", arg("loudness", loudness)); }
  int32_t setEventHandler(rtc::IMediaPlayerEventHandler* handler) override {
    Attachments::instance().attach("IMediaPlayerEventHandler", id(), handler, nullptr, Attachments::kWait);
    return call("setEventHandler", arg("handler", handler));
  }
  int32_t pushExternalAudioFrame(rtc::IAudioFrame* audio_frame) override {
    return call("pushExternalAudioFrame", arg("audio_frame", describeFrameOrNull(audio_frame)));
  }
};

class KTVPlayer final : public rtc::IKTVPlayer, public ScriptedObject {
 public:
  KTVPlayer() : ScriptedObject("IKTVPlayer") {}

  int32_t setEventHandler(rtc::IKTVPlayerEventHandler* event_handler) override {
    Attachments::instance().attach("IKTVPlayerEventHandler", {}, event_handler, nullptr, Attachments::kWait);
    return call("setEventHandler", arg("event_handler", event_handler));
  }
  int32_t playMusic(const char* music_id, int32_t track_type, int32_t play_type) override {
    return call("playMusic", arg("music_id", music_id), arg("track_type", track_type), arg("play_type", play_type));
  }
  int32_t pauseMusic(const char* music_id) override { return call("pauseMusic", arg("music_id", music_id)); }
  int32_t resumeMusic(const char* music_id) override { return call("resumeMusic", arg("music_id", music_id)); }
  int32_t stopMusic(const char* music_id) override { return call("stopMusic", arg("music_id", music_id)); }
  int32_t seekMusic(const char* music_id, int32_t position) override {
    return call("seekMusic", arg("music_id", music_id), arg("position", position));
  }
  int32_t setMusicVolume(const char* music_id, int32_t volume) override {
    return call("setMusicVolume", arg("music_id", music_id), arg("volume", volume));
  }
  int32_t switchAudioTrackType(const char* music_id) override {
    return call("switchAudioTrackType", arg("music_id", music_id));
  }
  int32_t setMusicPitch(const char* music_id, int32_t pitch) override {
    return call("setMusicPitch", arg("music_id", music_id), arg("pitch", pitch));
  }
};

class KTVManager final : public rtc::IKTVManager, public ScriptedObject {
 public:
  KTVManager() : ScriptedObject("IKTVManager") {}

  int32_t setEventHandler(rtc::IKTVManagerEventHandler* event_handler) override {
    Attachments::instance().attach("IKTVManagerEventHandler", {}, event_handler, nullptr, Attachments::kWait);
    return call("setEventHandler", arg("event_handler", event_handler));
  }
  rtc::IKTVPlayer* getKTVPlayer() override { return offer<rtc::IKTVPlayer>("getKTVPlayer", &player_); }
  int32_t getMusicList(int32_t page_num, int32_t page_size, int32_t filters) override {
    return call("getMusicList", arg("page_num", page_num), arg("page_size", page_size), arg("filters", filters));
  }
  int32_t searchMusic(const char* key_word, int32_t page_num, int32_t page_size, int32_t filters) override {
    return call("searchMusic", arg("key_word", key_word), arg("page_num", page_num), arg("page_size", page_size),
                arg("filters", filters));
  }
  int32_t getHotMusic(int32_t hot_types, int32_t filters) override {
    return call("getHotMusic", arg("hot_types", hot_types), arg("filters", filters));
  }
  int32_t getMusicDetail(const char* music_id) override { return call("getMusicDetail", arg("music_id", music_id)); }
  int32_t downloadMusic(const char* music_id) override {
    return callForId<int32_t>("downloadMusic", arg("music_id", music_id));
  }
  int32_t downloadLyric(const char* music_id, int32_t lyric_type) override {
    return callForId<int32_t>("downloadLyric", arg("music_id", music_id), arg("lyric_type", lyric_type));
  }
  int32_t downloadMidi(const char* music_id) override {
    return callForId<int32_t>("downloadMidi", arg("music_id", music_id));
  }
  int32_t cancelDownload(int32_t download_id) override {
    return call("cancelDownload", arg("download_id", download_id));
  }
  int32_t setMaxCacheSize(int32_t max_cache_size_mb) override {
    return call("setMaxCacheSize", arg("max_cache_size_mb", max_cache_size_mb));
  }
  int32_t clearCache() override { return call("clearCache"); }

  void endAll() {
    end();
    player_.end();
  }

 private:
  KTVPlayer player_;
};

class SingScoringManager final : public rtc::ISingScoringManager, public ScriptedObject {
 public:
  SingScoringManager() : ScriptedObject("ISingScoringManager") {}

  int32_t initSingScoring(const char* sing_scoring_appkey, const char* sing_scoring_token,
                          rtc::ISingScoringEventHandler* event_handler) override {
    Attachments::instance().attach("ISingScoringEventHandler", {}, event_handler, nullptr, Attachments::kWait);
    return call("initSingScoring", arg("sing_scoring_appkey", sing_scoring_appkey),
                arg("sing_scoring_token", sing_scoring_token), arg("event_handler", event_handler));
  }
  int32_t setSingScoringConfig(const rtc::SingScoringConfig& config) override {
    return call("setSingScoringConfig", arg("config", config));
  }
  int32_t startSingScoring(int32_t position, int32_t scoring_info_interval) override {
    return call("startSingScoring", arg("position", position), arg("scoring_info_interval", scoring_info_interval));
  }
  int32_t stopSingScoring() override { return call("stopSingScoring"); }
  int32_t getLastSentenceScore() override { return call("getLastSentenceScore"); }
  int32_t getTotalScore() override { return call("getTotalScore"); }
  int32_t getAverageScore() override { return call("getAverageScore"); }
  rtc::IStandardPitchCollection* getStandardPitchInfo(const char* midi_filepath) override {
    note("getStandardPitchInfo", arg("midi_filepath", midi_filepath));
    const auto notes = answer("getStandardPitchInfo");
    if (isWithheld("getStandardPitchInfo") || (notes && notes->isNull())) {
      return nullptr;
    }
    return new StandardPitches(notes.value_or(Value()));
  }
};

}  // namespace corvane::scripted
