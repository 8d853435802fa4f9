/// The vocabulary's float operations of one target as plain functions on 8 lanes in memory.
#ifndef VLVK_TESTS_VOCABULARY_FLOAT_OPS_H
#define VLVK_TESTS_VOCABULARY_FLOAT_OPS_H

#include <cstdint>

struct FloatOps {
  const char* name;
  void (*reciprocalEstimate)(const float* in, float* out);
  void (*reciprocalEstimateOfModest)(const float* in, float* out);
  void (*toFloat)(const std::uint32_t* in, float* out);
  void (*toFloatBelow2To31)(const std::uint32_t* in, float* out);
  void (*truncToLowBytes)(const float* in, std::uint8_t* out);
};

#endif
