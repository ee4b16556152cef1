// Posts to a server on loopback, in a process of its own, that throws away what it gets.

#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "Network/QNHTTPPost.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Support/RawServer.h"
#include "Support/Row.h"
#include "Support/TemporaryFolder.h"

#ifdef BENCH_CURL
#include <curl/curl.h>
#endif

extern char** environ;

namespace kelvane::bench {
namespace {

constexpr std::size_t smallPosts = 200;
constexpr std::uintmax_t fileBytes = std::uintmax_t{1} << 30U;

[[noreturn]] void serve(int out) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const RawServer server([](RawPeer& peer) {
    RawRequest request;
    std::uint64_t size = 0;
    while (peer.read(request, &size) && peer.send(answer("200 OK", "done"))) {
    }
  });
  const std::string base = server.base() + "\n";
  if (write(out, base.data(), base.size()) < 0) _exit(1);
  for (;;) pause();
}

// The server's address; it ends with this process.
const std::string& address() {
  static const std::string base = [] {
    int ends[2];
    if (pipe(ends) < 0) throw std::runtime_error("no pipe");
    const pid_t child = fork();
    if (child == 0) serve(ends[1]);
    std::string line;
    for (char byte = 0; read(ends[0], &byte, 1) == 1 && byte != '\n';) line += byte;
    return line + "/";
  }();
  return base;
}

const std::string& largeFile() {
  static const TemporaryFolder folder;
  static const std::string path = [] {
    std::string made = folder.path("large");
    const std::string megabyte(std::size_t{1} << 20U, 'x');
    std::ofstream file(made, std::ios::binary);
    for (std::uintmax_t size = 0; size < fileBytes; size += megabyte.size()) file << megabyte;
    return made;
  }();
  return path;
}

Text postFile() {
  const auto form =
      NSDictionary::dictionaryWithEntries({{u"file", NSURL::fileURLWithPath(textFromFileSystem(largeFile()))}});
  return QNHTTPPost(textFromUTF8(address()), nullptr).post(form).value_or(u"failed");
}

// As the tool's users call it.
Text curlFile() {
  const std::string out = largeFile() + ".answer";
  std::string arguments[] = {"curl", "-s", "-o", out, "-F", "file=@" + largeFile(), address()};
  char* pointers[std::size(arguments) + 1] = {};
  for (std::size_t i = 0; i < std::size(arguments); ++i) pointers[i] = arguments[i].data();
  pid_t child = 0;
  if (posix_spawnp(&child, "curl", nullptr, nullptr, pointers, environ) != 0) return u"no curl";
  int status = 0;
  waitpid(child, &status, 0);
  std::ifstream file(out);
  std::string answer;
  file >> answer;
  return textFromUTF8(answer);
}

Text postSmall() {
  const Text target = textFromUTF8(address());
  const auto form = NSDictionary::dictionaryWithEntries({{u"name", box(u"Ann")}, {u"text", box(u"All is well.")}});
  Text answers;
  for (std::size_t i = 0; i < smallPosts; ++i) answers = QNHTTPPost(target, nullptr).post(form).value_or(u"failed");
  return answers;
}

#ifdef BENCH_CURL
std::size_t keep(char* bytes, std::size_t, std::size_t size, void* text) {
  static_cast<std::string*>(text)->append(bytes, size);
  return size;
}

Text curlSmall() {
  static CURL* const handle = curl_easy_init();
  std::string answer;
  for (std::size_t i = 0; i < smallPosts; ++i) {
    answer.clear();
    curl_mime* form = curl_mime_init(handle);
    for (const auto& [name, value] : {std::pair("name", "Ann"), std::pair("text", "All is well.")}) {
      curl_mimepart* part = curl_mime_addpart(form);
      curl_mime_name(part, name);
      curl_mime_data(part, value, CURL_ZERO_TERMINATED);
    }
    curl_easy_setopt(handle, CURLOPT_URL, address().c_str());
    curl_easy_setopt(handle, CURLOPT_MIMEPOST, form);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, keep);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &answer);
    curl_easy_perform(handle);
    curl_mime_free(form);
  }
  return textFromUTF8(answer);
}
#endif

const Subject network([] {
  Row("post, 1 GiB file").elapsed().ours(postFile).peer("curl -F", curlFile).reach(1.3);
  Row("post, small")
      .elapsed()
      .ours(postSmall)
#ifdef BENCH_CURL
      .peer("libcurl", curlSmall)
#endif
      .reach(1.2)
      .per("post", smallPosts);
});

}  // namespace
}  // namespace kelvane::bench
