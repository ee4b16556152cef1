#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// Bytes as an object. Immutable (its mutable form is not).
class KELVANE_EXPORT NSData : public NSObject {
 public:
  NSData() = default;
  explicit NSData(std::vector<std::uint8_t> bytes) : myBytes(std::move(bytes)) {}

  std::span<const std::uint8_t> bytes() const { return myBytes; }
  std::size_t length() const { return myBytes.size(); }

  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  // "<00010203 0405>": hexadecimal in groups of four bytes, at most the first 1,024 and then "...".
  Text description() const override;
  Ref<NSObject> copy() const override;
  Ref<NSObject> mutableCopy() const override;
  // "length" besides the keys of every object.
  Ref<NSObject> valueForKey(TextView key) const override;

 protected:
  std::vector<std::uint8_t> myBytes;
};

class KELVANE_EXPORT NSMutableData : public NSData {
 public:
  using NSData::NSData;

  // The bytes themselves, to be changed in place. One thread at a time.
  std::vector<std::uint8_t>& mutableBytes() { return myBytes; }
  Ref<NSObject> copy() const override;
};

}  // namespace kelvane
