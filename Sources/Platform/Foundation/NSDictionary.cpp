#include "Platform/Foundation/NSDictionary.h"

#include <algorithm>
#include <functional>

#include "Platform/Foundation/CollectionDescription.h"
#include "Platform/Foundation/CollectionNesting.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/PropertyChange.h"
#include "Platform/Foundation/Raise.h"

namespace kelvane {

NSDictionary::NSDictionary(Entries entries) : myEntries(std::move(entries)) {
  for (const auto& [key, value] : myEntries)
    if (!value) raiseInvalidArgument("initWithDictionary:", "the value cannot be nil for key", key);
}

NSDictionary::~NSDictionary() {
  detail::ReleasingElements releasing;
  if (releasing.isTooDeep())
    for (auto& entry : myEntries) releasing.leave(std::move(entry.second));
  myEntries.clear();
}

Ref<NSDictionary> NSDictionary::dictionaryWithEntries(std::initializer_list<Entry> entries) {
  Entries copies;
  for (const Entry& entry : entries) copies.try_emplace(Text(entry.key), entry.value);
  return std::make_shared<NSDictionary>(std::move(copies));
}

Ref<NSObject> NSDictionary::objectForKey(TextView key) const {
  const auto place = myEntries.find(key);
  return place == myEntries.end() ? nullptr : place->second;
}

std::vector<Text> NSDictionary::allKeys() const {
  std::vector<Text> keys;
  keys.reserve(count());
  for (const auto& entry : myEntries) keys.push_back(entry.first);
  return keys;
}

bool NSDictionary::isEqual(const NSObject& other) const {
  if (this == &other) return true;
  const NSDictionary* dictionary = as<NSDictionary>(&other);
  const detail::ComparingElements comparing;
  return dictionary && !comparing.isTooDeep() && count() == dictionary->count() &&
         std::equal(begin(), end(), dictionary->begin(), dictionary->end(),
                    [](const auto& a, const auto& b) { return a.first == b.first && areEqual(a.second, b.second); });
}

std::size_t NSDictionary::hash() const {
  std::size_t hash = count();
  const detail::HashingElements hashing;
  if (hashing.isWithin()) return hash;
  for (const auto& [key, value] : myEntries) hash = (hash * 31 + std::hash<Text>()(key)) * 31 + value->hash();
  return hash;
}

Text NSDictionary::description() const {
  Text text;
  appendDescription(text, {});
  return text;
}

void NSDictionary::appendDescription(Text& out, const DescriptionNesting& within) const {
  CollectionDescription lines(out, *this, within, u'{', u'}');
  for (const auto& [key, value] : myEntries) {
    if (!lines.startLine()) break;
    appendQuotedUnlessWord(out, key);
    out += u" = ";
    value->appendDescription(out, lines.nesting());
    out += u';';
  }
  lines.end();
}

Ref<NSObject> NSDictionary::copy() const {
  return selfOr([this] { return std::make_shared<NSDictionary>(myEntries); });
}

Ref<NSObject> NSDictionary::mutableCopy() const { return std::make_shared<NSMutableDictionary>(myEntries); }

Ref<NSObject> NSDictionary::valueForKey(TextView key) const {
  if (key == u"@count") return std::make_shared<NSNumber>(count());
  return key.starts_with(u'@') ? NSObject::valueForKey(key) : objectForKey(key);
}

void NSDictionary::setValueForKey(const Ref<NSObject>&, TextView key) {
  raiseInvalidArgument("setValue:forKey:", "an immutable dictionary cannot take a value for key", key);
}

void NSMutableDictionary::setObject(Ref<NSObject> object, TextView key) {
  if (!object) raiseInvalidArgument("setObject:forKey:", "the object cannot be nil for key", key);
  detail::PropertyChange change(*this, key);
  const auto place = myEntries.lower_bound(key);
  if (place != myEntries.end() && place->first == key)
    place->second = std::move(object);
  else
    myEntries.emplace_hint(place, key, std::move(object));
  change.tell();
}

void NSMutableDictionary::removeObjectForKey(TextView key) {
  const auto place = myEntries.find(key);
  if (place == myEntries.end()) return;
  detail::PropertyChange change(*this, key);
  // An observer that hears of it beforehand may have changed the entries.
  if (const auto now = myEntries.find(key); now != myEntries.end()) myEntries.erase(now);
  change.tell();
}

void NSMutableDictionary::removeAllObjects() {
  for (const Text& key : allKeys()) removeObjectForKey(key);
}

void NSMutableDictionary::setValueForKey(const Ref<NSObject>& value, TextView key) {
  if (value)
    setObject(value, key);
  else
    removeObjectForKey(key);
}

Ref<NSObject> NSMutableDictionary::copy() const { return std::make_shared<NSDictionary>(myEntries); }

}  // namespace kelvane
