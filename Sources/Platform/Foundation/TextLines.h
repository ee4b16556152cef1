#pragma once

#include <cstddef>
#include <iterator>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"
#include "Platform/Foundation/TextPlaces.h"
#include "Platform/Foundation/TextScan.h"

namespace kelvane {

// The code units that end a line: LF, CR, NEL, LINE SEPARATOR, PARAGRAPH SEPARATOR. CR LF together end one.
inline constexpr UnitSet lineTerminators{u'\n', u'\r', u'\x85', u'\x2028', u'\x2029'};

// Whether the terminator at `place` is the LF of a CR LF whose CR ended the line before `start`.
inline bool completesPair(TextView text, std::size_t place, std::size_t start) {
  return place == start && place > 0 && place < text.size() && text[place] == u'\n' && text[place - 1] == u'\r';
}

// The lines of a text, one at a time and without copying: the library's one line splitter.
//
// ```cpp
// for (const TextView line : Lines(text)) std::cout << utf8(line) << '\n';
// ```
//
// Lines come without their terminators. A text that ends with a terminator has an empty last line, and the empty text
// has no line at all:
//
//   u""          => (none)
//   u"a"         => "a"
//   u"a\n"       => "a", ""
//   u"\n\n"      => "", "", ""
//   u"a\r\nb"    => "a", "b"
//
// Walking all lines takes time proportional to the text. Immutable; the text must outlive it, so temporaries are
// refused.
class Lines {
 public:
  class Iterator {
   public:
    using iterator_concept = std::forward_iterator_tag;
    using iterator_category = std::input_iterator_tag;
    using value_type = TextView;
    using difference_type = std::ptrdiff_t;

    Iterator() = default;
    explicit Iterator(TextView text) : myText(text), myTerminators(text, lineTerminators), myIsDone(text.empty()) {
      if (!myIsDone) myContentsEnd = myTerminators.next();
    }

    TextView operator*() const { return myText.substr(myStart, myContentsEnd - myStart); }
    Iterator& operator++() {
      myIsDone = myContentsEnd == myText.size();
      if (!myIsDone) startNext();
      return *this;
    }
    Iterator operator++(int) {
      Iterator before = *this;
      ++*this;
      return before;
    }

    // Where the line starts in the text, and where its contents end.
    std::size_t start() const { return myStart; }
    std::size_t contentsEnd() const { return myContentsEnd; }

    friend bool operator==(const Iterator& a, const Iterator& b) {
      return a.myStart == b.myStart && a.myIsDone == b.myIsDone;
    }
    friend bool operator==(const Iterator& i, std::default_sentinel_t) { return i.myIsDone; }

   private:
    void startNext() {
      myStart = myContentsEnd + 1;
      myContentsEnd = myTerminators.next();
      if (!completesPair(myText, myContentsEnd, myStart)) return;
      ++myStart;
      myContentsEnd = myTerminators.next();
    }

    TextView myText;
    UnitPlaces myTerminators;
    std::size_t myStart = 0;
    std::size_t myContentsEnd = 0;
    bool myIsDone = true;
  };

  explicit Lines(TextView text) : myText(text) {}
  template <TemporaryText T>
  explicit Lines(T&& temporary) = delete;

  Iterator begin() const { return Iterator(myText); }
  std::default_sentinel_t end() const { return {}; }

 private:
  TextView myText;
};

// Calls `visit(line)` for each of the same lines: faster where `visit` does little.
template <class Visit>
void visitLines(TextView text, Visit visit) {
  if (text.empty()) return;
  std::size_t start = 0;
  visitPlaces(UnitMarker{text, &lineTerminators}, [&](std::size_t place) {
    if (!completesPair(text, place, start)) visit(text.substr(start, place - start));
    start = place + 1;
  });
  visit(text.substr(start));
}

}  // namespace kelvane
