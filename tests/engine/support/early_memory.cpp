// For the leak checker: GLib drops the table of its names for a larger one each time 2048 more have come, and never
// frees it, because other threads may still read it. So what GLib's own variables pointed to at any time counts as held
// for good. Part of the C++ tests' programs; a library of its own to load before node, which loads GLib much later.
#if defined(__SANITIZE_ADDRESS__)

#include <dlfcn.h>
#include <glib.h>
#include <link.h>

#include <cstring>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

namespace corvane::test {
namespace {

class HeldMemory {
 public:
  HeldMemory() {
    dl_iterate_phdr([](dl_phdr_info* library, size_t,
                       void* self) { return static_cast<HeldMemory*>(self)->findVariables(*library) ? 1 : 0; },
                    this);
    hold();
  }

  // Some dozens of names come between two calls at most: no table comes and goes unseen.
  void onName() {
    const std::lock_guard lock(mutex_);
    if (++names_ % kNamesBetween == 0) hold();
  }

 private:
  static constexpr size_t kNamesBetween = 128;

  bool findVariables(const dl_phdr_info& library) {
    if (std::string_view(library.dlpi_name).find("libglib-2.0.so") == std::string_view::npos) return false;
    for (size_t index = 0; index < library.dlpi_phnum; ++index) {
      const ElfW(Phdr)& segment = library.dlpi_phdr[index];
      if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W) == 0) continue;
      variables_ = reinterpret_cast<const void*>(library.dlpi_addr + segment.p_vaddr);
      size_ = segment.p_memsz / sizeof(void*);
    }
    return true;
  }

  void hold() {
    const size_t held = pointers_.size();
    pointers_.resize(held + size_);
    if (size_ > 0) memcpy(&pointers_[held], variables_, size_ * sizeof(void*));
  }

  std::mutex mutex_;
  size_t names_ = 0;
  const void* variables_ = nullptr;
  size_t size_ = 0;
  std::vector<void*> pointers_;
};

// Never destroyed, as the checker comes after that.
HeldMemory& heldMemory() {
  static HeldMemory& memory = *std::make_unique<HeldMemory>().release();
  return memory;
}

template <class Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

[[maybe_unused]] const HeldMemory& at_start = heldMemory();

}  // namespace
}  // namespace corvane::test

#define CORVANE_SEEN __attribute__((visibility("default")))

// The ways to a name that lead through here, of all libraries but GLib itself.
extern "C" {

CORVANE_SEEN GQuark g_quark_from_string(const gchar* text) {
  static auto* const original = corvane::test::next<decltype(g_quark_from_string)>("g_quark_from_string");
  corvane::test::heldMemory().onName();
  return original(text);
}

CORVANE_SEEN GQuark g_quark_from_static_string(const gchar* text) {
  static auto* const original = corvane::test::next<decltype(g_quark_from_static_string)>("g_quark_from_static_string");
  corvane::test::heldMemory().onName();
  return original(text);
}

CORVANE_SEEN const gchar* g_intern_string(const gchar* text) {
  static auto* const original = corvane::test::next<decltype(g_intern_string)>("g_intern_string");
  corvane::test::heldMemory().onName();
  return original(text);
}
}

#endif
