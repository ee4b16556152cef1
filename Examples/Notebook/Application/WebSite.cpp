#include "Application/WebSite.h"

#include <httplib.h>

#include <cstddef>
#include <stdexcept>
#include <thread>

namespace notebook {
namespace {

std::string sitemap(const std::string& host) {
  const std::string entry = "<key>feedback</key><string>http://" + host + "/feedback</string>";
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>" + entry +
         "<key>home</key><string>http://" + host + "/</string></dict></plist>";
}

// Tells what has arrived, in one line.
std::string thanks(const httplib::Request& request) {
  std::string text = "Thank you for";
  for (const auto& [name, part] : request.files) {
    text += " " + name;
    if (!part.filename.empty()) text += " (" + part.filename + ", " + std::to_string(part.content.size()) + " bytes)";
  }
  return text;
}

}  // namespace

struct WebSite::Server {
  httplib::Server http;
  std::thread thread;
};

WebSite::WebSite() : myServer(std::make_unique<Server>()) {
  httplib::Server& http = myServer->http;
  http.Get("/sitemap/application.xml", [this](const httplib::Request&, httplib::Response& response) {
    response.set_content(sitemap(myHost), "text/xml");
  });
  http.Post("/feedback", [](const httplib::Request& request, httplib::Response& response) {
    response.set_content(thanks(request), "text/plain");
  });
  // So that nobody has to wait for connections that are kept.
  http.set_keep_alive_max_count(1);
  const int port = http.bind_to_any_port("127.0.0.1");
  if (port < 0) throw std::runtime_error("no port for the web site");
  myHost = "127.0.0.1:" + std::to_string(port);
  myServer->thread = std::thread([this] { myServer->http.listen_after_bind(); });
  // Before that it cannot be stopped.
  while (!http.is_running()) std::this_thread::yield();
}

WebSite::~WebSite() {
  myServer->http.stop();
  myServer->thread.join();
}

}  // namespace notebook
