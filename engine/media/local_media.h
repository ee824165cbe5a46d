// What one of the local user's streams is sent from: encoders, made when the first room publishes and ended with the
// last.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/engine_context.h"
#include "media/picture_taps.h"
#include "media/sound_encoder.h"
#include "media/sound_taps.h"
#include "media/video_encoder.h"

namespace corvane::rtc {

/// Engine thread only.
class LocalMedia final : public VideoEncoder::Listener, public SoundEncoder::Listener {
 public:
  class User {
   public:
    /// Pictures come from another encoder from now on; the one before is about to go.
    virtual void onVideoEncoder(VideoEncoder& encoder) = 0;
    /// A medium can no longer be encoded; what was lent is about to go.
    virtual void onEncodingFailed(const std::string& reason) = 0;

   protected:
    ~User() = default;
  };

  LocalMedia(EngineContext& context, int32_t stream_index, PictureTaps& pictures, SoundTaps& sound);
  ~LocalMedia();
  LocalMedia(const LocalMedia&) = delete;
  LocalMedia& operator=(const LocalMedia&) = delete;

  /// Encoders, until given back. Every user gets the same. Null when there can be none.
  VideoEncoder* borrowVideo(User& user);
  SoundEncoder* borrowSound(User& user);
  /// kbit/s that this user's link carries; the encoder, which all share, follows the narrowest.
  void limitVideo(User& user, int32_t kbit);
  void giveBackVideo(User& user);
  void giveBackSound(User& user);

  /// Several times a second: reports what is encoded for the first time.
  void check();

  /// Also while pictures are sent.
  void setVideoEncoding(const VideoEncoding& encoding);
  void setSoundEncoding(const SoundEncoding& encoding);

 private:
  void applyLimits();
  void onEncoderFailed(const std::string& reason) override;
  void onSoundEncoderFailed(const std::string& reason) override;

  EngineContext& context_;
  const int32_t stream_index_;
  PictureTaps& picture_taps_;
  SoundTaps& sound_taps_;
  VideoEncoding encoding_;
  SoundEncoding sound_encoding_;
  std::unique_ptr<VideoEncoder> video_;
  std::unique_ptr<SoundEncoder> sound_;
  bool video_told_ = false;
  bool sound_told_ = false;
  std::vector<User*> video_users_;
  std::vector<User*> sound_users_;
  std::map<User*, int32_t> limits_;  // kbit/s, of those who have told one
};

}  // namespace corvane::rtc
