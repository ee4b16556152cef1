#include "Qt/QtDesktop.h"

#include <QApplication>
#include <QComboBox>
#include <QScreen>
#include <QSplitter>
#include <QThread>
#include <memory>
#include <utility>

#include "Platform/Desktop/Desktop.h"
#include "Platform/Foundation/NSRunLoop.h"
#include "Platform/Foundation/Raise.h"
#include "Qt/Painting/QtImageCodec.h"
#include "Qt/Painting/QtOffscreenImage.h"
#include "Qt/Painting/TextLayout.h"
#include "Qt/Widgets/Adapters.h"
#include "Qt/Widgets/ModalAlerts.h"
#include "Qt/Widgets/Platform.h"
#include "Qt/Widgets/PopUpMenu.h"
#include "Qt/Widgets/QtEventLoop.h"
#include "Qt/Widgets/QtScreens.h"
#include "Qt/Widgets/QtToolbar.h"
#include "Qt/Widgets/WindowStack.h"

namespace kelvane {
namespace {

class QtDesktop final : public Desktop {
 public:
  // As it is read: 6.10 is not 7.
  double userInterfaceVersionNumber() const override {
    return QT_VERSION_MAJOR + QT_VERSION_MINOR / (QT_VERSION_MINOR < 10 ? 10.0 : 100.0);
  }
  double userSpaceScaleFactor() const override {
    const QScreen* const screen = QGuiApplication::primaryScreen();
    return screen ? screen->devicePixelRatio() : 1.0;
  }
  std::vector<Ref<NSScreen>> screens() const override { return allScreens(); }
  Ref<NSScreen> mainScreen() const override { return screenOf(QGuiApplication::primaryScreen()); }
  std::vector<Ref<NSWindow>> orderedWindows() const override { return WindowStack::shared().orderedWindows(); }
  bool windowsHavePositions() const override { return kelvane::windowsHavePositions(); }
  void popUpMenu(const MenuPopUp& menu) override { popUp(menu); }
  void runModalAlert(const ModalAlert& alert) override {
    if (QThread::currentThread() == myThread)
      showAlert(alert);
    else
      runAlertOnMainThread(myRunLoop, alert);
  }

  CGSize sizeOfText(TextView text, const NSDictionary& attributes) override {
    return TextLayout(text, attributes).size();
  }
  std::unique_ptr<OffscreenImage> makeOffscreenImage(const CGSize& size) override {
    return makeQtOffscreenImage(size, userSpaceScaleFactor());
  }
  ImageCodec* imageCodec() override { return &myImageCodec; }

 private:
  const QThread* const myThread = QThread::currentThread();
  NSRunLoop& myRunLoop = NSRunLoop::currentRunLoop();
  QtImageCodec myImageCodec;
};

// The desktop that was there before Qt's, and is again when the application has gone.
std::shared_ptr<Desktop>& desktopBefore() {
  static auto& desktop = *new std::shared_ptr<Desktop>;
  return desktop;
}

QtEventLoop* installedEventLoop() { return dynamic_cast<QtEventLoop*>(&NSRunLoop::currentRunLoop().eventLoop()); }

void installEventLoop() {
  if (QtEventLoop* const loop = installedEventLoop())
    loop->attach();
  else
    NSRunLoop::currentRunLoop().setEventLoop(std::make_unique<QtEventLoop>());
}

void uninstallQtDesktop() {
  Desktop::install(std::exchange(desktopBefore(), nullptr));
  if (QtEventLoop* const loop = installedEventLoop()) loop->detach();
}

}  // namespace

void installQtDesktop() {
  if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
    raiseInvalidArgument("installQtDesktop", "there is no QApplication");
  if (QThread::currentThread() != QCoreApplication::instance()->thread())
    raiseInvalidArgument("installQtDesktop", "this is not the thread of the QApplication");
  if (desktopBefore()) return;
  installEventLoop();
  desktopBefore() = Desktop::install(std::make_shared<QtDesktop>());
  WindowStack::shared().follow();
  qAddPostRoutine(uninstallQtDesktop);
}

Ref<NSWindow> windowFor(QWidget& widget) { return windowOf(&widget); }

Ref<NSView> viewFor(QWidget& widget) { return viewOf(&widget); }

QWidget* widgetFor(const NSView* view) { return widgetOf(view); }

Ref<NSToolbar> toolbarFor(QToolBar& toolBar) { return toolbarOf(&toolBar); }

QAction* actionFor(const NSToolbarItem* item) { return actionOf(item); }

Ref<NSSplitView> splitViewFor(QSplitter& splitter) { return as<NSSplitView>(viewOf(&splitter)); }

Ref<NSPopUpButton> popUpButtonFor(QComboBox& comboBox) { return as<NSPopUpButton>(viewOf(&comboBox)); }

void setViewFlipped(QWidget& widget, bool isFlipped) {
  if (auto* const adapter = dynamic_cast<WidgetAdapter*>(viewOf(&widget).get())) adapter->setFlipped(isFlipped);
}

}  // namespace kelvane
