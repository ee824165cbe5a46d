// Which of many users are heard at once: the loudest, and those who are heard in any case.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <vector>

namespace corvane::rtc {

/// Any thread.
class SoundSelection {
 public:
  class Voice {
   public:
    explicit Voice(SoundSelection& selection) : selection_(selection) { selection_.add(*this); }
    ~Voice() { selection_.remove(*this); }
    Voice(const Voice&) = delete;
    Voice& operator=(const Voice&) = delete;

    /// It is heard in any case, and takes one of the places.
    void setPreferred(bool preferred) { preferred_.store(preferred, std::memory_order_relaxed); }
    /// Whether to hear a block of this power (the mean square of its samples), captured at this time.
    bool isHeard(float power, int64_t time_us) { return selection_.choose(*this, power, time_us); }

   private:
    friend class SoundSelection;
    SoundSelection& selection_;
    std::atomic<bool> preferred_ = false;
    // Under the selection's lock.
    float power_ = 0;  // falls slowly: words have pauses
    int64_t time_us_ = 0;
    bool heard_ = true;
  };

  void setPlaces(size_t places);

 private:
  void add(Voice& voice);
  void remove(Voice& voice);
  bool choose(Voice& voice, float power, int64_t time_us);
  static float rankOf(const Voice& voice, int64_t now_us);

  std::mutex mutex_;
  size_t places_ = SIZE_MAX;
  std::vector<Voice*> voices_;
};

}  // namespace corvane::rtc
