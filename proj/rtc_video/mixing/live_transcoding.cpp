#include "corvane_rtc/entry_points.h"
#include "rtc_video/mixing/builders.h"
#include "rtc_video/mixing/keys.h"
#include "rtc_video/owners.h"

namespace corvane {
namespace {

using Audio = rtc::TranscoderAudioParam;
using Video = rtc::TranscoderVideoParam;
using Region = rtc::TranscoderLayoutRegion;

constexpr std::tuple kAudioKeys{
    Key{"i32_sample_rate", &Audio::i32_sample_rate},   Key{"i32_channel_num", &Audio::i32_channel_num},
    Key{"i32_bitrate_kbps", &Audio::i32_bitrate_kbps}, Key{"audio_codec_profile", &Audio::audio_codec_profile},
    Key{"audio_codec_type", &Audio::audio_codec_type},
};

constexpr std::tuple kVideoKeys{
    Key{"i32_width", &Video::i32_width},
    Key{"i32_height", &Video::i32_height},
    Key{"i32_fps", &Video::i32_fps},
    Key{"i32_gop", &Video::i32_gop},
    Key{"i32_bitrate_kbps", &Video::i32_bitrate_kbps},
    Key{"video_codec_type", &Video::video_codec_type},
    Key{"bFrame", &Video::b_frame},
};

constexpr std::tuple kRegionKeys{
    Key{"x", &Region::x},
    Key{"y", &Region::y},
    Key{"width", &Region::width},
    Key{"height", &Region::height},
    Key{"alpha", &Region::alpha},
    Key{"corner_radius", &Region::corner_radius},
    Key{"i32_z_order", &Region::i32_z_order},
    Key{"local_user", &Region::local_user},
    Key{"screen_stream", &Region::screen_stream},
    Key{"content_control", &Region::content_control},
    Key{"render_mode", &Region::render_mode},
    Key{"type", &Region::type},
};

constexpr std::tuple kImageKeys{
    Key{"image_width", &rtc::MixImageParam::image_width},
    Key{"image_height", &rtc::MixImageParam::image_height},
};

constexpr std::tuple kPositionKeys{
    Key{"x", &rtc::MixSpatialPosition::x},
    Key{"y", &rtc::MixSpatialPosition::y},
    Key{"z", &rtc::MixSpatialPosition::z},
};

// Everything but the texts; answers the typed array of an image region.
napi_value readRegion(Reader& reader, napi_value element, Region& region) {
  napi_value image = nullptr;
  readAlways(reader, element, region, kRegionKeys);
  if (region.type == rtc::kMixRegionTypeImage) {
    image = reader.get(element, "data");
    if (!isKind(reader.env(), image, Kind::kBytes)) {
      reader.bytes(image);  // for the host's error, in its turn
      image = nullptr;
    }
    readAlways(reader, reader.get(element, "data_param"), region.data_param, kImageKeys);
  }
  readAlways(reader, reader.get(element, "spatial_position"), region.spatial_position, kPositionKeys);
  region.apply_spatial_audio = reader.boolean(element, "apply_spatial_audio");
  return image;
}

// The texts at the top; answers the background colour, which is logged once more behind the regions.
std::string setTask(Reader& reader, napi_value params, rtc::ITranscoderParam& param) {
  const std::string room_id = reader.string(params, "room_id");
  param.setRoomId(room_id.c_str());
  const std::string user_id = reader.string(params, "user_id");
  param.setUserId(user_id.c_str());
  const std::string uri = reader.string(params, "uri");
  param.setUri(uri.c_str());
  const std::string app_data = reader.string(params, "app_data");
  param.setAppData(app_data.c_str());
  const int32_t expected_mix_type = reader.int32(params, "expected_mix_type");
  param.setExpectedMixType(expected_mix_type);
  std::string background_color = reader.string(params, "background_color");
  param.setBackgroundColor(background_color.c_str());
  LogWrite(kLogInfo, "room_id: %s, user_id: %s, uri: %s, appData: %s, background_color: %s, expected_mix_type: %d,",
           room_id.c_str(), user_id.c_str(), uri.c_str(), app_data.c_str(), background_color.c_str(),
           expected_mix_type);
  return background_color;
}

void setAudio(Reader& reader, napi_value params, rtc::ITranscoderParam& param) {
  Audio audio{};
  readAlways(reader, reader.get(params, "audio_param"), audio, kAudioKeys);
  param.setAudioParam(audio);
  LogWrite(kLogInfo,
           "TranscoderAudioParam: , i32_sample_rate: %d, i32_channel_num: %d, i32_bitrate_kbps: %d, "
           "audio_codec_profile: %d, audio_codec_type: %d",
           audio.i32_sample_rate, audio.i32_channel_num, audio.i32_bitrate_kbps, audio.audio_codec_profile,
           audio.audio_codec_type);
}

void setVideo(Reader& reader, napi_value params, rtc::ITranscoderParam& param) {
  Video video{};
  readAlways(reader, reader.get(params, "video_param"), video, kVideoKeys);
  param.setVideoParam(video);
  LogWrite(kLogInfo,
           "TranscoderVideoParam: , i32_width: %d, i32_height: %d, i32_fps: %d, i32_gop: %d, i32_bitrate_kbps: %d, "
           "video_codec_type: %d,bFrame: %d",
           video.i32_width, video.i32_height, video.i32_fps, video.i32_gop, video.i32_bitrate_kbps,
           video.video_codec_type, video.b_frame ? 1 : 0);
}

int32_t callEngine(const Call& call, std::string_view operation, const char* task_id, rtc::ITranscoderParam* param) {
  if (operation == "StartLiveTranscoding") {
    return engineOf(call).startLiveTranscoding(task_id, param, videoOf(call).transcodingObserver());
  }
  if (operation == "UpdateLiveTranscoding") return engineOf(call).updateLiveTranscoding(task_id, param);
  return -1;
}

}  // namespace

int32_t buildLiveTranscodeParam(const Call& call, Reader& reader, std::string_view operation, const char* task_id,
                                napi_value params) {
  LogWrite(kLogInfo, "+%s(%d)", __func__, __LINE__);
  Texts texts;
  std::vector<Region> regions;
  const OwnedParam<rtc::ITranscoderParam> param(rtc::createTranscoderParam());
  if (param == nullptr) {
    LogWrite(kLogInfo, "%s(%d), transcoderParam is nullptr", __func__, __LINE__);
    return -1;
  }
  const std::string background_color = setTask(reader, params, *param);
  setAudio(reader, params, *param);
  setVideo(reader, params, *param);

  napi_value list = reader.get(params, "layout_regions");
  const auto count = listLength(call, reader, list, call.row.refusals[1]);
  if (!count.has_value()) return -1;
  regions.resize(*count);
  eachRegion(reader, list, regions, [&](napi_value element, Region& region) {
    region.region_id = texts.keep(reader.string(element, "region_id"));
    region.room_id = texts.keep(reader.string(element, "room_id"));
  });
  RegionImages images;
  eachRegion(
      reader, list, regions, [&](napi_value element, Region& region) { return readRegion(reader, element, region); },
      [&](uint32_t index, napi_value array) { images.keep(index, array); });
  if (!images.resolve(call, reader, regions, &Region::data, &Region::data_size, call.row.refusals[1])) return -1;
  LogWrite(kLogInfo, "region bg: %s", background_color.c_str());
  param->setLayoutRegions(regions.data(), static_cast<int32_t>(*count));

  const int32_t result = callEngine(call, operation, task_id, param.get());
  LogWrite(kLogInfo, "-%s(%d)", __func__, __LINE__);
  return result;
}

}  // namespace corvane
