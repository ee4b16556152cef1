#pragma once

#include <chrono>
#include <cstdint>
#include <exception>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSURLRequest.h"

namespace kelvane {

// One exchange with a server, as the transfer library does it; its types stay in URLTransfer.cpp and URLLoader.cpp.
// NSURLConnection and URLContents.h are what hosts use. One thread.
class URLTransfer {
 public:
  // Hears of the answer from within the library: it must not start or end transfers.
  class Listener {
   public:
    virtual ~Listener();
    // False ends the transfer with NSURLErrorCannotWriteToFile.
    virtual bool receive(std::string_view bytes) = 0;
    // False ends it with NSURLErrorCancelled.
    virtual bool progress(const URLProgress&) { return true; }
  };

  // Keeps the answer's bytes.
  class WholeAnswer final : public Listener {
   public:
    bool receive(std::string_view bytes) override;
    std::vector<std::uint8_t> take() { return std::move(myBytes); }

   private:
    std::vector<std::uint8_t> myBytes;
  };

  // Who waits: the caller of `perform`, or a URLLoader.
  enum class Kind { Blocking, Background };

  // `listener` must outlive the transfer. Null when the address cannot be parsed, or a header or the method is none.
  static std::unique_ptr<URLTransfer> make(const NSURLRequest& request, Listener& listener, Kind kind);
  ~URLTransfer();
  URLTransfer(const URLTransfer&) = delete;
  URLTransfer& operator=(const URLTransfer&) = delete;

  // Does it all; nil, or what went wrong. What the listener throws comes out here. The connection is kept for the next
  // one of the thread.
  Ref<NSError> perform();

  // For the loader: the library's handle, and what its result code means.
  void* handle() const { return myHandle; }
  Ref<NSError> errorFor(int code) const;

 private:
  struct Callbacks;
  enum class Reason { None, TooMuch, Refused, Cancelled, Idle, BodyUnreadable, NoMemory };

  URLTransfer(const NSURLRequest& request, Listener& listener, Kind kind);
  bool setAddress();
  bool setHeaders();
  void setCallbacks();
  void setBody();
  void setLimits();
  bool isIdleForTooLong(std::uint64_t bodyBytes);

  NSURLRequest myRequest;
  Listener& myListener;
  Kind myKind;
  void* myHandle;
  void* myAddress = nullptr;
  void* myHeaders = nullptr;
  std::unique_ptr<RequestBodyReader> myReader;
  std::uint64_t myReceivedBytes = 0;
  std::uint64_t myHeaderBytes = 0;
  // Whether the empty line behind the last answer's headers has come.
  bool myIsHeadWhole = true;
  std::uint64_t myMovedBytes = 0;
  std::chrono::steady_clock::time_point myLastMove;
  URLProgress myProgress;
  Reason myReason = Reason::None;
  std::exception_ptr myException;
  std::error_code myBodyError;
  // Where the library writes what went wrong, in so many bytes at most.
  char myDetails[256] = {};
};

}  // namespace kelvane
