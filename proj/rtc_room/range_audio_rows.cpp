// Sound that fades with distance. The interface is fetched before any argument is looked at.
#include <vector>

#include "binding/lists.h"
#include "rtc_room/owners.h"
#include "rtc_room/tables.h"

namespace corvane {
namespace {

rtc::IRangeAudio& rangeAudioOf(const Call& call) {
  return *static_cast<rtc::IRangeAudio*>(call.fetched);
}

void updateReceiveRange(Call& call) {
  Reader reader(call.env);
  rtc::ReceiveRange range{};
  range.min = reader.int32(call[0], "min");
  range.max = reader.int32(call[0], "max");
  call.say(kLogInfo, "%s(%d) max: %d min: %d", range.max, range.min);
  call.result = rangeAudioOf(call).updateReceiveRange(range);
}

// Unlike every other position its coordinates are read as whole numbers.
void updateRangePosition(Call& call) {
  Reader reader(call.env);
  const int32_t x = reader.int32(call[0], "x");
  const int32_t y = reader.int32(call[0], "y");
  const int32_t z = reader.int32(call[0], "z");
  call.say(kLogInfo, "%s(%d) x: %d y: %d z: %d", x, y, z);
  call.result =
      rangeAudioOf(call).updatePosition({static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)});
}

// The line of a call that went well says "not valid" and has a field for a switch that the method does not take; the
// field shows that the arguments were accepted.
void setAttenuationModel(Call& call) {
  Reader reader(call.env);
  const int32_t type = reader.int32(call[0]);
  const double coefficient = reader.number(call[1]);
  call.say(kLogInfo, "%s(%d) param is not valid enable: %d type: %d cofficient: %f", 1, type, coefficient);
  call.result = rangeAudioOf(call).setAttenuationModel(type, static_cast<float>(coefficient));
}

void setNoAttenuationFlags(Call& call) {
  Reader reader(call.env);
  const auto count = listLength(call, reader, call[0], call.row.refusals[0]);
  if (!count) return;
  Texts texts;
  std::vector<const char*> flags;
  for (uint32_t i = 0; i < *count; ++i) {
    const char* flag = texts.keep(reader.string(reader.at(call[0], i)));
    call.say(kLogInfo, "+%s(%d), i: %d, flag: %s", static_cast<int>(i), flag);
    flags.push_back(flag);
  }
  call.result = rangeAudioOf(call).setNoAttenuationFlags(flags.data(), static_cast<int32_t>(flags.size()));
}

constexpr Row kRows[] = {
    switching<&rtc::IRangeAudio::enableRangeAudio>("enableRangeAudio"),
    special("updateReceiveRange", &updateReceiveRange, {Kind::kObject})
        .fetchesFirst<rtc::IRangeAudio>()
        .exits("%s(%d)   ret: %d"),
    special("updateRangePosition", &updateRangePosition, {Kind::kObject}).fetchesFirst<rtc::IRangeAudio>(),
    special("setAttenuationModel", &setAttenuationModel, {Kind::kNumber, Kind::kNumber})
        .fetchesFirst<rtc::IRangeAudio>(),
    special("setNoAttenuationFlags", &setNoAttenuationFlags, {Kind::kArray})
        .fetchesFirst<rtc::IRangeAudio>()
        .refuses("%s(%d) param is not valid, flags"),
};

}  // namespace

std::span<const Row> roomRangeAudioRows() {
  return kRows;
}

}  // namespace corvane
