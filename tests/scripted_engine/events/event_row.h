// Callbacks as rows: a test names one, gives its arguments by the parameters' names, and the row turns them into a call
// of the handler's method.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "core/fields.h"
#include "frames/audio_frame.h"
#include "frames/video_frame.h"

namespace corvane::scripted {

/// The how many-th of equal calls on which of several threads. {"$index": n} and {"$thread": n} among the arguments
/// stand for n plus these.
struct CallSite {
  int64_t index = 0;
  int64_t thread = 0;
};

/// Frames made for one call of a handler.
class CallFrames {
 public:
  explicit CallFrames(bool given) : given_(given) {}
  CallFrames(const CallFrames&) = delete;
  CallFrames& operator=(const CallFrames&) = delete;
  /// Takes back what was lent.
  ~CallFrames();

  rtc::IVideoFrame* makeVideo(const Value& spec);
  ScriptedAudioFrame* makeAudio(const Value& spec);
  ScriptedDataFrame* makeData(const Value& spec);

  /// The lent frames as the handler left them. Null when there are none.
  Value describe() const;
  /// "same" for the lent frame itself.
  Value name(const rtc::IVideoFrame* returned) const;

 private:
  bool given_;
  std::vector<ScriptedVideoFrame*> lent_;
  std::vector<std::unique_ptr<ScriptedAudioFrame>> audio_;
  std::vector<std::unique_ptr<ScriptedDataFrame>> data_;
};

/// What reading the arguments of one event needs.
struct Loader {
  Arena* arena;
  /// Of the list or bytes read last: the next integer parameter that a test leaves out counts them.
  std::optional<int64_t> last_count;
};

// How one parameter crosses over: load() once for each event, value() once for each call.

template <class P>
struct Param;

template <class P>
requires std::is_integral_v<P>
struct Param<P> {
  P base{};
  bool by_index = false;
  bool by_thread = false;

  void load(const Value* given, Loader& loader) {
    if (given == nullptr) {
      base = static_cast<P>(loader.last_count.value_or(0));
      loader.last_count.reset();
      return;
    }
    const Value* index = given->find("$index");
    const Value* thread = given->find("$thread");
    by_index = index != nullptr;
    by_thread = thread != nullptr;
    readValue(by_index ? *index : by_thread ? *thread : *given, base, *loader.arena);
  }
  P value(const CallSite& site, CallFrames&) const {
    return static_cast<P>(base + static_cast<P>(by_index ? site.index : by_thread ? site.thread : 0));
  }
};

template <>
struct Param<double> {
  double number = 0;
  void load(const Value* given, Loader&) { number = given == nullptr ? 0 : given->toDouble(); }
  double value(const CallSite&, CallFrames&) const { return number; }
};

template <>
struct Param<const char*> {
  const char* text = "";
  void load(const Value* given, Loader& loader) {
    if (given != nullptr) {
      text = loader.arena->text(*given);
    }
  }
  const char* value(const CallSite&, CallFrames&) const { return text; }
};

template <Record R>
struct Param<const R&> {
  const R* record = nullptr;
  void load(const Value* given, Loader& loader) {
    R* made = loader.arena->make<R>(1);
    readValue(given == nullptr ? Value(Value::Members{}) : *given, *made, *loader.arena);
    record = made;
  }
  const R& value(const CallSite&, CallFrames&) const { return *record; }
};

template <class E>
struct Param<const E*> {
  const E* items = nullptr;
  void load(const Value* given, Loader& loader) {
    int64_t count = 0;
    items = readList<E>(given == nullptr ? Value() : *given, count, *loader.arena);
    loader.last_count = count;
  }
  const E* value(const CallSite&, CallFrames&) const { return items; }
};

/// Frames are made anew for each call.
struct FrameParam {
  Value spec;
  void load(const Value* given, Loader&) {
    if (given != nullptr) {
      spec = *given;
    }
  }
};
template <>
struct Param<rtc::IVideoFrame*> : FrameParam {
  rtc::IVideoFrame* value(const CallSite&, CallFrames& frames) const { return frames.makeVideo(spec); }
};
template <>
struct Param<rtc::IAudioFrame*> : FrameParam {
  rtc::IAudioFrame* value(const CallSite&, CallFrames& frames) const { return frames.makeAudio(spec); }
};
template <>
struct Param<const rtc::IAudioFrame*> : FrameParam {
  const rtc::IAudioFrame* value(const CallSite&, CallFrames& frames) const { return frames.makeAudio(spec); }
};
template <>
struct Param<const rtc::IDataFrame*> : FrameParam {
  const rtc::IDataFrame* value(const CallSite&, CallFrames& frames) const { return frames.makeData(spec); }
};

/// An event with its arguments, ready to be called any number of times by several threads at once. The arguments are
/// overwritten when it is destroyed.
class PreparedEvent {
 public:
  PreparedEvent() = default;
  PreparedEvent(const PreparedEvent&) = delete;
  PreparedEvent& operator=(const PreparedEvent&) = delete;
  virtual ~PreparedEvent() = default;

