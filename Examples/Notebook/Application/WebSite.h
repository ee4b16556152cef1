#pragma once

#include <memory>
#include <string>

namespace notebook {

// The maker's web site, as small as it can be, on loopback: a sitemap, and a page that takes feedback. Stands in for a
// real one in the demonstration. Runs until it is destroyed.
class WebSite {
 public:
  // std::runtime_error when there is no port to be had.
  WebSite();
  ~WebSite();
  WebSite(const WebSite&) = delete;
  WebSite& operator=(const WebSite&) = delete;

  // Host and port.
  const std::string& host() const { return myHost; }

 private:
  struct Server;

  std::unique_ptr<Server> myServer;
  std::string myHost;
};

}  // namespace notebook
