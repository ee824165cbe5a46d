// What comes from remote users: for those who look at each of them alone, and into what is played.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "corvane_rtc/audio_frame.h"
#include "corvane_rtc/audio_properties.h"
#include "media/hook_path.h"
#include "media/sound_block.h"
#include "media/sound_hooks.h"
#include "media/sound_meter.h"
#include "media/sound_mixer.h"
#include "media/sound_taps.h"
#include "playback/sound_place.h"
#include "playback/sound_selection.h"

namespace corvane::rtc {

/// The hooks into remote sound, one for all users. Any thread.
struct RemoteHooks {
  SoundHooks& receivers;
  HookSwitch<const AudioFormat> processor;
  HookSwitch<const AudioFormat> observer;
};

/// The sound of one remote stream. Engine thread only, but for push().
class RemoteSound {
 public:
  RemoteSound(RemoteHooks& hooks, SoundMixer& mixer, SoundSelection& selection, std::string room, std::string user,
              int32_t stream_index);
  ~RemoteSound();
  RemoteSound(const RemoteSound&) = delete;
  RemoteSound& operator=(const RemoteSound&) = delete;

  /// Lives as long as this.
  StreamKey key() const { return {room_.c_str(), user_.c_str(), stream_index_}; }

  /// Takes 10 ms of one or two channels. One thread at a time.
  void push(const SoundBlock& block);

  /// A factor of what is played, and from where. What observers get and what is measured is as it was sent.
  void setVolume(float factor) { input_->setGain(factor); }
  void setPlace(const SoundPlace& place) { place_.set(place); }
  /// Whether it is heard however many others are louder. Screens are in any case.
  void setPreferred(bool preferred) {
    if (voice_) voice_->setPreferred(preferred);
  }

  /// None ends measuring.
  void measure(const std::optional<SoundMeterSettings>& settings);
  /// What has been heard since the last call; none when nothing was, or nothing is measured.
  std::optional<AudioPropertiesInfo> takeProperties();

 private:
  // The way to a hook, for a stream whose number of channels may change.
  template <class Path>
  class Way {
   public:
    /// Null when the hook is off.
    Path* follow(const HookSwitch<const AudioFormat>& hook, int32_t channels);

   private:
    std::shared_ptr<const AudioFormat> format_;
    int32_t channels_ = 0;
    std::optional<Path> path_;
  };

  RemoteHooks& hooks_;
  const std::string room_;
  const std::string user_;
  const int32_t stream_index_;
  const std::shared_ptr<SoundMixer::Input> input_;
  SoundTaps taps_;
  std::optional<SoundMeter> meter_;
  PlacedSound place_;
  std::optional<SoundSelection::Voice> voice_;  // of a microphone

  void play(const SoundBlock& block);

  // The stream's thread's.
  Way<ProcessingPath> processing_;
  Way<OutgoingPath> observing_;
  SoundBlock block_;
  bool heard_ = true;
};

/// Those of all rooms of one engine. Any thread, but for what is marked otherwise.
class RemoteSounds {
 public:
  /// They outlive this.
  RemoteSounds(SoundMixer& mixer, SoundHooks& hooks) : mixer_(mixer), hooks_{hooks, {}, {}} {}

  // Of each user alone. kInvalidParameter for a shape that no frames can have.

  int32_t enableProcessor(const AudioFormat& format) { return turnOn(hooks_.processor, format); }
  void disableProcessor() { hooks_.processor.off(); }
  int32_t enableObserver(const AudioFormat& format) { return turnOn(hooks_.observer, format); }
  void disableObserver() { hooks_.observer.off(); }

  /// How many microphones are heard at once.
  void setPlaces(size_t places) { selection_.setPlaces(places); }

  /// It is there for as long as its owner keeps it, and goes on the engine thread. Engine thread only.
  std::shared_ptr<RemoteSound> add(const std::string& room, const std::string& user, int32_t stream_index);
  /// Of those that there are and those to come. Engine thread only.
  void measure(const std::optional<SoundMeterSettings>& settings);
  /// function(RemoteSound&) for each. Engine thread only.
  template <class F>
  void forEach(F&& function) {
    forgetEnded();
    for (const std::weak_ptr<RemoteSound>& sound : sounds_) function(*sound.lock());
  }

 private:
  // An entry keeps the memory of its sound.
  void forgetEnded() {
    std::erase_if(sounds_, [](const std::weak_ptr<RemoteSound>& sound) { return sound.expired(); });
  }
  static int32_t turnOn(HookSwitch<const AudioFormat>& hook, const AudioFormat& format);

  SoundMixer& mixer_;
  RemoteHooks hooks_;
  SoundSelection selection_;
  std::optional<SoundMeterSettings> meters_;
  std::vector<std::weak_ptr<RemoteSound>> sounds_;
};

}  // namespace corvane::rtc
