// What the module keeps for one JavaScript environment (the main thread's, or a worker's).
#pragma once

#include <napi.h>

#include <array>
#include <deque>
#include <span>
#include <unordered_map>
#include <vector>

namespace corvane {

struct EnvironmentData {
  /// A function that makes objects with one sequence of keys.
  struct Factory {
    bool delivers;  ///< calls its first argument with the object instead of returning it
    const char* event_name;
    std::vector<const char*> keys;
    napi_ref function;
  };

  /// The functions used last, by a hash of what they are found by: streams of events are alike.
  std::array<const Factory*, 8> recent{};

  /// By the event's name, or the first key where there is none; literals, compared by pointer.
  std::unordered_map<const void*, std::deque<Factory>> factories;

  /// The data of `env`, made on first use and freed with the environment. JavaScript thread.
  static EnvironmentData& of(napi_env env);
};

}  // namespace corvane
