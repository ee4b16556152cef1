#include "Platform/Foundation/VectorTargets.h"

#include <hwy/highway.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace kelvane {
namespace {

#if HWY_ARCH_X86

std::int64_t machineTargets() {
  __builtin_cpu_init();
  const bool hasSSSE3 = __builtin_cpu_supports("ssse3");
  const bool hasSSE4 =
      hasSSSE3 && __builtin_cpu_supports("sse4.2") && __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("aes");
  // What has these has F16C and LZCNT too, which cannot be asked for everywhere.
  const bool hasAVX2 =
      hasSSE4 && __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("fma");
  const bool hasAVX3 = hasAVX2 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
                       __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq") &&
                       __builtin_cpu_supports("avx512cd");
  const bool hasAVX3DL = hasAVX3 && __builtin_cpu_supports("avx512vbmi2") && __builtin_cpu_supports("avx512bitalg") &&
                         __builtin_cpu_supports("avx512vpopcntdq") && __builtin_cpu_supports("vpclmulqdq");
  return (hasSSSE3 ? HWY_SSSE3 : 0) | (hasSSE4 ? HWY_SSE4 : 0) | (hasAVX2 ? HWY_AVX2 : 0) | (hasAVX3 ? HWY_AVX3 : 0) |
         (hasAVX3DL ? HWY_AVX3_DL : 0);
}

#else

// What the compiler was told to take for granted.
std::int64_t machineTargets() { return 0; }

#endif

}  // namespace

std::int64_t supportedVectorTargets() { return (machineTargets() & HWY_TARGETS) | HWY_STATIC_TARGET; }

void useVectorTargets(std::int64_t targets) { hwy::GetChosenTarget().Update(targets); }

}  // namespace kelvane

// What Highway's headers ask of its library. That library is not linked because it measures a clock whenever a program
// that links it starts, which takes several milliseconds.
namespace hwy {

std::int64_t SupportedTargets() { return kelvane::supportedVectorTargets(); }

ChosenTarget& GetChosenTarget() {
  static ChosenTarget target;
  return target;
}

// Called where a debug build finds that an operation is given what it must not be given.
void Abort(const char* file, int line, const char* format, ...) {
  std::fprintf(stderr, "%s:%d: ", file, line);
  va_list arguments;
  va_start(arguments, format);
  std::vfprintf(stderr, format, arguments);
  va_end(arguments);
  std::abort();
}

}  // namespace hwy
