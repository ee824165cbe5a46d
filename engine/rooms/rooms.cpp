#include "rooms/rooms.h"

#include <algorithm>
#include <utility>

#include "core/stable_hash.h"
#include "service/janus_connection.h"
#include "service/local_service.h"

namespace corvane::rtc {

Rooms::Rooms(EngineContext& context, std::unique_ptr<LocalMedia> camera, std::unique_ptr<LocalMedia> screen,
             RemoteSinks& sinks, Snapshots& snapshots, RemoteSounds& sounds, std::vector<std::string> services)
    : context_(context),
      sinks_(sinks),
      snapshots_(snapshots),
      sounds_(sounds),
      camera_(std::move(camera)),
      screen_(std::move(screen)),
      addresses_(std::move(services)) {}

Rooms::~Rooms() {
  machine_.reset();
  rooms_.clear();
  // A service that waits for its farewells lets the others speak: by then nobody is to be told, and the table is no
  // more.
  const auto ending = std::move(services_);
  services_.clear();
}

void Rooms::create(const std::string& id) {
  head_start_.begin();
  if (machine_ == nullptr) machine_ = std::make_unique<MachineReport>(context_);
  rooms_[id] = std::make_shared<Room>(
      RoomContext{context_, *camera_, *screen_, sinks_, snapshots_, sounds_, id, "", "", nullptr}, serviceOf(id),
      [this](const std::string& other) -> Service& { return serviceOf(other); });
  rooms_[id]->setCapturing(capturing_);
  context_.events->onCreateRoomStateChanged(id.c_str(), kSuccess);
}

void Rooms::setCapturing(int32_t stream_index, int32_t media, bool captures) {
  int32_t& known = capturing_[static_cast<size_t>(stream_index)];
  known = captures ? known | media : known & ~media;
  for (const auto& [id, room] : rooms_) room->setCapturing(capturing_);
}

void Rooms::setVideoEncodings(const std::vector<VideoEncoding>& encodings) {
  camera_->setVideoEncodings(encodings);
  tellLayers();
}

void Rooms::enableLayers(bool enable) {
  camera_->enableLayers(enable);
  tellLayers();
}

void Rooms::tellLayers() {
  for (const auto& [id, room] : rooms_) room->tellLayers();
}

std::shared_ptr<Room> Rooms::find(const std::string& id) const {
  const auto found = rooms_.find(id);
  return found != rooms_.end() ? found->second : nullptr;
}

bool Rooms::isInRoom() const {
  return std::any_of(rooms_.begin(), rooms_.end(), [](const auto& room) { return !room.second->isOut(); });
}

void Rooms::destroy(const std::string& id) {
  rooms_.erase(id);
  if (rooms_.empty()) machine_.reset();
}

Service& Rooms::serviceOf(const std::string& room_id) {
  const std::string address = addresses_.empty() ? "" : addresses_[stableHash(room_id) % addresses_.size()];
  std::unique_ptr<Service>& service = services_[address];
  if (service == nullptr) {
    std::unique_ptr<AddressSource> source;
    if (address.empty()) {
      source = std::make_unique<LocalService>(context_.log);
    } else {
      source = std::make_unique<NamedService>(address);
    }
    service = std::make_unique<JanusConnection>(context_, std::move(source), *this);
    context_.events->onConnectionStateChanged(kConnectionStateConnecting);
  }
  return *service;
}

void Rooms::onServiceState(Service& service, Service::State state, const std::string& problem) {
  for (const auto& [address, candidate] : services_) {
    if (candidate.get() != &service) continue;
    ConnectionState reported = kConnectionStateConnecting;
    if (state == Service::State::kUp) {
      reported = std::exchange(was_up_[address], true) ? kConnectionStateReconnected : kConnectionStateConnected;
    } else if (state == Service::State::kDown) {
      reported = kConnectionStateReconnecting;
    } else if (state == Service::State::kUnreachable) {
      reported = kConnectionStateLost;
    }
    context_.events->onConnectionStateChanged(reported);
  }
  const auto rooms = rooms_;
  for (const auto& [id, room] : rooms) {
    room->onServiceState(service, state, problem);
  }
}

}  // namespace corvane::rtc
