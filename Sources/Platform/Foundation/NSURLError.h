#pragma once

#include <cstdint>

#include "Platform/Foundation/NSError.h"

namespace kelvane {

// The codes of errors in NSURLErrorDomain that loading gives.
enum NSURLErrorCode : std::int64_t {
  NSURLErrorUnknown = -1,
  NSURLErrorCancelled = -999,
  NSURLErrorBadURL = -1000,
  NSURLErrorTimedOut = -1001,
  NSURLErrorUnsupportedURL = -1002,
  NSURLErrorCannotFindHost = -1003,
  NSURLErrorCannotConnectToHost = -1004,
  NSURLErrorNetworkConnectionLost = -1005,
  NSURLErrorHTTPTooManyRedirects = -1007,
  NSURLErrorRedirectToNonExistentLocation = -1010,
  // The answer is no HTTP, or an error status where only a document is of use.
  NSURLErrorBadServerResponse = -1011,
  // A file of the body could not be read, or has become shorter.
  NSURLErrorRequestBodyStreamExhausted = -1021,
  NSURLErrorFileDoesNotExist = -1100,
  NSURLErrorNoPermissionsToReadFile = -1102,
  // More than the limit.
  NSURLErrorDataLengthExceedsMaximum = -1103,
  NSURLErrorSecureConnectionFailed = -1200,
  NSURLErrorServerCertificateUntrusted = -1202,
  NSURLErrorCannotWriteToFile = -3003,
};

}  // namespace kelvane
