// Scores for singing along, and the melody that they are measured on.
#include <memory>

#include "events/payload.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"

namespace corvane {
namespace {

void initSingScoring(Call& call) {
  auto* scoring = find<rtc::ISingScoringManager>(call);
  if (scoring == nullptr) return;
  Reader reader(call.env);
  const Argument<const char*> appkey(reader, call[0]);
  const Argument<const char*> token(reader, call[1]);
  call.say(kLogInfo, "+%s(%d),  sing_scoring_appkey: %s,  sing_scoring_token: %s ", *appkey, *token);
  call.result = scoring->initSingScoring(*appkey, *token, videoOf(call).observer());
}

void setSingScoringConfig(Call& call) {
  auto* scoring = find<rtc::ISingScoringManager>(call);
  if (scoring == nullptr) return;
  Reader reader(call.env);
  const int32_t sample_rate = reader.int32(call[0], "sample_rate");
  const int32_t mode = reader.int32(call[0], "mode");
  const std::string lyrics_filepath = reader.string(call[0], "lyrics_filepath");
  const std::string midi_filepath = reader.string(call[0], "midi_filepath");
  call.say(kLogInfo, "+%s(%d),sample_rate: %d, mode: %d, lyrics_filepath: %s, scoringConfig: %s ", sample_rate, mode,
           lyrics_filepath.c_str(), midi_filepath.c_str());
  call.result = scoring->setSingScoringConfig({sample_rate, mode, lyrics_filepath.c_str(), midi_filepath.c_str()});
  if (call.result == 0) videoOf(call).midi_filepath = midi_filepath;
}

struct Release {
  void operator()(rtc::IStandardPitchCollection* collection) const { collection->release(); }
};
using Melody = std::unique_ptr<rtc::IStandardPitchCollection, Release>;

// The notes of the configured MIDI file; null, with its line in the log, when there are none to be had.
Melody melodyOf(Call& call) {
  auto* scoring = find<rtc::ISingScoringManager>(call);
  if (scoring == nullptr) return nullptr;
  const std::string& midi_filepath = videoOf(call).midi_filepath;
  if (midi_filepath.empty()) {
    call.say(kLogInfo, "%s(%d), midi_filepath is not valid");
    return nullptr;
  }
  Melody melody(scoring->getStandardPitchInfo(midi_filepath.c_str()));
  if (melody == nullptr) call.say(kLogInfo, "%s(%d), iStandardPitchCollection is nullptr");
  return melody;
}

void getStandardPitchCount(Call& call) {
  const Melody melody = melodyOf(call);
  if (melody != nullptr) call.result = melody->getCount();
}

void getStandardPitchInfo(Call& call) {
  const Melody melody = melodyOf(call);
  if (melody == nullptr) return;
  Reader reader(call.env);
  const int32_t index = reader.int32(call[0]);
  call.say(kLogInfo, "%s(%d) %s: %d", "index", index);
  rtc::StandardPitchInfo info{};
  if (index < 0 || index >= melody->getCount()) {
    call.say(kLogWarning, "%s(%d), index is invalid");
    return;
  }
  call.result = melody->getStandardPitchInfo(index, info);
  if (call.result != 0) return;
  Payload note(call.env);
  note.put("start_time", info.start_time);
  note.put("duration", info.duration);
  note.put("pitch", info.pitch);
  call.answer = note.finish();
  call.say(kLogInfo, "+%s(%d),start_time: %d, duration: %d, pitch: %d", info.start_time, info.duration, info.pitch);
}

using Scoring = rtc::ISingScoringManager;

constexpr Row kRows[] = {
    special("initSingScoring", &initSingScoring, {Kind::kString, Kind::kString}).enters(nullptr),
    special("setSingScoringConfig", &setSingScoringConfig, {Kind::kObject})
        .enters(nullptr)
        .refuses("%s(%d), Param is invalid, config"),
    plain<&Scoring::startSingScoring>("startSingScoring"),
    plain<&Scoring::stopSingScoring>("stopSingScoring"),
    plain<&Scoring::getLastSentenceScore>("getLastSentenceScore"),
    plain<&Scoring::getTotalScore>("getTotalScore"),
    plain<&Scoring::getAverageScore>("getAverageScore"),
    special("getStandardPitchCount", &getStandardPitchCount),
    special("getStandardPitchInfo", &getStandardPitchInfo, {Kind::kNumber})
        .answers(Answer::kObject)
        .exits("%s(%d), ret: %d"),
};

}  // namespace

std::span<const Row> scoringRows() {
  return kRows;
}

}  // namespace corvane
