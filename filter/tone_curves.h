/// The whitening curves.
#ifndef VLVK_FILTER_TONE_CURVES_H
#define VLVK_FILTER_TONE_CURVES_H

namespace vlvk {

inline constexpr int kToneCurveSize = 256;

/// Fills the three 256-entry curves: 0 and 2 for red and blue (equal), 1 for green, which is also shaded slightly.
///
/// @param whitenIntensity  percent of full whitening; any value, products wrap modulo 2^32
void buildToneCurves(int whitenIntensity, unsigned char* curve0, unsigned char* curve1, unsigned char* curve2);

}  // namespace vlvk

#endif
