#include "Platform/Foundation/TextScan.h"

#include <bit>
#include <cstdint>
#include <cstring>

#include "Platform/Foundation/Overwrite.h"

// Compiled once for each instruction set; the best one that the machine has is chosen at the first call.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Platform/Foundation/TextScan.cpp"
#include <hwy/foreach_target.h>
// Behind the line above, which makes it stand for another instruction set each time.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace kelvane {
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using Units = hn::ScalableTag<std::uint16_t>;

const std::uint16_t* unitsOf(TextView text) { return reinterpret_cast<const std::uint16_t*>(text.data()); }

std::uint16_t laneOf(char16_t unit) { return static_cast<std::uint16_t>(unit); }

// Which lanes hold a member of a set, by `Size` comparisons: most sets hold two units, the largest six.
template <std::size_t Size>
struct Membership {
  template <class Vector>
  auto operator()(Vector vector) const {
    const Units d;
    auto found = hn::Eq(vector, hn::Set(d, laneOf(set.units()[0])));
    for (std::size_t i = 1; i < Size; ++i) found = hn::Or(found, hn::Eq(vector, hn::Set(d, laneOf(set.units()[i]))));
    return found;
  }

  // A copy, which no store of a loop can be thought to change.
  UnitSet set;
};

#if HWY_TARGET <= HWY_AVX3

// The same by one look-up and one comparison, for sets whose members have distinct low bits.
struct LookedUp {
  auto operator()(hn::Vec<Units> vector) const {
    const auto table = hn::LoadU(Units(), reinterpret_cast<const std::uint16_t*>(set.byLowBits().data()));
    return hn::Eq(vector, hn::Vec<Units>{_mm512_permutexvar_epi16(vector.raw, table.raw)});
  }

  UnitSet set;
};

#endif

// Calls `operation` with the membership that takes the fewest comparisons.
template <class Operation>
auto withMembership(const UnitSet& set, Operation operation) {
  if (set.size() <= 1) return operation(Membership<1>{set});
  if (set.size() <= 2) return operation(Membership<2>{set});
#if HWY_TARGET <= HWY_AVX3
  if (set.hasDistinctLowBits()) return operation(LookedUp{set});
#endif
  if (set.size() <= 4) return operation(Membership<4>{set});
  return set.size() <= 6 ? operation(Membership<6>{set}) : operation(Membership<8>{set});
}

std::size_t findAnyOfHere(TextView text, const UnitSet& set, std::size_t from) {
  const std::uint16_t* units = unitsOf(text);
  return withMembership(set, [&](auto isMember) {
    const Units d;
    const std::size_t lanes = hn::Lanes(d);
    std::size_t i = from;
    for (; i + lanes <= text.size(); i += lanes) {
      const std::intptr_t first = hn::FindFirstTrue(d, isMember(hn::LoadU(d, units + i)));
      if (first >= 0) return i + static_cast<std::size_t>(first);
    }
    while (i < text.size() && !set.contains(text[i])) ++i;
    return i;
  });
}

std::size_t findUnitHere(TextView text, char16_t unit, std::size_t from) {
  const Units d;
  const std::size_t lanes = hn::Lanes(d);
  const std::uint16_t* units = unitsOf(text);
  const auto wanted = hn::Set(d, static_cast<std::uint16_t>(unit));
  for (; from + lanes <= text.size(); from += lanes) {
    const std::intptr_t first = hn::FindFirstTrue(d, hn::Eq(hn::LoadU(d, units + from), wanted));
    if (first >= 0) return from + static_cast<std::size_t>(first);
  }
  while (from < text.size() && text[from] != unit) ++from;
  return from;
}

// The last units of a text, fewer than a vector has, with lanes behind them that count for nothing.
auto loadLast(const std::uint16_t* units, std::size_t count) {
  HWY_ALIGN std::uint16_t lanes[HWY_MAX_BYTES / sizeof(std::uint16_t)];
  std::memcpy(lanes, units, count * sizeof(std::uint16_t));
  return hn::Load(Units(), lanes);
}

template <class IsMarked>
std::size_t countLanes(TextView text, IsMarked isMarked) {
  const Units d;
  const std::size_t lanes = hn::Lanes(d);
  const std::uint16_t* units = unitsOf(text);
  std::size_t count = 0;
  std::size_t i = 0;
  for (; i + lanes <= text.size(); i += lanes) count += hn::CountTrue(d, isMarked(hn::LoadU(d, units + i)));
  const std::size_t left = text.size() - i;
  return left == 0 ? count
                   : count + hn::CountTrue(d, hn::And(hn::FirstN(d, left), isMarked(loadLast(units + i, left))));
}

