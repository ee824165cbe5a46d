// Pictures of local and remote streams. They are encoded on the engine's thread, so that only text is queued.

#include <optional>
#include <string>

#include "events/engine/payload_pieces.h"
#include "events/observer.h"
#include "events/observers/report.h"
#include "video/image_encoding.h"

namespace corvane {
namespace {

const char* encoderName(int32_t pixel_format) {
  switch (pixel_format) {
    case rtc::kVideoPixelFormatARGB:
      return "kVideoPixelFormatARGB";
    case rtc::kVideoPixelFormatRGBA:
      return "kVideoPixelFormatRGBA";
    default:
      return nullptr;
  }
}

// The picture's text; nothing when the snapshot failed.
std::optional<std::string> encodeSnapshot(const rtc::IVideoFrame& image, int32_t error_code, const char* event,
                                          int32_t line) {
  if (error_code != rtc::kSuccess) return std::nullopt;
  const char* encoder = encoderName(image.pixelFormat());
  if (encoder != nullptr) LogWrite(kLogInfo, "%s(%d), +%s", event, line, encoder);
  std::string text = encodeFrameImage(image, event, line);
  if (encoder != nullptr) LogWrite(kLogInfo, "%s(%d), -%s", event, line, encoder);
  return text;
}

// `put_stream` sets what names the stream.
template <class PutStream>
void reportSnapshot(const char* event, int32_t task_id, const rtc::IVideoFrame* image, int32_t error_code,
                    PutStream put_stream, int32_t line = __builtin_LINE()) {
  LogWrite(kLogInfo, "+%s(%d)", event, line);
  if (image == nullptr) {
    LogWrite(kLogInfo, "%s(%d), image is nullptr", event, line);
    return;
  }
  report(
      event,
      [event, task_id, error_code, put_stream = std::move(put_stream),
       text = encodeSnapshot(*image, error_code, event, line)](Payload& payload) {
        payload.put("task_id", task_id);
        put_stream(payload);
        if (text) {
          payload.put("image", *text);
        } else {
          LogWrite(kLogInfo, "%s, no image", event);
        }
        payload.put("error_code", error_code);
      },
      kLogInfo, line);
}

}  // namespace

void KavRTCObserver::onTakeLocalSnapshotResult(int32_t task_id, int32_t stream_index, rtc::IVideoFrame* image,
                                               int32_t error_code) {
  reportSnapshot(__func__, task_id, image, error_code,
                 [stream_index](Payload& payload) { payload.put("stream_index", stream_index); });
}

void KavRTCObserver::onTakeRemoteSnapshotResult(int32_t task_id, const rtc::StreamKey& stream_key,
                                                rtc::IVideoFrame* image, int32_t error_code) {
  reportSnapshot(__func__, task_id, image, error_code, [key = OwnedStreamKey(stream_key)](Payload& payload) {
    putRoomUserIndex(payload, "stream_key", key);
  });
}

}  // namespace corvane
