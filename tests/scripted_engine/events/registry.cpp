#include "events/registry.h"

#include <array>
#include <string>

#include "events/event_row.h"

namespace corvane::scripted {

namespace {

bool matches(const EventRow& row, std::string_view name) {
  const size_t dot = name.find('.');
  if (dot == std::string_view::npos) {
    return name == row.name;
  }
  return name.substr(0, dot) == row.interface_name && name.substr(dot + 1) == row.name;
}

}  // namespace

const EventRow& findEvent(std::string_view name) {
  const EventRow* found = nullptr;
  for (const auto rows : {engineEvents(), roomEvents(), playerEvents(), mediaEvents()}) {
    for (const EventRow& row : rows) {
      if (!matches(row, name)) {
        continue;
      }
      if (found != nullptr) {
        throw BadRequest(std::string(name) + ": several interfaces have it, write Interface.name");
      }
      found = &row;
    }
  }
  if (found == nullptr) {
    throw BadRequest("no callback is called " + std::string(name));
  }
  return *found;
}

}  // namespace corvane::scripted
