#pragma once

#include <cstddef>
#include <functional>
#include <utility>

#include "Platform/Foundation/AttributeRuns.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Text.h"
#include "Platform/Foundation/TextBuffer.h"

// Styled text: text whose stretches carry dictionaries of attributes.
//
// ```cpp
// NSMutableAttributedString text(u"Read this");
// text.addAttribute(NSLinkAttributeName, box(u"https://example.org"), {5, 4});
// for (const AttributeRun run : text.runs())
//   std::cout << run.range.location << ": " << utf8(run.attributes->description()) << '\n';
// ```
namespace kelvane {

// The attributes that the library reads and writes. A host may use any names of its own.
inline constexpr TextView NSFontAttributeName = u"NSFont";
// A number: 0 for none, 1 for a single line.
inline constexpr TextView NSUnderlineStyleAttributeName = u"NSUnderline";
// Any object; its description is the address.
inline constexpr TextView NSLinkAttributeName = u"NSLink";
inline constexpr TextView NSForegroundColorAttributeName = u"NSColor";

// Styled text. Dictionaries and their values are shared, never copied, so that values keep their identity; only a
// mutable dictionary is copied once, on its way in. Nil stands for a dictionary without attributes. Neighbouring
// stretches with equal dictionaries are one run, with the dictionary of the first.
//
// An index or a range beyond the text raises std::out_of_range. With n runs, the attributes at an index are found in
// O(log n); going through `runs` is a step per run. Immutable (its mutable form is not).
class KELVANE_EXPORT NSAttributedString : public NSObject {
 public:
  NSAttributedString() = default;
  // initWithString:  Without attributes.
  explicit NSAttributedString(Text string) : NSAttributedString(std::move(string), nullptr) {}
  // initWithString:attributes:
  NSAttributedString(Text string, const Ref<NSDictionary>& attributes);
  // initWithAttributedString:  O(n), for the runs and the text.
  NSAttributedString(const NSAttributedString& other);
  NSAttributedString& operator=(const NSAttributedString&) = default;
  ~NSAttributedString() override;

  const Text& string() const { return myText.text(); }
  std::size_t length() const { return myText.length(); }

  // The runs in order: ranges of the text and their dictionaries, which are never nil. Valid until the next change.
  const AttributeRuns& runs() const { return myRuns; }
  // attributesAtIndex:effectiveRange:  Never nil. The whole run's range goes to `effectiveRange` unless that is null.
  const Ref<NSDictionary>& attributesAtIndex(std::size_t index, NSRange* effectiveRange = nullptr) const;
  // attribute:atIndex:effectiveRange:  Nil when the run has no such attribute.
  Ref<NSObject> attribute(TextView name, std::size_t index, NSRange* effectiveRange = nullptr) const;
  // attributedSubstringFromRange:
  NSAttributedString attributedSubstringFromRange(NSRange range) const;

  // isEqualToAttributedString:  Equal when the texts are, and the attributes everywhere.
  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  // Each run's text followed by the description of its dictionary.
  Text description() const override;
  Ref<NSObject> copy() const override;
  Ref<NSObject> mutableCopy() const override;
  // "string" and "length", to be read.
  const PropertyTable& propertyTable() const override;

 protected:
  TextBuffer myText;
  AttributeRuns myRuns;
};

// Styled text that can be changed. Every change takes time for what it changes; besides, changing the runs shifts n/128
// numbers, and changing the text moves what stands behind, or a few thousand code units when several changes follow
// each other (TextBuffer.h). Appending is free of both. One thread at a time.
class KELVANE_EXPORT NSMutableAttributedString : public NSAttributedString {
 public:
  using NSAttributedString::NSAttributedString;
  explicit NSMutableAttributedString(const NSAttributedString& other) : NSAttributedString(other) {}

  // Adds `string` at the end as a run with these attributes: the way to build styled text piece by piece. O(1) besides
  // the copy of the text. Who uses one dictionary for many pieces saves the comparison of equal ones.
  void appendString(TextView string, const Ref<NSDictionary>& attributes);
  // appendAttributedString:
  void appendAttributedString(const NSAttributedString& other);
  // insertAttributedString:atIndex:
  void insertAttributedString(const NSAttributedString& other, std::size_t index);
  // deleteCharactersInRange:
  void deleteCharactersInRange(NSRange range);
  // replaceCharactersInRange:withString:  The new text gets the attributes of the first unit that it replaces; where it
  // replaces none, of the unit before, else of the one behind, else none.
  void replaceCharactersInRange(NSRange range, TextView string);
  // replaceCharactersInRange:withAttributedString:
  void replaceCharactersInRange(NSRange range, const NSAttributedString& other);
  // setAttributedString:
  void setAttributedString(const NSAttributedString& other);

  // setAttributes:range:  In place of all that were there.
  void setAttributes(const Ref<NSDictionary>& attributes, NSRange range);
  // addAttribute:value:range:  A nil value raises std::invalid_argument.
  void addAttribute(TextView name, const Ref<NSObject>& value, NSRange range);
  // addAttributes:range:  Nil adds none.
  void addAttributes(const Ref<NSDictionary>& attributes, NSRange range);
  // removeAttribute:range:
  void removeAttribute(TextView name, NSRange range);

  // Gives the runs in `range` what `change` makes of their attributes: the very dictionary where nothing is to change,
  // nil for none. It is asked once for all runs that share a dictionary, and these share the result. In O(n) for n runs
  // in the range; every other way to go through them takes time for searching each.
  void replaceAttributes(NSRange range, const std::function<Ref<NSDictionary>(const Ref<NSDictionary>&)>& change);

  // Immutable styled text.
  Ref<NSObject> copy() const override;

 private:
  void changeAttributes(NSRange range, const std::function<void(NSDictionary::Entries&)>& change);
};

// The text of a text view. Behaves as mutable styled text does; code that copies values tells it apart.
class KELVANE_EXPORT NSTextStorage : public NSMutableAttributedString {
 public:
  using NSMutableAttributedString::NSMutableAttributedString;
};

}  // namespace kelvane
