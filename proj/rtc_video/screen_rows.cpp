// Screen sharing: what can be shared, its pictures, picture and sound of what is shared.
#include <vector>

#include "binding/lists.h"
#include "binding/screen_records.h"
#include "events/payload.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"
#include "video/frame_slot.h"
#include "video/image_encoding.h"

namespace corvane {
namespace {

const char* orEmpty(const char* text) {
  return text == nullptr ? "" : text;
}

napi_value sourceObject(napi_env env, const rtc::ScreenCaptureSourceInfo& source) {
  Payload object(env);
  object.put("type", source.type);
  object.put("source_id", source.source_id);
  object.put("source_name", makeText(env, orEmpty(source.source_name)));
  object.put("application", makeText(env, orEmpty(source.application)));
  object.put("pid", source.pid);
  object.put("primary_monitor", source.primary_monitor);
  object.object("region_rect", [&source](Payload& rect) {
    rect.put("x", source.region_rect.x);
    rect.put("y", source.region_rect.y);
    rect.put("width", source.region_rect.width);
    rect.put("height", source.region_rect.height);
  });
  return object.finish();
}

void getScreenCaptureSourceList(Call& call) {
  rtc::IScreenCaptureSourceList* list = engineOf(call).getScreenCaptureSourceList();
  if (list == nullptr) return;
  const int32_t count = list->getCount();
  for (int32_t i = 0; i < count; ++i) {
    rtc::ScreenCaptureSourceInfo source{};
    list->getSourceInfo(i, source);
    const auto source_id = static_cast<int>(source.source_id);
    call.say(kLogInfo, "%s(%d), type: %d, sourceId: %d, application: %s", source.type, source_id,
             orEmpty(source.application));
    napi_set_element(call.env, call.answer, static_cast<uint32_t>(i), sourceObject(call.env, source));
    call.say(kLogInfo, "%s(%d), type: %d, source_id: %d, source_name: %s", source.type, source_id,
             orEmpty(source.source_name));
  }
  list->release();
  call.result = 0;
}

// The image object of a picture that was asked for; takes the frame.
void answerImage(Call& call, rtc::IVideoFrame* asked) {
  const FramePtr frame(asked);
  if (frame == nullptr) {
    call.say(kLogInfo, "%s(%d), frame is null");
    return;
  }
  Payload image(call.env);
  image.put("data", encodeFrameImage(*frame, call.row.name, call.row.line));
  image.put("width", frame->width());
  image.put("height", frame->height());
  call.answer = image.finish();
  call.result = 0;
}

// Sizes may be left out, which leaves them to the engine.
int32_t sizeOr0(const Call& call, Reader& reader, size_t index) {
  return call.is(index, Kind::kNumber) ? reader.int32(call[index]) : 0;
}

void getThumbnail(Call& call) {
  Reader reader(call.env);
  const int32_t type = reader.int32(call[0]);
  const int32_t source_id = reader.int32(call[1]);
  const int32_t max_width = sizeOr0(call, reader, 2);
  const int32_t max_height = sizeOr0(call, reader, 3);
  answerImage(call, engineOf(call).getThumbnail(type, source_id, max_width, max_height));
}

void getWindowAppIcon(Call& call) {
  Reader reader(call.env);
  const int32_t source_id = reader.int32(call[0]);
  const int32_t max_width = sizeOr0(call, reader, 1);
  const int32_t max_height = sizeOr0(call, reader, 2);
  answerImage(call, engineOf(call).getWindowAppIcon(source_id, max_width, max_height));
}

// Reads windows to leave out of a capture; false after a refusal.
bool readWindows(const Call& call, Reader& reader, napi_value list, std::vector<int64_t>& windows) {
  const auto count = listLength(call, reader, list, call.row.refusals[0]);
  if (!count.has_value()) return false;
  windows.reserve(*count);
  for (uint32_t i = 0; i < *count; ++i) {
    const int32_t window = reader.int32(reader.at(list, i));
    call.say(kLogInfo, "%s(%d), wndSourceId: %d", window);
    windows.push_back(window);
  }
  return true;
}

rtc::ScreenFilterConfig without(const std::vector<int64_t>& windows) {
  return {windows.data(), static_cast<int32_t>(windows.size())};
}

void startScreenVideoCapture(Call& call) {
  Reader reader(call.env);
  const Argument<rtc::ScreenCaptureSourceInfo> source(reader, call[0]);
  const Argument<rtc::Rectangle> region(reader, reader.get(call[1], "region_rect"));
  const int32_t capture_mouse_cursor = reader.int32(call[1], "capture_mouse_cursor");
  std::vector<int64_t> windows;
  if (!readWindows(call, reader, reader.get(call[1], "filter_config"), windows)) return;
  const Argument<rtc::ScreenHighlightConfig> highlight(reader, reader.get(call[1], "highlight_config"));
  call.result =
      engineOf(call).startScreenVideoCapture(*source, {*region, capture_mouse_cursor, without(windows), *highlight});
}

void updateScreenCaptureFilterConfig(Call& call) {
  Reader reader(call.env);
  std::vector<int64_t> windows;
  if (!readWindows(call, reader, call[0], windows)) return;
  call.result = engineOf(call).updateScreenCaptureFilterConfig(without(windows));
}

constexpr Row kRows[] = {
    special("getScreenCaptureSourceList", &getScreenCaptureSourceList).answers(Answer::kList),
    special("getThumbnail", &getThumbnail, {Kind::kNumber, Kind::kNumber}).answers(Answer::kObject),
    special("getWindowAppIcon", &getWindowAppIcon, {Kind::kNumber}).answers(Answer::kObject),

    special("startScreenVideoCapture", &startScreenVideoCapture, {Kind::kObject, Kind::kObject}),
    plain<&rtc::IRTCVideo::updateScreenCaptureRegion>("updateScreenCaptureRegion"),
    plain<&rtc::IRTCVideo::updateScreenCaptureHighlightConfig>("updateScreenCaptureHighlightConfig"),
    plain<&rtc::IRTCVideo::updateScreenCaptureMouseCursor>("updateScreenCaptureMouseCursor"),
    special("updateScreenCaptureFilterConfig", &updateScreenCaptureFilterConfig, {Kind::kArray})
        .refuses("%s(%d), Param is invalid, filters"),
    plain<&rtc::IRTCVideo::stopScreenVideoCapture>("stopScreenVideoCapture"),

    plain<&rtc::IRTCVideo::startScreenAudioCapture>("startScreenAudioCapture"),
    plain<&rtc::IRTCVideo::startMacScreenAudioCapture>("startMacScreenAudioCapture"),
    plain<&rtc::IRTCVideo::stopScreenAudioCapture>("stopScreenAudioCapture"),
    plain<&rtc::IRTCVideo::setScreenAudioStreamIndex>("setScreenAudioStreamIndex").refuses("%s(%d) param is not valid"),
    plain<&rtc::IRTCVideo::setScreenAudioChannel>("setScreenAudioChannel"),
};

}  // namespace

std::span<const Row> screenRows() {
  return kRows;
}

}  // namespace corvane
