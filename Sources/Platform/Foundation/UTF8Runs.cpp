#include "Platform/Foundation/UTF8Runs.h"

#include <cstdint>

// Compiled once for each instruction set; the best one that the machine has is chosen at the first call.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Platform/Foundation/UTF8Runs.cpp"
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
// Runs of longer sequences end sooner, at the next blank or digit, so they take smaller steps.
using FewUnits = hn::CappedTag<std::uint16_t, 16>;
using FewBytes = hn::Rebind<std::uint8_t, FewUnits>;

const std::uint16_t* unitsOf(TextView text) { return reinterpret_cast<const std::uint16_t*>(text.data()); }
const std::uint8_t* bytesOf(std::string_view bytes) { return reinterpret_cast<const std::uint8_t*>(bytes.data()); }

template <class D>
auto set(D d, unsigned value) {
  return hn::Set(d, static_cast<hn::TFromD<D>>(value));
}

// How many of the first lanes are set.
template <class D, class Mask>
std::size_t leadingTrue(D d, Mask mask) {
  const std::intptr_t end = hn::FindFirstTrue(d, hn::Not(mask));
  return end < 0 ? hn::Lanes(d) : static_cast<std::size_t>(end);
}

template <class Vector>
auto isASCII(Vector units) {
  const Units d;
  return hn::Eq(hn::And(units, set(d, 0xFF80)), hn::Zero(d));
}

// Vectors are stored whole, also where only their beginning counts: the rest is written again by whoever comes next.
std::size_t widenASCIIHere(std::string_view bytes, char16_t* out) {
  const Units d;
  const std::size_t lanes = hn::Lanes(d);
  const std::uint8_t* in = bytesOf(bytes);
  auto* units = reinterpret_cast<std::uint16_t*>(out);
  std::size_t i = 0;
  for (; i + lanes <= bytes.size(); i += lanes) {
    const auto vector = hn::PromoteTo(d, hn::LoadU(Bytes(), in + i));
    hn::StoreU(vector, d, units + i);
    const std::size_t ascii = leadingTrue(d, isASCII(vector));
    if (ascii < lanes) return i + ascii;
  }
  for (; i < bytes.size() && in[i] < 0x80; ++i) units[i] = in[i];
  return i;
}

std::size_t narrowASCIIHere(TextView text, char* out) {
  const Units d;
  const hn::RebindToSigned<Units> dSigned;
  const std::size_t lanes = hn::Lanes(d);
  const std::uint16_t* in = unitsOf(text);
  auto* bytes = reinterpret_cast<std::uint8_t*>(out);
  std::size_t i = 0;
  for (; i + lanes <= text.size(); i += lanes) {
    const auto vector = hn::LoadU(d, in + i);
    hn::StoreU(hn::DemoteTo(Bytes(), hn::BitCast(dSigned, vector)), Bytes(), bytes + i);
    const std::size_t ascii = leadingTrue(d, isASCII(vector));
    if (ascii < lanes) return i + ascii;
  }
  for (; i < text.size() && in[i] < 0x80; ++i) bytes[i] = static_cast<std::uint8_t>(in[i]);
  return i;
}

// The code units from U+0800 on that are no surrogates.
template <class Vector>
auto takesThreeBytes(Vector units) {
  const FewUnits d;
  const auto plane = hn::And(units, set(d, 0xF800));
  return hn::And(hn::Ne(plane, hn::Zero(d)), hn::Ne(plane, set(d, 0xD800)));
}

