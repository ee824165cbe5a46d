#include "rooms/packet_feedback.h"

#include <algorithm>

namespace corvane::rtc {

namespace {

constexpr double kNanosecondsAMillisecond = 1e6;
// From one call of take() to the next: clocks go apart, and a way may have become longer for good.
constexpr int64_t kForgottenTransit = 250'000;

}  // namespace

void PacketFeedback::add(uint64_t sent, std::optional<uint64_t> arrived, uint32_t bytes) {
  const std::lock_guard lock(mutex_);
  if (!arrived) {
    ++lost_;
    return;
  }
  ++arrived_;
  bits_ += int64_t{8} * bytes;
  last_arrival_ = std::max(last_arrival_, *arrived);
  const auto transit = static_cast<int64_t>(*arrived - sent);
  least_transit_ = std::min(transit, least_transit_.value_or(transit));
}

void PacketFeedback::add(const GstStructure* packets) {
  G_GNUC_BEGIN_IGNORE_DEPRECATIONS
  const GValue* list = gst_structure_get_value(packets, "packets");
  if (list == nullptr || !G_VALUE_HOLDS(list, g_type_from_name("GValueArray"))) return;
  auto* array = static_cast<GValueArray*>(g_value_get_boxed(list));
  for (guint index = 0; array != nullptr && index < array->n_values; ++index) {
    const GstStructure* packet = gst_value_get_structure(g_value_array_get_nth(array, index));
    guint64 sent = GST_CLOCK_TIME_NONE;
    guint64 arrived = GST_CLOCK_TIME_NONE;
    guint size = 0;
    gboolean lost = FALSE;
    gst_structure_get(packet, "local-ts", G_TYPE_UINT64, &sent, "remote-ts", G_TYPE_UINT64, &arrived, "size",
                      G_TYPE_UINT, &size, "lost", G_TYPE_BOOLEAN, &lost, nullptr);
    if (lost) {
      add(sent, std::nullopt, size);
    } else if (GST_CLOCK_TIME_IS_VALID(sent) && GST_CLOCK_TIME_IS_VALID(arrived)) {
      add(sent, arrived, size);
    }
  }
  G_GNUC_END_IGNORE_DEPRECATIONS
}

std::optional<LinkFeedback> PacketFeedback::take() {
  const std::lock_guard lock(mutex_);
  if (!least_transit_) return std::nullopt;
  usual_transit_ = std::min(*least_transit_, usual_transit_.value_or(*least_transit_) + kForgottenTransit);
  LinkFeedback feedback;
  feedback.loss = static_cast<double>(lost_) / static_cast<double>(lost_ + arrived_);
  feedback.queue_ms =
      static_cast<int32_t>(static_cast<double>(*least_transit_ - *usual_transit_) / kNanosecondsAMillisecond);
  if (told_arrival_ != 0 && last_arrival_ > told_arrival_) {
    const double passed_ms = static_cast<double>(last_arrival_ - told_arrival_) / kNanosecondsAMillisecond;
    feedback.arrived_kbit = static_cast<int32_t>(static_cast<double>(bits_) / passed_ms);
  }
  told_arrival_ = last_arrival_;
  lost_ = arrived_ = bits_ = 0;
  least_transit_.reset();
  return feedback;
}

}  // namespace corvane::rtc
