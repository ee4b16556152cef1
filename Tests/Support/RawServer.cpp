#include "Support/RawServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

namespace kelvane {
namespace {

// A socket bound to a free port of loopback.
int boundSocket(std::string& base) {
  const int number = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  if (number < 0 || ::bind(number, generic, size) < 0 || ::getsockname(number, generic, &size) < 0)
    throw std::runtime_error("no port on loopback");
  base = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port));
  return number;
}

std::size_t announcedLength(const std::string& head) {
  const std::size_t place = head.find("Content-Length: ");
  return place == std::string::npos ? 0 : std::stoul(head.substr(place + 16));
}

}  // namespace

bool RawPeer::waitFor(short events, int milliseconds) {
  pollfd both[] = {{mySocket, events, 0}, {myStop, POLLIN, 0}};
  if (::poll(both, 2, milliseconds) < 0) return false;
  // Without events to wait for, only an end of the other side shows.
  return both[1].revents == 0 && (both[0].revents & (POLLERR | POLLNVAL)) == 0;
}

bool RawPeer::read(RawRequest& request, std::uint64_t* size) {
  request = {};
  std::size_t left = std::string::npos;
  thread_local std::string buffer(std::size_t{1} << 18U, '\0');
  for (;;) {
    const std::size_t end = myRest.find("\r\n\r\n");
    if (left == std::string::npos && end != std::string::npos) {
      request.head = myRest.substr(0, end + 4);
      left = announcedLength(request.head);
      if (size) *size = left;
      myRest.erase(0, end + 4);
    }
    if (left != std::string::npos) {
      const std::size_t taken = std::min(left, myRest.size());
      if (!size) request.body.append(myRest, 0, taken);
      myRest.erase(0, taken);
      left -= taken;
    }
    if (left == 0) return true;
    const ssize_t count = waitFor(POLLIN) ? ::recv(mySocket, buffer.data(), buffer.size(), 0) : 0;
    if (count <= 0) return false;
    myRest.append(buffer, 0, static_cast<std::size_t>(count));
  }
}

bool RawPeer::send(std::string_view bytes) {
  while (!bytes.empty()) {
    if (!waitFor(POLLOUT)) return false;
    const ssize_t count = ::send(mySocket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

bool RawPeer::sendForever(std::string_view bytes) {
  while (send(bytes)) {
  }
  return false;
}

bool RawPeer::drip(std::string_view bytes, int milliseconds) {
  for (const char byte : bytes)
    if (!waitFor(0, milliseconds) || !send({&byte, 1})) return false;
  return true;
}

void RawPeer::stall() { waitFor(POLLRDHUP); }

void RawPeer::reset() {
  const linger hard = {1, 0};
  ::setsockopt(mySocket, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
}

RawServer::RawServer(Behaviour behaviour) : myBehaviour(std::move(behaviour)), myListener(boundSocket(myBase)) {
  if (::listen(myListener, 64) < 0 || ::pipe(myStop) < 0) throw std::runtime_error("no server");
  myThread = std::thread([this] { acceptAll(); });
}

RawServer::~RawServer() {
  ::close(myStop[1]);
  myThread.join();
  for (std::thread& peer : myPeers) peer.join();
  ::close(myStop[0]);
  ::close(myListener);
}

void RawServer::acceptAll() {
  for (;;) {
    pollfd both[] = {{myListener, POLLIN, 0}, {myStop[0], POLLIN, 0}};
    if (::poll(both, 2, -1) < 0 || both[1].revents != 0) return;
    const int socket = ::accept4(myListener, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) continue;
    ++myConnections;
    myPeers.emplace_back([this, socket] {
      RawPeer peer(socket, myStop[0], myBase);
      myBehaviour(peer);
      ::close(socket);
    });
  }
}

std::string answer(std::string_view status, std::string_view body, std::string_view headers) {
  std::string text = "HTTP/1.1 " + std::string(status) + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n";
  return text.append(headers).append("\r\n").append(body);
}

std::string refusingBase() {
  std::string base;
  ::close(boundSocket(base));
  return base;
}

}  // namespace kelvane
