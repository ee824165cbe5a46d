// A pipeline of the engine's: built from elements by name, on the system's monotonic clock, ended in order.
#pragma once

#include <string>

#include "core/engine_thread.h"
#include "core/gst_pointers.h"

namespace corvane::rtc {

/// One thread at a time, and none of its own.
class Pipeline {
 public:
  explicit Pipeline(const char* name);
  /// Waits for the pipeline's own threads: nothing that they call back to may go before.
  ~Pipeline();
  Pipeline(const Pipeline&) = delete;
  Pipeline& operator=(const Pipeline&) = delete;

  /// Makes an element and adds it. The pipeline owns it. Null, with the kind noted, when there is no such element.
  GstElement* add(const char* kind, const char* name);
  /// The first kind of element that add() did not find, or "".
  const std::string& missing() const { return missing_; }

  /// Makes buffers' running times equal to the clock's, rather than counted from the start.
  void countFromClock();
  bool play();

  GstElement* get() const { return pipeline_.get(); }
  GstPtr<GstBus> bus() const { return GstPtr<GstBus>(gst_element_get_bus(pipeline_.get())); }

 private:
  GstPtr<GstElement> pipeline_;
  std::string missing_;
};

/// The clock of all pipelines, in nanoseconds. Any thread.
GstClockTime clockNow();

}  // namespace corvane::rtc
