#include "Report/Feedback.h"

#include <optional>

#include "Application/WebSite.h"
#include "Network/QNHTTPPost.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSRunLoop.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Report/Output.h"
#include "Report/Printable.h"
#include "Utilities/QNEnvironment.h"

namespace notebook {
namespace {

using kelvane::format;
using kelvane::NSDictionary;
using kelvane::NSError;
using kelvane::QNEnvironment;
using kelvane::QNHTTPPost;
using kelvane::Ref;
using kelvane::Text;

// Prints how a background post fares.
class Teller : public kelvane::QNHTTPPostDelegate {
 public:
  explicit Teller(Output& output) : myOutput(output) {}

  void postStarted(QNHTTPPost&) override { myOutput.writeLine(u"    on its way"); }
  void postFinished(QNHTTPPost& post) override {
    hasArrived = true;
    myOutput.writeLine(u"    " + printable(post.response()));
  }
  void postFailed(QNHTTPPost&, const Ref<NSError>& withError) override {
    myOutput.writeLine(u"    failed: " + printable(withError->localizedDescription()));
  }

  bool hasArrived = false;

 private:
  Output& myOutput;
};

// With the application's log, as a host would send it.
Ref<NSDictionary> feedbackForm() {
  return NSDictionary::dictionaryWithEntries(
      {{u"message", kelvane::box(u"All is well.")},
       {u"log", kelvane::NSURL::fileURLWithPath(QNEnvironment::sharedEnvironment().logFilePath())}});
}

}  // namespace

bool sendFeedback() {
  const WebSite site;
  QNEnvironment& environment = QNEnvironment::sharedEnvironment();
  environment.setSitemapServer(kelvane::textFromUTF8(site.host()));
  const Ref<kelvane::NSObject> none = kelvane::box(u"no such link");
  environment.setLinkToFeedbackPage(environment.linkFromSitemapForKey(u"feedback", none));
  environment.setLinkToShopPage(environment.linkFromSitemapForKey(u"shop", none));
  const std::optional<Text> page = environment.linkToFeedbackPage();

  Output output;
  output.writeLine(format(u"Feedback page: %@", page));
  output.writeLine(format(u"Shop: %@", environment.linkToShopPage()));
  output.writeLine(u"Feedback, waiting for the answer");
  const std::optional<Text> answer = QNHTTPPost(page, nullptr).post(feedbackForm());
  output.writeLine(u"    " + printable(answer.value_or(u"failed")));
  output.writeLine(u"Feedback, in the background");
  Teller teller(output);
  QNHTTPPost post(page, &teller);
  post.postAndNotify(feedbackForm());
  kelvane::NSRunLoop::currentRunLoop().run();
  return output.finish() && answer && teller.hasArrived;
}

}  // namespace notebook
