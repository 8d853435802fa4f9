/// @file
/// Further smoothers and box statistics on running column sums. May be included from C.
///
///     R  = requested radius rounded up to a multiple of 8,  h = R - 1,  box = (2h + 1) x (2h + 1)
///
/// Only whole groups of 8 columns are processed: the last width & 7 columns of every output are left alone, and columns
/// outside 0 .. 8 * (width >> 3) - 1 count as the nearest one inside. The statistics are centred on their column; the
/// smoothers take a box one column to the right, as those of band_smoothing.h.
///
/// No argument is checked; radius must be at least 1. Outputs must not overlap the source. Functions that allocate
/// write nothing when there is no memory. All are reentrant.
#ifndef VLVK_LINE_MEAN_H
#define VLVK_LINE_MEAN_H

#include <vlvk/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Smooths a whole plane; rows outside it count as its first or last row. Allocates its column sums.
///
/// @param source       `height` rows, `stride` bytes apart
/// @param destination  rows as far apart; written
/// @param width        columns; whole groups of 8 count
/// @param height       rows
/// @param stride       bytes between rows of source and destination
/// @param radius       requested radius, 1 or more
/// @param level        strength, as for MeanTop_Window_Neon
VLVK_API void Mean_Window_Neon(const unsigned char* source, unsigned char* destination, int width, int height,
                               int stride, int radius, int level);

///@{
/// Writes the sum and the sum of squares of every pixel's box. Allocates its column sums.
///
/// Read are rows from -h (middle, bottom) or 0 (top) up to rows + h - 1 (top, middle) or rows - 1 (bottom); the edge
/// rows are repeated where none are read.
///
/// @param source   first row of the band, rows `stride` bytes apart
/// @param sums     rows x width elements without padding; written
/// @param squares  as `sums`, modulo 2^32
/// @param width    columns; whole groups of 8 count
/// @param rows     rows of the band
/// @param stride   bytes between rows of `source`
/// @param radius   requested radius, 1 or more
VLVK_API void MeanTop_Window_V2_Neon(const unsigned char* source, unsigned int* sums, unsigned int* squares, int width,
                                     int rows, int stride, int radius);
VLVK_API void MeanMid_Window_V2_Neon(const unsigned char* source, unsigned int* sums, unsigned int* squares, int width,
                                     int rows, int stride, int radius);
VLVK_API void MeanBottom_Window_V2_Neon(const unsigned char* source, unsigned int* sums, unsigned int* squares,
                                        int width, int rows, int stride, int radius);
///@}

/// MeanMid_Window_V2_Neon with output rows `stride` elements apart.
///
/// @param source   first row of the band, rows `stride` bytes apart
/// @param sums     rows `stride` elements apart; written
/// @param squares  as `sums`, modulo 2^32
/// @param width    columns; whole groups of 8 count
/// @param rows     rows of the band
/// @param stride   bytes between rows of `source`, elements between rows of the outputs
/// @param radius   requested radius, 1 or more
/// @param level    ignored
VLVK_API void MeanMid_Window_Neon2(const unsigned char* source, unsigned int* sums, unsigned int* squares, int width,
                                   int rows, int stride, int radius, int level);

/// Scans column sums into box sums: for column j the columns j - h .. j + h.
///
/// @param columnSums     one 16-bit sum per column; read
/// @param columnSquares  one 32-bit sum of squared samples per column; read
/// @param width          columns; whole groups of 8 count
/// @param sums           one element per column of the whole groups, modulo 2^32; written
/// @param squares        as `sums`
/// @param halfSize       h, 0 or more
VLVK_API void MeanLine_V2_Neon(const unsigned short* columnSums, const unsigned int* columnSquares, int width,
                               unsigned int* sums, unsigned int* squares, int halfSize);

/// The same.
///
/// @param columnSums     one 16-bit sum per column; read
/// @param columnSquares  one 32-bit sum of squared samples per column; read
/// @param width          columns; whole groups of 8 count
/// @param source         not read
/// @param sums           one element per column of the whole groups, modulo 2^32; written
/// @param squares        as `sums`
/// @param halfSize       h, 0 or more
/// @param level          ignored
VLVK_API void MeanLine_Neon2(const unsigned short* columnSums, const unsigned int* columnSquares, int width,
                             const unsigned char* source, unsigned int* sums, unsigned int* squares, int halfSize,
                             int level);

/// @copydoc MeanLineEx_Neon
VLVK_API void MeanLine_V4_Neon(unsigned short* columnSums, unsigned int* columnSquares, const unsigned char* addRow,
                               const unsigned char* subRow, int width, const unsigned char* source,
                               unsigned char* destination, int halfSize, int level);

#ifdef __cplusplus
}
#endif

#endif
