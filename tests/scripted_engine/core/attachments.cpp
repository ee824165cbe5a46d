#include "core/attachments.h"

#include "core/value.h"

namespace corvane::scripted {

Attachments& Attachments::instance() {
  static auto* attachments = new Attachments;
  return *attachments;
}

void Attachments::attach(std::string_view interface_name, const std::string& id, void* target, const void* owner,
                         Previous previous) {
  std::shared_ptr<Slot> replaced;
  {
    const std::lock_guard lock(mutex_);
    const Key key{interface_name, id};
    if (const auto found = entries_.find(key); found != entries_.end()) {
      replaced = found->second.slot;
      entries_.erase(found);
    }
    if (target != nullptr) {
      entries_.emplace(key, Entry{std::make_shared<Slot>(target), owner});
    }
  }
  if (replaced != nullptr) {
    replaced->close();
    if (previous == kWait) {
      replaced->waitUntilEmpty();
    }
  }
}

void Attachments::detachOwned(const void* owner) {
  std::vector<std::shared_ptr<Slot>> slots;
  {
    const std::lock_guard lock(mutex_);
    for (auto entry = entries_.begin(); entry != entries_.end();) {
      if (entry->second.owner == owner) {
        slots.push_back(entry->second.slot);
        entry = entries_.erase(entry);
      } else {
        ++entry;
      }
    }
  }
  closeAll(slots);
}

void Attachments::detachAll() {
  std::vector<std::shared_ptr<Slot>> slots;
  {
    const std::lock_guard lock(mutex_);
    for (const auto& [key, entry] : entries_) {
      slots.push_back(entry.slot);
    }
    entries_.clear();
  }
  closeAll(slots);
}

void Attachments::closeAll(const std::vector<std::shared_ptr<Slot>>& slots) {
  for (const auto& slot : slots) {
    slot->close();
  }
  for (const auto& slot : slots) {
    slot->waitUntilEmpty();
  }
}

std::shared_ptr<Slot> Attachments::find(std::string_view interface_name, const std::string* id) const {
  const auto known = ids(interface_name);
  if (id == nullptr && known.size() > 1) {
    std::string message = std::string(interface_name) + ": several are attached, name one:";
    for (const auto& candidate : known) {
      message += " '" + candidate + "'";
    }
    throw BadRequest(message);
  }
  const std::lock_guard lock(mutex_);
  if (!known.empty()) {
    const auto found = entries_.find(Key{interface_name, id == nullptr ? known.front() : *id});
    if (found != entries_.end()) {
      return found->second.slot;
    }
  }
  throw BadRequest(std::string(interface_name) + " is not attached" + (id == nullptr ? "" : " as '" + *id + "'"));
}

std::vector<std::string> Attachments::ids(std::string_view interface_name) const {
  std::vector<std::string> found;
  const std::lock_guard lock(mutex_);
  for (const auto& [key, entry] : entries_) {
    if (key.first == interface_name) {
      found.push_back(key.second);
    }
  }
  return found;
}

}  // namespace corvane::scripted
