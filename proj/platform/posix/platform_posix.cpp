#include <pthread.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/platform.h"

namespace corvane::platform {

bool hasDebugOutput() {
  static const bool wanted = [] {
    const char* where = std::getenv("CORVANE_DEBUG_OUTPUT");
    return where != nullptr && std::strcmp(where, "stderr") == 0;
  }();
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

void nameCurrentThread(const char* name) {
  char cut[16] = {};
  std::strncpy(cut, name, sizeof cut - 1);
  ::pthread_setname_np(::pthread_self(), cut);
}

std::string applicationDataFolder() {
  if (const char* configured = std::getenv("XDG_CONFIG_HOME"); configured != nullptr && configured[0] == '/') {
    return configured;
  }
  const char* home = std::getenv("HOME");
  return home == nullptr ? std::string() : std::string(home) + "/.config";
}

void writeAndFlush(FILE* stream, const char* bytes, size_t size) {
  ::fwrite_unlocked(bytes, 1, size, stream);
  ::fflush_unlocked(stream);
}

bool pathExists(const char* path) {
  return ::access(path, F_OK) == 0;
}

bool makeFolder(const char* path) {
  return ::mkdir(path, 0755) == 0;
}

}  // namespace corvane::platform
