#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <typeindex>

#include "Platform/Foundation/ArchiveCoder.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Text.h"

// The classes whose objects can stand in archives. The library's own values, collections, fonts, colours and styled
// texts do; a host adds its classes once, before it writes or reads:
//
// ```cpp
// registerArchivedClass<Person>(u"Person");  // Person names its properties, as NSObject.h shows
// ```
//
// or, where the properties do not tell all,
//
// ```cpp
// class Track : public NSObject {
//  public:
//   explicit Track(Text theTitle) : title(std::move(theTitle)) {}
//   const Text title;
// };
//
// void registerTrack() {
//   registerArchivedClass(typeid(Track), {u"Track", 1,
//                                         [](const NSObject& object, ArchiveEncoder& encoder) {
//                                           encoder.encodeText(static_cast<const Track&>(object).title);
//                                         },
//                                         [](ArchiveDecoder& decoder) -> Ref<NSObject> {
//                                           return std::make_shared<Track>(decoder.decodeText());
//                                         }});
// }
// ```
//
// Any thread.
namespace kelvane {

// How objects of one class stand in an archive.
struct ArchivedClass {
  // What the class is called in archives. It has to stay, even when the class is renamed. The library's own are called
  // as they are in C++.
  Text name;
  // To be raised when what `encode` writes changes; `decode` finds out by `classVersion` what it reads. An archive with
  // a higher version than this is refused.
  std::uint32_t version = 0;
  std::function<void(const NSObject&, ArchiveEncoder&)> encode;
  // The finished object; nil when it fails. What it throws fails the archive, too.
  std::function<Ref<NSObject>(ArchiveDecoder&)> decode;
};

// Objects of exactly this type are written and read so from now on. std::invalid_argument when another type has the
// name.
KELVANE_EXPORT void registerArchivedClass(std::type_index type, ArchivedClass theClass);

// Null when there is none.
KELVANE_EXPORT std::shared_ptr<const ArchivedClass> archivedClassOfType(std::type_index type);
KELVANE_EXPORT std::shared_ptr<const ArchivedClass> archivedClassNamed(TextView name);

// Writes and reads all properties that can be set, and after them the stored values of a managed object; a property or
// an attribute that the class no longer has refuses the archive.
KELVANE_EXPORT void encodeProperties(const NSObject& object, ArchiveEncoder& encoder);
KELVANE_EXPORT void decodeProperties(NSObject& object, ArchiveDecoder& decoder);

// T is to be made without arguments.
template <class T>
void registerArchivedClass(TextView name) {
  registerArchivedClass(typeid(T), {Text(name), 0, encodeProperties, [](ArchiveDecoder& decoder) -> Ref<NSObject> {
                                      auto object = std::make_shared<T>();
                                      decodeProperties(*object, decoder);
                                      return object;
                                    }});
}

}  // namespace kelvane
