#pragma once

#include <optional>
#include <string_view>

#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// A URL as RFC 3986 reads it. Immutable.
class KELVANE_EXPORT NSURL : public NSObject {
  // Keeps others from the constructor that make_shared needs.
  struct Private {};

 public:
  // URLWithString:  Nil when the text holds a blank or another control character, when a "%" is not followed by two
  // hexadecimal digits, or when what stands before the first ":" is no scheme. Characters beyond ASCII are taken as
  // they stand. A text without a scheme is a relative reference.
  static Ref<NSURL> URLWithString(TextView text);

  // fileURLWithPath:isDirectory:  The URL of the file at `path`, whatever bytes its name has, with a "/" at the end for
  // a folder. A relative path is taken from the working folder; the file system is not asked otherwise. Nil for an
  // empty path, and for a relative one where the working folder is gone.
  //   u"/a b/\xE9", true => "file:///a%20b/%C3%A9/"
  static Ref<NSURL> fileURLWithPath(TextView path, bool isDirectory = false);

  // URLByAppendingPathComponent:isDirectory:  The URL of what is called `name` in the folder that this one names; query
  // and fragment are dropped. `name` is the bytes of a file name, one that need not be encoded yet.
  Ref<NSURL> URLByAppendingFileName(std::string_view name, bool isDirectory) const;

  // The text that the URL was made from.
  const Text& absoluteString() const { return myText; }
  // The components as they stand in the text, without their marks; nothing when the URL has none.
  std::optional<Text> scheme() const { return slice(myScheme); }
  std::optional<Text> host() const { return slice(myHost); }
  std::optional<Text> query() const { return slice(myQuery); }
  std::optional<Text> fragment() const { return slice(myFragment); }
  // The path with its percent escapes decoded and without "/" at its end, as a path of the file system (bytes that are
  // not UTF-8 survive, and the root stays "/"); nothing when it is empty.
  std::optional<Text> path() const;
  bool isFileURL() const;
  // lastPathComponent, pathExtension  The parts of the path of these names (PathText.h); empty when there is no path.
  // No more is decoded than the last component.
  Text lastPathComponent() const;
  Text pathExtension() const;

  // Equal when their texts are.
  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  Text description() const override { return myText; }
  Ref<NSObject> copy() const override;

  // A URL like `folder` with another text, whose path ends with the text.
  NSURL(Private, const NSURL& folder, Text text);

 private:
  explicit NSURL(TextView text);
  TextView encodedLastComponent() const;
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
