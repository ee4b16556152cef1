#pragma once

#include <cstdlib>

#ifdef BENCH_DESKTOP
#include <QApplication>

#include "Qt/QtDesktop.h"
#else
#include <QGuiApplication>
#endif

namespace kelvane::bench {

// Documents ask for fonts, and these for an application. The desktop on Qt is installed where it is built.
inline void needApplication() {
  static int argumentCount = 1;
  static char name[] = "Benchmarks";
  static char* arguments[] = {name, nullptr};
  static const auto& application = *[] {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
#ifdef BENCH_DESKTOP
    auto* const made = new QApplication(argumentCount, arguments);
    installQtDesktop();
    return made;
#else
    return new QGuiApplication(argumentCount, arguments);
#endif
  }();
  static_cast<void>(application);
}

}  // namespace kelvane::bench
