#include "core/graveyard.h"

namespace corvane::scripted {

Graveyard& Graveyard::instance() {
  static auto* graveyard = new Graveyard;
  return *graveyard;
}

void Graveyard::take(std::shared_ptr<void> object) {
  std::shared_ptr<void> freed;
  const std::lock_guard lock(mutex_);
  objects_.push_back(std::move(object));
  if (objects_.size() > kMaxObjects) {
    freed = std::move(objects_.front());
    objects_.pop_front();
  }
}

}  // namespace corvane::scripted
