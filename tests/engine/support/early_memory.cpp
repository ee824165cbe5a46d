// For the leak checker: GLib drops the table of its first 2048 names for a larger one and never frees it, because other
// threads may still read it. So what GLib holds when the program starts counts as held for good.
#if defined(__SANITIZE_ADDRESS__)

#include <link.h>

#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace corvane::test {
namespace {

// Never destroyed, as the checker comes after that.
std::vector<void*>& early_pointers = *std::make_unique<std::vector<void*>>().release();

[[maybe_unused]] const int kKept = dl_iterate_phdr(
    [](dl_phdr_info* library, size_t, void*) {
      if (std::string_view(library->dlpi_name).find("libglib-2.0.so") == std::string_view::npos) return 0;
      for (size_t index = 0; index < library->dlpi_phnum; ++index) {
        const ElfW(Phdr)& segment = library->dlpi_phdr[index];
        if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W) == 0) continue;
        early_pointers.resize(segment.p_memsz / sizeof(void*));
        memcpy(early_pointers.data(), reinterpret_cast<const void*>(library->dlpi_addr + segment.p_vaddr),
               early_pointers.size() * sizeof(void*));
      }
      return 1;
    },
    nullptr);

}  // namespace
}  // namespace corvane::test

#endif
