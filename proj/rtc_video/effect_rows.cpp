// Effects on the camera's picture, its background, its faces, watermarks.
#include "binding/effect_records.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"

namespace corvane {
namespace {

void enableFaceDetection(Call& call) {
  auto* effects = find<rtc::IVideoEffect>(call);
  if (effects == nullptr) return;
  Reader reader(call.env);
  const int32_t interval_ms = reader.int32(call[0]);
  const Argument<const char*> model_path(reader, call[1]);
  call.say(kLogInfo, "+%s(%d), interval_ms: %d, faceModelPath: %s", interval_ms, *model_path);
  call.result = effects->enableFaceDetection(interval_ms, *model_path, videoOf(call).observer());
}

constexpr Row kRows[] = {
    plain<&rtc::IVideoEffect::enableVideoEffect>("enableVideoEffect"),
    plain<&rtc::IVideoEffect::disableVideoEffect>("disableVideoEffect"),
    plain<&rtc::IVideoEffect::setEffectNodes>("setEffectNodes"),
    plain<&rtc::IVideoEffect::updateEffectNode>("updateEffectNode")
        .refuses(0, "Param Invalid: %s(%d), effectNodePath")
        .refuses(1, "Param Invalid: %s(%d), nodeKey")
        .refuses(2, "Param Invalid: %s(%d), nodeValue"),
    plain<&rtc::IVideoEffect::setColorFilter>("setColorFilter"),
    plain<&rtc::IVideoEffect::setColorFilterIntensity>("setColorFilterIntensity"),
    plain<&rtc::IVideoEffect::enableEffectBeauty>("enableEffectBeauty"),
    plain<&rtc::IVideoEffect::setBeautyIntensity>("setBeautyIntensity"),

    plain<&rtc::IVideoEffect::enableVirtualBackground>("enableVirtualBackground")
        .refuses(0, "Param Invalid: %s(%d), bg_sticker_path")
        .refuses(1, "Param Invalid: %s(%d), source"),
    plain<&rtc::IVideoEffect::disableVirtualBackground>("disableVirtualBackground"),

    special("enableFaceDetection", &enableFaceDetection, {Kind::kNumber, Kind::kString}).enters(nullptr),
    plain<&rtc::IVideoEffect::disableFaceDetection>("disableFaceDetection"),

    plain<&rtc::IVideoEffect::setVideoWatermark>("setVideoWatermark"),
    plain<&rtc::IVideoEffect::clearVideoWatermark>("clearVideoWatermark"),
};

}  // namespace

std::span<const Row> effectRows() {
  return kRows;
}

}  // namespace corvane
