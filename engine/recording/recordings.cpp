#include "recording/recordings.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>

namespace corvane::rtc {

namespace {

constexpr int32_t kSampleRates[] = {8000, 11025, 12000, 16000, 22050, 24000, 32000, 44100, 48000};
// Of one channel, by AudioRecordingQuality.
constexpr int32_t kBitrates[] = {32000, 48000, 64000, 96000};
constexpr int kPermissions = 0644;

struct NewFile {
  std::string path;
  int error = 0;  // the system's number
};

NewFile create(const std::string& path, int flags) {
  const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, kPermissions);
  if (descriptor < 0) return {path, errno};
  close(descriptor);
  return {path, 0};
}

// A file of a name that nothing in the folder has.
NewFile createIn(const std::string& folder, const char* stream, FileFormat format) {
  std::error_code ignored;
  const std::filesystem::path absolute = std::filesystem::absolute(folder, ignored);
  GDateTime* now = g_date_time_new_now_local();
  gchar* formatted = g_date_time_format(now, "%Y%m%d-%H%M%S");
  const GstPtr<gchar> time(formatted);
  g_date_time_unref(now);
  const std::string base = absolute / (std::string("recording-") + stream + "-" + time.get());
  const char* ending = format == FileFormat::kMp4 ? ".mp4" : ".aac";
  constexpr int kTries = 1000;
  NewFile file = create(base + ending, O_EXCL);
  for (int number = 2; file.error == EEXIST && number < kTries; ++number) {
    file = create(base + "-" + std::to_string(number) + ending, O_EXCL);
  }
  return file;
}

bool readFormat(std::string_view path, FileFormat& format) {
  if (!path.starts_with('/') || path.size() < 5) return false;
  std::string ending(path.substr(path.size() - 4));
  std::transform(ending.begin(), ending.end(), ending.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  format = ending == ".wav" ? FileFormat::kWav : FileFormat::kAac;
  return ending == ".wav" || ending == ".aac";
}

RecordingInfo infoOf(int32_t type, const MediaFileSettings& file) {
  const bool has_picture = type != kRecordingTypeAudioOnly;
  return {file.path.c_str(), has_picture ? kVideoCodecTypeH264 : kVideoCodecTypeUnknown, file.width, file.height};
}

}  // namespace

int32_t Recordings::startFile(int32_t stream_index, const RecordingConfig& config, int32_t type) {
  const bool is_stream = stream_index == kStreamIndexMain || stream_index == kStreamIndexScreen;
  const bool is_type = type >= kRecordingTypeAudioOnly && type <= kRecordingTypeVideoAndAudio;
  const bool is_file = config.file_type == kRecordingFileTypeMP4 ||
                       (config.file_type == kRecordingFileTypeAAC && type == kRecordingTypeAudioOnly);
  if (!is_stream || !is_type || !is_file || config.dir_path == nullptr || *config.dir_path == '\0') {
    return kInvalidParameter;
  }
  Request request = {stream_index == kStreamIndexMain ? kMain : kScreen, type, {}, config.dir_path, {}};
  request.settings.format = config.file_type == kRecordingFileTypeMP4 ? FileFormat::kMp4 : FileFormat::kAac;
  if (type != kRecordingTypeVideoOnly) {
    request.sounds = {request.place == kScreen ? &streams_.screen_sound : &streams_.sent};
  }
  return start(std::move(request));
}

int32_t Recordings::stopFile(int32_t stream_index) {
  if (stream_index == kStreamIndexMain) return stop(kMain);
  return stream_index == kStreamIndexScreen ? stop(kScreen) : kInvalidParameter;
}

int32_t Recordings::startSound(const AudioRecordingConfig& config) {
  Request request = {kSoundAlone, kRecordingTypeAudioOnly, {}, {}, {}};
  MediaFileSettings& settings = request.settings;
  settings.path = config.absolute_file_name != nullptr ? config.absolute_file_name : "";
  const bool is_rate = config.sample_rate == 0 || std::find(std::begin(kSampleRates), std::end(kSampleRates),
                                                            config.sample_rate) != std::end(kSampleRates);
  if (!readFormat(settings.path, settings.format) || !is_rate || config.channel < 0 ||
      config.channel > kMaxSoundChannels || config.frame_source < kAudioRecordingSourceMicrophone ||
      config.frame_source > kAudioRecordingSourceMixed || config.quality < kAudioRecordingQualityLow ||
      config.quality > kAudioRecordingQualityUltraHigh) {
    return kInvalidParameter;
  }
  if (config.sample_rate != 0) settings.sample_rate = config.sample_rate;
  if (config.channel != 0) settings.channels = config.channel;
  settings.sound_bitrate = kBitrates[config.quality] * settings.channels;
  if (config.frame_source != kAudioRecordingSourcePlayback) request.sounds.push_back(&streams_.microphone);
  if (config.frame_source != kAudioRecordingSourceMicrophone) request.sounds.push_back(&streams_.playback);
  return start(std::move(request));
}

int32_t Recordings::stopSound() {
  return stop(kSoundAlone);
}

int32_t Recordings::start(Request request) {
  const int64_t run = ++last_run_;
  int64_t none = 0;
  if (!runs_[request.place].compare_exchange_strong(none, run)) return kWrongState;
  context_.thread.post([this, run, request = std::move(request)]() mutable { begin(run, std::move(request)); });
  return kSuccess;
}

int32_t Recordings::stop(Place place) {
  const int64_t run = runs_[place].exchange(0);
  if (run == 0) return kWrongState;
  context_.thread.post([this, run] {
    const auto found =
        std::find_if(running_.begin(), running_.end(), [run](const Running& running) { return running.run == run; });
    if (found != running_.end()) found->recording->stop();
  });
  return kSuccess;
}

void Recordings::begin(int64_t run, Request request) {
  const char* stream = request.place == kScreen ? "screen" : "main";
  const NewFile file = request.place == kSoundAlone ? create(request.settings.path, O_TRUNC)
                                                    : createIn(request.folder, stream, request.settings.format);
  request.settings.path = file.path;
  if (file.error != 0) {
    const bool refused = file.error == EACCES || file.error == EPERM || file.error == EROFS;
    context_.log.error("recording: %s: %s", file.path.c_str(), std::generic_category().message(file.error).c_str());
    int64_t failed = run;
    runs_[request.place].compare_exchange_strong(failed, 0);
    const Running nothing = {request.place, run, request.type, nullptr};
    report(nothing, kRecordingStateError, refused ? kRecordingErrorNoPermission : kRecordingErrorOther,
           request.settings);
    return;
  }
  PictureTaps* pictures = nullptr;
  if (request.type != kRecordingTypeAudioOnly) {
    pictures = request.place == kScreen ? &streams_.screen : &streams_.camera;
  }
  context_.log.info("recording to %s", file.path.c_str());
  running_.push_back(
      {request.place, run, request.type,
       std::make_unique<Recording>(context_, std::move(request.settings), pictures, request.sounds, *this)});
  running_.back().recording->start();
}

void Recordings::end() {
  while (!running_.empty()) running_.back().recording->stopNow();
}

Recordings::Running& Recordings::runningOf(const Recording& recording) {
  return *std::find_if(running_.begin(), running_.end(),
                       [&](const Running& running) { return running.recording.get() == &recording; });
}

void Recordings::report(const Running& running, RecordingState state, RecordingErrorCode error,
                        const MediaFileSettings& file) {
  if (running.place == kSoundAlone) return context_.events->onAudioRecordingStateUpdate(state, error);
  context_.events->onRecordingStateUpdate(running.type, state, error, infoOf(running.type, file));
}

void Recordings::onRecordingBegun(Recording& recording) {
  report(runningOf(recording), kRecordingStateProcessing, kRecordingErrorOk, recording.settings());
}

void Recordings::onRecordingProgress(Recording& recording, const RecordingProgress& progress) {
  const Running& running = runningOf(recording);
  if (running.place == kSoundAlone) return;
  context_.events->onRecordingProgressUpdate(running.type, progress, infoOf(running.type, recording.settings()));
}

void Recordings::onRecordingEnded(Recording& recording, RecordingErrorCode error) {
  Running& running = runningOf(recording);
  int64_t ended = running.run;
  runs_[running.place].compare_exchange_strong(ended, 0);
  // The recording is on its way back to here: it goes when it has returned.
  const std::shared_ptr<Recording> last = std::move(running.recording);
  const Running gone = {running.place, running.run, running.type, nullptr};
  running_.erase(running_.begin() + (&running - running_.data()));
  report(gone, error == kRecordingErrorOk ? kRecordingStateSuccess : kRecordingStateError, error, last->settings());
  context_.thread.post([last] {});
}

}  // namespace corvane::rtc
