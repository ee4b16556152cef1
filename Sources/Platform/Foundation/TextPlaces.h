#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "Platform/Foundation/Text.h"
#include "Platform/Foundation/TextScan.h"

// Walks over all places of a text where something stands, in ascending order:
//
// ```cpp
// const UnitSet quotes{u'"', u'\''};
// UnitPlaces places(text, quotes);
// for (std::size_t place = places.next(); place != text.size(); place = places.next()) std::cout << place << '\n';
// ```
//
// Where what is looked for stands close together this is several times as fast as `findAnyOf` time and again: a stretch
// of text is marked at once, a bit for each code unit, and then only the bits are walked over. Walks view what they are
// given, sets included.
namespace kelvane {

// How many words of marks, of 64 places each, a walk has filled at a time.
inline constexpr std::size_t markWords = 8;

// What a walk looks for: at how many places it may stand, and which of `count` places from `from` on to mark. There are
// at most markWords * 64 of them.
struct UnitMarker {
  std::size_t size() const { return text.size(); }
  void mark(std::size_t from, std::size_t count, std::uint64_t* marks) const {
    markAnyOf(text.substr(from, count), *set, marks);
  }

  TextView text;
  const UnitSet* set = nullptr;
};

struct NeedleMarker {
  std::size_t size() const { return text.size() < needle.size() ? 0 : text.size() - needle.size() + 1; }
  void mark(std::size_t from, std::size_t count, std::uint64_t* marks) const {
    markEnds(text.substr(from, count + needle.size() - 1), needle, marks);
  }

  TextView text;
  TextView needle;
};

template <class Marker>
class MarkedPlaces {
 public:
  MarkedPlaces() = default;
  explicit MarkedPlaces(const Marker& marker, std::size_t from = 0) : myMarker(marker), myMarkedTo(from) {}

  // The next place; the marker's size when there is none any more.
  std::size_t next() {
    while (myMarks[myWord] == 0) {
      if (myWord + 1 < words)
        ++myWord;
      else if (myMarkedTo < myMarker.size())
        markOn();
      else
        return myMarker.size();
    }
    const auto bit = static_cast<std::size_t>(std::countr_zero(myMarks[myWord]));
    myMarks[myWord] &= myMarks[myWord] - 1;
    return myBase + myWord * wordBits + bit;
  }

 private:
  static constexpr std::size_t words = markWords;
  static constexpr std::size_t wordBits = 64;

  void markOn() {
    const std::size_t count = std::min(words * wordBits, myMarker.size() - myMarkedTo);
    myMarker.mark(myMarkedTo, count, myMarks.data());
    myBase = myMarkedTo;
    myMarkedTo += count;
    myWord = 0;
  }

  Marker myMarker;
  // The marks not walked over yet, of the places from `myBase` to `myMarkedTo`.
  std::array<std::uint64_t, words> myMarks{};
  std::size_t myBase = 0;
  std::size_t myMarkedTo = 0;
  std::size_t myWord = words - 1;
};

// Calls `visit(place)` for each place of `marker`: a walk for loops that do little else, which keeps its state in
// registers.
template <class Marker, class Visit>
void visitPlaces(const Marker& marker, Visit visit) {
  constexpr std::size_t words = markWords;
  std::array<std::uint64_t, words> marks{};
  for (std::size_t base = 0; base < marker.size(); base += words * 64) {
    const std::size_t count = std::min(words * 64, marker.size() - base);
    marker.mark(base, count, marks.data());
    for (std::size_t word = 0; word * 64 < count; ++word)
      for (std::uint64_t bits = marks[word]; bits != 0; bits &= bits - 1)
        visit(base + word * 64 + static_cast<std::size_t>(std::countr_zero(bits)));
  }
}

// The places of the code units of a set.
class UnitPlaces : public MarkedPlaces<UnitMarker> {
 public:
  UnitPlaces() = default;
  UnitPlaces(TextView text, const UnitSet& set, std::size_t from = 0) : MarkedPlaces(UnitMarker{text, &set}, from) {}
};

// The places where a needle that is not empty may stand: its ends do, and the caller compares what is between them.
class NeedlePlaces : public MarkedPlaces<NeedleMarker> {
 public:
  NeedlePlaces() = default;
  NeedlePlaces(TextView text, TextView needle, std::size_t from = 0) : MarkedPlaces(NeedleMarker{text, needle}, from) {}
};

}  // namespace kelvane
