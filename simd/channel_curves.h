/// Tone curves for the channels of pixels, prepared for every target.
#ifndef VLVK_SIMD_CHANNEL_CURVES_H
#define VLVK_SIMD_CHANNEL_CURVES_H

#include <cstddef>
#include <cstdint>

namespace vlvk {

/// One curve of 256 entries, in the forms that the targets look it up in.
struct PreparedCurve {
  std::uint8_t entry[256];
  /// Half the entries' worth of shuffles: entry i is i + offset[i / 16] + a residue of 4 bits, modulo 256. Byte i here
  /// holds the residues of i and, in the upper bits, of i + 128, as XOR with the byte 16 before, starting anew at 64:
  /// inside a quarter of the curve, the XOR of steps l, l + 16 ... l + 16 k has the residues of l + 16 k. A byte
  /// shuffle that gives 0 for a negative index thus picks them without comparing: the index only has to lose 16 from
  /// shuffle to shuffle.
  std::uint8_t step[128];
  std::uint8_t offset[16];
};

/// One curve for each of the first three channels, in the order of the pixels. Aligned as malloc aligns, so that few
/// loads cross a cache line.
struct alignas(alignof(std::max_align_t)) ChannelCurves {
  PreparedCurve channel[3];
  /// Whether steps and offsets hold the curves, and the first serves the third channel too. Whitening's curves are such
  /// from 0 to 100 percent; others have to be looked up by entry.
  bool inSteps;
};

/// @param first  256 entries, read, as of `second` and `third`; any of them may be the same
ChannelCurves prepareCurves(const std::uint8_t* first, const std::uint8_t* second, const std::uint8_t* third);

}  // namespace vlvk

#endif
