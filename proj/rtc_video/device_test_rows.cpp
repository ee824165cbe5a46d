// Tests of microphones and speakers.
#include "binding/device_records.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"

namespace corvane {
namespace {

void startEchoTest(Call& call) {
  auto* manager = find<rtc::IAudioDeviceManager>(call);
  if (manager == nullptr) return;
  Reader reader(call.env);
  const Argument<rtc::EchoTestConfig> config(reader, call[0]);
  const int32_t play_delay_time = reader.int32(call[1]);
  call.say(kLogInfo, "%s(%d), play_delay_time: %d", play_delay_time);
  call.result = manager->startEchoTest(*config, play_delay_time);
}

constexpr char kTestExit[] = "%s(%d), ret: %d";
constexpr char kFilePath[] = "%s(%d), file_path: %s";

constexpr Row kRows[] = {
    special("startEchoTest", &startEchoTest, {Kind::kObject, Kind::kNumber}).exits(kTestExit),
    plain<&rtc::IAudioDeviceManager::stopEchoTest>("stopEchoTest").exits(kTestExit),

    plain<&rtc::IAudioDeviceManager::initAudioPlaybackDeviceForTest>("initAudioPlaybackDeviceForTest").exits(kTestExit),
    plain<&rtc::IAudioDeviceManager::initAudioCaptureDeviceForTest>("initAudioCaptureDeviceForTest").exits(kTestExit),
    plain<&rtc::IAudioDeviceManager::startAudioPlaybackDeviceTest>("startAudioPlaybackDeviceTest")
        .leavesUntested(1)
        .says(kFilePath)
        .exits(kTestExit),
    plain<&rtc::IAudioDeviceManager::stopAudioPlaybackDeviceTest>("stopAudioPlaybackDeviceTest").exits(kTestExit),
    plain<&rtc::IAudioDeviceManager::startAudioDeviceRecordTest>("startAudioDeviceRecordTest").exits(kTestExit),
    plain<&rtc::IAudioDeviceManager::stopAudioDeviceRecordAndPlayTest>("stopAudioDeviceRecordAndPlayTest")
        .exits(kTestExit),
    plain<&rtc::IAudioDeviceManager::stopAudioDevicePlayTest>("stopAudioDevicePlayTest").exits(kTestExit),

    plain<&rtc::IAudioDeviceManager::startHardwareEchoDetection>("startHardwareEchoDetection")
        .says(kFilePath)
        .exits(kTestExit),
    plain<&rtc::IAudioDeviceManager::stopHardwareEchoDetection>("stopHardwareEchoDetection").exits(kTestExit),
};

}  // namespace

std::span<const Row> deviceTestRows() {
  return kRows;
}

}  // namespace corvane
