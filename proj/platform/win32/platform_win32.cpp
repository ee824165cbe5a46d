#include <windows.h>
// windows.h comes first: the two below need its types.
#include <direct.h>
#include <io.h>
#include <shlobj.h>

#include "platform/platform.h"

namespace corvane::platform {

bool hasDebugOutput() {
  return true;
}

void writeDebugOutput(const char* line) {
  ::OutputDebugStringA(line);
}

uint32_t currentThreadId() {
  return ::GetCurrentThreadId();
}

int32_t currentProcessId() {
  return static_cast<int32_t>(::GetCurrentProcessId());
}

// The C library's copy of the environment does not have what the host set later.
std::string environmentVariable(const char* name) {
  char value[512] = {};
  const DWORD length = ::GetEnvironmentVariableA(name, value, sizeof value);
  return length < sizeof value ? std::string(value, length) : std::string();
}

void nameCurrentThread(const char* name) {
  // Windows 10 1607 and later; resolved at run time so that older systems still load the module.
  using SetDescription = HRESULT(WINAPI*)(HANDLE, PCWSTR);
  const HMODULE kernel = ::GetModuleHandleA("kernel32.dll");
  if (kernel == nullptr) return;
  const auto set = reinterpret_cast<SetDescription>(  // NOLINT: the way GetProcAddress is used
      reinterpret_cast<void*>(::GetProcAddress(kernel, "SetThreadDescription")));
  if (set == nullptr) return;
  wchar_t wide[16] = {};
  for (size_t i = 0; i < 15 && name[i] != '\0'; ++i) wide[i] = static_cast<wchar_t>(name[i]);
  set(::GetCurrentThread(), wide);
}

std::string applicationDataFolder() {
  char folder[MAX_PATH] = {};
  if (FAILED(::SHGetFolderPathA(nullptr, CSIDL_APPDATA, nullptr, 0, folder))) return {};
  return folder;
}

void writeAndFlush(FILE* stream, const char* bytes, size_t size) {
  std::fwrite(bytes, 1, size, stream);
  std::fflush(stream);
}

bool pathExists(const char* path) {
  return ::_access(path, 0) == 0;
}

bool makeFolder(const char* path) {
  return ::_mkdir(path) == 0;
}

}  // namespace corvane::platform
