#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Text.h"

// Messages built from a format and values, as in C:
//
// ```cpp
// const Text message = format(u"Can't move '%@' to %@.", path, NSTemporaryDirectory());
// const Text line = format(u"%s %s:%d - %@", "WARN", __func__, __LINE__, message);
// ```
//
// A format is always a literal, and is checked against its arguments when compiled: their number, their kinds, and that
// every "%" begins a conversion. Text from elsewhere can only be an argument. The result is the same in every locale.
//
//   %@                  Text, a view, an optional one or an object (its description); nil prints "(null)"
//   %s                  bytes read as UTF-8: std::string, std::string_view, or up to NUL; null prints "(null)"
//   %d  %ld             signed integers of up to 32 and 64 bits (also truth values: 1 or 0)
//   %u %x %X  %lu %lx   unsigned integers of up to 32 and 64 bits
//   %c                  one code unit
//   %f                  doubles, six digits behind the point unless told otherwise
//   %p                  an address
//   %%                  "%"
//
// Numbers take "0", "-", "+" and a width ("%02x"), %f a precision ("%.3f"), each at most 99; the others are printed as
// they are. An address is a pointer to anything but text and bytes.
namespace kelvane {

// One value to print. Made on the way into `format`; views what it is made from.
class KELVANE_EXPORT FormatArgument {
 public:
  enum class Kind { String, Object, Bytes, Signed, Unsigned, Unit, Double, Address };

  FormatArgument(const Text& text) : FormatArgument(TextView(text)) {}
  FormatArgument(TextView text) : myKind(Kind::String), myText(text) {}
  FormatArgument(const char16_t* text) : FormatArgument(text ? TextView(text) : TextView(u"(null)")) {}
  template <class T>
  requires std::convertible_to<const T&, TextView> FormatArgument(const std::optional<T>& text)
      : FormatArgument(text ? TextView(*text) : TextView(u"(null)")) {}
  FormatArgument(std::nullptr_t) : myKind(Kind::Object), myAddress(nullptr) {}
  template <std::derived_from<NSObject> T>
  FormatArgument(const Ref<T>& object) : FormatArgument(static_cast<const NSObject*>(object.get())) {}
  FormatArgument(const NSObject* object) : myKind(Kind::Object), myAddress(object) {}
  FormatArgument(const NSObject& object) : FormatArgument(&object) {}
  FormatArgument(const char* bytes) : FormatArgument(bytes ? std::string_view(bytes) : std::string_view("(null)")) {}
  FormatArgument(const std::string& bytes) : FormatArgument(std::string_view(bytes)) {}
  FormatArgument(std::string_view bytes) : myKind(Kind::Bytes), myBytes(bytes) {}
  template <std::signed_integral T>
  FormatArgument(T number) : myKind(Kind::Signed), mySigned(number) {}
  template <std::unsigned_integral T>
  FormatArgument(T number) : myKind(Kind::Unsigned), myUnsigned(number) {}
  FormatArgument(bool truth) : myKind(Kind::Signed), mySigned(truth) {}
  FormatArgument(char16_t unit) : myKind(Kind::Unit), myUnsigned(unit) {}
  FormatArgument(double number) : myKind(Kind::Double), myDouble(number) {}
  FormatArgument(const void* address) : myKind(Kind::Address), myAddress(address) {}

  Kind kind() const { return myKind; }
  TextView text() const { return myText; }
  const NSObject* object() const { return static_cast<const NSObject*>(myAddress); }
  std::string_view bytes() const { return myBytes; }
  const void* address() const { return myAddress; }
  std::int64_t signedNumber() const { return mySigned; }
  std::uint64_t unsignedNumber() const { return myUnsigned; }
  double doubleNumber() const { return myDouble; }

 private:
  Kind myKind;
  union {
    TextView myText;
    std::string_view myBytes;
    const void* myAddress;
    std::int64_t mySigned;
    std::uint64_t myUnsigned;
    double myDouble;
  };
};

// One conversion of a format: "%", flags, width, precision, length, letter.
struct FormatConversion {
  bool padsWithZeros = false;
  bool alignsLeft = false;
  bool showsPlus = false;
  bool isLong = false;
  unsigned width = 0;
  std::optional<unsigned> precision;
  char16_t letter = 0;
  // The place behind the conversion.
  std::size_t end = 0;

