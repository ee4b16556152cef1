#pragma once

#include <memory>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// What a modal alert shows. It has one button.
struct ModalAlert {
  Text title;
  Text informativeText;
  Text defaultButton;
};

// Answers for what is global on a desktop. The library asks it and nothing else, so that it runs without a window
// system; a host that has one installs another desktop. Main thread only.
class KELVANE_EXPORT Desktop {
 public:
  // The installed desktop; a headless one until there is one.
  static Desktop& current();
  // Makes `desktop` the current one and returns the one before; nil stands for the headless one.
  static std::shared_ptr<Desktop> install(std::shared_ptr<Desktop> desktop);

  Desktop() = default;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  virtual ~Desktop();

  // The version number of the user-interface library, such as 6.4; 0 where there is none.
  virtual double userInterfaceVersionNumber() const { return 0; }
  // userSpaceScaleFactor  How many device pixels one unit has on the main screen, along each axis; 1.0 without a
  // screen.
  virtual double userSpaceScaleFactor() const { return 1.0; }

  // Shows the alert and returns when the user has closed it. The headless desktop prompts on the terminal and waits for
  // Return, when standard input and standard error are one; otherwise it writes the alert to standard error and goes
  // on.
  virtual void runModalAlert(const ModalAlert& alert) = 0;
};

}  // namespace kelvane
