#include <windows.h>

#include "platform/library.h"

namespace corvane::platform {

void* loadLibrary(const char* path, std::string& error) {
  // What the library needs is looked for in its own folder first.
  HMODULE library = ::LoadLibraryExA(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (library != nullptr) return library;
  error = " Win32 LoadLibraryEx error:" + std::to_string(::GetLastError());
  return nullptr;
}

void* findSymbol(void* library, const char* name) {
  // NOLINTNEXTLINE: the way GetProcAddress is used
  return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(library), name));
}

void unloadLibrary(void* library) {
  ::FreeLibrary(static_cast<HMODULE>(library));
}

}  // namespace corvane::platform
