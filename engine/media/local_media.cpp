#include "media/local_media.h"

#include <algorithm>

namespace corvane::rtc {

LocalMedia::LocalMedia(EngineContext& context, PictureTaps& camera) : context_(context), camera_(camera) {}

LocalMedia::~LocalMedia() {
  if (video_ != nullptr) camera_.remove(*video_);
}

VideoEncoder* LocalMedia::borrowVideo(User& user) {
  if (*VideoEncoder::codec() == '\0') return nullptr;
  if (video_ == nullptr) {
    video_ = std::make_unique<VideoEncoder>(context_, encoding_, *this);
    camera_.add(*video_);
  }
  if (std::find(video_users_.begin(), video_users_.end(), &user) == video_users_.end()) video_users_.push_back(&user);
  return video_.get();
}

void LocalMedia::giveBackVideo(User& user) {
  video_users_.erase(std::remove(video_users_.begin(), video_users_.end(), &user), video_users_.end());
  if (!video_users_.empty() || video_ == nullptr) return;
  camera_.remove(*video_);
  video_.reset();
}

void LocalMedia::onEncoderFailed(const std::string& reason) {
  context_.log.error("the camera cannot be encoded: %s", reason.c_str());
  // Each gives back what it borrowed.
  const std::vector<User*> users = video_users_;
  for (User* user : users) user->onEncodingFailed(reason);
}

}  // namespace corvane::rtc
