#include <dlfcn.h>
#include <elf.h>

#include <cstdio>
#include <cstring>
#include <memory>

#include "platform/library.h"

namespace corvane::platform {
namespace {

struct Closer {
  void operator()(FILE* file) const { std::fclose(file); }
};

template <class Record>
bool readAt(FILE* file, uint64_t offset, Record& record) {
  return ::fseeko(file, static_cast<off_t>(offset), SEEK_SET) == 0 && std::fread(&record, sizeof record, 1, file) == 1;
}

// True for a library of which a part is missing, as a broken download leaves it. The system's loader maps the parts
// that the library's head tells of, and the first touch of one beyond the end of the file ends the process.
bool isCutShort(const char* path) {
  const std::unique_ptr<FILE, Closer> file(std::fopen(path, "rb"));
  Elf64_Ehdr head{};
  if (file == nullptr || !readAt(file.get(), 0, head)) return false;
  if (std::memcmp(head.e_ident, ELFMAG, SELFMAG) != 0 || head.e_ident[EI_CLASS] != ELFCLASS64) return false;
  if (::fseeko(file.get(), 0, SEEK_END) != 0) return false;
  const auto size = static_cast<uint64_t>(::ftello(file.get()));
  for (uint32_t i = 0; i < head.e_phnum; ++i) {
    Elf64_Phdr part{};
    if (!readAt(file.get(), head.e_phoff + uint64_t{i} * sizeof part, part)) return true;
    if (part.p_type == PT_LOAD && (part.p_filesz > size || part.p_offset > size - part.p_filesz)) return true;
  }
  return false;
}

}  // namespace

void* loadLibrary(const char* path, std::string& error) {
  // Without a slash the path is a name, which the system looks for in folders of its own.
  if (std::strchr(path, '/') != nullptr && isCutShort(path)) {
    error = " file too short";
    return nullptr;
  }
  // With all symbols bound at once: a library that lacks one is refused here and not in the middle of a call.
  void* library = ::dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (library != nullptr) return library;
  const char* reason = ::dlerror();
  error = " dlopen error:";
  error += reason == nullptr ? "" : reason;
  return nullptr;
}

void* findSymbol(void* library, const char* name) {
  return ::dlsym(library, name);
}

void unloadLibrary(void* library) {
  ::dlclose(library);
}

}  // namespace corvane::platform
