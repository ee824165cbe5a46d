// What the module keeps for one JavaScript environment (the main thread's, or a worker's).
#pragma once

#include <napi.h>

#include <span>
#include <unordered_map>
#include <vector>

namespace corvane {

struct EnvironmentData {
  /// A function that makes objects with one sequence of keys.
  struct Factory {
    const char* event_name;
    std::vector<const char*> keys;
    napi_ref function;
  };

  /// By the event's name, or the first key where there is none; literals, compared by pointer.
  std::unordered_map<const void*, std::vector<Factory>> factories;

  /// Scratch space of the payload writers, innermost last.
  std::vector<const char*> keys;
  std::vector<napi_value> values;

  /// The data of `env`, made on first use and freed with the environment. JavaScript thread.
  static EnvironmentData& of(napi_env env);
};

}  // namespace corvane
