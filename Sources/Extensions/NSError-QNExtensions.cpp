#include "Extensions/NSError-QNExtensions.h"

#include <vector>

#include "Platform/Foundation/Boxing.h"

namespace kelvane {
namespace {

// More than is printed. User information that can still be changed may even lead in a circle.
constexpr std::size_t mostErrors = 1024;

// What is told of one error of the chain, `underlying` being what is told of the one behind it; nil without user
// information.
Ref<NSDictionary> detailsOf(const NSError& error, const Ref<NSObject>& underlying) {
  if (!error.userInfo()) return nullptr;
  auto details =
      std::make_shared<NSMutableDictionary>(NSDictionary::Entries(error.userInfo()->begin(), error.userInfo()->end()));
  details->setObject(box(error.domain()), u"domain");
  details->setObject(box(error.code()), u"code");
  if (underlying) details->setObject(underlying, NSUnderlyingErrorKey);
  return details;
}

}  // namespace

std::optional<Text> debugDescription(const NSError& receiver) {
  // From the innermost outwards and without recursion: who makes the chain decides how long it is. Dictionaries stay
  // objects up to the end, since a text within a text would be quoted once more at each step.
  std::vector<Ref<NSError>> chain;
  for (Ref<NSError> error = receiver.underlyingError(); error && chain.size() < mostErrors;
       error = error->underlyingError())
    chain.push_back(error);
  Ref<NSObject> underlying;
  for (; !chain.empty(); chain.pop_back()) {
    underlying = detailsOf(*chain.back(), underlying);
    if (!underlying) underlying = box(u"(null)");
  }
  const Ref<NSDictionary> details = detailsOf(receiver, underlying);
  if (!details) return std::nullopt;
  return details->description();
}

}  // namespace kelvane
