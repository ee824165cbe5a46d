#include "frames/audio_frame.h"

#include <cstring>
#include <vector>

#include "frames/pattern.h"

namespace corvane::scripted {
namespace {

// Computing a pattern takes longer than the module takes to copy it, and measurements fire the same sound over and
// over.
void fillSound(uint8_t* bytes, size_t size, uint32_t seed) {
  thread_local std::vector<uint8_t> made;
  thread_local uint32_t made_seed;
  if (made.size() != size || made_seed != seed) {
    made.resize(size);
    made_seed = seed;
    fillPattern(made.data(), size, seed, 0, 0);
  }
  if (size > 0) std::memcpy(bytes, made.data(), size);
}

}  // namespace

AudioFrameSpec readAudioFrameSpec(const Value& value) {
  AudioFrameSpec spec;
  Arena arena;
  for (const auto& [name, member] : value.toMembers()) {
    if (name == "timestampUs") {
      readValue(member, spec.timestamp_us, arena);
    } else if (name == "sampleRate") {
      readValue(member, spec.sample_rate, arena);
    } else if (name == "channels") {
      readValue(member, spec.channels, arena);
    } else if (name == "samples") {
      readValue(member, spec.samples, arena);
    } else if (name == "frameType") {
      readValue(member, spec.frame_type, arena);
    } else if (name == "muted") {
      readValue(member, spec.muted, arena);
    } else if (name == "nullData") {
      readValue(member, spec.null_data, arena);
    } else if (name == "seed") {
      readValue(member, spec.seed, arena);
    } else {
      throw BadRequest("an audio frame has no " + name);
    }
  }
  return spec;
}

Value describeFrame(const rtc::IAudioFrame& frame) {
  return Value::Members{
      {"timestampUs", Value(frame.timestampUs())}, {"sampleRate", Value(frame.sampleRate())},
      {"channels", Value(frame.channels())},       {"data", listToValue(frame.data(), frame.dataSize())},
      {"frameType", Value(frame.frameType())},     {"muted", Value(frame.isMuted())}};
}

Value describeBuilder(const rtc::AudioFrameBuilder& builder) {
  return Value::Members{
      {"sample_rate", Value(builder.sample_rate)},   {"channels", Value(builder.channels)},
      {"timestamp_us", Value(builder.timestamp_us)}, {"data", listToValue(builder.data, builder.data_size)},
      {"data_size", Value(builder.data_size)},       {"deep_copy", Value(builder.deep_copy)}};
}

ScriptedAudioFrame::ScriptedAudioFrame(const AudioFrameSpec& spec)
    : timestamp_us_(spec.timestamp_us),
      sample_rate_(spec.sample_rate),
      channels_(spec.channels),
      data_size_(spec.samples * spec.channels * 2),
      frame_type_(spec.frame_type),
      muted_(spec.muted),
      lent_(true),
      memory_(static_cast<size_t>(data_size_)),
      data_(spec.null_data ? nullptr : memory_.data()) {
  fillSound(memory_.data(), memory_.size(), spec.seed);
  ++FrameStatistics::instance().lent;
}

ScriptedAudioFrame::ScriptedAudioFrame(const rtc::AudioFrameBuilder& builder)
    : timestamp_us_(builder.timestamp_us),
      sample_rate_(builder.sample_rate),
      channels_(builder.channels),
      data_size_(static_cast<int32_t>(builder.data_size)),
      lent_(false),
      memory_(builder.deep_copy ? static_cast<size_t>(builder.data_size) : 0),
      data_(builder.deep_copy ? memory_.data() : const_cast<uint8_t*>(builder.data)) {
  if (builder.deep_copy) {
    std::memcpy(data_, builder.data, memory_.size());
  }
  ++FrameStatistics::instance().built;
}

void ScriptedAudioFrame::release() {
  if (lent_) {
    ++FrameStatistics::instance().lent_released;
    return;
  }
  ++FrameStatistics::instance().built_released;
  delete this;
}

ScriptedDataFrame::ScriptedDataFrame(const Value& value) {
  for (const auto& [name, member] : value.toMembers()) {
    if (name == "frameType") {
      readValue(member, frame_type_, arena_);
    } else if (name == "data") {
      int64_t size = 0;
      data_ = readList<uint8_t>(member, size, arena_);
      data_size_ = static_cast<int32_t>(size);
    } else if (name == "dataSize") {
      readValue(member, data_size_, arena_);
    } else if (name == "timestampUs") {
      readValue(member, timestamp_us_, arena_);
    } else {
      throw BadRequest("a data frame has no " + name);
    }
  }
}

}  // namespace corvane::scripted
