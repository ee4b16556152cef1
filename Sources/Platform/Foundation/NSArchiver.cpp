#include "Platform/Foundation/NSArchiver.h"

#include <algorithm>
#include <exception>
#include <string>
#include <string_view>
#include <typeinfo>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Platform/Foundation/ArchiveCoder.h"
#include "Platform/Foundation/ArchivedClass.h"
#include "Platform/Foundation/ArchivedValues.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

constexpr std::string_view signature = "KelvArc";
constexpr char formatVersion = 1;
constexpr std::size_t checksumSize = 8;
// What an object weighs besides its values.
constexpr std::uint64_t weightOfObject = 16;

constexpr TextView tooDeep = u"objects refer to each other over more than 512 steps";
constexpr TextView tooHeavy = u"objects share so many others that going through them would not end";

std::uint64_t checksumOf(std::string_view bytes) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char byte : bytes) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
  return hash;
}

// How deep and heavy objects are, in the order of their numbers. The writer and the reader count alike, so that what
// was written can be read.
class Measures {
 public:
  struct Measure {
    std::uint64_t weight = weightOfObject;
    std::size_t depth = 1;
  };

  std::size_t count() const { return myMeasures.size(); }

  // Adds an object that is referred to.
  void refer(Measure& measure, std::size_t object) const {
    measure.weight = std::min(measure.weight + myMeasures[object].weight, maximumArchiveWeight + 1);
    measure.depth = std::max(measure.depth, myMeasures[object].depth + 1);
  }

  // Closes the next object; what is wrong with it, or nothing.
  TextView add(Measure measure, std::size_t valueBytes) {
    measure.weight += valueBytes;
    myTotal = std::min(myTotal + measure.weight, maximumArchiveWeight + 1);
    myMeasures.push_back(measure);
    if (measure.depth > maximumArchiveDepth) return tooDeep;
    return myTotal > maximumArchiveWeight ? tooHeavy : TextView();
  }

 private:
  std::vector<Measure> myMeasures;
  std::uint64_t myTotal = 0;
};

class Archiver final : public ArchiveEncoder {
 public:
  ArchivedData archive(const Ref<NSObject>& root) {
    if (!root) return {nullptr, u"There is no object to be archived."};
    encodeObject(root);
    if (hasFailed()) return {nullptr, std::move(myError)};

    myValues = signature;
    myValues += formatVersion;
    encodeUnsigned(myClasses.size());
    for (const auto& theClass : myClasses) {
      encodeText(theClass->name);
      encodeUnsigned(theClass->version);
    }
    encodeUnsigned(myMeasures.count());
    myValues += myObjects;
    const std::uint64_t checksum = checksumOf(myValues);
    for (unsigned shift = 0; shift < 64; shift += 8) myValues += static_cast<char>(checksum >> shift);
    if (myValues.size() > maximumArchiveSize) return {nullptr, u"The archive would be larger than 64 MiB."};
    return {std::make_shared<NSData>(std::vector<std::uint8_t>(myValues.begin(), myValues.end())), {}};
  }

  void encodeObject(const Ref<NSObject>& object) override {
    if (hasFailed()) return;
    if (!object) return encodeUnsigned(0);
    const auto [place, isNew] = myNumbers.try_emplace(object.get(), Entry{object, unfinished});
    // Stays where it is, whatever is added to the table meanwhile.
    Entry& entry = place->second;
    if (isNew) write(*object, entry);
    if (entry.number == unfinished)
      return fail(format(u"An object of class %@ cannot be archived: it leads back to itself.", object->className()));
    if (hasFailed()) return;
    myMeasures.refer(myMeasure, entry.number);
    encodeUnsigned(entry.number + 1);
  }

 private:
  static constexpr std::size_t unfinished = static_cast<std::size_t>(-1);
  // Objects are kept until the end: what a property gives may live no longer, and another take its address.
  struct Entry {
    Ref<NSObject> object;
    std::size_t number;
  };

  // The object's values, and before them those of all that it refers to. The depth of the recursion is bounded.
  void write(const NSObject& object, Entry& entry) {
    const std::size_t theClass = classOf(object);
    if (++myDepth > maximumArchiveDepth) fail(format(u"The object cannot be archived: %@.", tooDeep));
    if (hasFailed()) return;
    std::string values = std::exchange(myValues, {});
    const Measures::Measure measure = std::exchange(myMeasure, {});
    myClasses[theClass]->encode(object, *this);
    if (const TextView reason = myMeasures.add(myMeasure, myValues.size()); !reason.empty())
      fail(format(u"The object cannot be archived: %@.", reason));
    std::swap(values, myValues);
    myMeasure = measure;
    --myDepth;
    if (myObjects.size() + values.size() > maximumArchiveSize) fail(u"The archive would be larger than 64 MiB.");
    if (hasFailed()) return;
    std::swap(myObjects, myValues);
    encodeUnsigned(theClass);
    encodeUnsigned(values.size());
    myValues += values;
    std::swap(myObjects, myValues);
    entry.number = myMeasures.count() - 1;
  }

  // The number of the object's class in this archive.
  std::size_t classOf(const NSObject& object) {
    const auto [place, isNew] = myClassNumbers.try_emplace(typeid(object), myClasses.size());
    if (!isNew) return place->second;
    myClasses.push_back(archivedClassOfType(typeid(object)));
    if (!myClasses.back())
      fail(format(u"Objects of class %@ cannot be archived: the class is not registered.", object.className()));
    return place->second;
  }

