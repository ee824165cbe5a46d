// The handlers, observers and sinks that the module has given to the engine, and the gate through which every call into
// one of them goes.
#pragma once

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane::scripted {

/// One attached handler. Calls go in between enter() and leave(); after close() has returned nobody is inside.
class Slot {
 public:
  explicit Slot(void* target) : target_(target) {}

  bool enter() {
    const std::lock_guard lock(mutex_);
    if (closed_) {
      return false;
    }
    ++inside_;
    return true;
  }
  void leave() {
    // Under the lock, so that whoever waits for the last one out cannot end the slot before the notice is given.
    const std::lock_guard lock(mutex_);
    if (--inside_ == 0) {
      empty_.notify_all();
    }
  }
  void close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
  }
  void waitUntilEmpty() {
    std::unique_lock lock(mutex_);
    empty_.wait(lock, [this] { return inside_ == 0; });
  }
  void* target() const { return target_; }

 private:
  void* target_;
  // Not std::atomic's wait(): without a futex GCC 12's loses wake-ups.
  std::mutex mutex_;
  std::condition_variable empty_;
  int inside_ = 0;
  bool closed_ = false;
};

/// One for the process. Handlers are known by interface name and id: a room's, player's, task's or stream's.
class Attachments {
 public:
  static Attachments& instance();

  /// `target` points to the interface itself; null detaches. `owner` is the engine or room whose end detaches, too.
  /// A call may still be running in the previous handler when this returns, except with kWait.
  enum Previous { kLeave, kWait };
  void attach(std::string_view interface_name, const std::string& id, void* target, const void* owner,
              Previous previous = kLeave);

  /// Nobody is inside any handler of the owner's when these return.
  void detachOwned(const void* owner);
  void detachAll();

  /// The only handler of the interface when `id` is null. Throws BadRequest when there is none or the choice is open.
  std::shared_ptr<Slot> find(std::string_view interface_name, const std::string* id) const;
  std::vector<std::string> ids(std::string_view interface_name) const;

 private:
  struct Entry {
    std::shared_ptr<Slot> slot;
    const void* owner;
  };
  using Key = std::pair<std::string, std::string>;

  static void closeAll(const std::vector<std::shared_ptr<Slot>>& slots);

  mutable std::mutex mutex_;
  std::map<Key, Entry> entries_;
};

}  // namespace corvane::scripted
