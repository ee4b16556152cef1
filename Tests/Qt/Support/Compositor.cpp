#include "Qt/Support/Compositor.h"

#include <QDeadlineTimer>
#include <QStandardPaths>
#include <QString>
#include <cstdlib>
#include <stdexcept>

#include "Qt/QtDesktop.h"

namespace kelvane {
namespace {

// The programs that the compositor starts find it there too.
std::string runtimeFolder(const std::string& path) {
  setenv("XDG_RUNTIME_DIR", path.c_str(), 1);
  setenv("WAYLAND_DISPLAY", "compositor", 1);
  setenv("QT_QPA_PLATFORM", "wayland", 1);
  return path;
}

}  // namespace

bool Compositor::isInstalled() { return !QStandardPaths::findExecutable(QStringLiteral("weston")).isEmpty(); }

Compositor::Compositor()
    : myProcess({"env", "-u", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR=" + runtimeFolder(myFolder.path()), "weston",
                 "--backend=headless-backend.so", "--socket=compositor", "--width=1280", "--height=1024",
                 "--idle-time=0", "--no-config"}) {
  const char* const host = "host";
  const QDeadlineTimer deadline(20'000);
  while (displayProblem(1, &host))
    if (deadline.hasExpired()) throw std::runtime_error("weston does not start");
}

}  // namespace kelvane
