// Pictures and sound that the application makes itself. The push methods run once a frame, so they log failures only.
#include <array>
#include <cmath>

#include "binding/bytes.h"
#include "corvane_rtc/entry_points.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"

namespace corvane {
namespace {

// JavaScript's milliseconds as whole microseconds; times that 64 bits cannot hold become 0.
int64_t microsecondsOf(double milliseconds) {
  constexpr double kEndOfTime = 9223372036854775808.0;  // 2^63
  const double microseconds = milliseconds * 1000;
  return std::abs(microseconds) < kEndOfTime ? static_cast<int64_t>(microseconds) : 0;
}

// Finds the engine and tests that the call has a frame; each failure has its line.
bool acceptsFrame(Call& call) {
  call.owner = KavRTCVideo::findOwner(call);
  if (call.owner == nullptr) return false;
  if (call.is(0, Kind::kObject)) return true;
  call.say(kLogWarning, "%s(%d) param is not valid, %d", typeCode(call.env, call[0]));
  return false;
}

// Reads a pushed frame key by key. A key of the wrong type is refused: its line is in the log and the answer false.
class FrameReader {
 public:
  explicit FrameReader(const Call& call) : call_(call), reader_(call.env) {}

  bool read(const char* key, int32_t& number) {
    napi_value value = get(key, Kind::kNumber);
    if (value != nullptr) number = reader_.int32(value);
    return value != nullptr;
  }
  bool readTime(int64_t& microseconds) {
    napi_value value = get("timestamp_ms", Kind::kNumber);
    if (value != nullptr) microseconds = microsecondsOf(reader_.number(value));
    return value != nullptr;
  }
  /// A typed array. Its bytes are looked up with bytes() once everything has been read, because reading may run getters
  /// that detach it.
  bool readArray(const char* key, napi_value& array) {
    array = get(key, Kind::kBytes);
    return array != nullptr;
  }
  /// A list of at most `list.size()` elements of one kind; `too_long` is the line of a longer one.
  template <size_t Size>
  bool readList(const char* key, Kind kind, const char* too_long, std::array<napi_value, Size>& list) {
    napi_value array = get(key, Kind::kArray);
    if (array == nullptr) return false;
    const uint32_t length = reader_.length(array);
    if (length > Size) {
      call_.say(kLogWarning, too_long, static_cast<int>(length));
      return false;
    }
    for (uint32_t i = 0; i < length; ++i) {
      list[i] = reader_.at(array, i);
      if (!isKind(call_.env, list[i], kind)) return refuse();
    }
    return true;
  }

  /// The bytes of a typed array that was read; none for null.
  Bytes bytes(napi_value array) { return array == nullptr ? Bytes() : reader_.bytes(array); }
  int32_t number(napi_value value) { return value == nullptr ? 0 : reader_.int32(value); }

  bool refuse() const {
    call_.say(kLogInfo, kParamInvalid);
    return false;
  }

 private:
  napi_value get(const char* key, Kind kind) {
    napi_value value = reader_.get(call_[0], key);
    if (isKind(call_.env, value, kind)) return value;
    refuse();
    return nullptr;
  }

