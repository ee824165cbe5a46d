#include "video/frame_object.h"

#include <libyuv.h>

#include <optional>

#include "events/payload.h"
#include "log/log.h"
#include "video/frame_memory.h"
#include "video/frame_pixels.h"

namespace corvane {
namespace {

bool isScreen(const FrameSlot& slot) {
  return slot.kind == kFrameLocalScreen || slot.kind == kFrameRemoteScreen;
}

bool isRemote(const FrameSlot& slot) {
  return slot.kind == kFrameRemoteVideo || slot.kind == kFrameRemoteScreen;
}

// Local and remote frames go into a buffer of their exact size; the others do not.
bool wantsBuffer(const FrameSlot& slot) {
  return slot.kind < kFramePublicStream;
}

void tellSize(const FrameObjectContext& context, const FrameSlot& slot, const I420Planes& planes) {
  const rtc::VideoFrameInfo info{planes.stride[0], planes.height, planes.rotation};
  const int32_t index = isScreen(slot) ? 1 : 0;
  if (isRemote(slot)) {
    const rtc::StreamKey key{slot.channel_id.c_str(), slot.user_id.c_str(), index};
    context.event_handler->onRemoteVideoSizeChanged(key, info);
  } else {
    context.event_handler->onLocalVideoSizeChanged(index, info);
  }
}

// The first line and every thirtieth stay silent.
void logMissingPixels() {
  static int occurrences = 0;
  if (occurrences++ % 30 != 0) LogWrite(kLogInfo, "%s(%d), yuv data is nullptr", "addVideoObject", __LINE__);
}

// What is registered for the frame's size, with or without memory; nothing when no registration has it.
std::optional<DestinationBuffer::Memory> findDestination(const FrameObjectContext& context, const FrameSlot& slot,
                                                         const I420Planes& planes) {
  const DestinationBuffer& buffer =
      isRemote(slot) ? context.buffers.remote(slot.user_id, slot.event_name) : context.buffers.local(slot.event_name);
  if (buffer.width() != planes.stride[0] || buffer.height() != planes.height) return std::nullopt;
  return buffer.memory(context.env);
}

void putPixels(Payload& object, const I420Planes& planes, int64_t timestamp_us, DestinationBuffer::Memory memory) {
  object.put("width", planes.width);
  object.put("height", planes.height);
  object.put("plane_size_y", planes.stride[0]);
  object.put("plane_size_u", planes.stride[1]);
  object.put("plane_size_v", planes.stride[2]);
  object.put("timestamp", static_cast<int32_t>(timestamp_us));
  object.put("offset_y", static_cast<double>(planes.offset_y));
  object.put("offset_u", static_cast<double>(planes.offset_u));
  if (memory.data != nullptr) {
    planes.pack(memory.data);
  } else {
    object.put("plane_y", makePlaneBuffer(object.env(), planes));
  }
}

void putRgba(Payload& object, const I420Planes& planes) {
  const size_t size = static_cast<size_t>(planes.width) * static_cast<size_t>(planes.height) * 4;
  object.put("width", planes.width);
  object.put("height", planes.height);
  object.put("rgba", makeRgbaBuffer(object.env(), size, [&](uint8_t* to) {
               libyuv::I420ToABGR(planes.data[0], planes.stride[0], planes.data[1], planes.stride[1], planes.data[2],
                                  planes.stride[2], to, planes.width * 4, planes.width, planes.height);
             }));
  object.put("rgba_size", static_cast<double>(size));
}

}  // namespace

napi_value buildFrameObject(const FrameObjectContext& context, FrameSlot& slot) {
  if (!slot.fresh) return nullptr;
  slot.fresh = false;
  if (slot.frame == nullptr || context.event_handler == nullptr) return nullptr;

  const rtc::IVideoFrame& frame = *slot.frame;
  const int32_t format = slot.format == rtc::kVideoPixelFormatRGBA ? slot.format : frame.pixelFormat();
  const int64_t timestamp_us = frame.timestampUs();
  const I420Planes engine_planes = readPlanes(frame);

  std::optional<DestinationBuffer::Memory> destination = DestinationBuffer::Memory{};
  if (wantsBuffer(slot)) destination = findDestination(context, slot, engine_planes);
  if (!destination.has_value()) {
    tellSize(context, slot, engine_planes);
    return nullptr;
  }
  if (!engine_planes.complete()) {
    slot.frame.reset();
    logMissingPixels();
    return nullptr;
  }

  I420Planes planes = engine_planes;
  const std::unique_ptr<uint8_t[]> turned = context.apply_rotation ? rotateUpright(planes) : nullptr;
  // A buffer shorter than what goes into it would be written past its end.
  if (format == rtc::kVideoPixelFormatI420 && destination->data != nullptr && destination->size < planes.packedSize()) {
    tellSize(context, slot, engine_planes);
    return nullptr;
  }
  Payload object(context.env, slot.event_name);
  object.put("channel_id", slot.channel_id);
  object.put("user_id", slot.user_id);
  object.put("public_stream_id", slot.public_stream_id);
  object.put("task_id", slot.task_id);
  object.put("format", format);
  object.put("rotation", planes.rotation);
  if (format == rtc::kVideoPixelFormatI420) putPixels(object, planes, timestamp_us, *destination);
  if (format == rtc::kVideoPixelFormatRGBA) putRgba(object, planes);
  slot.frame.reset();
  return object.finish();
}

}  // namespace corvane
