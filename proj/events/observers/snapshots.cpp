// Pictures of local and remote streams. They are encoded on the engine's thread, so that only text is queued.

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>

#include "events/engine/payload_pieces.h"
#include "events/observer.h"
#include "events/observers/report.h"
#include "video/image_encoding.h"

namespace corvane {
namespace {

// The lines around the encoding of a picture in one format.
struct EncodingLines {
  int32_t pixel_format;
  const char* before;
  const char* after;
};
constexpr EncodingLines kEncodingLines[] = {
    {rtc::kVideoPixelFormatARGB, "%s(%d), +kVideoPixelFormatARGB", "%s(%d), -kVideoPixelFormatARGB"},
    {rtc::kVideoPixelFormatRGBA, "%s(%d), +kVideoPixelFormatRGBA", "%s(%d), -kVideoPixelFormatRGBA"},
};

// The picture's text; nothing when the snapshot failed.
std::optional<std::string> encodeSnapshot(const rtc::IVideoFrame& image, int32_t error_code, const char* event,
                                          int32_t line) {
  if (error_code != rtc::kSuccess) return std::nullopt;
  const auto* lines = std::ranges::find(kEncodingLines, image.pixelFormat(), &EncodingLines::pixel_format);
  const bool encodes = lines != std::end(kEncodingLines);
  if (encodes) LogWriteRow(kLogInfo, lines->before, event, line);
  std::string text = encodeFrameImage(image, event, line);
  if (encodes) LogWriteRow(kLogInfo, lines->after, event, line);
  return text;
}

// `put_stream` sets what names the stream; `no_image` is the line that stands for a missing picture.
template <class PutStream>
void reportSnapshot(const char* event, const char* no_image, int32_t task_id, const rtc::IVideoFrame* image,
                    int32_t error_code, PutStream put_stream, int32_t line = __builtin_LINE()) {
  LogWrite(kLogInfo, "+%s(%d)", event, line);
  if (image == nullptr) {
    LogWrite(kLogInfo, "%s(%d), image is nullptr", event, line);
    return;
  }
  report(
      event,
      [no_image, task_id, error_code, put_stream = std::move(put_stream),
       text = encodeSnapshot(*image, error_code, event, line)](Payload& payload) {
        payload.put("task_id", task_id);
        put_stream(payload);
        if (text) {
          payload.put("image", *text);
        } else {
          LogWriteRow(kLogInfo, no_image);
        }
        payload.put("error_code", error_code);
      },
      kLogInfo, line);
}

}  // namespace

void KavRTCObserver::onTakeLocalSnapshotResult(int32_t task_id, int32_t stream_index, rtc::IVideoFrame* image,
                                               int32_t error_code) {
  reportSnapshot(__func__, "onTakeLocalSnapshotResult, no image", task_id, image, error_code,
                 [stream_index](Payload& payload) { payload.put("stream_index", stream_index); });
}

void KavRTCObserver::onTakeRemoteSnapshotResult(int32_t task_id, const rtc::StreamKey& stream_key,
                                                rtc::IVideoFrame* image, int32_t error_code) {
  reportSnapshot(
      __func__, "onTakeRemoteSnapshotResult, no image", task_id, image, error_code,
      [key = OwnedStreamKey(stream_key)](Payload& payload) { putRoomUserIndex(payload, "stream_key", key); });
}

}  // namespace corvane
