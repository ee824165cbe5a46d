#include "video/frame_buffers.h"

#include <utility>

namespace corvane {
namespace {

const DestinationBuffer& findOrMake(FrameBuffers::ByStreamType& buffers, std::string_view stream_type) {
  auto found = buffers.find(stream_type);
  if (found == buffers.end()) found = buffers.try_emplace(std::string(stream_type)).first;
  return found->second;
}

}  // namespace

DestinationBuffer::DestinationBuffer(napi_env env, napi_value buffer, int32_t width, int32_t height)
    : env_(env), width_(width), height_(height) {
  if (width == 0 && height == 0) return;
  if (napi_create_reference(env, buffer, 1, &buffer_) != napi_ok) buffer_ = nullptr;
}

DestinationBuffer::DestinationBuffer(DestinationBuffer&& other) noexcept
    : env_(other.env_),
      buffer_(std::exchange(other.buffer_, nullptr)),
      width_(std::exchange(other.width_, 0)),
      height_(std::exchange(other.height_, 0)) {}

DestinationBuffer& DestinationBuffer::operator=(DestinationBuffer&& other) noexcept {
  if (this == &other) return *this;
  // Only the buffer's own thread may drop it; after a registration in another environment it stays until its own ends.
  if (isOf(other.env_)) drop();
  env_ = other.env_;
  buffer_ = std::exchange(other.buffer_, nullptr);
  width_ = std::exchange(other.width_, 0);
  height_ = std::exchange(other.height_, 0);
  return *this;
}

DestinationBuffer::~DestinationBuffer() {
  drop();
}

void DestinationBuffer::drop() {
  if (buffer_ != nullptr) napi_delete_reference(env_, buffer_);
  buffer_ = nullptr;
}

DestinationBuffer::Memory DestinationBuffer::memory(napi_env env) const {
  if (buffer_ == nullptr || env != env_) return {};
  napi_value buffer = nullptr;
  void* data = nullptr;
  size_t size = 0;
  if (napi_get_reference_value(env, buffer_, &buffer) != napi_ok || buffer == nullptr ||
      napi_get_buffer_info(env, buffer, &data, &size) != napi_ok || data == nullptr) {
    return {};
  }
  return {static_cast<uint8_t*>(data), size};
}

void FrameBuffers::setLocal(std::string stream_type, DestinationBuffer buffer) {
  local_[std::move(stream_type)] = std::move(buffer);
}

void FrameBuffers::setRemote(std::string user_id, std::string stream_type, DestinationBuffer buffer) {
  remote_[std::move(user_id)][std::move(stream_type)] = std::move(buffer);
}

void FrameBuffers::forget(napi_env env) {
  const auto registered_there = [env](const auto& entry) { return entry.second.isOf(env); };
  std::erase_if(local_, registered_there);
  for (auto& user : remote_) std::erase_if(user.second, registered_there);
  std::erase_if(remote_, [](const auto& user) { return user.second.empty(); });
}

const DestinationBuffer& FrameBuffers::local(std::string_view stream_type) {
  return findOrMake(local_, stream_type);
}

const DestinationBuffer& FrameBuffers::remote(std::string_view user_id, std::string_view stream_type) {
  auto user = remote_.find(user_id);
  if (user == remote_.end()) user = remote_.try_emplace(std::string(user_id)).first;
  return findOrMake(user->second, stream_type);
}

}  // namespace corvane
