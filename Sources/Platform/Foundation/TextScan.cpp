#include "Platform/Foundation/TextScan.h"

#include <cstdint>

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

// `Size` compile-time comparisons per vector: most sets hold two units, the largest five.
template <std::size_t Size>
std::size_t findAnyOfSized(TextView text, const UnitSet& set, std::size_t from) {
  const Units d;
  const std::size_t lanes = hn::Lanes(d);
  const std::uint16_t* units = unitsOf(text);
  const auto member = [&](std::size_t i) { return hn::Set(d, static_cast<std::uint16_t>(set.units()[i])); };
  const auto isMember = [&](auto vector) {
    auto found = hn::Eq(vector, member(0));
    for (std::size_t i = 1; i < Size; ++i) found = hn::Or(found, hn::Eq(vector, member(i)));
    return found;
  };
  for (; from + lanes <= text.size(); from += lanes) {
    const std::intptr_t first = hn::FindFirstTrue(d, isMember(hn::LoadU(d, units + from)));
    if (first >= 0) return from + static_cast<std::size_t>(first);
  }
  while (from < text.size() && !set.contains(text[from])) ++from;
  return from;
}

std::size_t findAnyOfHere(TextView text, const UnitSet& set, std::size_t from) {
  if (set.size() <= 1) return findAnyOfSized<1>(text, set, from);
  if (set.size() <= 2) return findAnyOfSized<2>(text, set, from);
  return set.size() <= 5 ? findAnyOfSized<5>(text, set, from) : findAnyOfSized<8>(text, set, from);
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

std::size_t countUnitHere(TextView text, char16_t unit) {
  const Units d;
  const std::size_t lanes = hn::Lanes(d);
  const std::uint16_t* units = unitsOf(text);
  const auto wanted = hn::Set(d, static_cast<std::uint16_t>(unit));
  std::size_t count = 0;
  std::size_t i = 0;
  for (; i + lanes <= text.size(); i += lanes) count += hn::CountTrue(d, hn::Eq(hn::LoadU(d, units + i), wanted));
  for (; i < text.size(); ++i) count += text[i] == unit;
  return count;
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
HWY_EXPORT(replaceUnitHere);

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

Text replacingUnit(TextView text, char16_t from, char16_t to) {
  return overwritten<Text>(text.size(), [&](char16_t* out) {
    HWY_DYNAMIC_DISPATCH(replaceUnitHere)(text, from, to, out);
    return text.size();
  });
}

}  // namespace kelvane

#endif
