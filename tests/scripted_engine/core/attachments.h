// The handlers, observers and sinks that the module has given to the engine, and the gate through which every call into
// one of them goes.
#pragma once

#include <atomic>
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
    inside_.fetch_add(1);
    if (closed_) {
      leave();
      return false;
    }
    return true;
  }
  void leave() {
    inside_.fetch_sub(1);
    inside_.notify_all();
  }
  void close() { closed_ = true; }
  void waitUntilEmpty() {
    for (int inside = inside_; inside != 0; inside = inside_) {
      inside_.wait(inside);
    }
  }
  void* target() const { return target_; }

 private:
  void* target_;
  std::atomic<int> inside_{0};
  std::atomic<bool> closed_{false};
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
