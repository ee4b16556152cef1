#include "Platform/Foundation/NSAttributedString.h"

#include <algorithm>
#include <memory>
#include <typeinfo>
#include <unordered_map>
#include <vector>

#include "Platform/Foundation/Properties.h"
#include "Platform/Foundation/Raise.h"

namespace kelvane {
namespace {

// A dictionary that nobody can change: the very one where it can be.
Ref<NSDictionary> frozen(const Ref<NSDictionary>& attributes) {
  static const auto& none = *new Ref<NSDictionary>(std::make_shared<NSDictionary>());
  if (!attributes) return none;
  const NSDictionary& dictionary = *attributes;
  return typeid(dictionary) == typeid(NSDictionary) ? attributes : as<NSDictionary>(attributes->copy());
}

NSRange overlap(NSRange a, NSRange b) {
  const std::size_t start = std::max(a.location, b.location);
  return {start, std::min(a.end(), b.end()) - start};
}

// Calls `visit` with the parts of the runs that lie within `range`, which must lie within the text.
template <class Visit>
void forRunsIn(const AttributeRuns& runs, NSRange range, Visit visit) {
  if (range.length == 0) return;
  for (auto place = runs.find(range.location); place != runs.end(); ++place) {
    const AttributeRun run = *place;
    if (run.range.location >= range.end()) return;
    visit(overlap(run.range, range).length, run.attributes);
  }
}

std::vector<AttributeRuns::Piece> piecesOf(const AttributeRuns& runs) {
  std::vector<AttributeRuns::Piece> pieces;
  for (const AttributeRun run : runs) pieces.push_back({run.range.length, run.attributes});
  return pieces;
}

}  // namespace

NSAttributedString::NSAttributedString(Text string, const Ref<NSDictionary>& attributes) : myText(std::move(string)) {
  myRuns.append(length(), frozen(attributes));
}

NSAttributedString::NSAttributedString(const NSAttributedString& other)
    : NSObject(other), myText(other.string()), myRuns(other.myRuns) {}

NSAttributedString::~NSAttributedString() = default;

const Ref<NSDictionary>& NSAttributedString::attributesAtIndex(std::size_t index, NSRange* effectiveRange) const {
  requireIndex("attributesAtIndex:effectiveRange:", index, length());
  const AttributeRun run = *myRuns.find(index);
  if (effectiveRange) *effectiveRange = run.range;
  return run.attributes;
}

Ref<NSObject> NSAttributedString::attribute(TextView name, std::size_t index, NSRange* effectiveRange) const {
  requireIndex("attribute:atIndex:effectiveRange:", index, length());
  return attributesAtIndex(index, effectiveRange)->objectForKey(name);
}

NSAttributedString NSAttributedString::attributedSubstringFromRange(NSRange range) const {
  requireRange("attributedSubstringFromRange:", range, length());
  NSAttributedString part;
  part.myText = TextBuffer(myText.substring(range));
  forRunsIn(myRuns, range, [&](std::size_t length, const auto& attributes) { part.myRuns.append(length, attributes); });
  return part;
}

bool NSAttributedString::isEqual(const NSObject& other) const {
  const NSAttributedString* text = as<NSAttributedString>(&other);
  return text && text->length() == length() && text->string() == string() && text->myRuns == myRuns;
}

std::size_t NSAttributedString::hash() const { return std::hash<Text>()(string()); }

Text NSAttributedString::description() const {
  Text text;
  for (const AttributeRun run : myRuns) {
    text += TextView(string()).substr(run.range.location, run.range.length);
    text += run.attributes->description();
  }
  return text;
}

Ref<NSObject> NSAttributedString::copy() const {
  return selfOr([this] { return std::make_shared<NSAttributedString>(*this); });
}

Ref<NSObject> NSAttributedString::mutableCopy() const { return std::make_shared<NSMutableAttributedString>(*this); }

const PropertyTable& NSAttributedString::propertyTable() const {
  static const auto& table = *new PropertyTable(
      NSObject::propertyTable(),
      {property(u"string", &NSAttributedString::string), property(u"length", &NSAttributedString::length)});
  return table;
}

void NSMutableAttributedString::appendString(TextView string, const Ref<NSDictionary>& attributes) {
  myText.replace({length(), 0}, string);
  myRuns.append(string.size(), frozen(attributes));
}

void NSMutableAttributedString::appendAttributedString(const NSAttributedString& other) {
  replaceCharactersInRange({length(), 0}, other);
}

void NSMutableAttributedString::insertAttributedString(const NSAttributedString& other, std::size_t index) {
  requireRange("insertAttributedString:atIndex:", {index, 0}, length());
  replaceCharactersInRange({index, 0}, other);
}

void NSMutableAttributedString::deleteCharactersInRange(NSRange range) {
  requireRange("deleteCharactersInRange:", range, length());
  replaceCharactersInRange(range, TextView());
}

void NSMutableAttributedString::replaceCharactersInRange(NSRange range, TextView string) {
  requireRange("replaceCharactersInRange:withString:", range, length());
  const std::size_t giver = range.length == 0 && range.location > 0 ? range.location - 1 : range.location;
  if (giver == length()) return appendString(string, nullptr);
  const AttributeRun run = *myRuns.find(giver);
  const std::size_t added = string.size();
  myText.replace(range, string);
  // Nearly all edits stay within a run.
  if (range.end() <= run.range.end() && run.range.length + added > range.length)
    return myRuns.resize(giver, range.length, added);
  std::vector<AttributeRuns::Piece> pieces;
  pieces.push_back({added, run.attributes});
  myRuns.replace(range, std::move(pieces));
}

void NSMutableAttributedString::replaceCharactersInRange(NSRange range, const NSAttributedString& other) {
  requireRange("replaceCharactersInRange:withAttributedString:", range, length());
  std::vector<AttributeRuns::Piece> pieces = piecesOf(other.runs());
  const bool appends = range.location == length();
  myText.replace(range, other.string());
  if (!appends) return myRuns.replace(range, std::move(pieces));
  for (AttributeRuns::Piece& piece : pieces) myRuns.append(piece.length, std::move(piece.attributes));
}

void NSMutableAttributedString::setAttributedString(const NSAttributedString& other) {
  if (this == &other) return;
  myText = TextBuffer(other.string());
  myRuns = other.runs();
}

void NSMutableAttributedString::setAttributes(const Ref<NSDictionary>& attributes, NSRange range) {
  requireRange("setAttributes:range:", range, length());
  std::vector<AttributeRuns::Piece> pieces;
  pieces.push_back({range.length, frozen(attributes)});
  myRuns.replace(range, std::move(pieces));
}

void NSMutableAttributedString::addAttribute(TextView name, const Ref<NSObject>& value, NSRange range) {
  requireRange("addAttribute:value:range:", range, length());
  if (!value) raiseInvalidArgument("addAttribute:value:range:", "the value cannot be nil for attribute", name);
  changeAttributes(range, [&](NSDictionary::Entries& entries) { entries.insert_or_assign(Text(name), value); });
}

void NSMutableAttributedString::addAttributes(const Ref<NSDictionary>& attributes, NSRange range) {
  requireRange("addAttributes:range:", range, length());
  if (!attributes) return;
  changeAttributes(range, [&](NSDictionary::Entries& entries) {
    for (const auto& [name, value] : *attributes) entries.insert_or_assign(name, value);
  });
}

void NSMutableAttributedString::removeAttribute(TextView name, NSRange range) {
  requireRange("removeAttribute:range:", range, length());
  changeAttributes(range, [&](NSDictionary::Entries& entries) {
    if (const auto place = entries.find(name); place != entries.end()) entries.erase(place);
  });
}

void NSMutableAttributedString::replaceAttributes(
    NSRange range, const std::function<Ref<NSDictionary>(const Ref<NSDictionary>&)>& change) {
  requireRange("replaceAttributes:", range, length());
  std::unordered_map<const NSDictionary*, Ref<NSDictionary>> changed;
  std::vector<AttributeRuns::Piece> pieces;
  forRunsIn(myRuns, range, [&](std::size_t length, const Ref<NSDictionary>& attributes) {
    Ref<NSDictionary>& result = changed[attributes.get()];
    if (!result) result = frozen(change(attributes));
    pieces.push_back({length, result});
  });
  myRuns.replace(range, std::move(pieces));
}

void NSMutableAttributedString::changeAttributes(NSRange range,
                                                 const std::function<void(NSDictionary::Entries&)>& change) {
  replaceAttributes(range, [&](const Ref<NSDictionary>& attributes) {
    NSDictionary::Entries entries(attributes->begin(), attributes->end());
    change(entries);
    return std::make_shared<NSDictionary>(std::move(entries));
  });
}

Ref<NSObject> NSMutableAttributedString::copy() const { return std::make_shared<NSAttributedString>(*this); }

}  // namespace kelvane
