// Session descriptions as text: what of them has to be changed on their way between GStreamer and a service.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace corvane::rtc {

/// Whether a text can be given to a parser that takes texts ended by a zero.
bool isDescription(const std::string& sdp);

/// Takes out the offer to be asked for key frames by "full intra request": those that GStreamer sends name no source
/// and reach nobody, and without the offer it sends picture loss indications, which do.
std::string withoutFullIntraRequests(const std::string& sdp);

/// Lets the other side open the encrypted connection: one that this side opens is, now and then, a second late.
std::string answeringPassively(const std::string& sdp);

/// By the number of a source, that of the source which sends lost packets of it again.
using RepeatingSources = std::map<uint32_t, uint32_t>;
RepeatingSources repeatingSources(const std::string& sdp);

/// Tells that the video of the first of these sources comes from the others as well, each smaller than the one before:
/// an offer of GStreamer's names one source for a medium.
std::string offeringLayers(const std::string& sdp, const std::vector<uint32_t>& sources,
                           const RepeatingSources& repeating);

/// Tells in an answer which source reports on the pictures that are received. From a source that it was not told of,
/// Janus takes a report for one on what the report happens to speak of first, or on the first medium: requests for key
/// frames, and for lost packets, are passed over then.
std::string namingReporter(const std::string& sdp, uint32_t source);

/// The first kind of media, "audio" or "video", that an answer refuses; "" when it takes all.
std::string refusedMedia(const std::string& answer);

}  // namespace corvane::rtc
