// How a room that an engine has made is told from an administrator's, and who may end it.
//
// A room's mark is both its description on the service, which its members are told, and its secret there, with which it
// can be changed and ended. Who is the last to leave changes the mark to one that nobody else knows, looks once more
// whether the room is empty, and ends it with that mark. Who joins meanwhile sees from the mark that the room is
// closing, and changes it back: then it cannot be ended with the other any more. Who comes too late for that finds no
// room, and makes a new one.
#pragma once

#include <string>

namespace corvane::rtc {

std::string makeRoomMark();

/// Another each time.
std::string closingMark(const std::string& open_mark);

/// The mark that a room with this description has while it is not closing; "" when no engine has made it.
std::string openMarkOf(const std::string& description);

/// The id of the room for messages beside a room of this id and open mark: short and plain, since Janus's plug-in
/// TextRoom loses track of who has left others.
std::string messageRoomOf(const std::string& room_id, const std::string& open_mark);

}  // namespace corvane::rtc
