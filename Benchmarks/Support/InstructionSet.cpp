#include "Support/InstructionSet.h"

#include <hwy/targets.h>

#include <cstdint>

namespace kelvane::bench {
namespace {

constexpr std::int64_t aboveAVX2 = HWY_AVX3 | HWY_AVX3_DL;
bool isComparing = false;

}  // namespace

bool compareWithAVX2() {
  const std::int64_t targets = hwy::SupportedTargets();
  isComparing = (targets & aboveAVX2) != 0 && (targets & HWY_AVX2) != 0;
  return isComparing;
}

bool comparesWithAVX2() { return isComparing; }

HeldAtAVX2::HeldAtAVX2() { hwy::GetChosenTarget().Update(hwy::SupportedTargets() & ~aboveAVX2); }

HeldAtAVX2::~HeldAtAVX2() { hwy::GetChosenTarget().Update(hwy::SupportedTargets()); }

}  // namespace kelvane::bench
