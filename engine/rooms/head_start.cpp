#include "rooms/head_start.h"

#include "core/engine_thread.h"
#include "core/gst_pointers.h"

namespace corvane::rtc {

namespace {

// In the order in which a connection comes to need them. The first of each plug-in loads it, which takes up to a tenth
// of a second; the first dtlsdec makes the certificate of all connections, which may take half of one.
constexpr const char* kElements[] = {
    "dtlsdec",      "webrtcbin", "sctpdec",    "rtph264depay", "h264parse", "avdec_h264",   "appsink",
    "rtpopusdepay", "opusdec",   "rtpsession", "nicesrc",      "srtpdec",   "audioconvert", "audioresample",
};

std::atomic<bool> begun = false;

}  // namespace

void HeadStart::begin() {
  if (thread_.joinable() || begun.exchange(true)) return;
  thread_ = std::thread([this] {
    nameThread("head-start");
    for (const char* kind : kElements) {
      if (stopped_.load()) {
        begun.store(false);  // another engine goes on with it
        return;
      }
      // One that is not installed is missed by whoever needs it.
      const GstPtr<GstElement> element(gst_element_factory_make(kind, nullptr));
    }
  });
}

HeadStart::~HeadStart() {
  stopped_.store(true);
  if (thread_.joinable()) thread_.join();
}

}  // namespace corvane::rtc
