// The sound of the machine, or what stands for it: whether it is captured, and what is told of it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "capture/screen_sound.h"
#include "capture/sound_pump.h"
#include "capture/sound_queue.h"
#include "capture/sound_source.h"
#include "core/engine_context.h"
#include "devices/audio_device_list.h"
#include "media/sent_sound.h"

namespace corvane::rtc {

/// Engine thread only.
class ScreenSoundCapture final : public CaptureSource::Listener {
 public:
  /// `source`: a microphone's id that stands for what the default speaker plays, "" for none.
  ScreenSoundCapture(EngineContext& context, const AudioDeviceList& devices, std::string source, ScreenSound& sound,
                     SentSound& sent);
  ~ScreenSoundCapture();
  ScreenSoundCapture(const ScreenSoundCapture&) = delete;
  ScreenSoundCapture& operator=(const ScreenSoundCapture&) = delete;

  void start();
  void stop();
  /// Also while it is captured.
  void setStream(int32_t stream_index);
  /// The default speaker may be another one.
  void onDevicesChanged();

 private:
  enum class State { kOff, kOpening, kDelivering, kFailed };

  void open();
  void close();
  void route();
  void fail(const CaptureFault& fault);
  void report(MediaDeviceState state, MediaDeviceError error);
  // What the default speaker's sound can be heard from; "" for nothing.
  std::string current() const;

  void onSourceDelivers() override;
  void onSourceFailed(const CaptureFault& fault) override { fail(fault); }

  EngineContext& context_;
  const AudioDeviceList& devices_;
  const std::string source_id_;
  ScreenSound& sound_;
  SentSound& sent_;

  State state_ = State::kOff;
  int32_t stream_index_ = kStreamIndexScreen;
  std::string opened_;
  std::shared_ptr<void> session_;
  std::unique_ptr<SoundQueue> queue_;
  std::unique_ptr<SoundSource> source_;
  std::unique_ptr<SoundPump> pump_;
};

}  // namespace corvane::rtc
