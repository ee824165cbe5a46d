// Owning pointers for GLib's objects that are not GStreamer's.
#pragma once

#include <glib-object.h>

#include <memory>
#include <string>

namespace corvane::rtc {

struct GObjectUnref {
  // A GObject's pointer converts to every class of the object by a cast that the type system cannot check.
  void operator()(gpointer object) const { g_object_unref(object); }
};

template <class T>
using GObjectPtr = std::unique_ptr<T, GObjectUnref>;

/// Takes a text of GLib's; null is "".
inline std::string takeText(gchar* text) {
  std::string copy = text != nullptr ? text : "";
  g_free(text);
  return copy;
}

}  // namespace corvane::rtc
