#include "recording/recording.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace corvane::rtc {

namespace {

constexpr std::chrono::milliseconds kTick(100);
constexpr std::chrono::seconds kPatienceForPicture(2);
// Sound that arrives later than this is left out.
constexpr int64_t kSoundDelayUs = 300'000;
// Of a recording that begins without a picture.
constexpr int32_t kUsualWidth = 1280;
constexpr int32_t kUsualHeight = 720;
// Players and encoders of H.264 take pictures of at most so many pixels.
constexpr int32_t kMaxSide = 4096;
constexpr int32_t kMinSide = 16;

int64_t toUs(GstClockTime time) {
  return static_cast<int64_t>(GST_TIME_AS_USECONDS(time));
}

// The nearest even size of that shape within the limits.
void fitSize(int32_t& width, int32_t& height) {
  const double scale = std::min(1.0, static_cast<double>(kMaxSide) / std::max(width, height));
  const auto fit = [scale](int32_t side) { return std::max(kMinSide, static_cast<int32_t>(side * scale) & ~1); };
  width = fit(width);
  height = fit(height);
}

}  // namespace

Recording::Recording(EngineContext& context, MediaFileSettings settings, PictureTaps* pictures,
                     const std::vector<SoundTaps*>& sounds, Listener& listener)
    : context_(context), listener_(listener), settings_(std::move(settings)), picture_taps_(pictures) {
  settings_.with_picture = pictures != nullptr;
  settings_.with_sound = !sounds.empty();
  for (SoundTaps* taps : sounds) sounds_.push_back({taps, std::make_unique<SoundTimeline::Source>(timeline_)});
}

Recording::~Recording() {
  detach();
}

void Recording::start() {
  for (const SoundInput& sound : sounds_) sound.taps->add(*sound.source);
  feeding_ = true;
  if (picture_taps_ == nullptr) return begin(0, 0);
  pictures_ = std::make_unique<RecordedPictures>([this](int32_t width, int32_t height) {
    context_.thread.post(alive_, [this, width, height] { begin(width, height); });
  });
  picture_taps_->add(*pictures_);
  timer_ = context_.thread.after(kPatienceForPicture, [this] { begin(kUsualWidth, kUsualHeight); });
}

void Recording::begin(int32_t width, int32_t height) {
  if (std::exchange(begun_, true)) return;
  if (settings_.with_picture) {
    fitSize(width, height);
    settings_.width = width;
    settings_.height = height;
  }
  file_ = std::make_unique<MediaFile>(context_, settings_, *this);
  RecordingFault fault;
  if (!file_->open(fault)) {
    file_.reset();
    context_.thread.post(alive_, [this, fault] { onFileFailed(fault); });
    return;
  }
  origin_ = clockNow();
  if (settings_.with_sound) timeline_.begin(toUs(origin_));
  if (pictures_ != nullptr) {
    pictures_->begin(file_->pictures(), file_->pictureEncoder(), origin_);
    pictures_->fillGap(settings_.width, settings_.height);
  }
  listener_.onRecordingBegun(*this);
  scheduleTick();
}

void Recording::scheduleTick() {
  timer_ = context_.thread.after(kTick, [this] { tick(); });
}

void Recording::tick() {
  feedSound(toUs(clockNow()) - kSoundDelayUs);
  if (pictures_ != nullptr) pictures_->fillGap(settings_.width, settings_.height);
  const int64_t seconds = static_cast<int64_t>((clockNow() - origin_) / GST_SECOND);
  if (seconds > reported_seconds_) {
    reported_seconds_ = seconds;
    reportProgress();
  }
  if (feeding_) scheduleTick();
}

void Recording::feedSound(int64_t until_us) {
  if (!settings_.with_sound) return;
  while (GstPtr<GstBuffer> sound = timeline_.take(until_us)) gst_app_src_push_buffer(file_->sound(), sound.release());
}

void Recording::reportProgress() {
  file_->updateHead();
  struct stat facts = {};
  if (stat(settings_.path.c_str(), &facts) != 0) {
    const int error = errno;
    return onFileFailed({error == EACCES ? kRecordingErrorNoPermission : kRecordingErrorOther,
                         settings_.path + ": " + std::generic_category().message(error)});
  }
  const auto ms = static_cast<int32_t>((clockNow() - origin_) / GST_MSECOND);
  listener_.onRecordingProgress(*this, {ms, facts.st_size});
}

void Recording::detach() {
  if (!std::exchange(feeding_, false)) return;
  timer_.reset();
  for (const SoundInput& sound : sounds_) sound.taps->remove(*sound.source);
  if (pictures_ == nullptr) return;
  picture_taps_->remove(*pictures_);
  pictures_->end();
}

bool Recording::stopFeeding() {
  if (!feeding_) return false;
  // A file of one picture, or of no sound at all, is one that can be played.
  begin(kUsualWidth, kUsualHeight);
  if (file_ == nullptr) return false;
  feedSound(toUs(clockNow()));
  detach();
  return true;
}

void Recording::stop() {
  if (stopFeeding()) file_->finish();
}

void Recording::stopNow() {
  const bool finished = stopFeeding() && file_->finishNow();
  end(finished ? kRecordingErrorOk : kRecordingErrorOther, finished ? "" : settings_.path + ": not finished");
}

void Recording::onFileFinished() {
  end(kRecordingErrorOk, "");
}

void Recording::onFileFailed(const RecordingFault& fault) {
  end(fault.code, fault.text);
}

void Recording::end(RecordingErrorCode error, const std::string& text) {
  detach();
  file_.reset();
  if (error != kRecordingErrorOk) context_.log.error("recording failed: %s", text.c_str());
  listener_.onRecordingEnded(*this, error);
}

}  // namespace corvane::rtc
