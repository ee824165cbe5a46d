#include "media/local_media.h"

#include <algorithm>
#include <utility>

#include "corvane_rtc/stream_events.h"

namespace corvane::rtc {

namespace {

using Users = std::vector<LocalMedia::User*>;

void include(Users& users, LocalMedia::User& user) {
  if (std::find(users.begin(), users.end(), &user) == users.end()) users.push_back(&user);
}

void exclude(Users& users, LocalMedia::User& user) {
  users.erase(std::remove(users.begin(), users.end(), &user), users.end());
}

}  // namespace

LocalMedia::LocalMedia(EngineContext& context, int32_t stream_index, PictureTaps& pictures, SoundTaps& sound)
    : context_(context), stream_index_(stream_index), picture_taps_(pictures), sound_taps_(sound) {}

LocalMedia::~LocalMedia() {
  if (video_ != nullptr) picture_taps_.remove(*video_);
  if (sound_ != nullptr) sound_taps_.remove(*sound_);
}

VideoEncoder* LocalMedia::borrowVideo(User& user) {
  if (*VideoEncoder::codec() == '\0') return nullptr;
  if (video_ == nullptr) {
    video_ = std::make_unique<VideoEncoder>(context_, encoding_, *this);
    video_told_ = false;
    picture_taps_.add(*video_);
  }
  include(video_users_, user);
  return video_.get();
}

SoundEncoder* LocalMedia::borrowSound(User& user) {
  if (sound_ == nullptr) {
    sound_ = std::make_unique<SoundEncoder>(context_, *this);
    sound_->set(sound_encoding_);
    sound_told_ = false;
    sound_taps_.add(*sound_);
  }
  include(sound_users_, user);
  return sound_.get();
}

void LocalMedia::limitVideo(User& user, int32_t kbit) {
  limits_[&user] = kbit;
  applyLimits();
}

void LocalMedia::applyLimits() {
  int32_t narrowest = INT32_MAX;
  for (const auto& [user, kbit] : limits_) narrowest = std::min(narrowest, kbit);
  if (video_ != nullptr) video_->limitBitrate(narrowest);
}

void LocalMedia::giveBackVideo(User& user) {
  exclude(video_users_, user);
  limits_.erase(&user);
  applyLimits();
  if (!video_users_.empty() || video_ == nullptr) return;
  picture_taps_.remove(*video_);
  video_.reset();
}

void LocalMedia::giveBackSound(User& user) {
  exclude(sound_users_, user);
  if (!sound_users_.empty() || sound_ == nullptr) return;
  sound_taps_.remove(*sound_);
  sound_.reset();
}

void LocalMedia::check() {
  if (video_ != nullptr && !video_told_ && video_->counts().pictures_out > 0) {
    video_told_ = true;
    context_.events->onLocalVideoStateChanged(stream_index_, kLocalVideoStreamStateEncoding, kLocalVideoStreamErrorOk);
  }
  // There is no such report of the screen's sound.
  if (sound_ != nullptr && !sound_told_ && stream_index_ == kStreamIndexMain && sound_->bytesOut() > 0) {
    sound_told_ = true;
    context_.events->onLocalAudioStateChanged(kLocalAudioStreamStateEncoding, kLocalAudioStreamErrorOk);
  }
}

void LocalMedia::setVideoEncoding(const VideoEncoding& encoding) {
  if (encoding == encoding_) return;
  encoding_ = encoding;
  if (video_ == nullptr) return;
  picture_taps_.remove(*video_);
  const std::unique_ptr<VideoEncoder> previous =
      std::exchange(video_, std::make_unique<VideoEncoder>(context_, encoding_, *this));
  picture_taps_.add(*video_);
  limits_.clear();
  for (User* user : video_users_) user->onVideoEncoder(*video_);
}

void LocalMedia::setSoundEncoding(const SoundEncoding& encoding) {
  sound_encoding_ = encoding;
  if (sound_ != nullptr) sound_->set(encoding);
}

void LocalMedia::onEncoderFailed(const std::string& reason) {
  context_.log.error("pictures of the %s cannot be encoded: %s",
                     stream_index_ == kStreamIndexScreen ? "screen" : "camera", reason.c_str());
  context_.events->onLocalVideoStateChanged(stream_index_, kLocalVideoStreamStateFailed,
                                            kLocalVideoStreamErrorEncodeFailure);
  // Each gives back what it borrowed.
  const Users users = video_users_;
  for (User* user : users) user->onEncodingFailed(reason);
}

void LocalMedia::onSoundEncoderFailed(const std::string& reason) {
  const bool is_screen = stream_index_ == kStreamIndexScreen;
  context_.log.error("sound of the %s cannot be encoded: %s", is_screen ? "screen" : "microphone", reason.c_str());
  if (!is_screen) {
    context_.events->onLocalAudioStateChanged(kLocalAudioStreamStateFailed, kLocalAudioStreamErrorEncodeFailure);
  }
  const Users users = sound_users_;
  for (User* user : users) user->onEncodingFailed(reason);
}

}  // namespace corvane::rtc
