#include "double_server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "support/text.h"

namespace sodam::testing {

namespace {

// Reads one request: its header block and the body its Content-Length names.
std::optional<std::pair<std::string, std::string>> readRequest(int fd) {
  std::string bytes;
  std::array<char, 4096> chunk{};
  for (;;) {
    const auto end = bytes.find("\r\n\r\n");
    if (end != std::string::npos) {
      const std::string header = bytes.substr(0, end);
      std::size_t length = 0;
      for (const char* key : {"Content-Length:", "content-length:"})
        if (auto at = header.find(key); at != std::string::npos)
          length = std::strtoul(header.c_str() + at + 15, nullptr, 10);
      if (bytes.size() >= end + 4 + length) return std::pair{header, bytes.substr(end + 4, length)};
    }
    const ssize_t n = ::recv(fd, chunk.data(), chunk.size(), 0);
    if (n <= 0) return std::nullopt;
    bytes.append(chunk.data(), static_cast<std::size_t>(n));
  }
}

HttpRequest parse(const std::string& header, std::string body, int port) {
  HttpRequest request;
  const auto lineEnd = header.find("\r\n");
  const std::string line = header.substr(0, lineEnd);
  const auto blank = line.find(' ');
  request.method = line.substr(0, blank);
  request.url = format("http://127.0.0.1:%d", port) +
                line.substr(blank + 1, line.find(' ', blank + 1) - blank - 1);
  std::size_t start = lineEnd == std::string::npos ? header.size() : lineEnd + 2;
  while (start < header.size()) {
    const auto end = std::min(header.find("\r\n", start), header.size());
    const std::string field = header.substr(start, end - start);
    if (const auto colon = field.find(':'); colon != std::string::npos)
      request.headers.emplace_back(field.substr(0, colon),
                                   field.substr(field.find_first_not_of(' ', colon + 1)));
    start = end + 2;
  }
  request.body = std::move(body);
  return request;
}

}  // namespace

int listenOnLoopback(int& port) {
  const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address);
  ::listen(fd, 16);
  ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
  port = ntohs(address.sin_port);
  return fd;
}

DoubleServer::DoubleServer() {
  listenFd_ = listenOnLoopback(port_);
  [[maybe_unused]] int piped = ::pipe2(wake_.data(), O_CLOEXEC);
  thread_ = std::thread([this] { serve(); });
}

DoubleServer::~DoubleServer() {
  const char byte = 1;
  [[maybe_unused]] auto written = ::write(wake_[1], &byte, 1);
  thread_.join();
  for (int fd : {listenFd_, wake_[0], wake_[1]})
    ::close(fd);
}

void DoubleServer::serve() {
  for (;;) {
    std::array<pollfd, 2> waits{pollfd{listenFd_, POLLIN, 0}, pollfd{wake_[0], POLLIN, 0}};
    if (::poll(waits.data(), waits.size(), -1) < 0 || waits[1].revents != 0) return;
    const int fd = ::accept4(listenFd_, nullptr, nullptr, SOCK_CLOEXEC);
    if (fd < 0) continue;
    answer(fd);
    ::close(fd);
  }
}

void DoubleServer::answer(int fd) {
  auto request = readRequest(fd);
  if (!request) return;
  const HttpResponse response = with([&](CloudDouble& service) {
    return service.handle(parse(request->first, request->second, port_));
  });
  if (response.status == 0) return;
  const std::string bytes = format(
                                "HTTP/1.1 %d Answer\r\nContent-Type: application/json; "
                                "charset=UTF-8\r\nContent-Length: %zu\r\nConnection: close\r\n\r\n",
                                response.status, response.body.size()) +
                            response.body;
  [[maybe_unused]] auto sent = ::send(fd, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

}  // namespace sodam::testing
