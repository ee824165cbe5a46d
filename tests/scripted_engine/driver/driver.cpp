// The add-on by which JavaScript tests drive the scripted engine, and what measurements need of the host.

#include <node_api.h>

#include <cstdint>
#include <ctime>
#include <memory>
#include <string>
#include <thread>

#include "commands.h"
#include "driver/page_faults.h"

namespace {

double cpuNs(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

napi_value number(napi_env env, double value) {
  napi_value result = nullptr;
  napi_create_double(env, value, &result);
  return result;
}

/// command(request: string): string
napi_value command(napi_env env, napi_callback_info info) {
  size_t count = 1;
  napi_value request = nullptr;
  napi_get_cb_info(env, info, &count, &request, nullptr, nullptr);
  size_t size = 0;
  if (napi_get_value_string_utf8(env, request, nullptr, 0, &size) != napi_ok) {
    napi_throw_type_error(env, nullptr, "command() takes text");
    return nullptr;
  }
  std::string text(size, '\0');
  napi_get_value_string_utf8(env, request, text.data(), size + 1, &size);
  std::string answer;
  scriptedEngineCommand(
      text.data(), text.size(),
      [](void* context, const char* reply, size_t length) {
        static_cast<std::string*>(context)->assign(reply, length);
      },
      &answer);
  napi_value result = nullptr;
  napi_create_string_utf8(env, answer.data(), answer.size(), &result);
  return result;
}

/// One run of postNumbers(): its thread is joined by the function's finaliser.
struct NumberPost {
  napi_threadsafe_function function = nullptr;
  int64_t count = 0;
  std::thread thread;
};

void deliverNumber(napi_env env, napi_value callback, void*, void* data) {
  if (env == nullptr) {
    return;
  }
  napi_value undefined = nullptr;
  napi_get_undefined(env, &undefined);
  napi_value argument = number(env, static_cast<double>(reinterpret_cast<intptr_t>(data)));
  napi_call_function(env, undefined, callback, 1, &argument, nullptr);
}

void endPost(napi_env, void* data, void*) {
  const std::unique_ptr<NumberPost> post(static_cast<NumberPost*>(data));
  post->thread.join();
}

/// postNumbers(count, callback): a thread posts 0 to count - 1 through a plain thread-safe function, the cheapest way
/// from another thread to JavaScript.
napi_value postNumbers(napi_env env, napi_callback_info info) {
  size_t count = 2;
  napi_value arguments[2] = {};
  napi_get_cb_info(env, info, &count, arguments, nullptr, nullptr);
  auto post = std::make_unique<NumberPost>();
  napi_value name = nullptr;
  napi_create_string_utf8(env, "postNumbers", NAPI_AUTO_LENGTH, &name);
  if (napi_get_value_int64(env, arguments[0], &post->count) != napi_ok ||
      napi_create_threadsafe_function(env, arguments[1], nullptr, name, 0, 1, post.get(), endPost, nullptr,
                                      deliverNumber, &post->function) != napi_ok) {
    napi_throw_type_error(env, nullptr, "postNumbers() takes a count and a function");
    return nullptr;
  }
  NumberPost* running = post.release();
  running->thread = std::thread([function = running->function, total = running->count] {
    for (int64_t i = 0; i < total; ++i) {
      napi_call_threadsafe_function(function, reinterpret_cast<void*>(static_cast<intptr_t>(i)), napi_tsfn_nonblocking);
    }
    napi_release_threadsafe_function(function, napi_tsfn_release);
  });
  return nullptr;
}

/// CPU time of the calling thread.
napi_value threadCpuNs(napi_env env, napi_callback_info) {
  return number(env, cpuNs(CLOCK_THREAD_CPUTIME_ID));
}

/// CPU time of the process.
napi_value processCpuNs(napi_env env, napi_callback_info) {
  return number(env, cpuNs(CLOCK_PROCESS_CPUTIME_ID));
}

/// Page faults of the process so far.
napi_value pageFaults(napi_env env, napi_callback_info) {
  return number(env, static_cast<double>(corvane::scripted::pageFaults()));
}

void shutDown(void*) {
  constexpr std::string_view kRequest = R"({"do":"shutDown"})";
  scriptedEngineCommand(
      kRequest.data(), kRequest.size(), [](void*, const char*, size_t) {}, nullptr);
}

}  // namespace

// NOLINTNEXTLINE(readability-identifier-naming): the host looks for this name.
NAPI_MODULE_INIT(/* napi_env env, napi_value exports */) {
  const napi_property_descriptor functions[] = {
      {"command", nullptr, command, nullptr, nullptr, nullptr, napi_enumerable, nullptr},
      {"postNumbers", nullptr, postNumbers, nullptr, nullptr, nullptr, napi_enumerable, nullptr},
      {"threadCpuNs", nullptr, threadCpuNs, nullptr, nullptr, nullptr, napi_enumerable, nullptr},
      {"processCpuNs", nullptr, processCpuNs, nullptr, nullptr, nullptr, napi_enumerable, nullptr},
      {"pageFaults", nullptr, pageFaults, nullptr, nullptr, nullptr, napi_enumerable, nullptr},
  };
  napi_define_properties(env, exports, std::size(functions), functions);
  napi_add_env_cleanup_hook(env, shutDown, nullptr);
  return exports;
}
