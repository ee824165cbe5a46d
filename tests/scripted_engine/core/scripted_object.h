// The base of everything the scripted engine hands out: one line for each operation.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/fields.h"
#include "core/recorder.h"

namespace corvane::scripted {

/// An argument on its way into the record; turned into a value only while calls are recorded.
template <class T>
struct Arg {
  const char* name;
  const T& item;
  Value value() const { return toValue(item); }
};
template <class T>
Arg<T> arg(const char* name, const T& item) {
  return {name, item};
}

template <class E>
struct ListArg {
  const char* name;
  const E* items;
  int64_t count;
  Value value() const { return listToValue(items, count); }
};
/// `count` items, or bytes, behind a pointer.
template <class E>
ListArg<E> list(const char* name, const E* items, int64_t count) {
  return {name, items, count};
}

/// An out parameter: set when the scripted answer is an object with a member of this name.
template <class T>
struct Out {
  const char* name;
  T* target;
  bool fill(const Value& answer) const {
    const Value* member = answer.find(name);
    if (member != nullptr) {
      Arena arena;
      readValue(*member, *target, arena);
    }
    return member != nullptr;
  }
};
template <class T>
Out<T> out(const char* name, T& target) {
  return {name, &target};
}

/// A text buffer of the caller's. Longer texts are cut as the headers say.
struct TextOut {
  const char* name;
  char* buffer;
  size_t size;
  bool fill(const Value& answer) const;
};

/// Takes part in a call's result, see call() below.
template <class R>
R resultFrom(const Value& answer) {
  const Value* result = answer.as<Value::Members>() == nullptr ? &answer : answer.find("result");
  R value{};
  if (result != nullptr && !result->isNull()) {
    Arena arena;
    readValue(*result, value, arena);
  }
  return value;
}

class ScriptedObject {
 public:
  ScriptedObject(const ScriptedObject&) = delete;
  ScriptedObject& operator=(const ScriptedObject&) = delete;

  /// From now on calls are marked as coming too late.
  void end() { ended_ = true; }
  bool ended() const { return ended_; }
  /// The result of all operations that a test has not scripted.
  void answerFromNowOn(int32_t result) { unscripted_result_ = result; }
  const std::string& id() const { return id_; }

 protected:
  explicit ScriptedObject(const char* interface_name, std::string id = {})
      : interface_name_(interface_name), id_(std::move(id)) {}
  ~ScriptedObject() = default;

  /// Records the call. The result is what a test scripted: the answer itself or its member "result"; else 0, or what
  /// answerFromNowOn() set.
  template <class R = int32_t, class... A>
  R call(std::string_view operation, const A&... arguments) const {
    note(operation, arguments...);
    const auto answer = this->answer(operation);
    return answer ? resultFrom<R>(*answer) : static_cast<R>(unscripted_result_.load());
  }

  /// As call(); without a scripted answer the result is a new number above 0, as for messages and tasks.
  template <class R, class... A>
  R callForId(std::string_view operation, const A&... arguments) const {
    note(operation, arguments...);
    if (const auto answer = this->answer(operation)) {
      return resultFrom<R>(*answer);
    }
    const int32_t failure = unscripted_result_;
    return failure < 0 ? static_cast<R>(failure) : static_cast<R>(nextNumber());
  }

  /// As call(), with out parameters that the answer's members of the same names fill.
  template <class... O>
  int32_t callOut(std::string_view operation, const O&... outs) const {
    note(operation);
    const auto answer = this->answer(operation);
    if (!answer) {
      return unscripted_result_;
    }
    (outs.fill(*answer), ...);
    return resultFrom<int32_t>(*answer);
  }

  /// Records the call and answers `object`, or null when a test withholds what the operation gives.
  template <class I, class... A>
  I* offer(std::string_view operation, I* object, const A&... arguments) const {
    note(operation, arguments...);
    return isWithheld(operation) ? nullptr : object;
  }

  template <class... A>
  void note(std::string_view operation, const A&... arguments) const {
    auto& recorder = Recorder::instance();
    if (ended_) {
      recorder.countEndedCall();
    }
    if (recorder.recording()) {
      Value::Members members;
      members.reserve(sizeof...(arguments));
      (members.emplace_back(arguments.name, arguments.value()), ...);
      recorder.record(target(), operation, std::move(members));
    }
  }

  std::optional<Value> answer(std::string_view operation) const {
    return Recorder::instance().answer(target(), operation);
  }

  bool isWithheld(std::string_view operation) const { return Recorder::instance().isWithheld(target(), operation); }

  static int64_t nextNumber();

 private:
  CallTarget target() const { return {interface_name_, id_, ended_}; }

  const char* interface_name_;
  std::string id_;
  std::atomic<bool> ended_{false};
  std::atomic<int32_t> unscripted_result_{0};
};

}  // namespace corvane::scripted
