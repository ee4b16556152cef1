#include "Platform/Foundation/URLTransfer.h"

#include <curl/curl.h>

#include <algorithm>
#include <limits>
#include <new>

#include "Platform/Foundation/NSURLError.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/URLAddress.h"

namespace kelvane {
namespace {

// All headers of a transfer, those before redirects included: what no honest server comes near.
constexpr std::uint64_t mostHeaderBytes = std::uint64_t{256} << 10U;
// Larger ones gain nothing, and leave the processor's cache.
constexpr long uploadBufferBytes = 256L << 10U;
constexpr long receiveBufferBytes = 64L << 10U;

CURL* newHandle() {
  // Once, and before there is any handle; never undone, since other parts of the process may use the library.
  [[maybe_unused]] static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
  CURL* handle = curl_easy_init();
  if (!handle) throw std::bad_alloc();
  return handle;
}

// The thread's handles for blocking transfers, each with the connections that it keeps. More than one only while a
// progress call makes transfers of its own.
class KeptHandles {
 public:
  ~KeptHandles() {
    areGone = true;
    for (CURL* handle : myHandles) curl_easy_cleanup(handle);
  }

  // Also for the destructors that run at a thread's end after this one's.
  static CURL* take() {
    if (areGone || ofThread().myHandles.empty()) return newHandle();
    CURL* handle = ofThread().myHandles.back();
    ofThread().myHandles.pop_back();
    return handle;
  }

  static void giveBack(CURL* handle) noexcept {
    constexpr std::size_t most = 4;
    if (areGone || ofThread().myHandles.size() == most) return curl_easy_cleanup(handle);
    curl_easy_reset(handle);
    ofThread().myHandles.push_back(handle);
  }

 private:
  static KeptHandles& ofThread() {
    thread_local KeptHandles handles;
    return handles;
  }

  KeptHandles() { myHandles.reserve(4); }

  static thread_local bool areGone;
  std::vector<CURL*> myHandles;
};

thread_local bool KeptHandles::areGone = false;

struct Meaning {
  NSURLErrorCode code;
  TextView description;
};

Meaning meaningOf(CURLcode code) {
  switch (code) {
    case CURLE_URL_MALFORMAT:
      return {NSURLErrorBadURL, u"The URL can’t be used."};
    case CURLE_OPERATION_TIMEDOUT:
      return {NSURLErrorTimedOut, u"The request timed out."};
    case CURLE_UNSUPPORTED_PROTOCOL:
      return {NSURLErrorUnsupportedURL, u"The URL is neither http nor https."};
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
      return {NSURLErrorCannotFindHost, u"A server with the specified name could not be found."};
    case CURLE_COULDNT_CONNECT:
      return {NSURLErrorCannotConnectToHost, u"Could not connect to the server."};
    case CURLE_PARTIAL_FILE:
    case CURLE_GOT_NOTHING:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
      return {NSURLErrorNetworkConnectionLost, u"The connection was lost."};
    case CURLE_TOO_MANY_REDIRECTS:
      return {NSURLErrorHTTPTooManyRedirects, u"Too many redirects."};
    case CURLE_SSL_CONNECT_ERROR:
    // There are no certificates on this machine to hold the server's against.
    case CURLE_SSL_CACERT_BADFILE:
      return {NSURLErrorSecureConnectionFailed, u"A secure connection could not be made."};
    case CURLE_PEER_FAILED_VERIFICATION:
      return {NSURLErrorServerCertificateUntrusted, u"The server’s certificate is not trusted."};
    case CURLE_HTTP_RETURNED_ERROR:
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_BAD_CONTENT_ENCODING:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
      return {NSURLErrorBadServerResponse, u"The server’s answer makes no sense, or is an error."};
    case CURLE_OUT_OF_MEMORY:
      // Also what a single endless header comes to.
      return {NSURLErrorDataLengthExceedsMaximum, u"The answer takes more memory than there is, or is allowed."};
    default:
      return {NSURLErrorUnknown, u"The transfer failed."};
  }
}

// Where the transfer got to, redirects followed.
bool isAtHTTPAddress(CURL* handle) {
  const char* address = nullptr;
  if (curl_easy_getinfo(handle, CURLINFO_EFFECTIVE_URL, &address) != CURLE_OK || !address) return false;
  return curl_strnequal(address, "http:", 5) != 0 || curl_strnequal(address, "https:", 6) != 0;
}

long milliseconds(std::chrono::milliseconds time) { return static_cast<long>(std::max<std::int64_t>(time.count(), 1)); }

std::uint64_t counted(curl_off_t count) { return static_cast<std::uint64_t>(std::max<curl_off_t>(count, 0)); }

bool isHeaderText(std::string_view text) { return text.find_first_of(std::string_view("\r\n\0", 3)) == text.npos; }

}  // namespace

URLTransfer::Listener::~Listener() = default;

bool URLTransfer::WholeAnswer::receive(std::string_view bytes) {
  myBytes.insert(myBytes.end(), bytes.begin(), bytes.end());
  return true;
}

// What the library calls. Nothing may be thrown through it.
struct URLTransfer::Callbacks {
  static constexpr std::size_t refused = 0;

