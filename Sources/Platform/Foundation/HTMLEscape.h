#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "Platform/Foundation/HTMLEscapeBlock.h"
#include "Platform/Foundation/Text.h"

// Text made safe to stand in HTML, in plain ASCII.
namespace kelvane {

//   double quote => &quot;      & => &amp;      < => &lt;      > => &gt;      LF => <br/>
//
// Every code unit from 128 on becomes a decimal reference to its number, so that a character beyond U+FFFF is written
// as its two surrogates. All else stays, CR, tab and the apostrophe too. Linear: one walk, besides a look at how
// much is escaped, for which some of a long text will do. A pure function, any thread.
//   u"é" => u"&#233;"      u"\xD83D\xDE00" => u"&#55357;&#56832;"      u"it's\r\n" => u"it's\r<br/>"
Text escapedForHTML(TextView text);

// A few characters of markup, ready to be written many times.
class HTMLMarkup {
 public:
  HTMLMarkup() = default;
  explicit HTMLMarkup(Text text);

 private:
  friend class HTMLEscaper;

  // Where it is short, and ASCII.
  std::array<std::uint8_t, 32> myCharacters{};
  std::size_t myLength = 0;
  // Otherwise.
  Text myText;
};

// Escapes a text in the same way with markup between its pieces, at the speed of escaping it whole:
//
// ```cpp
// HTMLEscaper escaper(u"a < b");
// escaper.escapeTo(2);
// escaper.append(HTMLMarkup(u"<b>"));
// escaper.escapeTo(5);
// escaper.finish();  // "a <b>&lt; b"
// ```
//
// One thread at a time; `text` must stay as long as it is used.
class HTMLEscaper {
 public:
  // `markup` tells about how many units of markup there will be, so that the result need not grow.
  explicit HTMLEscaper(TextView text, std::size_t markup = 0);

  // Writes what stands before `end` and is not yet written; `end` must lie within the text.
  void escapeTo(std::size_t end);
  void append(const HTMLMarkup& markup);
  void append(TextView markup);
  // All that was written. The escaper can do no more.
  Text finish();

 private:
  // How many characters take the place of a unit at most, as in "&#65535;".
  static constexpr std::size_t longest = 8;
  static constexpr std::size_t capacity = escaping::blockUnits * longest;

  void readBlock();
  void escapeInBlock(std::size_t end);
  void makeRoom(std::size_t characters);
  void flush();

  TextView myText;
  Text myOut;
  // How far the text is written, and how far the block goes that was read last.
  std::size_t myPlace = 0;
  std::size_t myBlockEnd = 0;
  std::size_t myBlockStart = 0;
  // The first of the block's places that is not yet reached.
  std::size_t myNext = 0;
  // How many characters are written, which are not yet part of `myOut`. All but markup is ASCII, so that half as much
  // is moved here; and it stays in the fastest cache, where what overlaps costs little.
  std::size_t myCount = 0;
  escaping::Block myBlock;
  std::array<std::uint8_t, capacity + escaping::slack> myCharacters;
};

}  // namespace kelvane
