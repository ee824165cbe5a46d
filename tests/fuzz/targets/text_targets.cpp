// Readers that take one text and give a value.
#include <gst/sdp/sdp.h>

#include <cstring>
#include <string>
#include <vector>

#include "core/json.h"
#include "core/parameters.h"
#include "devices/audio_device_id.h"
#include "devices/camera_id.h"
#include "devices/device_text.h"
#include "rooms/member_state.h"
#include "rooms/sdp_text.h"
#include "service/local_service_config.h"
#include "targets.h"

namespace corvane::fuzz {

using namespace corvane::rtc;

void runMemberState(std::string_view input) {
  const MemberState state = readMemberState(std::string(input));
  promise((state.published & ~kMediaStreamBoth) == 0, "published media are audio and video");
  const std::string text = writeMemberState(state);
  promise(readMemberState(text) == state, "a state that was written is read as it was");
  for (const auto& [key, info] : state.room_info) {
    promise(info.time_ms < INT64_MAX, "a pair that is newer can be made");
    promise(!key.empty() && key.size() <= 10 && info.value.size() <= 128,
            "pairs are no longer than their setter allows");
  }
}

void runSessionDescription(std::string_view input) {
  const std::string sdp(input);
  const std::string kept = withoutFullIntraRequests(sdp);
  promise(kept.size() <= sdp.size() && withoutFullIntraRequests(kept) == kept, "requests are taken out at once");
  const std::string passive = answeringPassively(sdp);
  promise(passive.find("a=setup:active") == std::string::npos, "no answer is active");
  const std::string naming = namingReporter(sdp, UINT32_MAX);
  promise(naming.find("m=video") == std::string::npos || naming.size() >= sdp.size(), "nothing is taken out");
  GstSDPMessage* message = nullptr;
  if (isDescription(kept) && gst_sdp_message_new_from_text(kept.c_str(), &message) == GST_SDP_OK)
    gst_sdp_message_free(message);
}

void runParameters(std::string_view input) {
  std::string problem;
  const EngineParameters parameters = readParameters(input, problem);
  const bool any = !parameters.cameras.empty() || !parameters.microphones.empty() || !parameters.services.empty();
  promise(!any || parseJson(input).is_object(), "parameters are read from an object");
}

void runDeviceIds(std::string_view input) {
  const CameraId camera = parseCameraId(input);
  if (const auto* test = std::get_if<TestCamera>(&camera)) {
    promise(test->width >= 16 && test->width <= 4096 && test->height >= 16 && test->height <= 4096 && test->fps >= 1 &&
                test->fps <= 120,
            "a test picture's numbers are in their ranges");
  }
  const MicrophoneId microphone = parseMicrophoneId(input);
  if (const auto* test = std::get_if<TestMicrophone>(&microphone)) {
    promise(test->frequency >= 20 && test->frequency <= 20000 && test->level >= -90 && test->level <= 0,
            "a test sound's numbers are in their ranges");
  }
  parseSpeakerId(input);
  // Exactly as large as what is handed out, so that a byte too many is seen.
  std::vector<char> buffer(kDeviceTextSize, 'x');
  for (const std::string& name : {cameraName(input), microphoneName(input), std::string(input)}) {
    copyDeviceText(name, buffer.data());
    promise(memchr(buffer.data(), '\0', buffer.size()) != nullptr, "a device's text is ended");
  }
}

void runServiceFile(std::string_view input) {
  const auto address = readServiceFile(input);
  if (!address) return;
  promise(!address->secret.empty() && address->url.starts_with("ws://127.0.0.1:") && address->on_loopback,
          "the private service is on this machine, and has a secret");
}

}  // namespace corvane::fuzz
