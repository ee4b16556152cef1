#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Foundation/NSURL.h"
#include "Platform/Foundation/RequestBody.h"
#include "Platform/Foundation/URLLimits.h"

namespace kelvane {

// What is asked of a server. Addresses are http and https.
struct NSURLRequest {
  Ref<NSURL> URL;
  std::string HTTPMethod = "GET";
  // Names and values. The length of the body is told without being asked for.
  std::vector<std::pair<std::string, std::string>> HTTPHeaderFields = {};
  // Sent by any method but GET and HEAD.
  std::shared_ptr<const RequestBody> HTTPBody = nullptr;
  URLLimits limits = {};
  // Whether a status of 400 or above is an error and not an answer like any other.
  bool failsOnErrorStatus = false;
};

// How far a transfer has come, in bytes of the two bodies.
struct URLProgress {
  std::uint64_t sentBytes = 0;
  std::uint64_t bytesToSend = 0;
  std::uint64_t receivedBytes = 0;
  // What the server has announced.
  std::optional<std::uint64_t> bytesToReceive = std::nullopt;
};

// Hears of progress, on the thread that waits for the transfer; false ends it, with NSURLErrorCancelled.
using URLProgressCall = std::function<bool(const URLProgress&)>;

}  // namespace kelvane