std::size_t countUnitHere(TextView text, char16_t unit) {
  const auto wanted = hn::Set(Units(), laneOf(unit));
  return countLanes(text, [&](auto vector) { return hn::Eq(vector, wanted); });
}

std::size_t countAnyOfHere(TextView text, const UnitSet& set) {
  return withMembership(set, [&](auto isMember) { return countLanes(text, isMember); });
}

// Which lanes hold a member of a set or are above `limit`.
template <class IsMember>
auto orAbove(IsMember isMember, char16_t limit) {
  return [=](auto vector) { return hn::Or(isMember(vector), hn::Gt(vector, hn::Set(Units(), laneOf(limit)))); };
}

// The bits of the lanes that are set.
template <class Mask>
std::uint64_t bitsOf(Mask mask) {
  std::uint64_t bits = 0;
  hn::StoreMaskBits(Units(), mask, reinterpret_cast<std::uint8_t*>(&bits));
  return bits;
}

// Marks the places of which `isMarked(load, place)` says so; it loads the vectors that it looks at by `load(units)`.
template <class IsMarked>
void markPlaces(std::size_t count, std::uint64_t* marks, IsMarked isMarked) {
  const Units d;
  const std::size_t lanes = hn::Lanes(d);
  const auto loadWhole = [](const std::uint16_t* units) { return hn::LoadU(Units(), units); };
  for (std::size_t word = 0; word < count; word += 64) {
    std::uint64_t bits = 0;
    std::size_t i = word;
    for (; i + lanes <= count && i < word + 64; i += lanes) bits |= bitsOf(isMarked(loadWhole, i)) << (i - word);
    const std::size_t left = count - i;
    if (i < word + 64 && left > 0) {
      const auto loadRest = [left](const std::uint16_t* units) { return loadLast(units, left); };
      bits |= bitsOf(hn::And(hn::FirstN(d, left), isMarked(loadRest, i))) << (i - word);
    }
    marks[word / 64] = bits;
  }
}

void markAnyOfHere(TextView text, const UnitSet& set, std::uint64_t* marks) {
  const std::uint16_t* units = unitsOf(text);
  withMembership(set, [&](auto isMember) {
    markPlaces(text.size(), marks, [&](auto load, std::size_t i) { return isMember(load(units + i)); });
  });
}

void markAnyOfOrAboveHere(TextView text, const UnitSet& set, char16_t limit, std::uint64_t* marks) {
  const std::uint16_t* units = unitsOf(text);
  withMembership(set, [&](auto isMember) {
    const auto isMarked = orAbove(isMember, limit);
    markPlaces(text.size(), marks, [&](auto load, std::size_t i) { return isMarked(load(units + i)); });
  });
}

void markEndsHere(TextView text, TextView needle, std::uint64_t* marks) {
  const Units d;
  const std::uint16_t* firsts = unitsOf(text);
  const std::uint16_t* lasts = firsts + needle.size() - 1;
  const auto first = hn::Set(d, laneOf(needle.front()));
  const auto last = hn::Set(d, laneOf(needle.back()));
  markPlaces(text.size() - needle.size() + 1, marks, [&](auto load, std::size_t i) {
    return hn::And(hn::Eq(load(firsts + i), first), hn::Eq(load(lasts + i), last));
  });
}

void replaceUnitHere(TextView text, char16_t from, char16_t to, char16_t* out) {
  const Units d;
  const std::size_t lanes = hn::Lanes(d);
  const std::uint16_t* units = unitsOf(text);
  const auto wanted = hn::Set(d, static_cast<std::uint16_t>(from));
  const auto replacement = hn::Set(d, static_cast<std::uint16_t>(to));
  std::size_t i = 0;
  for (; i + lanes <= text.size(); i += lanes) {
    const auto vector = hn::LoadU(d, units + i);
    hn::StoreU(hn::IfThenElse(hn::Eq(vector, wanted), replacement, vector), d,
               reinterpret_cast<std::uint16_t*>(out + i));
  }
  for (; i < text.size(); ++i) out[i] = text[i] == from ? to : text[i];
}

#if HWY_TARGET == HWY_AVX3_DL

// One instruction puts the lanes that are kept next to each other. On other machines that takes so many that copying
// the runs between the special units is faster.
char16_t* removeAnyOfHere(TextView& text, const UnitSet& set, char16_t* out) {
  const std::uint16_t* units = unitsOf(text);
  auto* written = reinterpret_cast<std::uint16_t*>(out);
  const std::size_t done = withMembership(set, [&](auto isMember) {
    const Units d;
    const std::size_t lanes = hn::Lanes(d);
    std::size_t i = 0;
    for (; i + lanes <= text.size(); i += lanes) {
      const auto vector = hn::LoadU(d, units + i);
      written += hn::CompressStore(vector, hn::Not(isMember(vector)), d, written);
    }
    return i;
  });
  text.remove_prefix(done);
  return reinterpret_cast<char16_t*>(written);
}

