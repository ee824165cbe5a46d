// The speaker of an engine: which one, whether it is open, and what is told of it.
#pragma once

#include <memory>
#include <string>

#include "core/engine_context.h"
#include "corvane_rtc/device_events.h"
#include "devices/audio_device_list.h"
#include "playback/playback_thread.h"
#include "playback/played_sound.h"

namespace corvane::rtc {

/// Engine thread only. It is open while there are sources of sound, and for a few seconds more.
class Speaker {
 public:
  Speaker(EngineContext& context, const AudioDeviceList& devices, PlayedSound& sound);
  Speaker(const Speaker&) = delete;
  Speaker& operator=(const Speaker&) = delete;

  /// There is a source of sound.
  void wake();
  /// Also while it plays; one that has failed is tried once more. "" follows the machine's default.
  void setSpeaker(const std::string& id);
  /// The machine's speakers, or which of them is the default, may have changed.
  void onDevicesChanged();

 private:
  enum class State { kOff, kOpening, kPlaying, kFailed };

  void open();
  void play(const std::string& id);
  void close();
  void report(MediaDeviceState state, MediaDeviceError error);
  std::string current() const;
  bool isListed(const std::string& id) const;

  void onStarted();
  void onFailed(const CaptureFault& fault);
  void onGone();
  void onIdle();

  EngineContext& context_;
  const AudioDeviceList& devices_;
  PlayedSound& sound_;
  State state_ = State::kOff;
  std::string chosen_;             // the application's, "" for none
  std::string opened_;             // the speaker that is open or has failed
  bool listed_ = false;            // whether it was there when that was last looked at
  std::shared_ptr<void> session_;  // what the thread posts is for this opening only
  PlaybackThread thread_;
};

}  // namespace corvane::rtc
