#pragma once

#include <system_error>

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// The domain of errors whose codes are the system's own (errno).
inline constexpr TextView NSPOSIXErrorDomain = u"NSPOSIXErrorDomain";
// Those of errors that others on the platform tell of: its frameworks, its low-level services, loading of URLs.
inline constexpr TextView NSCocoaErrorDomain = u"NSCocoaErrorDomain";
inline constexpr TextView NSOSStatusErrorDomain = u"NSOSStatusErrorDomain";
inline constexpr TextView NSURLErrorDomain = u"NSURLErrorDomain";
// Keys of an error's user information.
inline constexpr TextView NSLocalizedDescriptionKey = u"NSLocalizedDescription";
inline constexpr TextView NSFilePathErrorKey = u"NSFilePath";
inline constexpr TextView NSUnderlyingErrorKey = u"NSUnderlyingError";

// What went wrong: a domain, a code within it, and a dictionary of details. Immutable.
//
// ```cpp
// Ref<NSError> error;
// if (!NSFileManager().removeItemAtPath(path, &error)) std::cerr << utf8(error->localizedDescription()) << '\n';
// ```
class KELVANE_EXPORT NSError : public NSObject {
 public:
  // `userInfo` may be nil.
  NSError(TextView domain, std::int64_t code, Ref<NSDictionary> userInfo = nullptr);
  // An error of the system, about the file at `path` unless that is empty.
  static Ref<NSError> errorWithSystemError(const std::error_code& error, TextView path = {});
  // An error that is told by a sentence alone.
  static Ref<NSError> errorWithDescription(TextView domain, std::int64_t code, TextView description);
  // The same, with what it comes from, which may be nil.
  static Ref<NSError> errorWithDescription(TextView domain, std::int64_t code, TextView description,
                                           const Ref<NSError>& underlyingError);

  const Text& domain() const { return myDomain; }
  std::int64_t code() const { return myCode; }
  const Ref<NSDictionary>& userInfo() const { return myUserInfo; }
  // The sentence in the user information; where there is none, the system's words for its own codes, else
  // "The operation couldn’t be completed. (DOMAIN error CODE.)".
  Text localizedDescription() const;

  // The error that this one comes from; nil when there is none.
  Ref<NSError> underlyingError() const;

  // Equal when domain, code and user information are.
  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  // "Error Domain=DOMAIN Code=CODE "DESCRIPTION"".
  Text description() const override;
  Ref<NSObject> copy() const override;

 private:
  Text myDomain;
  std::int64_t myCode;
  Ref<NSDictionary> myUserInfo;
};

}  // namespace kelvane
