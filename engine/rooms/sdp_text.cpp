#include "rooms/sdp_text.h"

#include <string_view>

namespace corvane::rtc {

bool isDescription(const std::string& sdp) {
  return !sdp.empty() && sdp.find('\0') == std::string::npos;
}

std::string withoutFullIntraRequests(const std::string& sdp) {
  std::string kept;
  kept.reserve(sdp.size());
  for (size_t start = 0; start < sdp.size();) {
    const size_t end = sdp.find('\n', start);
    const size_t next = end != std::string::npos ? end + 1 : sdp.size();
    const std::string_view line(sdp.data() + start, next - start);
    const bool is_request = line.starts_with("a=rtcp-fb:") && line.find(" ccm fir") != std::string_view::npos;
    if (!is_request) kept += line;
    start = next;
  }
  return kept;
}

std::string answeringPassively(const std::string& sdp) {
  constexpr std::string_view kActive = "a=setup:active";
  std::string passive = sdp;
  for (size_t at = passive.find(kActive); at != std::string::npos; at = passive.find(kActive, at)) {
    passive.replace(at, kActive.size(), "a=setup:passive");
  }
  return passive;
}

}  // namespace corvane::rtc
