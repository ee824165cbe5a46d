// What a service and the members of a room may say.
#include <algorithm>
#include <string>

#include "room_world.h"
#include "targets.h"

namespace corvane::fuzz {

namespace {

// Up to a room that is joined, with its data channel open and a member that can be reached.
constexpr char kEntered[] = R"(O
>{"janus":"success","transaction":"@","data":{"id":1}}
>{"janus":"success","transaction":"@","data":{"id":2}}
>{"janus":"event","transaction":"@","sender":2,"plugindata":{"data":{"videoroom":"joined","attendees":[{"id":"bob"}]}}}
o
#{"textroom":"success","transaction":"join","participants":[{"username":"bob"}]}
m
b
)";

}  // namespace

void runSignalling(std::string_view input) {
  RoomWorld world;
  world.play(input);
}

void runChannel(std::string_view input) {
  std::string script = kEntered;
  while (!input.empty()) {
    const std::string_view line = input.substr(0, input.find('\n'));
    input.remove_prefix(std::min(input.size(), line.size() + 1));
    script.append("#").append(line).append("\n");
  }
  RoomWorld world;
  world.play(script);
}

}  // namespace corvane::fuzz
