#include "Qt/Widgets/NestedLoop.h"

#include <QMetaObject>
#include <utility>

namespace kelvane {

bool NestedLoop::run() {
  myHasRun = false;
  QMetaObject::invokeMethod(
      &myLoop, [this] { myHasRun = true; }, Qt::QueuedConnection);
  if (!myIsLeft) myLoop.exec();
  const bool isRefused = !myHasRun;
  while (isRefused && !myIsLeft) myLoop.processEvents(QEventLoop::WaitForMoreEvents);
  return std::exchange(myIsLeft, false);
}

void NestedLoop::leave() {
  myIsLeft = true;
  myLoop.exit();
}

}  // namespace kelvane
