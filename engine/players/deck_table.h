// Sounds told apart by the application's ids, each of which may be preloaded: what effects and audio mixing share.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "corvane_rtc/common.h"
#include "players/deck.h"

namespace corvane::rtc {

/// Any thread. Results are ReturnStatus.
class DeckTable {
 public:
  /// Called on the engine thread.
  struct Events {
    /// `of_preload`: of loading ahead, not of playing.
    std::function<void(int32_t id, PlayerState state, PlayerError error, bool of_preload)> state;
    std::function<void(int32_t id, int64_t position_ms)> progress;
  };

  /// An id with one file preloaded that is asked for another: plays that all the same, or refuses.
  enum class OtherFile { kPlays, kRefused };

  DeckTable(EngineContext& context, VoiceMix& mix, OtherFile other_file, Events events);

  int32_t preload(int32_t id, const std::string& path);
  int32_t unload(int32_t id);
  void unloadAll();

  /// settings(VoiceSettings&) is called before anything plays. An id that plays starts anew.
  int32_t start(int32_t id, const std::string& path, const DeckConfig& config,
                const std::function<void(VoiceSettings&)>& settings);
  /// Of every sound that plays or pauses.
  void forActive(int32_t (Deck::*operation)());
  /// use(Deck&) gives the result; kNotFound where the id neither plays nor is preloaded.
  template <class F>
  auto with(int32_t id, F&& use) -> decltype(use(std::declval<Deck&>())) {
    const std::shared_ptr<Deck> deck = find(id);
    return deck != nullptr ? use(*deck) : kNotFound;
  }
  /// For all that are known, and those to come.
  void changeAll(const std::function<void(VoiceSettings&)>& change);
  /// The length of what is preloaded, where nothing plays.
  int64_t duration(int32_t id);

  /// Engine thread, the last call.
  void shutDown();

 private:
  struct Entry {
    std::shared_ptr<Deck> deck;
    std::shared_ptr<Preload> preload;
  };

  std::shared_ptr<Deck> find(int32_t id);
  // With mutex_ held.
  Entry& entry(int32_t id);
  void sweep();
  void tell(int32_t id, PlayerState state, PlayerError error, bool of_preload);

  EngineContext& context_;
  VoiceMix& mix_;
  const OtherFile other_file_;
  const std::shared_ptr<const Events> events_;

  std::mutex mutex_;
  std::map<int32_t, Entry> entries_;
  VoiceSettings defaults_;
};

}  // namespace corvane::rtc
