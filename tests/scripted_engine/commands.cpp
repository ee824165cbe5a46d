#include "commands.h"

#include <array>
#include <string>
#include <string_view>

#include "core/attachments.h"
#include "core/engine_threads.h"
#include "core/graveyard.h"
#include "core/recorder.h"
#include "core/value.h"
#include "events/firing.h"
#include "frames/frame_statistics.h"
#include "frames/streams.h"

namespace corvane::scripted {

namespace {

std::string textOf(const Value& request, const char* name) {
  const Value* value = request.find(name);
  return value == nullptr ? "" : value->toText();
}

bool flagOf(const Value& request, const char* name) {
  const Value* value = request.find(name);
  return value == nullptr || value->toBool();
}

Value calls(const Value& request) {
  return Recorder::instance().calls(textOf(request, "name"));
}

Value countCalls(const Value& request) {
  return Recorder::instance().countOf(textOf(request, "name"));
}

Value record(const Value& request) {
  Recorder::instance().setRecording(flagOf(request, "on"));
  return {};
}

/// Without a value: what was scripted is taken back.
Value answer(const Value& request) {
  if (const Value* value = request.find("value")) {
    Recorder::instance().setAnswer(textOf(request, "name"), *value);
  } else {
    Recorder::instance().removeAnswer(textOf(request, "name"));
  }
  return {};
}

Value withhold(const Value& request) {
  Recorder::instance().withhold(textOf(request, "name"), flagOf(request, "on"));
  return {};
}

Value clear(const Value&) {
  Recorder::instance().clearCalls();
  FrameStatistics::instance().clear();
  ReleasableStatistics::instance().clear();
  return {};
}

Value reset(const Value& request) {
  Recorder::instance().clearScript();
  return clear(request);
}

Value attached(const Value& request) {
  Value::List ids;
  for (auto& id : Attachments::instance().ids(textOf(request, "interface"))) {
    ids.emplace_back(std::move(id));
  }
  return ids;
}

Value frames(const Value&) {
  return FrameStatistics::instance().toValue();
}

Value objects(const Value&) {
  const auto& statistics = ReleasableStatistics::instance();
  return Value::Members{{"live", Value(statistics.made - statistics.released)},
                        {"releasedTwice", Value(statistics.released_twice.load())},
                        {"endedCalls", Value(Recorder::instance().endedCalls())}};
}

Value waitForFired(const Value&) {
  settle();
  return {};
}

Value startStreams(const Value& request) {
  Streams::instance().start(request);
  return {};
}

Value streams(const Value&) {
  return Value::Members{{"finished", Value(Streams::instance().finished())}, {"streams", Streams::instance().report()}};
}

Value stopStreams(const Value& request) {
  Streams::instance().stop();
  return streams(request);
}

/// Joins all threads, for the end of the process.
Value shutDown(const Value&) {
  Streams::instance().stop();
  Attachments::instance().detachAll();
  EngineThreads::instance().join();
  return {};
}

struct Command {
  std::string_view name;
  Value (*run)(const Value& request);
};

constexpr auto kCommands = std::to_array<Command>({
    {"answer", answer},
    {"attached", attached},
    {"calls", calls},
    {"clear", clear},
    {"countCalls", countCalls},
    {"fire", fire},
    {"frames", frames},
    {"objects", objects},
    {"record", record},
    {"reset", reset},
    {"settle", waitForFired},
    {"shutDown", shutDown},
    {"startStreams", startStreams},
    {"stopStreams", stopStreams},
    {"streams", streams},
    {"withhold", withhold},
});

Value run(const Value& request) {
  const std::string name = textOf(request, "do");
  for (const Command& command : kCommands) {
    if (command.name == name) {
      return command.run(request);
    }
  }
  throw BadRequest("no command is called " + name);
}

}  // namespace

}  // namespace corvane::scripted

void scriptedEngineCommand(const char* request, size_t size, void (*reply)(void*, const char*, size_t), void* context) {
  using corvane::scripted::Value;
  corvane::scripted::Recorder::instance().markScriptThread();
  Value answer;
  try {
    answer.set("value", corvane::scripted::run(corvane::scripted::parseJson({request, size})));
  } catch (const std::exception& error) {
    answer = Value::Members{{"error", error.what()}};
  }
  const std::string text = corvane::scripted::toJson(answer);
  reply(context, text.data(), text.size());
}
