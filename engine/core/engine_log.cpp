#include "core/engine_log.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdarg>
#include <ctime>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace corvane::rtc {

namespace fs = std::filesystem;

namespace {

constexpr int64_t kMegabyte = 1024LL * 1024;
constexpr int64_t kMinTotalMegabytes = 1;
constexpr int64_t kMaxTotalMegabytes = 100;
constexpr int64_t kFilesInTotal = 4;

// With the separators of a line's date, or without, for a file's name.
std::string dateAndTime(bool for_file) {
  const time_t now = time(nullptr);
  tm local = {};
  localtime_r(&now, &local);
  char text[32];
  const size_t length = for_file ? strftime(text, sizeof(text), "%Y%m%d-%H%M%S", &local)
                                 : strftime(text, sizeof(text), "%Y-%m-%d %H:%M:%S", &local);
  return {text, length};
}

std::string fileStem(const LogSettings& settings) {
  return (settings.prefix.empty() ? "" : settings.prefix + "_") + "corvane_rtc_";
}

char levelLetter(LogLevel level) {
  switch (level) {
    case kLogLevelTrace:
      return 'T';
    case kLogLevelInfo:
      return 'I';
    case kLogLevelWarning:
      return 'W';
    default:
      return 'E';
  }
}

}  // namespace

int32_t readLogConfig(const LogConfig& config, LogSettings& settings) {
  const std::string folder = config.log_path != nullptr ? config.log_path : "";
  const std::string prefix = config.log_filename_prefix != nullptr ? config.log_filename_prefix : "";
  const bool plain_prefix = std::all_of(prefix.begin(), prefix.end(), [](unsigned char character) {
    return character < 0x80 && (isalnum(character) != 0 || character == '-' || character == '_');
  });
  if (folder.empty() || !plain_prefix || config.log_level < kLogLevelTrace || config.log_level > kLogLevelNone ||
      config.log_file_size < kMinTotalMegabytes || config.log_file_size > kMaxTotalMegabytes) {
    return kInvalidParameter;
  }
  std::error_code error;
  if (!fs::is_directory(folder, error)) return kNotFound;
  settings = {folder, prefix, config.log_level, config.log_file_size * kMegabyte};
  return kSuccess;
}

EngineLog::EngineLog(LogSettings settings) : settings_(std::move(settings)), started_(dateAndTime(true)) {}

void EngineLog::info(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  write(kLogLevelInfo, format, arguments);
  va_end(arguments);
}

void EngineLog::warning(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  write(kLogLevelWarning, format, arguments);
  va_end(arguments);
}

void EngineLog::error(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  write(kLogLevelError, format, arguments);
  va_end(arguments);
}

void EngineLog::write(LogLevel level, const char* format, va_list arguments) {
  if (!wants(level)) return;
  char text[2048];
  vsnprintf(text, sizeof(text), format, arguments);
  const auto since_epoch = std::chrono::system_clock::now().time_since_epoch();
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(since_epoch).count() % 1000;
  const std::string date = dateAndTime(false);

  const std::lock_guard lock(mutex_);
  if (file_ == nullptr || file_bytes_ > settings_.total_bytes / kFilesInTotal) openNextFile();
  if (file_ == nullptr) return;
  const int bytes =
      fprintf(file_.get(), "%s.%03d %c %s\n", date.c_str(), static_cast<int>(milliseconds), levelLetter(level), text);
  fflush(file_.get());
  file_bytes_ += std::max(bytes, 0);
}

void EngineLog::openNextFile() {
  char number[16];
  snprintf(number, sizeof(number), "_%04d.log", file_number_++);
  const std::string name = fileStem(settings_) + started_ + "_" + std::to_string(getpid()) + number;
  file_.reset();
  removeOldFiles();
  // A log that cannot be written is no reason for an engine not to run.
  file_.reset(fopen((fs::path(settings_.folder) / name).c_str(), "ae"));
  file_bytes_ = 0;
}

void EngineLog::removeOldFiles() const {
  struct LogFile {
    fs::path path;
    fs::file_time_type changed;
    int64_t bytes;
  };
  std::vector<LogFile> files;
  std::error_code error;
  for (fs::directory_iterator entry(settings_.folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (!name.starts_with(fileStem(settings_)) || !name.ends_with(".log")) continue;
    std::error_code unreadable;
    const auto bytes = static_cast<int64_t>(entry->file_size(unreadable));
    const auto changed = entry->last_write_time(unreadable);
    if (!unreadable) files.push_back({entry->path(), changed, bytes});
  }
  std::sort(files.begin(), files.end(), [](const LogFile& a, const LogFile& b) { return a.changed > b.changed; });

  // What stays leaves room for one whole file, the one about to be opened.
  int64_t room = settings_.total_bytes - settings_.total_bytes / kFilesInTotal;
  for (const LogFile& file : files) {
    room -= file.bytes;
    if (room < 0) fs::remove(file.path, error);
  }
}

}  // namespace corvane::rtc
