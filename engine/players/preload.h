// A short file that is decoded before it is played.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "players/sound_decoder.h"

namespace corvane::rtc {

/// Any thread, but for what is marked otherwise. Kept by shared pointers alone.
class Preload final : public std::enable_shared_from_this<Preload>, private SoundDecoder::Listener {
 public:
  static constexpr int64_t kMaxMs = 20'000;

  /// Called on the engine thread. `memory` is null when the file could not be decoded, and `error` says why.
  using Done = std::function<void(const std::shared_ptr<const PcmMemory>& memory, PlayerError error)>;

  Preload(EngineContext& context, std::string path);

  void start();
  /// Calls `done` when all is decoded, or has failed; never from within this call.
  void then(Done done);
  /// Whoever waits is not called any more.
  void cancel();
  /// The same, on the engine thread and at once.
  void shutDown();

  const std::string& path() const { return path_; }
  /// Null until it is decoded.
  std::shared_ptr<const PcmMemory> memory() const;

 private:
  class Gatherer;

  void onDecoderReady(int64_t duration_ms, int32_t tracks) override;
  void onDecoderFailed(const DecodingFault& fault) override;
  void onDecoderEnded() override;
  void finish(const std::shared_ptr<const PcmMemory>& memory, PlayerError error);

  EngineContext& context_;
  const std::string path_;

  mutable std::mutex mutex_;
  std::shared_ptr<const PcmMemory> memory_;

  // The engine thread's.
  std::shared_ptr<Gatherer> gatherer_;
  std::unique_ptr<SoundDecoder> decoder_;
  int32_t tracks_ = 1;
  bool done_ = false;
  PlayerError error_ = kPlayerErrorOk;
  std::vector<Done> waiting_;
};

}  // namespace corvane::rtc
