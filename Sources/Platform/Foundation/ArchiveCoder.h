#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Text.h"

// What a class sees of an archive while one of its objects is written or read: a sequence of values, to be read in the
// order and with the kinds in which they were written. ArchivedClass.h tells how a class takes part.
namespace kelvane {

// Takes the values of one object after another. One thread at a time.
class KELVANE_EXPORT ArchiveEncoder {
 public:
  ArchiveEncoder(const ArchiveEncoder&) = delete;
  ArchiveEncoder& operator=(const ArchiveEncoder&) = delete;
  virtual ~ArchiveEncoder();

  void encodeBool(bool truth) { myValues += truth ? '\1' : '\0'; }
  // Small numbers take a byte.
  void encodeInteger(std::int64_t number);
  void encodeUnsigned(std::uint64_t number);
  // Each bit, those of a NaN included.
  void encodeDouble(double number);
  // Each code unit, unpaired surrogates included.
  void encodeText(TextView text);
  void encodeBytes(std::span<const std::uint8_t> bytes);
  // Another object, or nil. An object that is encoded several times is written once, and is one object again when read.
  virtual void encodeObject(const Ref<NSObject>& object) = 0;

  // Gives the whole archive up; `reason` becomes its error. What is encoded afterwards is ignored. The first reason
  // stands.
  void fail(Text reason);
  bool hasFailed() const { return !myError.empty(); }

 protected:
  ArchiveEncoder() = default;

  std::string myValues;
  Text myError;
};

// Gives the values of one object after another. Whatever does not fit what was asked for fails the archive; from then
// on all values are 0, empty or nil, so that it is enough to ask `hasFailed` before loops and at the end. One thread at
// a time.
class KELVANE_EXPORT ArchiveDecoder {
 public:
  ArchiveDecoder(const ArchiveDecoder&) = delete;
  ArchiveDecoder& operator=(const ArchiveDecoder&) = delete;
  virtual ~ArchiveDecoder();

  bool decodeBool();
  std::int64_t decodeInteger();
  std::uint64_t decodeUnsigned();
  double decodeDouble();
  Text decodeText();
  // Valid while the archive is.
  std::span<const std::uint8_t> decodeBytes();
  // Nil when nil was encoded. Objects come out finished, which is why none can refer to itself.
  virtual Ref<NSObject> decodeObject() = 0;
  // The same for an object that has to be there and be a T.
  template <class T>
  Ref<T> decodeObjectOf() {
    Ref<T> object = as<T>(decodeObject());
    if (!object) fail(u"an object of another kind is expected");
    return object;
  }
  // How many of something follow; fails when not even `bytesEach` bytes are left for each, so that memory can be
  // reserved.
  std::size_t decodeCount(std::size_t bytesEach = 1);

  // The version of the class that wrote the object; ArchivedClass.h.
  std::uint32_t classVersion() const { return myClassVersion; }

  // Refuses the whole archive; `reason` says what is wrong with the object, in a few words. The first one stands.
  void fail(Text reason);
  bool hasFailed() const { return !myError.empty(); }

 protected:
  ArchiveDecoder() = default;

  std::string_view take(std::size_t count);

  std::string_view myValues;
  std::uint32_t myClassVersion = 0;
  Text myError;
};

}  // namespace kelvane