  std::unordered_map<const NSObject*, Entry> myNumbers;
  std::unordered_map<std::type_index, std::size_t> myClassNumbers;
  std::vector<std::shared_ptr<const ArchivedClass>> myClasses;
  Measures myMeasures;
  Measures::Measure myMeasure;
  std::string myObjects;
  std::size_t myDepth = 0;
};

class Unarchiver final : public ArchiveDecoder {
 public:
  UnarchivedObject unarchive(std::string_view bytes) {
    if (bytes.size() > maximumArchiveSize) return refusal(u"it is larger than 64 MiB");
    if (!bytes.starts_with(signature)) return refusal(u"it is none");
    bytes.remove_prefix(signature.size());
    if (bytes.empty()) return refusal(u"it is cut short");
    if (bytes[0] != formatVersion)
      return refusal(format(u"it is of version %u, and only 1 is known",
                            static_cast<unsigned>(static_cast<unsigned char>(bytes[0]))));
    if (bytes.size() < 1 + checksumSize) return refusal(u"it is cut short");
    myValues = bytes.substr(1, bytes.size() - 1 - checksumSize);
    if (!hasChecksum(bytes)) return refusal(u"it is damaged: its checksum is another");
    try {
      readClasses();
      readObjects();
    } catch (const std::exception& exception) {
      fail(format(u"%s", exception.what()));
    } catch (...) {
      fail(u"its class has thrown something");
    }
    if (!hasFailed()) return {std::move(myObjects.back()), {}};
    if (!myClass) return refusal(myError);
    return refusal(format(u"object %lu (%@): %@", myObjects.size() + 1, myClass->name, myError));
  }

  Ref<NSObject> decodeObject() override {
    const std::uint64_t number = decodeUnsigned();
    if (number == 0) return nullptr;
    if (number > myObjects.size()) {
      fail(u"it refers to an object that does not stand before it");
      return nullptr;
    }
    myMeasures.refer(myMeasure, number - 1);
    if (myMeasure.weight > maximumArchiveWeight) fail(Text(tooHeavy));
    return myObjects[number - 1];
  }

 private:
  struct KnownClass {
    std::shared_ptr<const ArchivedClass> theClass;
    std::uint32_t version;
  };

  static UnarchivedObject refusal(TextView reason) {
    return {nullptr, format(u"The archive cannot be read: %@.", reason)};
  }

  // Whether `bytes`, from the version on, have the checksum that stands behind them.
  static bool hasChecksum(std::string_view bytes) {
    const std::string_view behind = bytes.substr(bytes.size() - checksumSize);
    std::uint64_t checksum = 0;
    for (std::size_t i = checksumSize; i-- > 0;) checksum = checksum << 8U | static_cast<unsigned char>(behind[i]);
    const std::string_view before(bytes.data() - signature.size(), signature.size() + bytes.size() - checksumSize);
    return checksumOf(before) == checksum;
  }

  void readClasses() {
    for (std::size_t count = decodeCount(2); count > 0 && !hasFailed(); --count) {
      const Text name = decodeText();
      const std::uint64_t version = decodeUnsigned();
      auto theClass = archivedClassNamed(name);
      if (hasFailed()) return;
      if (!theClass) return fail(format(u"the class '%@' is not registered", name));
      if (version > theClass->version)
        return fail(
            format(u"the class '%@' is of version %lu, and only %u is known", name, version, theClass->version));
      myClasses.push_back({std::move(theClass), static_cast<std::uint32_t>(version)});
    }
  }

  void readObjects() {
    const std::size_t count = decodeCount(2);
    if (count == 0) return fail(u"there is no object in it");
    while (myObjects.size() < count && !hasFailed()) {
      const std::uint64_t theClass = decodeUnsigned();
      const std::string_view values = take(decodeUnsigned());
      if (hasFailed()) return;
      if (theClass >= myClasses.size()) return fail(u"an object is of no class");
      const std::string_view rest = std::exchange(myValues, values);
      readObject(myClasses[theClass]);
      myValues = rest;
    }
    if (!myValues.empty()) fail(u"there is something behind its last object");
  }

  void readObject(const KnownClass& known) {
    myClass = known.theClass.get();
    myClassVersion = known.version;
    myMeasure = {};
    const std::size_t bytes = myValues.size();
    Ref<NSObject> object = known.theClass->decode(*this);
    if (!hasFailed() && !object) fail(u"it cannot be made");
    if (!hasFailed() && !myValues.empty()) fail(u"it has more values than it should");
    if (const TextView reason = myMeasures.add(myMeasure, bytes); !hasFailed() && !reason.empty()) fail(Text(reason));
    if (hasFailed()) return;
    myObjects.push_back(std::move(object));
    myClass = nullptr;
  }

  std::vector<KnownClass> myClasses;
  std::vector<Ref<NSObject>> myObjects;
  Measures myMeasures;
  Measures::Measure myMeasure;
  // Of the object that is being read.
  const ArchivedClass* myClass = nullptr;
};

}  // namespace

ArchivedData NSArchiver::archivedDataWithRootObject(const Ref<NSObject>& root) {
  registerArchivedValues();
  return Archiver().archive(root);
}

UnarchivedObject NSUnarchiver::unarchiveObjectWithData(std::span<const std::uint8_t> data) {
  registerArchivedValues();
  return Unarchiver().unarchive({reinterpret_cast<const char*>(data.data()), data.size()});
}

}  // namespace kelvane
