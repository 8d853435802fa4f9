/// Weights of a pixel's channels, a compile-time argument of vocabulary operations.
#ifndef VLVK_SIMD_CHANNEL_WEIGHTS_H
#define VLVK_SIMD_CHANNEL_WEIGHTS_H

namespace vlvk {

/// (c0 * first + c1 * second + c2 * third channel + bias) >> 8; the fourth channel does not count.
struct ChannelWeights {
  int c0;
  int c1;
  int c2;
  int bias;
};

}  // namespace vlvk

#endif
