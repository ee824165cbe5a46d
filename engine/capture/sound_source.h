// Where a microphone's sound comes from: a pipeline that ends in a queue. One object for one opening of one microphone.
#pragma once

#include <memory>

#include "capture/capture_source.h"
#include "capture/clip_reader.h"
#include "capture/sound_queue.h"
#include "devices/audio_device_id.h"

namespace corvane::rtc {

class SoundSource : public CaptureSource {
 public:
  /// Whether the sound is there ahead of its time, so that the queue is to be emptied by the clock.
  virtual bool paced() const = 0;

 protected:
  SoundSource(EngineContext& context, SoundQueue& queue, Listener& listener);

  /// Adds what brings any sound into the queue's form, up to end(). Null when that cannot be had.
  GstElement* addConversion();

 private:
  GstFlowReturn onBuffer(GstPtr<GstBuffer> buffer, GstPtr<GstCaps> caps, const GstSegment& segment) final;

  SoundQueue& queue_;
};

/// `microphone`: any but none.
std::unique_ptr<SoundSource> makeSoundSource(EngineContext& context, SoundQueue& queue,
                                             CaptureSource::Listener& listener, const MicrophoneId& microphone);

}  // namespace corvane::rtc
