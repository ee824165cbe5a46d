// Messages of a pipeline or device monitor, brought to the engine thread.
#pragma once

#include "core/engine_thread.h"
#include "core/gst_pointers.h"

namespace corvane::rtc {

/// Calls (object->*kMethod)(message) on the engine thread for each message, until the result is dropped.
/// The method may drop it. Engine thread only.
template <auto kMethod, class T>
[[nodiscard]] AttachedSource watchBus(GstBus* bus, const EngineThread& thread, T* object) {
  AttachedSource watch(gst_bus_create_watch(bus));
  const GstBusFunc on_message = [](GstBus*, GstMessage* message, gpointer target) -> gboolean {
    (static_cast<T*>(target)->*kMethod)(message);
    return G_SOURCE_CONTINUE;
  };
  // GLib's name for "a function of the source's own type"; a bus calls it as what it is.
  g_source_set_callback(watch.get(), G_SOURCE_FUNC(on_message), object, nullptr);
  g_source_attach(watch.get(), thread.context());
  return watch;
}

}  // namespace corvane::rtc
