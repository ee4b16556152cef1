#include "Platform/Foundation/URLContents.h"

#include <memory>
#include <utility>
#include <vector>

#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/NSURLError.h"
#include "Platform/Foundation/PropertyList.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/URLTransfer.h"

namespace kelvane {
namespace {

Ref<NSError> failure(NSURLErrorCode code, TextView description, const Ref<NSError>& underlying = nullptr) {
  return NSError::errorWithDescription(NSURLErrorDomain, code, description, underlying);
}

class ToFile final : public URLTransfer::Listener {
 public:
  ToFile(const std::string& path, const URLProgressCall& progress)
      : myWriter(path, SystemCalls::system(), NewFileAccess::Customary), myProgress(progress) {}

  bool receive(std::string_view bytes) override { return !myWriter.append(bytes); }
  bool progress(const URLProgress& progress) override { return !myProgress || myProgress(progress); }
  std::error_code commit() { return myWriter.commit(); }

 private:
  AtomicFileWriter myWriter;
  const URLProgressCall& myProgress;
};

Ref<NSError> unreadable(const std::error_code& error, const Text& path) {
  const bool isForbidden = error == std::errc::permission_denied;
  return failure(isForbidden ? NSURLErrorNoPermissionsToReadFile : NSURLErrorFileDoesNotExist,
                 u"The file can’t be read.", NSError::errorWithSystemError(error, path));
}

// A file is read in the way that a request's body is.
Ref<NSError> readFileAt(const Text& path, const URLLimits& limits, URLTransfer::Listener& listener) {
  RequestBody file;
  if (const auto error = file.appendFile(fileSystemRepresentation(path))) return unreadable(error, path);
  if (file.length() > limits.receivedBytes)
    return failure(NSURLErrorDataLengthExceedsMaximum, u"The file is longer than is allowed.");
  RequestBodyReader reader(file);
  std::vector<char> buffer(std::size_t{256} << 10U);
  URLProgress progress;
  progress.bytesToReceive = file.length();
  for (;;) {
    std::size_t count = 0;
    if (const auto error = reader.read(buffer.data(), buffer.size(), count)) return unreadable(error, path);
    if (count == 0) return nullptr;
    if (!listener.receive({buffer.data(), count}))
      return failure(NSURLErrorCannotWriteToFile, u"The contents could not be written.");
    progress.receivedBytes += count;
    if (!listener.progress(progress)) return failure(NSURLErrorCancelled, u"The transfer was cancelled.");
  }
}

Ref<NSError> load(const Ref<NSURL>& url, const URLLimits& limits, URLTransfer::Listener& listener) {
  if (url && url->isFileURL()) return readFileAt(url->path().value_or(Text()), limits, listener);
  const NSURLRequest request = {.URL = url, .limits = limits, .failsOnErrorStatus = true};
  const auto transfer = URLTransfer::make(request, listener, URLTransfer::Kind::Blocking);
  return transfer ? transfer->perform() : failure(NSURLErrorBadURL, u"The URL can’t be used.");
}

}  // namespace

Ref<NSData> dataWithContentsOfURL(const Ref<NSURL>& url, Ref<NSError>* error, const URLLimits& limits) {
  URLTransfer::WholeAnswer contents;
  const Ref<NSError> reason = load(url, limits, contents);
  if (!reason) return std::make_shared<NSData>(contents.take());
  if (error) *error = reason;
  return nullptr;
}

Ref<NSDictionary> dictionaryWithContentsOfURL(const Ref<NSURL>& url, const URLLimits& limits) {
  const Ref<NSData> data = dataWithContentsOfURL(url, nullptr, limits);
  if (!data) return nullptr;
  return as<NSDictionary>(
      readPropertyList({reinterpret_cast<const char*>(data->bytes().data()), data->bytes().size()}).root);
}

Ref<NSError> saveContentsOfURL(const Ref<NSURL>& url, const std::string& path, const URLLimits& limits,
                               const URLProgressCall& progress) {
  ToFile file(path, progress);
  if (Ref<NSError> error = load(url, limits, file)) return error;
  const std::error_code error = file.commit();
  if (!error) return nullptr;
  return failure(NSURLErrorCannotWriteToFile, u"The contents could not be written.",
                 NSError::errorWithSystemError(error, textFromFileSystem(path)));
}

}  // namespace kelvane
