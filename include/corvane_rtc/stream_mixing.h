// Parameters of the mixes and pushes that the service makes of a room's streams.
//
// The three parameter objects come from createTranscoderParam(), createMixedStreamConfig() and
// createPublicStreamParam(). The caller owns them until release(). Setters copy what they are given. The engine
// reads an object during the call it is handed to and keeps nothing of it. Any one thread at a time.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// Who mixes.
enum StreamMixType : int32_t {
  kStreamMixTypeByServer = 0,
  kStreamMixTypeByClient = 1,
};

/// How a picture fits its region.
enum MixRenderMode : int32_t {
  kMixRenderModeHidden = 1,    ///< fills the region, cropped
  kMixRenderModeFit = 2,       ///< whole picture, with bars
  kMixRenderModeAdaptive = 3,  ///< stretched
};

/// Which media of a region's stream take part.
enum MixMediaType : int32_t {
  kMixMediaTypeAudioAndVideo = 0,
  kMixMediaTypeAudioOnly = 1,
  kMixMediaTypeVideoOnly = 2,
};

/// What a region shows.
enum MixRegionType : int32_t {
  kMixRegionTypeStream = 0,
  kMixRegionTypeImage = 1,
};

/// Size of an image given as bytes, in pixels.
struct MixImageParam {
  int32_t image_width;
  int32_t image_height;
};

/// Where a user is heard from in a spatial mix.
struct MixSpatialPosition {
  double x;
  double y;
  double z;
};

// Live transcoding.

struct TranscoderAudioParam {
  int32_t i32_sample_rate;      ///< samples a second
  int32_t i32_channel_num;      ///< 1 or 2
  int32_t i32_bitrate_kbps;     ///< kbit/s
  int32_t audio_codec_profile;  ///< 0 LC, 1 HE v1, 2 HE v2
  int32_t audio_codec_type;     ///< 0 AAC
};

struct TranscoderVideoParam {
  int32_t i32_width;         ///< pixels
  int32_t i32_height;        ///< pixels
  int32_t i32_fps;           ///< frames a second
  int32_t i32_gop;           ///< seconds between key frames
  int32_t i32_bitrate_kbps;  ///< kbit/s
  int32_t video_codec_type;  ///< 0 H.264, 1 H.265
  bool b_frame;              ///< allows frames that refer to later ones
};

/// One picture on the canvas. Places and sizes are shares of the canvas, 0 to 1.
struct TranscoderLayoutRegion {
  const char* region_id;  ///< the user shown
  const char* room_id;
  double x;
  double y;
  double width;
  double height;
  double alpha;          ///< 0 to 1
  double corner_radius;  ///< share of the canvas width
  int32_t i32_z_order;   ///< 0 to 100, the largest in front
  bool local_user;
  bool screen_stream;
  int32_t content_control;  ///< MixMediaType
  int32_t render_mode;      ///< MixRenderMode
  int32_t type;             ///< MixRegionType
  const uint8_t* data;      ///< RGBA pixels of an image region; null for a stream
  int32_t data_size;        ///< bytes
  MixImageParam data_param;
  MixSpatialPosition spatial_position;
  bool apply_spatial_audio;
};

class ITranscoderParam {
 public:
  virtual void setRoomId(const char* room_id) = 0;
  virtual void setUserId(const char* user_id) = 0;
  virtual void setUri(const char* uri) = 0;  ///< RTMP address
  virtual void setAppData(const char* app_data) = 0;
  virtual void setExpectedMixType(int32_t expected_mix_type) = 0;     ///< StreamMixType
  virtual void setBackgroundColor(const char* background_color) = 0;  ///< "#RRGGBB"
  virtual void setAudioParam(const TranscoderAudioParam& audio_param) = 0;
  virtual void setVideoParam(const TranscoderVideoParam& video_param) = 0;
  virtual void setLayoutRegions(const TranscoderLayoutRegion* regions, int32_t count) = 0;
  virtual void release() = 0;

 protected:
  ~ITranscoderParam() = default;
};

// Mixed stream to a content delivery network.

struct MixedStreamAudioConfig {
  int32_t sample_rate;    ///< samples a second
  int32_t channels;       ///< 1 or 2
  int32_t bitrate;        ///< kbit/s
  int32_t audio_profile;  ///< 0 LC, 1 HE v1, 2 HE v2
  int32_t audio_codec;    ///< 0 AAC
};

struct MixedStreamVideoConfig {
  int32_t width;        ///< pixels
  int32_t height;       ///< pixels
  int32_t fps;          ///< frames a second
  int32_t gop;          ///< seconds between key frames
  int32_t bitrate;      ///< kbit/s
  int32_t video_codec;  ///< 0 H.264, 1 H.265
  bool enable_bframe;   ///< allows frames that refer to later ones
};

/// For mixes made by the client.
struct MixedStreamClientMixConfig {
  bool use_audio_mixer;
  int32_t video_format;  ///< VideoPixelFormat of the mixed frames handed out
};

/// What the service adds to the mix.
struct MixedStreamServerControlConfig {
  bool enable_volume_indication;
  double volume_indication_interval;  ///< seconds, 0.3 and above
  int32_t talk_volume;                ///< 0 to 255; louder users count as talking
  bool is_add_volume_value;
  int32_t sei_content_mode;      ///< 0 everything, 1 volumes only
  int32_t sei_payload_type;      ///< payload type number of the messages, 5 or 100
  const char* sei_payload_uuid;  ///< with payload type 5
  int32_t media_type;            ///< MixMediaType
  int32_t push_stream_mode;      ///< 0 pushes when a user publishes, 1 at once
};

