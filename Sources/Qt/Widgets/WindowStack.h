#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <vector>

#include "Platform/Desktop/NSWindow.h"
#include "Platform/Foundation/Ref.h"

namespace kelvane {

// The application's windows from front to back. Qt does not tell how they are stacked, so it is followed: a window
// comes to the front when it is shown, activated or raised, along with the dialogs that belong to it, and goes where
// orderWindow puts it. A host that calls QWidget::lower is taken to raise.
//
// Windows are what a user would call so: palettes too, but no menus, tool tips, splash screens and the like. One that
// was never shown counts once somebody has asked for its adapter. Main thread only.
class WindowStack final : public QObject {
 public:
  static WindowStack& shared();

  // Begins to follow the windows of the current QApplication.
  void follow();

  std::vector<Ref<NSWindow>> orderedWindows();
  // orderWindow:relativeTo:  Nothing when the other window is not there, or is the same.
  void order(QWidget& window, NSWindowOrderingMode place, std::int64_t relativeTo);

 private:
  WindowStack() = default;
  bool eventFilter(QObject* watched, QEvent* event) override;

  std::vector<QWidget*> windows();
  void moveToFront(QWidget& window);

  std::vector<QPointer<QWidget>> myWindows;
};

}  // namespace kelvane
