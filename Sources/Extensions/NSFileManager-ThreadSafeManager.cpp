#include "Extensions/NSFileManager-ThreadSafeManager.h"

#include <memory>
#include <mutex>
#include <unordered_map>

#include "Platform/Foundation/Format.h"

namespace kelvane::NSFileManagerExtensions {
namespace {

// The managers by the address of their thread's mark. Nothing is ever taken out.
struct ManagerTable {
  std::recursive_mutex mutex;
  std::unordered_map<Text, std::unique_ptr<NSFileManager>> managers;
};

ManagerTable& theTable() {
  static auto& table = *new ManagerTable();
  return table;
}

}  // namespace

NSFileManager& threadSafeManager() {
  // No two running threads have this at the same address.
  static thread_local char threadMark;
  ManagerTable& table = theTable();
  const std::lock_guard lock(table.mutex);
  std::unique_ptr<NSFileManager>& manager = table.managers[format(u"%p", static_cast<const void*>(&threadMark))];
  if (!manager) manager = std::make_unique<NSFileManager>();
  return *manager;
}

}  // namespace kelvane::NSFileManagerExtensions
