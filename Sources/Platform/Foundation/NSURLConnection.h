#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSURLRequest.h"

namespace kelvane {

class NSURLConnection;

// Hears how a connection fares, on the thread that started it, from its run loop. Each operation may cancel or destroy
// the connection, start others and run the loop. Exactly one of the last two comes, as the last of all, unless the
// connection is cancelled or destroyed before; after that nothing comes any more.
class KELVANE_EXPORT NSURLConnectionDelegate {
 public:
  virtual ~NSURLConnectionDelegate();

  // connection:didSendBodyData:totalBytesWritten:totalBytesExpectedToWrite:  How far the upload has come.
  virtual void didSendBodyData(NSURLConnection& connection, std::uint64_t totalBytesWritten,
                               std::uint64_t totalBytesExpectedToWrite);
  // connection:didReceiveData:  The next bytes of the answer, which live as long as the call.
  virtual void didReceiveData(NSURLConnection& connection, std::string_view data);
  // connection:didFailWithError:
  virtual void didFailWithError(NSURLConnection& connection, const Ref<NSError>& error);
  // connectionDidFinishLoading:
  virtual void connectionDidFinishLoading(NSURLConnection& connection);
};

// A request on its way. Its thread's run loop drives it, connections to servers are kept for the thread's next
// requests. Answers are not unpacked, cookies not kept. For the thread that started it.
//
// ```cpp
// Ref<NSError> error;
// const NSURLRequest request{.URL = NSURL::URLWithString(u"https://example.org/")};
// if (const Ref<NSData> page = NSURLConnection::sendSynchronousRequest(request, &error))
//   std::cout << page->length() << " bytes\n";
// else
//   std::cerr << utf8(error->localizedDescription()) << '\n';
// ```
class KELVANE_EXPORT NSURLConnection {
 public:
  // sendSynchronousRequest:returningResponse:error:  Sends the request and waits for the whole answer: its body. Nil
  // when it fails, and `error`, which may be null, tells why. The run loop is not run meanwhile.
  static Ref<NSData> sendSynchronousRequest(const NSURLRequest& request, Ref<NSError>* error);

  // connectionWithRequest:delegate:  Starts the request; nothing is called before the run loop runs. Null when the
  // address cannot be parsed, or a header holds a line end. `delegate` must outlive the connection.
  static std::unique_ptr<NSURLConnection> connectionWithRequest(const NSURLRequest& request,
                                                                NSURLConnectionDelegate& delegate);
  // Cancels.
  ~NSURLConnection();
  NSURLConnection(const NSURLConnection&) = delete;
  NSURLConnection& operator=(const NSURLConnection&) = delete;

  // cancel  Ends the request without telling the delegate. Nothing when it has ended.
  void cancel();

 private:
  class Exchange;

  explicit NSURLConnection(std::shared_ptr<Exchange> exchange);

  std::shared_ptr<Exchange> myExchange;
};

}  // namespace kelvane
