#include "Support/InstructionSet.h"

#include <hwy/targets.h>

#include <cstdint>

#include "Platform/Foundation/VectorTargets.h"

namespace kelvane::bench {
namespace {

constexpr std::int64_t aboveAVX2 = HWY_AVX3 | HWY_AVX3_DL;
bool isComparing = false;

}  // namespace

bool compareWithAVX2() {
  const std::int64_t targets = supportedVectorTargets();
  isComparing = (targets & aboveAVX2) != 0 && (targets & HWY_AVX2) != 0;
  return isComparing;
}

bool comparesWithAVX2() { return isComparing; }

HeldAtAVX2::HeldAtAVX2() { useVectorTargets(supportedVectorTargets() & ~aboveAVX2); }

HeldAtAVX2::~HeldAtAVX2() { useVectorTargets(supportedVectorTargets()); }

}  // namespace kelvane::bench
