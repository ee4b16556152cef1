#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace kelvane {

// A request as it came: its head with the empty line, and as much of a body as the head announces.
struct RawRequest {
  std::string head;
  std::string body;
};

// The server's end of one connection. Everything returns false, soon, when the other end is gone or the server stops.
class RawPeer {
 public:
  RawPeer(int socket, int stop, std::string base) : myBase(std::move(base)), mySocket(socket), myStop(stop) {}

  // "http://127.0.0.1:PORT", for redirects.
  const std::string& base() const { return myBase; }
  // Where a size is asked for, the body is counted and not kept.
  bool read(RawRequest& request, std::uint64_t* size = nullptr);
  bool send(std::string_view bytes);
  // Sends the same without an end.
  bool sendForever(std::string_view bytes);
  // Sends byte by byte with a pause before each.
  bool drip(std::string_view bytes, int milliseconds);
  // Waits until the other end is gone, reading nothing.
  void stall();
  // Closes in a way that the other end sees as an error.
  void reset();

 private:
  bool waitFor(short events, int milliseconds = -1);

  std::string myBase;
  int mySocket;
  int myStop;
  // What has been read beyond a request.
  std::string myRest;
};

// An HTTP server on loopback that does with each connection what it is told to, however wrong; the connection is closed
// afterwards. Each has a thread of its own.
class RawServer {
 public:
  using Behaviour = std::function<void(RawPeer&)>;

  explicit RawServer(Behaviour behaviour);
  ~RawServer();
  RawServer(const RawServer&) = delete;
  RawServer& operator=(const RawServer&) = delete;

  const std::string& base() const { return myBase; }
  // How many connections there have been.
  int connections() const { return myConnections; }

 private:
  void acceptAll();

  Behaviour myBehaviour;
  // Set by what makes the listener.
  std::string myBase;
  int myListener;
  int myStop[2];
  std::atomic<int> myConnections = 0;
  std::list<std::thread> myPeers;
  std::thread myThread;
};

// A whole answer with the length of its body.
std::string answer(std::string_view status, std::string_view body, std::string_view headers = {});

// An address on loopback at which nobody listens.
std::string refusingBase();

}  // namespace kelvane
