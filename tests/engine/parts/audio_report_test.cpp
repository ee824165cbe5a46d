#include "capture/audio_report.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "corvane_rtc/rtc_video_events.h"

namespace corvane::rtc {
namespace {

SoundBlock levelOf(int16_t level) {
  SoundBlock block;
  std::fill(block.storage.begin(), block.storage.end(), level);
  return block;
}

struct Events final : IRTCVideoEventHandler {
  void onLocalAudioPropertiesReport(const LocalAudioPropertiesInfo* infos, int32_t count) override {
    if (count == 1) decibels = infos[0].audio_properties_info.nonlinear_volume;
  }
  std::atomic<int32_t> decibels = 0;
};

TEST(AudioReport, MeasuresTheMicrophoneOrWhatRoomsAreSent) {
  Events events;
  EngineContext context = {.log = EngineLog({}), .events = &events, .thread = {}};
  SoundTaps microphone;
  SoundTaps sent;
  SoundMixer mixer;
  SoundHooks hooks;
  RemoteSounds remote(mixer, hooks);
  std::optional<AudioReport> report;
  const SoundBlock faint = levelOf(232);  // -40 dB as a sine's
  const SoundBlock loud = levelOf(2317);  // -20 dB
  for (const auto& [mode, decibels] : {std::pair{kLocalMainReportMicrophone, -40}, {kLocalMainReportMixed, -20}}) {
    context.thread.postAndWait([&, mode = mode] {
      if (!report) report.emplace(context, microphone, sent, remote);
      report->configure({100, false, false, mode, 1.0, kAudioReportModeNormal, false});
    });
    while (events.decibels != decibels) {
      microphone.deliver(faint);
      sent.deliver(loud);
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }
  context.thread.finish([&] { report.reset(); });
}

}  // namespace
}  // namespace corvane::rtc
