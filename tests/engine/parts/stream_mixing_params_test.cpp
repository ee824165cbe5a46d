#include "mixing/stream_mixing_params.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace corvane::rtc {
namespace {

TEST(StreamMixingParams, KeepCopiesOfTextsBytesAndRegions) {
  TranscoderParam param;
  std::string room = "room";
  std::vector<uint8_t> pixels = {1, 2, 3, 4};
  std::vector<TranscoderLayoutRegion> regions(3);
  std::vector<std::string> ids = {"a", "b", std::string(100, 'c')};
  for (size_t index = 0; index < regions.size(); ++index) {
    regions[index].region_id = ids[index].c_str();
    regions[index].x = static_cast<double>(index);
  }
  regions[1].data = pixels.data();
  regions[1].data_size = 4;
  regions[2].data_size = 9;  // of nothing
  param.setRoomId(room.c_str());
  param.setLayoutRegions(regions.data(), 3);
  room.assign("gone");
  for (std::string& id : ids) id.assign("gone");
  pixels.assign(4, 0);

  const TranscoderSettings& settings = param.settings();
  EXPECT_EQ(settings.room_id, "room");
  const auto& kept = settings.regions.records();
  ASSERT_EQ(kept.size(), 3U);
  EXPECT_STREQ(kept[0].region_id, "a");
  EXPECT_STREQ(kept[0].room_id, "");
  EXPECT_STREQ(kept[2].region_id, std::string(100, 'c').c_str());
  EXPECT_EQ(kept[2].x, 2.0);
  EXPECT_EQ(std::vector<uint8_t>(kept[1].data, kept[1].data + 4), (std::vector<uint8_t>{1, 2, 3, 4}));
  EXPECT_EQ(kept[2].data, nullptr);
  EXPECT_EQ(kept[2].data_size, 0);

  param.setLayoutRegions(nullptr, 2);
  EXPECT_TRUE(settings.regions.records().empty());
}

TEST(StreamMixingParams, KeepNestedTextsAndOptions) {
  MixedStreamConfig config;
  std::string uuid = "uuid";
  MixedStreamServerControlConfig control = {};
  control.talk_volume = 12;
  control.sei_payload_uuid = uuid.c_str();
  config.setServerControlConfig(control);
  uuid.assign("gone");
  MixedStreamLayoutRegionConfig region;
  region.region_id = nullptr;
  config.setLayoutRegions(&region, 1);
  ASSERT_EQ(config.settings().server_control.records().size(), 1U);
  EXPECT_STREQ(config.settings().server_control.records()[0].sei_payload_uuid, "uuid");
  EXPECT_EQ(config.settings().server_control.records()[0].talk_volume, 12);
  EXPECT_STREQ(config.settings().regions.records()[0].region_id, "");

  PublicStreamParam stream;
  stream.setOption("key", "first");
  stream.setOption("key", "second");
  stream.setOption("empty", nullptr);
  EXPECT_EQ(stream.settings().options.at("key"), "second");
  EXPECT_EQ(stream.settings().options.at("empty"), "");
}

}  // namespace
}  // namespace corvane::rtc
