#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Text.h"

// Object archives: whole graphs of objects as bytes, for documents, pasteboards and preferences.
//
// ```cpp
// const ArchivedData archived = NSArchiver::archivedDataWithRootObject(document);
// if (archived.data) {
//   const UnarchivedObject read = NSUnarchiver::unarchiveObjectWithData(*archived.data);
//   std::cout << read.object->isEqual(*document) << '\n';  // 1
// }
// ```
//
// What comes out is equal to what went in, class by class, and an object that several others refer to is one again.
// ArchivedClass.h tells which classes can be archived. Graphs in which an object leads back to itself cannot.
//
// The form, version 1 ("number" is what ArchiveEncoder::encodeUnsigned writes, "text" what encodeText does):
//
//   "KelvArc" and the byte 1
//   number of classes; for each the text of its name and the number of its version
//   number of objects; for each the number of its class (from 0), the number of bytes of its values, the values
//   8 bytes: FNV-1a, 64 bits, of all before, lowest byte first
//
// Objects stand behind all those that they refer to, by their number (from 1; 0 is nil), and the root is the last. So a
// reader needs no recursion, and there is no way to write a circle down.
//
// Any thread, as long as the objects do not change meanwhile.
namespace kelvane {

// How long a chain of objects that refer to each other may be; the root is the first.
inline constexpr std::size_t maximumArchiveDepth = 512;
// How many bytes are read, and at most written.
inline constexpr std::size_t maximumArchiveSize = std::size_t{64} << 20U;
// The sizes of all objects together, where each counts with those that it refers to, as often as it does. Objects that
// share parts over and over are small in an archive, but whoever goes through them would never come to an end.
inline constexpr std::uint64_t maximumArchiveWeight = std::uint64_t{1} << 30U;

// Either the archive, or nil and one English sentence about what cannot be archived, such as "Objects of class Person
// cannot be archived: the class is not registered."
struct ArchivedData {
  Ref<NSData> data;
  Text error;
};

// Either the object, or nil and one English sentence about what is wrong.
struct UnarchivedObject {
  Ref<NSObject> object;
  Text error;
};

namespace NSArchiver {

// archivedDataWithRootObject:  Refuses nil, objects of classes that are not registered, addresses, circles and whatever
// exceeds the limits above. Linear.
KELVANE_EXPORT ArchivedData archivedDataWithRootObject(const Ref<NSObject>& root);

}  // namespace NSArchiver

namespace NSUnarchiver {

// unarchiveObjectWithData:  Refuses, as a whole, what is damaged or cut short, of a later version, of classes that are
// not registered (or not in this version), or beyond the limits above. Linear; memory for the objects alone, at most
// about 100 times the bytes (nothing but empty objects).
KELVANE_EXPORT UnarchivedObject unarchiveObjectWithData(std::span<const std::uint8_t> data);
inline UnarchivedObject unarchiveObjectWithData(const NSData& data) { return unarchiveObjectWithData(data.bytes()); }

}  // namespace NSUnarchiver

}  // namespace kelvane
