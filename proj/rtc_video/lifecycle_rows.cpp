// Creation and end of the engine, and what concerns the engine as a whole.
#include "corvane_rtc/entry_points.h"
#include "platform/platform.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"
#include "video/transporter.h"

namespace corvane {
namespace {

void test1(Call& call) {
  LogWrite(kLogInfo, "test1");
  napi_get_undefined(call.env, &call.answer);
}

// The arguments' tests, whose lines differ from the common ones.
bool acceptsCreation(const Call& call) {
  static constexpr char kNotString[] = "%s(%d), invalid param, not a string type";
  const char* refusal = nullptr;
  if (!call.is(0, Kind::kString)) {
    refusal = kNotString;
  } else if (!call.is(1, Kind::kFunction)) {
    refusal = "%s(%d), invalid param, not a func type";
  } else if (!call.is(2, Kind::kString)) {
    refusal = kNotString;
  }
  if (refusal != nullptr) call.say(kLogWarning, refusal);
  return refusal == nullptr;
}

void createRTCVideo(Call& call) {
  CreateDstFile();
  if (acceptsCreation(call)) {
    KavRTCTransporter::instance().initialize(call.env, Napi::Function(call.env, call[1]));
    call.result = videoOf(call).createRTCVideo(call);
  }
  call.say(kLogInfo, "%s(%d), ret:%d, version:%s, pid:%d", static_cast<int>(call.result), rtc::getSDKVersion(),
           platform::currentProcessId());
}

void destroyRTCVideo(Call& call) {
  call.result = videoOf(call).destroyRTCVideo();
}

constexpr Row kRows[] = {
    bare("test1", &test1),
    bare("createRTCVideo", &createRTCVideo),
    bare("destroyRTCVideo", &destroyRTCVideo),
    plain<&rtc::IRTCVideo::setBusinessId>("setBusinessId").refuses("%s(%d), Param is invalid"),
};

}  // namespace

std::span<const Row> lifecycleRows() {
  return kRows;
}

}  // namespace corvane
