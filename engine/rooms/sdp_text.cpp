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

std::string offeringLayers(const std::string& sdp, const std::vector<uint32_t>& sources) {
  const std::string mark = "a=ssrc:" + std::to_string(sources.front()) + ' ';
  const size_t first = sdp.find(mark);
  if (first == std::string::npos) return sdp;
  // The smallest comes first in a group.
  std::string group = "a=ssrc-group:SIM";
  for (auto source = sources.rbegin(); source != sources.rend(); ++source) group += ' ' + std::to_string(*source);
  std::string told = sdp.substr(0, first) + group + "\r\n";
  for (size_t start = first; start < sdp.size();) {
    const size_t end = sdp.find('\n', start);
    const size_t next = end != std::string::npos ? end + 1 : sdp.size();
    const std::string_view line(sdp.data() + start, next - start);
    told += line;
    start = next;
    if (!line.starts_with(mark)) continue;
    for (auto source = sources.begin() + 1; source != sources.end(); ++source) {
      told += "a=ssrc:" + std::to_string(*source) + ' ';
      told += line.substr(mark.size());
    }
  }
  return told;
}

std::string namingReporter(const std::string& sdp, uint32_t source) {
  const size_t video = sdp.starts_with("m=video") ? 0 : sdp.find("\nm=video");
  if (video == std::string::npos) return sdp;
  const size_t next = sdp.find("\nm=", video + 1);
  std::string naming = sdp;
  naming.insert(next != std::string::npos ? next + 1 : sdp.size(),
                "a=ssrc:" + std::to_string(source) + " cname:receiver\r\n");
  return naming;
}

std::string refusedMedia(const std::string& answer) {
  for (const char* kind : {"audio", "video"}) {
    if (answer.find("\nm=" + std::string(kind) + " 0 ") != std::string::npos) return kind;
  }
  return {};
}

}  // namespace corvane::rtc
