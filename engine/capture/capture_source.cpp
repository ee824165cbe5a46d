#include "capture/capture_source.h"

#include <gst/pbutils/missing-plugins.h>

#include <utility>

#include "core/bus_watch.h"

namespace corvane::rtc {

CaptureSource::CaptureSource(EngineContext& context, Listener& listener, const char* kind)
    : context_(context), listener_(listener), kind_(kind) {}

void CaptureSource::start() {
  pipeline_ = std::make_unique<Pipeline>(kind_);
  end_ = pipeline_->add("fakesink", "capture-end");
  std::optional<CaptureFault> fault = end_ != nullptr ? build() : std::nullopt;
  if (!fault && !pipeline_->missing().empty()) {
    fault = CaptureFault{.text = "GStreamer's element " + pipeline_->missing() + " is not installed"};
  }
  if (fault) return fail(std::move(*fault));

  // The buffers are taken off the pad before the sink, so that each is held once and its memory goes straight back to
  // where it came from. The sink is left to report the end; it must not wait for a first buffer.
  g_object_set(end_, "sync", FALSE, "async", FALSE, nullptr);
  const GstPtr<GstPad> pad(gst_element_get_static_pad(end_, "sink"));
  gst_pad_add_probe(
      pad.get(), GST_PAD_PROBE_TYPE_BUFFER,
      [](GstPad* at, GstPadProbeInfo* info, gpointer self) {
        return static_cast<CaptureSource*>(self)->onProbe(at, info);
      },
      this, nullptr);
  watch_ = watchBus<&CaptureSource::onMessage>(pipeline_->bus().get(), context_.thread, this);
  play();
}

void CaptureSource::play() {
  if (pipeline_->play()) return;
  // Most failures are told by a message, which says more; the first word counts.
  const GstPtr<GstBus> bus = pipeline_->bus();
  while (const GstPtr<GstMessage> message{gst_bus_pop(bus.get())}) onMessage(message.get());
  fail({kMediaFailure, kMediaDeviceErrorUnsupportedFormat, std::string("the ") + kind_ + "'s pipeline does not start"});
}

void CaptureSource::stop() {
  stopping_.request_stop();
  watch_.reset();
  pipeline_.reset();
  failed_ = true;  // what is still on its way says nothing any more
}

void CaptureSource::fail(CaptureFault fault) {
  context_.thread.post(alive_, [this, fault = std::move(fault)] {
    if (std::exchange(failed_, true)) return;
    listener_.onSourceFailed(refine(fault));
  });
}

void CaptureSource::onMessage(GstMessage* message) {
  switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_EOS:
      onEnd();
      break;
    case GST_MESSAGE_ERROR: {
      CaptureFault fault = readFault(message);
      if (!missing_decoder_.empty()) fault.text += "; missing: " + missing_decoder_;
      fail(std::move(fault));
      break;
    }
    case GST_MESSAGE_WARNING: {
      GError* error = nullptr;
      gst_message_parse_warning(message, &error, nullptr);
      const GstPtr<GError> owned(error);
      context_.log.warning("%s: %s: %s", kind_, GST_MESSAGE_SRC_NAME(message), error->message);
      break;
    }
    case GST_MESSAGE_ELEMENT:
      if (gst_is_missing_plugin_message(message)) {
        missing_decoder_ = GstPtr<gchar>(gst_missing_plugin_message_get_description(message)).get();
      }
      break;
    default:
      break;
  }
}

GstPadProbeReturn CaptureSource::onProbe(GstPad* pad, GstPadProbeInfo* info) {
  GstPtr<GstBuffer> buffer(GST_PAD_PROBE_INFO_BUFFER(info));
  GST_PAD_PROBE_INFO_DATA(info) = nullptr;

  GstPtr<GstCaps> caps(gst_pad_get_current_caps(pad));
  GstEvent* segment_event = gst_pad_get_sticky_event(pad, GST_EVENT_SEGMENT, 0);
  const GstSegment* segment = nullptr;
  if (segment_event != nullptr) gst_event_parse_segment(segment_event, &segment);
  GstFlowReturn flow = GST_FLOW_NOT_NEGOTIATED;
  if (caps != nullptr && segment != nullptr) {
    if (delivered_.fetch_add(1, std::memory_order_relaxed) == 0) {
      context_.thread.post(alive_, [this] { listener_.onSourceDelivers(); });
    }
    flow = onBuffer(std::move(buffer), std::move(caps), *segment);
  }
  if (segment_event != nullptr) gst_event_unref(segment_event);
  GST_PAD_PROBE_INFO_FLOW_RETURN(info) = flow;
  return GST_PAD_PROBE_HANDLED;
}

}  // namespace corvane::rtc