  const Call& call_;
  Reader reader_;
};

constexpr size_t kMaxPlanes = std::size(rtc::VideoFrameBuilder{}.data);

// Rows of a plane that the engine copies. Of formats it may know besides these, all planes are taken as full ones.
int64_t rowsOf(const rtc::VideoFrameBuilder& builder, size_t plane) {
  switch (builder.pixel_format) {
    case rtc::kVideoPixelFormatI420:
      if (plane > 2) return 0;
      return plane == 0 ? builder.height : (int64_t{builder.height} + 1) / 2;
    case rtc::kVideoPixelFormatRGBA:
    case rtc::kVideoPixelFormatARGB:
      return plane == 0 ? builder.height : 0;
    default:
      return builder.height;
  }
}

struct VideoArrays {
  std::array<napi_value, kMaxPlanes> planes{};
  std::array<napi_value, kMaxPlanes> linesizes{};
  napi_value extra_data = nullptr;
  napi_value supplementary_info = nullptr;
};

bool readKeys(FrameReader& reader, rtc::VideoFrameBuilder& builder, VideoArrays& arrays) {
  return reader.read("pixel_fmt", builder.pixel_format) && reader.read("color_space", builder.color_space) &&
         reader.readTime(builder.timestamp_us) &&
         reader.readList("data", Kind::kBytes, "%s(%d) param is invalid, dataArray length:%d", arrays.planes) &&
         reader.readList("linesize", Kind::kNumber, "%s(%d) param is invalid, lineArray length:%d", arrays.linesizes) &&
         reader.readArray("extra_data", arrays.extra_data) &&
         reader.readArray("supplementary_info", arrays.supplementary_info) && reader.read("width", builder.width) &&
         reader.read("height", builder.height) && reader.read("rotation", builder.rotation);
}

// The engine copies `linesize` bytes for each row, so a plane must hold as many.
bool readPlanes(FrameReader& reader, const VideoArrays& arrays, rtc::VideoFrameBuilder& builder) {
  for (size_t i = 0; i < kMaxPlanes; ++i) {
    const Bytes plane = reader.bytes(arrays.planes[i]);
    const int32_t linesize = reader.number(arrays.linesizes[i]);
    builder.data[i] = plane.data;
    builder.linesize[i] = linesize;
    if (linesize < 0 || linesize * rowsOf(builder, i) > static_cast<int64_t>(plane.size)) return reader.refuse();
  }
  return true;
}

bool readVideoFrame(const Call& call, rtc::VideoFrameBuilder& builder) {
  FrameReader reader(call);
  VideoArrays arrays;
  if (!readKeys(reader, builder, arrays)) return false;
  if (!readPlanes(reader, arrays, builder)) return false;
  const Bytes extra_data = reader.bytes(arrays.extra_data);
  const Bytes supplementary_info = reader.bytes(arrays.supplementary_info);
  if (!isCountable(call, extra_data, kParamInvalid) || !isCountable(call, supplementary_info, kParamInvalid)) {
    return false;
  }
  builder.extra_data = extra_data.data;
  builder.extra_data_size = static_cast<int32_t>(extra_data.size);
  builder.supplementary_info = supplementary_info.data;
  builder.supplementary_info_size = static_cast<int32_t>(supplementary_info.size);
  return true;
}

void pushExternalVideoFrame(Call& call) {
  rtc::VideoFrameBuilder builder{};
  if (!acceptsFrame(call) || !readVideoFrame(call, builder)) return;
  rtc::IVideoFrame* frame = rtc::buildVideoFrame(builder);
  if (frame != nullptr) call.result = engineOf(call).pushExternalVideoFrame(frame);
}

bool readAudioFrame(const Call& call, rtc::AudioFrameBuilder& builder) {
  FrameReader reader(call);
  napi_value data = nullptr;
  if (!reader.read("sample_rate", builder.sample_rate) || !reader.read("channel", builder.channels) ||
      !reader.readTime(builder.timestamp_us) || !reader.readArray("data", data)) {
    return false;
  }
  const Bytes bytes = reader.bytes(data);
  builder.data = bytes.data;
  builder.data_size = static_cast<int64_t>(bytes.size);
  return true;
}

void pushExternalAudioFrame(Call& call) {
  rtc::AudioFrameBuilder builder{};
  if (!acceptsFrame(call) || !readAudioFrame(call, builder)) return;
  // The frame ends with this call, so it needs no copy of the samples.
  builder.deep_copy = false;
  rtc::IAudioFrame* frame = rtc::buildAudioFrame(builder);
  if (frame == nullptr) return;
  call.result = engineOf(call).pushExternalAudioFrame(frame);
  frame->release();
}

constexpr Row kRows[] = {
    plain<&rtc::IRTCVideo::setVideoSourceType>("setVideoSourceType")
        .refuses("%s(%d) param is not valid, %d, %d")
        .says("%s(%d) stream_index:%d, type:%d"),
    bare("pushExternalVideoFrame", &pushExternalVideoFrame),
    plain<&rtc::IRTCVideo::setAudioSourceType>("setAudioSourceType")
        .refuses("%s(%d) param is not valid, %d")
        .says("%s(%d) type:%d"),
    bare("pushExternalAudioFrame", &pushExternalAudioFrame),
};

}  // namespace

std::span<const Row> externalSourceRows() {
  return kRows;
}

}  // namespace corvane
