#include "rooms/room_space.h"

#include <gtest/gtest.h>

#include "rooms/member_state.h"

namespace corvane::rtc {
namespace {

constexpr HumanOrientation kNorth = {{0, 1, 0}, {1, 0, 0}, {0, 0, 1}};
constexpr HumanOrientation kSouth = {{0, -1, 0}, {-1, 0, 0}, {0, 0, 1}};

VoicePlace at(float x, float y) {
  return {.at = SpaceVector{x, y, 0}};
}

TEST(RoomSpace, FadesWithTheDistanceAsTheModelSays) {
  RoomSpace space;
  space.setRange({10, 30});
  EXPECT_EQ(space.heard("u", at(1000, 0)).left, 1.0F);  // range audio is off
  space.enableRange(true);
  const auto heard = [&](float distance) {
    const SoundPlace place = space.heard("u", at(0, distance));
    EXPECT_EQ(place.left, place.right);
    return place.left;
  };
  EXPECT_EQ(heard(10), 1.0F);
  EXPECT_FLOAT_EQ(heard(25), 0.25F);
  EXPECT_EQ(heard(30), 0.0F);
  EXPECT_EQ(heard(3e38F), 0.0F);
  EXPECT_EQ(space.heard("u", {}).left, 1.0F);  // nobody knows where
  space.setModel(kAttenuationTypeNone, 0);
  EXPECT_EQ(heard(29.9F), 1.0F);
  EXPECT_EQ(heard(30), 0.0F);
  space.setModel(kAttenuationTypeExponential, 2);
  EXPECT_NEAR(heard(20), (std::exp(-1.0F) - std::exp(-2.0F)) / (1 - std::exp(-2.0F)), 1e-5);
  EXPECT_NEAR(heard(10.01F), 1.0F, 0.01);
  EXPECT_NEAR(heard(29.99F), 0.0F, 0.01);

  // A shared flag, the local user's own place, a place that only the listener gives.
  space.setFlags({"team"});
  EXPECT_EQ(space.heard("u", {.at = SpaceVector{0, 99, 0}, .flags = {"other", "team"}}).left, 1.0F);
  space.setPosition({0, 95, 0});
  EXPECT_EQ(heard(99), 1.0F);
  space.setRemote("u", {{0, 0, 0}, kNorth});
  EXPECT_EQ(heard(99), 0.0F);
  space.removeRemote("u");
  space.setListenerPosition({0, 0, 0});
  EXPECT_EQ(heard(99), 0.0F);
}

TEST(RoomSpace, ComesFromWhereTheSpeakerIsForWhoLooksThere) {
  RoomSpace space;
  space.enableSpatial(true);
  space.setOrientation(kNorth);
  const SoundPlace ahead = space.heard("u", at(0, 5));
  EXPECT_NEAR(ahead.left, 1.0F, 1e-5);
  EXPECT_NEAR(ahead.right, 1.0F, 1e-5);
  const SoundPlace right = space.heard("u", at(5, 0));
  EXPECT_NEAR(right.left, 0.2F, 1e-5);
  EXPECT_NEAR(right.right, 1.0F, 1e-5);
  EXPECT_NEAR(space.heard("u", at(0, -5)).left, 0.8F, 1e-5);
  EXPECT_EQ(space.heard("u", at(0, 0)).left, 1.0F);  // inside the head
  space.setListenerOrientation(kSouth);
  EXPECT_NEAR(space.heard("u", at(5, 0)).right, 0.2F, 1e-5);

  // Who speaks away from the listener is fainter, unless that is not wanted.
  VoicePlace away = at(0, -5);
  away.facing = SpaceVector{0, -1, 0};
  EXPECT_NEAR(space.heard("u", away).left, 0.5F, 1e-5);
  space.ignoreFacing();
  EXPECT_NEAR(space.heard("u", away).left, 1.0F, 1e-5);
}

TEST(RoomSpace, PlacesTravelAndWhatIsNoneIsLeftOut) {
  MemberState state;
  EXPECT_EQ(writeMemberState(state).find("place"), std::string::npos);
  state.place = {.at = SpaceVector{1.5F, -2, 3e38F}, .facing = SpaceVector{0, 1, 0}, .flags = {"a", "\xc3\xa9"}};
  EXPECT_EQ(readMemberState(writeMemberState(state)), state);
  for (const char* place :
       {"5", "[]", R"({"at":[1,2],"facing":[0,1]})", R"({"at":[1,2,"3"],"facing":[0,0,0]})",
        R"({"at":[1,2,1e39],"facing":[1e30,0,0],"flags":[1,{}]})", R"({"at":{"x":1},"flags":"a"})"}) {
    const std::string text = R"({"corvane":1,"place":)" + std::string(place) + "}";
    EXPECT_EQ(readMemberState(text).place, VoicePlace()) << place;
  }
}

}  // namespace
}  // namespace corvane::rtc
