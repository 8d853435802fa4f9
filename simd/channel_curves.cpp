/// See channel_curves.h.
#include "simd/channel_curves.h"

#include <algorithm>

namespace vlvk {

namespace {

/// Sets the offset and the residues of 16 entries from `start` on.
///
/// @return whether the residues have 4 bits at most
bool splitSixteenth(PreparedCurve& prepared, int start, std::uint8_t* residues) {
  int lowest = 255;
  int highest = -255;
  for (int i = start; i < start + 16; ++i) {
    lowest = std::min(lowest, prepared.entry[i] - i);
    highest = std::max(highest, prepared.entry[i] - i);
  }
  prepared.offset[start / 16] = static_cast<std::uint8_t>(lowest);
  for (int i = start; i < start + 16; ++i)
    residues[i] = static_cast<std::uint8_t>((prepared.entry[i] - i - lowest) & 15);
  return highest - lowest < 16;
}

bool prepareCurve(PreparedCurve& prepared, const std::uint8_t* curve) {
  std::copy_n(curve, 256, prepared.entry);
  std::uint8_t residues[256];
  bool inSteps = true;
  for (int start = 0; start < 256; start += 16)
    inSteps = splitSixteenth(prepared, start, residues) && inSteps;
  const auto both = [&](int i) { return residues[i] | residues[i + 128] << 4; };
  for (int i = 0; i < 128; ++i)
    prepared.step[i] = static_cast<std::uint8_t>(i % 64 < 16 ? both(i) : both(i) ^ both(i - 16));
  return inSteps;
}

}  // namespace

ChannelCurves prepareCurves(const std::uint8_t* first, const std::uint8_t* second, const std::uint8_t* third) {
  ChannelCurves curves;
  const bool outerInSteps = prepareCurve(curves.channel[0], first);
  const bool middleInSteps = prepareCurve(curves.channel[1], second);
  prepareCurve(curves.channel[2], third);
  curves.inSteps = outerInSteps && middleInSteps && std::equal(first, first + 256, third);
  return curves;
}

}  // namespace vlvk
