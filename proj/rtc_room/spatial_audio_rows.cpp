// Sound that comes from where its user is.
#include "binding/room_records.h"
#include "rtc_room/owners.h"
#include "rtc_room/tables.h"

namespace corvane {
namespace {

constexpr char kUidRefusal[] = "%s(%d) param is not valid, uid";
constexpr char kOrientationRefusal[] = "%s(%d) param is not valid, orientation";

void updateRemotePosition(Call& call) {
  auto* spatial_audio = find<rtc::ISpatialAudio>(call);
  if (spatial_audio == nullptr) return;
  Reader reader(call.env);
  Text uid;
  reader.text(call[0], uid);
  call.say(kLogInfo, "+%s(%d), uid: %s", uid.c_str());
  const rtc::PositionInfo info = readPositionInfo(reader, call[1]);
  call.result = spatial_audio->updateRemotePosition(uid.c_str(), info);
}

constexpr Row kRows[] = {
    // These fetch the interface before they look at an argument.
    switching<&rtc::ISpatialAudio::enableSpatialAudio>("enableSpatialAudio"),
    plain<&rtc::ISpatialAudio::updatePosition>("updateSpatialPosition")
        .fetchesFirst<rtc::ISpatialAudio>()
        .exits("%s(%d)  %d"),
    plain<&rtc::ISpatialAudio::updateSelfOrientation>("updateSelfOrientation").fetchesFirst<rtc::ISpatialAudio>(),
    plain<&rtc::ISpatialAudio::disableRemoteOrientation>("disableRemoteOrientation"),
    plain<&rtc::ISpatialAudio::removeAllRemotePosition>("removeAllRemotePosition"),

    // And these afterwards.
    plain<&rtc::ISpatialAudio::updateListenerPosition>("updateListenerPosition")
        .refuses("%s(%d) param is not valid, pos"),
    plain<&rtc::ISpatialAudio::updateListenerOrientation>("updateListenerOrientation").refuses(kOrientationRefusal),
    plain<&rtc::ISpatialAudio::updateSelfPosition>("updateSelfPosition").refuses(kOrientationRefusal),
    special("updateRemotePosition", &updateRemotePosition, {Kind::kString, Kind::kObject})
        .refuses(0, kUidRefusal)
        .refuses(1, kOrientationRefusal),
    plain<&rtc::ISpatialAudio::removeRemotePosition>("removeRemotePosition")
        .refuses(kUidRefusal)
        .says("+%s(%d), uid: %s"),
};

}  // namespace

std::span<const Row> roomSpatialAudioRows() {
  return kRows;
}

}  // namespace corvane
