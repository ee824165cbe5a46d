// All rooms of one engine, and the services they are held on.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/engine_context.h"
#include "core/machine_report.h"
#include "media/local_media.h"
#include "media/remote_sinks.h"
#include "rooms/head_start.h"
#include "rooms/room.h"
#include "service/signalling.h"

namespace corvane::rtc {

/// Engine thread only.
class Rooms final : public Service::Listener {
 public:
  /// services: addresses; none stands for the private service of this machine.
  Rooms(EngineContext& context, std::unique_ptr<LocalMedia> camera, std::unique_ptr<LocalMedia> screen,
        RemoteSinks& sinks, Snapshots& snapshots, RemoteSounds& sounds, std::vector<std::string> services);
  ~Rooms();
  Rooms(const Rooms&) = delete;
  Rooms& operator=(const Rooms&) = delete;

  /// Connects to the room's service: joining need not wait for that.
  void create(const std::string& id);
  /// Null when there is none.
  std::shared_ptr<Room> find(const std::string& id) const;
  void destroy(const std::string& id);
  /// Whether one of the local streams is captured now.
  void setCapturing(int32_t stream_index, int32_t media, bool captures);
  /// Of the camera, see LocalMedia.
  void setVideoEncodings(const std::vector<VideoEncoding>& encodings);
  void enableLayers(bool enable);
  /// Whether any room is, or is being, joined.
  bool isInRoom() const;
  /// Of a StreamIndex.
  LocalMedia& media(int32_t stream_index) { return stream_index == kStreamIndexScreen ? *screen_ : *camera_; }

 private:
  void tellLayers();
  Service& serviceOf(const std::string& room_id);
  void onServiceState(Service& service, Service::State state, const std::string& problem) override;

  EngineContext& context_;
  RemoteSinks& sinks_;
  Snapshots& snapshots_;
  RemoteSounds& sounds_;
  const std::unique_ptr<LocalMedia> camera_;
  const std::unique_ptr<LocalMedia> screen_;
  std::array<int32_t, 2> capturing_ = {};  // MediaStreamType, by StreamIndex
  const std::vector<std::string> addresses_;
  HeadStart head_start_;
  std::map<std::string, std::unique_ptr<Service>> services_;  // by address
  std::map<std::string, bool> was_up_;                        // likewise
  std::map<std::string, std::shared_ptr<Room>> rooms_;
  std::unique_ptr<MachineReport> machine_;  // while there are rooms
};

}  // namespace corvane::rtc
