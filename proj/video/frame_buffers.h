// The JavaScript buffers into which local and remote frames are written. JavaScript thread only.
#pragma once

#include <napi.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace corvane {

/// A registered buffer. It is referenced while it is registered and its memory looked up for every frame, so that
/// neither collection nor detachment can leave a dangling pointer. The reference belongs to its environment.
class DestinationBuffer {
 public:
  DestinationBuffer() = default;
  /// No width and no height: a registration that is cleared, without a buffer.
  DestinationBuffer(napi_env env, napi_value buffer, int32_t width, int32_t height);
  DestinationBuffer(DestinationBuffer&& other) noexcept;
  DestinationBuffer& operator=(DestinationBuffer&& other) noexcept;
  ~DestinationBuffer();

  /// Whether it was registered in `env`.
  bool isOf(napi_env env) const { return env_ == env; }
  int32_t width() const { return width_; }    ///< the Y stride of the frames it takes, bytes
  int32_t height() const { return height_; }  ///< rows

  struct Memory {
    uint8_t* data = nullptr;
    size_t size = 0;
  };
  /// The buffer's bytes now; no data for an empty or detached buffer, or one of another environment.
  Memory memory(napi_env env) const;

 private:
  void drop();

  napi_env env_ = nullptr;
  napi_ref buffer_ = nullptr;
  int32_t width_ = 0;
  int32_t height_ = 0;
};

/// The transporter's lock is held during every call.
class FrameBuffers {
 public:
  using ByStreamType = std::map<std::string, DestinationBuffer, std::less<>>;

  void setLocal(std::string stream_type, DestinationBuffer buffer);
  void setRemote(std::string user_id, std::string stream_type, DestinationBuffer buffer);

  /// Drops what was registered in an environment, at its end.
  void forget(napi_env env);

  /// Looks a buffer up; one that is missing is made, empty.
  const DestinationBuffer& local(std::string_view stream_type);
  const DestinationBuffer& remote(std::string_view user_id, std::string_view stream_type);

 private:
  ByStreamType local_;
  std::map<std::string, ByStreamType, std::less<>> remote_;
};

}  // namespace corvane
