// Raw video to JavaScript: sinks, destination buffers, rotation.
#include "binding/records.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"
#include "video/transporter.h"

namespace corvane {
namespace {

// The engine delivers I420 whatever JavaScript asked for; RGBA is made at delivery.
constexpr int32_t kEngineFormat = rtc::kVideoPixelFormatI420;

constexpr char kSinkExit[] = "%s(%d), ret: %d";

void setLocalVideoSink(Call& call) {
  Reader reader(call.env);
  const int32_t index = reader.int32(call[0]);
  const int32_t format = reader.int32(call[1]);
  auto sink = std::make_unique<LocalVideoSink>(index, format);
  call.result = engineOf(call).setLocalVideoSink(index, sink.get(), kEngineFormat);
  videoOf(call).addSink(std::move(sink));
  call.say(kLogInfo, "+%s(%d) size: %d, format: %d", static_cast<int>(videoOf(call).localSinkCount()), format);
}

// A sink that was taken out stays in its list: the engine may still be inside one of its calls.
void unsetLocalVideoSink(Call& call) {
  Reader reader(call.env);
  call.result = engineOf(call).setLocalVideoSink(reader.int32(call[0]), nullptr, kEngineFormat);
  call.say(kLogInfo, "+%s(%d) size: %d", static_cast<int>(videoOf(call).localSinkCount()));
}

void setRemoteVideoSink(Call& call) {
  Reader reader(call.env);
  From<rtc::StreamKey>::Held key;
  From<rtc::StreamKey>::read(reader, call[0], key);
  const int32_t format = reader.int32(call[1]);
  auto sink = std::make_unique<RemoteVideoSink>(key.stream_index, std::string(key.room_id.view()),
                                                std::string(key.user_id.view()), format);
  call.result = engineOf(call).setRemoteVideoSink(From<rtc::StreamKey>::pass(key), sink.get(), kEngineFormat);
  videoOf(call).addSink(std::move(sink));
  call.say(kLogInfo, "+%s(%d) size: %d, format: %d", static_cast<int>(videoOf(call).remoteSinkCount()), format);
}

void unsetRemoteVideoSink(Call& call) {
  Reader reader(call.env);
  From<rtc::StreamKey>::Held key;
  From<rtc::StreamKey>::read(reader, call[0], key);
  call.result = engineOf(call).setRemoteVideoSink(From<rtc::StreamKey>::pass(key), nullptr, kEngineFormat);
}

void setPublicStreamVideoSink(Call& call) {
  Reader reader(call.env);
  Text id;
  reader.text(call[0], id);
  const int32_t format = reader.int32(call[1]);
  auto sink = std::make_unique<PublicStreamVideoSink>(id.c_str(), format);
  call.result = engineOf(call).setPublicStreamVideoSink(id.c_str(), sink.get(), kEngineFormat);
  videoOf(call).addSink(std::move(sink));
}

void unsetPublicStreamVideoSink(Call& call) {
  Reader reader(call.env);
  Text id;
  reader.text(call[0], id);
  call.result = engineOf(call).setPublicStreamVideoSink(id.c_str(), nullptr, kEngineFormat);
}

void setVideoSinkApplyRotation(Call& call) {
  Reader reader(call.env);
  const bool apply = reader.boolean(call[0]);
  KavRTCTransporter::instance().setVideoRotation(apply);
  call.say(kLogInfo, "%s(%d) %s: %d", "apply_rotation", apply ? 1 : 0);
  call.result = 0;
}

// One key of a buffer registration: its type test and the line that refuses it.
struct BufferKey {
  const char* name;
  Kind kind;
  const char* refusal;
};

constexpr BufferKey kUserKey = {"user_id", Kind::kString, "%s(%d), Param is invalid, user_id"};
constexpr BufferKey kBufferKeys[] = {
    {"stream_type", Kind::kString, "%s(%d), Param is invalid, stream_type"},
    {"width", Kind::kNumber, "%s(%d), Param is invalid, width"},
    {"height", Kind::kNumber, "%s(%d), Param is invalid, height"},
    {"plane_y", Kind::kBytes, "%s(%d), Param is invalid, plane_y"},
};

napi_value readKey(const Call& call, Reader& reader, const BufferKey& key) {
  napi_value value = reader.get(call[0], key.name);
  if (isKind(call.env, value, key.kind)) return value;
  call.say(kLogInfo, key.refusal);
  return nullptr;
}

struct BufferRegistration {
  std::string stream_type;
  DestinationBuffer buffer;
};

// Reads the keys that both methods share; false after a refusal.
bool readRegistration(const Call& call, Reader& reader, BufferRegistration& registration) {
  napi_value values[std::size(kBufferKeys)] = {};
  for (size_t i = 0; i < std::size(kBufferKeys); ++i) {
    values[i] = readKey(call, reader, kBufferKeys[i]);
    if (values[i] == nullptr) return false;
  }
  registration.stream_type = reader.string(values[0]);
  const int32_t width = reader.int32(values[1]);
  const int32_t height = reader.int32(values[2]);
  registration.buffer = DestinationBuffer(call.env, values[3], width, height);
  return true;
}

void setLocalVideoBuffer(Call& call) {
  Reader reader(call.env);
  BufferRegistration registration;
  if (!readRegistration(call, reader, registration)) return;
  KavRTCTransporter::instance().setLocalVideoBuffer(std::move(registration.stream_type),
                                                    std::move(registration.buffer));
  call.result = 0;
}

void setRemoteVideoBuffer(Call& call) {
  Reader reader(call.env);
  napi_value user_id = readKey(call, reader, kUserKey);
  BufferRegistration registration;
  if (user_id == nullptr || !readRegistration(call, reader, registration)) return;
  KavRTCTransporter::instance().setRemoteVideoBuffer(reader.string(user_id), std::move(registration.stream_type),
                                                     std::move(registration.buffer));
  call.result = 0;
}

constexpr char kParamIsInvalid[] = "%s(%d), Param is invalid";

constexpr Row kRows[] = {
    special("setLocalVideoSink", &setLocalVideoSink, {Kind::kNumber, Kind::kNumber}).exits(kSinkExit),
    special("unsetLocalVideoSink", &unsetLocalVideoSink, {Kind::kNumber}).exits(kSinkExit),
    special("setRemoteVideoSink", &setRemoteVideoSink, {Kind::kObject, Kind::kNumber}).exits(kSinkExit),
    special("unsetRemoteVideoSink", &unsetRemoteVideoSink, {Kind::kObject}).exits(kSinkExit),
    special("setPublicStreamVideoSink", &setPublicStreamVideoSink, {Kind::kString, Kind::kNumber}).exits(kSinkExit),
    special("unsetPublicStreamVideoSink", &unsetPublicStreamVideoSink, {Kind::kString})
        .refuses(kParamIsInvalid)
        .exits(kSinkExit),
    special("setVideoSinkApplyRotation", &setVideoSinkApplyRotation, {Kind::kBoolean}),
    special("setLocalVideoBuffer", &setLocalVideoBuffer, {Kind::kObject}).refuses(kParamIsInvalid),
    special("setRemoteVideoBuffer", &setRemoteVideoBuffer, {Kind::kObject}).refuses(kParamIsInvalid),
};

}  // namespace

std::span<const Row> sinkRows() {
  return kRows;
}

}  // namespace corvane
