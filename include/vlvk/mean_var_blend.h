/// @file
/// Smoothing from ready box statistics: the second pass after line_mean.h or Integral_Mean_Neon2. May be included from
/// C.
#ifndef VLVK_MEAN_VAR_BLEND_H
#define VLVK_MEAN_VAR_BLEND_H

#include <vlvk/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Turns box sums, box sums of squares and samples into smoothed samples.
///
/// Whole groups of 8 columns take the formula of band_smoothing.h with the reciprocal estimate and truncation, the
/// variance formed as (mean square + bias) - mean^2. Beware: in the first four columns of each group the two arrays
/// change roles, so those stay almost as they were. The last width & 7 columns form (mean square - mean^2) + bias,
/// divide exactly and round half up.
///
/// No argument is checked. Reentrant, allocates nothing.
///
/// @param destination  `rows` rows, `stride` bytes apart; written
/// @param source       rows as far apart; not overlapping; read
/// @param sums         rows x width elements without padding; read
/// @param squares      as `sums`
/// @param width        columns; all of them are written
/// @param rows         0 or less: nothing is done
/// @param stride       bytes between rows of source and destination
/// @param radius       half-size of the box that the sums were taken over
/// @param level        strength, as for MeanTop_Window_Neon
VLVK_API void Mean_var_Blend(unsigned char* destination, const unsigned char* source, const unsigned int* sums,
                             const unsigned int* squares, int width, int rows, int stride, int radius, int level);

#ifdef __cplusplus
}
#endif

#endif
