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
  for (VideoEncoder* layer : lent_) picture_taps_.remove(*layer);
  if (sound_ != nullptr) sound_taps_.remove(*sound_);
}

const VideoLayers& LocalMedia::borrowVideo(User& user) {
  if (*VideoEncoder::codec() == '\0') {
    // Sound may go all the same: it is for the application to know, not for the users to fail.
    if (!std::exchange(video_told_, true)) tellEncoderFailed(VideoEncoder::kNoneInstalled);
    return lent_;
  }
  if (lent_.empty()) {
    makeVideo();
    video_told_ = false;
  }
  include(video_users_, user);
  return lent_;
}

void LocalMedia::makeVideo() {
  lent_.clear();
  video_.clear();
  returns_.assign(layers_.size(), {});
  for (const VideoEncoding& layer : layers_) {
    video_.push_back(std::make_unique<VideoEncoder>(context_, layer, *this));
    lent_.push_back(video_.back().get());
    picture_taps_.add(*lent_.back());
  }
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
  shares_.clear();
  const LayerReturn::Clock::time_point now = LayerReturn::Clock::now();
  for (size_t at = 0; at < lent_.size(); ++at) {
    shares_.push_back({lent_[at]->fullBitrate(), lent_[at]->paused(), 0, returns_[at].allowed(now)});
  }
  shareBitrate(narrowest, shares_);
  for (size_t at = 0; at < lent_.size(); ++at) {
    if (shares_[at].paused && !lent_[at]->paused()) returns_[at].onPaused(now);
    if (!shares_[at].paused && lent_[at]->paused()) returns_[at].onReturned(now);
    lent_[at]->setPaused(shares_[at].paused);
    if (!shares_[at].paused) lent_[at]->limitBitrate(shares_[at].limit);
  }
}

void LocalMedia::giveBackVideo(User& user) {
  exclude(video_users_, user);
  limits_.erase(&user);
  applyLimits();
  if (!video_users_.empty()) return;
  for (VideoEncoder* layer : lent_) picture_taps_.remove(*layer);
  lent_.clear();
  video_.clear();
}

void LocalMedia::giveBackSound(User& user) {
  exclude(sound_users_, user);
  if (!sound_users_.empty() || sound_ == nullptr) return;
  sound_taps_.remove(*sound_);
  sound_.reset();
}

void LocalMedia::check() {
  if (!lent_.empty() && !video_told_ && lent_.front()->counts().pictures_out > 0) {
    video_told_ = true;
    context_.events->onLocalVideoStateChanged(stream_index_, kLocalVideoStreamStateEncoding, kLocalVideoStreamErrorOk);
  }
  // There is no such report of the screen's sound.
  if (sound_ != nullptr && !sound_told_ && stream_index_ == kStreamIndexMain && sound_->bytesOut() > 0) {
    sound_told_ = true;
    context_.events->onLocalAudioStateChanged(kLocalAudioStreamStateEncoding, kLocalAudioStreamErrorOk);
  }
}

void LocalMedia::setVideoEncodings(std::vector<VideoEncoding> encodings) {
  encodings_ = std::move(encodings);
  update();
}

void LocalMedia::enableLayers(bool enable) {
  layered_ = enable;
  update();
}

void LocalMedia::update() {
  std::vector<VideoEncoding> layers = encodings_;
  layers.resize(layered_ ? std::min(layers.size(), kMaxVideoLayers) : 1);
  // 0 stands for the camera's own size.
  const auto area = [](const VideoEncoding& layer) {
    return layer.width > 0 && layer.height > 0 ? int64_t{layer.width} * layer.height : INT64_MAX;
  };
  std::stable_sort(layers.begin(), layers.end(),
                   [&](const VideoEncoding& one, const VideoEncoding& other) { return area(one) > area(other); });
  if (layers == layers_) return;
  layers_ = std::move(layers);
  if (lent_.empty()) return;
  for (VideoEncoder* layer : lent_) picture_taps_.remove(*layer);
  const std::vector<std::unique_ptr<VideoEncoder>> previous = std::move(video_);
  makeVideo();
  limits_.clear();
  const Users users = video_users_;
  for (User* user : users) user->onVideoEncoders(lent_);
}

void LocalMedia::setSoundEncoding(const SoundEncoding& encoding) {
  sound_encoding_ = encoding;
  if (sound_ != nullptr) sound_->set(encoding);
}

void LocalMedia::tellEncoderFailed(const std::string& reason) {
  context_.log.error("pictures of the %s cannot be encoded: %s",
                     stream_index_ == kStreamIndexScreen ? "screen" : "camera", reason.c_str());
  context_.events->onLocalVideoStateChanged(stream_index_, kLocalVideoStreamStateFailed,
                                            kLocalVideoStreamErrorEncodeFailure);
}

void LocalMedia::onEncoderFailed(const std::string& reason) {
  tellEncoderFailed(reason);
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
