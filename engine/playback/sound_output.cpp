#include "playback/sound_output.h"

#include <gst/app/app.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "capture/pipeline.h"

namespace corvane::rtc {

namespace {

constexpr int64_t kBlockUs = 10'000;
// Who has fallen behind by more goes on from now: it does not hurry.
constexpr int64_t kFarBehindUs = 250'000;

int64_t nowUs() {
  return static_cast<int64_t>(GST_TIME_AS_USECONDS(clockNow()));
}

// A speaker that nobody hears: the clock alone says when sound is due.
class ClockOutput final : public SoundOutput {
 public:
  std::optional<CaptureFault> open() override {
    next_us_ = nowUs();
    return std::nullopt;
  }

  bool wait(const std::stop_token& stop) override {
    const int64_t now = nowUs();
    if (next_us_ + kFarBehindUs < now) next_us_ = now;
    if (next_us_ <= now) return !stop.stop_requested();
    std::unique_lock lock(mutex_);
    stopped_.wait_for(lock, stop, std::chrono::microseconds(next_us_ - now), [] { return false; });
    return !stop.stop_requested();
  }

  int64_t heardAtUs() const override { return next_us_; }
  void play(const SoundBlock& /*block*/) override { next_us_ += kBlockUs; }
  std::optional<CaptureFault> fault() override { return std::nullopt; }

 private:
  int64_t next_us_ = 0;
  std::mutex mutex_;
  std::condition_variable_any stopped_;
};

// Sound goes at the device's own pace, so that its clock and this machine's need not agree: one block waits for the
// device, which holds as much as it must to play without gaps.
class DeviceOutput final : public SoundOutput {
 public:
  explicit DeviceOutput(SoundDevice device) : device_(std::move(device)), pipeline_("speaker") {}
  ~DeviceOutput() override {
    if (pool_ != nullptr) gst_buffer_pool_set_active(pool_.get(), FALSE);
  }
  DeviceOutput(const DeviceOutput&) = delete;
  DeviceOutput& operator=(const DeviceOutput&) = delete;

  std::optional<CaptureFault> open() override;
  bool wait(const std::stop_token& stop) override;
  int64_t heardAtUs() const override { return nowUs() + kBufferUs + kBlockUs; }
  void play(const SoundBlock& block) override;

  std::optional<CaptureFault> fault() override {
    const std::lock_guard lock(mutex_);
    return fault_;
  }

 private:
  // What the device asks for at a time, and what it may hold.
  static constexpr gint64 kPeriodUs = 10'000;
  static constexpr gint64 kBufferUs = 40'000;
  static constexpr std::chrono::seconds kStalled{3};
  static constexpr guint kBlockBytes = kBlockFrames * kMaxSoundChannels * sizeof(int16_t);

  void note(CaptureFault fault);
  // Both on threads of the pipeline's.
  GstPadProbeReturn onLeave();
  GstBusSyncReply onMessage(GstMessage* message);

  const SoundDevice device_;
  GstAppSrc* source_ = nullptr;
  GstPtr<GstBufferPool> pool_;
  std::mutex mutex_;
  std::condition_variable_any changed_;
  int64_t given_ = 0;
  int64_t left_ = 0;  // those of the given that the device has begun to take
  std::optional<CaptureFault> fault_;
  Pipeline pipeline_;  // the last, as its threads use the others
};

std::optional<CaptureFault> DeviceOutput::open() {
  GstElement* source = pipeline_.add("appsrc", "played");
  GstElement* convert = pipeline_.add("audioconvert", nullptr);
  GstElement* resample = pipeline_.add("audioresample", nullptr);
  GstElement* sink = pipeline_.add(device_.sink_element, "speaker-device");
  if (!pipeline_.missing().empty()) {
    return CaptureFault{.text = "GStreamer's element " + pipeline_.missing() + " is not installed"};
  }
  source_ = GST_APP_SRC(source);
  const GstPtr<GstCaps> caps(gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING, "S16LE", "layout",
                                                 G_TYPE_STRING, "interleaved", "rate", G_TYPE_INT, kSoundRate,
                                                 "channels", G_TYPE_INT, kMaxSoundChannels, nullptr));
  gst_app_src_set_caps(source_, caps.get());
  g_object_set(source, "format", GST_FORMAT_TIME, nullptr);
  // Not by the clock of the pipelines: what comes is played next.
  g_object_set(sink, "device", device_.name.c_str(), "sync", FALSE, "provide-clock", FALSE, "latency-time", kPeriodUs,
               "buffer-time", kBufferUs, nullptr);
  gst_element_link_many(source, convert, resample, sink, nullptr);

