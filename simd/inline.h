/// Inlining of vocabulary operations: a call would pass vectors through memory.
#ifndef VLVK_SIMD_INLINE_H
#define VLVK_SIMD_INLINE_H

#define VLVK_INLINE inline __attribute__((always_inline))

#endif
