#include "rooms/data_connection.h"

#include <gst/webrtc/webrtc.h>

#include <utility>

namespace corvane::rtc {

DataConnection::DataConnection(EngineContext& context, bool loopback_only, PeerConnection::Listener& listener)
    : context_(context), peer_(context, "messages", loopback_only, listener) {}

DataConnection::~DataConnection() {
  peer_.stop();
  if (channel_ != nullptr) g_signal_handlers_disconnect_by_data(channel_.get(), this);
}

void DataConnection::start(MessageLink& link) {
  link_ = &link;
  peer_.setLink(link);
  if (peer_.webrtc() == nullptr) return peer_.start();
  gst_element_set_state(peer_.pipeline().get(), GST_STATE_READY);  // before that there is nothing to make a channel of
  GstWebRTCDataChannel* channel = nullptr;
  g_signal_emit_by_name(peer_.webrtc(), "create-data-channel", "JanusDataChannel", nullptr, &channel);
  if (channel == nullptr) return peer_.fail("no data channel can be made: GStreamer's sctpdec and sctpenc are needed");
  channel_.reset(channel);
  listenTo(channel);
  const auto on_open = +[](GstWebRTCDataChannel*, gpointer data) {
    auto* self = static_cast<DataConnection*>(data);
    self->context_.thread.post(self->alive_, [self] { self->onOpen(); });
  };
  g_signal_connect(channel, "on-open", G_CALLBACK(on_open), this);
  // What the other side opens lives as long as the pipeline.
  const auto on_channel = +[](GstElement*, GstWebRTCDataChannel* other, gpointer data) {
    static_cast<DataConnection*>(data)->listenTo(other);
  };
  g_signal_connect(peer_.webrtc(), "on-data-channel", G_CALLBACK(on_channel), this);
  peer_.start();
}

void DataConnection::listenTo(GstWebRTCDataChannel* channel) {
  const auto on_text = +[](GstWebRTCDataChannel*, gchar* text, gpointer data) {
    auto* self = static_cast<DataConnection*>(data);
    if (text == nullptr) return;
    self->context_.thread.post(self->alive_, [self, copy = std::string(text)] { self->link_->onChannelText(copy); });
  };
  g_signal_connect(channel, "on-message-string", G_CALLBACK(on_text), this);
}

void DataConnection::onOpen() {
  if (!std::exchange(open_, true)) link_->onChannelOpen();
}

void DataConnection::send(const std::string& text) {
  if (open_) gst_webrtc_data_channel_send_string(channel_.get(), text.c_str());
}

}  // namespace corvane::rtc
