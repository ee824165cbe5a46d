#include "mixing/stream_mixing_params.h"

namespace corvane::rtc {

void TranscoderParam::setLayoutRegions(const TranscoderLayoutRegion* regions, int32_t count) {
  using Region = TranscoderLayoutRegion;
  settings_.regions.assign<&Region::region_id, &Region::room_id>(regions, count);
  settings_.regions.keepBytes<&Region::data, &Region::data_size>();
}

void MixedStreamConfig::setServerControlConfig(const MixedStreamServerControlConfig& config) {
  settings_.server_control.assign<&MixedStreamServerControlConfig::sei_payload_uuid>(&config, 1);
}

void MixedStreamConfig::setLayoutRegions(const MixedStreamLayoutRegionConfig* regions, int32_t count) {
  using Region = MixedStreamLayoutRegionConfig;
  settings_.regions.assign<&Region::region_id, &Region::room_id, &Region::alternate_image_url>(regions, count);
  settings_.regions.keepBytes<&Region::image_water_mark, &Region::image_water_mark_size>();
}

void PublicStreamParam::setLayoutRegions(const PublicStreamRegion* regions, int32_t count) {
  using Region = PublicStreamRegion;
  settings_.regions.assign<&Region::room_id, &Region::user_id, &Region::alternate_image_uri>(regions, count);
}

}  // namespace corvane::rtc
