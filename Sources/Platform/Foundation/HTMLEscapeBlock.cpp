#include "Platform/Foundation/HTMLEscapeBlock.h"

#include <algorithm>
#include <bit>
#include <cstring>

// Compiled once for each instruction set; the best one that the machine has is chosen at the first call.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Platform/Foundation/HTMLEscapeBlock.cpp"
#include <hwy/foreach_target.h>
// Behind the line above, which makes it stand for another instruction set each time.
#include <hwy/highway.h>

#ifndef KELVANE_HTML_ESCAPE_TABLES
#define KELVANE_HTML_ESCAPE_TABLES

namespace kelvane::escaping {
namespace {

// The places of the bits that are set in a byte, lowest first.
constexpr auto placesOfMarks = [] {
  std::array<std::array<std::uint16_t, 8>, 256> table{};
  for (std::size_t marks = 0; marks < table.size(); ++marks) {
    std::size_t count = 0;
    for (std::uint16_t place = 0; place < 8; ++place)
      if (marks >> place & 1U) table[marks][count++] = place;
  }
  return table;
}();

}  // namespace
}  // namespace kelvane::escaping

#endif

HWY_BEFORE_NAMESPACE();
namespace kelvane::escaping {
namespace HWY_NAMESPACE {
namespace {

#if HWY_TARGET != HWY_SCALAR  // which has no vectors to speak of

namespace hn = hwy::HWY_NAMESPACE;
using Bytes = hn::CappedTag<std::uint8_t, slack>;
using HalfBytes = hn::Half<Bytes>;
using Units = hn::RepartitionToWide<Bytes>;

// As many units as there are lanes, a byte each: those from 128 on are so as bytes too.
auto loadNarrow(const std::uint16_t* units) {
  const Units d;
  const auto narrow = [](auto vector) {
    const auto atMost255 = hn::Min(vector, hn::Set(Units(), std::uint16_t{0xFF}));
    return hn::DemoteTo(HalfBytes(), hn::BitCast(hn::RebindToSigned<Units>(), atMost255));
  };
  return hn::Combine(Bytes(), narrow(hn::LoadU(d, units + hn::Lanes(d))), narrow(hn::LoadU(d, units)));
}

// The low halves of the five bytes differ, so each finds the only one that it can be: no byte is the one at its place
// otherwise.
HWY_ALIGN constexpr std::uint8_t special[16] = {1, 0, '"', 0, 0, 0, '&', 0, 0, 0, '\n', 0, '<', 0, '>', 0};

template <class Vector>
auto isEscaped(Vector bytes) {
  const Bytes d;
  const auto indices = hn::And(bytes, hn::Set(d, std::uint8_t{0x8F}));
  const auto isSpecial = hn::Eq(hn::TableLookupBytesOr0(hn::LoadDup128(d, special), indices), bytes);
  return hn::Or(isSpecial, hn::Gt(bytes, hn::Set(d, std::uint8_t{lastASCII})));
}

// Calls `operation` with the first place of each vector of units, and where they can be loaded from.
template <class Operation>
void forEachVector(TextView text, Operation operation) {
  const std::size_t lanes = hn::Lanes(Bytes());
  const auto* units = reinterpret_cast<const std::uint16_t*>(text.data());
  std::size_t i = 0;
  for (; i + lanes <= text.size(); i += lanes) operation(i, units + i);
  if (i == text.size()) return;
  // NUL is not escaped.
  std::array<std::uint16_t, slack> last{};
  std::memcpy(last.data(), units + i, (text.size() - i) * sizeof(std::uint16_t));
  operation(i, last.data());
}

std::size_t countEscapedHere(TextView text) {
  std::size_t count = 0;
  forEachVector(text, [&count](std::size_t, const std::uint16_t* units) {
    count += hn::CountTrue(Bytes(), isEscaped(loadNarrow(units)));
  });
  return count;
}

// Writes at which places of a block the lanes stand that are set, of which the first lane's is `first`, and returns how
// many there are. Writes more than that, so that the number need not be guessed.
template <class Mask>
std::size_t storePlaces(Mask mask, std::size_t first, std::uint16_t* out) {
  const Bytes d;
  std::size_t count = 0;
#if HWY_TARGET == HWY_AVX3_DL
  // One instruction puts the lanes that are set next to each other.
  const Units dUnits;
  const auto base = hn::Set(dUnits, static_cast<std::uint16_t>(first));
  const auto lanes = hn::Compress(hn::Iota(d, 0), mask);
  count = hn::CountTrue(d, mask);
  hn::StoreU(hn::Add(hn::PromoteTo(dUnits, hn::LowerHalf(lanes)), base), dUnits, out);
  if (count <= hn::Lanes(dUnits)) return count;
  hn::StoreU(hn::Add(hn::PromoteTo(dUnits, hn::UpperHalf(HalfBytes(), lanes)), base), dUnits, out + hn::Lanes(dUnits));
#else
  const hn::CappedTag<std::uint16_t, 8> dPlaces;
  std::uint8_t marks[slack / 8] = {};
  hn::StoreMaskBits(d, mask, marks);
  for (std::size_t i = 0; i < hn::Lanes(d) / 8; ++i) {
    const auto places = hn::LoadU(dPlaces, placesOfMarks[marks[i]].data());
    hn::StoreU(hn::Add(places, hn::Set(dPlaces, static_cast<std::uint16_t>(first + 8 * i))), dPlaces, out + count);
    count += static_cast<std::size_t>(std::popcount(marks[i]));
  }
#endif
  return count;
}

void readBlockHere(TextView text, Block& block) {
  std::size_t count = 0;
  forEachVector(text, [&](std::size_t i, const std::uint16_t* units) {
    const auto bytes = loadNarrow(units);
    hn::StoreU(bytes, Bytes(), block.characters.data() + i);
    count += storePlaces(isEscaped(bytes), i, block.places.data() + count);
  });
  block.places[count] = blockUnits;
}

void widenHere(const std::uint8_t* characters, std::size_t count, char16_t* out) {
  const Units d;
  const std::size_t lanes = hn::Lanes(d);
  auto* units = reinterpret_cast<std::uint16_t*>(out);
  const auto widenAt = [=](std::size_t i) {
    hn::StoreU(hn::PromoteTo(d, hn::LoadU(HalfBytes(), characters + i)), d, units + i);
  };
  if (count < lanes) {
    std::copy_n(characters, count, out);
    return;
  }
  for (std::size_t i = 0; i + lanes <= count; i += lanes) widenAt(i);
  widenAt(count - lanes);
}

#else

bool isEscaped(char16_t unit) { return unit > lastASCII || TextView(u"\n\"&<>").find(unit) != TextView::npos; }

std::size_t countEscapedHere(TextView text) { return static_cast<std::size_t>(std::ranges::count_if(text, isEscaped)); }

void readBlockHere(TextView text, Block& block) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    block.characters[i] = static_cast<std::uint8_t>(text[i]);
    if (isEscaped(text[i])) block.places[count++] = static_cast<std::uint16_t>(i);
  }
  block.places[count] = blockUnits;
}

void widenHere(const std::uint8_t* characters, std::size_t count, char16_t* out) {
  std::copy_n(characters, count, out);
}

#endif

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kelvane::escaping
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace kelvane::escaping {
namespace {

HWY_EXPORT(countEscapedHere);
HWY_EXPORT(readBlockHere);
HWY_EXPORT(widenHere);

}  // namespace

std::size_t countEscaped(TextView text) { return HWY_DYNAMIC_DISPATCH(countEscapedHere)(text); }

void readBlock(TextView units, Block& block) { HWY_DYNAMIC_DISPATCH(readBlockHere)(units, block); }

void widen(const std::uint8_t* characters, std::size_t count, char16_t* out) {
  HWY_DYNAMIC_DISPATCH(widenHere)(characters, count, out);
}

}  // namespace kelvane::escaping

#endif