/// One picture on the canvas, in pixels.
struct MixedStreamLayoutRegionConfig {
  const char* region_id = "";  ///< the user shown
  const char* room_id = "";
  const char* alternate_image_url = "";  ///< shown while there is no video
  int32_t location_x = 0;
  int32_t location_y = 0;
  int32_t width = 360;
  int32_t height = 640;
  float alpha = 1.0F;          ///< 0 to 1
  float corner_radius = 0.0F;  ///< share of the canvas width
  int32_t z_order = 0;         ///< 0 to 100, the largest in front
  bool is_local_user = false;
  int32_t stream_type = 0;                             ///< StreamIndex
  int32_t media_type = kMixMediaTypeAudioAndVideo;     ///< MixMediaType
  int32_t render_mode = kMixRenderModeHidden;          ///< MixRenderMode
  int32_t region_content_type = kMixRegionTypeStream;  ///< MixRegionType
  int32_t alternate_image_fill_mode = 0;               ///< 0 as the picture before it, 1 as the region's render mode
  const uint8_t* image_water_mark = nullptr;           ///< RGBA pixels
  int32_t image_water_mark_size = 0;                   ///< bytes
  MixImageParam image_water_mark_param = {};
  MixSpatialPosition spatial_position = {};
  bool apply_spatial_audio = true;
};

class IMixedStreamConfig {
 public:
  virtual void setIsSupportClientPushStream(bool is_support_client_push_stream) = 0;
  virtual void setRoomId(const char* room_id) = 0;
  virtual void setUserId(const char* user_id) = 0;
  virtual void setPushUrl(const char* push_url) = 0;  ///< RTMP address
  virtual void setUserConfigExtraInfo(const char* user_config_extra_info) = 0;
  virtual void setExpectedMixType(int32_t expected_mix_type) = 0;     ///< StreamMixType
  virtual void setBackgroundColor(const char* background_color) = 0;  ///< "#RRGGBB"
  virtual void setAudioConfig(const MixedStreamAudioConfig& audio_config) = 0;
  virtual void setVideoConfig(const MixedStreamVideoConfig& video_config) = 0;
  virtual void setClientMixConfig(const MixedStreamClientMixConfig& client_mix_config) = 0;
  virtual void setServerControlConfig(const MixedStreamServerControlConfig& server_control_config) = 0;
  virtual void setBackgroundImageUrl(const char* background_image_url) = 0;
  virtual void setLayoutRegions(const MixedStreamLayoutRegionConfig* regions, int32_t count) = 0;
  virtual void release() = 0;

 protected:
  ~IMixedStreamConfig() = default;
};

/// One stream pushed as it is.
struct PushSingleStreamParam {
  const char* room_id;
  const char* uri;  ///< RTMP address
  const char* user_id;
  bool is_screen_stream;
};

// Public streams.

struct PublicStreamAudioParam {
  int32_t sample_rate;   ///< samples a second
  int32_t channel_num;   ///< 1 or 2
  int32_t bitrate_kbps;  ///< kbit/s
};

struct PublicStreamVideoParam {
  int32_t width;         ///< pixels
  int32_t height;        ///< pixels
  int32_t fps;           ///< frames a second
  int32_t bitrate_kbps;  ///< kbit/s
};

/// The part of a stream's picture that is shown, as shares of its width and height.
struct PublicStreamSourceCrop {
  double location_x;
  double location_y;
  double width_proportion;
  double height_proportion;
};

/// One picture on the canvas. Places and sizes are shares of the canvas, 0 to 1.
struct PublicStreamRegion {
  const char* room_id = "";
  const char* user_id = "";
  const char* alternate_image_uri = "";  ///< shown while there is no video
  double x = 0.0;
  double y = 0.0;
  double width = 1.0;
  double height = 1.0;
  double alpha = 1.0;                               ///< 0 to 1
  int32_t z_order = 0;                              ///< 0 to 100, the largest in front
  int32_t stream_type = 0;                          ///< StreamIndex
  int32_t media_type = kMixMediaTypeAudioAndVideo;  ///< MixMediaType
  int32_t render_mode = kMixRenderModeHidden;       ///< MixRenderMode
  PublicStreamSourceCrop source_crop = {0.0, 0.0, 1.0, 1.0};
};

class IPublicStreamParam {
 public:
  /// 0 last frame, 1 background while video is missing.
  virtual void setInterpolationMode(int32_t interpolation_mode) = 0;
  virtual void setRoomId(const char* room_id) = 0;
  virtual void setBackgroundImageUri(const char* background_image_uri) = 0;
  virtual void setBackgroundColor(const char* bg_color) = 0;  ///< "#RRGGBB"
  virtual void setLayoutMode(int32_t layout_mode) = 0;        ///< 2: as given by the regions
  virtual void setAudioParam(const PublicStreamAudioParam& audio_param) = 0;
  virtual void setVideoParam(const PublicStreamVideoParam& video_param) = 0;
  virtual void setLayoutRegions(const PublicStreamRegion* regions, int32_t count) = 0;
  virtual void setOption(const char* key, const char* value) = 0;  ///< passed to the service with the request
  virtual void release() = 0;

 protected:
  ~IPublicStreamParam() = default;
};

}  // namespace corvane::rtc
