#include "corvane_rtc/entry_points.h"
#include "rtc_video/mixing/builders.h"
#include "rtc_video/mixing/keys.h"
#include "rtc_video/owners.h"

namespace corvane {
namespace {

using Audio = rtc::MixedStreamAudioConfig;
using Video = rtc::MixedStreamVideoConfig;
using ClientMix = rtc::MixedStreamClientMixConfig;
using ServerControl = rtc::MixedStreamServerControlConfig;
using Region = rtc::MixedStreamLayoutRegionConfig;

constexpr std::tuple kAudioKeys{
    Key{"sample_rate", &Audio::sample_rate}, Key{"channels", &Audio::channels},
    Key{"bitrate", &Audio::bitrate},         Key{"audio_profile", &Audio::audio_profile},
    Key{"audio_codec", &Audio::audio_codec},
};

constexpr std::tuple kVideoKeys{
    Key{"width", &Video::width},
    Key{"height", &Video::height},
    Key{"fps", &Video::fps},
    Key{"gop", &Video::gop},
    Key{"bitrate", &Video::bitrate},
    Key{"video_codec", &Video::video_codec},
    Key{"enable_bframe", &Video::enable_bframe},
};

constexpr std::tuple kClientMixKeys{
    Key{"use_audio_mixer", &ClientMix::use_audio_mixer},
    Key{"video_format", &ClientMix::video_format},
};

// The only text, "sei_payload_uuid", stands between the two tables.
constexpr std::tuple kServerKeysBeforeUuid{
    Key{"enable_volume_indication", &ServerControl::enable_volume_indication},
    Key{"volume_indication_interval", &ServerControl::volume_indication_interval},
    Key{"talk_volume", &ServerControl::talk_volume},
    Key{"is_add_volume_value", &ServerControl::is_add_volume_value},
    Key{"sei_content_mode", &ServerControl::sei_content_mode},
    Key{"sei_payload_type", &ServerControl::sei_payload_type},
};
constexpr std::tuple kServerKeysBehindUuid{
    Key{"media_type", &ServerControl::media_type},
    Key{"push_stream_mode", &ServerControl::push_stream_mode},
};

constexpr Key<Region, const char*> kRegionTexts[] = {
    {"region_id", &Region::region_id},
    {"room_id", &Region::room_id},
    {"alternate_image_url", &Region::alternate_image_url},
};

constexpr std::tuple kRegionKeys{
    Key{"location_x", &Region::location_x},
    Key{"location_y", &Region::location_y},
    Key{"width", &Region::width},
    Key{"height", &Region::height},
    Key{"alpha", &Region::alpha},
    Key{"corner_radius", &Region::corner_radius},
    Key{"z_order", &Region::z_order},
    Key{"is_local_user", &Region::is_local_user},
    Key{"stream_type", &Region::stream_type},
    Key{"media_type", &Region::media_type},
    Key{"render_mode", &Region::render_mode},
    Key{"region_content_type", &Region::region_content_type},
    Key{"alternate_image_fill_mode", &Region::alternate_image_fill_mode},
};

constexpr std::tuple kPositionKeys{
    Key{"x", &rtc::MixSpatialPosition::x},
    Key{"y", &rtc::MixSpatialPosition::y},
    Key{"z", &rtc::MixSpatialPosition::z},
};

// A size needs both its numbers.
void readImageSize(Reader& reader, napi_value size, rtc::MixImageParam& param) {
  napi_value width = reader.get(size, "image_width");
  napi_value height = reader.get(size, "image_height");
  if (!isKind(reader.env(), width, Kind::kNumber) || !isKind(reader.env(), height, Kind::kNumber)) return;
  param = {reader.int32(width), reader.int32(height)};
}

void logRegion(const Region& region) {
  LogWrite(kLogInfo,
           "MixedStreamLayoutRegionConfig: region_id:%s, room_id: %s, location_x:%d, location_y:%d, width:%d, "
           "height:%d, alpha:%f, corner_radius:%f,z_order:%d, is_local_user:%d, stream_type:%d,  media_type:%d, "
           "render_mode:%d, region_content_type:%d, alternate_image_fill_mode:%d, alternate_image_url:%s",
           region.region_id, region.room_id, region.location_x, region.location_y, region.width, region.height,
           static_cast<double>(region.alpha), static_cast<double>(region.corner_radius), region.z_order,
           region.is_local_user ? 1 : 0, region.stream_type, region.media_type, region.render_mode,
           region.region_content_type, region.alternate_image_fill_mode, region.alternate_image_url);
}

// Everything but the texts; answers the watermark's typed array.
napi_value readRegion(Reader& reader, napi_value element, Region& region) {
  readTyped(reader, element, region, kRegionKeys);
  napi_value watermark = reader.get(element, "image_water_mark");
  if (!isKind(reader.env(), watermark, Kind::kBytes)) watermark = nullptr;
  napi_value size = objectOrNull(reader, element, "image_water_mark_param");
  if (size != nullptr) readImageSize(reader, size, region.image_water_mark_param);
  napi_value position = objectOrNull(reader, element, "spatial_position");
  if (position != nullptr) readTyped(reader, position, region.spatial_position, kPositionKeys);
  readIfTyped(reader, element, "apply_spatial_audio", region.apply_spatial_audio);
  logRegion(region);
  return watermark;
}

void setTask(Reader& reader, napi_value params, rtc::IMixedStreamConfig& config) {
  bool is_support_client_push_stream = false;
  napi_value is_support = reader.get(params, "is_support_client_push_stream");
  if (isKind(reader.env(), is_support, Kind::kBoolean)) {
    is_support_client_push_stream = reader.boolean(is_support);
    config.setIsSupportClientPushStream(is_support_client_push_stream);
  }
  const std::string room_id = reader.string(params, "room_id");
  config.setRoomId(room_id.c_str());
  const std::string user_id = reader.string(params, "user_id");
  config.setUserId(user_id.c_str());
  const std::string push_url = reader.string(params, "push_url");
  config.setPushUrl(push_url.c_str());
  const std::string extra_info = reader.string(params, "user_config_extra_info");
  config.setUserConfigExtraInfo(extra_info.c_str());
  const int32_t expected_mix_type = reader.int32(params, "expected_mix_type");
  config.setExpectedMixType(expected_mix_type);
  const std::string background_color = reader.string(params, "background_color");
  config.setBackgroundColor(background_color.c_str());
  LogWrite(kLogInfo,
           "room_id: %s, user_id: %s, push_url: %s, user_config_extra_info: %s, background_color: %s, "
           "expected_mix_type: %d, is_support_client_push_stream: %d",
           room_id.c_str(), user_id.c_str(), push_url.c_str(), extra_info.c_str(), background_color.c_str(),
           expected_mix_type, is_support_client_push_stream ? 1 : 0);
}

void setAudio(Reader& reader, napi_value params, rtc::IMixedStreamConfig& config) {
  Audio audio{};
  readAlways(reader, reader.get(params, "audio_config"), audio, kAudioKeys);
  config.setAudioConfig(audio);
  LogWrite(kLogInfo,
           "MixedStreamAudioConfig: , sample_rate: %d, channels: %d, bitrate: %d, audio_profile: %d, audio_codec: %d",
           audio.sample_rate, audio.channels, audio.bitrate, audio.audio_profile, audio.audio_codec);
}

void setVideo(Reader& reader, napi_value params, rtc::IMixedStreamConfig& config) {
  Video video{};
  readAlways(reader, reader.get(params, "video_config"), video, kVideoKeys);
  config.setVideoConfig(video);
  LogWrite(kLogInfo,
           "MixedStreamVideoConfig: , width: %d, height: %d, fps: %d, gop: %d, bitrate: %d, video_codec: "
           "%d,enable_Bframe: %d",
           video.width, video.height, video.fps, video.gop, video.bitrate, video.video_codec,
           video.enable_bframe ? 1 : 0);
}

void setClientMix(Reader& reader, napi_value params, rtc::IMixedStreamConfig& config) {
  ClientMix mix{};
  readAlways(reader, reader.get(params, "client_mix_config"), mix, kClientMixKeys);
  config.setClientMixConfig(mix);
  LogWrite(kLogInfo, "mixedStreamClientMixConfig: , use_audio_mixer: %d, video_format: %d", mix.use_audio_mixer ? 1 : 0,
           mix.video_format);
}

// Without the object the engine's own settings stay.
void setServerControl(Reader& reader, napi_value params, rtc::IMixedStreamConfig& config) {
  napi_value object = objectOrNull(reader, params, "server_control_config");
  if (object == nullptr) return;
  ServerControl control{};
  readAlways(reader, object, control, kServerKeysBeforeUuid);
  std::string uuid;
  napi_value uuid_value = reader.get(object, "sei_payload_uuid");
  if (isKind(reader.env(), uuid_value, Kind::kString)) uuid = reader.string(uuid_value);
  control.sei_payload_uuid = uuid.c_str();
  readAlways(reader, object, control, kServerKeysBehindUuid);
  config.setServerControlConfig(control);
  LogWrite(kLogInfo,
           "MixedStreamServerControlConfig: , enable_volume_indication:%d, volume_indication_interval:%f, "
           "talk_volume:%d, is_add_volume_value:%d, sei_content_mode:%d, sei_payload_type:%d, sei_payload_uuid:%s, "
           "media_type: %d, push_stream_mode: %d",
           control.enable_volume_indication ? 1 : 0, control.volume_indication_interval, control.talk_volume,
           control.is_add_volume_value ? 1 : 0, control.sei_content_mode, control.sei_payload_type,
           control.sei_payload_uuid, control.media_type, control.push_stream_mode);
}

void setBackgroundImage(Reader& reader, napi_value params, rtc::IMixedStreamConfig& config) {
  napi_value value = reader.get(params, "background_image_url");
  if (!isKind(reader.env(), value, Kind::kString)) return;
  const std::string url = reader.string(value);
  config.setBackgroundImageUrl(url.c_str());
  LogWrite(kLogInfo, "setBackgroundImageURL: , background_image_url: %s", url.c_str());
}

int32_t callEngine(const Call& call, std::string_view operation, const char* task_id, rtc::IMixedStreamConfig* config) {
  if (operation == "startPushMixedStreamToCDN") {
    return engineOf(call).startPushMixedStreamToCDN(task_id, config, videoOf(call).transcodingObserver());
  }
  if (operation == "updatePushMixedStreamToCDN") return engineOf(call).updatePushMixedStreamToCDN(task_id, config);
  return -1;
}

}  // namespace

int32_t buildMixedStreamConfig(const Call& call, Reader& reader, std::string_view operation, const char* task_id,
                               napi_value params) {
  LogWrite(kLogInfo, "+%s(%d)", __func__, __LINE__);
  Texts texts;
  std::vector<Region> regions;
  const OwnedParam<rtc::IMixedStreamConfig> config(rtc::createMixedStreamConfig());
  if (config == nullptr) {
    LogWrite(kLogInfo, "%s(%d), mixedStreamConfig is nullptr", __func__, __LINE__);
    return -1;
  }
  setTask(reader, params, *config);
  setAudio(reader, params, *config);
  setVideo(reader, params, *config);
  setClientMix(reader, params, *config);
  setServerControl(reader, params, *config);
  setBackgroundImage(reader, params, *config);

  napi_value list = reader.get(params, "layout_regions");
  const auto count = listLength(call, reader, list, call.row.refusals[1]);
  if (!count.has_value()) return -1;
  regions.resize(*count);
  eachRegion(reader, list, regions,
             [&](napi_value element, Region& region) { readTypedTexts(reader, texts, element, region, kRegionTexts); });
  RegionImages watermarks;
  eachRegion(
      reader, list, regions, [&](napi_value element, Region& region) { return readRegion(reader, element, region); },
      [&](uint32_t index, napi_value array) { watermarks.keep(index, array); });
  if (!watermarks.resolve(call, reader, regions, &Region::image_water_mark, &Region::image_water_mark_size,
                          call.row.refusals[1])) {
    return -1;
  }
  config->setLayoutRegions(regions.data(), static_cast<int32_t>(*count));

  const int32_t result = callEngine(call, operation, task_id, config.get());
  LogWrite(kLogInfo, "-%s(%d)", __func__, __LINE__);
  return result;
}

}  // namespace corvane
