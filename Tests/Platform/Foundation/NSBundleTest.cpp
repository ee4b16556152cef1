#include <filesystem>
#include <fstream>
#include <string>

#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

// Where the resources are for a program of its own, a bundle, and a library before and after its installation.
TEST(NSBundle, FindsResourcesInEachLayout) {
  const struct {
    const char* executable;
    TextView sharedResources;
    const char* resource;
  } rows[] = {
      {"bin/tool", u"", "bin/Resources/a.plist"},
      {"X.app/Contents/Linux/X", u"", "X.app/Contents/Resources/a.plist"},
      {"X.app/Contents/Frameworks/libX.so", u"../../share/X", "X.app/Contents/Resources/a.plist"},
      {"build/libX.so", u"../../share/X", "build/Resources/a.plist"},
      {"prefix/lib/libX.so", u"../share/X", "prefix/lib/../share/X/a.plist"},
  };
  for (const auto& row : rows) {
    const TemporaryFolder folder;
    const std::filesystem::path resource = folder.path(row.resource);
    std::filesystem::create_directories(std::filesystem::path(folder.path(row.executable)).parent_path());
    std::filesystem::create_directories(resource.parent_path());
    std::ofstream(resource) << "x";
    const NSBundle bundle(textFromFileSystem(folder.path(row.executable)), row.sharedResources);
    EXPECT_EQ(bundle.pathForResource(u"a", u"plist"), textFromFileSystem(resource.native()));
    EXPECT_EQ(bundle.pathForResource(u"a.plist", u""), textFromFileSystem(resource.native()));
    EXPECT_EQ(bundle.pathForResource(u"b", u"plist"), std::nullopt);
    EXPECT_EQ(bundle.pathForResource(u"", u""), std::nullopt);
    EXPECT_EQ(bundle.pathForResource(TextView(u"a.plist\0", 8), u"x"), std::nullopt);
  }
}

}  // namespace
}  // namespace kelvane
