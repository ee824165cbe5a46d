#include <cstring>
#include <deque>
#include <mutex>

#include "binding/row.h"

namespace corvane {
namespace {

bool acceptArguments(const Call& call) {
  const Row& row = call.row;
  for (size_t i = 0; i < row.argument_count; ++i) {
    if (call.is(i, row.kinds[i])) continue;
    call.say(row.refusal_level, row.refusals[i], typeCode(call.env, call[0]), typeCode(call.env, call[1]),
             typeCode(call.env, call[2]), typeCode(call.env, call[3]), typeCode(call.env, call[4]));
    return false;
  }
  return true;
}

napi_value emptyAnswer(napi_env env, Answer answer) {
  napi_value value = nullptr;
  switch (answer) {
    case Answer::kText:
      napi_create_string_utf8(env, "", 0, &value);
      break;
    case Answer::kList:
      napi_create_array(env, &value);
      break;
    case Answer::kObject:
      napi_create_object(env, &value);
      break;
    default:
      break;
  }
  return value;
}

void writeExit(const Call& call) {
  if (call.exit_written || call.row.exit == nullptr) return;
  if (call.row.exit_unread != nullptr) return call.row.exit_unread(call);
  if (call.row.exit_is_wide) {
    call.say(kLogInfo, call.row.exit, static_cast<long long>(call.result));
  } else {
    call.say(kLogInfo, call.row.exit, static_cast<int>(call.result));
  }
}

napi_value answerOf(const Call& call) {
  if (call.answer != nullptr) return call.answer;
  napi_value number = nullptr;
  const auto narrow = static_cast<int32_t>(call.result);
  const napi_status status = narrow == call.result
                                 ? napi_create_int32(call.env, narrow, &number)
                                 : napi_create_double(call.env, static_cast<double>(call.result), &number);
  return status == napi_ok ? number : nullptr;
}

void runTested(Call& call, FindOwner find_owner) {
  if (call.row.arguments_first && !acceptArguments(call)) return;
  call.owner = find_owner(call);
  if (call.owner == nullptr) {
    if (call.row.owner_missing != nullptr) call.say(kLogInfo, call.row.owner_missing);
    return;
  }
  if (call.row.fetch != nullptr) {
    call.fetched = call.row.fetch(call);
    if (call.fetched == nullptr) return;
  }
  if (!call.row.arguments_first && !acceptArguments(call)) return;
  call.row.run(call);
}

// A method of this thread that has not returned yet: one of several when a getter of an argument calls another.
class Running {
 public:
  explicit Running(const Call& call) : call_(call), outer_(innermost) { innermost = this; }
  ~Running() { innermost = outer_; }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

  static bool anyBut(const Call& call, const void* wrapper) {
    for (const Running* at = innermost; at != nullptr; at = at->outer_) {
      if (&at->call_ != &call && (wrapper == nullptr || at->call_.wrapper == wrapper)) return true;
    }
    return false;
  }

 private:
  static thread_local const Running* innermost;
  const Call& call_;
  const Running* const outer_;
};
thread_local const Running* Running::innermost = nullptr;

}  // namespace

bool refusesToEnd(const Call& call, const void* wrapper) {
  if (!Running::anyBut(call, wrapper)) return false;
  call.say(kLogWarning, "%s(%d), called while the arguments of another call are read");
  return true;
}

napi_value dispatch(Call& call, FindOwner find_owner) {
  const Running running(call);
  if (call.row.bare) {
    call.row.run(call);
    return answerOf(call);
  }
  call.answer = emptyAnswer(call.env, call.row.answer);
  if (call.row.entry != nullptr) call.say(kLogInfo, call.row.entry);
  runTested(call, find_owner);
  writeExit(call);
  return answerOf(call);
}

void keepConstructor(const Napi::Function& constructor) {
  static std::mutex lock;
  static auto* const kept = new std::deque<Napi::FunctionReference>;  // environments end at any time
  const std::lock_guard<std::mutex> guard(lock);
  kept->push_back(Napi::Persistent(constructor));
  kept->back().SuppressDestruct();
}

const Row* rowNamed(const char* name, std::span<const std::span<const Row>> tables) {
  for (const auto& table : tables) {
    for (const Row& row : table) {
      if (std::strcmp(row.name, name) == 0) return &row;
    }
  }
  return nullptr;
}

}  // namespace corvane
