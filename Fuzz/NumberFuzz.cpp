#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Fuzz.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/TextNumbers.h"

namespace {

using namespace kelvane;
using kelvane::fuzz::expect;

bool isSame(double a, double b) {
  return (std::isnan(a) && std::isnan(b)) || (a == b && std::signbit(a) == std::signbit(b));
}

bool isSame(const CGRect& a, const CGRect& b) {
  return isSame(a.origin.x, b.origin.x) && isSame(a.origin.y, b.origin.y) && isSame(a.size.width, b.size.width) &&
         isSame(a.size.height, b.size.height);
}

// The text without leading blanks, up to the first character that no decimal has: what C reads in the same way, since
// neither blanks beyond ASCII nor hexadecimal digits, "inf" and "nan" are left.
std::string readablePrefix(TextView text) {
  const NSCharacterSet& blanks = NSCharacterSet::whitespaceAndNewlineCharacterSet();
  while (!text.empty() && blanks.characterIsMember(text.front())) text.remove_prefix(1);
  return utf8(text.substr(0, text.find_first_not_of(u"0123456789+-.eE")));
}

void checkReading(TextView text) {
  const std::string prefix = readablePrefix(text);
  const long long integer = std::strtoll(prefix.c_str(), nullptr, 10);
  const double number = std::strtod(prefix.c_str(), nullptr);
  expect(integerValue(text) == integer, "integers as C reads them");
  expect(intValue(text) == std::clamp<long long>(integer, INT32_MIN, INT32_MAX), "integers of 32 bits");
  expect(isSame(doubleValue(text), number), "doubles as C reads them");
  expect(isSame(floatValue(text), static_cast<float>(doubleValue(text))), "floats are rounded doubles");
  expect(integer == 0 || boolValue(text), "a number other than 0 is true");
}

void checkPrinting(double number) {
  expect(std::isnan(number) || std::isinf(number) || isSame(doubleValue(shortestDecimal(number)), number),
         "doubles read back");
  const auto single = static_cast<float>(number);
  expect(std::isnan(single) || std::isinf(single) || isSame(floatValue(shortestDecimal(single)), single),
         "floats read back");
}

void checkGeometry(const std::array<double, 4>& numbers) {
  const CGRect rect(numbers[0], numbers[1], numbers[2], numbers[3]);
  expect(isSame(NSRectFromString(NSStringFromRect(rect)), rect), "rectangles read back");
  const CGPoint point = NSPointFromString(NSStringFromPoint(rect.origin));
  const CGSize extent = NSSizeFromString(NSStringFromSize(rect.size));
  expect(isSame(CGRect(point, extent), rect), "points and sizes read back");
}

}  // namespace

// The bytes are a text, and where there are enough of them four doubles.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::ExactText exact(textFromUTF8(fuzz::bytesOf(data, size)));
  const TextView text = exact.view();
  checkReading(text);
  std::array<double, 4> numbers{};
  if (size > 0) std::memcpy(numbers.data(), data, std::min(size, sizeof numbers));
  for (const double number : numbers) checkPrinting(number);
  checkGeometry(numbers);
  const CGRect rect = NSRectFromString(text);
  checkGeometry({rect.origin.x, rect.origin.y, rect.size.width, rect.size.height});
  return 0;
}
