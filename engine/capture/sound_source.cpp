#include "capture/sound_source.h"

#include <cmath>
#include <utility>

namespace corvane::rtc {

namespace {

class ClipSound final : public SoundSource {
 public:
  ClipSound(EngineContext& context, SoundQueue& queue, Listener& listener, std::string path)
      : SoundSource(context, queue, listener),
        reader_(std::move(path), ClipReader::Stream::kSound, [this](CaptureFault fault) { fail(std::move(fault)); }) {}
  ~ClipSound() override { stop(); }

  bool paced() const override { return true; }

 private:
  std::optional<CaptureFault> build() override {
    GstElement* target = addConversion();
    return target != nullptr ? reader_.build(pipeline(), target) : std::nullopt;
  }

  void onEnd() override {
    if (std::optional<CaptureFault> fault = reader_.endPass(delivered())) return fail(std::move(*fault));
    if (!reader_.windBack(pipeline())) play();
  }

  ClipReader reader_;
};

class LiveSound : public SoundSource {
 public:
  bool paced() const final { return false; }

 protected:
  using SoundSource::SoundSource;

 private:
  void onEnd() final { fail({kDeviceFailure, kMediaDeviceErrorFailure, "the microphone has ended its sound"}); }
};

class TestSound final : public LiveSound {
 public:
  TestSound(EngineContext& context, SoundQueue& queue, Listener& listener, TestMicrophone microphone)
      : LiveSound(context, queue, listener), microphone_(std::move(microphone)) {}
  ~TestSound() override { stop(); }

 private:
  std::optional<CaptureFault> build() override {
    GstElement* generator = pipeline().add("audiotestsrc", "test-microphone");
    GstElement* target = addConversion();
    if (generator == nullptr || target == nullptr) return std::nullopt;
    gst_util_set_object_arg(G_OBJECT(generator), "wave", microphone_.wave.c_str());
    g_object_set(generator, "is-live", TRUE, "samplesperbuffer", kBlockFrames, "freq",
                 static_cast<double>(microphone_.frequency), "volume", std::pow(10.0, microphone_.level / 20.0),
                 nullptr);
    gst_element_link(generator, target);
    return std::nullopt;
  }

  const TestMicrophone microphone_;
};

class DeviceSound final : public LiveSound {
 public:
  DeviceSound(EngineContext& context, SoundQueue& queue, Listener& listener, SoundDevice device)
      : LiveSound(context, queue, listener), device_(std::move(device)) {}
  ~DeviceSound() override { stop(); }

 private:
  std::optional<CaptureFault> build() override {
    GstElement* device = pipeline().add(device_.source_element, "microphone-device");
    GstElement* target = addConversion();
    if (device == nullptr || target == nullptr) return std::nullopt;
    // Microseconds: what the device hands over at a time, and what it may hold.
    constexpr gint64 kPeriod = 10'000;
    constexpr gint64 kBuffer = 100'000;
    g_object_set(device, "device", device_.name.c_str(), "latency-time", kPeriod, "buffer-time", kBuffer, nullptr);
    gst_element_link(device, target);
    return std::nullopt;
  }

  // That sound has come from it says that the device was there: it is gone, or its server is.
  CaptureFault refine(CaptureFault fault) const override {
    if (delivered() > 0) fault.device_error = kMediaDeviceErrorDisconnected;
    return fault;
  }

  const SoundDevice device_;
};

}  // namespace

SoundSource::SoundSource(EngineContext& context, SoundQueue& queue, Listener& listener)
    : CaptureSource(context, listener, "microphone"), queue_(queue) {}

GstElement* SoundSource::addConversion() {
  GstElement* convert = pipeline().add("audioconvert", "convert");
  GstElement* resample = pipeline().add("audioresample", "resample");
  if (convert == nullptr || resample == nullptr) return nullptr;
  const GstPtr<GstCaps> caps(gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING, "S16LE", "layout",
                                                 G_TYPE_STRING, "interleaved", "rate", G_TYPE_INT, kSoundRate,
                                                 "channels", G_TYPE_INT, queue_.channels(), nullptr));
  gst_element_link(convert, resample);
  gst_element_link_filtered(resample, end(), caps.get());
  return convert;
}

GstFlowReturn SoundSource::onBuffer(GstPtr<GstBuffer> buffer, GstPtr<GstCaps> /*caps*/, const GstSegment& segment) {
  GstMapInfo map;
  if (!gst_buffer_map(buffer.get(), &map, GST_MAP_READ)) return GST_FLOW_ERROR;
  const std::span samples(reinterpret_cast<const int16_t*>(map.data), map.size / sizeof(int16_t));
  GstFlowReturn flow = GST_FLOW_OK;
  if (paced()) {
    if (!queue_.pushWhenRoom(samples, stopping())) flow = GST_FLOW_FLUSHING;
  } else {
    const GstClockTime running = gst_segment_to_running_time(&segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer.get()));
    const bool timed = GST_CLOCK_TIME_IS_VALID(running);
    queue_.pushNewest(samples, timed ? gst_element_get_base_time(end()) + running : clockNow());
  }
  gst_buffer_unmap(buffer.get(), &map);
  return flow;
}

std::unique_ptr<SoundSource> makeSoundSource(EngineContext& context, SoundQueue& queue,
                                             CaptureSource::Listener& listener, const MicrophoneId& microphone) {
  if (const auto* clip = std::get_if<ClipMicrophone>(&microphone)) {
    return std::make_unique<ClipSound>(context, queue, listener, clip->path);
  }
  if (const auto* device = std::get_if<SoundDevice>(&microphone)) {
    return std::make_unique<DeviceSound>(context, queue, listener, *device);
  }
  const auto* test = std::get_if<TestMicrophone>(&microphone);
  return std::make_unique<TestSound>(context, queue, listener, test != nullptr ? *test : TestMicrophone());
}

}  // namespace corvane::rtc
