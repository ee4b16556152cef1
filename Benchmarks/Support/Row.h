#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "Support/Fingerprint.h"

namespace kelvane::bench {

// One line of the table that `./kelvane bench` prints. Each contestant does the same work on the same input and returns
// what came of it; before anything is timed, all results of a row must be the same (Fingerprint.h).
//
//   const Subject trimming([] {
//     Row("trim")
//         .ours([] { return trim(mixedText()); })
//         .peer("Qt", [] { return QStringView(mixedText()).trimmed(); })
//         .limit("memchr", [] { return scanned(mixedText()); })
//         .reach(1);
//   });
//
// Making and destroying the result is timed, as its user pays for both; what a contestant captures is not, nor its
// `prepare()`, which is called each time before the work where there is one. Peers are called the way their users
// would.
class Row {
 public:
  // Names are unique, and say what the work is.
  explicit Row(std::string name);

  // The row is about time that passes, not about the processor's: for work that others do, such as a server. First of
  // all.
  Row& elapsed();

  // `compared` turns a result into what is compared, where the result as it is tells nothing.
  template <class Work, class Compared = std::identity>
  Row& ours(Work work, Compared compared = {}) {
    return addOurs(tryOutOf(work, compared), timingOf(work));
  }
  // Another library's way, under its name.
  template <class Work, class Compared = std::identity>
  Row& peer(const std::string& name, Work work, Compared compared = {}) {
    return add("peer", name, tryOutOf(work, compared), timingOf(work));
  }
  // What the machine itself takes, of which Limits.h has some. Its result is not compared.
  template <class Work>
  Row& limit(const std::string& name, Work work) {
    return add("limit", name, nullptr, timingOf(work));
  }

  // How many times as fast as the fastest peer we mean to be.
  Row& reach(double ratio) { return set("reach", std::to_string(ratio)); }
  // How many times as long as the limit we may take at most.
  Row& withinLimit(double times) { return set("within", std::to_string(times)); }
  // How many nanoseconds one piece of the work may take at most.
  Row& under(double nanoseconds) { return set("under", std::to_string(nanoseconds)); }
  // The work consists of `count` pieces, such as lines: the table shows the time of one.
  Row& per(const std::string& piece, std::size_t count);
  // Shows in a line of its own how many bytes of heap each result holds, of which ours may hold that many at most.
  Row& memory(std::size_t atMost) { return set("memory", std::to_string(atMost)); }

 private:
  struct TryOut {
    std::uint64_t fingerprint = 0;
    std::size_t heldBytes = 0;
  };
  struct Contestant;
  struct Contest;
  using Timing = std::function<void(benchmark::State&)>;

  template <class Work, class Compared>
  static std::function<TryOut()> tryOutOf(Work work, Compared compared) {
    return [=]() mutable {
      if constexpr (requires { work.prepare(); }) work.prepare();
      const std::size_t before = heapBytes();
      if constexpr (std::is_void_v<decltype(work())>) {
        work();
        return TryOut{};
      } else {
        const auto result = work();
        const std::size_t held = heapBytes() - before;
        return TryOut{fingerprint(compared(result)), held};
      }
    };
  }
  // The loop stands inside, so that what is called through std::function is a million pieces and not each.
  template <class Work>
  static Timing timingOf(Work work) {
    return [=](benchmark::State& state) mutable {
      for (auto _ : state) {
        if constexpr (requires { work.prepare(); }) {
          state.PauseTiming();
          work.prepare();
          state.ResumeTiming();
        }
        if constexpr (std::is_void_v<decltype(work())>) {
          work();
        } else {
          auto result = work();
          benchmark::DoNotOptimize(result);
        }
        benchmark::ClobberMemory();
      }
    };
  }
  static std::size_t heapBytes();

  Row& addOurs(const std::function<TryOut()>& tryOut, const Timing& timing);
  Row& add(const std::string& kind, const std::string& name, std::function<TryOut()> tryOut, Timing timing);
  Row& set(const std::string& property, const std::string& value);

  std::shared_ptr<Contest> myContest;
};

// The rows of a source file. Its function runs once, at the start, and makes them.
class Subject {
 public:
  explicit Subject(void (*makeRows)());
};

}  // namespace kelvane::bench
