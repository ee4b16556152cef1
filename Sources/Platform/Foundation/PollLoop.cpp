#include "Platform/Foundation/PollLoop.h"

#include <errno.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>

namespace kelvane {

using namespace std::chrono;

EventLoop::~EventLoop() = default;

struct PollLoop::Happened {
  int descriptor;
  std::uint64_t number;
  unsigned events;
};

PollLoop::PollLoop() : myWakeUp(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (myWakeUp < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
}

PollLoop::~PollLoop() { close(myWakeUp); }

void PollLoop::watch(int descriptor, unsigned events, ReadyCall ready) {
  myWatches[descriptor] = {events, ++myLastNumber, std::make_shared<ReadyCall>(std::move(ready))};
}

void PollLoop::unwatch(int descriptor) { myWatches.erase(descriptor); }

EventLoop::Timer PollLoop::callAt(Clock::time_point time, Call call) {
  const Timer timer = ++myLastNumber;
  myTimers.emplace(std::pair(time, timer), std::move(call));
  myTimes.emplace(timer, time);
  return timer;
}

void PollLoop::cancel(Timer timer) {
  const auto found = myTimes.find(timer);
  if (found == myTimes.end()) return;
  myTimers.erase({found->second, timer});
  myTimes.erase(found);
}

void PollLoop::callSoon(Call call) {
  {
    const std::lock_guard lock(mySoonMutex);
    mySoon.push_back(std::move(call));
  }
  wakeUp();
}

void PollLoop::wakeUp() const {
  const std::uint64_t one = 1;
  // Fails only when it is readable already.
  [[maybe_unused]] const ssize_t written = write(myWakeUp, &one, sizeof one);
}

bool PollLoop::wait(Clock::time_point limit) {
  const bool calledSome = callThoseOfSoon();
  if (!calledSome && myWatches.empty() && myTimers.empty()) return false;
  // What was called may have asked for more, or done what was being waited for.
  for (const Happened& happened : waitForDescriptors(calledSome ? Clock::time_point::min() : limit)) {
    const auto watch = myWatches.find(happened.descriptor);
    if (watch == myWatches.end() || watch->second.number != happened.number) continue;
    // Kept, since it may be replaced by what it does.
    const std::shared_ptr<ReadyCall> ready = watch->second.ready;
    (*ready)(happened.events);
  }
  callTimers();
  return true;
}

std::optional<EventLoop::Clock::time_point> PollLoop::nextTime() const {
  if (myTimers.empty()) return std::nullopt;
  return myTimers.begin()->first.first;
}

bool PollLoop::isIdle() const {
  const std::lock_guard lock(mySoonMutex);
  return mySoon.empty() && myWatches.empty() && myTimers.empty();
}

bool PollLoop::callThoseOfSoon() {
  std::uint64_t count = 0;
  [[maybe_unused]] const ssize_t size = read(myWakeUp, &count, sizeof count);
  std::unique_lock lock(mySoonMutex);
  // Those that come meanwhile wait for the next turn. One at a time: a call that waits itself is to find those behind
  // it.
  const std::size_t due = mySoon.size();
  for (std::size_t i = 0; i < due && !mySoon.empty(); ++i) {
    const Call call = std::move(mySoon.front());
    mySoon.pop_front();
    // Whoever drives this loop from within the call is to hear of those behind it.
    if (!mySoon.empty()) wakeUp();
    lock.unlock();
    call();
    lock.lock();
  }
  return due > 0;
}

std::vector<PollLoop::Happened> PollLoop::waitForDescriptors(Clock::time_point limit) {
  std::vector<pollfd> descriptors{{myWakeUp, POLLIN, 0}};
  std::vector<Happened> happened;
  descriptors.reserve(myWatches.size() + 1);
  happened.reserve(myWatches.size());
  for (const auto& [descriptor, watch] : myWatches) {
    const int events = ((watch.events & Readable) != 0 ? POLLIN : 0) | ((watch.events & Writable) != 0 ? POLLOUT : 0);
    descriptors.push_back({descriptor, static_cast<short>(events), 0});
    happened.push_back({descriptor, watch.number, 0});
  }
  if (!myTimers.empty()) limit = std::min(limit, myTimers.begin()->first.first);
  const auto now = Clock::now();
  const auto rest = limit > now ? limit - now : Clock::duration::zero();
  const timespec time = {duration_cast<seconds>(rest).count(), static_cast<long>((rest % seconds(1)).count())};
  // Interrupted is as good as nothing happened.
  if (ppoll(descriptors.data(), descriptors.size(), limit == Clock::time_point::max() ? nullptr : &time, nullptr) <= 0)
    return {};
  for (std::size_t i = 0; i < happened.size(); ++i) {
    const auto events = static_cast<unsigned>(descriptors[i + 1].revents);
    if ((events & POLLIN) != 0) happened[i].events |= Readable;
    if ((events & POLLOUT) != 0) happened[i].events |= Writable;
    if ((events & (POLLERR | POLLHUP | POLLNVAL)) != 0) happened[i].events = myWatches[happened[i].descriptor].events;
  }
  std::erase_if(happened, [](const Happened& one) { return one.events == 0; });
  return happened;
}

void PollLoop::callTimers() {
  const auto now = Clock::now();
  // Those that are set by these calls wait for the next turn, or a timer that sets itself again would never let go.
  const Timer last = myLastNumber;
  for (auto first = myTimers.begin(); first != myTimers.end() && first->first.first <= now; first = myTimers.begin()) {
    while (first != myTimers.end() && first->first.second > last) ++first;
    if (first == myTimers.end() || first->first.first > now) return;
    const Call call = std::move(first->second);
    myTimes.erase(first->first.second);
    myTimers.erase(first);
    call();
  }
}

}  // namespace kelvane
