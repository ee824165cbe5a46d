// The module's own log: one line per call, refusal and callback, to the debugger output and, while one is
// open, to a file named by the day. Every function may be called from any thread unless it says otherwise.
#pragma once

#include <cstdint>
#include <string>

#if defined(__MINGW32__)
#define CORVANE_PRINTF(format_at, first_at) __attribute__((format(gnu_printf, format_at, first_at)))
#else
#define CORVANE_PRINTF(format_at, first_at) __attribute__((format(printf, format_at, first_at)))
#endif

namespace corvane {

enum LogLevel : int32_t {
  kLogError = 0,
  kLogWarning = 1,  ///< refused arguments, missing preconditions
  kLogInfo = 2,     ///< calls, results, callbacks: most lines
  kLogDetail = 3,   ///< what happens per frame
  kLogVerbose = 4,
};

/// Writes one line when `level` is within the threshold. `format` follows printf.
void LogWrite(int32_t level, const char* format, ...) CORVANE_PRINTF(2, 3);

/// Like LogWrite() for formats that stand in tables, where the compiler cannot see them beside their arguments.
void LogWriteRow(int32_t level, const char* format, ...);

/// The highest level still written; -1 writes nothing. 2 at start.
void setLogThreshold(int32_t threshold);
int32_t logThreshold();

/// Where CreateDstFile() puts its file; empty means the default folder. JavaScript thread.
void setLogDirectory(std::string directory);

/// Opens the day's file unless one is open. JavaScript thread.
void CreateDstFile();

/// Flushes and closes the file, framed by its two lines. JavaScript thread.
void CloseDstFile();

/// Makes every missing folder along `path`, which may use either slash. Paths over 256 characters are left alone.
void CreateLogDirectories(const std::string& path);

}  // namespace corvane
