#include "Platform/Foundation/Base64.h"

#include <array>
#include <cstring>

// Compiled once for each instruction set; the best one that the machine has is chosen at the first call.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Platform/Foundation/Base64.cpp"
#include <hwy/foreach_target.h>
// Behind the line above, which makes it stand for another instruction set each time.
#include <hwy/highway.h>

#ifndef KELVANE_BASE64_TABLES
#define KELVANE_BASE64_TABLES
namespace kelvane {
namespace {

constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr auto digitValues = [] {
  std::array<std::uint8_t, 256> values{};
  for (std::size_t unit = 0; unit < values.size(); ++unit) values[unit] = base64Digit(static_cast<char16_t>(unit));
  return values;
}();

// A vector is worked on in blocks of 16 bytes, of which 12 hold data: three lanes of 32 bits out of four. These tell
// from which lane each one comes when blocks are spread apart, and when they are pushed together.
constexpr std::size_t mostLanes = 16;
constexpr auto spreadLanes = [] {
  std::array<std::int32_t, mostLanes> lanes{};
  for (std::size_t i = 0; i < mostLanes; ++i) lanes[i] = static_cast<std::int32_t>(i / 4 * 3 + i % 4);
  // The fourth lane of a block is not looked at, but must be one that there is.
  for (std::size_t i = 3; i < mostLanes; i += 4) lanes[i] = 0;
  return lanes;
}();
// For vectors of 4, 8 and 16 lanes.
constexpr auto denseLanes = [] {
  std::array<std::array<std::int32_t, mostLanes>, 3> tables{};
  for (std::size_t size = 0; size < tables.size(); ++size)
    for (std::size_t i = 0; i < (std::size_t{3} << size); ++i)
      tables[size][i] = static_cast<std::int32_t>(i / 3 * 4 + i % 3);
  return tables;
}();

template <class Unit>
void encodeGroup(std::uint32_t group, Unit* out) {
  for (unsigned i = 0; i < 4; ++i) out[i] = static_cast<Unit>(digits[(group >> (18U - 6U * i)) & 63U]);
}

template <class Unit>
Unit* encodeRest(std::span<const std::uint8_t> bytes, Unit* out) {
  std::size_t i = 0;
  for (; i + 3 <= bytes.size(); i += 3, out += 4)
    encodeGroup(std::uint32_t{bytes[i]} << 16U | std::uint32_t{bytes[i + 1]} << 8U | bytes[i + 2], out);
  if (i == bytes.size()) return out;
  const bool two = i + 2 == bytes.size();
  encodeGroup(std::uint32_t{bytes[i]} << 16U | (two ? std::uint32_t{bytes[i + 1]} << 8U : 0U), out);
  out[3] = '=';
  if (!two) out[2] = '=';
  return out + 4;
}

std::uint8_t digitValue(char byte) { return digitValues[static_cast<unsigned char>(byte)]; }
std::uint8_t digitValue(char16_t unit) { return unit < digitValues.size() ? digitValues[unit] : noBase64Digit; }

// Decodes one group, and returns how many units that was: 4, or 0 when it is cut short or not all digits.
template <class Unit>
std::size_t decodeGroup(std::basic_string_view<Unit> text, std::uint8_t* out) {
  if (text.size() < 4) return 0;
  const std::uint32_t a = digitValue(text[0]);
  const std::uint32_t b = digitValue(text[1]);
  const std::uint32_t c = digitValue(text[2]);
  const std::uint32_t d = digitValue(text[3]);
  if ((a | b | c | d) > 63) return 0;
  const std::uint32_t group = a << 18U | b << 12U | c << 6U | d;
  out[0] = static_cast<std::uint8_t>(group >> 16U);
  out[1] = static_cast<std::uint8_t>(group >> 8U);
  out[2] = static_cast<std::uint8_t>(group);
  return 4;
}

template <class Unit>
bool isBlank(Unit unit) {
  return unit == ' ' || (unit >= '\t' && unit <= '\r');
}

}  // namespace
}  // namespace kelvane
#endif

