#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Platform/Foundation/NSObject.h"

// Property lists in their XML form: trees of dictionaries, arrays, text, numbers, truth values, dates and data.
//
//   element                what it holds                                       object
//   <dict>                 <key>text</key> and a value, any number of times    NSDictionary
//   <array>                values                                              NSArray
//   <string>               text; white space counts                            NSString
//   <integer>              sign and decimal digits, or 0x and hexadecimal ones NSNumber, Integer; above int64 Unsigned
//   <real>                 decimal number, nan, inf, infinity; any case        NSNumber, Double
//   <true/>, <false/>      nothing                                             NSNumber, Boolean
//   <date>                 YYYY-MM-DDTHH:MM:SSZ, years 0001 to 9999            NSDate
//   <data>                 base64, white space anywhere                        NSData
//
// ```cpp
// const PropertyList list = readPropertyList(bytes);
// if (list.root)
//   std::cout << writePropertyList(*list.root).bytes;
// else
//   std::cerr << "line " << list.line << ": " << utf8(list.error) << '\n';
// ```
//
// What is written reads back as an equal object with numbers of the kinds above, except that dates lose the fraction of
// their second. All of it may be called on any thread; the writer needs the tree not to change meanwhile.
namespace kelvane {

// How many dictionaries and arrays may stand within each other; the outermost is the first.
inline constexpr std::size_t maximumPropertyListDepth = 512;
// How many bytes are read, and at most about how many are written.
inline constexpr std::size_t maximumPropertyListSize = std::size_t{64} << 20U;

// What reading gave: either a root, or a nil root with one English sentence about what is wrong and the line (from 1)
// where it stands; line 0 when the trouble is with the input as a whole.
struct PropertyList {
  Ref<NSObject> root;
  Text error;
  std::size_t line = 0;
};

// Reads a document: one <plist> around one value. The containers that come out are immutable, and of a key that occurs
// twice in a dictionary the last counts.
//
// The bytes are UTF-8, UTF-16 (with a byte-order mark, or evidently so) or, where the XML declaration says it,
// ISO-8859-1; other encodings are refused. Ill-formed parts become U+FFFD. Line ends within text become LF, as XML
// wants it. Comments and processing instructions are skipped and attributes ignored, except for the writer's "utf16" as
// long as it still belongs to the text beside it.
//
// Refused, with nothing read: more than the limits above; NUL and whatever else XML 1.0 has no character for; DOCTYPE
// with an internal subset; references other than the five of XML and numbers of XML characters; unknown elements, stray
// text, keys without value and values without key; numbers beyond 64 bits or the range of a double; days that no
// calendar has; base64 that is cut short, has stray characters or bits left over. Nothing is ever fetched: a DOCTYPE's
// identifiers are skipped.
//
// Time is linear in the input, however deep it is nested. Memory for a tree of the XML is taken meanwhile: about as
// much as five times the input for usual documents, at worst (nothing but empty elements) some 25 times.
KELVANE_EXPORT PropertyList readPropertyList(std::string_view bytes);

// What writing gave: the document, or nothing but one English sentence about what cannot be written and where, such as
// "The object at people[3].name is of class NSNull, which a property list cannot hold." Long ways are cut.
struct PropertyListBytes {
  std::string bytes;
  Text error;
};

// Writes `root` as UTF-8 with the XML header, indented by tabs, dictionaries in the order of their keys, floating
// numbers as the shortest decimal that reads back as the same double (nan, +infinity, -infinity), dates in UTC with the
// fraction of the second cut toward the past. CR becomes "&#13;", since readers turn a bare one into LF.
//
// Text may hold anything. Where it holds what XML 1.0 has no character for (control characters other than TAB, LF and
// CR; unpaired surrogates; U+FFFE and U+FFFF), that is U+FFFD for other readers, and the attribute "utf16" of the
// element has the whole text: base64 of its code units, the higher byte of each first.
//
// Refused: objects of other classes, also deep within; such characters in keys; dates outside the years 1 to 9999; more
// than the limits above, and so containers that hold themselves. Subclasses of the classes above are written as these.
//
// One pass, and no memory but that of the result.
KELVANE_EXPORT PropertyListBytes writePropertyList(const NSObject& root);

}  // namespace kelvane
