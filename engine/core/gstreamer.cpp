#include "core/gstreamer.h"

#include <signal.h>

#include <mutex>

#include "core/gst_pointers.h"

namespace corvane::rtc {

namespace {

// Writing to an X server that has gone is an error like others, not this process's end. GLib does the same, for good
// and for the whole process, with its first socket; what the host has chosen itself stays.
void outliveBrokenPipes() {
  struct sigaction action = {};
  if (sigaction(SIGPIPE, nullptr, &action) == 0 && action.sa_handler == SIG_DFL) signal(SIGPIPE, SIG_IGN);
}

}  // namespace

bool startGStreamer(std::string& problem) {
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  outliveBrokenPipes();
  GError* error = nullptr;
  if (gst_init_check(nullptr, nullptr, &error)) return true;  // at once when it has started before
  const GstPtr<GError> owned(error);
  problem = error != nullptr ? error->message : "GStreamer does not start";
  return false;
}

}  // namespace corvane::rtc