  template <class Work>
  static bool guarded(URLTransfer& transfer, Work work) noexcept {
    try {
      return work();
    } catch (const std::bad_alloc&) {
      transfer.myReason = Reason::NoMemory;
    } catch (...) {
      transfer.myException = std::current_exception();
    }
    return false;
  }

  static std::size_t receive(char* bytes, std::size_t, std::size_t size, void* self) noexcept {
    auto& transfer = *static_cast<URLTransfer*>(self);
    if (size == 0) return 0;
    transfer.myReceivedBytes += size;
    if (transfer.myReceivedBytes > transfer.myRequest.limits.receivedBytes) {
      transfer.myReason = Reason::TooMuch;
      return refused;
    }
    const bool taken = guarded(transfer, [&] {
      if (transfer.myListener.receive({bytes, size})) return true;
      transfer.myReason = Reason::Refused;
      return false;
    });
    return taken ? size : refused;
  }

  static std::size_t receiveHeader(char* bytes, std::size_t, std::size_t size, void* self) noexcept {
    auto& transfer = *static_cast<URLTransfer*>(self);
    const std::string_view line(bytes, size);
    if (line.starts_with("HTTP/")) transfer.myIsHeadWhole = false;
    if (line == "\r\n" || line == "\n") transfer.myIsHeadWhole = true;
    transfer.myHeaderBytes += size;
    if (transfer.myHeaderBytes <= mostHeaderBytes) return size;
    transfer.myReason = Reason::TooMuch;
    return refused;
  }

  static std::size_t send(char* buffer, std::size_t, std::size_t size, void* self) noexcept {
    auto& transfer = *static_cast<URLTransfer*>(self);
    std::size_t count = 0;
    if (const auto error = transfer.myReader->read(buffer, size, count)) {
      transfer.myReason = Reason::BodyUnreadable;
      transfer.myBodyError = error;
      return CURL_READFUNC_ABORT;
    }
    return count;
  }

  // A redirect, or a kept connection that turns out to be closed, wants the body once more.
  static int seek(void* self, curl_off_t offset, int origin) noexcept {
    if (offset != 0 || origin != SEEK_SET) return CURL_SEEKFUNC_CANTSEEK;
    static_cast<URLTransfer*>(self)->myReader->rewind();
    return CURL_SEEKFUNC_OK;
  }

  // Each request begins with the body's first byte. The library forgets that where a kept connection that turned out to
  // be closed has taken nothing of what was read for it: the next one would wait for the rest in vain.
  static int beginRequest(void* self, char*, char*, int, int) noexcept {
    static_cast<URLTransfer*>(self)->myReader->rewind();
    return CURL_PREREQFUNC_OK;
  }

