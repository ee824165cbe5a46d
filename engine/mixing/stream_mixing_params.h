// The parameter objects of mixes, pushes and public streams. Each keeps copies of what its setters are given.
#pragma once

#include <map>
#include <string>

#include "corvane_rtc/stream_mixing.h"
#include "mixing/owned_records.h"

namespace corvane::rtc {

struct TranscoderSettings {
  std::string room_id;
  std::string user_id;
  std::string uri;
  std::string app_data;
  int32_t expected_mix_type = kStreamMixTypeByServer;
  std::string background_color;
  TranscoderAudioParam audio = {};
  TranscoderVideoParam video = {};
  OwnedRecords<TranscoderLayoutRegion> regions;
};

class TranscoderParam final : public ITranscoderParam {
 public:
  void setRoomId(const char* room_id) override { settings_.room_id = textOrEmpty(room_id); }
  void setUserId(const char* user_id) override { settings_.user_id = textOrEmpty(user_id); }
  void setUri(const char* uri) override { settings_.uri = textOrEmpty(uri); }
  void setAppData(const char* app_data) override { settings_.app_data = textOrEmpty(app_data); }
  void setExpectedMixType(int32_t expected_mix_type) override { settings_.expected_mix_type = expected_mix_type; }
  void setBackgroundColor(const char* color) override { settings_.background_color = textOrEmpty(color); }
  void setAudioParam(const TranscoderAudioParam& audio_param) override { settings_.audio = audio_param; }
  void setVideoParam(const TranscoderVideoParam& video_param) override { settings_.video = video_param; }
  void setLayoutRegions(const TranscoderLayoutRegion* regions, int32_t count) override;
  void release() override { delete this; }

  const TranscoderSettings& settings() const { return settings_; }

 private:
  TranscoderSettings settings_;
};

struct MixedStreamSettings {
  bool client_may_push = false;
  std::string room_id;
  std::string user_id;
  std::string push_url;
  std::string extra_info;
  int32_t expected_mix_type = kStreamMixTypeByServer;
  std::string background_color;
  std::string background_image_url;
  MixedStreamAudioConfig audio = {};
  MixedStreamVideoConfig video = {};
  MixedStreamClientMixConfig client_mix = {};
  OwnedRecords<MixedStreamServerControlConfig> server_control;  ///< one, or none before it is set
  OwnedRecords<MixedStreamLayoutRegionConfig> regions;
};

class MixedStreamConfig final : public IMixedStreamConfig {
 public:
  void setIsSupportClientPushStream(bool may_push) override { settings_.client_may_push = may_push; }
  void setRoomId(const char* room_id) override { settings_.room_id = textOrEmpty(room_id); }
  void setUserId(const char* user_id) override { settings_.user_id = textOrEmpty(user_id); }
  void setPushUrl(const char* push_url) override { settings_.push_url = textOrEmpty(push_url); }
  void setUserConfigExtraInfo(const char* extra_info) override { settings_.extra_info = textOrEmpty(extra_info); }
  void setExpectedMixType(int32_t expected_mix_type) override { settings_.expected_mix_type = expected_mix_type; }
  void setBackgroundColor(const char* color) override { settings_.background_color = textOrEmpty(color); }
  void setAudioConfig(const MixedStreamAudioConfig& audio_config) override { settings_.audio = audio_config; }
  void setVideoConfig(const MixedStreamVideoConfig& video_config) override { settings_.video = video_config; }
  void setClientMixConfig(const MixedStreamClientMixConfig& config) override { settings_.client_mix = config; }
  void setServerControlConfig(const MixedStreamServerControlConfig& config) override;
  void setBackgroundImageUrl(const char* url) override { settings_.background_image_url = textOrEmpty(url); }
  void setLayoutRegions(const MixedStreamLayoutRegionConfig* regions, int32_t count) override;
  void release() override { delete this; }

  const MixedStreamSettings& settings() const { return settings_; }

 private:
  MixedStreamSettings settings_;
};

struct PublicStreamSettings {
  int32_t interpolation_mode = 0;
  std::string room_id;
  std::string background_image_uri;
  std::string background_color;
  int32_t layout_mode = 2;
  PublicStreamAudioParam audio = {};
  PublicStreamVideoParam video = {};
  OwnedRecords<PublicStreamRegion> regions;
  std::map<std::string, std::string> options;
};

class PublicStreamParam final : public IPublicStreamParam {
 public:
  void setInterpolationMode(int32_t mode) override { settings_.interpolation_mode = mode; }
  void setRoomId(const char* room_id) override { settings_.room_id = textOrEmpty(room_id); }
  void setBackgroundImageUri(const char* uri) override { settings_.background_image_uri = textOrEmpty(uri); }
  void setBackgroundColor(const char* color) override { settings_.background_color = textOrEmpty(color); }
  void setLayoutMode(int32_t layout_mode) override { settings_.layout_mode = layout_mode; }
  void setAudioParam(const PublicStreamAudioParam& audio_param) override { settings_.audio = audio_param; }
  void setVideoParam(const PublicStreamVideoParam& video_param) override { settings_.video = video_param; }
  void setLayoutRegions(const PublicStreamRegion* regions, int32_t count) override;
  void setOption(const char* key, const char* value) override {
    settings_.options[textOrEmpty(key)] = textOrEmpty(value);
  }
  void release() override { delete this; }

  const PublicStreamSettings& settings() const { return settings_; }

 private:
  PublicStreamSettings settings_;
};

}  // namespace corvane::rtc
