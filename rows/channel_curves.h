/// Tone curves for the channels of pixels.
#ifndef VLVK_ROWS_CHANNEL_CURVES_H
#define VLVK_ROWS_CHANNEL_CURVES_H

#include <cstdint>

namespace vlvk {

/// One curve of 256 entries for each channel, in the order of the pixels.
struct ChannelCurves {
  const std::uint8_t* first;
  const std::uint8_t* second;
  const std::uint8_t* third;
};

}  // namespace vlvk

#endif
