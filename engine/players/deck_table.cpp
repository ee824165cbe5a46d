#include "players/deck_table.h"

#include <utility>

namespace corvane::rtc {

DeckTable::DeckTable(EngineContext& context, VoiceMix& mix, OtherFile other_file, Events events)
    : context_(context),
      mix_(mix),
      other_file_(other_file),
      events_(std::make_shared<const Events>(std::move(events))) {}

void DeckTable::tell(int32_t id, PlayerState state, PlayerError error, bool of_preload) {
  context_.thread.post(
      [events = events_, id, state, error, of_preload] { events->state(id, state, error, of_preload); });
}

DeckTable::Entry& DeckTable::entry(int32_t id) {
  Entry& found = entries_[id];
  if (found.deck == nullptr) {
    found.deck = std::make_shared<Deck>(
        context_, mix_,
        Deck::Events{.state = [events = events_, id](PlayerState state,
                                                     PlayerError error) { events->state(id, state, error, false); },
                     .progress = [events = events_, id](int64_t position_ms) { events->progress(id, position_ms); }});
    found.deck->change([this](VoiceSettings& settings) { settings = defaults_; });
  }
  return found;
}

// What has ended is forgotten: applications may count their ids up.
void DeckTable::sweep() {
  std::erase_if(entries_,
                [](const auto& item) { return item.second.preload == nullptr && !item.second.deck->active(); });
}

std::shared_ptr<Deck> DeckTable::find(int32_t id) {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(id);
  if (found == entries_.end()) return nullptr;
  const Entry& entry = found->second;
  return entry.preload != nullptr || entry.deck->active() ? entry.deck : nullptr;
}

int32_t DeckTable::preload(int32_t id, const std::string& path) {
  const std::lock_guard lock(mutex_);
  sweep();
  Entry& wanted = entry(id);
  if (wanted.preload != nullptr && wanted.preload->path() != path && other_file_ == OtherFile::kRefused) {
    tell(id, kPlayerStateFailed, kPlayerErrorInvalidState, true);
    return kWrongState;
  }
  if (wanted.preload != nullptr) wanted.preload->cancel();
  wanted.preload = std::make_shared<Preload>(context_, path);
  wanted.preload->start();
  wanted.preload->then([this, id, mine = std::weak_ptr(wanted.preload)](const auto& memory, PlayerError error) {
    if (memory == nullptr) {
      const std::lock_guard entries_lock(mutex_);
      const auto found = entries_.find(id);
      if (found != entries_.end() && found->second.preload == mine.lock()) found->second.preload.reset();
    }
    events_->state(id, memory != nullptr ? kPlayerStatePreloaded : kPlayerStateFailed, error, true);
  });
  return kSuccess;
}

int32_t DeckTable::unload(int32_t id) {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(id);
  if (found == entries_.end() || found->second.preload == nullptr) return kNotFound;
  found->second.preload->cancel();
  if (found->second.deck->active()) found->second.deck->stop();
  tell(id, kPlayerStateIdle, kPlayerErrorOk, true);
  entries_.erase(found);
  return kSuccess;
}

void DeckTable::unloadAll() {
  std::vector<int32_t> ids;
  {
    const std::lock_guard lock(mutex_);
    for (const auto& [id, entry] : entries_) ids.push_back(id);
  }
  for (const int32_t id : ids) unload(id);
}

int32_t DeckTable::start(int32_t id, const std::string& path, const DeckConfig& config,
                         const std::function<void(VoiceSettings&)>& settings) {
  const std::lock_guard lock(mutex_);
  sweep();
  const auto found = entries_.find(id);
  const std::shared_ptr<Preload> preload = found != entries_.end() ? found->second.preload : nullptr;
  const bool from_memory = preload != nullptr && (path.empty() || path == preload->path());
  if (!from_memory && path.empty()) {
    tell(id, kPlayerStateFailed, kPlayerErrorNotPreloaded, false);
    return kNotFound;
  }
  if (!from_memory && preload != nullptr && other_file_ == OtherFile::kRefused) {
    tell(id, kPlayerStateFailed, kPlayerErrorInvalidState, false);
    return kWrongState;
  }
  Deck& deck = *entry(id).deck;
  deck.change(settings);
  if (from_memory) {
    deck.openPreloaded(preload, config);
  } else {
    deck.openFile(path, config);
  }
  return kSuccess;
}

void DeckTable::forActive(int32_t (Deck::*operation)()) {
  const std::lock_guard lock(mutex_);
  for (const auto& [id, entry] : entries_) {
    if (entry.deck->active()) (*entry.deck.*operation)();
  }
}

void DeckTable::changeAll(const std::function<void(VoiceSettings&)>& change) {
  const std::lock_guard lock(mutex_);
  change(defaults_);
  for (const auto& [id, entry] : entries_) entry.deck->change(change);
}

int64_t DeckTable::duration(int32_t id) {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(id);
  if (found == entries_.end()) return kNotFound;
  const Entry& entry = found->second;
  if (entry.deck->active()) return entry.deck->duration();
  if (entry.preload == nullptr) return kNotFound;
  const auto memory = entry.preload->memory();
  return memory != nullptr ? msOf(memory->frames()) : int64_t{kWrongState};
}

void DeckTable::shutDown() {
  const std::lock_guard lock(mutex_);
  for (const auto& [id, entry] : entries_) {
    entry.deck->shutDown();
    if (entry.preload != nullptr) entry.preload->shutDown();
  }
}

}  // namespace corvane::rtc
