// What the local user's streams are sent from: encoders, made when the first room publishes and ended with the last.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/engine_context.h"
#include "media/picture_taps.h"
#include "media/video_encoder.h"

namespace corvane::rtc {

/// Engine thread only.
class LocalMedia final : public VideoEncoder::Listener {
 public:
  class User {
   public:
    /// The camera can no longer be encoded; what was lent is about to go.
    virtual void onEncodingFailed(const std::string& reason) = 0;

   protected:
    ~User() = default;
  };

  LocalMedia(EngineContext& context, PictureTaps& camera);
  ~LocalMedia();
  LocalMedia(const LocalMedia&) = delete;
  LocalMedia& operator=(const LocalMedia&) = delete;

  /// The camera's encoder, until given back. Every user gets the same. Null when there can be none.
  VideoEncoder* borrowVideo(User& user);
  void giveBackVideo(User& user);

 private:
  void onEncoderFailed(const std::string& reason) override;

  EngineContext& context_;
  PictureTaps& camera_;
  VideoEncoding encoding_;
  std::unique_ptr<VideoEncoder> video_;
  std::vector<User*> video_users_;
};

}  // namespace corvane::rtc
