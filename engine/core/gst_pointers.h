// Owning pointers for GStreamer's reference-counted things: each unrefs what it holds. A plain pointer is borrowed.
#pragma once

#include <gst/gst.h>

#include <memory>

namespace corvane::rtc {

struct GstUnref {
  void operator()(GstCaps* caps) const { gst_caps_unref(caps); }
  void operator()(GstBuffer* buffer) const { gst_buffer_unref(buffer); }
  void operator()(GstSample* sample) const { gst_sample_unref(sample); }
  void operator()(GstMessage* message) const { gst_message_unref(message); }
  void operator()(GstStructure* structure) const { gst_structure_free(structure); }
  void operator()(GError* error) const { g_error_free(error); }
  void operator()(gchar* text) const { g_free(text); }
  // GObject's own kinds; their pointers convert to GObject by a cast that the type system cannot check.
  void operator()(GstElement* element) const { gst_object_unref(element); }
  void operator()(GstPad* pad) const { gst_object_unref(pad); }
  void operator()(GstBus* bus) const { gst_object_unref(bus); }
  void operator()(GstClock* clock) const { gst_object_unref(clock); }
  void operator()(GstDevice* device) const { gst_object_unref(device); }
  void operator()(GstDeviceProvider* provider) const { gst_object_unref(provider); }
  void operator()(GstDeviceMonitor* monitor) const { gst_object_unref(monitor); }
  void operator()(GstBufferPool* pool) const { gst_object_unref(pool); }
};

template <class T>
using GstPtr = std::unique_ptr<T, GstUnref>;

/// A source attached to a main context; it is taken off when this goes. On that context's thread only.
struct DetachSource {
  void operator()(GSource* source) const {
    g_source_destroy(source);
    g_source_unref(source);
  }
};
using AttachedSource = std::unique_ptr<GSource, DetachSource>;

}  // namespace corvane::rtc
