/// @file
/// The smoother in textbook form: exact boxes, exact division, every column. May be included from C.
///
/// Two stages: box sums (`Mean` or its band forms), then `MeanBlendImage`. The box has (2r + 1) x (2r + 1) samples
/// centred on the pixel; samples outside the picture count as the nearest one inside. The radius is used as it is, 0 or
/// more.
///
/// No argument is checked. The box sum functions allocate their column sums, release them again, and write nothing when
/// there is no memory. All functions are reentrant.
#ifndef VLVK_REFERENCE_FILTER_H
#define VLVK_REFERENCE_FILTER_H

#include <vlvk/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Writes the sum and the sum of squares of every pixel's box.
///
/// @param source   samples
/// @param width    columns; all of them count
/// @param height   rows
/// @param stride   bytes between rows of `source`, elements between rows of the outputs
/// @param sums     `width` elements of each row are written
/// @param squares  as `sums`, modulo 2^32
/// @param radius   r, 0 or more
VLVK_API void Mean(const unsigned char* source, int width, int height, int stride, unsigned int* sums,
                   unsigned int* squares, int radius);

///@{
/// The same for a band of a picture. Read are rows from -r (middle, bottom) or 0 (top) up to rows + r - 1 (top, middle)
/// or rows - 1 (bottom).
///
/// @param source   first row of the band
/// @param width    columns; all of them count
/// @param rows     rows of the band
/// @param stride   bytes between rows of `source`, elements between rows of the outputs
/// @param sums     `width` elements of each row are written
/// @param squares  as `sums`, modulo 2^32
/// @param radius   r, 0 or more
VLVK_API void MeanTop(const unsigned char* source, int width, int rows, int stride, unsigned int* sums,
                      unsigned int* squares, int radius);
VLVK_API void MeanMid(const unsigned char* source, int width, int rows, int stride, unsigned int* sums,
                      unsigned int* squares, int radius);
VLVK_API void MeanBottom(const unsigned char* source, int width, int rows, int stride, unsigned int* sums,
                         unsigned int* squares, int radius);
///@}

/// Scans 32-bit column sums into box sums: for column j the columns j - r .. j + r. All arrays have `width` elements.
///
/// @param columnSums     sums of the samples of each column; read
/// @param columnSquares  sums of their squares; read
/// @param width          columns
/// @param sums           box sums, modulo 2^32; written
/// @param squares        as `sums`
/// @param radius         r, 0 or more
VLVK_API void MeanLine(const unsigned int* columnSums, const unsigned int* columnSquares, int width, unsigned int* sums,
                       unsigned int* squares, int radius);

/// Smooths a picture in place with its box sums:
///
///     m = S / N   v = max(Q / N - m * m, 0)   out = (x * v + m * k) / (v + k), rounded half up      N = (2r + 1)^2
///
/// in single precision. A strength of 0 divides 0 by 0 in flat areas, which gives 0.
///
/// @param image     `height` rows, `stride` bytes apart; overwritten
/// @param sums      rows `stride` elements apart, as Mean writes them
/// @param squares   as `sums`
/// @param width     columns
/// @param height    rows
/// @param stride    bytes between rows of `image`, elements between rows of `sums` and `squares`
/// @param strength  k, above 0
/// @param radius    r of the box that the sums were taken over
VLVK_API void MeanBlendImage(unsigned char* image, const unsigned int* sums, const unsigned int* squares, int width,
                             int height, int stride, int strength, int radius);

#ifdef __cplusplus
}
#endif

#endif
