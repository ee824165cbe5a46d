#include <pthread.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/platform.h"

namespace corvane::platform {

bool hasDebugOutput() {
  static const bool wanted = environmentVariable("CORVANE_DEBUG_OUTPUT") == "stderr";
  return wanted;
}

void writeDebugOutput(const char* line) {
  if (hasDebugOutput()) std::fputs(line, stderr);
}

uint32_t currentThreadId() {
  return static_cast<uint32_t>(::syscall(SYS_gettid));
}

int32_t currentProcessId() {
  return static_cast<int32_t>(::getpid());
}

std::string environmentVariable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

void nameCurrentThread(const char* name) {
  char cut[16] = {};
  std::strncpy(cut, name, sizeof cut - 1);
  ::pthread_setname_np(::pthread_self(), cut);
}

std::string applicationDataFolder() {
  std::string configured = environmentVariable("XDG_CONFIG_HOME");
  if (configured.starts_with('/')) return configured;
  const std::string home = environmentVariable("HOME");
  return home.empty() ? std::string() : home + "/.config";
}

// Past the stream's buffer, which stays empty: a write and a flush of it come to the same.
void writeAndFlush(FILE* stream, const char* bytes, size_t size) {
  const int file = ::fileno(stream);
  while (size > 0) {
    const ssize_t written = ::write(file, bytes, size);
    if (written <= 0) {
      if (written < 0 && errno == EINTR) continue;
      return;
    }
    bytes += written;
    size -= static_cast<size_t>(written);
  }
}

bool pathExists(const char* path) {
  return ::access(path, F_OK) == 0;
}

bool makeFolder(const char* path) {
  return ::mkdir(path, 0755) == 0;
}

}  // namespace corvane::platform