HWY_BEFORE_NAMESPACE();
namespace kelvane {
namespace HWY_NAMESPACE {
namespace {

#if HWY_TARGET != HWY_SCALAR  // which has no vectors to speak of

namespace hn = hwy::HWY_NAMESPACE;

using Wide = hn::CappedTag<std::uint8_t, 64>;
using Narrow = hn::CappedTag<std::uint8_t, 16>;

// Sixteen bytes, the same in each block of a vector.
template <class D>
auto table(D d, const std::array<std::uint8_t, 16>& bytes) {
  return hn::LoadDup128(d, bytes.data());
}

// --- Encoding

// The values of the digits, one a byte, for the first three quarters of `bytes`. The layout and the multiplications
// that shift by different counts are Wojciech Muła's (arXiv:1704.00605).
template <class D>
auto valuesOf(D d, hn::Vec<D> bytes) {
  const hn::Repartition<std::uint16_t, D> d16;
  const hn::Repartition<std::uint32_t, D> d32;
  const auto spread =
      hn::BitCast(d, hn::TableLookupLanes(hn::BitCast(d32, bytes), hn::SetTableIndices(d32, spreadLanes.data())));
  const auto groups = hn::TableLookupBytes(spread, table(d, {1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10}));
  const auto masked = [&](std::uint32_t mask) {
    return hn::BitCast(d16, hn::And(hn::BitCast(d32, groups), hn::Set(d32, mask)));
  };
  const auto factors = [&](std::uint32_t both) { return hn::BitCast(d16, hn::Set(d32, both)); };
  const auto outer = hn::MulHigh(masked(0x0FC0FC00), factors(0x04000040));
  const auto inner = hn::Mul(masked(0x003F03F0), factors(0x01000010));
  return hn::BitCast(d, hn::Or(outer, inner));
}

template <class D>
auto digitsOf(D d, hn::Vec<D> values) {
  // 0 for a...z, 1...10 for the decimal digits, 11 for "+", 12 for "/", 13 for A...Z: what to add to the value.
  auto kinds = hn::SaturatedSub(values, hn::Set(d, std::uint8_t{51}));
  kinds = hn::Or(kinds, hn::IfThenElseZero(hn::Lt(values, hn::Set(d, std::uint8_t{26})), hn::Set(d, std::uint8_t{13})));
  constexpr std::uint8_t decimal = 256 - 4;
  const auto shifts = table(d, {'a' - 26, decimal, decimal, decimal, decimal, decimal, decimal, decimal, decimal,
                                decimal, decimal, 256 - 19, 256 - 16, 'A', 0, 0});
  return hn::Add(values, hn::TableLookupBytes(shifts, kinds));
}

template <class D>
void storeDigits(D d, hn::Vec<D> vector, char* out) {
  hn::StoreU(vector, d, reinterpret_cast<std::uint8_t*>(out));
}

template <class D>
void storeDigits(D, hn::Vec<D> vector, char16_t* out) {
  const hn::Half<D> half;
  const hn::Rebind<std::uint16_t, decltype(half)> d16;
  auto* units = reinterpret_cast<std::uint16_t*>(out);
  hn::StoreU(hn::PromoteTo(d16, hn::LowerHalf(half, vector)), d16, units);
  hn::StoreU(hn::PromoteTo(d16, hn::UpperHalf(half, vector)), d16, units + hn::Lanes(half));
}

// As far as whole vectors can be read; `done` counts bytes.
template <class D, class Unit>
void encodeBy(D d, std::span<const std::uint8_t> bytes, std::size_t& done, Unit*& out) {
  const std::size_t lanes = hn::Lanes(d);
  for (; done + lanes <= bytes.size(); done += lanes / 4 * 3, out += lanes)
    storeDigits(d, digitsOf(d, valuesOf(d, hn::LoadU(d, bytes.data() + done))), out);
}

// --- Decoding

template <class D>
auto loadDigits(D d, const char* in) {
  return hn::LoadU(d, reinterpret_cast<const std::uint8_t*>(in));
}

// Units beyond a byte are held at its ends, 0 and 255, which are no digits either.
template <class D>
auto loadDigits(D d, const char16_t* in) {
  const hn::Half<D> half;
  const hn::Rebind<std::int16_t, decltype(half)> d16;
  const auto* units = reinterpret_cast<const std::int16_t*>(in);
  return hn::Combine(d, hn::DemoteTo(half, hn::LoadU(d16, units + hn::Lanes(half))),
                     hn::DemoteTo(half, hn::LoadU(d16, units)));
}

// Pushes four values of six bits into three bytes, and these to the front of the vector.
template <class D>
auto bytesOf(D d, hn::Vec<D> values) {
  const hn::Repartition<std::uint16_t, D> d16;
  const hn::Repartition<std::uint32_t, D> d32;
  const auto single = hn::BitCast(d16, values);
  const auto pairs = hn::BitCast(
      d32, hn::Or(hn::ShiftLeft<6>(hn::And(single, hn::Set(d16, std::uint16_t{0xFF}))), hn::ShiftRight<8>(single)));
  const auto groups = hn::Or(hn::ShiftLeft<12>(hn::And(pairs, hn::Set(d32, 0xFFFFU))), hn::ShiftRight<16>(pairs));
  const auto blocks =
      hn::TableLookupBytes(hn::BitCast(d, groups), table(d, {2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, 3, 3, 3, 3}));
  const auto& dense = denseLanes[hn::Lanes(d32) / 8];
  return hn::BitCast(d, hn::TableLookupLanes(hn::BitCast(d32, blocks), hn::SetTableIndices(d32, dense.data())));
}

// What a vector of units holds: its bytes, pushed to the front, and a number other than 0 for each unit that is no
// digit.
template <class V>
struct Decoded {
  V bytes;
  V strays;
};

template <class D>
class Decoder {
 public:
  // Spelled out, since what the compiler adds by itself is not compiled for the instruction set.
  Decoder()
      : myLowClasses(table(
            D(), {0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x13, 0x1A, 0x1B, 0x1B, 0x1B, 0x1A})),
        myHighClasses(table(
            D(), {0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10})),
        myShifts(table(D(), {0, 16, 19, 4, 256 - 65, 256 - 65, 256 - 71, 256 - 71, 0, 0, 0, 0, 0, 0, 0, 0})),
        myLowHalf(hn::Set(D(), std::uint8_t{0x0F})),
        mySlash(hn::Set(D(), std::uint8_t{'/'})) {}

