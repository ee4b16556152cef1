#include "Qt/Widgets/NestedLoop.h"

#include <QMetaObject>
#include <utility>

namespace kelvane {

bool NestedLoop::run() {
  bool hasRun = false;
  QMetaObject::invokeMethod(
      &myLoop, [&hasRun] { hasRun = true; }, Qt::QueuedConnection);
  if (!myIsLeft) myLoop.exec();
  const bool isRefused = !hasRun;
  while (isRefused && !myIsLeft) myLoop.processEvents(QEventLoop::WaitForMoreEvents);
  return std::exchange(myIsLeft, false);
}

void NestedLoop::leave() {
  myIsLeft = true;
  myLoop.exit();
}

}  // namespace kelvane
