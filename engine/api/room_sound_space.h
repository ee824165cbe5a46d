// A room's sound in space as applications call it.
#pragma once

#include <functional>

#include "corvane_rtc/range_audio.h"
#include "corvane_rtc/spatial_audio.h"
#include "rooms/room_space.h"

namespace corvane::rtc {

/// Belongs to its room. What is set stays when the room is left and joined again.
class RoomSoundSpace final : public IRangeAudio, public ISpatialAudio {
 public:
  using Change = std::function<void(RoomSpace&)>;
  /// Runs the change on the engine thread; what it returns is what operations answer.
  using Post = std::function<int32_t(Change)>;

  explicit RoomSoundSpace(Post post) : post_(std::move(post)) {}

  /// Of both.
  int32_t updatePosition(const Position& position) override;

  // Range audio.

  int32_t enableRangeAudio(bool enable) override;
  int32_t updateReceiveRange(const ReceiveRange& range) override;
  int32_t setAttenuationModel(int32_t type, float coefficient) override;
  int32_t setNoAttenuationFlags(const char* const* flags, int32_t count) override;

  // Spatial audio.

  int32_t enableSpatialAudio(bool enable) override;
  int32_t updateSelfOrientation(const HumanOrientation& orientation) override;
  int32_t updateSelfPosition(const PositionInfo& info) override;
  int32_t disableRemoteOrientation() override;
  int32_t updateListenerPosition(const Position& position) override;
  int32_t updateListenerOrientation(const HumanOrientation& orientation) override;
  int32_t updateRemotePosition(const char* uid, const PositionInfo& info) override;
  int32_t removeRemotePosition(const char* uid) override;
  int32_t removeAllRemotePosition() override;

 private:
  const Post post_;
};

}  // namespace corvane::rtc
