#include <tuple>

#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Foundation/Boxing.h"
#include "Support/RecordingDesktop.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

TEST(NSStringExtensions, FitsTextByItsWidth) {
  const auto desktop = RecordingDesktop::installed();
  const std::tuple<CGSize, TextView, TextView> rows[] = {
      {{60, 1}, u"abcdef", u"abcdef"}, {{59, 99}, u"abcdef", u"ab..."}, {{30, 1}, u"abcdef", u"..."},
      {{29, 1}, u"abcdef", u""},       {{0, 1}, u"abcdef", u""},        {{99, 0}, u"abcdef", u""},
      {{nan, 1}, u"a", u""},           {{99, nan}, u"a", u"a"},         {{40, 1}, u"\U0001F600abc", u"\xD83D..."}};
  for (const auto& [size, text, fitted] : rows) EXPECT_EQ(fitTextInRect(text, {{7, 7}, size}, nullptr), fitted);
  // A shorter text may be the wider one: the longest that fits counts.
  desktop->measure = [](TextView text) { return text == u"abc..." ? 50.0 : 100.0; };
  EXPECT_EQ(fitTextInRect(u"abcdef", {0, 0, 60, 1}, nullptr), u"abc...");
  Desktop::install(nullptr);
  EXPECT_EQ(fitTextInRect(u"abcdef", {0, 0, 1, 1}, nullptr), u"abcdef");
}

TEST(NSStringExtensions, ChiselsInTwoPasses) {
  const auto attributes = NSDictionary::dictionaryWithEntries(
      {{Text(NSForegroundColorAttributeName), box(NSColor::redColor())}, {u"x", box(1)}});
  drawChiseledInRect(u"none", {0, 0, 1, 1}, attributes);
  RecordingContext context;
  const CurrentContextScope scope(&context);
  const std::string edge = " NSColor:NSCalibratedWhiteColorSpace 0 0.8999999761581421";
  const std::string red = " NSColor:NSCalibratedRGBColorSpace 1 0 0 1";
  drawChiseledInRect(u"hi", {1, 2, 30, 40}, attributes);
  EXPECT_THAT(
      context.take(),
      ElementsAre("save", "clip {{1, 3}, {30, 40}}", "hi in {{1, 3}, {30, 40}} options 1" + edge + " x:1", "restore",
                  "save", "clip {{1, 2}, {30, 40}}", "hi in {{1, 2}, {30, 40}} options 1" + red + " x:1", "restore"));
  drawChiseledWithRect(u"hi", {1, 2, 30, 40}, -5, nullptr);
  EXPECT_THAT(context.take(),
              ElementsAre("hi in {{1, 3}, {30, 40}} options -5" + edge, "hi in {{1, 2}, {30, 40}} options -5"));
  EXPECT_TRUE(isEqual(attributes->objectForKey(NSForegroundColorAttributeName), box(NSColor::redColor())));
}

}  // namespace
}  // namespace kelvane
