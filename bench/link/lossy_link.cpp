// Loaded before a process's other libraries, it stands between the process's UDP sockets and the machine's: a network
// that loses, delays, reorders and is narrow. Described by CORVANE_BENCH_LINK, words of the form name=number:
//   loss     per cent of the packets lost, each way
//   delay    milliseconds that what is sent takes longer
//   jitter   milliseconds, up to which each packet takes longer still, so that they overtake each other
//   rate     kbit/s that can be sent; what would wait longer than `queue` milliseconds (300) is lost
#include <dlfcn.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr size_t kDescriptors = 65536;

template <class Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

struct Packet {
  int socket = -1;
  std::vector<char> data;
  std::vector<char> address;
};

class Link {
 public:
  static Link& instance() {
    static auto* const link = new Link;  // outlives the process's last thread
    return *link;
  }

  void open(int descriptor) { set(descriptor, true); }
  void close(int descriptor) {
    if (!isOurs(descriptor)) return;
    set(descriptor, false);
    const std::lock_guard lock(mutex_);
    std::erase_if(waiting_, [descriptor](const auto& entry) { return entry.second.socket == descriptor; });
  }
  bool isOurs(int descriptor) const {
    return descriptor >= 0 && static_cast<size_t>(descriptor) < kDescriptors &&
           sockets_[static_cast<size_t>(descriptor)];
  }

  bool loses() {
    const std::lock_guard lock(mutex_);
    return chance();
  }

  /// Whether the link has taken the message over; otherwise it is to be sent as it is.
  bool take(int socket, const msghdr& message) {
    const std::lock_guard lock(mutex_);
    if (chance()) return true;
    if (delay_ <= 0 && jitter_ <= 0 && rate_ <= 0) return false;
    Packet packet = {socket, {}, {}};
    for (size_t part = 0; part < message.msg_iovlen; ++part) {
      const auto* bytes = static_cast<const char*>(message.msg_iov[part].iov_base);
      packet.data.insert(packet.data.end(), bytes, bytes + message.msg_iov[part].iov_len);
    }
    if (message.msg_name != nullptr) {
      const auto* bytes = static_cast<const char*>(message.msg_name);
      packet.address.assign(bytes, bytes + message.msg_namelen);
    }
    const Clock::time_point now = Clock::now();
    Clock::time_point due = now;
    if (rate_ > 0) {
      free_ = std::max(free_, now);
      if (Milliseconds(free_ - now).count() > queue_) return true;
      free_ += duration(static_cast<double>(packet.data.size()) * 8 / rate_);
      due = free_;
    }
    due += duration(delay_ + jitter_ * uniform_(random_));
    waiting_.emplace(due, std::move(packet));
    changed_.notify_one();
    return true;
  }

 private:
  Link() {
    const char* text = getenv("CORVANE_BENCH_LINK");
    const std::pair<const char*, double*> words[] = {
        {"loss=", &loss_}, {"delay=", &delay_}, {"jitter=", &jitter_}, {"rate=", &rate_}, {"queue=", &queue_}};
    for (const auto& [name, value] : words) {
      const char* found = text != nullptr ? strstr(text, name) : nullptr;
      if (found != nullptr) *value = strtod(found + strlen(name), nullptr);
    }
    if (delay_ > 0 || jitter_ > 0 || rate_ > 0) std::thread([this] { run(); }).detach();
  }

  static Clock::duration duration(double milliseconds) {
    return std::chrono::duration_cast<Clock::duration>(Milliseconds(milliseconds));
  }

  void set(int descriptor, bool ours) {
    if (descriptor >= 0 && static_cast<size_t>(descriptor) < kDescriptors) {
      sockets_[static_cast<size_t>(descriptor)] = ours;
    }
  }

  bool chance() { return loss_ > 0 && uniform_(random_) * 100 < loss_; }

  void run() {
    std::unique_lock lock(mutex_);
    for (;;) {
      if (waiting_.empty()) {
        changed_.wait(lock);
        continue;
      }
      const Clock::time_point due = waiting_.begin()->first;
      if (Clock::now() < due) {
        changed_.wait_until(lock, due);
        continue;
      }
      // Sent under the lock: a socket cannot be closed meanwhile.
      const Packet packet = std::move(waiting_.extract(waiting_.begin()).mapped());
      const auto* address = packet.address.empty() ? nullptr : packet.address.data();
      send_(packet.socket, packet.data.data(), packet.data.size(), MSG_DONTWAIT | MSG_NOSIGNAL,
            reinterpret_cast<const sockaddr*>(address), static_cast<socklen_t>(packet.address.size()));
    }
  }

