#include "Qt/Widgets/QtEventLoop.h"

#include <QCoreApplication>
#include <QScopedValueRollback>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "Qt/Widgets/Guarded.h"
#include "Qt/Widgets/NestedLoop.h"

namespace kelvane {
namespace {

using namespace std::chrono;

void startAt(QTimer& timer, EventLoop::Clock::time_point time) {
  // A timer counts in milliseconds, and not for long. One that comes too soon is set again.
  constexpr milliseconds longest = hours(24);
  const auto now = EventLoop::Clock::now();
  timer.start(time <= now ? milliseconds(0) : time - now > longest ? longest : ceil<milliseconds>(time - now));
}

void prepare(QTimer& timer) {
  timer.setSingleShot(true);
  timer.setTimerType(Qt::PreciseTimer);
}

}  // namespace

// The objects through which Qt wakes the loop.
struct QtEventLoop::Drive : QObject {
  explicit Drive(QtEventLoop& loop) : wakeUp(loop.myCalls.wakeUpDescriptor(), QSocketNotifier::Read) {
    prepare(alarm);
    connect(&alarm, &QTimer::timeout, this, [&loop] { loop.turn(); });
    connect(&wakeUp, &QSocketNotifier::activated, this, [&loop] { loop.turn(); });
  }

  // A notifier is owned by this. It may go while it tells.
  QSocketNotifier* makeNotifier(QtEventLoop& loop, int descriptor, QSocketNotifier::Type type) {
    auto* const notifier = new QSocketNotifier(descriptor, type, this);
    connect(notifier, &QSocketNotifier::activated, this, [&loop] { loop.turn(); });
    return notifier;
  }
  static void drop(QSocketNotifier*& notifier) {
    if (!notifier) return;
    notifier->setEnabled(false);
    std::exchange(notifier, nullptr)->deleteLater();
  }

  QTimer alarm;
  QSocketNotifier wakeUp;
};

QtEventLoop::QtEventLoop() { attach(); }

QtEventLoop::~QtEventLoop() = default;

void QtEventLoop::attach() {
  if (myDrive) return;
  myDrive = std::make_unique<Drive>(*this);
  for (auto& [descriptor, watched] : myWatched) notify(descriptor, watched);
  setAlarm();
}

void QtEventLoop::detach() {
  for (auto& [descriptor, watched] : myWatched) watched.readableRef = watched.writableRef = nullptr;
  myDrive.reset();
}

void QtEventLoop::watch(int descriptor, unsigned events, ReadyCall ready) {
  myCalls.watch(descriptor, events, std::move(ready));
  Watched& watched = myWatched[descriptor];
  watched.events = events;
  if (myDrive) notify(descriptor, watched);
}

void QtEventLoop::notify(int descriptor, Watched& watched) {
  const auto set = [&](QSocketNotifier*& notifier, QSocketNotifier::Type type, unsigned event) {
    const bool isWanted = (watched.events & event) != 0;
    if (!isWanted) Drive::drop(notifier);
    if (isWanted && !notifier) notifier = myDrive->makeNotifier(*this, descriptor, type);
  };
  set(watched.readableRef, QSocketNotifier::Read, Readable);
  set(watched.writableRef, QSocketNotifier::Write, Writable);
}

void QtEventLoop::unwatch(int descriptor) {
  myCalls.unwatch(descriptor);
  const auto found = myWatched.find(descriptor);
  if (found == myWatched.end()) return;
  Drive::drop(found->second.readableRef);
  Drive::drop(found->second.writableRef);
  myWatched.erase(found);
}

EventLoop::Timer QtEventLoop::callAt(Clock::time_point time, Call call) {
  const Timer timer = myCalls.callAt(time, std::move(call));
  setAlarm();
  return timer;
}

void QtEventLoop::cancel(Timer timer) { myCalls.cancel(timer); }

// The descriptor that wakes the loop does all that is needed, whatever the thread.
void QtEventLoop::callSoon(Call call) { myCalls.callSoon(std::move(call)); }

bool QtEventLoop::wait(Clock::time_point limit) {
  if (!myDrive) return myCalls.wait(limit);
  if (myCalls.isIdle()) return false;
  NestedLoop loop;
  const QScopedValueRollback<NestedLoop*> innermost(myWaitRef, &loop);
  QTimer timer;
  prepare(timer);
  QObject::connect(&timer, &QTimer::timeout, [&loop] { loop.leave(); });
  if (limit != Clock::time_point::max()) startAt(timer, limit);
  const bool isLeft = loop.run();
  if (myThrown) std::rethrow_exception(std::exchange(myThrown, nullptr));
  return isLeft;
}

void QtEventLoop::turn() {
  // Should a call let Qt handle events, in a dialog for example, the timers behind it are to be called from there.
  setAlarm();
  try {
    myCalls.wait(Clock::time_point::min());
  } catch (...) {
    keepThrown(std::current_exception());
  }
  setAlarm();
  if (myWaitRef) myWaitRef->leave();
}

void QtEventLoop::setAlarm() {
  if (!myDrive) return;
  if (const auto next = myCalls.nextTime())
    startAt(myDrive->alarm, *next);
  else
    myDrive->alarm.stop();
}

void QtEventLoop::keepThrown(std::exception_ptr thrown) {
  if (myWaitRef && !myThrown) {
    myThrown = std::move(thrown);
    return;
  }
  reportThrown("QtEventLoop", thrown);
}

}  // namespace kelvane
