// What the engine was asked, and what it was told to answer.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "core/value.h"

namespace corvane::scripted {

/// Who was called. `interface_name` is "" for the library's entry points, `id` "" where there is one object only.
struct CallTarget {
  const char* interface_name = "";
  std::string id;
  /// The object had ended (its engine destroyed, or itself released) when it was called.
  bool ended = false;
};

/// One for the process. All operations from any thread.
class Recorder {
 public:
  static Recorder& instance();

  /// Remembers the calling thread as the JavaScript thread.
  void markScriptThread() { script_thread_ = std::this_thread::get_id(); }

  void setRecording(bool recording) { recording_ = recording; }
  bool recording() const { return recording_; }
  void record(const CallTarget& target, std::string_view operation, Value arguments);
  /// Calls on objects that had ended are counted even while recording is off.
  void countEndedCall() { ++ended_calls_; }

  /// Recorded calls as { name, id, args, js, ended? }. `name` may leave the interface out; "" is every call.
  Value calls(std::string_view name) const;
  int64_t countOf(std::string_view name) const;

  void setAnswer(const std::string& name, Value value);
  void removeAnswer(const std::string& name);
  /// Null when nothing was scripted for "Interface.operation" or, the second choice, "operation".
  std::optional<Value> answer(const CallTarget& target, std::string_view operation) const;

  void withhold(const std::string& operation, bool withheld);
  bool isWithheld(const CallTarget& target, std::string_view operation) const;

  void clearCalls();
  void clearScript();
  int64_t endedCalls() const { return ended_calls_; }

 private:
  struct Call {
    std::string name;
    size_t operation_at;  ///< in `name`, past the interface and its dot
    std::string id;
    Value arguments;
    bool from_script;
    bool ended;
  };

  static bool matches(const Call& call, std::string_view name);

  mutable std::mutex mutex_;
  std::vector<Call> calls_;
  std::map<std::string, Value, std::less<>> answers_;
  std::set<std::string, std::less<>> withheld_;
  std::atomic<std::thread::id> script_thread_;
  std::atomic<bool> recording_{true};
  std::atomic<bool> scripted_{false};  ///< spares every operation the lock while nothing is scripted
  std::atomic<int64_t> ended_calls_{0};
};

}  // namespace corvane::scripted
