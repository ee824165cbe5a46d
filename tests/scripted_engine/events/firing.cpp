#include "events/firing.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>

#include "core/attachments.h"
#include "core/engine_threads.h"
#include "events/event_row.h"
#include "events/registry.h"

namespace corvane::scripted {

namespace {

constexpr auto kPatience = std::chrono::seconds(30);

int64_t integerOr(const Value& request, const char* name, int64_t otherwise) {
  const Value* value = request.find(name);
  return value == nullptr ? otherwise : value->toInt64();
}

bool flagOr(const Value& request, const char* name, bool otherwise) {
  const Value* value = request.find(name);
  return value == nullptr ? otherwise : value->toBool();
}

/// One event on its way to one handler, shared by the threads that call it.
struct Round {
  Round(const EventRow& event_row, size_t threads) : row(event_row), latch(threads), answers(threads) {}

  const EventRow& row;
  std::unique_ptr<PreparedEvent> event;
  std::shared_ptr<Slot> slot;
  int64_t repeat = 1;
  bool detailed = false;
  Latch latch;
  std::atomic<int64_t> delivered{0};
  std::atomic<int64_t> missed{0};
  std::mutex mutex;
  std::vector<Value> answers;
  std::string error;
};

void countFrame(const Value& answer) {
  if (const bool* accepted = answer.as<bool>()) {
    auto& statistics = FrameStatistics::instance();
    ++(*accepted ? statistics.accepted : statistics.refused);
  }
}

void work(Round& round, size_t number) {
  Value answer;
  std::string error;
  try {
    for (int64_t index = 0; index < round.repeat; ++index) {
      if (!round.slot->enter()) {
        ++round.missed;
        continue;
      }
      const bool last = index + 1 == round.repeat;
      answer = round.event->call(round.slot->target(), {index, static_cast<int64_t>(number)}, round.detailed && last);
      round.slot->leave();
      ++round.delivered;
      if (round.row.frames_given) {
        countFrame(answer);
      }
    }
  } catch (const BadRequest& failure) {
    // From making a frame, before the handler was called.
    round.slot->leave();
    error = failure.what();
  }
  const std::lock_guard lock(round.mutex);
  round.answers[number] = std::move(answer);
  if (!error.empty()) {
    round.error = error;
  }
}

struct Pending {
  std::mutex mutex;
  std::vector<std::shared_ptr<Round>> rounds;
};

Pending& pending() {
  static auto* pending = new Pending;
  return *pending;
}

void finish(Round& round) {
  if (!round.latch.waitFor(kPatience)) {
    throw BadRequest(std::string(round.row.name) + " did not return within 30 seconds");
  }
  // Here and not on the thread that happens to end last: what the arguments were is gone when a test goes on.
  round.event.reset();
  const std::lock_guard lock(round.mutex);
  if (!round.error.empty()) {
    throw BadRequest(round.error);
  }
}

}  // namespace

Value fire(const Value& request) {
  const Value* name = request.find("event");
  const EventRow& row = findEvent(name == nullptr ? "" : name->toText());
  const auto threads = static_cast<size_t>(std::max<int64_t>(1, integerOr(request, "threads", 1)));
  const auto first = static_cast<size_t>(integerOr(request, "thread", 0));

  const auto round = std::make_shared<Round>(row, threads);
  const Value* arguments = request.find("args");
  round->event = row.prepare(row, arguments == nullptr ? Value() : *arguments);
  const Value* target = request.find("target");
  round->slot = Attachments::instance().find(row.interface_name, target == nullptr ? nullptr : &target->toText());
  round->repeat = integerOr(request, "repeat", 1);
  round->detailed = flagOr(request, "detailed", false);

  const bool wait = flagOr(request, "wait", true);
  if (!wait) {
    const std::lock_guard lock(pending().mutex);
    pending().rounds.push_back(round);
  }
  for (size_t number = 0; number < threads; ++number) {
    EngineThreads::instance().post(first + number, [round, number] {
      work(*round, number);
      round->latch.countDown();
    });
  }
  if (!wait) {
    return {};
  }
  finish(*round);
  return Value::Members{{"delivered", Value(round->delivered.load())},
                        {"missed", Value(round->missed.load())},
                        {"answers", Value::List(round->answers)}};
}

void settle() {
  std::vector<std::shared_ptr<Round>> rounds;
  {
    const std::lock_guard lock(pending().mutex);
    rounds.swap(pending().rounds);
  }
  for (const auto& round : rounds) {
    finish(*round);
  }
}

}  // namespace corvane::scripted
