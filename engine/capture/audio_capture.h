// The microphone of an engine: which one, whether it runs, and what is told of it.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "capture/captured_sound.h"
#include "capture/pushed_sound.h"
#include "capture/sound_pump.h"
#include "capture/sound_queue.h"
#include "capture/sound_source.h"
#include "core/engine_context.h"
#include "devices/audio_device_list.h"

namespace corvane::rtc {

/// Engine thread only. Repeating a call changes nothing, but that start() tries a microphone that has failed once more.
class AudioCapture final : public CaptureSource::Listener {
 public:
  /// `sound` receives every block on a thread of the capture's.
  AudioCapture(EngineContext& context, const AudioDeviceList& devices, CapturedSound& sound, PushedSound& pushed);
  ~AudioCapture();
  AudioCapture(const AudioCapture&) = delete;
  AudioCapture& operator=(const AudioCapture&) = delete;

  void start();
  void stop();
  bool isOn() const { return wanted_; }
  /// Also while capturing. "" follows the machine's default.
  void setMicrophone(const std::string& id);
  /// Whether sound comes from the application, until it no longer does: microphones stay off.
  void setPushed(bool pushed);
  /// The machine's microphones, or which of them is the default, may have changed.
  void onDevicesChanged();

 private:
  enum class State { kOff, kOpening, kDelivering, kFailed, kPushed };

  void open();
  void close();
  void fail(const CaptureFault& fault);
  void reportDevice(MediaDeviceState state, MediaDeviceError error);
  void reportStream(LocalAudioStreamState state, LocalAudioStreamError error);
  std::string current() const;
  // With the session that is open.
  std::function<void()> tellOfFirstBlock();

  void onSourceDelivers() override;
  void onSourceFailed(const CaptureFault& fault) override;
  void onFirstBlock();

  EngineContext& context_;
  const AudioDeviceList& devices_;
  CapturedSound& sound_;
  PushedSound& pushed_;

  bool wanted_ = false;  // the application's, whatever became of it
  State state_ = State::kOff;
  std::string chosen_;            // the application's, "" for none
  std::string opened_;            // the microphone that is open or has failed
  bool stream_reported_ = false;  // as recording, since it was last stopped or failed

  std::shared_ptr<void> session_;  // what the pump's thread posts is for this microphone only
  std::unique_ptr<SoundQueue> queue_;
  std::unique_ptr<SoundSource> source_;
  std::unique_ptr<SoundPump> pump_;
  AttachedSource watchdog_;
};

}  // namespace corvane::rtc
