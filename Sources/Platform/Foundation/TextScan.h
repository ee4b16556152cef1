#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// The few loops over code units that all scanning and copying of text goes through, so that making text fast is the
// work of one place. Pure functions, any thread.
namespace kelvane {

// Up to eight code units to look for at once, known when compiled: `constexpr UnitSet quotes{u'"', u'\''};`
class UnitSet {
 public:
  // Unused places repeat the first unit, so that a search may compare all of them without asking how many there are.
  consteval UnitSet(std::initializer_list<char16_t> units) {
    if (units.size() == 0 || units.size() > myUnits.size()) throw "a unit set holds one to eight code units";
    myUnits.fill(*units.begin());
    for (const char16_t unit : units) myUnits[mySize++] = unit;
    for (std::size_t bits = 0; bits < myByLowBits.size(); ++bits) myByLowBits[bits] = static_cast<char16_t>(bits ^ 1);
    for (const char16_t unit : units) {
      char16_t& member = myByLowBits[unit % myByLowBits.size()];
      if (member % myByLowBits.size() == unit % myByLowBits.size()) myHasDistinctLowBits = false;
      member = unit;
    }
  }

  constexpr bool contains(char16_t unit) const {
    bool found = false;
    for (const char16_t member : myUnits) found |= member == unit;
    return found;
  }
  constexpr const std::array<char16_t, 8>& units() const { return myUnits; }
  constexpr std::size_t size() const { return mySize; }

  // For each value of the five lowest bits the member that has them, or else a unit that has others: a unit is a member
  // when it equals the one at its own bits. Only where no two members have the same.
  constexpr const std::array<char16_t, 32>& byLowBits() const { return myByLowBits; }
  constexpr bool hasDistinctLowBits() const { return myHasDistinctLowBits; }

 private:
  std::array<char16_t, 8> myUnits{};
  std::array<char16_t, 32> myByLowBits{};
  bool myHasDistinctLowBits = true;
  std::size_t mySize = 0;
};

// The index of the first code unit at or behind `from` that is in `set`; the text's length when there is none.
KELVANE_EXPORT std::size_t findAnyOf(TextView text, const UnitSet& set, std::size_t from = 0);

// The same for a single code unit.
KELVANE_EXPORT std::size_t findUnit(TextView text, char16_t unit, std::size_t from = 0);

// How many code units of `text` equal `unit`.
KELVANE_EXPORT std::size_t countUnit(TextView text, char16_t unit);

// How many code units of `text` are in `set`.
KELVANE_EXPORT std::size_t countAnyOf(TextView text, const UnitSet& set);

// Sets the bit of each place in `text` where a member of `set` stands, and clears the others: bit 0 of `marks[0]` is
// the first code unit's. `marks` has a bit for each code unit; those behind the last one are cleared.
KELVANE_EXPORT void markAnyOf(TextView text, const UnitSet& set, std::uint64_t* marks);

// The same for what is in `set` or above `limit`.
KELVANE_EXPORT void markAnyOfOrAbove(TextView text, const UnitSet& set, char16_t limit, std::uint64_t* marks);

// Sets the bit of each place where `needle` may begin: where its first code unit stands, and its last one where it
// would end. `needle` is not empty and no longer than `text`, and `marks` has a bit for each place where it fits.
KELVANE_EXPORT void markEnds(TextView text, TextView needle, std::uint64_t* marks);

// `text` with every `from` replaced by `to`.
KELVANE_EXPORT Text replacingUnit(TextView text, char16_t from, char16_t to);

// Writes the beginning of `text` without the members of `set`, as far as the machine does it fast by vectors (most
// cannot, and write nothing), and takes it from `text`. Returns the end of what is written; `out` must have room for
// all of it.
char16_t* removeAnyOfByVectors(TextView& text, const UnitSet& set, char16_t* out);

// The same with `prefix` put before each member. `out` must have room for the whole text and its prefixes.
char16_t* prefixAnyOfByVectors(TextView& text, const UnitSet& set, char16_t prefix, char16_t* out);

}  // namespace kelvane
