#include <gtest/gtest.h>

#include <QApplication>

#include "Extensions/NSApplication-QNExtensions.h"
#include "Platform/Desktop/Desktop.h"
#include "Qt/QtDesktop.h"

namespace kelvane {
namespace {

TEST(QtDesktop, IsInstalledOnce) {
  Desktop* const installed = &Desktop::current();
  installQtDesktop();
  EXPECT_EQ(&Desktop::current(), installed);
  EXPECT_EQ(appKitVersion(NSApplication::sharedApplication()), 6);
}

}  // namespace
}  // namespace kelvane
