#include "core/recorder.h"

namespace corvane::scripted {

namespace {

std::string fullName(const CallTarget& target, std::string_view operation) {
  std::string name = target.interface_name;
  if (!name.empty()) {
    name += '.';
  }
  return name.append(operation);
}

}  // namespace

Recorder& Recorder::instance() {
  // Never destroyed: handlers and frames of a module that is still loaded may arrive at any time before exit.
  static auto* recorder = new Recorder;
  return *recorder;
}

void Recorder::record(const CallTarget& target, std::string_view operation, Value arguments) {
  Call call{fullName(target, operation),
            0,
            target.id,
            std::move(arguments),
            std::this_thread::get_id() == script_thread_.load(),
            target.ended};
  call.operation_at = call.name.size() - operation.size();
  const std::lock_guard lock(mutex_);
  calls_.push_back(std::move(call));
}

bool Recorder::matches(const Call& call, std::string_view name) {
  return name.empty() || name == call.name || name == std::string_view(call.name).substr(call.operation_at);
}

Value Recorder::calls(std::string_view name) const {
  Value::List list;
  const std::lock_guard lock(mutex_);
  for (const Call& call : calls_) {
    if (!matches(call, name)) {
      continue;
    }
    Value::Members entry{
        {"name", call.name}, {"id", call.id}, {"args", call.arguments}, {"js", Value(call.from_script)}};
    if (call.ended) {
      entry.emplace_back("ended", Value(true));
    }
    list.emplace_back(std::move(entry));
  }
  return list;
}

int64_t Recorder::countOf(std::string_view name) const {
  int64_t count = 0;
  const std::lock_guard lock(mutex_);
  for (const Call& call : calls_) {
    count += matches(call, name) ? 1 : 0;
  }
  return count;
}

void Recorder::setAnswer(const std::string& name, Value value) {
  const std::lock_guard lock(mutex_);
  answers_.insert_or_assign(name, std::move(value));
  scripted_ = true;
}

void Recorder::removeAnswer(const std::string& name) {
  const std::lock_guard lock(mutex_);
  answers_.erase(name);
}

std::optional<Value> Recorder::answer(const CallTarget& target, std::string_view operation) const {
  if (!scripted_) {
    return std::nullopt;
  }
  const std::lock_guard lock(mutex_);
  if (const auto found = answers_.find(fullName(target, operation)); found != answers_.end()) {
    return found->second;
  }
  if (const auto found = answers_.find(operation); found != answers_.end()) {
    return found->second;
  }
  return std::nullopt;
}

void Recorder::withhold(const std::string& operation, bool withheld) {
  const std::lock_guard lock(mutex_);
  scripted_ = true;
  if (withheld) {
    withheld_.insert(operation);
  } else {
    withheld_.erase(operation);
  }
}

bool Recorder::isWithheld(const CallTarget& target, std::string_view operation) const {
  if (!scripted_) {
    return false;
  }
  const std::lock_guard lock(mutex_);
  return withheld_.contains(operation) || withheld_.contains(fullName(target, operation));
}

void Recorder::clearCalls() {
  const std::lock_guard lock(mutex_);
  calls_.clear();
  ended_calls_ = 0;
}

void Recorder::clearScript() {
  const std::lock_guard lock(mutex_);
  answers_.clear();
  withheld_.clear();
  scripted_ = false;
}

}  // namespace corvane::scripted
