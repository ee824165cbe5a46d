#include "rooms/sdp_text.h"

#include <cstdlib>
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

RepeatingSources repeatingSources(const std::string& sdp) {
  constexpr std::string_view kGroup = "a=ssrc-group:FID ";
  RepeatingSources repeating;
  for (size_t at = sdp.find(kGroup); at != std::string::npos; at = sdp.find(kGroup, at + 1)) {
    const char* text = sdp.c_str() + at + kGroup.size();
    char* rest = nullptr;
    const auto source = static_cast<uint32_t>(strtoul(text, &rest, 10));
    repeating[source] = static_cast<uint32_t>(strtoul(rest, nullptr, 10));
  }
  return repeating;
}

std::string offeringLayers(const std::string& sdp, const std::vector<uint32_t>& sources,
                           const RepeatingSources& repeating) {
  const auto number = [](uint32_t source) { return std::to_string(source); };
  const std::string first = number(sources.front());
  const auto repeater = repeating.find(sources.front());
  const std::string first_pair =
      repeater != repeating.end() ? "a=ssrc-group:FID " + first + ' ' + number(repeater->second) : "";
  const std::string mark = "a=ssrc:" + first + ' ';
  const std::string repeater_mark = repeater != repeating.end() ? "a=ssrc:" + number(repeater->second) + ' ' : mark;

  const size_t named = sdp.find(first_pair.empty() ? mark : first_pair);
  if (named == std::string::npos) return sdp;
  // Services take the smallest as the first of a group, and want to know the group before the pairs.
  std::string told = sdp.substr(0, named) + "a=ssrc-group:SIM";
  for (auto source = sources.rbegin(); source != sources.rend(); ++source) told += ' ' + number(*source);
  told += "\r\n";
  for (auto source = sources.begin() + 1; source != sources.end(); ++source) {
    const auto pair = repeating.find(*source);
    if (pair != repeating.end()) told += "a=ssrc-group:FID " + number(*source) + ' ' + number(pair->second) + "\r\n";
  }
  for (size_t start = named; start < sdp.size();) {
    const size_t end = sdp.find('\n', start);
    const size_t next = end != std::string::npos ? end + 1 : sdp.size();
    const std::string_view line(sdp.data() + start, next - start);
    told += line;
    start = next;
    const bool is_first = line.starts_with(mark);
    if (!is_first && !line.starts_with(repeater_mark)) continue;
    for (auto source = sources.begin() + 1; source != sources.end(); ++source) {
      const auto pair = repeating.find(*source);
      if (!is_first && pair == repeating.end()) continue;
      told += "a=ssrc:" + number(is_first ? *source : pair->second) + ' ';
      told += line.substr(line.find(' ') + 1);
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
