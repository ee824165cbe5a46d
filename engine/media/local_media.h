// What one of the local user's streams is sent from: encoders, made when the first room publishes and ended with the
// last.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/engine_context.h"
#include "media/bitrate_shares.h"
#include "media/picture_taps.h"
#include "media/sound_encoder.h"
#include "media/sound_taps.h"
#include "media/video_encoder.h"

namespace corvane::rtc {

/// Of one video, the largest first.
using VideoLayers = std::vector<VideoEncoder*>;
constexpr size_t kMaxVideoLayers = 3;  // what services let through

/// Engine thread only.
class LocalMedia final : public VideoEncoder::Listener, public SoundEncoder::Listener {
 public:
  class User {
   public:
    /// Pictures come from other encoders from now on, perhaps in more layers or fewer; those before are about to go.
    virtual void onVideoEncoders(const VideoLayers& encoders) = 0;
    /// A medium can no longer be encoded; what was lent is about to go.
    virtual void onEncodingFailed(const std::string& reason) = 0;

   protected:
    ~User() = default;
  };

  LocalMedia(EngineContext& context, int32_t stream_index, PictureTaps& pictures, SoundTaps& sound);
  ~LocalMedia();
  LocalMedia(const LocalMedia&) = delete;
  LocalMedia& operator=(const LocalMedia&) = delete;

  /// Encoders, until given back. Every user gets the same. None when there can be none.
  const VideoLayers& borrowVideo(User& user);
  SoundEncoder* borrowSound(User& user);
  /// kbit/s that this user's link carries; the encoders, which all share, follow the narrowest. Where it does not
  /// suffice for every layer, the larger ones pause.
  void limitVideo(User& user, int32_t kbit);
  void giveBackVideo(User& user);
  void giveBackSound(User& user);

  /// Several times a second: reports what is encoded for the first time.
  void check();

  /// Also while pictures are sent. The best layer first; the first alone is encoded unless layers are enabled.
  void setVideoEncodings(std::vector<VideoEncoding> encodings);
  void enableLayers(bool enable);
  /// What is encoded, or will be; one at least, the largest first.
  const std::vector<VideoEncoding>& layers() const { return layers_; }
  void setSoundEncoding(const SoundEncoding& encoding);

 private:
  void tellEncoderFailed(const std::string& reason);
  void makeVideo();
  void update();
  void applyLimits();
  void onEncoderFailed(const std::string& reason) override;
  void onSoundEncoderFailed(const std::string& reason) override;

  EngineContext& context_;
  const int32_t stream_index_;
  PictureTaps& picture_taps_;
  SoundTaps& sound_taps_;
  std::vector<VideoEncoding> encodings_ = {{}};  // as the application wants them
  bool layered_ = false;
  std::vector<VideoEncoding> layers_ = {{}};
  SoundEncoding sound_encoding_;
  std::vector<std::unique_ptr<VideoEncoder>> video_;
  VideoLayers lent_;                  // the same
  std::vector<BitrateShare> shares_;  // kept for its room
  std::vector<LayerReturn> returns_;  // of lent_
  std::unique_ptr<SoundEncoder> sound_;
  bool video_told_ = false;
  bool sound_told_ = false;
  std::vector<User*> video_users_;
  std::vector<User*> sound_users_;
  std::map<User*, int32_t> limits_;  // kbit/s, of those who have told one
};

}  // namespace corvane::rtc
