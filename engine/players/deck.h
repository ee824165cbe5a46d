// Plays one sound: what effects, media players and audio mixing have in common.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "core/engine_context.h"
#include "players/pcm_queue.h"
#include "players/preload.h"
#include "players/sound_decoder.h"
#include "players/voice.h"
#include "players/voice_mix.h"

namespace corvane::rtc {

/// What is fixed for one playing.
struct DeckConfig {
  int32_t play_count = 1;  ///< 0 or less for ever
  int64_t start_ms = 0;
  bool waits = false;   ///< it is opened, and start() is waited for
  bool starts = false;  ///< start() is not waited for, after all
};

/// Operations: any thread; their results are ReturnStatus, or values of 0 and above. Kept by shared pointers alone.
class Deck final : public std::enable_shared_from_this<Deck>, private SoundDecoder::Listener {
 public:
  /// Called on the engine thread, in the order in which things happened.
  struct Events {
    std::function<void(PlayerState state, PlayerError error)> state;
    std::function<void(int64_t position_ms)> progress;
  };

  Deck(EngineContext& context, VoiceMix& mix, Events events);

  // What is played. Whatever was played before is over, without a word of it.

  void openFile(std::string path, const DeckConfig& config);
  void openPreloaded(std::shared_ptr<Preload> preload, const DeckConfig& config);
  void openPushed(const DeckConfig& config);

  int32_t start();  ///< also again, once it was stopped or has finished
  int32_t stop();
  int32_t pause();
  int32_t resume();
  /// Tells a state that is none of the deck's own, after those that are.
  void tell(PlayerState state, PlayerError error);

  int32_t setPosition(int64_t ms);
  int32_t selectTrack(int32_t track);
  /// For pushed sound, 48 kHz in two channels: all of it, or kFailure when half a second waits already.
  int32_t push(std::span<const int16_t> samples);
  /// change(VoiceSettings&), which hold for everything that is played.
  template <class F>
  void change(F&& change) {
    const std::lock_guard lock(mutex_);
    change(settings_);
    if (voice_ != nullptr) voice_->set(settings_);
  }

  bool active() const;  ///< plays or pauses, or is about to
  VoiceSettings settings() const;
  int64_t position() const;
  int64_t played() const;
  int64_t duration() const;
  int32_t tracks() const;

  /// Engine thread, the last call: nothing is played or told afterwards.
  void shutDown();

 private:
  enum class Source { kNone, kFile, kMemory, kPushed };

  void onDecoderReady(int64_t duration_ms, int32_t tracks) override;
  void onDecoderFailed(const DecodingFault& fault) override;
  void onSeekFailed() override;
  void onVoiceEnded(int64_t load);
  void onVoiceProgress(int64_t load, int64_t position_ms);

  // With mutex_ held.
  bool isActive() const;
  bool isOpen() const;
  void begin(Source source, const DeckConfig& config);
  void openDecoder();
  void close();
  void loaded(std::shared_ptr<PcmSource> source, int64_t duration_ms, int32_t tracks);
  void enter(PlayerState state, PlayerError error = kPlayerErrorOk);
  void fail(PlayerError error);

  EngineContext& context_;
  VoiceMix& mix_;
  const Events events_;

  mutable std::mutex mutex_;
  PlayerState state_ = kPlayerStateIdle;
  bool loading_ = false;  // state_ is told when it is there
  bool waits_ = false;    // opened, for start()
  int64_t load_ = 0;      // counts what is played: what comes late is not mistaken for news of the present
  Source source_ = Source::kNone;
  std::string path_;
  std::shared_ptr<Preload> preload_;
  DeckConfig config_;
  VoiceSettings settings_;
  std::shared_ptr<PcmQueue> queue_;
  std::shared_ptr<PcmMemorySource> memory_;
  std::shared_ptr<Voice> voice_;
  int64_t duration_ms_ = -1;
  int32_t tracks_ = 0;
  bool ended_ = false;  // the engine's

  // The engine thread's.
  std::unique_ptr<SoundDecoder> decoder_;
  int64_t decoder_load_ = 0;
};

}  // namespace corvane::rtc
