#include "Platform/Foundation/Geometry.h"

#include <charconv>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/TextNumbers.h"

namespace kelvane {
namespace {

CGRect rectBetween(double minX, double minY, double maxX, double maxY) {
  return {minX, minY, maxX - minX, maxY - minY};
}

Text pairText(double first, double second) {
  return u"{" + shortestDecimal(first) + u", " + shortestDecimal(second) + u"}";
}

// Reads the text forms from left to right; once something does not fit, all that follows fails.
class FormReader {
 public:
  explicit FormReader(std::string_view text) : myRest(text) {}

  bool take(char mark) {
    skipBlanks();
    if (!myRest.starts_with(mark)) return false;
    myRest.remove_prefix(1);
    return true;
  }

  bool takeNumber(double& number) {
    skipBlanks();
    const auto result = std::from_chars(myRest.data(), myRest.data() + myRest.size(), number);
    if (result.ec != std::errc()) return false;
    myRest.remove_prefix(static_cast<std::size_t>(result.ptr - myRest.data()));
    return true;
  }

  bool takePair(double& first, double& second) {
    return take('{') && takeNumber(first) && take(',') && takeNumber(second) && take('}');
  }

  bool isAtEnd() {
    skipBlanks();
    return myRest.empty();
  }

 private:
  void skipBlanks() {
    const std::size_t blanks = myRest.find_first_not_of(' ');
    myRest.remove_prefix(blanks == std::string_view::npos ? myRest.size() : blanks);
  }

  std::string_view myRest;
};

// `text` with all white space as blanks. What else lies beyond ASCII becomes "?", which no form holds.
std::string bytesOfForm(TextView text) {
  const NSCharacterSet& blanks = NSCharacterSet::whitespaceAndNewlineCharacterSet();
  std::string bytes;
  bytes.reserve(text.size());
  for (const char16_t unit : text)
    bytes += blanks.characterIsMember(unit) ? ' ' : unit < 0x80 ? static_cast<char>(unit) : '?';
  return bytes;
}

std::optional<CGPoint> readPair(TextView text) {
  const std::string bytes = bytesOfForm(text);
  FormReader reader(bytes);
  CGPoint pair;
  if (!reader.takePair(pair.x, pair.y) || !reader.isAtEnd()) return std::nullopt;
  return pair;
}

}  // namespace

CGRect CGRectIntersection(const CGRect& a, const CGRect& b) {
  if (!CGRectIntersectsRect(a, b)) return CGRectNull;
  return rectBetween(CGMax(CGRectGetMinX(a), CGRectGetMinX(b)), CGMax(CGRectGetMinY(a), CGRectGetMinY(b)),
                     CGMin(CGRectGetMaxX(a), CGRectGetMaxX(b)), CGMin(CGRectGetMaxY(a), CGRectGetMaxY(b)));
}

CGRect CGRectUnion(const CGRect& a, const CGRect& b) {
  if (CGRectIsNull(a)) return b;
  if (CGRectIsNull(b)) return a;
  return rectBetween(CGMin(CGRectGetMinX(a), CGRectGetMinX(b)), CGMin(CGRectGetMinY(a), CGRectGetMinY(b)),
                     CGMax(CGRectGetMaxX(a), CGRectGetMaxX(b)), CGMax(CGRectGetMaxY(a), CGRectGetMaxY(b)));
}

Text NSStringFromPoint(const CGPoint& point) { return pairText(point.x, point.y); }

Text NSStringFromSize(const CGSize& size) { return pairText(size.width, size.height); }

Text NSStringFromRect(const CGRect& rect) {
  return u"{" + NSStringFromPoint(rect.origin) + u", " + NSStringFromSize(rect.size) + u"}";
}

CGPoint NSPointFromString(TextView text) { return readPair(text).value_or(CGPoint{}); }

CGSize NSSizeFromString(TextView text) {
  const CGPoint pair = NSPointFromString(text);
  return {pair.x, pair.y};
}

CGRect NSRectFromString(TextView text) {
  const std::string bytes = bytesOfForm(text);
  FormReader reader(bytes);
  CGRect rect;
  const bool isWhole = reader.take('{') && reader.takePair(rect.origin.x, rect.origin.y) && reader.take(',') &&
                       reader.takePair(rect.size.width, rect.size.height) && reader.take('}') && reader.isAtEnd();
  return isWhole ? rect : CGRectZero;
}

}  // namespace kelvane
