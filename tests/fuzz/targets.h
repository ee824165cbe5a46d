// What is fuzzed: every reader of texts that come from elsewhere. A target aborts when what it read breaks a promise.
#pragma once

#include <span>
#include <string_view>

namespace corvane::fuzz {

struct Target {
  const char* name;  ///< of its folder of seeds, too
  void (*run)(std::string_view input);
};

std::span<const Target> targets();

/// Null when there is none of this name.
const Target* findTarget(std::string_view name);

/// Before the first input: GStreamer without its plug-ins, so that no connection of media is ever made.
void prepare();

/// Ends the process, with what was broken, unless `kept`.
void promise(bool kept, const char* what);

// The targets.
void runSignalling(std::string_view input);
void runChannel(std::string_view input);
void runMemberState(std::string_view input);
void runSessionDescription(std::string_view input);
void runParameters(std::string_view input);
void runDeviceIds(std::string_view input);
void runServiceFile(std::string_view input);

}  // namespace corvane::fuzz
