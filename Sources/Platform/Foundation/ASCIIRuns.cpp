#include "Platform/Foundation/ASCIIRuns.h"

#include <cstdint>

// Compiled once for each instruction set; the best one that the machine has is chosen at the first call.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Platform/Foundation/ASCIIRuns.cpp"
#include <hwy/foreach_target.h>
// Behind the line above, which makes it stand for another instruction set each time.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace kelvane {
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using Units = hn::ScalableTag<std::uint16_t>;
using Bytes = hn::Rebind<std::uint8_t, Units>;

constexpr std::uint16_t firstBeyondASCII = 0x80;

// The first lane that holds anything but ASCII; negative when there is none.
template <class Vector>
std::intptr_t firstBeyond(Vector units) {
  const Units d;
  const auto beyondASCII = hn::Set(d, static_cast<std::uint16_t>(0xFFFF & ~(firstBeyondASCII - 1)));
  return hn::FindFirstTrue(d, hn::Ne(hn::And(units, beyondASCII), hn::Zero(d)));
}

// Vectors are stored whole, also where only their beginning counts: the rest is written again by whoever comes next.
std::size_t widenASCIIHere(std::string_view bytes, char16_t* out) {
  const Units d;
  const std::size_t lanes = hn::Lanes(d);
  const auto* in = reinterpret_cast<const std::uint8_t*>(bytes.data());
  auto* units = reinterpret_cast<std::uint16_t*>(out);
  std::size_t i = 0;
  for (; i + lanes <= bytes.size(); i += lanes) {
    const auto vector = hn::PromoteTo(d, hn::LoadU(Bytes(), in + i));
    hn::StoreU(vector, d, units + i);
    const std::intptr_t beyond = firstBeyond(vector);
    if (beyond >= 0) return i + static_cast<std::size_t>(beyond);
  }
  for (; i < bytes.size() && in[i] < firstBeyondASCII; ++i) units[i] = in[i];
  return i;
}

std::size_t narrowASCIIHere(TextView text, char* out) {
  const Units d;
  const hn::RebindToSigned<Units> dSigned;
  const std::size_t lanes = hn::Lanes(d);
  const auto* in = reinterpret_cast<const std::uint16_t*>(text.data());
  auto* bytes = reinterpret_cast<std::uint8_t*>(out);
  std::size_t i = 0;
  for (; i + lanes <= text.size(); i += lanes) {
    const auto vector = hn::LoadU(d, in + i);
    hn::StoreU(hn::DemoteTo(Bytes(), hn::BitCast(dSigned, vector)), Bytes(), bytes + i);
    const std::intptr_t beyond = firstBeyond(vector);
    if (beyond >= 0) return i + static_cast<std::size_t>(beyond);
  }
  for (; i < text.size() && in[i] < firstBeyondASCII; ++i) bytes[i] = static_cast<std::uint8_t>(in[i]);
  return i;
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kelvane
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace kelvane {
namespace {

HWY_EXPORT(widenASCIIHere);
HWY_EXPORT(narrowASCIIHere);

}  // namespace

std::size_t widenASCII(std::string_view bytes, char16_t* out) {
  return HWY_DYNAMIC_DISPATCH(widenASCIIHere)(bytes, out);
}

std::size_t narrowASCII(TextView text, char* out) { return HWY_DYNAMIC_DISPATCH(narrowASCIIHere)(text, out); }

}  // namespace kelvane

#endif
