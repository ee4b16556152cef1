#include "Platform/Foundation/URLLoader.h"

#include <curl/curl.h>

#include <chrono>
#include <new>
#include <utility>

namespace kelvane {

URLLoader::Client::~Client() = default;

// What the transfer library asks of a loop.
struct URLLoader::Callbacks {
  static int watch(CURL*, curl_socket_t socket, int what, void* self, void*) noexcept {
    auto& loader = *static_cast<URLLoader*>(self);
    EventLoop& loop = loader.myRunLoop.eventLoop();
    if (what == CURL_POLL_REMOVE) {
      loop.unwatch(socket);
      return 0;
    }
    const unsigned events = ((what & CURL_POLL_IN) != 0 ? EventLoop::Readable : 0U) |
                            ((what & CURL_POLL_OUT) != 0 ? EventLoop::Writable : 0U);
    loop.watch(socket, events, [&loader, socket](unsigned happened) {
      loader.drive(socket, ((happened & EventLoop::Readable) != 0 ? CURL_CSELECT_IN : 0) |
                               ((happened & EventLoop::Writable) != 0 ? CURL_CSELECT_OUT : 0));
    });
    return 0;
  }

  static int setTimer(CURLM*, long milliseconds, void* self) noexcept {
    auto& loader = *static_cast<URLLoader*>(self);
    EventLoop& loop = loader.myRunLoop.eventLoop();
    if (loader.myTimer != 0) loop.cancel(std::exchange(loader.myTimer, 0));
    if (milliseconds < 0) return 0;
    const auto time = EventLoop::Clock::now() + std::chrono::milliseconds(milliseconds);
    loader.myTimer = loop.callAt(time, [&loader] {
      loader.myTimer = 0;
      loader.drive(CURL_SOCKET_TIMEOUT, 0);
    });
    return 0;
  }
};

std::shared_ptr<URLLoader> URLLoader::current() {
  thread_local const auto loader = std::make_shared<URLLoader>();
  return loader;
}

// The run loop is made first and so outlives this at the thread's end.
URLLoader::URLLoader() : myRunLoop(NSRunLoop::currentRunLoop()), myTransfers(curl_multi_init()) {
  if (!myTransfers) throw std::bad_alloc();
  curl_multi_setopt(myTransfers, CURLMOPT_SOCKETFUNCTION, &Callbacks::watch);
  curl_multi_setopt(myTransfers, CURLMOPT_SOCKETDATA, this);
  curl_multi_setopt(myTransfers, CURLMOPT_TIMERFUNCTION, &Callbacks::setTimer);
  curl_multi_setopt(myTransfers, CURLMOPT_TIMERDATA, this);
}

URLLoader::~URLLoader() {
  for (const auto& [handle, client] : myClients) curl_multi_remove_handle(myTransfers, handle);
  curl_multi_cleanup(myTransfers);
  if (myTimer != 0) myRunLoop.eventLoop().cancel(myTimer);
}

void URLLoader::start(std::shared_ptr<Client> client) {
  void* handle = client->transfer().handle();
  myClients.emplace(handle, std::move(client));
  // Only asks for a timer that is due at once: nothing happens before the loop runs.
  curl_multi_add_handle(myTransfers, handle);
}

void URLLoader::stop(Client& client) {
  const auto found = myClients.find(client.transfer().handle());
  if (found == myClients.end()) return;
  curl_multi_remove_handle(myTransfers, found->first);
  myClients.erase(found);
}

void URLLoader::announce(Client& client) { myNews.push_back(myClients.at(client.transfer().handle())); }

void URLLoader::drive(int socket, int events) {
  // What is called in the end may let go of everything.
  const auto self = shared_from_this();
  int running = 0;
  curl_multi_socket_action(myTransfers, socket, events, &running);
  takeEnded();
  deliverNews();
}

void URLLoader::takeEnded() {
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(myTransfers, &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    const CURLcode code = message->data.result;
    const auto found = myClients.find(message->easy_handle);
    const std::shared_ptr<Client> client = found->second;
    curl_multi_remove_handle(myTransfers, found->first);
    myClients.erase(found);
    client->end(client->transfer().errorFor(code));
    myNews.push_back(client);
  }
}

// Outside of the transfer library, which allows no call from within its own.
void URLLoader::deliverNews() {
  while (!myNews.empty()) {
    const std::shared_ptr<Client> client = std::move(myNews.front());
    myNews.pop_front();
    // If this one runs the loop, the others are not to wait for its return.
    if (!myNews.empty()) {
      myRunLoop.performBlock([weak = weak_from_this()] {
        if (const auto loader = weak.lock()) loader->deliverNews();
      });
    }
    client->deliver();
  }
}

}  // namespace kelvane
