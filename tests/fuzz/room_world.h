// One room of the engine's on a service that is scripted: what a target says comes over the socket or the data channel.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace corvane::fuzz {

class RoomWorld {
 public:
  RoomWorld();
  ~RoomWorld();
  RoomWorld(const RoomWorld&) = delete;
  RoomWorld& operator=(const RoomWorld&) = delete;

  /// A script's lines, each begun by a letter for what is done:
  ///   > a text comes over the socket; "@" in it stands for the newest transaction of the engine's
  ///   # a text comes over the newest data channel
  ///   ~ the engine works off what has been posted
  ///   O, X the socket opens, closes; o the data channel opens; R the engine connects anew
  ///   j, l, p, u, v, s, m: the application joins, leaves, publishes, unpublishes, hides, sets extra information, sends
  void play(std::string_view script);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace corvane::fuzz
