#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace kelvane {

// Who wants to hear of an object's changes. Observers are not owned; each removes itself before it goes. One that is
// added during a notification hears from the next one on, one that is removed no longer from then on. The list must
// outlive its notifications. One thread at a time.
template <class Observer>
class ObserverList {
 public:
  ObserverList() = default;
  ObserverList(const ObserverList&) = delete;
  ObserverList& operator=(const ObserverList&) = delete;

  // Adding twice is adding once.
  void add(Observer& observer) {
    if (std::ranges::find(myObservers, &observer) == myObservers.end()) myObservers.push_back(&observer);
  }

  void remove(Observer& observer) {
    // The place stays while somebody walks along the list.
    std::ranges::replace(myObservers, &observer, static_cast<Observer*>(nullptr));
    dropGaps();
  }

  // Calls `tell` with each observer, in the order in which they came.
  template <class Tell>
  void notify(Tell tell) {
    const Walk walk(*this);
    const std::size_t count = myObservers.size();
    for (std::size_t i = 0; i < count; ++i)
      if (Observer* const observer = myObservers[i]) tell(*observer);
  }

 private:
  struct Walk {
    explicit Walk(ObserverList& theList) : list(theList) { ++list.myWalks; }
    ~Walk() {
      --list.myWalks;
      list.dropGaps();
    }
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;
    ObserverList& list;
  };

  void dropGaps() {
    if (myWalks == 0) std::erase(myObservers, nullptr);
  }

  std::vector<Observer*> myObservers;
  int myWalks = 0;
};

}  // namespace kelvane
