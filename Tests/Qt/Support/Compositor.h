#pragma once

#include "Qt/Support/BackgroundProcess.h"
#include "Support/TemporaryFolder.h"

namespace kelvane {

// A Wayland compositor of the test's own, which shows its screen of 1280 x 1024 to nobody. While it lives it is the
// process's display. What goes wrong at its start is an exception.
class Compositor {
 public:
  // Whether the machine has one.
  static bool isInstalled();

  Compositor();

 private:
  TemporaryFolder myFolder;
  BackgroundProcess myProcess;
};

}  // namespace kelvane
