#pragma once

#include <cstddef>
#include <optional>

#include "Platform/Foundation/Text.h"

// Tokens of HTML, as far as who looks for text has to know them. They end where the standard's tokenizer (13.2.5) ends
// them; nothing is copied. Pure functions, linear in what they read, any thread.
namespace kelvane {

// What kind of an element a tag's name stands for, which is what decides how its text is shown.
enum class HTMLElement {
  Inline,         // all that is not listed, known or not
  Block,          // stands on lines of its own
  LineBreak,      // br
  Preformatted,   // pre, listing: white space counts
  BulletList,     // ul, menu, dir
  NumberedList,   // ol
  Item,           // li
  Row,            // tr
  Cell,           // td, th
  Foreign,        // svg, math
  Template,       // template: its content is not part of the page
  Script,         // script: raw text of its own kind
  HiddenRaw,      // style, title, iframe, noembed, noframes: raw text that is not shown
  EscapableRaw,   // textarea: no tags within, but references
  ShownRaw,       // xmp
  RawUntilTheEnd  // plaintext
};

HTMLElement htmlElementNamed(TextView name);

// Tab, LF, FF, CR and the blank, and no others.
constexpr bool isHTMLSpace(char16_t unit) {
  return unit == u' ' || unit == u'\n' || unit == u'\t' || unit == u'\r' || unit == u'\f';
}

// Only ASCII has cases here.
constexpr char16_t htmlLowered(char16_t unit) {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | 0x20) : unit;
}
inline Text htmlLowered(TextView text) {
  Text lowered(text);
  for (char16_t& unit : lowered) unit = htmlLowered(unit);
  return lowered;
}

constexpr bool isHTMLNameStart(char16_t unit) { return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z'; }

// Walks over a tag from behind its name to behind its ">".
class HTMLAttributes {
 public:
  HTMLAttributes(TextView text, std::size_t at) : myText(text), myPlace(at) {}

  // Goes on to the next attribute; false when there is none any more, and `end` is the tag's.
  bool next();
  TextView name() const { return myName; }
  // As it stands, references included; empty when there is none.
  TextView value() const { return myValue; }

  // Where the text goes on.
  std::size_t end() const { return myPlace; }
  // Whether the tag ends at ">", and not with the text.
  bool isComplete() const { return myIsComplete; }
  // Whether it ends with "/>".
  bool isSelfClosing() const { return myIsSelfClosing; }

 private:
  void readValue();

  TextView myText;
  TextView myName;
  TextView myValue;
  std::size_t myPlace;
  bool myIsComplete = false;
  bool myIsSelfClosing = false;
};

// A start or end tag. One that the text's end cuts short is none at all.
struct HTMLTag {
  TextView name;
  // Of the whole text, behind the name.
  std::size_t attributes = 0;
  std::size_t end = 0;
  bool isComplete = false;
  bool isSelfClosing = false;
};

// The tag whose name begins at `at`.
HTMLTag htmlTagAt(TextView text, std::size_t at);

// The value of the attribute of that name, which is given in small letters; nothing when the tag has none.
std::optional<TextView> htmlAttribute(TextView text, const HTMLTag& tag, TextView name);

// The integer that an attribute's value begins with (2.3.4.1, the limits being those of 32 bits).
std::optional<int> htmlInteger(TextView value);

// The place behind a comment, a declaration or whatever else begins with "<!" or "<?", or with "</" and no name.
std::size_t endOfHTMLDeclaration(TextView text, std::size_t at);

// Where the raw text ends that begins at `from`: at the "</" of the end tag of that name, else at the text's end.
std::size_t endOfHTMLRawText(TextView text, std::size_t from, TextView name);
// The same for a script, within whose comments there may be whole scripts.
std::size_t endOfHTMLScript(TextView text, std::size_t from);

}  // namespace kelvane
