#include "Platform/Foundation/NSURLConnection.h"

#include <string>
#include <utility>

#include "Platform/Foundation/NSURLError.h"
#include "Platform/Foundation/URLLoader.h"
#include "Platform/Foundation/URLTransfer.h"

namespace kelvane {
NSURLConnectionDelegate::~NSURLConnectionDelegate() = default;
void NSURLConnectionDelegate::didSendBodyData(NSURLConnection&, std::uint64_t, std::uint64_t) {}
void NSURLConnectionDelegate::didReceiveData(NSURLConnection&, std::string_view) {}
void NSURLConnectionDelegate::didFailWithError(NSURLConnection&, const Ref<NSError>&) {}
void NSURLConnectionDelegate::connectionDidFinishLoading(NSURLConnection&) {}

// What the loader knows of a connection. Lives on while the delegate is called, whatever that does to the connection.
class NSURLConnection::Exchange final : public URLLoader::Client, private URLTransfer::Listener {
 public:
  explicit Exchange(NSURLConnectionDelegate& delegate) : myDelegate(&delegate), myLoader(URLLoader::current()) {}

  bool makeTransfer(const NSURLRequest& request) {
    myTransfer = URLTransfer::make(request, *this, URLTransfer::Kind::Background);
    return myTransfer != nullptr;
  }
  void setConnection(NSURLConnection& connection) { myConnection = &connection; }

  void cancel() {
    myDelegate = nullptr;
    if (const auto loader = myLoader.lock()) loader->stop(*this);
  }

  URLTransfer& transfer() override { return *myTransfer; }

  void end(const Ref<NSError>& error) override {
    myHasEnded = true;
    myError = error;
  }

  // The delegate is gone after each call that has cancelled.
  void deliver() override {
    myIsAnnounced = false;
    if (myDelegate && myProgress.sentBytes > myToldBytes) {
      myToldBytes = myProgress.sentBytes;
      myDelegate->didSendBodyData(*myConnection, myProgress.sentBytes, myProgress.bytesToSend);
    }
    if (myDelegate && !myReceived.empty()) {
      const std::string received = std::exchange(myReceived, {});
      myDelegate->didReceiveData(*myConnection, received);
    }
    if (!myDelegate || !myHasEnded) return;
    NSURLConnectionDelegate& delegate = *std::exchange(myDelegate, nullptr);
    if (myError)
      delegate.didFailWithError(*myConnection, myError);
    else
      delegate.connectionDidFinishLoading(*myConnection);
  }

 private:
  bool receive(std::string_view bytes) override {
    myReceived.append(bytes);
    announce();
    return true;
  }

  bool progress(const URLProgress& progress) override {
    if (progress.sentBytes > myProgress.sentBytes) announce();
    myProgress = progress;
    return true;
  }

  void announce() {
    if (myIsAnnounced) return;
    myIsAnnounced = true;
    if (const auto loader = myLoader.lock()) loader->announce(*this);
  }

  NSURLConnection* myConnection = nullptr;
  NSURLConnectionDelegate* myDelegate;
  std::weak_ptr<URLLoader> myLoader;
  std::unique_ptr<URLTransfer> myTransfer;
  // What the delegate has not heard of.
  std::string myReceived;
  URLProgress myProgress;
  std::uint64_t myToldBytes = 0;
  bool myIsAnnounced = false;
  bool myHasEnded = false;
  Ref<NSError> myError;
};

Ref<NSData> NSURLConnection::sendSynchronousRequest(const NSURLRequest& request, Ref<NSError>* error) {
  URLTransfer::WholeAnswer answer;
  const auto transfer = URLTransfer::make(request, answer, URLTransfer::Kind::Blocking);
  const Ref<NSError> reason =
      transfer ? transfer->perform()
               : NSError::errorWithDescription(NSURLErrorDomain, NSURLErrorBadURL, u"The URL can’t be used.");
  if (!reason) return std::make_shared<NSData>(answer.take());
  if (error) *error = reason;
  return nullptr;
}

std::unique_ptr<NSURLConnection> NSURLConnection::connectionWithRequest(const NSURLRequest& request,
                                                                        NSURLConnectionDelegate& delegate) {
  const auto exchange = std::make_shared<Exchange>(delegate);
  if (!exchange->makeTransfer(request)) return nullptr;
  std::unique_ptr<NSURLConnection> connection(new NSURLConnection(exchange));
  exchange->setConnection(*connection);
  URLLoader::current()->start(exchange);
  return connection;
}

NSURLConnection::NSURLConnection(std::shared_ptr<Exchange> exchange) : myExchange(std::move(exchange)) {}

NSURLConnection::~NSURLConnection() { cancel(); }

void NSURLConnection::cancel() { myExchange->cancel(); }

}  // namespace kelvane
