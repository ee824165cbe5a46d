#include "log/log.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <mutex>

#include "log/format.h"
#include "platform/platform.h"

namespace corvane {
namespace {

// 10,240 characters and the terminating zero.
constexpr size_t kLineCapacity = 10241;

std::atomic<int32_t> g_logThreshold{kLogInfo};
std::atomic<FILE*> g_logFile{nullptr};
std::string g_logDirectory;  // JavaScript thread only

// Engine threads write while the JavaScript thread closes the file: without it they could write to a freed stream.
std::mutex g_fileLock;

const char* levelTag(int32_t level) {
  static constexpr const char* kTags[] = {"[E] ", "[W] ", "[I] ", "[D] ", "[V] "};
  return level >= 0 && level <= 4 ? kTags[level] : "";
}

tm localTime(time_t seconds) {
  tm parts{};
#if defined(_WIN32)
  localtime_s(&parts, &seconds);
#else
  localtime_r(&seconds, &parts);
#endif
  return parts;
}

// The parts of the header that stay the same for a second or for the life of a thread.
struct HeaderCache {
  time_t second = -1;
  int time_length = 0;
  char time[32] = {};
  int thread_length = 0;
  char thread[32] = {};
};

// Writes "<time> <tag>[tid: n] " and returns its length.
size_t writeHeader(char* line, int32_t level) {
  static thread_local HeaderCache cache;
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
  const auto second = static_cast<time_t>(milliseconds / 1000);
  if (second != cache.second) {
    const tm parts = localTime(second);
    cache.time_length =
        std::snprintf(cache.time, sizeof cache.time, "%4d-%02d-%02d %02d:%02d:%02d.", parts.tm_year + 1900,
                      parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec);
    cache.second = second;
  }
  if (cache.thread_length == 0) {
    cache.thread_length = std::snprintf(cache.thread, sizeof cache.thread, "[tid: %u] ", platform::currentThreadId());
  }

  char* at = line;
  std::memcpy(at, cache.time, sizeof cache.time);  // all of it: a copy of a known size is two instructions
  at += cache.time_length;
  const int rest = static_cast<int>(milliseconds % 1000);
  *at++ = static_cast<char>('0' + rest / 100);
  *at++ = static_cast<char>('0' + rest / 10 % 10);
  *at++ = static_cast<char>('0' + rest % 10);
  *at++ = ' ';
  const char* tag = levelTag(level);
  while (*tag != '\0') *at++ = *tag++;
  std::memcpy(at, cache.thread, sizeof cache.thread);
  at += cache.thread_length;
  return static_cast<size_t>(at - line);
}

void writeFile(const char* line, size_t length) {
  const std::lock_guard<std::mutex> lock(g_fileLock);
  FILE* file = g_logFile.load(std::memory_order_relaxed);
  if (file != nullptr) platform::writeAndFlush(file, line, length);
}

void writeLine(int32_t level, const char* format, va_list arguments) {
  const bool to_file = g_logFile.load(std::memory_order_relaxed) != nullptr;
  if (!to_file && !platform::hasDebugOutput()) return;

  char line[kLineCapacity];
  const size_t header = writeHeader(line, level);
  // One character stays free for the line feed, one for the terminating zero.
  size_t length = header + formatMessage(line + header, kLineCapacity - 1 - header, format, arguments);
  line[length++] = '\n';
  line[length] = '\0';

  platform::writeDebugOutput(line);
  if (to_file) writeFile(line, length);
}

bool isDropped(int32_t level) {
  const int32_t threshold = g_logThreshold.load(std::memory_order_relaxed);
  return threshold == -1 || threshold < level;
}

}  // namespace

void LogWrite(int32_t level, const char* format, ...) {
  if (isDropped(level)) return;
  va_list arguments;
  va_start(arguments, format);
  writeLine(level, format, arguments);
  va_end(arguments);
}

void LogWriteRow(int32_t level, const char* format, ...) {
  if (isDropped(level)) return;
  va_list arguments;
  va_start(arguments, format);
  writeLine(level, format, arguments);
  va_end(arguments);
}

void setLogThreshold(int32_t threshold) {
  g_logThreshold.store(threshold, std::memory_order_relaxed);
}

int32_t logThreshold() {
  return g_logThreshold.load(std::memory_order_relaxed);
}

void setLogDirectory(std::string directory) {
  g_logDirectory = std::move(directory);
}

void CreateDstFile() {
  std::string directory = g_logDirectory;
  const tm today = localTime(std::time(nullptr));
  char date[16] = {};
  std::strftime(date, sizeof date, "%Y-%m-%d", &today);

  if (directory.empty()) {
    // Both pieces carry a separator at each end, so there are two between the names.
    const std::string separator(1, platform::kFolderSeparator);
    directory =
        platform::applicationDataFolder() + separator + "xortc" + separator + separator + "electron" + separator;
    CreateLogDirectories(directory);
  }
  const std::string path = directory + "/" + date + "-node" + ".log";

  if (g_logFile.load(std::memory_order_relaxed) != nullptr) {
    LogWrite(kLogInfo, "[%s] internal, open file failed", "CreateDstFile");
    return;
  }
  FILE* file = std::fopen(path.c_str(), "w+");
  {
    const std::lock_guard<std::mutex> lock(g_fileLock);
    g_logFile.store(file, std::memory_order_relaxed);
  }
  LogWrite(kLogInfo, "[%s] internal, opened file: %s", "CreateDstFile", path.c_str());
}

void CloseDstFile() {
  LogWrite(kLogInfo, "+%s", "CloseDstFile");
  {
    const std::lock_guard<std::mutex> lock(g_fileLock);
    FILE* file = g_logFile.exchange(nullptr, std::memory_order_relaxed);
    if (file != nullptr) {
      std::fflush(file);
      std::fclose(file);
    }
  }
  LogWrite(kLogInfo, "-%s", "CloseDstFile");
}

void CreateLogDirectories(const std::string& path) {
  if (path.empty() || path.size() > 256) return;
  std::string folders = path;
  for (char& c : folders) {
    if (c == '\\') c = '/';
  }
  if (folders.back() != '/') folders += '/';
  for (size_t end = folders.find('/'); end != std::string::npos; end = folders.find('/', end + 1)) {
    const std::string prefix = folders.substr(0, end + 1);
    if (!platform::pathExists(prefix.c_str()) && !platform::makeFolder(prefix.c_str())) return;
  }
}

}  // namespace corvane
