#include "linux/linux_loopback_listener.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <thread>

namespace sodam {

struct LinuxLoopbackListener::Shared {
  LoopbackListener::Events events;
  int listenFd = -1;
  std::array<int, 2> wake{-1, -1};
  std::atomic<bool> stopped{false};
  std::atomic<int> open{0};

  ~Shared() {
    for (int fd : {listenFd, wake[0], wake[1]})
      if (fd >= 0) ::close(fd);
  }
};

namespace {

using Shared = LinuxLoopbackListener::Shared;

// Binds 127.0.0.1 at an ephemeral port; the port, or -1.
int listenOnLoopback(int& fd) {
  fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (fd < 0) return -1;
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = 0;
  socklen_t length = sizeof address;
  if (::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
      ::listen(fd, 8) != 0 ||
      ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0)
    return -1;
  return ntohs(address.sin_port);
}

void sendAll(int fd, const std::string& bytes) {
  std::size_t sent = 0;
  while (sent < bytes.size()) {
    const ssize_t n = ::send(fd, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (n <= 0) return;
    sent += static_cast<std::size_t>(n);
  }
}

void serve(const std::shared_ptr<Shared>& shared, int fd) {
  LoopbackRequest request;
  std::array<char, LoopbackRequest::limitBytes> chunk{};
  auto next = LoopbackRequest::Next::read;
  while (next == LoopbackRequest::Next::read) {
    pollfd wait{fd, POLLIN, 0};
    const int ready = ::poll(&wait, 1, LinuxLoopbackListener::idleSeconds * 1000);
    const ssize_t n = ready > 0 ? ::recv(fd, chunk.data(), chunk.size(), 0) : -1;
    next = n > 0 ? request.feed(std::string_view(chunk.data(), static_cast<std::size_t>(n)), false)
                 : request.feed({}, true);
  }
  if (next == LoopbackRequest::Next::answer) sendAll(fd, shared->events.exchange(request));
  ::shutdown(fd, SHUT_RDWR);
  ::close(fd);
}

void accept(const std::shared_ptr<Shared>& shared) {
  while (!shared->stopped) {
    std::array<pollfd, 2> waits{pollfd{shared->listenFd, POLLIN, 0},
                                pollfd{shared->wake[0], POLLIN, 0}};
    if (::poll(waits.data(), waits.size(), -1) < 0 || waits[1].revents != 0) break;
    const int fd = ::accept4(shared->listenFd, nullptr, nullptr, SOCK_CLOEXEC);
    if (fd < 0) continue;
    if (shared->stopped || shared->open >= LinuxLoopbackListener::connectionLimit) {
      ::close(fd);
      continue;
    }
    ++shared->open;
    std::thread([shared, fd] {
      serve(shared, fd);
      --shared->open;
    }).detach();
  }
}

}  // namespace

LinuxLoopbackListener::~LinuxLoopbackListener() {
  stop();
}

void LinuxLoopbackListener::start(Events events) {
  stop();
  auto shared = std::make_shared<Shared>();
  shared->events = std::move(events);
  const int port = listenOnLoopback(shared->listenFd);
  if (port < 0 || ::pipe2(shared->wake.data(), O_CLOEXEC) != 0) {
    shared->events.ready(std::nullopt);
    return;
  }
  shared_ = shared;
  std::thread([shared, port] {
    shared->events.ready(port);
    accept(shared);
  }).detach();
}

void LinuxLoopbackListener::stop() {
  if (!shared_) return;
  shared_->stopped = true;
  const char byte = 1;
  [[maybe_unused]] const auto written = ::write(shared_->wake[1], &byte, 1);
  shared_.reset();
}

}  // namespace sodam
