// Creation and end of the engine, and what concerns the engine as a whole.
#include <vector>

#include "binding/lists.h"
#include "corvane_rtc/entry_points.h"
#include "corvane_rtc/feedback.h"
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
  // Rooms and players call the engine, too.
  if (!refusesToEnd(call, nullptr)) call.result = videoOf(call).destroyRTCVideo();
}

void setRuntimeParameters(Call& call) {
  Reader reader(call.env);
  const Argument<const char*> json_string(reader, call[0]);
  LogWrite(kLogInfo, "json string: %s", *json_string);
  call.result = engineOf(call).setRuntimeParameters(*json_string);
}

void feedback(Call& call) {
  Reader reader(call.env);
  // A mask: a negative number has all upper bits set.
  const auto type = static_cast<uint64_t>(int64_t{reader.int32(call[0])});
  const Argument<const char*> problem_desc(reader, reader.get(call[1], "problem_desc"));
  napi_value list = reader.get(call[1], "room_info");
  const auto count = listLength(call, reader, list, call.row.refusals[1]);
  if (!count.has_value()) return;
  Texts texts;
  std::vector<rtc::FeedbackRoomInfo> rooms;
  rooms.reserve(*count);
  for (uint32_t i = 0; i < *count; ++i) {
    napi_value element = reader.at(list, i);
    const char* room_id = texts.keep(reader.string(element, "room_id"));
    const char* user_id = texts.keep(reader.string(element, "user_id"));
    call.say(kLogInfo, "%s(%d) i:%d, room_id:%s, user_id:%s", static_cast<int>(i), room_id, user_id);
    rooms.push_back({room_id, user_id});
  }
  const auto size = static_cast<int32_t>(*count);
  call.say(kLogInfo, "%s(%d), type: %llu, problem_desc: %s, size: %d", static_cast<unsigned long long>(type),
           *problem_desc, size);
  call.result = engineOf(call).feedback(type, {*problem_desc, rooms.data(), size});
}

constexpr Row kRows[] = {
    bare("test1", &test1),
    bare("createRTCVideo", &createRTCVideo),
    bare("destroyRTCVideo", &destroyRTCVideo),
    plain<&rtc::IRTCVideo::setBusinessId>("setBusinessId").refuses("%s(%d), Param is invalid"),
    special("setRuntimeParameters", &setRuntimeParameters, {Kind::kString}).exits("+%s(%d) ret: %d"),
    special("feedback", &feedback, {Kind::kNumber, Kind::kObject})
        .refuses(0, "%s(%d), Param is invalid, type")
        .refuses(1, "%s(%d), Param is invalid, info"),
};

}  // namespace

std::span<const Row> lifecycleRows() {
  return kRows;
}

}  // namespace corvane
