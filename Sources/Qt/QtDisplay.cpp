#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <QByteArray>
#include <QByteArrayList>
#include <cstring>
#include <string>
#include <string_view>

#include "Platform/Foundation/TextEncoding.h"
#include "Qt/QtDesktop.h"

namespace kelvane {
namespace {

// What Qt is going to look at; empty for what is not there.
struct DisplayNames {
  QByteArray platform;
  QByteArray x11;
  QByteArray wayland;
};

// The value of "-name value" or "--name value" as Qt takes it out of the arguments; the last one counts.
QByteArray argument(int argc, const char* const* argv, std::string_view name) {
  QByteArray value;
  for (int i = 1; i + 1 < argc; ++i) {
    std::string_view word = argv[i];
    if (word.starts_with("--")) word.remove_prefix(1);
    if (word.starts_with("-") && word.substr(1) == name) value = argv[i + 1];
  }
  return value;
}

DisplayNames displayNames(int argc, const char* const* argv) {
  DisplayNames names{argument(argc, argv, "platform"), argument(argc, argv, "display"), qgetenv("WAYLAND_DISPLAY")};
  if (names.platform.isEmpty()) names.platform = qgetenv("QT_QPA_PLATFORM");
  if (names.x11.isEmpty()) names.x11 = qgetenv("DISPLAY");
  // Who asks for Wayland gets the compositor that is called so, where none is named.
  if (names.wayland.isEmpty() && names.platform.startsWith("wayland")) names.wayland = "wayland-0";
  return names;
}

bool isXServerReachable(const QByteArray& display) {
  if (display.isEmpty()) return false;
  xcb_connection_t* const connection = xcb_connect(display.constData(), nullptr);
  const bool isReachable = xcb_connection_has_error(connection) == 0;
  xcb_disconnect(connection);
  return isReachable;
}

bool isCompositorReachable(const QByteArray& display) {
  if (display.isEmpty()) return false;
  const QByteArray path = display.startsWith('/') ? display : qgetenv("XDG_RUNTIME_DIR") + '/' + display;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (static_cast<std::size_t>(path.size()) >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
  const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (descriptor < 0) return false;
  const bool isReachable = connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  close(descriptor);
  return isReachable;
}

std::string adviceFor(const DisplayNames& names, bool wantsX11, bool wantsWayland) {
  if (wantsX11 && !names.x11.isEmpty())
    return "The X server at DISPLAY \"" + names.x11.toStdString() +
           "\" cannot be reached: see that it runs, and that this user may use it (XAUTHORITY, xhost).";
  if (wantsWayland && !names.wayland.isEmpty())
    return "The Wayland compositor at WAYLAND_DISPLAY \"" + names.wayland.toStdString() +
           "\" cannot be reached: see that it runs, and that XDG_RUNTIME_DIR is the user's.";
  return std::string("There is no display: ") +
         (wantsWayland ? "neither DISPLAY nor WAYLAND_DISPLAY is set." : "DISPLAY is not set.") +
         " Start the application in a desktop session, or set QT_QPA_PLATFORM to \"offscreen\" to run it without one.";
}

}  // namespace

std::optional<Text> displayProblem(int argc, const char* const* argv) {
  const DisplayNames names = displayNames(argc, argv);
  bool wantsX11 = names.platform.isEmpty();
  bool wantsWayland = names.platform.isEmpty();
  for (const QByteArray& platform : names.platform.split(';')) {
    const bool isX11 = platform.startsWith("xcb");
    const bool isWayland = platform.startsWith("wayland");
    // The others take no display.
    if (!platform.isEmpty() && !isX11 && !isWayland) return std::nullopt;
    wantsX11 = wantsX11 || isX11;
    wantsWayland = wantsWayland || isWayland;
  }
  if (wantsX11 && isXServerReachable(names.x11)) return std::nullopt;
  if (wantsWayland && isCompositorReachable(names.wayland)) return std::nullopt;
  return textFromUTF8(adviceFor(names, wantsX11, wantsWayland));
}

}  // namespace kelvane
