#pragma once

#include <optional>

#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// A URL as RFC 3986 reads it. Immutable.
class KELVANE_EXPORT NSURL : public NSObject {
 public:
  // URLWithString:  Nil when the text holds a blank or another control character, when a "%" is not followed by two
  // hexadecimal digits, or when what stands before the first ":" is no scheme. Characters beyond ASCII are taken as
  // they stand. A text without a scheme is a relative reference.
  static Ref<NSURL> URLWithString(TextView text);

  // The text that the URL was made from.
  const Text& absoluteString() const { return myText; }
  // The components as they stand in the text, without their marks; nothing when the URL has none.
  std::optional<Text> scheme() const { return slice(myScheme); }
  std::optional<Text> host() const { return slice(myHost); }
  std::optional<Text> query() const { return slice(myQuery); }
  std::optional<Text> fragment() const { return slice(myFragment); }
  // The path with its percent escapes decoded, as a path of the file system (bytes that are not UTF-8 survive); nothing
  // when it is empty.
  std::optional<Text> path() const;
  bool isFileURL() const;

  // Equal when their texts are.
  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  Text description() const override { return myText; }
  Ref<NSObject> copy() const override;

 private:
  explicit NSURL(TextView text);
  std::optional<Text> slice(const std::optional<NSRange>& range) const;

  Text myText;
  std::optional<NSRange> myScheme;
  std::optional<NSRange> myHost;
  NSRange myPath;
  std::optional<NSRange> myQuery;
  std::optional<NSRange> myFragment;
};

// `text` with each "%" and its two hexadecimal digits replaced by the byte that they stand for, in the form that file
// names take; nothing when a "%" is not followed by two hexadecimal digits.
KELVANE_EXPORT std::optional<Text> stringByRemovingPercentEncoding(TextView text);

}  // namespace kelvane
