#include "rooms/peer_connection.h"

#include <gst/webrtc/webrtc.h>

#include <utility>

#include "capture/capture_fault.h"
#include "core/bus_watch.h"
#include "core/glib_pointers.h"
#include "rooms/sdp_text.h"

namespace corvane::rtc {

namespace {

// From the start of a connection to giving it up: a service may take an offer and do nothing.
constexpr std::chrono::seconds kPatience(10);

struct FreeDescription {
  void operator()(GstWebRTCSessionDescription* description) const { gst_webrtc_session_description_free(description); }
};
using Description = std::unique_ptr<GstWebRTCSessionDescription, FreeDescription>;

Description makeDescription(GstWebRTCSDPType type, const std::string& sdp) {
  GstSDPMessage* message = nullptr;
  if (!isDescription(sdp)) return nullptr;
  if (gst_sdp_message_new_from_text(sdp.c_str(), &message) != GST_SDP_OK) return nullptr;
  Description description(gst_webrtc_session_description_new(type, message));
  // Almost anything can be read. Without media nothing would ever connect, or fail.
  return gst_sdp_message_medias_len(message) > 0 ? std::move(description) : nullptr;
}

}  // namespace

PeerConnection::PeerConnection(EngineContext& context, const char* name, bool loopback_only, Listener& listener)
    : context_(context), listener_(listener), pipeline_(name), webrtc_(pipeline_.add("webrtcbin", "webrtc")) {
  watch_ = watchBus<&PeerConnection::onMessage>(pipeline_.bus().get(), context_.thread, this);
  pipeline_.countFromClock();
  if (webrtc_ == nullptr) return;
  gst_util_set_object_arg(G_OBJECT(webrtc_), "bundle-policy", "max-bundle");
  setUpTransport(webrtc_, transport_);
  setUpIce(loopback_only);
  connectSignals();
}

PeerConnection::~PeerConnection() {
  stop();
}

void PeerConnection::setUpIce(bool loopback_only) {
  GObject* ice = nullptr;
  g_object_get(webrtc_, "ice-agent", &ice, nullptr);
  if (ice == nullptr) return;
  const GObjectPtr<GObject> owned_ice(ice);
  GObject* agent = nullptr;
  g_object_get(ice, "agent", &agent, nullptr);
  if (agent != nullptr) {
    const GObjectPtr<GObject> owned_agent(agent);
    // Asking routers for ports takes seconds, and a service has an address that needs none.
    g_object_set(agent, "upnp", FALSE, nullptr);
  }
  gboolean added = FALSE;
  if (loopback_only) g_signal_emit_by_name(ice, "add-local-ip-address", "127.0.0.1", &added);
}

void PeerConnection::connectSignals() {
  // Emitted on threads of webrtcbin's, which are gone when the pipeline has stopped.
  const auto on_candidate = +[](GstElement*, guint line, gchar* candidate, gpointer data) {
    auto* self = static_cast<PeerConnection*>(data);
    self->context_.thread.post(self->alive_, [self, line, text = std::string(candidate)] {
      if (self->link_ != nullptr && !text.empty()) self->link_->sendCandidate(line, text);
    });
  };
  const auto on_state = +[](GObject* webrtc, GParamSpec*, gpointer data) {
    auto* self = static_cast<PeerConnection*>(data);
    GstWebRTCPeerConnectionState state = GST_WEBRTC_PEER_CONNECTION_STATE_NEW;
    g_object_get(webrtc, "connection-state", &state, nullptr);
    self->context_.thread.post(self->alive_, [self, state] { self->onStateChanged(state); });
  };
  g_signal_connect(webrtc_, "on-ice-candidate", G_CALLBACK(on_candidate), this);
  g_signal_connect(webrtc_, "notify::connection-state", G_CALLBACK(on_state), this);
}

void PeerConnection::start() {
  if (!pipeline_.missing().empty()) {
    return fail("GStreamer's element " + pipeline_.missing() + " is not installed");
  }
  if (!pipeline_.play()) return fail("the pipeline does not start");
  patience_ = context_.thread.after(kPatience, [this] { fail("no media connection to the service came about"); });
}

void PeerConnection::stop() {
  watch_.reset();
  patience_.reset();
  gst_element_set_state(pipeline_.get(), GST_STATE_NULL);
}

void PeerConnection::fail(const std::string& reason) {
  // Posted: whoever starts a connection need not expect to lose it in the same breath.
  context_.thread.post(alive_, [this, reason] {
    if (!std::exchange(failed_, true)) listener_.onPeerFailed(reason);
  });
}

void PeerConnection::promise(const char* signal, void* argument, std::function<void(const GstStructure*)> then) {
  if (webrtc_ == nullptr) return;  // start() has told
  struct Waiting {
    PeerConnection* self;
    std::weak_ptr<void> alive;
    std::function<void(const GstStructure*)> then;
  };
  GstPromise* promise = gst_promise_new_with_change_func(
      [](GstPromise* changed, gpointer data) {
        // On a thread of webrtcbin's, or of whoever ends it; the reply is the promise's.
        auto* waiting = static_cast<Waiting*>(data);
        const GstStructure* reply = gst_promise_get_reply(changed);
        const std::shared_ptr<GstStructure> copy(reply != nullptr ? gst_structure_copy(reply) : nullptr,
                                                 [](GstStructure* owned) {
                                                   if (owned != nullptr) gst_structure_free(owned);
                                                 });
        const std::shared_ptr<void> alive = waiting->alive.lock();
        if (alive == nullptr) return;
        waiting->self->context_.thread.post(waiting->alive, [then = waiting->then, copy] { then(copy.get()); });
      },
      std::make_unique<Waiting>(Waiting{this, alive_, std::move(then)}).release(),
      [](gpointer data) { delete static_cast<Waiting*>(data); });
  g_signal_emit_by_name(webrtc_, signal, argument, promise);
  gst_promise_unref(promise);
}

void PeerConnection::sendOffer() {
  offering_ = true;
  promise("create-offer", nullptr, [this](const GstStructure* reply) { onDescriptionMade(reply, "offer"); });
}

void PeerConnection::onDescriptionMade(const GstStructure* reply, const char* field) {
  GstWebRTCSessionDescription* made = nullptr;
  if (reply != nullptr) gst_structure_get(reply, field, GST_TYPE_WEBRTC_SESSION_DESCRIPTION, &made, nullptr);
  if (made == nullptr) return fail(std::string("no ") + field + " could be made");
  const Description owned(made);
  std::string sdp = takeText(gst_sdp_message_as_text(made->sdp));
  if (!offering_) sdp = answeringPassively(sdp);
  const Description local = makeDescription(made->type, sdp);
  if (local == nullptr) return fail("a description that was made cannot be read");
  if (offering_ && layers_.size() > 1) sdp = withLayers(sdp);
  g_signal_emit_by_name(webrtc_, "set-local-description", local.get(), nullptr);
  if (!offering_) sdp = namingReporter(sdp, transport_.reporter);
  if (link_ != nullptr) link_->sendDescription(sdp);
}

// GStreamer has paired the first layer's source with one that repeats it, if that is wanted at all.
std::string PeerConnection::withLayers(const std::string& offer) {
  transport_.repeating = repeatingSources(offer);
  if (transport_.repeating.contains(layers_.front())) {
    for (auto source = layers_.begin() + 1; source != layers_.end(); ++source) {
      transport_.repeating[*source] = static_cast<uint32_t>(g_random_int_range(1, G_MAXINT32));
    }
  }
  return offeringLayers(offer, layers_, transport_.repeating);
}

void PeerConnection::onRemoteDescription(const std::string& sdp) {
  if (const std::string refused = offering_ ? refusedMedia(sdp) : ""; !refused.empty()) {
    return fail("the room takes no " + refused + " of the codec that is sent");
  }
  const Description remote = makeDescription(offering_ ? GST_WEBRTC_SDP_TYPE_ANSWER : GST_WEBRTC_SDP_TYPE_OFFER,
                                             withoutFullIntraRequests(sdp));
  if (remote == nullptr) return fail("the service sent a description that cannot be read");
  promise("set-remote-description", remote.get(), [this](const GstStructure* reply) {
    if (reply != nullptr && gst_structure_has_field(reply, "error")) {
      return fail("the service's description was not accepted");
    }
    if (offering_) return;
    promise("create-answer", nullptr, [this](const GstStructure* made) { onDescriptionMade(made, "answer"); });
  });
}

void PeerConnection::onRemoteCandidate(unsigned line, const std::string& candidate) {
  if (webrtc_ != nullptr) g_signal_emit_by_name(webrtc_, "add-ice-candidate", line, candidate.c_str());
}

void PeerConnection::onStateChanged(int state) {
  if (state == GST_WEBRTC_PEER_CONNECTION_STATE_CONNECTED && !std::exchange(connected_, true)) {
    patience_.reset();
    listener_.onPeerConnected();
  }
  if (state == GST_WEBRTC_PEER_CONNECTION_STATE_FAILED) fail("the media connection to the service failed");
}

void PeerConnection::onMessage(GstMessage* message) {
  if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_LATENCY) gst_bin_recalculate_latency(GST_BIN(pipeline_.get()));
  if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) fail(readFault(message).text);
}

void PeerConnection::requestStatistics(std::function<void(const GstStructure*)> answer) {
  if (!failed_) promise("get-stats", nullptr, std::move(answer));
}

}  // namespace corvane::rtc
