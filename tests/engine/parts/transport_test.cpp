#include "rooms/transport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "rooms/sdp_text.h"

namespace corvane::rtc {
namespace {

// A report with `blocks` blocks, whose bytes are all 1 but for the first one's delay.
std::vector<uint8_t> report(uint8_t type, uint8_t blocks, std::vector<uint8_t> delay) {
  std::vector<uint8_t> bytes(8 + size_t{24} * blocks, 1);
  bytes[0] = static_cast<uint8_t>(0x80 | blocks);
  bytes[1] = type;
  if (blocks > 0) std::copy(delay.begin(), delay.end(), bytes.begin() + 28);
  return bytes;
}

std::vector<uint8_t> lengthened(std::vector<uint8_t> bytes) {
  lengthenRoundTrip(bytes);
  return bytes;
}

TEST(Transport, LengthensTheRoundTripOfReceiverReports) {
  EXPECT_EQ(lengthened(report(201, 1, {0, 1, 0, 65})), report(201, 1, {0, 0, 255, 255}));
  EXPECT_EQ(lengthened(report(201, 2, {0, 0, 0, 67})), report(201, 2, {0, 0, 0, 1}));
  // Nothing is known yet, or there is nothing to take away from.
  for (const uint8_t delay : std::vector<uint8_t>{0, 66}) {
    EXPECT_EQ(lengthened(report(201, 1, {0, 0, 0, delay})), report(201, 1, {0, 0, 0, delay}));
  }
  // Other reports, none, and less than a whole one.
  EXPECT_EQ(lengthened(report(200, 1, {0, 1, 0, 65})), report(200, 1, {0, 1, 0, 65}));
  EXPECT_EQ(lengthened(report(201, 0, {})), report(201, 0, {}));
  for (std::vector<uint8_t> cut = report(201, 1, {0, 1, 0, 65}); !cut.empty();) {
    cut.pop_back();
    EXPECT_EQ(lengthened(cut), cut);
  }
}

TEST(Transport, NamesTheReporterWithThePictures) {
  const std::string head = "v=0\r\nm=audio 9 RTP/AVP 111\r\na=mid:0\r\n";
  const std::string video = "m=video 9 RTP/AVP 96\r\na=mid:1\r\n";
  const std::string data = "m=application 9 DTLS/SCTP 5000\r\n";
  const std::string named = "a=ssrc:4711 cname:receiver\r\n";
  EXPECT_EQ(namingReporter(head + video, 4711), head + video + named);
  EXPECT_EQ(namingReporter(head + video + data, 4711), head + video + named + data);
  EXPECT_EQ(namingReporter(video + data, 4711), video + named + data);
  EXPECT_EQ(namingReporter(head + data, 4711), head + data);
  EXPECT_EQ(namingReporter("", 4711), "");
}

}  // namespace
}  // namespace corvane::rtc
