#pragma once

#include <QGuiApplication>
#include <cstdlib>

namespace kelvane::bench {

// Documents ask for fonts, and these for an application.
inline void needApplication() {
  static int argumentCount = 1;
  static char name[] = "Benchmarks";
  static char* arguments[] = {name, nullptr};
  static const auto& application = *[] {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    return new QGuiApplication(argumentCount, arguments);
  }();
  static_cast<void>(application);
}

}  // namespace kelvane::bench
