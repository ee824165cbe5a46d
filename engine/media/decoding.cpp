#include "media/decoding.h"

#include <gst/pbutils/pbutils.h>

#include <chrono>
#include <thread>

#include "core/gst_pointers.h"

namespace corvane::rtc {

namespace {

// A camera has to leave most of the machine to everything else; two threads decode 1080p at 60 on one made in 2015.
constexpr int kDecoderThreads = 2;

// The decoder drops errors of an element that it is still setting up. An element that reads the file by itself may have
// failed by then, with nobody to hear of it, so that it is made to wait a little before it reads. Should that once not
// be enough, the capture still notices that nothing comes.
void delayReading(GstElement* element) {
  GstElementFactory* factory = gst_element_get_factory(element);
  if (factory == nullptr || !gst_element_factory_list_is_type(factory, GST_ELEMENT_FACTORY_TYPE_DEMUXER)) return;
  const GstPtr<GstPad> pad(gst_element_get_static_pad(element, "sink"));
  if (pad == nullptr) return;
  const auto wait_once = +[](GstPad* reading, GstPadProbeInfo*, gpointer) {
    if (gst_pad_get_task_state(reading) != GST_TASK_STARTED) return GST_PAD_PROBE_OK;  // a look ahead
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return GST_PAD_PROBE_REMOVE;
  };
  gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_PULL, wait_once, nullptr, nullptr);
}

// Decoders use as many threads as there are processors unless told otherwise, each by a property of its own.
void limitThreads(GstElement* element) {
  GstElementFactory* factory = gst_element_get_factory(element);
  if (factory == nullptr || !gst_element_factory_list_is_type(factory, GST_ELEMENT_FACTORY_TYPE_DECODER)) return;
  for (const char* name : {"max-threads", "n-threads", "threads"}) {
    if (g_object_class_find_property(G_OBJECT_GET_CLASS(element), name) != nullptr) {
      g_object_set(element, name, kDecoderThreads, nullptr);
    }
  }
}

}  // namespace

gboolean leadsToSound(GstElement*, GstPad*, GstCaps* caps, gpointer) {
  const GstPbUtilsCapsDescriptionFlags about = gst_pb_utils_get_caps_description_flags(caps);
  const int other = GST_PBUTILS_CAPS_DESCRIPTION_FLAG_VIDEO | GST_PBUTILS_CAPS_DESCRIPTION_FLAG_IMAGE |
                    GST_PBUTILS_CAPS_DESCRIPTION_FLAG_SUBTITLE;
  return (about & GST_PBUTILS_CAPS_DESCRIPTION_FLAG_CONTAINER) != 0 || (about & other) == 0;
}

void prepareDecoding(GstElement* element) {
  delayReading(element);
  limitThreads(element);
}

}  // namespace corvane::rtc
