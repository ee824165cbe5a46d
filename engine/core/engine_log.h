// The engine's log: dated lines in files of a folder that the application names, bounded in size.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>

#include "corvane_rtc/entry_points.h"

namespace corvane::rtc {

struct LogSettings {
  std::string folder;  ///< "" for no log
  std::string prefix;
  int32_t level = kLogLevelNone;  ///< LogLevel; less important lines are left out
  int64_t total_bytes = 0;        ///< that all files of this prefix in the folder may take
};

/// Checks what an application asks for. `settings` is set on success only.
int32_t readLogConfig(const LogConfig& config, LogSettings& settings);

/// Writes "<prefix>_corvane_rtc_<date>_<process>_<number>.log". When a file has grown to a quarter of what all may
/// take, the next number follows and the oldest files go, those of earlier runs included. Any thread.
class EngineLog {
 public:
  explicit EngineLog(LogSettings settings);

  bool wants(LogLevel level) const { return level >= settings_.level && !settings_.folder.empty(); }

  [[gnu::format(printf, 2, 3)]] void info(const char* format, ...);
  [[gnu::format(printf, 2, 3)]] void warning(const char* format, ...);
  [[gnu::format(printf, 2, 3)]] void error(const char* format, ...);

 private:
  struct CloseFile {
    void operator()(FILE* file) const { fclose(file); }
  };

  [[gnu::format(printf, 3, 0)]] void write(LogLevel level, const char* format, va_list arguments);
  void openNextFile();
  void removeOldFiles() const;

  const LogSettings settings_;
  const std::string started_;  // date of the first file, which all files of this log carry
  std::mutex mutex_;
  std::unique_ptr<FILE, CloseFile> file_;
  int64_t file_bytes_ = 0;
  int file_number_ = 0;
};

}  // namespace corvane::rtc
