#pragma once

#include <optional>

#include "Platform/Desktop/NSPopUpButton.h"
#include "Platform/Desktop/NSSplitView.h"
#include "Platform/Desktop/NSView.h"
#include "Platform/Desktop/NSWindow.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

class QAction;
class QComboBox;
class QSplitter;
class QToolBar;
class QWidget;

// The desktop on Qt 6 Widgets. A host that has a QApplication installs it once; from then on all that the library asks
// of a desktop is answered by Qt:
//
// ```cpp
// int main(int argc, char* argv[]) {
//   QApplication application(argc, argv);
//   kelvane::installQtDesktop();
//   QTextEdit editor;
//   editor.show();
//   return QApplication::exec();
// }
// ```
//
// All of it is for the main thread, the one of the QApplication.
namespace kelvane {

// What keeps a QApplication from being made, as a sentence for the user that says what to do; nothing when there is a
// display. Qt itself ends the process (SIGABRT) when it finds none, so a host that is also started by hand, over ssh or
// by a service asks beforehand, with main's arguments:
//
// ```cpp
// int main(int argc, char* argv[]) {
//   if (const auto problem = kelvane::displayProblem(argc, argv)) {
//     std::cerr << kelvane::utf8(*problem) << '\n';
//     return 1;
//   }
//   QApplication application(argc, argv);
//   return QApplication::exec();
// }
// ```
//
// It connects to the X server or the Wayland compositor that Qt would use by "-platform", "-display" and the
// environment, and hangs up again. The display may still go away before Qt comes to use it. Any thread.
KELVANE_EXPORT std::optional<Text> displayProblem(int argc, const char* const* argv);

// Makes Qt the current desktop. The QApplication must be there, and be destroyed after the last use of the desktop; at
// its end the headless desktop is installed again. Calling it twice is calling it once. Without a QApplication, and on
// another thread than its own, it raises std::invalid_argument.
//
// The run loop of the main thread is driven by Qt from then on: background work calls back in QApplication::exec() and
// in dialogs, and needs no NSRunLoop::run(); that works too, keeps windows alive meanwhile, and returns when the
// application is told to quit. What was scheduled on the run loop before is lost. After the application's end the loop
// goes on without Qt when it is run, and what is left can be waited for.
//
// Qt's own limit for the memory of an image that it reads (QImageReader::allocationLimit) is raised to 2048 megabytes
// in the whole process, unless the host has set a higher one, or none: photographs exceed the ordinary one.
//
// An alert that another thread asks for, a fatal one of the logger's for example, is shown by the main thread while the
// other one waits. If the main thread does not get to it within 10 seconds (it runs no loop, say, or waits for that
// very thread), the other one goes on, and the alert is shown when the main thread runs its loop again.
KELVANE_EXPORT void installQtDesktop();

// The host makes its windows and widgets with Qt and owns them. What it hands to the library are adapters: for each
// widget there is one, always the same, for as long as the widget lives. Who holds an adapter for longer has a window
// or a view whose original has gone.
//
// ```cpp
// QMainWindow mainWindow;
// positionAtGoldenMiddle(*windowFor(mainWindow));
// ```

// The window that the widget is, or is in.
//
//  - Its frame is set in whole units, origin and size each rounded for itself and halves up, and held within the limits
//    of the widget and its layout. How much title bar and borders take is known once the window is on the screen: a
//    frame set before is set once more then, unless the host has placed or resized the widget since.
//  - An animated frame arrives after the time that the style has for animations; the next one takes over from where the
//    window is by then, and closing the window finishes it.
//  - The content view of a QMainWindow is its central widget, that of every other window the widget itself. The content
//    rectangle leaves out menu bar, status line and docks.
//  - Under Wayland the compositor says where windows are and how they are stacked; sizes are set all the same.
//
// Desktop::orderedWindows has palettes and dialogs too, but no menus, tool tips and splash screens. The order follows
// what is shown, activated, raised and told by orderWindow; QWidget::lower counts as raising.
KELVANE_EXPORT Ref<NSWindow> windowFor(QWidget& widget);

// The widget as a view. Of a widget of a special class the view is one of the class that goes with it, whichever of
// these functions is asked.
//
// What a layout of Qt's manages goes back to where that wants it, at the next time. removeFromSuperview takes the
// widget out of its parent, and so out of its parent's ownership: it is the host's from then on.
KELVANE_EXPORT Ref<NSView> viewFor(QWidget& widget);

// The widget behind a view; null when it has gone, for nil, and for views that are none of Qt's.
KELVANE_EXPORT QWidget* widgetFor(const NSView* view);

// The toolbar; that of a QMainWindow is also its NSWindow::toolbar, and of several the first one above the content. Its
// items are its visible actions but separators. An item's identifier is the objectName of the action or of the widget
// that was added, as it is when the item is first asked for.
KELVANE_EXPORT Ref<NSToolbar> toolbarFor(QToolBar& toolBar);

// The action behind an item; null when it has gone, for nil, and for items that are none of Qt's.
KELVANE_EXPORT QAction* actionFor(const NSToolbarItem* item);

// A splitter as a split view. The extents that its panes are given are kept until there is room for them, so that they
// may be given before the window is shown or has its size; until the user moves a divider. Whole units; a pane that is
// given one opens if it was collapsed. Hidden and collapsed panes keep theirs. In languages that are read from right to
// left the first pane is the one on the right.
KELVANE_EXPORT Ref<NSSplitView> splitViewFor(QSplitter& splitter);

// A combo box as a pop-up button.
KELVANE_EXPORT Ref<NSPopUpButton> popUpButtonFor(QComboBox& comboBox);

// Says that the own y of the widget's view grows downwards, as Qt counts it: for a widget that is drawn and clicked on
// in Qt's coordinates by code that asks the view. By default it grows upwards, as everywhere in the library.
KELVANE_EXPORT void setViewFlipped(QWidget& widget, bool isFlipped);

}  // namespace kelvane
