#include "Extensions/NSError-QNExtensions.h"

#include <vector>

#include "Platform/Foundation/Boxing.h"

namespace kelvane {
namespace {

// One error of the chain, `underlying` being the text of the one behind it.
std::optional<Text> describe(const NSError& error, const Text& underlying) {
  if (!error.userInfo()) return std::nullopt;
  NSDictionary::Entries entries(error.userInfo()->begin(), error.userInfo()->end());
  NSMutableDictionary details(std::move(entries));
  details.setObject(box(error.domain()), u"domain");
  details.setObject(box(error.code()), u"code");
  if (error.underlyingError()) details.setObject(box(underlying), NSUnderlyingErrorKey);
  return details.description();
}

}  // namespace

std::optional<Text> debugDescription(const NSError& receiver) {
  // From the innermost outwards and without recursion: who makes the chain decides how long it is.
  std::vector<Ref<NSError>> chain;
  for (Ref<NSError> error = receiver.underlyingError(); error; error = error->underlyingError()) chain.push_back(error);
  Text underlying;
  for (; !chain.empty(); chain.pop_back()) underlying = describe(*chain.back(), underlying).value_or(u"(null)");
  return describe(receiver, underlying);
}

}  // namespace kelvane
