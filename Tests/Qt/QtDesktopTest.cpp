#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QWidget>

#include "Extensions/NSApplication-QNExtensions.h"
#include "Extensions/NSEvent-QNExtensions.h"
#include "Platform/Desktop/Desktop.h"
#include "Qt/QtDesktop.h"
#include "Qt/QtEvents.h"
#include "Qt/QtShadows.h"
#include "Support/Testing.h"

namespace {

// In the picture, where rows count downwards, a shadow to the upper right lies above the widget and right of it.
TEST(QtShadows, FallWhereTheLibrarySays) {
  QWidget window;
  window.setPalette(QPalette(Qt::white));
  window.resize(100, 100);
  QWidget box(&window);
  box.setGeometry(40, 40, 20, 20);
  box.setAutoFillBackground(true);
  box.setPalette(QPalette(Qt::white));
  NSShadow shadow;
  shadow.setShadowColor(NSColor::colorWithCalibratedWhite(0, 1));
  shadow.setShadowOffset({10, 10});
  setShadow(box, &shadow);
  const QImage picture = window.grab().toImage();
  EXPECT_LT(picture.pixelColor(65, 35).lightness(), 50);
  EXPECT_GT(picture.pixelColor(35, 65).lightness(), 200);

  shadow.setShadowOffset({NaN, infinity});
  shadow.setShadowBlurRadius(NaN);
  setShadow(box, &shadow);
  EXPECT_GT(window.grab().toImage().pixelColor(65, 35).lightness(), 200);
  setShadow(box, nullptr);
  EXPECT_EQ(box.graphicsEffect(), nullptr);
}

TEST(QtEvents, ModifierKeysAreToldByWhatTheyAreFor) {
  const std::tuple<Qt::KeyboardModifiers, std::uint64_t, bool> rows[] = {
      {Qt::NoModifier, 0, false},
      {Qt::ControlModifier, NSCommandKeyMask, true},
      {Qt::MetaModifier | Qt::ShiftModifier, NSControlKeyMask | NSShiftKeyMask, true},
      {Qt::AltModifier | Qt::KeypadModifier, NSAlternateKeyMask | NSNumericPadKeyMask, true},
      {Qt::KeypadModifier, NSNumericPadKeyMask, false},
  };
  for (const auto& [held, flags, isCommand] : rows) {
    const Ref<NSEvent> event = eventFrom(QKeyEvent(QEvent::KeyPress, Qt::Key_A, held));
    EXPECT_EQ(event->modifierFlags(), flags);
    EXPECT_EQ(isAnyCommandModificationKeyPressed(*event), isCommand);
  }
}

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
  const std::tuple<const char*, const char*, const char*, std::vector<const char*>, std::string> cases[] = {
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
  for (const auto& [platform, x11, wayland, words, problem] : cases) {
    setenv("QT_QPA_PLATFORM", platform, 1);
    setenv("DISPLAY", x11, 1);
    setenv("WAYLAND_DISPLAY", wayland, 1);
    std::vector<const char*> arguments{"host"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    EXPECT_EQ(utf8(displayProblem(static_cast<int>(arguments.size()), arguments.data()).value_or(u"")), problem);
  }
  close(listening);
}

TEST(X11Desktop, IsAskedBeforehand) {
  const char* const host = "host";
  EXPECT_EQ(displayProblem(1, &host), std::nullopt);
}

}  // namespace
