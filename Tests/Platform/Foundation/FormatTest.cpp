
#include "Platform/Foundation/Format.h"
#include "Support/Testing.h"

namespace {

using namespace std::string_view_literals;

template <class T>
constexpr bool prints(TextView conversion) {
  return printsType<T>(readConversion(conversion, 0));
}

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

// FormatFuzz holds the layout of numbers against C, and messages without arguments against a plain way.
TEST(Format, PrintsEachKind) {
  const auto object = box(u"nested %@");
  const Ref<NSObject> nothing;
  const char* noBytes = nullptr;
  const NSObject* noObject = nullptr;
  void* const address = reinterpret_cast<void*>(0xBEEF);  // NOLINT
  const std::tuple<Text, Text> rows[] = {
      {format(u"%s %s:%d - %@", "l\xC3\xA9", "\xFF", 7, Text(u"100% \xD800")), u"l\xE9 \xFFFD:7 - 100% \xD800"},
      {format(u"%@ %@ %s", object, *object, noBytes), u"nested %@ nested %@ (null)"},
      {format(u"%s|%s", std::string("a\0b", 3), std::string_view()), Text(u"a\0b|", 4)},
      {format(u"%@ %@ %@ %@", nothing, noObject, std::optional<TextView>(), nullptr), u"(null) (null) (null) (null)"},
      {format(u"%ld %d", std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int32_t>::min()),
       u"-9223372036854775808 -2147483648"},
      {format(u"%lu %u", std::numeric_limits<std::uint64_t>::max(), std::uint8_t{255}), u"18446744073709551615 255"},
      {format(u"%c%c", u'\xD83D', u'\xDE00'), u"\xD83D\xDE00"},
      {format(u"%p %p", address, static_cast<void*>(nullptr)), u"0xbeef 0x0"},
      {format(u"%.0f %.1f %f %.99f", 2.5, 0.25, 1.5F, 0.0), u"2 0.2 1.500000 0." + Text(99, u'0')},
  };
  for (const auto& [actual, expected] : rows) EXPECT_EQ(actual, expected);
}

}  // namespace
