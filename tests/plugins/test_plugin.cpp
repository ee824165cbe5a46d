// A plug-in that tests tell what to do. It writes what it is asked into "journal.txt" in its folder, one line each.
// Built several times, each wrong in its own way: TEST_PLUGIN_NULL makes no instance, TEST_PLUGIN_INIT_FAILS refuses.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <mutex>
#include <string>
#include <thread>

#include "corvane_plugin.h"

namespace {

using corvane::plugin::AudioFrame;
using corvane::plugin::StreamKey;
using corvane::plugin::VideoFrame;

class TestPlugin final : public corvane::plugin::IPlugin {
 public:
  bool init(const char* folder) override {
#if defined(TEST_PLUGIN_INIT_FAILS)
    return folder == nullptr;
#else
    folder_ = folder;
    note("init " + folder_);
    return true;
#endif
  }

  void release() override {
    note("release");
    delete this;
  }

  // "mask N": what pixels and samples are combined with; "hold 1": pictures wait for the file "go", which is removed by
  // the first that sees it; "wait N": milliseconds each picture takes, and one of them each sound; "meddle 1":
  // pictures' records are scribbled over; "quiet 1": pictures and sounds are not noted.
  bool setParameter(const char* parameter) override {
    note(std::string("parameter ") + parameter);
    char name[16] = {};
    int value = 0;
    if (std::sscanf(parameter, "%15s %d", name, &value) != 2) return false;
    const std::string setting = name;
    if (setting == "mask") mask_ = static_cast<uint8_t>(value);
    if (setting == "hold") holds_ = value != 0;
    if (setting == "wait") wait_ms_ = value;
    if (setting == "meddle") meddles_ = value != 0;
    if (setting == "quiet") quiet_ = value != 0;
    return setting == "mask" || setting == "hold" || setting == "wait" || setting == "meddle" || setting == "quiet";
  }

  void reserved3() override {
    note("reserved");
  }
  void reserved4() override {
    note("reserved");
  }

  void processVideoFrame(VideoFrame* frame) override {
    const size_t luma = static_cast<size_t>(frame->stride_y) * static_cast<size_t>(frame->height);
    const size_t chroma = static_cast<size_t>(frame->stride_u) * static_cast<size_t>((frame->height + 1) / 2);
    const bool joined = frame->data_u == frame->data_y + luma && frame->data_v == frame->data_u + chroma;
    const std::string text = numbers({frame->width, frame->height, frame->stride_y, frame->stride_u, frame->stride_v,
                                      frame->rotation, frame->timestamp, joined ? 1 : 0});
    if (!quiet_) note("video" + text);
    while (holds_ && std::remove((folder_ + "go").c_str()) != 0) sleep(1);
    if (wait_ms_ > 0) sleep(wait_ms_);
    mask(frame->data_y, luma + 2 * chroma);
    if (meddles_) *frame = {1 << 20, 1 << 20, 0, 0, 0, 0, nullptr, nullptr, nullptr, 45, 0, 0};
    if (!quiet_) note("done" + text);
  }

  void processRecordAudioFrame(AudioFrame* frame) override {
    sound("record", frame);
  }
  void processPlaybackAudioFrame(AudioFrame* frame) override {
    sound("playback", frame);
  }
  void processRemoteUserAudioFrame(const StreamKey& stream, AudioFrame* frame) override {
    sound(std::string("remote ") + stream.room_id + " " + stream.user_id + numbers({stream.stream_index}), frame);
  }
  void processScreenAudioFrame(AudioFrame* frame) override {
    sound("screen", frame);
  }

 private:
  static void sleep(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
  }

  static std::string numbers(std::initializer_list<int64_t> list) {
    std::string text;
    for (const int64_t number : list) text.append(" ").append(std::to_string(number));
    return text;
  }

  void sound(const std::string& kind, AudioFrame* frame) {
    if (!quiet_) note(kind + numbers({frame->timestamp, frame->sample_rate, frame->channels, frame->data_size}));
    if (wait_ms_ > 0) sleep(1);
    if (frame->data != nullptr) mask(frame->data, static_cast<size_t>(frame->data_size));
  }

  void mask(uint8_t* bytes, size_t size) const {
    const uint8_t mask = mask_;
    for (size_t i = 0; i < size; ++i) bytes[i] ^= mask;
  }

  void note(const std::string& line) {
    const std::lock_guard<std::mutex> lock(journal_mutex_);
    std::ofstream journal(folder_ + "journal.txt", std::ios::app | std::ios::binary);
    journal << line << '\n';
  }

  std::string folder_;
  std::mutex journal_mutex_;
  std::atomic<uint8_t> mask_{0xff};
  std::atomic<bool> holds_{false};
  std::atomic<bool> meddles_{false};
  std::atomic<bool> quiet_{false};
  std::atomic<int> wait_ms_{0};
};

}  // namespace

CORVANE_PLUGIN_EXPORT corvane::plugin::IPlugin* createVideoPlugin() {
#if defined(TEST_PLUGIN_NULL)
  return nullptr;
#elif defined(TEST_PLUGIN_INIT_FAILS)
  // Nobody gives it back.
  static TestPlugin refusing;
  return &refusing;
#else
  return new TestPlugin;
#endif
}
