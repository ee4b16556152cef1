#include "Support/Row.h"

#include <malloc.h>

#include <optional>
#include <utility>
#include <vector>

#include "Support/InstructionSet.h"
#include "Support/Subjects.h"

namespace kelvane::bench {

struct Row::Contestant {
  std::string name;
  std::function<TryOut()> tryOut;
  std::size_t heldBytes = 0;
};

struct Row::Contest {
  std::string name;
  std::vector<Contestant> contestants;
  bool isElapsed = false;
  // Nothing until the results were compared; then empty, or what is wrong.
  std::optional<std::string> complaint;

  void compareResults();
};

void Row::Contest::compareResults() {
  complaint.emplace();
  std::optional<std::uint64_t> expected;
  for (Contestant& contestant : contestants) {
    if (!contestant.tryOut) continue;
    const TryOut result = contestant.tryOut();
    contestant.heldBytes = result.heldBytes;
    if (!expected) expected = result.fingerprint;
    if (result.fingerprint != *expected) *complaint = contestant.name + " gives another result";
  }
}

Row::Row(std::string name) : myContest(std::make_shared<Contest>()) {
  // Google Benchmark hands measurements out by name; the table has the order of the sources.
  static int number = 0;
  myContest->name = std::move(name);
  set("order", std::to_string(number++));
}

Row& Row::elapsed() {
  myContest->isElapsed = true;
  return *this;
}

Row& Row::per(const std::string& piece, std::size_t count) {
  return set("piece", piece).set("count", std::to_string(count));
}

std::size_t Row::heapBytes() {
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

Row& Row::addOurs(const std::function<TryOut()>& tryOut, const Timing& timing) {
  add("ours", "ours", tryOut, timing);
  if (!comparesWithAVX2()) return *this;
  const auto heldTryOut = [tryOut] {
    const HeldAtAVX2 held;
    return tryOut();
  };
  const auto heldTiming = [timing](benchmark::State& state) {
    const HeldAtAVX2 held;
    timing(state);
  };
  return add("avx2", "ours at AVX2", heldTryOut, heldTiming);
}

Row& Row::add(const std::string& kind, const std::string& name, std::function<TryOut()> tryOut, Timing timing) {
  const std::size_t index = myContest->contestants.size();
  myContest->contestants.push_back({name, std::move(tryOut)});
  // report.py takes the name apart again.
  benchmark::internal::Benchmark* made = benchmark::RegisterBenchmark(
      (myContest->name + "|" + kind + "|" + name).c_str(),
      [contest = myContest, index, timing = std::move(timing)](benchmark::State& state) {
        if (!contest->complaint) contest->compareResults();
        if (!contest->complaint->empty()) return state.SkipWithError(contest->complaint->c_str());
        timing(state);
        state.counters["held"] = static_cast<double>(contest->contestants[index].heldBytes);
      });
  if (myContest->isElapsed) made->UseRealTime();
  return *this;
}

Row& Row::set(const std::string& property, const std::string& value) {
  benchmark::AddCustomContext(myContest->name + "|" + property, value);
  return *this;
}

std::vector<void (*)()>& subjects() {
  static std::vector<void (*)()> subjects;
  return subjects;
}

Subject::Subject(void (*makeRows)()) { subjects().push_back(makeRows); }

}  // namespace kelvane::bench