  // Also counts what `receive` never sees, such as the bodies of redirects.
  static int progress(void* self, curl_off_t toReceive, curl_off_t received, curl_off_t toSend,
                      curl_off_t sent) noexcept {
    auto& transfer = *static_cast<URLTransfer*>(self);
    if (counted(received) > transfer.myRequest.limits.receivedBytes) {
      transfer.myReason = Reason::TooMuch;
      return 1;
    }
    if (transfer.isIdleForTooLong(counted(sent) + counted(received))) {
      transfer.myReason = Reason::Idle;
      return 1;
    }
    URLProgress& last = transfer.myProgress;
    if (counted(sent) == last.sentBytes && counted(received) == last.receivedBytes) return 0;
    last = {counted(sent), counted(toSend), counted(received), std::nullopt};
    if (toReceive > 0) last.bytesToReceive = counted(toReceive);
    const bool goesOn = guarded(transfer, [&] {
      if (transfer.myListener.progress(last)) return true;
      transfer.myReason = Reason::Cancelled;
      return false;
    });
    return goesOn ? 0 : 1;
  }
};

std::unique_ptr<URLTransfer> URLTransfer::make(const NSURLRequest& request, Listener& listener, Kind kind) {
  if (!request.URL || !isHeaderText(request.HTTPMethod) || request.HTTPMethod.empty()) return nullptr;
  std::unique_ptr<URLTransfer> transfer(new URLTransfer(request, listener, kind));
  if (!transfer->setAddress() || !transfer->setHeaders()) return nullptr;
  transfer->setCallbacks();
  transfer->setBody();
  transfer->setLimits();
  return transfer;
}

URLTransfer::URLTransfer(const NSURLRequest& request, Listener& listener, Kind kind)
    : myRequest(request),
      myListener(listener),
      myKind(kind),
      myHandle(kind == Kind::Blocking ? KeptHandles::take() : newHandle()) {}

URLTransfer::~URLTransfer() {
  if (myKind == Kind::Blocking)
    KeptHandles::giveBack(myHandle);
  else
    curl_easy_cleanup(myHandle);
  curl_url_cleanup(static_cast<CURLU*>(myAddress));
  curl_slist_free_all(static_cast<curl_slist*>(myHeaders));
}

// Parsed here and not by the transfer: what cannot be parsed is never started.
bool URLTransfer::setAddress() {
  const auto text = asciiAddress(*myRequest.URL);
  if (!text) return false;
  CURLU* address = curl_url();
  if (!address) throw std::bad_alloc();
  myAddress = address;
  if (curl_url_set(address, CURLUPART_URL, text->c_str(), CURLU_NON_SUPPORT_SCHEME) != CURLUE_OK) return false;
  curl_easy_setopt(myHandle, CURLOPT_CURLU, address);
  curl_easy_setopt(myHandle, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(myHandle, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
  return true;
}

bool URLTransfer::setHeaders() {
  // Without this the library would wait for the server's leave before it sends a long body.
  curl_slist* headers = curl_slist_append(nullptr, "Expect:");
  myHeaders = headers;
  for (const auto& [name, value] : myRequest.HTTPHeaderFields) {
    if (!isHeaderText(name) || !isHeaderText(value) || name.empty()) return false;
    // A semicolon stands for an empty value, which would remove the header.
    if (!curl_slist_append(headers, (value.empty() ? name + ';' : name + ": " + value).c_str())) throw std::bad_alloc();
  }
  curl_easy_setopt(myHandle, CURLOPT_HTTPHEADER, headers);
  return true;
}

void URLTransfer::setCallbacks() {
  // No signals: neither alarms for look-ups, nor handlers that are set and taken back around each transfer.
  curl_easy_setopt(myHandle, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(myHandle, CURLOPT_WRITEFUNCTION, &Callbacks::receive);
  curl_easy_setopt(myHandle, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(myHandle, CURLOPT_HEADERFUNCTION, &Callbacks::receiveHeader);
  curl_easy_setopt(myHandle, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(myHandle, CURLOPT_XFERINFOFUNCTION, &Callbacks::progress);
  curl_easy_setopt(myHandle, CURLOPT_XFERINFODATA, this);
  curl_easy_setopt(myHandle, CURLOPT_NOPROGRESS, 0L);
  curl_easy_setopt(myHandle, CURLOPT_ERRORBUFFER, myDetails);
  curl_easy_setopt(myHandle, CURLOPT_BUFFERSIZE, receiveBufferBytes);
}

void URLTransfer::setBody() {
  const std::string& method = myRequest.HTTPMethod;
  if (method == "GET") return;
  if (method == "HEAD") {
    curl_easy_setopt(myHandle, CURLOPT_NOBODY, 1L);
    return;
  }
  static const RequestBody none;
  const RequestBody& body = myRequest.HTTPBody ? *myRequest.HTTPBody : none;
  curl_easy_setopt(myHandle, CURLOPT_POST, 1L);
  if (method != "POST") curl_easy_setopt(myHandle, CURLOPT_CUSTOMREQUEST, method.c_str());
  curl_easy_setopt(myHandle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.length()));
  if (body.isInMemory()) {
    // Goes out together with the headers where it is short. The request keeps the bytes.
    curl_easy_setopt(myHandle, CURLOPT_POSTFIELDS, body.bytes().empty() ? "" : body.bytes().data());
    return;
  }
  myReader = std::make_unique<RequestBodyReader>(body);
  curl_easy_setopt(myHandle, CURLOPT_READFUNCTION, &Callbacks::send);
  curl_easy_setopt(myHandle, CURLOPT_READDATA, this);
  curl_easy_setopt(myHandle, CURLOPT_SEEKFUNCTION, &Callbacks::seek);
  curl_easy_setopt(myHandle, CURLOPT_SEEKDATA, this);
  curl_easy_setopt(myHandle, CURLOPT_PREREQFUNCTION, &Callbacks::beginRequest);
  curl_easy_setopt(myHandle, CURLOPT_PREREQDATA, this);
  curl_easy_setopt(myHandle, CURLOPT_UPLOAD_BUFFERSIZE, uploadBufferBytes);
}

// The library's own measure is a mean of several seconds.
bool URLTransfer::isIdleForTooLong(std::uint64_t bodyBytes) {
  const auto now = std::chrono::steady_clock::now();
  const std::uint64_t moved = bodyBytes + myHeaderBytes;
  if (moved != myMovedBytes || myLastMove == std::chrono::steady_clock::time_point()) {
    myMovedBytes = moved;
    myLastMove = now;
  }
  return now - myLastMove > myRequest.limits.idleTime;
}

void URLTransfer::setLimits() {
  const URLLimits& limits = myRequest.limits;
  curl_easy_setopt(myHandle, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(myHandle, CURLOPT_MAXREDIRS, static_cast<long>(std::min(limits.redirects, 10000U)));
  curl_easy_setopt(myHandle, CURLOPT_CONNECTTIMEOUT_MS, milliseconds(limits.connectTime));
  curl_easy_setopt(myHandle, CURLOPT_TIMEOUT_MS, milliseconds(limits.totalTime));
  // Never true, but makes the library look at the transfer, and so tell its progress, once a second.
  curl_easy_setopt(myHandle, CURLOPT_LOW_SPEED_LIMIT, 1L);
  curl_easy_setopt(myHandle, CURLOPT_LOW_SPEED_TIME, std::numeric_limits<int>::max() / 2000L);
  if (myRequest.failsOnErrorStatus) curl_easy_setopt(myHandle, CURLOPT_FAILONERROR, 1L);
}

Ref<NSError> URLTransfer::perform() {
  const CURLcode code = curl_easy_perform(myHandle);
  if (myException) std::rethrow_exception(myException);
  return errorFor(code);
}

Ref<NSError> URLTransfer::errorFor(int code) const {
  // The library takes an answer that breaks off within its headers for one without a body.
  if (code == CURLE_OK && !myIsHeadWhole) code = CURLE_PARTIAL_FILE;
  if (code == CURLE_OK) return nullptr;
  const auto inDomain = [](const Meaning& meaning, const Ref<NSError>& underlying = nullptr) {
    return NSError::errorWithDescription(NSURLErrorDomain, meaning.code, meaning.description, underlying);
  };
  switch (myReason) {
    case Reason::TooMuch:
      return inDomain({NSURLErrorDataLengthExceedsMaximum, u"The answer is longer than is allowed."});
    case Reason::Refused:
      return inDomain({NSURLErrorCannotWriteToFile, u"The answer could not be written."});
    case Reason::Cancelled:
      return inDomain({NSURLErrorCancelled, u"The transfer was cancelled."});
    case Reason::BodyUnreadable:
      return inDomain(
          {NSURLErrorRequestBodyStreamExhausted, u"A file to be sent could not be read, or became shorter."},
          NSError::errorWithSystemError(myBodyError));
    case Reason::NoMemory:
      return NSError::errorWithSystemError(std::make_error_code(std::errc::not_enough_memory));
    case Reason::Idle:
      return inDomain(meaningOf(CURLE_OPERATION_TIMEDOUT));
    case Reason::None:
      break;
  }
  auto result = static_cast<CURLcode>(code);
  // The library says the same of an answer that is no HTTP as of an address that is not.
  if (result == CURLE_UNSUPPORTED_PROTOCOL && isAtHTTPAddress(myHandle)) result = CURLE_WEIRD_SERVER_REPLY;
  const TextView domain = u"NSURLTransferErrorDomain";
  const Text details = textFromUTF8(myDetails[0] != '\0' ? myDetails : curl_easy_strerror(result));
  return inDomain(meaningOf(result), NSError::errorWithDescription(domain, code, details));
}

}  // namespace kelvane
