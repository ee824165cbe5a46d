// The local user's streams, sent to other rooms as well.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "rooms/member_state.h"
#include "rooms/room_context.h"
#include "service/signalling.h"

namespace corvane::rtc {

struct ForwardTarget {
  std::string room_id;
  std::string token;
};

/// In each of the other rooms the user is a member of the same id, who sends what is published in this one and receives
/// nothing. Everything is encoded once. Engine thread only.
class Forwarding final {
 public:
  using ServiceFinder = std::function<Service&(const std::string& room_id)>;

  Forwarding(RoomContext& room, ServiceFinder service_of);
  ~Forwarding();
  Forwarding(const Forwarding&) = delete;
  Forwarding& operator=(const Forwarding&) = delete;

  /// The whole list. Rooms that are in it already go on, or are tried again with the new token if they have failed.
  void set(const std::vector<ForwardTarget>& targets);
  void stop();
  /// The other rooms are not left.
  void setPaused(bool paused);

  /// What the user tells of itself in its own room, and publishes there.
  void follow(const MemberState& own);
  void onServiceState(Service& service, Service::State state);
  /// Several times a second: what has been sent for the first time.
  void check();

 private:
  class Destination;

  void add(const ForwardTarget& target);
  void report();
  void reportEvent(const std::string& room_id, ForwardStreamEvent event);

  RoomContext& room_;
  const ServiceFinder service_of_;
  MemberState own_;
  bool paused_ = false;
  std::map<std::string, std::unique_ptr<Destination>> destinations_;
};

}  // namespace corvane::rtc
