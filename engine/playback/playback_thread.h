// The thread that mixes what is to be played and hands it to a speaker, ten milliseconds at a time.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>

#include "capture/capture_fault.h"
#include "devices/audio_device_id.h"
#include "playback/played_sound.h"
#include "playback/sound_output.h"

namespace corvane::rtc {

/// What the thread has to tell of one opening. Called on it.
struct PlaybackEvents {
  std::function<void()> started;  ///< the speaker takes sound
  /// At most once. Sound is mixed on, and nobody hears it.
  std::function<void(const CaptureFault&)> failed;
  std::function<void()> idle;  ///< nobody has had anything to play for some seconds
};

class PlaybackThread {
 public:
  using OutputMaker = std::function<std::unique_ptr<SoundOutput>(const SpeakerId&)>;

  /// How long a server of sound devices may take before it counts as hanging, and is left behind.
  struct Patience {
    std::chrono::milliseconds open{5000};
    std::chrono::milliseconds close{2000};
  };

  /// `sound` outlives this.
  explicit PlaybackThread(PlayedSound& sound) : PlaybackThread(sound, makeSoundOutput, {}) {}
  PlaybackThread(PlayedSound& sound, OutputMaker make_output, const Patience& patience);
  /// Waits until the speaker is closed, unless it hangs, and no call is on its way.
  ~PlaybackThread();
  PlaybackThread(const PlaybackThread&) = delete;
  PlaybackThread& operator=(const PlaybackThread&) = delete;

  // Both return at once; the speaker before is closed first.

  void play(SpeakerId speaker, PlaybackEvents events);
  void rest();

 private:
  struct Opening {
    SpeakerId speaker;
    PlaybackEvents events;
    std::stop_source end;
  };

  void run(const std::stop_token& stop);
  void playOn(const Opening& opening);
  std::optional<CaptureFault> open(const std::shared_ptr<SoundOutput>& output) const;
  void close(std::shared_ptr<SoundOutput> output) const;

  PlayedSound& sound_;
  const OutputMaker make_output_;
  const Patience patience_;
  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::optional<Opening> next_;
  std::stop_source current_;  // ends what is being played on
  std::jthread thread_;       // the last, as it uses the others
};

}  // namespace corvane::rtc