std::size_t decodeThreeByteRunHere(std::string_view bytes, char16_t* out) {
  const FewUnits d;
  const FewBytes d8;
  const std::size_t lanes = hn::Lanes(d);
  const std::uint8_t* in = bytesOf(bytes);
  auto* units = reinterpret_cast<std::uint16_t*>(out);
  const auto isContinuation = [&](auto byte) { return hn::Eq(hn::And(byte, set(d, 0xC0)), set(d, 0x80)); };
  std::size_t i = 0;
  for (; 3 * (i + lanes) <= bytes.size(); i += lanes) {
    auto first8 = hn::Zero(d8), second8 = hn::Zero(d8), third8 = hn::Zero(d8);
    hn::LoadInterleaved3(d8, in + 3 * i, first8, second8, third8);
    const auto first = hn::PromoteTo(d, first8);
    const auto second = hn::PromoteTo(d, second8);
    const auto third = hn::PromoteTo(d, third8);
    const auto low = hn::Or(hn::ShiftLeft<6>(hn::And(second, set(d, 0x3F))), hn::And(third, set(d, 0x3F)));
    const auto unit = hn::Or(hn::ShiftLeft<12>(first), low);
    hn::StoreU(unit, d, units + i);
    // Overlong forms and surrogates show in the result.
    const auto isLead = hn::Eq(hn::And(first, set(d, 0xF0)), set(d, 0xE0));
    const auto isWhole = hn::And(isLead, hn::And(isContinuation(second), isContinuation(third)));
    const std::size_t wellFormed = leadingTrue(d, hn::And(isWhole, takesThreeBytes(unit)));
    if (wellFormed < lanes) return i + wellFormed;
  }
  return i;
}

std::size_t encodeThreeByteRunHere(TextView text, char* out) {
  const FewUnits d;
  const FewBytes d8;
  const hn::RebindToSigned<FewUnits> dSigned;
  const std::size_t lanes = hn::Lanes(d);
  const std::uint16_t* in = unitsOf(text);
  auto* bytes = reinterpret_cast<std::uint8_t*>(out);
  const auto byte = [&](auto lead, auto bits) {
    return hn::DemoteTo(d8, hn::BitCast(dSigned, hn::Or(lead, hn::And(bits, set(d, 0x3F)))));
  };
  std::size_t i = 0;
  // A code unit is sure of one byte only, hence the wider look ahead.
  for (; i + 3 * lanes <= text.size(); i += lanes) {
    const auto unit = hn::LoadU(d, in + i);
    hn::StoreInterleaved3(byte(set(d, 0xE0), hn::ShiftRight<12>(unit)), byte(set(d, 0x80), hn::ShiftRight<6>(unit)),
                          byte(set(d, 0x80), unit), d8, bytes + 3 * i);
    const std::size_t converted = leadingTrue(d, takesThreeBytes(unit));
    if (converted < lanes) return i + converted;
  }
  return i;
}

std::size_t utf8SizeLimitHere(TextView text) {
  const Units d;
  const std::size_t lanes = hn::Lanes(d);
  const std::uint16_t* in = unitsOf(text);
  std::size_t size = text.size();
  std::size_t i = 0;
  for (; i + lanes <= text.size(); i += lanes) {
    const auto vector = hn::LoadU(d, in + i);
    size += hn::CountTrue(d, hn::Gt(vector, set(d, 0x7F))) + hn::CountTrue(d, hn::Gt(vector, set(d, 0x7FF)));
  }
  for (; i < text.size(); ++i) size += std::size_t{in[i] > 0x7F} + std::size_t{in[i] > 0x7FF};
  return size;
}

#if HWY_TARGET == HWY_AVX3_DL

// Narrows 64 code units if all are ASCII.
bool narrowStretch(const std::uint16_t* in, char* out) {
  const Units d;
  const hn::RebindToSigned<Units> dSigned;
  const std::size_t lanes = hn::Lanes(d);
  const auto low = hn::LoadU(d, in);
  const auto high = hn::LoadU(d, in + lanes);
  if (!hn::AllTrue(d, isASCII(hn::Or(low, high)))) return false;
  auto* bytes = reinterpret_cast<std::uint8_t*>(out);
  hn::StoreU(hn::DemoteTo(Bytes(), hn::BitCast(dSigned, low)), Bytes(), bytes);
  hn::StoreU(hn::DemoteTo(Bytes(), hn::BitCast(dSigned, high)), Bytes(), bytes + lanes);
  return true;
}

// Encodes 16 code units that are no surrogates. Each gets four bytes, with a sequence of three at their beginning.
class UnitEncoder {
 public:
  using Wide = hn::ScalableTag<std::uint32_t>;
  using WideBytes = hn::Repartition<std::uint8_t, Wide>;
  using Vector = hn::Vec<Wide>;

