// What differs between operating systems. Behind it: win32/ and posix/.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace corvane::platform {

/// Separates folder names in the paths that the module builds itself.
#if defined(_WIN32)
inline constexpr char kFolderSeparator = '\\';
#else
inline constexpr char kFolderSeparator = '/';
#endif

/// Writes one finished, zero-terminated line to the debugger output. Any thread.
void writeDebugOutput(const char* line);

/// False when writeDebugOutput() would drop every line, so that callers can skip their work.
bool hasDebugOutput();

/// The operating system's ids of the calling thread and of this process.
uint32_t currentThreadId();
int32_t currentProcessId();

/// A variable of the process's environment as JavaScript sees it, too; empty when it is not set.
std::string environmentVariable(const char* name);

/// Names the calling thread for debuggers and profilers; at most 15 characters are kept.
void nameCurrentThread(const char* name);

/// The per-user folder for application data, without a separator at its end; empty when there is none.
std::string applicationDataFolder();

/// Writes `size` bytes and flushes. The caller sees to it that no other thread uses the stream.
void writeAndFlush(FILE* stream, const char* bytes, size_t size);

bool pathExists(const char* path);
bool makeFolder(const char* path);

}  // namespace corvane::platform
