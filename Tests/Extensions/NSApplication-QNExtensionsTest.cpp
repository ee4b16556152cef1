#include "Extensions/NSApplication-QNExtensions.h"
#include "Extensions/NSError-QNExtensions.h"
#include "Platform/Desktop/NSMenu.h"
#include "Support/FakeDesktop.h"
#include "Support/Testing.h"

namespace {

TEST(NSApplication, CodesOfReleases) {
  const std::pair<std::int32_t, std::int32_t> rows[] = {
      {0x0FFF, 0}, {0x1000, 1}, {0x1009, 1}, {0x100A, 2}, {0x1019, 2},    {0x1049, 5},   {0x1068, 7},
      {0x106A, 8}, {0x1079, 8}, {0x107A, 9}, {0x1080, 9}, {INT32_MAX, 9}, {INT32_MIN, 0}};
  for (const auto& [combined, code] : rows) EXPECT_EQ(NSApplicationExtensions::osVersion(combined), code) << combined;
  EXPECT_EQ(NSApplicationExtensions::osVersion(std::nullopt), -1);
}

TEST(NSApplication, ReleasesHaveThreeNumbers) {
  const std::tuple<std::string_view, SystemVersion, TextView, std::optional<std::int32_t>> rows[] = {
      {"10.6.8", {10, 6, 8}, u"Mac OS X 10.6.8", 0x1068},
      {"6.1.0-18-amd64", {6, 1, 0}, u"Mac OS X 6.1.0", 0x1010},
      {"5.10.217.4", {5, 10, 217}, u"Mac OS X 5.10.217", 0x10A9},
      {"6.1-rc3", {6, 1, {}}, u"-unknown-", {}},
      {"1.2147483647.0", {1, 2147483647, 0}, u"Mac OS X 1.2147483647.0", 0x1000 + 16 * 0xFFFFFF},
  };
  for (const auto& [release, wanted, text, combined] : rows) {
    const SystemVersion version = systemVersionFromRelease(release);
    EXPECT_EQ(version, wanted) << release;
    EXPECT_EQ(NSApplicationExtensions::osVersionString(version), text);
    EXPECT_EQ(combinedSystemVersion(version), combined);
  }
  EXPECT_GT(osVersion(NSApplication::sharedApplication()), 0);
}

TEST(NSApplication, ForwardsToItsDelegate) {
  struct Host : NSApplicationDelegate {
    bool isBetaVersion() const override { return true; }
    Ref<NSMenu> applicationDockMenu(const NSApplication& sender) override {
      return &sender == &NSApplication::sharedApplication() ? menu : nullptr;
    }
    Ref<NSMenu> menu = std::make_shared<NSMenu>();
  };
  NSApplication& application = NSApplication::sharedApplication();
  EXPECT_FALSE(isBetaVersion(application) || isDevelopmentVersion(application) || isPrototypeVersion(application));
  {
    Host host;
    application.setDelegate(&host);
    EXPECT_EQ(dockMenu(application), host.menu);
    EXPECT_TRUE(isBetaVersion(application) && !isPrototypeVersion(application));
  }
  EXPECT_EQ(application.delegate(), nullptr);
  EXPECT_TRUE(!name(application) && !versionString(application));
  struct Screen : FakeDesktop {
    double userInterfaceVersionNumber() const override { return 1038.9; }
  };
  EXPECT_EQ(appKitVersion(application), 0);
  Desktop::install(std::make_shared<Screen>());
  EXPECT_EQ(appKitVersion(application), 1038);
}

TEST(NSError, DescribesTheWholeChain) {
  const auto system = NSError::errorWithSystemError({ENOENT, std::generic_category()});
  const auto outer = NSError::errorWithDescription(u"D", 5, u"broken", system);
  EXPECT_EQ(outer->underlyingError(), system);
  EXPECT_EQ(debugDescription(*outer),
            u"{\n    NSLocalizedDescription = broken;\n    NSUnderlyingError = {\n        code = 2;\n        domain = "
            u"NSPOSIXErrorDomain;\n    };\n    code = 5;\n    domain = D;\n}");
  const auto bare = std::make_shared<NSError>(u"D", 1);
  EXPECT_EQ(debugDescription(*bare), std::nullopt);
  const auto around = dictionaryOf({{Text(NSUnderlyingErrorKey), bare}, {u"code", box(u"x")}});
  EXPECT_EQ(debugDescription(NSError(u"E", 2, around)),
            u"{\n    NSUnderlyingError = \"(null)\";\n    code = 2;\n    domain = E;\n}");
  // Neither the time nor the text grow beyond measure.
  Ref<NSError> chain = system;
  for (int i = 0; i < 2000; ++i) chain = NSError::errorWithDescription(u"\"", i, u"a", chain);
  EXPECT_LT(debugDescription(*chain)->size(), 5000000U);
  const auto details = std::make_shared<NSMutableDictionary>();
  const auto circle = std::make_shared<NSError>(u"C", 1, details);
  details->setObject(circle, NSUnderlyingErrorKey);
  EXPECT_LT(debugDescription(*circle)->size(), 5000000U);
  details->removeAllObjects();
}

}  // namespace
