// The connection over which a room's messages go: one data channel.
#pragma once

#include <memory>
#include <string>

#include "core/glib_pointers.h"
#include "rooms/peer_connection.h"
#include "service/signalling.h"

using GstWebRTCDataChannel = struct _GstWebRTCDataChannel;

namespace corvane::rtc {

/// Engine thread only.
class DataConnection final {
 public:
  DataConnection(EngineContext& context, bool loopback_only, PeerConnection::Listener& listener);
  ~DataConnection();
  DataConnection(const DataConnection&) = delete;
  DataConnection& operator=(const DataConnection&) = delete;

  /// The link is told of the channel's opening and texts from now on.
  void start(MessageLink& link);
  void send(const std::string& text);
  PeerConnection& peer() { return peer_; }

 private:
  void listenTo(GstWebRTCDataChannel* channel);
  void onOpen();

  EngineContext& context_;
  const std::shared_ptr<void> alive_ = std::make_shared<char>();
  MessageLink* link_ = nullptr;
  bool open_ = false;
  PeerConnection peer_;
  GObjectPtr<GstWebRTCDataChannel> channel_;
};

}  // namespace corvane::rtc
