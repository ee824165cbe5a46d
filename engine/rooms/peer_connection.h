// One WebRTC connection to a service: a pipeline around GStreamer's webrtcbin, negotiated over a link.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "capture/pipeline.h"
#include "core/engine_context.h"
#include "rooms/transport.h"
#include "service/signalling.h"

namespace corvane::rtc {

/// Engine thread only; so are the calls to the listener. The link is the caller's, and is set before start().
class PeerConnection : public PeerLink::Listener {
 public:
  class Listener {
   public:
    virtual void onPeerConnected() = 0;
    /// At most once, and the last call. May end the connection.
    virtual void onPeerFailed(const std::string& reason) = 0;

   protected:
    ~Listener() = default;
  };

  PeerConnection(EngineContext& context, const char* name, bool loopback_only, Listener& listener);
  virtual ~PeerConnection();
  PeerConnection(const PeerConnection&) = delete;
  PeerConnection& operator=(const PeerConnection&) = delete;

  /// To be built before start(). What its threads call back to goes after stop().
  Pipeline& pipeline() { return pipeline_; }
  GstElement* webrtc() { return webrtc_; }

  void setLink(PeerLink& link) { link_ = &link; }
  /// The sources that the layers of one offered video come from, the largest first.
  void setLayers(std::vector<uint32_t> sources) { layers_ = std::move(sources); }
  /// Called on threads of the connection's, when a receiver cannot go on without a key frame. To be set before start().
  void onKeyFrameAsked(std::function<void()> ask) { transport_.ask_for_key_frame = std::move(ask); }
  void start();
  /// No thread of the pipeline's runs any more afterwards.
  void stop();
  /// Begins the negotiation; otherwise the service does.
  void sendOffer();
  void fail(const std::string& reason);

  /// Asks for the counters; answered on the engine thread unless the connection has ended.
  void requestStatistics(std::function<void(const GstStructure*)> answer);

  void onRemoteDescription(const std::string& sdp) override;
  void onRemoteCandidate(unsigned line, const std::string& candidate) override;
  void onLinkFailed(const std::string& reason) override { fail(reason); }

 private:
  void connectSignals();
  std::string withLayers(const std::string& offer);
  void setUpIce(bool loopback_only);
  void onDescriptionMade(const GstStructure* reply, const char* field);
  void onStateChanged(int state);
  void promise(const char* signal, void* argument, std::function<void(const GstStructure*)> then);
  void onMessage(GstMessage* message);

  EngineContext& context_;
  Listener& listener_;
  PeerLink* link_ = nullptr;
  const std::shared_ptr<void> alive_ = std::make_shared<char>();
  Pipeline pipeline_;
  GstElement* webrtc_ = nullptr;
  AttachedSource watch_;
  AttachedSource patience_;
  std::vector<uint32_t> layers_;
  TransportSetup transport_;  // read by the pipeline's threads
  bool offering_ = false;
  bool connected_ = false;
  bool failed_ = false;
};

}  // namespace corvane::rtc
