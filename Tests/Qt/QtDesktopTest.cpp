#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QApplication>
#include <cstdlib>
#include <string>
#include <vector>

#include "Extensions/NSApplication-QNExtensions.h"
#include "Platform/Desktop/Desktop.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Qt/QtDesktop.h"
#include "Support/TemporaryFolder.h"

namespace kelvane {
namespace {

TEST(QtDesktop, IsInstalledOnce) {
  Desktop* const installed = &Desktop::current();
  installQtDesktop();
  EXPECT_EQ(&Desktop::current(), installed);
  EXPECT_EQ(appKitVersion(NSApplication::sharedApplication()), 6);
}

TEST(QtDesktop, SaysWhyThereIsNoDisplay) {
  const TemporaryFolder folder;
  const std::string compositor = folder.path("compositor");
  sockaddr_un address{AF_UNIX, {}};
  compositor.copy(address.sun_path, sizeof address.sun_path - 1);
  const int listening = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(listening, 4), 0);
  const std::string advice =
      " Start the application in a desktop session, or set QT_QPA_PLATFORM to \"offscreen\" to run it without one.";
  const std::string noServer =
      "The X server at DISPLAY \":4711\" cannot be reached: see that it runs, and that this user may use it "
      "(XAUTHORITY, xhost).";
  const std::string noCompositor =
      "The Wayland compositor at WAYLAND_DISPLAY \"wayland-0\" cannot be reached: see that it runs, and that "
      "XDG_RUNTIME_DIR is the user's.";
  const struct {
    const char *platform, *x11, *wayland;
    std::vector<const char*> arguments;
    std::string problem;
  } cases[] = {
      {"", "", "", {}, "There is no display: neither DISPLAY nor WAYLAND_DISPLAY is set." + advice},
      {"xcb", "", "", {}, "There is no display: DISPLAY is not set." + advice},
      {"", ":4711", "", {}, noServer},
      {"", "", "", {"-display", ":4711"}, noServer},
      {"wayland", ":4711", "", {}, noCompositor},
      {"offscreen", "", "", {"--platform", "wayland"}, noCompositor},
      {"offscreen", "", "", {}, ""},
      {"xcb;minimal", ":4711", "", {}, ""},
      {"xcb", "", "", {"-platform", "offscreen"}, ""},
      {"", ":4711", compositor.c_str(), {}, ""},
      {"xcb", ":4711", compositor.c_str(), {}, noServer},
  };
  setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
  for (const auto& each : cases) {
    setenv("QT_QPA_PLATFORM", each.platform, 1);
    setenv("DISPLAY", each.x11, 1);
    setenv("WAYLAND_DISPLAY", each.wayland, 1);
    std::vector<const char*> arguments{"host"};
    arguments.insert(arguments.end(), each.arguments.begin(), each.arguments.end());
    EXPECT_EQ(utf8(displayProblem(static_cast<int>(arguments.size()), arguments.data()).value_or(u"")), each.problem);
  }
  close(listening);
}

TEST(X11Desktop, IsAskedBeforehand) {
  const char* const host = "host";
  EXPECT_EQ(displayProblem(1, &host), std::nullopt);
}

}  // namespace
}  // namespace kelvane
