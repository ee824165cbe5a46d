// Layers of a video: which one a receiver gets, how they are offered and told of, and how they share a link.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "media/bitrate_shares.h"
#include "rooms/layer_choice.h"
#include "rooms/member_state.h"
#include "rooms/sdp_text.h"

namespace corvane::rtc {
namespace {

TEST(Layers, TheSmallestThatIsLargeEnoughIsChosen) {
  const std::vector<LayerSize> layers = {{1280, 720}, {640, 360}, {320, 180}};
  const auto chosen = [&](int32_t width, int32_t height) { return chooseLayer(layers, {0, width, height}); };
  EXPECT_EQ(chosen(0, 0), 0U);
  EXPECT_EQ(chosen(320, 180), 2U);
  EXPECT_EQ(chosen(1, 181), 1U);
  EXPECT_EQ(chosen(321, 0), 1U);
  EXPECT_EQ(chosen(641, 360), 0U);
  EXPECT_EQ(chosen(1920, 1080), 0U);
  EXPECT_EQ(chooseLayer({}, {30, 320, 180}), 0U);
  EXPECT_EQ(chooseLayer({{0, 0}, {320, 180}}, {0, 640, 360}), 0U) << "the camera's own size";
}

TEST(Layers, AnOfferNamesTheirSourcesTheSmallestFirst) {
  const std::string offer =
      "m=video 9\r\na=ssrc-group:FID 7 8\r\na=ssrc:7 cname:me\r\na=ssrc:8 cname:me\r\na=mid:1\r\n";
  EXPECT_EQ(repeatingSources(offer), (RepeatingSources{{7, 8}}));
  EXPECT_EQ(offeringLayers(offer, {7, 21, 22}, {{7, 8}, {21, 31}, {22, 32}}),
            "m=video 9\r\na=ssrc-group:SIM 22 21 7\r\na=ssrc-group:FID 21 31\r\na=ssrc-group:FID 22 32\r\n"
            "a=ssrc-group:FID 7 8\r\na=ssrc:7 cname:me\r\na=ssrc:21 cname:me\r\na=ssrc:22 cname:me\r\n"
            "a=ssrc:8 cname:me\r\na=ssrc:31 cname:me\r\na=ssrc:32 cname:me\r\na=mid:1\r\n");
  EXPECT_EQ(offeringLayers("a=ssrc:7 cname:me\r\n", {7, 21}, {}),
            "a=ssrc-group:SIM 21 7\r\na=ssrc:7 cname:me\r\na=ssrc:21 cname:me\r\n");
  EXPECT_EQ(offeringLayers(offer, {9, 21}, {}), offer);
}

TEST(Layers, MembersTellOfTheirSizes) {
  MemberState state;
  state.layers = {{1280, 720}, {640, 360}};
  EXPECT_EQ(readMemberState(writeMemberState(state)), state);
  const auto read = [](const std::string& layers) {
    return readMemberState(R"({"corvane":1,"layers":)" + layers + "}").layers;
  };
  using Sizes = std::vector<LayerSize>;
  EXPECT_EQ(read(R"([[-1,"x"],7,[1e9,99999]])"), (Sizes{{0, 0}, {0, 0}, {0, 16384}}));
  EXPECT_EQ(read("[[1,1],[1,1],[1,1],[1,1]]"), Sizes());
  EXPECT_EQ(read(R"({"0":[1,1]})"), Sizes());
}

TEST(Layers, LargerOnesPauseOnANarrowLink) {
  std::vector<BitrateShare> layers = {{1200}, {400}, {100}};
  const auto shared = [&](int32_t total) {
    shareBitrate(total, layers);
    return std::vector<int32_t>{layers[0].limit, layers[1].limit, layers[2].limit};
  };
  using Limits = std::vector<int32_t>;
  EXPECT_EQ(shared(1700), (Limits{1200, 1600, 1700}));
  EXPECT_EQ(shared(800), (Limits{300, 700, 800}));
  EXPECT_EQ(shared(799), (Limits{0, 699, 799}));
  EXPECT_EQ(shared(1099), (Limits{0, 999, 1099})) << "it comes back at more than it paused at";
  EXPECT_EQ(shared(1100), (Limits{600, 1000, 1100}));
  EXPECT_EQ(shared(50), (Limits{0, 0, 50})) << "the smallest never pauses";
  layers[0].may_return = false;
  EXPECT_EQ(shared(1100), (Limits{0, 1000, 1100}));
}

TEST(Layers, ReturnsThatDoNotLastPutOffTheNext) {
  using std::chrono::seconds;
  LayerReturn layer;
  auto now = LayerReturn::Clock::now();
  const auto waits = [&] {
    layer.onPaused(now);
    seconds waited{0};
    for (; !layer.allowed(now); now += seconds(1)) ++waited;
    layer.onReturned(now);
    return waited.count();
  };
  EXPECT_TRUE(layer.allowed(now));
  for (const int expected : {10, 20, 40, 80, 160, 320, 320}) {
    EXPECT_EQ(waits(), expected);
    now += seconds(20);
  }
  now += seconds(20);
  EXPECT_EQ(waits(), 10) << "the last one lasted";
}

}  // namespace
}  // namespace corvane::rtc