  constexpr bool hasLayout() const { return padsWithZeros || alignsLeft || showsPlus || width > 0; }
};

// Reads the conversion whose "%" stands at `place`. The letter is 0 when it is none of those above.
constexpr FormatConversion readConversion(TextView format, std::size_t place) {
  const auto at = [format](std::size_t i) { return i < format.size() ? format[i] : u'\0'; };
  const auto isDigit = [at](std::size_t i) { return at(i) >= u'0' && at(i) <= u'9'; };
  const auto number = [&](std::size_t& i) {
    unsigned value = 0;
    for (int digits = 0; digits < 2 && isDigit(i); ++digits) value = value * 10 + (at(i++) - u'0');
    return value;
  };
  FormatConversion conversion;
  std::size_t i = place + 1;
  for (;; ++i) {
    if (at(i) == u'0')
      conversion.padsWithZeros = true;
    else if (at(i) == u'-')
      conversion.alignsLeft = true;
    else if (at(i) == u'+')
      conversion.showsPlus = true;
    else
      break;
  }
  conversion.width = number(i);
  if (at(i) == u'.') conversion.precision = number(++i);
  while (at(i) == u'l') {
    conversion.isLong = true;
    ++i;
  }
  if (TextView(u"@sduxXcfp%").find(at(i)) != TextView::npos && at(i) != 0) conversion.letter = at(i);
  conversion.end = i + 1;
  return conversion;
}

// Whether a conversion prints values of type T.
template <class T>
constexpr bool printsType(const FormatConversion& conversion) {
  using Value = std::decay_t<T>;
  constexpr bool isNull = std::same_as<Value, std::nullptr_t>;
  constexpr bool isText = std::convertible_to<Value, TextView> || std::same_as<Value, std::optional<Text>> ||
                          std::same_as<Value, std::optional<TextView>>;
  constexpr bool isBytes = std::convertible_to<Value, std::string_view> && !isNull;
  constexpr bool isObject = std::convertible_to<Value, Ref<const NSObject>> || std::derived_from<Value, NSObject> ||
                            std::convertible_to<Value, const NSObject*>;
  constexpr bool isUnit = std::same_as<Value, char16_t>;
  constexpr bool isTruth = std::same_as<Value, bool>;
  const bool fits = sizeof(Value) <= 4 || conversion.isLong;
  const bool isPlain = !conversion.hasLayout() && !conversion.precision;
  switch (conversion.letter) {
    case u's':
      return (isBytes || isNull) && isPlain;
    case u'd':
      return (std::signed_integral<Value> || isTruth) && fits && !conversion.precision;
    case u'u':
    case u'x':
    case u'X':
      return std::unsigned_integral<Value> && !isTruth && !isUnit && fits && !conversion.precision;
    case u'c':
      return isUnit && isPlain;
    case u'f':
      return std::floating_point<Value>;
    case u'p':
      return std::convertible_to<Value, const void*> && !isBytes && !isText && isPlain;
    case u'@':
      return (isText || isObject || isNull) && isPlain;
    default:
      return false;
  }
}

// A literal format that goes with arguments of the types A. Made in silence from a literal; anything else, and a
// literal that does not go with the arguments, does not compile.
template <class... A>
class FormatString {
 public:
  template <std::size_t N>
  consteval FormatString(const char16_t (&literal)[N]) : myText(literal, N - 1) {
    constexpr bool (*prints[])(const FormatConversion&) = {&printsType<A>..., nullptr};
    std::size_t used = 0;
    for (std::size_t i = 0; i < myText.size(); ++i) {
      if (myText[i] != u'%') continue;
      const FormatConversion conversion = readConversion(myText, i);
      if (conversion.letter == 0) throw "a '%' that begins no known conversion";
      if (conversion.letter != u'%') {
        if (used == sizeof...(A)) throw "more conversions than arguments";
        if (!prints[used++](conversion)) throw "a conversion that does not go with its argument";
      }
      i = conversion.end - 1;
    }
    if (used != sizeof...(A)) throw "more arguments than conversions";
  }

  TextView text() const { return myText; }

 private:
  TextView myText;
};

// What `format` calls once its format is known to go with the arguments.
KELVANE_EXPORT Text formatArguments(TextView format, std::span<const FormatArgument> arguments);

// The format filled with the arguments; see above. Time and memory are proportional to the result.
template <class... A>
Text format(FormatString<std::type_identity_t<A>...> theFormat, const A&... arguments) {
  if constexpr (sizeof...(A) == 0) {
    return formatArguments(theFormat.text(), {});
  } else {
    const FormatArgument list[] = {FormatArgument(arguments)...};
    return formatArguments(theFormat.text(), list);
  }
}

// `message` read as a format of C that has no arguments: "%%" gives "%", and any other "%" nothing, with its flags,
// width, precision, length and the letter behind them, whatever that is.
//   u"50%% of %d" => u"50% of "      u"%1$@ and %-5.2lf" => u" and "
KELVANE_EXPORT Text formatWithoutArguments(TextView message);

}  // namespace kelvane
