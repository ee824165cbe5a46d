// Shared libraries that are loaded while the process runs.
#pragma once

#include <string>

namespace corvane::platform {

/// Loads a library, or answers null and says in `error` why not: the system's own words or number, with a blank first.
void* loadLibrary(const char* path, std::string& error);

/// Null when the library does not export `name`.
void* findSymbol(void* library, const char* name);

void unloadLibrary(void* library);

}  // namespace corvane::platform