  pool_.reset(gst_buffer_pool_new());
  GstStructure* config = gst_buffer_pool_get_config(pool_.get());
  gst_buffer_pool_config_set_params(config, caps.get(), kBlockBytes, 2, 0);
  gst_buffer_pool_set_config(pool_.get(), config);
  gst_buffer_pool_set_active(pool_.get(), TRUE);

  const GstPtr<GstPad> pad(gst_element_get_static_pad(source, "src"));
  gst_pad_add_probe(
      pad.get(), GST_PAD_PROBE_TYPE_BUFFER,
      [](GstPad*, GstPadProbeInfo*, gpointer self) { return static_cast<DeviceOutput*>(self)->onLeave(); }, this,
      nullptr);
  gst_bus_set_sync_handler(
      pipeline_.bus().get(),
      [](GstBus*, GstMessage* message, gpointer self) { return static_cast<DeviceOutput*>(self)->onMessage(message); },
      this, nullptr);
  if (pipeline_.play()) return std::nullopt;
  note({kDeviceFailure, kMediaDeviceErrorFailure, "the speaker's pipeline does not start"});
  return fault();
}

bool DeviceOutput::wait(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  const auto ready = [this] { return fault_.has_value() || left_ == given_; };
  if (!changed_.wait_for(lock, stop, kStalled, ready) && !stop.stop_requested()) {
    fault_ = CaptureFault{kDeviceFailure, kMediaDeviceErrorNoCallback, "the speaker is open but takes no sound"};
  }
  return !fault_.has_value() && !stop.stop_requested();
}

void DeviceOutput::play(const SoundBlock& block) {
  GstBuffer* buffer = nullptr;
  if (gst_buffer_pool_acquire_buffer(pool_.get(), &buffer, nullptr) != GST_FLOW_OK) return;
  gst_buffer_fill(buffer, 0, block.storage.data(), kBlockBytes);
  {
    const std::lock_guard lock(mutex_);
    ++given_;
  }
  gst_app_src_push_buffer(source_, buffer);
}

void DeviceOutput::note(CaptureFault fault) {
  {
    const std::lock_guard lock(mutex_);
    if (fault_) return;  // the first tells most
    // That it has taken sound says that the device was there: it is gone, or its server is.
    if (left_ > 1) fault.device_error = kMediaDeviceErrorDisconnected;
    fault_ = std::move(fault);
  }
  changed_.notify_all();
}

GstPadProbeReturn DeviceOutput::onLeave() {
  {
    const std::lock_guard lock(mutex_);
    ++left_;
  }
  changed_.notify_all();
  return GST_PAD_PROBE_OK;
}

GstBusSyncReply DeviceOutput::onMessage(GstMessage* message) {
  if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) note(readFault(message));
  gst_message_unref(message);
  return GST_BUS_DROP;
}

}  // namespace

std::unique_ptr<SoundOutput> makeSoundOutput(const SpeakerId& speaker) {
  if (const auto* device = std::get_if<SoundDevice>(&speaker)) return std::make_unique<DeviceOutput>(*device);
  return std::make_unique<ClockOutput>();
}

}  // namespace corvane::rtc
