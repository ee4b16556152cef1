#include <cstdarg>
#include <cstdio>
#include <limits>
#include <string>
#include <string_view>

#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

using namespace std::string_view_literals;

template <class T>
constexpr bool prints(TextView conversion) {
  return printsType<T>(readConversion(conversion, 0));
}

// What a literal format is checked with when compiled.
static_assert(prints<int>(u"%d") && prints<bool>(u"%d") && prints<long>(u"%ld") && prints<long long>(u"%+08lld"));
static_assert(!prints<long>(u"%d") && !prints<unsigned>(u"%d") && !prints<double>(u"%d") && !prints<char16_t>(u"%d"));
static_assert(prints<unsigned char>(u"%02x") && prints<std::size_t>(u"%lu") && prints<std::uint32_t>(u"%-9X"));
static_assert(!prints<int>(u"%u") && !prints<std::size_t>(u"%x") && !prints<bool>(u"%u") && !prints<char16_t>(u"%x"));
static_assert(prints<const char*>(u"%s") && prints<char[4]>(u"%s") && prints<std::string>(u"%s") &&
              prints<std::string_view>(u"%s") && !prints<Text>(u"%s"));
static_assert(prints<Text>(u"%@") && prints<char16_t[4]>(u"%@") && prints<std::optional<TextView>>(u"%@") &&
              prints<Ref<NSString>>(u"%@") && prints<const NSObject*>(u"%@") && prints<std::nullptr_t>(u"%@"));
static_assert(!prints<int>(u"%@") && !prints<const char*>(u"%@") && !prints<void*>(u"%@") &&
              !prints<const int*>(u"%@"));
static_assert(prints<char16_t>(u"%c") && !prints<char>(u"%c") && !prints<int>(u"%c"));
static_assert(prints<double>(u"%f") && prints<float>(u"%9.3f") && !prints<int>(u"%f"));
static_assert(prints<void*>(u"%p") && prints<const NSObject*>(u"%p"));
static_assert(!prints<int>(u"%p") && !prints<const char*>(u"%p") && !prints<const char16_t*>(u"%p") &&
              !prints<void (*)()>(u"%p"));
static_assert(!prints<int>(u"%") && !prints<int>(u"%i") && !prints<int>(u"%*d") && !prints<int>(u"% d") &&
              !prints<int>(u"%100d") && !prints<double>(u"%.100f") && !prints<int>(u"%.3d") && !prints<Text>(u"%5@") &&
              !prints<const char*>(u"%-9s"));

TEST(Format, PrintsEachKind) {
  const auto object = box(u"nested %@");
  const Ref<NSObject> nothing;
  const char* noBytes = nullptr;
  const NSObject* noObject = nullptr;
  void* const address = reinterpret_cast<void*>(0xBEEF);  // NOLINT
  const struct {
    Text actual;
    Text expected;
  } rows[] = {
      {format(u"100%%"), u"100%"},
      {format(u"%s %s:%d - %@", "l\xC3\xA9", "\xFF", 7, Text(u"100% \xD800")), u"l\xE9 \xFFFD:7 - 100% \xD800"},
      {format(u"%@ %@ %s", object, *object, noBytes), u"nested %@ nested %@ (null)"},
      {format(u"%s|%s", std::string("a\0b", 3), std::string_view()), Text(u"a\0b|", 4)},
      {format(u"%@ %@ %@ %@", nothing, noObject, std::optional<TextView>(), nullptr), u"(null) (null) (null) (null)"},
      {format(u"%ld %d", std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int32_t>::min()),
       u"-9223372036854775808 -2147483648"},
      {format(u"%lu %u", std::numeric_limits<std::uint64_t>::max(), std::uint8_t{255}), u"18446744073709551615 255"},
      {format(u"%+u %+06x", 7U, 0xBEEFU), u"7 00beef"},
      {format(u"%x %X %lx", 0xBEEFU, 0xBEEFU, std::uint64_t{1} << 40), u"beef BEEF 10000000000"},
      {format(u"%c%c", u'\xD83D', u'\xDE00'), u"\xD83D\xDE00"},
      {format(u"%p %p", address, static_cast<void*>(nullptr)), u"0xbeef 0x0"},
      {format(u"%.0f %.1f %f %.99f", 2.5, 0.25, 1.5F, 0.0), u"2 0.2 1.500000 0." + Text(99, u'0')},
  };
  for (const auto& row : rows) EXPECT_EQ(row.actual, row.expected);
}

std::string printedByC(const char* conversion, ...) __attribute__((format(printf, 1, 2)));
std::string printedByC(const char* conversion, ...) {
  char text[600];
  va_list arguments;
  va_start(arguments, conversion);
  std::vsnprintf(text, sizeof text, conversion, arguments);
  va_end(arguments);
  return text;
}

#define EXPECT_LIKE_C(conversion, value) \
  EXPECT_EQ(utf8(format(u##conversion, value)), printedByC(conversion, value)) << conversion

TEST(Format, LaysNumbersOutAsC) {
  for (const int number : {0, 7, -7, 123456, std::numeric_limits<int>::min()}) {
    EXPECT_LIKE_C("%05d", number);
    EXPECT_LIKE_C("%+-5d|", number);
    EXPECT_LIKE_C("%0+99d", number);
    EXPECT_LIKE_C("%012lX", static_cast<unsigned long>(number));
  }
  for (const double number :
       {0.0, -0.0, 0.125, -2.5, 999.9996, 1e21, std::numeric_limits<double>::max(), infinity, -infinity,
        std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_LIKE_C("%f", number);
    EXPECT_LIKE_C("%.0f", number);
    EXPECT_LIKE_C("%+.3f", number);
    EXPECT_LIKE_C("%09.3f", number);
    EXPECT_LIKE_C("%-9.1f|", number);
    EXPECT_LIKE_C("%99.99f", number);
  }
}

TEST(Format, TextWithoutArgumentsLosesItsConversions) {
  const std::pair<TextView, TextView> rows[] = {
      {u"50%% of %d", u"50% of "},
      {u"%@%s%05.2f%lu|", u"|"},
      {u"%1$@ and %-5.2lf", u" and "},
      {u"a%%%", u"a%"},
      {u"a%.", u"a"},
      {u"a\0%%"sv, u"a\0%"sv},
      {u"%\xD83D\xDE00.", u"."},
      {u"100% sure", u"100ure"},
  };
  for (const auto& [message, expected] : rows) EXPECT_EQ(formatWithoutArguments(message), expected) << utf8(message);
}

}  // namespace
}  // namespace kelvane
