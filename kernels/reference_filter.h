/// The smoother in textbook form: exact boxes, exact division, every column. May be included from C.
///
/// Two stages: box sums (`Mean` or its band forms), then `MeanBlendImage`. The box has (2r + 1) x (2r + 1) samples
/// centred on the pixel; samples outside the picture count as the nearest one inside. The radius is used as it is, 0 or
/// more.
///
/// No argument is checked. The box sum functions allocate their column sums, release them again, and write nothing when
/// there is no memory. All functions are reentrant.
#ifndef VLVK_KERNELS_REFERENCE_FILTER_H
#define VLVK_KERNELS_REFERENCE_FILTER_H

#include "base/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Writes the sum and the sum of squares of every pixel's box.
///
/// @param source   `height` rows, `stride` bytes apart
/// @param sums     rows `stride` elements apart; `width` elements of each are written
/// @param squares  likewise, modulo 2^32
VLVK_API void Mean(const unsigned char* source, int width, int height, int stride, unsigned int* sums,
                   unsigned int* squares, int radius);

/// The same for a band of a picture. `source` is the band's first row; read are rows from -r (middle, bottom) or 0
/// (top) up to rows + r - 1 (top, middle) or rows - 1 (bottom).
VLVK_API void MeanTop(const unsigned char* source, int width, int rows, int stride, unsigned int* sums,
                      unsigned int* squares, int radius);
VLVK_API void MeanMid(const unsigned char* source, int width, int rows, int stride, unsigned int* sums,
                      unsigned int* squares, int radius);
VLVK_API void MeanBottom(const unsigned char* source, int width, int rows, int stride, unsigned int* sums,
                         unsigned int* squares, int radius);

/// Scans 32-bit column sums into box sums: for column j the columns j - r .. j + r. `width` elements each.
VLVK_API void MeanLine(const unsigned int* columnSums, const unsigned int* columnSquares, int width, unsigned int* sums,
                       unsigned int* squares, int radius);

/// Smooths a picture in place with its box sums:
///
///     m = S / N   v = max(Q / N - m * m, 0)   out = (x * v + m * k) / (v + k), rounded half up      N = (2r + 1)^2
///
/// in single precision. A strength of 0 divides 0 by 0 in flat areas, which gives 0.
///
/// @param image    `height` rows, `stride` bytes apart
/// @param sums     rows `stride` elements apart, as Mean writes them
/// @param squares  likewise
/// @param strength k, above 0
VLVK_API void MeanBlendImage(unsigned char* image, const unsigned int* sums, const unsigned int* squares, int width,
                             int height, int stride, int strength, int radius);

#ifdef __cplusplus
}
#endif

#endif
