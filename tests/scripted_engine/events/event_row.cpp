#include "events/event_row.h"

#include <algorithm>
#include <string_view>

namespace corvane::scripted {

CallFrames::~CallFrames() {
  for (ScriptedVideoFrame* frame : lent_) {
    frame->takeBack();
  }
}

rtc::IVideoFrame* CallFrames::makeVideo(const Value& spec) {
  if (spec.isNull()) {
    return nullptr;
  }
  auto frame = std::make_unique<ScriptedVideoFrame>(readVideoFrameSpec(spec));
  frame->handOut(given_ ? ScriptedVideoFrame::kGiven : ScriptedVideoFrame::kLent);
  if (!given_) {
    lent_.push_back(frame.get());
  }
  return frame.release();
}

ScriptedAudioFrame* CallFrames::makeAudio(const Value& spec) {
  if (spec.isNull()) {
    return nullptr;
  }
  audio_.push_back(std::make_unique<ScriptedAudioFrame>(readAudioFrameSpec(spec)));
  return audio_.back().get();
}

ScriptedDataFrame* CallFrames::makeData(const Value& spec) {
  if (spec.isNull()) {
    return nullptr;
  }
  data_.push_back(std::make_unique<ScriptedDataFrame>(spec));
  return data_.back().get();
}

Value CallFrames::describe() const {
  Value::List frames;
  for (const ScriptedVideoFrame* frame : lent_) {
    frames.push_back(describeFrame(*frame));
  }
  for (const auto& frame : audio_) {
    frames.push_back(describeFrame(*frame));
  }
  return frames.empty() ? Value() : Value(std::move(frames));
}

Value CallFrames::name(const rtc::IVideoFrame* returned) const {
  if (returned == nullptr) {
    return {};
  }
  const bool same = std::any_of(lent_.begin(), lent_.end(), [&](const auto* frame) { return frame == returned; });
  return same ? "same" : "other";
}

std::array<const Value*, kMaxParameters> matchArguments(const EventRow& row, const Value& arguments) {
  std::array<const Value*, kMaxParameters> found{};
  if (const auto* list = arguments.as<Value::List>()) {
    if (list->size() > row.parameter_count) {
      throw BadRequest(std::string(row.name) + " has " + std::to_string(row.parameter_count) + " parameters");
    }
    for (size_t i = 0; i < list->size(); ++i) {
      found[i] = &(*list)[i];
    }
    return found;
  }
  for (const auto& [name, value] : arguments.toMembers()) {
    const auto* const end = row.parameters.begin() + row.parameter_count;
    const auto* const parameter = std::find(row.parameters.begin(), end, std::string_view(name));
    if (parameter == end) {
      throw BadRequest(std::string(row.name) + " has no parameter " + name);
    }
    found[static_cast<size_t>(parameter - row.parameters.begin())] = &value;
  }
  return found;
}

}  // namespace corvane::scripted