  double loss_ = 0;
  double delay_ = 0;
  double jitter_ = 0;
  double rate_ = 0;
  double queue_ = 300;
  decltype(sendto)* send_ = next<decltype(sendto)>("sendto");
  std::array<std::atomic<bool>, kDescriptors> sockets_ = {};
  std::mutex mutex_;
  std::condition_variable changed_;
  std::multimap<Clock::time_point, Packet> waiting_;
  Clock::time_point free_;
  std::mt19937 random_{4711};
  std::uniform_real_distribution<double> uniform_{0, 1};
};

ssize_t sizeOf(const msghdr& message) {
  size_t size = 0;
  for (size_t part = 0; part < message.msg_iovlen; ++part) size += message.msg_iov[part].iov_len;
  return static_cast<ssize_t>(size);
}

}  // namespace

#define INTERPOSED extern "C" __attribute__((visibility("default")))

INTERPOSED int socket(int domain, int type, int protocol) noexcept {
  static auto* const original = next<decltype(socket)>("socket");
  const int made = original(domain, type, protocol);
  const bool is_udp = (domain == AF_INET || domain == AF_INET6) && (type & 0xf) == SOCK_DGRAM;
  if (is_udp) Link::instance().open(made);
  return made;
}

INTERPOSED int close(int descriptor) {
  static auto* const original = next<decltype(close)>("close");
  Link::instance().close(descriptor);
  return original(descriptor);
}

INTERPOSED ssize_t sendmsg(int descriptor, const msghdr* message, int flags) {
  static auto* const original = next<decltype(sendmsg)>("sendmsg");
  Link& link = Link::instance();
  if (link.isOurs(descriptor) && link.take(descriptor, *message)) return sizeOf(*message);
  return original(descriptor, message, flags);
}

INTERPOSED int sendmmsg(int descriptor, mmsghdr* messages, unsigned int count, int flags) {
  static auto* const original = next<decltype(sendmmsg)>("sendmmsg");
  if (!Link::instance().isOurs(descriptor)) return original(descriptor, messages, count, flags);
  for (unsigned int index = 0; index < count; ++index) {
    const ssize_t sent = sendmsg(descriptor, &messages[index].msg_hdr, flags);
    if (sent < 0) return index > 0 ? static_cast<int>(index) : -1;
    messages[index].msg_len = static_cast<unsigned int>(sent);
  }
  return static_cast<int>(count);
}

INTERPOSED ssize_t sendto(int descriptor, const void* data, size_t size, int flags, const sockaddr* address,
                          socklen_t length) {
  static auto* const original = next<decltype(sendto)>("sendto");
  if (!Link::instance().isOurs(descriptor)) return original(descriptor, data, size, flags, address, length);
  iovec part = {const_cast<void*>(data), size};
  msghdr message = {};
  message.msg_name = const_cast<sockaddr*>(address);
  message.msg_namelen = length;
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  return sendmsg(descriptor, &message, flags);
}

INTERPOSED ssize_t recvmsg(int descriptor, msghdr* message, int flags) {
  static auto* const original = next<decltype(recvmsg)>("recvmsg");
  const bool is_ours = Link::instance().isOurs(descriptor);
  const msghdr asked = *message;
  for (;;) {
    const ssize_t size = original(descriptor, message, flags);
    if (size < 0 || !is_ours || !Link::instance().loses()) return size;
    *message = asked;
  }
}

INTERPOSED ssize_t recvfrom(int descriptor, void* data, size_t size, int flags, sockaddr* address, socklen_t* length) {
  static auto* const original = next<decltype(recvfrom)>("recvfrom");
  const bool is_ours = Link::instance().isOurs(descriptor);
  const socklen_t asked = length != nullptr ? *length : 0;
  for (;;) {
    const ssize_t got = original(descriptor, data, size, flags, address, length);
    if (got < 0 || !is_ours || !Link::instance().loses()) return got;
    if (length != nullptr) *length = asked;
  }
}

INTERPOSED int recvmmsg(int descriptor, mmsghdr* messages, unsigned int count, int flags, timespec* timeout) {
  static auto* const original = next<decltype(recvmmsg)>("recvmmsg");
  if (!Link::instance().isOurs(descriptor)) return original(descriptor, messages, count, flags, timeout);
  // One at a time, so that those which are lost leave no gap in the array.
  unsigned int got = 0;
  for (; got < count; ++got) {
    const ssize_t size = recvmsg(descriptor, &messages[got].msg_hdr, got == 0 ? flags : flags | MSG_DONTWAIT);
    if (size < 0) break;
    messages[got].msg_len = static_cast<unsigned int>(size);
  }
  return got > 0 ? static_cast<int>(got) : -1;
}
