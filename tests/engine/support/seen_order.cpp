// For ThreadSanitizer: GLib's locks, queues and counts of references order what threads do by means that it does not
// see, as GLib is not instrumented. Here it is told of them, where GStreamer, GObject and the engine itself use them;
// what GLib does inside stays unseen. Part of the C++ tests' programs, whose functions come before those of libraries.
#if defined(__SANITIZE_THREAD__)

#include <dlfcn.h>
#include <glib-object.h>
#include <gst/gst.h>
#include <sanitizer/tsan_interface.h>

namespace corvane::test {
namespace {

template <class Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace
}  // namespace corvane::test

using corvane::test::next;

#define CORVANE_SEEN extern "C" __attribute__((visibility("default")))

CORVANE_SEEN void g_mutex_lock(GMutex* mutex) {
  static auto* const original = next<decltype(g_mutex_lock)>("g_mutex_lock");
  original(mutex);
  __tsan_acquire(mutex);
}

CORVANE_SEEN gboolean g_mutex_trylock(GMutex* mutex) {
  static auto* const original = next<decltype(g_mutex_trylock)>("g_mutex_trylock");
  const gboolean locked = original(mutex);
  if (locked != FALSE) __tsan_acquire(mutex);
  return locked;
}

CORVANE_SEEN void g_mutex_unlock(GMutex* mutex) {
  static auto* const original = next<decltype(g_mutex_unlock)>("g_mutex_unlock");
  __tsan_release(mutex);
  original(mutex);
}

CORVANE_SEEN void g_rec_mutex_lock(GRecMutex* mutex) {
  static auto* const original = next<decltype(g_rec_mutex_lock)>("g_rec_mutex_lock");
  original(mutex);
  __tsan_acquire(mutex);
}

CORVANE_SEEN gboolean g_rec_mutex_trylock(GRecMutex* mutex) {
  static auto* const original = next<decltype(g_rec_mutex_trylock)>("g_rec_mutex_trylock");
  const gboolean locked = original(mutex);
  if (locked != FALSE) __tsan_acquire(mutex);
  return locked;
}

CORVANE_SEEN void g_rec_mutex_unlock(GRecMutex* mutex) {
  static auto* const original = next<decltype(g_rec_mutex_unlock)>("g_rec_mutex_unlock");
  __tsan_release(mutex);
  original(mutex);
}

CORVANE_SEEN void g_cond_wait(GCond* condition, GMutex* mutex) {
  static auto* const original = next<decltype(g_cond_wait)>("g_cond_wait");
  __tsan_release(mutex);
  original(condition, mutex);
  __tsan_acquire(mutex);
}

CORVANE_SEEN gboolean g_cond_wait_until(GCond* condition, GMutex* mutex, gint64 end) {
  static auto* const original = next<decltype(g_cond_wait_until)>("g_cond_wait_until");
  __tsan_release(mutex);
  const gboolean woken = original(condition, mutex, end);
  __tsan_acquire(mutex);
  return woken;
}

CORVANE_SEEN void g_async_queue_push(GAsyncQueue* queue, gpointer data) {
  static auto* const original = next<decltype(g_async_queue_push)>("g_async_queue_push");
  __tsan_release(queue);
  original(queue, data);
}

CORVANE_SEEN gpointer g_async_queue_pop(GAsyncQueue* queue) {
  static auto* const original = next<decltype(g_async_queue_pop)>("g_async_queue_pop");
  gpointer data = original(queue);
  __tsan_acquire(queue);
  return data;
}

// Everything that anyone did with an object comes before its end.
CORVANE_SEEN void g_object_unref(gpointer object) {
  static auto* const original = next<void(gpointer)>("g_object_unref");
  __tsan_release(object);
  __tsan_acquire(object);
  original(object);
}

CORVANE_SEEN void gst_object_unref(gpointer object) {
  static auto* const original = next<void(gpointer)>("gst_object_unref");
  __tsan_release(object);
  __tsan_acquire(object);
  original(object);
}

CORVANE_SEEN void gst_mini_object_unref(GstMiniObject* object) {
  static auto* const original = next<decltype(gst_mini_object_unref)>("gst_mini_object_unref");
  __tsan_release(object);
  __tsan_acquire(object);
  original(object);
}

CORVANE_SEEN void g_source_unref(GSource* source) {
  static auto* const original = next<decltype(g_source_unref)>("g_source_unref");
  __tsan_release(source);
  __tsan_acquire(source);
  original(source);
}

CORVANE_SEEN gulong g_signal_connect_data(gpointer instance, const gchar* signal, GCallback handler, gpointer data,
                                          GClosureNotify destroy, GConnectFlags flags) {
  static auto* const original = next<decltype(g_signal_connect_data)>("g_signal_connect_data");
  __tsan_release(instance);
  return original(instance, signal, handler, data, destroy, flags);
}

CORVANE_SEEN void g_signal_emit(gpointer instance, guint signal, GQuark detail, ...) {
  __tsan_acquire(instance);
  va_list arguments;
  va_start(arguments, detail);
  g_signal_emit_valist(instance, signal, detail, arguments);
  va_end(arguments);
}

#endif