  explicit UnitEncoder(Vector unit) {
    const auto isASCII = hn::Lt(unit, wide(0x80));
    const auto isShort = hn::Lt(unit, wide(0x800));
    const auto upper = hn::ShiftRight<6>(unit);
    const auto last = hn::IfThenElse(isASCII, unit, continuation(unit));
    const auto middle = hn::IfThenElse(isShort, hn::Or(wide(0xC0), upper), continuation(upper));
    const auto first = hn::Or(wide(0xE0), hn::ShiftRight<12>(unit));
    mySequences = hn::Or(first, hn::Or(hn::ShiftLeft<8>(middle), hn::ShiftLeft<16>(last)));
    const auto beforeLast = hn::IfThenElse(isShort, wide(0x00FF00), wide(0x00FFFF));
    myWanted = hn::Or(wide(0xFF0000), hn::IfThenZeroElse(isASCII, beforeLast));
  }

  auto sequences() const { return hn::BitCast(WideBytes(), mySequences); }
  auto isWanted() const { return hn::MaskFromVec(hn::BitCast(WideBytes(), myWanted)); }

 private:
  static Vector wide(unsigned value) { return hn::Set(Wide(), value); }
  static Vector continuation(Vector bits) { return hn::Or(wide(0x80), hn::And(bits, wide(0x3F))); }

  Vector mySequences;
  Vector myWanted;
};

// One instruction puts the wanted bytes next to each other. Other machines lack it.
std::size_t encodeByVectorsHere(TextView text, char*& out) {
  const UnitEncoder::Wide d;
  const UnitEncoder::WideBytes d8;
  constexpr std::size_t lanes = 16;
  constexpr std::size_t stretch = 4 * lanes;
  char* end = out;
  std::size_t i = 0;
  std::intptr_t surrogate = -1;
  // Whole vectors are stored, and a code unit is sure of one byte only.
  while (surrogate < 0 && i + stretch <= text.size()) {
    const std::uint16_t* in = unitsOf(text) + i;
    if (narrowStretch(in, end)) {
      i += stretch;
      end += stretch;
      continue;
    }
    const auto unit = hn::PromoteTo(d, hn::LoadU(hn::Half<Units>(), in));
    const UnitEncoder encoder(unit);
    auto isWanted = encoder.isWanted();
    hn::StoreU(hn::Compress(encoder.sequences(), isWanted), d8, reinterpret_cast<std::uint8_t*>(end));
    surrogate = hn::FindFirstTrue(d, hn::Eq(hn::And(unit, set(d, 0xF800)), set(d, 0xD800)));
    if (surrogate >= 0) isWanted = hn::And(isWanted, hn::FirstN(d8, 4 * static_cast<std::size_t>(surrogate)));
    i += surrogate >= 0 ? static_cast<std::size_t>(surrogate) : lanes;
    end += hn::CountTrue(d8, isWanted);
  }
  out = end;
  return i;
}

#else

std::size_t encodeByVectorsHere(TextView, char*&) { return 0; }

#endif

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kelvane
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace kelvane {
namespace {

HWY_EXPORT(widenASCIIHere);
HWY_EXPORT(narrowASCIIHere);
HWY_EXPORT(decodeThreeByteRunHere);
HWY_EXPORT(encodeThreeByteRunHere);
HWY_EXPORT(encodeByVectorsHere);
HWY_EXPORT(utf8SizeLimitHere);

}  // namespace

std::size_t widenASCII(std::string_view bytes, char16_t* out) {
  return HWY_DYNAMIC_DISPATCH(widenASCIIHere)(bytes, out);
}

std::size_t narrowASCII(TextView text, char* out) { return HWY_DYNAMIC_DISPATCH(narrowASCIIHere)(text, out); }

std::size_t decodeThreeByteRun(std::string_view bytes, char16_t* out) {
  return HWY_DYNAMIC_DISPATCH(decodeThreeByteRunHere)(bytes, out);
}

std::size_t encodeThreeByteRun(TextView text, char* out) {
  return HWY_DYNAMIC_DISPATCH(encodeThreeByteRunHere)(text, out);
}

std::size_t encodeByVectors(TextView text, char*& out) { return HWY_DYNAMIC_DISPATCH(encodeByVectorsHere)(text, out); }

std::size_t utf8SizeLimit(TextView text) { return HWY_DYNAMIC_DISPATCH(utf8SizeLimitHere)(text); }

}  // namespace kelvane

#endif
