/// Tone curves by byte shuffles, with AVX2.
#ifndef VLVK_SIMD_AVX2_CURVES_H
#define VLVK_SIMD_AVX2_CURVES_H

#include "simd/avx2.h"
#include "simd/curve_loads.h"

namespace vlvk::VLVK_TARGET {

/// The entries of a curve that is in steps. Each half of its steps is looked up with the index inside the half; the
/// index's upper bits choose between the halves, then between the residues.
VLVK_INLINE __m256i lookUpCurve(const PreparedCurve& curve, __m256i index) {
  const __m256i lowBits = _mm256_set1_epi8(15);
  const auto steps = [&](int i) { return _mm256_broadcastsi128_si256(load128(curve.step + i)); };
  __m256i inHalf = _mm256_and_si256(index, _mm256_set1_epi8(63));
  __m256i lower = _mm256_shuffle_epi8(steps(0), inHalf);
  __m256i upper = _mm256_shuffle_epi8(steps(64), inHalf);
#pragma GCC unroll 3
  for (int i = 16; i < 64; i += 16) {
    inHalf = _mm256_subs_epi8(inHalf, _mm256_set1_epi8(16));
    lower = _mm256_xor_si256(lower, _mm256_shuffle_epi8(steps(i), inHalf));
    upper = _mm256_xor_si256(upper, _mm256_shuffle_epi8(steps(64 + i), inHalf));
  }
  const __m256i both = _mm256_blendv_epi8(lower, upper, _mm256_add_epi8(index, index));
  const __m256i residue = _mm256_and_si256(_mm256_blendv_epi8(both, _mm256_srli_epi16(both, 4), index), lowBits);
  const __m256i offset = _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(load128(curve.offset)),
                                             _mm256_and_si256(_mm256_srli_epi16(index, 4), lowBits));
  return _mm256_add_epi8(_mm256_add_epi8(index, offset), residue);
}

/// Four vectors of eight pixels.
struct Pixels32 {
  __m256i eight[4];
};
/// A byte of each pixel: in either half, four of each vector in turn.
template <int kChannel>
VLVK_INLINE __m256i channelOf(const Pixels32& v) {
  const __m256i everyFourth = _mm256_set1_epi32(0x0C080400 + 0x01010101 * kChannel);
  const auto bytes = [&](int i) { return _mm256_shuffle_epi8(v.eight[i], everyFourth); };
  return _mm256_blend_epi32(_mm256_blend_epi32(bytes(0), bytes(1), 0x22), _mm256_blend_epi32(bytes(2), bytes(3), 0x88),
                            0xCC);
}
/// Writes 16 pixels: what is found for the first and third channel of the source, and the two others as they are.
VLVK_INLINE void storeOuterCurved(std::uint8_t* to, const std::uint8_t* from, const PreparedCurve& curve,
                                  __m256i others) {
  const __m256i evenBytes = _mm256_set1_epi16(0xFF);
  const __m256i found = lookUpCurve(curve, _mm256_packus_epi16(_mm256_and_si256(load256(from), evenBytes),
                                                               _mm256_and_si256(load256(from + 32), evenBytes)));
  store256(to, _mm256_unpacklo_epi8(found, others));
  store256(to + 32, _mm256_unpackhi_epi8(found, others));
}

inline constexpr int kCurvedPixels = 32;
/// One lookup for 32 middle channels, two for the outer ones, which share a curve: they need not be taken apart.
template <bool kSolid>
VLVK_INLINE void storeCurved(std::uint8_t* to, const std::uint8_t* from, const ChannelCurves& curves) {
  if (!curves.inSteps) {
    for (int i = 0; i < 4 * kCurvedPixels; i += 8)
      storeTwoCurved<kSolid>(to + i, from + i, curves);
    return;
  }
  const Pixels32 pixels{{load256(from), load256(from + 32), load256(from + 64), load256(from + 96)}};
  const __m256i middle = lookUpCurve(curves.channel[1], channelOf<1>(pixels));
  const __m256i alpha = kSolid ? _mm256_set1_epi8(-1) : channelOf<3>(pixels);
  storeOuterCurved(to, from, curves.channel[0], _mm256_unpacklo_epi8(middle, alpha));
  storeOuterCurved(to + 64, from + 64, curves.channel[0], _mm256_unpackhi_epi8(middle, alpha));
}

}  // namespace vlvk::VLVK_TARGET

#endif