  /// What the handler answered, null without an answer; with `detailed` also lent frames: { result, frames }.
  virtual Value call(void* handler, const CallSite& site, bool detailed) const = 0;

 protected:
  Arena arena_;
};

constexpr size_t kMaxParameters = 8;

struct EventRow {
  const char* interface_name;
  const char* name;
  std::array<const char*, kMaxParameters> parameters;
  size_t parameter_count;
  /// Frames go into the handler's hand instead of being lent for the call.
  bool frames_given;
  std::unique_ptr<PreparedEvent> (*prepare)(const EventRow& row, const Value& arguments);
};

/// By parameter name, or in order when the arguments are a list. Throws for a name the event does not have.
std::array<const Value*, kMaxParameters> matchArguments(const EventRow& row, const Value& arguments);

template <auto method, class Signature = decltype(method)>
class Event;

template <auto method, class R, class H, class... P>
class Event<method, R (H::*)(P...)> final : public PreparedEvent {
 public:
  static constexpr size_t kParameters = sizeof...(P);

  Event(const EventRow& row, const Value& arguments) : frames_given_(row.frames_given) {
    const auto given = matchArguments(row, arguments);
    Loader loader{&arena_, {}};
    load(given, loader, std::index_sequence_for<P...>{});
  }

  Value call(void* handler, const CallSite& site, bool detailed) const override {
    CallFrames frames(frames_given_);
    return std::apply(
        [&](const auto&... parameter) -> Value {
          auto* target = static_cast<H*>(handler);
          Value result;
          if constexpr (std::is_void_v<R>) {
            (target->*method)(parameter.value(site, frames)...);
          } else if constexpr (std::is_pointer_v<R>) {
            result = frames.name((target->*method)(parameter.value(site, frames)...));
          } else {
            result = Value((target->*method)(parameter.value(site, frames)...));
          }
          if (!detailed) {
            return result;
          }
          return Value::Members{{"result", std::move(result)}, {"frames", frames.describe()}};
        },
        parameters_);
  }

 private:
  template <size_t... I>
  void load(const std::array<const Value*, kMaxParameters>& given, Loader& loader, std::index_sequence<I...>) {
    (std::get<I>(parameters_).load(given[I], loader), ...);
  }

  bool frames_given_;
  std::tuple<Param<P>...> parameters_;
};

/// `names`: the parameters' names in the header.
template <auto method, class... N>
constexpr EventRow event(const char* interface_name, const char* name, N... names) {
  static_assert(sizeof...(N) == Event<method>::kParameters, "one name for each parameter");
  return {interface_name,
          name,
          {names...},
          sizeof...(N),
          false,
          [](const EventRow& row, const Value& arguments) -> std::unique_ptr<PreparedEvent> {
            return std::make_unique<Event<method>>(row, arguments);
          }};
}

/// As event(); its frames go into the handler's hand.
template <auto method, class... N>
constexpr EventRow eventGivingFrames(const char* interface_name, const char* name, N... names) {
  EventRow row = event<method>(interface_name, name, names...);
  row.frames_given = true;
  return row;
}

}  // namespace corvane::scripted
