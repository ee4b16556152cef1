#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSURLConnection.h"
#include "Platform/Foundation/Text.h"
#include "Platform/Foundation/URLLimits.h"

namespace kelvane {

class QNHTTPPost;

// Hears how a background post fares; a host overrides what it wants to hear. All comes on the thread that has called
// `postAndNotify`. Each operation may cancel or destroy the post, or post again.
class KELVANE_EXPORT QNHTTPPostDelegate {
 public:
  virtual ~QNHTTPPostDelegate();

  // postStarted:  The request has been made and is on its way.
  virtual void postStarted(QNHTTPPost& post);
  // How many bytes of the body have been sent. Comes often for long ones, and maybe never for short ones.
  virtual void postProgressed(QNHTTPPost& post, std::uint64_t sentBytes, std::uint64_t bytesToSend);
  // postFinished:  The whole answer is there.
  virtual void postFinished(QNHTTPPost& post);
  // postFailed:withError:  The request could not be made, or failed on its way.
  virtual void postFailed(QNHTTPPost& post, const Ref<NSError>& withError);
};

// Sends a form, files included, to a web address, as "multipart/form-data" (RFC 7578) by POST.
//
// ```cpp
// const auto form = NSDictionary::dictionaryWithEntries(
//     {{u"message", box(u"Well done")}, {u"log", NSURL::fileURLWithPath(u"/tmp/notebook.log")}});
// const std::optional<Text> answer = QNHTTPPost(u"http://example.org/feedback", nullptr).post(form);
// ```
//
// A value that is a file URL is sent as the file's contents under the last component of its path, a URL of another kind
// as an empty part, and any other value as its description. Subclasses of NSURL are other values. Names go out as they
// are, without escapes. Files are read while they are sent: how long each is stands fast when the post begins, one that
// becomes shorter meanwhile fails the post, and what it grows by is not sent.
//
// The status of the answer is not looked at: an error page is an answer like any other. Redirects to http and https are
// followed, as a GET without the form where the server wants that (301, 302, 303).
//
// For one thread; a background post needs that thread's run loop (NSRunLoop.h) to be run.
class KELVANE_EXPORT QNHTTPPost {
 public:
  // initWithTarget:delegate:  Posts go to the address `target`. `delegate` may be null, and must outlive the post
  // otherwise.
  QNHTTPPost(std::optional<TextView> target, QNHTTPPostDelegate* delegate);
  // Cancels.
  ~QNHTTPPost();
  QNHTTPPost(const QNHTTPPost&) = delete;
  QNHTTPPost& operator=(const QNHTTPPost&) = delete;

  // What the next posts may ask for at most.
  const URLLimits& limits() const { return myLimits; }
  void setLimits(const URLLimits& limits) { myLimits = limits; }

  // post:  Sends the form and waits for the answer, which it returns, read as UTF-8. Nil, and an error in the log, when
  // the request fails. A nil form is an empty one. The delegate hears nothing.
  std::optional<Text> post(const Ref<NSDictionary>& form);

  // postAndNotify:  Starts to send the form and returns at once; the delegate hears the rest. An address that cannot be
  // used is told to it before the return, by an error of the domain "Failed to establish connection", code 0. A post
  // that is still running is cancelled first.
  void postAndNotify(const Ref<NSDictionary>& form);

  // generateFormData:forBoundary:  The bytes that a post with this boundary sends, files and all.
  //
  //   --BOUNDARY                                                                   for each field, in the form's order
  //   Content-Disposition: form-data; name="FIELD"; filename="LAST COMPONENT"      file name and type only for files
  //   Content-Type: application/octet-stream
  //
  //   DESCRIPTION OR CONTENTS
  //   --BOUNDARY--                                                                 at the end
  //
  // A URL of another kind has neither headers nor the empty line behind them. Lines end with CR LF. A file that cannot
  // be read has no bytes.
  Ref<NSData> generateFormData(const Ref<NSDictionary>& form, TextView forBoundary) const;

  // cancel  Ends the background post, if there is one. The delegate hears nothing of it, nor anything else.
  void cancel();

  // response  What background posts have received so far, all of them one after another, read as UTF-8.
  Text response() const;

 private:
  class Listener;

  NSURLRequest request(const NSDictionary& form) const;
  std::unique_ptr<NSURLConnection> giveUpConnection();

  std::unique_ptr<Listener> myListener;
  std::unique_ptr<NSURLConnection> connection;
  QNHTTPPostDelegate* delegate;
  std::string responseData;
  std::optional<Text> target;
  URLLimits myLimits;
};

}  // namespace kelvane
