#include "level_report.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace audio_gain {
namespace {

constexpr double kFullScale = 32768;
constexpr double kSilenceDb = -100;
constexpr std::chrono::milliseconds kInterval{100};

double decibels(double amplitude) {
  return amplitude <= 0 ? kSilenceDb : std::max(kSilenceDb, 20 * std::log10(amplitude / kFullScale));
}

}  // namespace

void Level::add(const int16_t* samples, size_t count) {
  int32_t peak = 0;
  int64_t squares = 0;
  for (size_t i = 0; i < count; ++i) {
    const int32_t sample = samples[i];
    peak = std::max(peak, std::abs(sample));
    squares += int64_t{sample} * sample;
  }
  const std::lock_guard<std::mutex> lock(mutex_);
  peak_ = std::max(peak_, peak);
  squares_ += static_cast<double>(squares);
  count_ += count;
}

std::string Level::take() {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (count_ == 0) return "null";
  char text[64];
  std::snprintf(text, sizeof text, "{\"peak_db\":%.1f,\"rms_db\":%.1f}", decibels(peak_),
                decibels(std::sqrt(squares_ / static_cast<double>(count_))));
  peak_ = 0;
  squares_ = 0;
  count_ = 0;
  return text;
}

bool LevelReport::start(const std::string& path) {
  stop();
  if (!write(path)) return false;
  wanted_ = true;
  writer_ = std::thread([this, path] { run(path); });
  return true;
}

void LevelReport::stop() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    wanted_ = false;
  }
  ending_.notify_all();
  if (writer_.joinable()) writer_.join();
}

void LevelReport::run(const std::string& path) {
  std::unique_lock<std::mutex> lock(mutex_);
  while (!ending_.wait_for(lock, kInterval, [this] { return !wanted_; })) write(path);
}

// Into a second file that then takes the first one's place: a reader never sees half a report.
bool LevelReport::write(const std::string& path) {
  const std::string text = "{\"record\":" + levels_[kRecord].take() + ",\"playback\":" + levels_[kPlayback].take() +
                           ",\"screen\":" + levels_[kScreen].take() + "}\n";
  const std::string fresh = path + ".new";
  FILE* file = std::fopen(fresh.c_str(), "wb");
  if (file == nullptr) return false;
  const bool written = std::fputs(text.c_str(), file) >= 0;
  const bool closed = std::fclose(file) == 0;
#if defined(_WIN32)
  std::remove(path.c_str());
#endif
  return written && closed && std::rename(fresh.c_str(), path.c_str()) == 0;
}

}  // namespace audio_gain
