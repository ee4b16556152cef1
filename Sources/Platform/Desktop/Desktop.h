#pragma once

#include <memory>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

class ImageCodec;
class NSDictionary;
class NSMenu;
class NSScreen;
class NSView;
class NSWindow;
class OffscreenImage;

// What a modal alert shows. It has one button.
struct ModalAlert {
  Text title;
  Text informativeText;
  Text defaultButton;
};

// A menu that opens under or over a part of a view, as that of a pop-up button with an empty title would. A menu that
// pulls down shows its first item as that title and the others below it; one that does not opens with no item selected.
struct MenuPopUp {
  // Never nil.
  Ref<NSMenu> menu;
  // In the view's own coordinates.
  CGRect frame;
  // Nil where there is none: the menu opens where the pointer is.
  Ref<NSView> view;
  bool pullsDown = false;
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

  // The screens in the window system's order; none where there is none.
  virtual std::vector<Ref<NSScreen>> screens() const { return {}; }
  // The primary screen; nil where there is no screen.
  virtual Ref<NSScreen> mainScreen() const { return nullptr; }
  // The application's windows from front to back, those that are not visible too. None of them is nil.
  virtual std::vector<Ref<NSWindow>> orderedWindows() const { return {}; }
  // Whether the application has a say in where its windows are. Where it has not, as under Wayland, frames have sizes
  // that count and origins that do not: placing a window does no harm, and no good.
  virtual bool windowsHavePositions() const { return true; }

  // Shows the menu and returns when it has closed; an item that was chosen has performed its action by then. Without a
  // window system nothing happens.
  virtual void popUpMenu(const MenuPopUp&) {}

  // Shows the alert and returns when the user has closed it. The headless desktop prompts on the terminal and waits for
  // Return, when standard input and standard error are one; otherwise it writes the alert to standard error and goes
  // on.
  virtual void runModalAlert(const ModalAlert& alert) = 0;

  // Drawing. The context that is drawn in is set by whoever paints (NSGraphicsContext::currentContext).

  // The size of text, in points, whose lines are broken at line ends only (NSStringDrawing.h tells which attributes
  // count); 0 by 0 where there is no layout of text.
  virtual CGSize sizeOfText(TextView text, const NSDictionary& attributes);
  // A transparent picture of `size`, in points, to draw into, with as many pixels to a point as the main screen has;
  // null where there is no drawing, or no memory for so large a one.
  virtual std::unique_ptr<OffscreenImage> makeOffscreenImage(const CGSize& size);
  // Reads and writes image files; null where nobody does. Lives as long as the desktop.
  virtual ImageCodec* imageCodec() { return nullptr; }
};

}  // namespace kelvane
