// Recordings to files and snapshots.
#include "binding/recording_records.h"
#include "binding/records.h"
#include "corvane_rtc/snapshot.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"

namespace corvane {
namespace {

struct NamedArgument {
  Kind kind;
  const char* refusal;
};

constexpr NamedArgument kRecordingArguments[] = {
    {Kind::kNumber, "%s(%d),  Param is invalid streamIndex"},
    {Kind::kObject, "%s(%d), Param is invalid, reocdingConfig"},
    {Kind::kNumber, "%s(%d), recordingType"},
};

// Besides the line of the first wrong argument, a refusal says whether arguments are missing ("info3") and that they
// are not all of their types ("!p1,!p2,!p3"), each in two lines.
bool acceptsRecording(const Call& call) {
  const char* refusal = nullptr;
  bool all_present = true;
  for (size_t i = 0; i < std::size(kRecordingArguments); ++i) {
    if (typeCode(call.env, call[i]) == napi_undefined) all_present = false;
    if (refusal == nullptr && !call.is(i, kRecordingArguments[i].kind)) refusal = kRecordingArguments[i].refusal;
  }
  if (refusal == nullptr) return true;
  call.say(kLogInfo, refusal);
  if (!all_present) call.say(kLogInfo, "%s(%d),  info3 is invalid ");
  call.say(kLogInfo, "%s(%d),  !p1,!p2,!p3 is invalid ");
  if (!all_present) call.say(kLogInfo, "%s(%d), (info3)==true is invalid ");
  call.say(kLogInfo, "%s(%d), ( !p1,!p2,!p3)==true is invalid ");
  return false;
}

void startFileRecording(Call& call) {
  call.say(kLogInfo, "%s(%d)  %d %d %d ", typeCode(call.env, call[0]), typeCode(call.env, call[1]),
           typeCode(call.env, call[2]));
  if (!acceptsRecording(call)) return;
  Reader reader(call.env);
  const int32_t stream_index = reader.int32(call[0]);
  const Argument<rtc::RecordingConfig> argument(reader, call[1]);
  const rtc::RecordingConfig config = *argument;
  const int32_t type = reader.int32(call[2]);
  LogWrite(kLogInfo, "startFileRecording: dir= %s  recodingType= %d fileType= %d", config.dir_path, type,
           config.file_type);
  call.result = engineOf(call).startFileRecording(stream_index, config, type);
}

void startAudioRecording(Call& call) {
  Reader reader(call.env);
  const Argument<rtc::AudioRecordingConfig> argument(reader, call[0]);
  const rtc::AudioRecordingConfig config = *argument;
  call.say(kLogInfo, "%s(%d), absolute_file_name: %s,frame_source: %d, sample_rate: %d, channel: %d, quality: %d",
           config.absolute_file_name, config.frame_source, config.sample_rate, config.channel, config.quality);
  call.result = engineOf(call).startAudioRecording(config);
}

void takeLocalSnapshot(Call& call) {
  Reader reader(call.env);
  call.result = engineOf(call).takeLocalSnapshot(reader.int32(call[0]), videoOf(call).observer());
}

void takeRemoteSnapshot(Call& call) {
  Reader reader(call.env);
  const Argument<rtc::StreamKey> stream_key(reader, call[0]);
  call.result = engineOf(call).takeRemoteSnapshot(*stream_key, videoOf(call).observer());
}

constexpr Row kRows[] = {
    special("startFileRecording", &startFileRecording),
    plain<&rtc::IRTCVideo::stopFileRecording>("stopFileRecording"),
    special("startAudioRecording", &startAudioRecording, {Kind::kObject}).refuses("%s(%d),  Param is invalid"),
    plain<&rtc::IRTCVideo::stopAudioRecording>("stopAudioRecording"),
    special("takeLocalSnapshot", &takeLocalSnapshot, {Kind::kNumber}),
    special("takeRemoteSnapshot", &takeRemoteSnapshot, {Kind::kObject}),
};

}  // namespace

std::span<const Row> recordingRows() {
  return kRows;
}

}  // namespace corvane
