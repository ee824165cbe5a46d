#include "capture/pipeline.h"

namespace corvane::rtc {

Pipeline::Pipeline(const char* name) : pipeline_(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(name)))) {
  // Named, so that sound devices and the like do not offer theirs: all pipelines share one.
  const GstPtr<GstClock> clock(gst_system_clock_obtain());
  gst_pipeline_use_clock(GST_PIPELINE(pipeline_.get()), clock.get());
}

Pipeline::~Pipeline() {
  gst_element_set_state(pipeline_.get(), GST_STATE_NULL);
}

GstElement* Pipeline::add(const char* kind, const char* name) {
  GstElement* element = gst_element_factory_make(kind, name);
  if (element == nullptr) {
    if (missing_.empty()) missing_ = kind;
    return nullptr;
  }
  gst_bin_add(GST_BIN(pipeline_.get()), element);
  return element;
}

void Pipeline::countFromClock() {
  gst_element_set_start_time(pipeline_.get(), GST_CLOCK_TIME_NONE);
  gst_element_set_base_time(pipeline_.get(), 0);
}

bool Pipeline::play() {
  return gst_element_set_state(pipeline_.get(), GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE;
}

GstClockTime clockNow() {
  const GstPtr<GstClock> clock(gst_system_clock_obtain());
  return gst_clock_get_time(clock.get());
}

}  // namespace corvane::rtc
