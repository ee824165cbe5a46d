// The one shape of a wrapped method. A plain method is a Row in a table; the dispatcher walks every row alike:
// entry line, engine test, argument tests, sub-manager, conversion, engine call, exit line, result.
#pragma once

#include <napi.h>

#include <array>
#include <cstdint>
#include <span>

#include "binding/reader.h"
#include "log/log.h"

namespace corvane {

class Call;

inline constexpr size_t kMaxArguments = 6;

/// What a call answers unless its row's run sets something else.
enum class Answer : uint8_t {
  kNumber,  ///< the result
  kText,    ///< ""
  kList,    ///< an empty array
  kObject,  ///< an object without properties
};

/// One wrapped method as data.
struct Row {
  using Run = void (*)(Call& call);

  const char* name = nullptr;
  /// Converts the arguments, calls the engine and sets the call's result.
  Run run = nullptr;
  int32_t line = 0;  ///< printed behind the name in every line of the method
  std::array<Kind, kMaxArguments> kinds{};
  uint8_t argument_count = 0;

  /// A bare method tests, logs and answers by itself; of the fields below none is used.
  bool bare = false;
  /// Arguments are tested before the owner (the engine, the room, the player).
  bool arguments_first = false;
  /// Finds the sub-manager before the arguments are tested, or logs why there is none and returns null.
  void* (*fetch)(Call& call) = nullptr;

  const char* entry = "+%s(%d)";
  const char* exit = "-%s(%d), ret: %d";
  /// The exit line takes 64 bits (%lld).
  bool exit_is_wide = false;
  /// The exit line goes on with the converted arguments; the row's run writes it.
  bool exit_has_arguments = false;
  /// Writes such an exit line for a call whose arguments were never converted: 0, false and "" stand for them.
  void (*exit_unread)(const Call& call) = nullptr;
  /// Written after the conversion, with the converted arguments; null writes nothing.
  const char* said = nullptr;

  Answer answer = Answer::kNumber;

  /// Written behind the class's own line when the owner is missing; null writes nothing.
  const char* owner_missing = nullptr;
  /// Written when an argument has the wrong type: one line for all, or one per argument. A line may go on with %d for
  /// the host's type numbers of the arguments.
  std::array<const char*, kMaxArguments> refusals{};
  int32_t refusal_level = kLogInfo;
};

/// One JavaScript call of a wrapped method: its arguments going in, its result coming out.
class Call {
 public:
  Call(napi_env call_env, const Row& called, void* native) : env(call_env), row(called), wrapper(native) {}

  napi_env env;
  const Row& row;
  /// The native object behind `this`.
  void* wrapper;
  /// The engine object that the class's methods address (its owner); null in bare rows.
  void* owner = nullptr;
  /// What the row's fetch found.
  void* fetched = nullptr;
  napi_value receiver = nullptr;
  size_t argument_count = 0;
  std::array<napi_value, kMaxArguments> arguments{};

  /// The engine's result; becomes the exit line's number, and the JavaScript result unless `answer` is set.
  int64_t result = -1;
  napi_value answer = nullptr;
  bool exit_written = false;

  /// An argument; one that was not passed reads as undefined.
  napi_value operator[](size_t index) const { return arguments[index]; }
  bool is(size_t index, Kind kind) const { return isKind(env, arguments[index], kind); }

  /// Writes a line of this method: format, then its name and source line, then `values`.
  template <class... Values>
  void say(int32_t level, const char* format, Values... values) const {
    LogWriteRow(level, format, row.name, row.line, values...);
  }
};

/// Finds the owner of a class's methods, or logs why there is none and returns null.
using FindOwner = void* (*)(const Call& call);

/// For methods that end an engine or a room: true, with a line in the log, when the call came from inside another
/// method's reading of its arguments (a getter, a proxy), which would go on with what is gone. `wrapper` is the native
/// object whose methods would; null means those of every object.
bool refusesToEnd(const Call& call, const void* wrapper);

/// Walks one row. Never throws on purpose; a pending exception is one that the host's conversions left.
napi_value dispatch(Call& call, FindOwner find_owner);

/// The object that a thread's last call of a method of `T` was made on. To see that a call is made on it once more
/// takes the host a third of the time of finding out which object is behind the receiver.
template <class T>
class LastReceiver {
 public:
  /// The object behind `receiver`; null when there is none.
  static T* find(napi_env env, napi_value receiver) {
    if (last_ != nullptr && isLast(env, receiver)) return last_;
    void* object = nullptr;
    if (napi_unwrap(env, receiver, &object) != napi_ok) return nullptr;
    last_ = static_cast<T*>(object);
    return last_;
  }
  /// Called by the destructor of every `T`.
  static void forget(const T* object) {
    if (last_ == object) last_ = nullptr;
  }

 private:
  // The reference has no value any more when the object was collected and not yet destroyed.
  static bool isLast(napi_env env, napi_value receiver) {
    napi_value value = nullptr;
    bool same = false;
    return napi_get_reference_value(env, *last_, &value) == napi_ok && value != nullptr &&
           napi_strict_equals(env, receiver, value, &same) == napi_ok && same;
  }

  static constinit inline thread_local T* last_ = nullptr;
};

/// The native callback of every method of the class `T`, whose rows are the callbacks' data.
template <class T>
napi_value invoke(napi_env env, napi_callback_info info) {
  void* data = nullptr;
  napi_value receiver = nullptr;
  size_t count = kMaxArguments;
  std::array<napi_value, kMaxArguments> arguments{};
  if (napi_get_cb_info(env, info, &count, arguments.data(), &receiver, &data) != napi_ok) return nullptr;
  T* wrapper = LastReceiver<T>::find(env, receiver);
  if (wrapper == nullptr) {
    napi_throw_type_error(env, nullptr, "Illegal invocation");
    return nullptr;
  }
  Call call(env, *static_cast<const Row*>(data), wrapper);
  call.receiver = receiver;
  call.argument_count = count;
  call.arguments = arguments;
  return dispatch(call, &T::findOwner);
}

/// Defines a JavaScript class `T` whose prototype carries `names` in order, each bound to its row in one of `tables`.
template <class T>
Napi::Function defineClass(Napi::Env env, const char* class_name, std::span<const char* const> names,
                           std::span<const std::span<const Row>> tables);

/// Keeps the class alive for the life of the process. Each environment that loads the module leaves its own.
void keepConstructor(const Napi::Function& constructor);

/// The row named `name`; null when no table has it.
const Row* rowNamed(const char* name, std::span<const std::span<const Row>> tables);

template <class T>
Napi::Function defineClass(Napi::Env env, const char* class_name, std::span<const char* const> names,
                           std::span<const std::span<const Row>> tables) {
  std::vector<Napi::ClassPropertyDescriptor<T>> methods;
  methods.reserve(names.size());
  for (const char* name : names) {
    const Row* row = rowNamed(name, tables);
    if (row == nullptr) continue;
    napi_property_descriptor method{};
    method.utf8name = name;
    method.method = &invoke<T>;
    method.attributes = napi_default;
    method.data = const_cast<Row*>(row);  // NOLINT: the host hands it back untouched
    methods.emplace_back(method);
  }
  return T::DefineClass(env, class_name, methods);
}

}  // namespace corvane
