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
    call.say(row.refusal_level, row.refusals[i]);
    return false;
  }
  return true;
}

void writeExit(const Call& call) {
  if (call.exit_written || call.row.exit == nullptr) return;
  if (call.row.exit_is_wide) {
    call.say(kLogInfo, call.row.exit, static_cast<long long>(call.result));
  } else {
    call.say(kLogInfo, call.row.exit, static_cast<int>(call.result));
  }
}

napi_value answerOf(const Call& call) {
  if (call.answer != nullptr) return call.answer;
  napi_value number = nullptr;
  if (napi_create_double(call.env, static_cast<double>(call.result), &number) != napi_ok) return nullptr;
  return number;
}

void runTested(Call& call, FindOwner find_owner) {
  if (call.row.arguments_first && !acceptArguments(call)) return;
  call.owner = find_owner(call);
  if (call.owner == nullptr) return;
  if (!call.row.arguments_first && !acceptArguments(call)) return;
  call.row.run(call);
}

void runUnavailable(Call& call) {
  call.say(kLogWarning, "%s(%d), not available yet");
}

}  // namespace

napi_value dispatch(Call& call, FindOwner find_owner) {
  if (call.row.bare) {
    call.row.run(call);
    return answerOf(call);
  }
  if (call.row.entry != nullptr) call.say(kLogInfo, call.row.entry);
  runTested(call, find_owner);
  writeExit(call);
  return answerOf(call);
}

const Row& rowNamed(const char* name, std::span<const std::span<const Row>> tables) {
  for (const auto& table : tables) {
    for (const Row& row : table) {
      if (std::strcmp(row.name, name) == 0) return row;
    }
  }
  // Several environments may load the module at once, each on its own thread.
  static std::mutex lock;
  static std::deque<Row> unavailable;
  const std::lock_guard<std::mutex> guard(lock);
  for (const Row& row : unavailable) {
    if (std::strcmp(row.name, name) == 0) return row;
  }
  Row row;
  row.name = name;
  row.run = &runUnavailable;
  row.line = __LINE__;
  return unavailable.emplace_back(row);
}

}  // namespace corvane
