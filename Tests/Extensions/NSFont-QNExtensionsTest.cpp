#include <cstdlib>

#include "Extensions/NSFont-QNExtensions.h"
#include "Support/CapturedSystemLog.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

using namespace NSFontExtensions;

TEST(NSFontExtensions, FallsBackStepByStep) {
  CapturedSystemLog log;
  const NSFont system = *NSFont::systemFontOfSize(14);
  EXPECT_TRUE(fontWithName(system.fontName(), 14, std::nullopt)->isEqual(*NSFont::fontWithName(system.fontName(), 14)));
  EXPECT_THAT(log.takeWithoutPlaces(), IsEmpty());

  const NSFont other = system.fontWithSize(9);
  EXPECT_TRUE(fontWithName(u"No Such", 14, other)->isEqual(other));
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(u"WARN - Can't find font 'No Such'. Fallback to default font."));

  EXPECT_TRUE(fontWithName(u"", 14, std::nullopt)->isEqual(system));
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(u"WARN - Can't find font ''. Fallback to default font.",
                                                   u"ERROR - Can't find default font. Fallback to system font."));

  const auto fourth = fontWithNameAlternatives({u"No A", u"No B", u"No C", system.fontName(), u"No D"}, 14);
  EXPECT_EQ(fourth->fontName(), system.fontName());
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(u"ERROR - Can't find font 'No A'. Will try next alternative",
                                                   u"ERROR - Can't find font 'No B'. Will try next alternative",
                                                   u"ERROR - Can't find font 'No C'. Will try next alternative"));

  EXPECT_TRUE(fontWithNameAlternatives({}, 14)->isEqual(system));
  EXPECT_THAT(log.takeWithoutPlaces(),
              ElementsAre(u"ERROR - Can't find font from alternatives. Will fallback to system font."));
}

TEST(NSFontExtensions, AMachineWithoutFonts) {
  const TemporaryFolder folder;
  folder.write("fonts.conf", "<fontconfig/>");
  ::setenv("FONTCONFIG_FILE", folder.path("fonts.conf").c_str(), 1);
  CapturedSystemLog log;
  EXPECT_FALSE(fontWithName(u"A", 14, std::nullopt));
  EXPECT_FALSE(fontWithNameAlternatives({}, 14));
  EXPECT_FALSE(NSFont::boldSystemFontOfSize(14));
  EXPECT_THAT(log.takeWithoutPlaces(), ElementsAre(testing::_, testing::_, u"FATAL - Can't find system font.",
                                                   testing::_, u"FATAL - Can't find system font."));
}

}  // namespace
}  // namespace kelvane
