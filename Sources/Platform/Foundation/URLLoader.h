#pragma once

#include <deque>
#include <map>
#include <memory>

#include "Platform/Foundation/EventLoop.h"
#include "Platform/Foundation/NSRunLoop.h"
#include "Platform/Foundation/URLTransfer.h"

namespace kelvane {

// A thread's background transfers, driven by its run loop; its connections are kept between them. For that thread.
class URLLoader : public std::enable_shared_from_this<URLLoader> {
 public:
  // Who started a transfer. Hears of it from the run loop, and may then do anything: start, stop, run the loop again.
  class Client {
   public:
    virtual ~Client();
    virtual URLTransfer& transfer() = 0;
    // The transfer is over; nil, or what went wrong. `deliver` follows.
    virtual void end(const Ref<NSError>& error) = 0;
    // The time to tell others what has been announced, or that it has ended.
    virtual void deliver() = 0;
  };

  // The calling thread's. Transfers that are still running when a thread ends are dropped.
  static std::shared_ptr<URLLoader> current();

  URLLoader();
  ~URLLoader();
  URLLoader(const URLLoader&) = delete;
  URLLoader& operator=(const URLLoader&) = delete;

  // Starts the client's transfer and keeps the client until it ends or is stopped.
  void start(std::shared_ptr<Client> client);
  // Nothing for one that has ended. Not from within the transfer's listener.
  void stop(Client& client);
  // Has `deliver` called soon. For the transfer's listener.
  void announce(Client& client);

 private:
  struct Callbacks;

  void drive(int socket, int events);
  void takeEnded();
  void deliverNews();

  NSRunLoop& myRunLoop;
  void* myTransfers;
  EventLoop::Timer myTimer = 0;
  // By handle.
  std::map<void*, std::shared_ptr<Client>> myClients;
  std::deque<std::shared_ptr<Client>> myNews;
};

}  // namespace kelvane
