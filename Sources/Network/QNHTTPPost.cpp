#include "Network/QNHTTPPost.h"

#include <typeinfo>
#include <utility>

#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/RequestBody.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Utilities/QNLogger.h"

namespace kelvane {
namespace {

Ref<NSURL> urlOf(const std::optional<Text>& target) { return target ? NSURL::URLWithString(*target) : nullptr; }

const NSDictionary& orEmpty(const Ref<NSDictionary>& form) {
  static const NSDictionary& empty = *new NSDictionary();
  return form ? *form : empty;
}

void appendField(RequestBody& body, const std::string& name, const NSObject& value) {
  if (typeid(value) != typeid(NSURL)) {
    body.append("Content-Disposition: form-data; name=\"" + name + "\"\r\n\r\n");
    body.append(utf8(value.description()));
    return;
  }
  const auto& url = static_cast<const NSURL&>(value);
  if (!url.isFileURL()) return;
  body.append("Content-Disposition: form-data; name=\"" + name + "\"; filename=\"" + utf8(url.lastPathComponent()) +
              "\"\r\nContent-Type: application/octet-stream\r\n\r\n");
  // What cannot be read adds nothing.
  body.appendFile(fileSystemRepresentation(url.path().value_or(Text())));
}

RequestBody bodyOf(const NSDictionary& form, const std::string& boundary) {
  RequestBody body;
  for (const auto& [name, value] : form) {
    body.append("--" + boundary + "\r\n");
    appendField(body, utf8(name), *value);
    body.append("\r\n");
  }
  body.append("--" + boundary + "--\r\n");
  return body;
}

}  // namespace

QNHTTPPostDelegate::~QNHTTPPostDelegate() = default;
void QNHTTPPostDelegate::postStarted(QNHTTPPost&) {}
void QNHTTPPostDelegate::postProgressed(QNHTTPPost&, std::uint64_t, std::uint64_t) {}
void QNHTTPPostDelegate::postFinished(QNHTTPPost&) {}
void QNHTTPPostDelegate::postFailed(QNHTTPPost&, const Ref<NSError>&) {}

// What the connection calls. After a call to the delegate the post may be gone, and this with it.
class QNHTTPPost::Listener final : public NSURLConnectionDelegate {
 public:
  explicit Listener(QNHTTPPost& post) : myPost(post) {}

  void didSendBodyData(NSURLConnection&, std::uint64_t written, std::uint64_t expected) override {
    if (myPost.delegate) myPost.delegate->postProgressed(myPost, written, expected);
  }
  // connection:didReceiveData:
  void didReceiveData(NSURLConnection&, std::string_view data) override { myPost.responseData.append(data); }
  // connection:didFailWithError:
  void didFailWithError(NSURLConnection&, const Ref<NSError>& error) override {
    const auto ended = myPost.giveUpConnection();
    if (myPost.delegate) myPost.delegate->postFailed(myPost, error);
  }
  // connectionDidFinishLoading:
  void connectionDidFinishLoading(NSURLConnection&) override {
    const auto ended = myPost.giveUpConnection();
    if (myPost.delegate) myPost.delegate->postFinished(myPost);
  }

 private:
  QNHTTPPost& myPost;
};

QNHTTPPost::QNHTTPPost(std::optional<TextView> theTarget, QNHTTPPostDelegate* theDelegate)
    : myListener(std::make_unique<Listener>(*this)), delegate(theDelegate), target(theTarget) {}

QNHTTPPost::~QNHTTPPost() { cancel(); }

// Before the delegate hears of the end: it may post again, and that one is not to be given up.
std::unique_ptr<NSURLConnection> QNHTTPPost::giveUpConnection() { return std::exchange(connection, nullptr); }

NSURLRequest QNHTTPPost::request(const NSDictionary& form) const {
  const std::string boundary = utf8(NSStringExtensions::uniqueString());
  return {.URL = urlOf(target),
          .HTTPMethod = "POST",
          .HTTPHeaderFields = {{"Content-Type", "multipart/form-data; boundary=" + boundary}},
          .HTTPBody = std::make_shared<const RequestBody>(bodyOf(form, boundary)),
          .limits = myLimits};
}

std::optional<Text> QNHTTPPost::post(const Ref<NSDictionary>& form) {
  Ref<NSError> error;
  const Ref<NSData> data = NSURLConnection::sendSynchronousRequest(request(orEmpty(form)), &error);
  if (data) return textFromUTF8({reinterpret_cast<const char*>(data->bytes().data()), data->length()});
  QNLogger::sharedLogger().error(
      __LINE__, __FILE__, "-[QNHTTPPost post:]",
      format(u"Post failed. Error: %ld, Description: %@", error->code(), error->localizedDescription()));
  return std::nullopt;
}

void QNHTTPPost::postAndNotify(const Ref<NSDictionary>& form) {
  const NSURLRequest request = this->request(orEmpty(form));
  QNLogger::sharedLogger().info(__LINE__, __FILE__, "-[QNHTTPPost postAndNotify:]",
                                format(u"Posting %lu bytes to %@", request.HTTPBody->length(), target));
  cancel();
  connection = NSURLConnection::connectionWithRequest(request, *myListener);
  if (!delegate) return;
  if (connection)
    delegate->postStarted(*this);
  else
    delegate->postFailed(*this, std::make_shared<NSError>(u"Failed to establish connection", 0));
}

Ref<NSData> QNHTTPPost::generateFormData(const Ref<NSDictionary>& form, TextView forBoundary) const {
  const RequestBody body = bodyOf(orEmpty(form), utf8(forBoundary));
  std::vector<std::uint8_t> bytes(body.length());
  RequestBodyReader reader(body);
  std::size_t length = 0;
  std::size_t count = 0;
  // A file that becomes unreadable meanwhile has the bytes that could be read.
  do {
    if (reader.read(reinterpret_cast<char*>(bytes.data()) + length, bytes.size() - length, count)) reader.skipPiece();
    length += count;
  } while (length < bytes.size() && !reader.isAtEnd());
  bytes.resize(length);
  return std::make_shared<NSData>(std::move(bytes));
}

void QNHTTPPost::cancel() { connection = nullptr; }

Text QNHTTPPost::response() const { return textFromUTF8(responseData); }

}  // namespace kelvane
