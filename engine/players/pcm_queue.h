// Between the thread that decodes, or an application that pushes, and the one that mixes.
#pragma once

#include <condition_variable>
#include <deque>

#include "players/pcm.h"

namespace corvane::rtc {

class PcmQueue final : public PcmSink, public PcmSource {
 public:
  PcmQueue();

  bool write(std::span<const int16_t> samples, int64_t frame) override;
  void beginFlush() override;
  void endFlush() override;
  void beginPass() override;
  void end() override;

  /// Writes all of it or, when there is no room for that, nothing. Any thread.
  bool tryWrite(std::span<const int16_t> samples);
  /// What is read is about to come from there: position() says so from now on, until it does or the seek failed.
  void announceSeek(int64_t frame);
  void cancelSeek();
  /// Writing ends for good.
  void close();

  size_t read(std::span<int16_t> samples) override;
  bool ended() override;
  int64_t position() override;

 private:
  // Half a second, which plays on while a file is wound back to its start.
  static constexpr size_t kCapacity = static_cast<size_t>(kSoundRate) / 2 * kPcmChannels;

  struct Mark {
    int64_t at;     // samples written before it
    int64_t frame;  // the place in the media
  };

  size_t room() const { return kCapacity - static_cast<size_t>(written_ - read_); }
  void passMarks();
  void append(std::span<const int16_t> samples);

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<int16_t> ring_;
  // Samples since the start; the ring holds those between the two.
  int64_t written_ = 0;
  int64_t read_ = 0;
  std::deque<Mark> marks_;  // those up to read_ are one
  bool wants_mark_ = true;
  bool flushing_ = false;
  bool closed_ = false;
  bool ended_ = false;
  int64_t sought_ = -1;  // announced
  bool sought_flushed_ = false;
};

}  // namespace corvane::rtc
