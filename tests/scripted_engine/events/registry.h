// All callbacks of the engine's headers by name.
#pragma once

#include <span>
#include <string_view>

namespace corvane::scripted {

struct EventRow;

std::span<const EventRow> engineEvents();
std::span<const EventRow> roomEvents();
std::span<const EventRow> playerEvents();
std::span<const EventRow> mediaEvents();

/// "Interface.name", or the name alone where one interface has it. Throws BadRequest otherwise.
const EventRow& findEvent(std::string_view name);

}  // namespace corvane::scripted
