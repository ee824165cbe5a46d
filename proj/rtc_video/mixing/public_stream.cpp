#include <algorithm>

#include "corvane_rtc/entry_points.h"
#include "rtc_video/mixing/builders.h"
#include "rtc_video/mixing/keys.h"
#include "rtc_video/owners.h"

namespace corvane {
namespace {

using Audio = rtc::PublicStreamAudioParam;
using Video = rtc::PublicStreamVideoParam;
using Region = rtc::PublicStreamRegion;
using Crop = rtc::PublicStreamSourceCrop;

constexpr std::tuple kAudioKeys{
    Key{"sample_rate", &Audio::sample_rate},
    Key{"channel_num", &Audio::channel_num},
    Key{"bitrate_kbps", &Audio::bitrate_kbps},
};

constexpr std::tuple kVideoKeys{
    Key{"width", &Video::width}, Key{"height", &Video::height}, Key{"fps", &Video::fps},
    Key{"bitrate_kpbs", &Video::bitrate_kbps},  // applications spell it so; the sound's key is spelled right
};

constexpr Key<Region, const char*> kRegionTexts[] = {
    {"room_id", &Region::room_id},
    {"user_id", &Region::user_id},
    {"alternate_image_uri", &Region::alternate_image_uri},
};

constexpr std::tuple kRegionKeys{
    Key{"x", &Region::x},
    Key{"y", &Region::y},
    Key{"width", &Region::width},
    Key{"height", &Region::height},
    Key{"alpha", &Region::alpha},
    Key{"z_order", &Region::z_order},
    Key{"stream_type", &Region::stream_type},
    Key{"media_type", &Region::media_type},
    Key{"render_mode", &Region::render_mode},
};

constexpr std::tuple kCropKeys{
    Key{"location_x", &Crop::location_x},
    Key{"location_y", &Crop::location_y},
    Key{"width_proportion", &Crop::width_proportion},
    Key{"height_proportion", &Crop::height_proportion},
};

// Everything but the texts.
void readRegion(Reader& reader, napi_value element, Region& region) {
  readTyped(reader, element, region, kRegionKeys);
  region.width = std::min(region.width, 1.0);
  region.height = std::min(region.height, 1.0);
  napi_value crop = objectOrNull(reader, element, "source_crop");
  if (crop != nullptr) readTyped(reader, crop, region.source_crop, kCropKeys);
}

struct Modes {
  int32_t interpolation;
  int32_t layout;
};

// The keys at the top; answers those that are logged behind the regions.
Modes setStream(Reader& reader, napi_value params, rtc::IPublicStreamParam& param) {
  Modes modes{};
  modes.interpolation = reader.int32(params, "interpolation_mode");
  param.setInterpolationMode(modes.interpolation);
  Text text;
  reader.text(params, "room_id", text);
  param.setRoomId(text.c_str());
  reader.text(params, "background_image_uri", text);
  param.setBackgroundImageUri(text.c_str());
  // What the canvas stays if the engine takes no empty colour.
  param.setBackgroundColor("#000000");
  reader.text(params, "bg_color", text);
  param.setBackgroundColor(text.c_str());
  modes.layout = reader.int32(params, "layout_mode");
  param.setLayoutMode(modes.layout);
  param.setOption("publicstream", "started");
  return modes;
}

int32_t callEngine(const Call& call, std::string_view operation, const char* public_stream_id,
                   rtc::IPublicStreamParam* param) {
  if (operation == "startPushPublicStream") return engineOf(call).startPushPublicStream(public_stream_id, param);
  if (operation == "updatePublicStreamParam") return engineOf(call).updatePublicStreamParam(public_stream_id, param);
  return -1;
}

}  // namespace

int32_t buildPublicStreamParam(const Call& call, Reader& reader, std::string_view operation,
                               const char* public_stream_id, napi_value params) {
  LogWrite(kLogInfo, "+%s(%d)", __func__, __LINE__);
  Texts texts;
  std::vector<Region> regions;
  const OwnedParam<rtc::IPublicStreamParam> param(rtc::createPublicStreamParam());
  if (param == nullptr) {
    LogWrite(kLogInfo, "%s(%d), publicStreamParam is nullptr", __func__, __LINE__);
    return -1;
  }
  const Modes modes = setStream(reader, params, *param);
  Audio audio{};
  readAlways(reader, reader.get(params, "audio_param"), audio, kAudioKeys);
  param->setAudioParam(audio);
  Video video{};
  readAlways(reader, reader.get(params, "video_param"), video, kVideoKeys);
  param->setVideoParam(video);
  LogWrite(kLogInfo, "finish videoparam");

  napi_value list = reader.get(params, "layout_regions");
  const auto count = listLength(call, reader, list, call.row.refusals[1]);
  if (!count.has_value()) return -1;
  const auto number = static_cast<int32_t>(*count);
  LogWrite(kLogInfo, "layoutRegionsNum %d", number);
  regions.resize(*count);
  eachRegion(reader, list, regions,
             [&](napi_value element, Region& region) { readTypedTexts(reader, texts, element, region, kRegionTexts); });
  eachRegion(reader, list, regions, [&](napi_value element, Region& region) { readRegion(reader, element, region); });
  param->setLayoutRegions(regions.data(), number);
  LogWrite(kLogInfo, "interpolation_mode: %d, layout_mode: %d, layoutRegionsNum: %d", modes.interpolation, modes.layout,
           number);

  const int32_t result = callEngine(call, operation, public_stream_id, param.get());
  LogWrite(kLogInfo, "-%s(%d)", __func__, __LINE__);
  return result;
}

}  // namespace corvane