  template <class Unit>
  Decoded<hn::Vec<D>> decode(const Unit* in) const {
    const D d;
    const auto units = loadDigits(d, in);
    const auto high = hn::And(hn::ShiftRight<4>(units), myLowHalf);
    // A unit is no digit when the classes of its two halves have a bit in common.
    const auto strays = hn::And(hn::TableLookupBytes(myLowClasses, hn::And(units, myLowHalf)),
                                hn::TableLookupBytes(myHighClasses, high));
    // What to add to a digit depends on its high half; "/" has its own place before the others.
    const auto isSlash = hn::VecFromMask(d, hn::Eq(units, mySlash));
    const auto values = hn::Add(units, hn::TableLookupBytes(myShifts, hn::Add(high, isSlash)));
    return {bytesOf(d, values), strays};
  }

 private:
  using V = hn::Vec<D>;
  V myLowClasses;
  V myHighClasses;
  V myShifts;
  V myLowHalf;
  V mySlash;
};

// Decodes vector after vector, up to the first unit that is no digit, and returns how many units in whole groups that
// was. What the last vector holds besides is stored too.
template <class D, class Unit>
std::size_t decodeBy(D d, std::basic_string_view<Unit> text, std::uint8_t* out) {
  const Decoder<D> decoder;
  const std::size_t lanes = hn::Lanes(d);
  std::size_t i = 0;
  for (; i + lanes <= text.size(); i += lanes, out += lanes / 4 * 3) {
    const auto decoded = decoder.decode(text.data() + i);
    hn::StoreU(decoded.bytes, d, out);
    const auto isStray = hn::Ne(decoded.strays, hn::Zero(d));
    // A branch, and no arithmetic: so it is foreseen where the next vector begins, and need not be waited for.
    if (HWY_UNLIKELY(!hn::AllFalse(d, isStray)))
      return i + static_cast<std::size_t>(hn::FindFirstTrue(d, isStray)) / 4 * 4;
  }
  return i;
}

// Decodes lines of `length` digits for as long as they come, each with one blank behind it, or two. As all of them are
// of one length, it is known beforehand where each begins. Counts what was decoded in `run`.
template <class Unit>
void decodeLines(std::basic_string_view<Unit> text, std::size_t length, std::uint8_t* out, Base64Run& run) {
  const Wide wide;
  const Narrow narrow;
  const Decoder<Wide> wideDecoder;
  const Decoder<Narrow> narrowDecoder;
  const std::size_t lanes = hn::Lanes(wide);
  const std::size_t restLength = length % lanes;
  const bool isRestNarrow = restLength <= hn::Lanes(narrow);
  const auto wideRest = hn::VecFromMask(wide, hn::FirstN(wide, restLength));
  const auto narrowRest = hn::VecFromMask(narrow, hn::FirstN(narrow, restLength));
  // The last vector may reach beyond the line.
  while (text.size() - run.read >= length + lanes + 2) {
    const Unit* units = text.data() + run.read;
    std::uint8_t* to = out + run.written;
    auto strays = hn::Zero(wide);
    auto narrowStrays = hn::Zero(narrow);
    std::size_t i = 0;
    for (; i + lanes <= length; i += lanes, to += lanes / 4 * 3) {
      const auto decoded = wideDecoder.decode(units + i);
      hn::StoreU(decoded.bytes, wide, to);
      strays = hn::Or(strays, decoded.strays);
    }
    if (restLength > 0 && isRestNarrow) {
      const auto decoded = narrowDecoder.decode(units + i);
      hn::StoreU(decoded.bytes, narrow, to);
      narrowStrays = hn::And(decoded.strays, narrowRest);
    } else if (restLength > 0) {
      const auto decoded = wideDecoder.decode(units + i);
      hn::StoreU(decoded.bytes, wide, to);
      strays = hn::Or(strays, hn::And(decoded.strays, wideRest));
    }
    if (!hn::AllTrue(wide, hn::Eq(strays, hn::Zero(wide))) ||
        !hn::AllTrue(narrow, hn::Eq(narrowStrays, hn::Zero(narrow))) || !isBlank(units[length]))
      return;
    run.read += length + (isBlank(units[length + 1]) ? 2 : 1);
    run.written += length / 4 * 3;
  }
}

// From so many bytes on it pays that each vector of digits falls into a single line of the cache.
constexpr std::size_t longBytes = 4096;

template <class Unit>
void alignOutput(std::span<const std::uint8_t> bytes, std::size_t& done, Unit*& out) {
  const std::size_t beyond = reinterpret_cast<std::uintptr_t>(out) % 64;
  if (beyond == 0 || beyond % (4 * sizeof(Unit)) != 0) return;
  done = (64 - beyond) / (4 * sizeof(Unit)) * 3;
  out = encodeRest(bytes.first(done), out);
}

// Decodes what it can at once, vectors as long as there is enough to read, and returns how many units that was.
template <class Unit>
std::size_t decodeSome(std::basic_string_view<Unit> text, std::uint8_t* out) {
  if (text.size() >= hn::Lanes(Wide())) return decodeBy(Wide(), text, out);
  if (text.size() >= hn::Lanes(Narrow())) return decodeBy(Narrow(), text, out);
  return decodeGroup(text, out);
}

template <class Unit>
Unit* encodeHere(std::span<const std::uint8_t> bytes, Unit* out) {
  constexpr std::size_t block = 12;
  std::size_t done = 0;
  if (bytes.size() >= longBytes) alignOutput(bytes, done, out);
  encodeBy(Wide(), bytes, done, out);
  encodeBy(Narrow(), bytes, done, out);
  if (bytes.size() - done >= block) {
    std::uint8_t last[16] = {};
    std::memcpy(last, bytes.data() + done, block);
    std::size_t none = 0;
    encodeBy(Narrow(), last, none, out);
    done += block;
  }
  return encodeRest(bytes.subspan(done), out);
}

#else

template <class Unit>
void decodeLines(std::basic_string_view<Unit>, std::size_t, std::uint8_t*, Base64Run&) {}

template <class Unit>
std::size_t decodeSome(std::basic_string_view<Unit> text, std::uint8_t* out) {
  return decodeGroup(text, out);
}

template <class Unit>
Unit* encodeHere(std::span<const std::uint8_t> bytes, Unit* out) {
  return encodeRest(bytes, out);
}

#endif

constexpr std::size_t shortestLine = 32;

template <class Unit>
Base64Run decodeHere(std::basic_string_view<Unit> text, std::uint8_t* out) {
  const std::size_t size = text.size();
  Base64Run run;
  for (;;) {
    const std::size_t clean = decodeSome(text.substr(run.read), out + run.written);
    run.read += clean;
    run.written += clean / 4 * 3;
    const std::size_t blanks = run.read;
    while (run.read < size && isBlank(text[run.read])) ++run.read;
    if (clean == 0 && run.read == blanks) return run;
    if (clean >= shortestLine && run.read > blanks) decodeLines(text, clean, out, run);
  }
}

char16_t* encodeUnitsHere(std::span<const std::uint8_t> bytes, char16_t* out) { return encodeHere(bytes, out); }
char* encodeBytesHere(std::span<const std::uint8_t> bytes, char* out) { return encodeHere(bytes, out); }
Base64Run decodeUnitsHere(TextView text, std::uint8_t* out) { return decodeHere(text, out); }
Base64Run decodeBytesHere(std::string_view text, std::uint8_t* out) { return decodeHere(text, out); }

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kelvane
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace kelvane {
namespace {

HWY_EXPORT(encodeUnitsHere);
HWY_EXPORT(encodeBytesHere);
HWY_EXPORT(decodeUnitsHere);
HWY_EXPORT(decodeBytesHere);

}  // namespace

char16_t* encodeBase64(std::span<const std::uint8_t> bytes, char16_t* out) {
  return HWY_DYNAMIC_DISPATCH(encodeUnitsHere)(bytes, out);
}

char* encodeBase64(std::span<const std::uint8_t> bytes, char* out) {
  return HWY_DYNAMIC_DISPATCH(encodeBytesHere)(bytes, out);
}

Base64Run decodeBase64Run(TextView text, std::uint8_t* out) { return HWY_DYNAMIC_DISPATCH(decodeUnitsHere)(text, out); }

Base64Run decodeBase64Run(std::string_view text, std::uint8_t* out) {
  return HWY_DYNAMIC_DISPATCH(decodeBytesHere)(text, out);
}

}  // namespace kelvane

#endif
