// The parameter objects of mixing and pushing: every setter is a recorded call, and the whole is recorded again when an
// operation is given the object.
#pragma once

#include "core/value.h"
#include "corvane_rtc/stream_mixing.h"
#include "objects/releasable.h"
#include "records/mixing.h"

namespace corvane::scripted {

template <class I, class Region>
class MixParam : public Releasable<I> {
 public:
  /// Everything set so far. The regions are read once more from the caller's memory: the module keeps them alive until
  /// the operation that uses the object has returned, as libraries that copy only then need it. A difference to what
  /// they were when set shows as "regions_changed".
  Value describe() const {
    Value state = state_;
    if (toJson(listToValue(regions_, count_)) != toJson(kept_regions_)) {
      state.set("regions_changed", Value(true));
    }
    return state;
  }

  void setLayoutRegions(const Region* regions, int32_t count) override {
    this->note("setLayoutRegions", list("regions", regions, count), arg("count", count));
    regions_ = regions;
    count_ = count;
    kept_regions_ = listToValue(regions, count);
    state_.set("regions", kept_regions_);
  }

 protected:
  explicit MixParam(const char* interface_name) : Releasable<I>(interface_name) {}

  template <class T>
  void keep(const char* operation, const char* name, const T& value) {
    this->note(operation, arg(name, value));
    state_.set(name, toValue(value));
  }

  Value state_ = Value::Members{};

 private:
  const Region* regions_ = nullptr;
  int32_t count_ = 0;
  Value kept_regions_;
};

class TranscoderParam final : public MixParam<rtc::ITranscoderParam, rtc::TranscoderLayoutRegion> {
 public:
  TranscoderParam() : MixParam("ITranscoderParam") {}

  void setRoomId(const char* room_id) override { keep("setRoomId", "room_id", room_id); }
  void setUserId(const char* user_id) override { keep("setUserId", "user_id", user_id); }
  void setUri(const char* uri) override { keep("setUri", "uri", uri); }
  void setAppData(const char* app_data) override { keep("setAppData", "app_data", app_data); }
  void setExpectedMixType(int32_t expected_mix_type) override {
    keep("setExpectedMixType", "expected_mix_type", expected_mix_type);
  }
  void setBackgroundColor(const char* background_color) override {
    keep("setBackgroundColor", "background_color", background_color);
  }
  void setAudioParam(const rtc::TranscoderAudioParam& audio_param) override {
    keep("setAudioParam", "audio_param", audio_param);
  }
  void setVideoParam(const rtc::TranscoderVideoParam& video_param) override {
    keep("setVideoParam", "video_param", video_param);
  }
};

class MixedStreamConfig final : public MixParam<rtc::IMixedStreamConfig, rtc::MixedStreamLayoutRegionConfig> {
 public:
  MixedStreamConfig() : MixParam("IMixedStreamConfig") {}

  void setIsSupportClientPushStream(bool is_support_client_push_stream) override {
    keep("setIsSupportClientPushStream", "is_support_client_push_stream", is_support_client_push_stream);
  }
  void setRoomId(const char* room_id) override { keep("setRoomId", "room_id", room_id); }
  void setUserId(const char* user_id) override { keep("setUserId", "user_id", user_id); }
  void setPushUrl(const char* push_url) override { keep("setPushUrl", "push_url", push_url); }
  void setUserConfigExtraInfo(const char* user_config_extra_info) override {
    keep("setUserConfigExtraInfo", "user_config_extra_info", user_config_extra_info);
  }
  void setExpectedMixType(int32_t expected_mix_type) override {
    keep("setExpectedMixType", "expected_mix_type", expected_mix_type);
  }
  void setBackgroundColor(const char* background_color) override {
    keep("setBackgroundColor", "background_color", background_color);
  }
  void setAudioConfig(const rtc::MixedStreamAudioConfig& audio_config) override {
    keep("setAudioConfig", "audio_config", audio_config);
  }
  void setVideoConfig(const rtc::MixedStreamVideoConfig& video_config) override {
    keep("setVideoConfig", "video_config", video_config);
  }
  void setClientMixConfig(const rtc::MixedStreamClientMixConfig& client_mix_config) override {
    keep("setClientMixConfig", "client_mix_config", client_mix_config);
  }
  void setServerControlConfig(const rtc::MixedStreamServerControlConfig& server_control_config) override {
    keep("setServerControlConfig", "server_control_config", server_control_config);
  }
  void setBackgroundImageUrl(const char* background_image_url) override {
    keep("setBackgroundImageUrl", "background_image_url", background_image_url);
  }
};

class PublicStreamParam final : public MixParam<rtc::IPublicStreamParam, rtc::PublicStreamRegion> {
 public:
  PublicStreamParam() : MixParam("IPublicStreamParam") {}

  void setInterpolationMode(int32_t interpolation_mode) override {
    keep("setInterpolationMode", "interpolation_mode", interpolation_mode);
  }
  void setRoomId(const char* room_id) override { keep("setRoomId", "room_id", room_id); }
  void setBackgroundImageUri(const char* background_image_uri) override {
    keep("setBackgroundImageUri", "background_image_uri", background_image_uri);
  }
  void setBackgroundColor(const char* bg_color) override { keep("setBackgroundColor", "bg_color", bg_color); }
  void setLayoutMode(int32_t layout_mode) override { keep("setLayoutMode", "layout_mode", layout_mode); }
  void setAudioParam(const rtc::PublicStreamAudioParam& audio_param) override {
    keep("setAudioParam", "audio_param", audio_param);
  }
  void setVideoParam(const rtc::PublicStreamVideoParam& video_param) override {
    keep("setVideoParam", "video_param", video_param);
  }
  void setOption(const char* key, const char* value) override {
    note("setOption", arg("key", key), arg("value", value));
    options_.set(key == nullptr ? "" : key, Value(value));
    state_.set("options", options_);
  }

 private:
  Value options_;
};

}  // namespace corvane::scripted
