// Levels of sound, measured on audio threads and written to a file by a thread of its own.
#pragma once

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

namespace audio_gain {

/// The loudest and the mean of one kind of sound since the last look. One writer, one reader.
class Level {
 public:
  void add(const int16_t* samples, size_t count);
  /// As JSON, {"peak_db":-3.1,"rms_db":-12.7}, in dB of full scale, and starts anew; null without any sound since.
  std::string take();

 private:
  std::mutex mutex_;  // held for a few instructions
  int32_t peak_ = 0;
  double squares_ = 0;
  uint64_t count_ = 0;
};

enum Sound : size_t { kRecord, kPlayback, kScreen, kSounds };

/// Rewrites a file ten times a second while it has one. File access is nothing for an audio thread.
class LevelReport {
 public:
  LevelReport() = default;
  ~LevelReport() { stop(); }
  LevelReport(const LevelReport&) = delete;
  LevelReport& operator=(const LevelReport&) = delete;

  /// False when the file cannot be written. Not from audio threads, as stop().
  bool start(const std::string& path);
  void stop();

  Level& of(Sound sound) { return levels_[sound]; }
  /// Without a file, measuring is wasted work.
  bool isWanted() const { return wanted_; }

 private:
  void run(const std::string& path);
  bool write(const std::string& path);

  std::array<Level, kSounds> levels_;
  std::atomic<bool> wanted_{false};
  std::thread writer_;
  std::mutex mutex_;
  std::condition_variable ending_;
};

}  // namespace audio_gain
