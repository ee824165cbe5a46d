#include "core/gstreamer.h"

#include <mutex>

#include "core/gst_pointers.h"

namespace corvane::rtc {

bool startGStreamer(std::string& problem) {
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  GError* error = nullptr;
  if (gst_init_check(nullptr, nullptr, &error)) return true;  // at once when it has started before
  const GstPtr<GError> owned(error);
  problem = error != nullptr ? error->message : "GStreamer does not start";
  return false;
}

}  // namespace corvane::rtc