// A vector is spread so that the prefixes have lanes of their own, at most four of them as a rule: with more, only as
// many units are taken as have room for a prefix each.
char16_t* prefixAnyOfHere(TextView& text, const UnitSet& set, char16_t prefix, char16_t* out) {
  constexpr std::size_t lanes = 32;
  constexpr std::size_t usualPrefixes = 4;
  // Seen as pairs of lanes, a prefix and its unit.
  constexpr std::uint64_t units = 0xAAAAAAAAAAAAAAAA;
  constexpr std::uint64_t prefixes = ~units;
  const Units d;
  const TextView all = text;
  std::size_t i = 0;
  withMembership(set, [&](auto isMember) {
    while (i + lanes <= all.size()) {
      const auto vector = hn::LoadU(d, unitsOf(all) + i);
      std::size_t taken = lanes - usualPrefixes;
      std::uint64_t members = bitsOf(isMember(vector)) & ((std::uint64_t{1} << taken) - 1);
      if (hwy::PopCount(members) > usualPrefixes) {
        taken = lanes / 2;
        members &= (std::uint64_t{1} << taken) - 1;
      }
      const auto isUnit = static_cast<__mmask32>(_pext_u64(units, units | _pdep_u64(members, prefixes)));
      const auto spread = _mm512_mask_expand_epi16(hn::Set(d, laneOf(prefix)).raw, isUnit, vector.raw);
      _mm512_storeu_si512(out, spread);
      out += taken + hwy::PopCount(members);
      i += taken;
    }
  });
  text.remove_prefix(i);
  return out;
}

#else

char16_t* removeAnyOfHere(TextView&, const UnitSet&, char16_t* out) { return out; }
char16_t* prefixAnyOfHere(TextView&, const UnitSet&, char16_t, char16_t* out) { return out; }

#endif

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kelvane
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace kelvane {
namespace {

HWY_EXPORT(findAnyOfHere);
HWY_EXPORT(findUnitHere);
HWY_EXPORT(countUnitHere);
HWY_EXPORT(countAnyOfHere);
HWY_EXPORT(markAnyOfHere);
HWY_EXPORT(markAnyOfOrAboveHere);
HWY_EXPORT(markEndsHere);
HWY_EXPORT(replaceUnitHere);
HWY_EXPORT(removeAnyOfHere);
HWY_EXPORT(prefixAnyOfHere);

}  // namespace

std::size_t findAnyOf(TextView text, const UnitSet& set, std::size_t from) {
  if (from >= text.size()) return text.size();
  return HWY_DYNAMIC_DISPATCH(findAnyOfHere)(text, set, from);
}

std::size_t findUnit(TextView text, char16_t unit, std::size_t from) {
  if (from >= text.size()) return text.size();
  return HWY_DYNAMIC_DISPATCH(findUnitHere)(text, unit, from);
}

std::size_t countUnit(TextView text, char16_t unit) { return HWY_DYNAMIC_DISPATCH(countUnitHere)(text, unit); }

std::size_t countAnyOf(TextView text, const UnitSet& set) { return HWY_DYNAMIC_DISPATCH(countAnyOfHere)(text, set); }

// The marks of a vector are stored byte by byte, lowest first.
static_assert(std::endian::native == std::endian::little);

void markAnyOf(TextView text, const UnitSet& set, std::uint64_t* marks) {
  HWY_DYNAMIC_DISPATCH(markAnyOfHere)(text, set, marks);
}

void markAnyOfOrAbove(TextView text, const UnitSet& set, char16_t limit, std::uint64_t* marks) {
  HWY_DYNAMIC_DISPATCH(markAnyOfOrAboveHere)(text, set, limit, marks);
}

void markEnds(TextView text, TextView needle, std::uint64_t* marks) {
  HWY_DYNAMIC_DISPATCH(markEndsHere)(text, needle, marks);
}

Text replacingUnit(TextView text, char16_t from, char16_t to) {
  return overwritten<Text>(text.size(), [&](char16_t* out) {
    HWY_DYNAMIC_DISPATCH(replaceUnitHere)(text, from, to, out);
    return text.size();
  });
}

char16_t* removeAnyOfByVectors(TextView& text, const UnitSet& set, char16_t* out) {
  return HWY_DYNAMIC_DISPATCH(removeAnyOfHere)(text, set, out);
}

char16_t* prefixAnyOfByVectors(TextView& text, const UnitSet& set, char16_t prefix, char16_t* out) {
  return HWY_DYNAMIC_DISPATCH(prefixAnyOfHere)(text, set, prefix, out);
}

}  // namespace kelvane

#endif
