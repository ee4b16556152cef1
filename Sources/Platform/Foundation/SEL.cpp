#include "Platform/Foundation/SEL.h"

#include <functional>
#include <mutex>
#include <set>

namespace kelvane {
namespace {

// Never destroyed: selectors stay valid while the process ends. The places of a set's elements do not change.
const Text& interned(TextView name) {
  static auto& mutex = *new std::mutex();
  static auto& names = *new std::set<Text, std::less<>>();
  const std::lock_guard lock(mutex);
  const auto known = names.find(name);
  return known != names.end() ? *known : *names.emplace(name).first;
}

}  // namespace

SEL::SEL(TextView name) : myName(name.empty() ? nullptr : &interned(name)) {}

}  // namespace kelvane
