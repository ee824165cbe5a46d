#include "playback/sound_selection.h"

#include <algorithm>
#include <limits>

namespace corvane::rtc {

namespace {

// In one block of 10 ms: half in 200 ms.
constexpr float kDecay = 0.966F;
// Who is heard gives way only to one who is 3 dB louder.
constexpr float kKept = 2.0F;
// Who has sent nothing for so long takes no place.
constexpr int64_t kGone = 200'000;

}  // namespace

void SoundSelection::setPlaces(size_t places) {
  const std::lock_guard lock(mutex_);
  places_ = places;
}

void SoundSelection::add(Voice& voice) {
  const std::lock_guard lock(mutex_);
  voices_.push_back(&voice);
}

void SoundSelection::remove(Voice& voice) {
  const std::lock_guard lock(mutex_);
  voices_.erase(std::find(voices_.begin(), voices_.end(), &voice));
}

float SoundSelection::rankOf(const Voice& voice, int64_t now_us) {
  if (now_us - voice.time_us_ > kGone) return -1;
  if (voice.preferred_.load(std::memory_order_relaxed)) return std::numeric_limits<float>::infinity();
  return voice.heard_ ? voice.power_ * kKept : voice.power_;
}

bool SoundSelection::choose(Voice& voice, float power, int64_t time_us) {
  const std::lock_guard lock(mutex_);
  voice.power_ = std::max(power, voice.power_ * kDecay);
  voice.time_us_ = time_us;
  if (voices_.size() <= places_ || voice.preferred_.load(std::memory_order_relaxed)) return voice.heard_ = true;
  const float own = rankOf(voice, time_us);
  size_t louder = 0;
  for (const Voice* other : voices_) {
    // Of two alike the first one is heard.
    if (other == &voice) continue;
    const float rank = rankOf(*other, time_us);
    louder += rank > own || (rank == own && other < &voice) ? 1 : 0;
  }
  return voice.heard_ = louder < places_;
}

}  // namespace corvane::rtc
