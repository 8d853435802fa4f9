/// @file
/// Edge-preserving smoothing and box statistics over a ring of integral rows. May be included from C.
///
///     r = radius (1 or more),  d = 2r + 1 (side of the box),  W = width + d (length of an integral row)
///
/// A source row counts as an extended row of W columns: r + 1 times its first pixel, the row, r times its last pixel.
/// An integral row holds, for each of the W columns, the sum of all rows added so far over columns 0 .. c: 32 bits for
/// samples, 64 bits for squares, both wrapping. With T the integral row written d rows before B, the box around pixel x
/// has the sum
///
///     S = (B[x + d] + T[x]) - (B[x] + T[x + d])
///
/// and the sum of squares Q is formed the same way (its low 32 bits). A smoothed pixel follows from S, Q and the sample
/// by the formula of band_smoothing.h. The cost of a pixel does not depend on the radius.
///
/// width must be at least 8: with less, the drivers do nothing and the line functions must not be called. No argument
/// is checked otherwise. Outputs must not overlap the source. The drivers allocate their ring and write nothing when
/// there is no memory. All functions are reentrant.
#ifndef VLVK_INTEGRAL_MEAN_H
#define VLVK_INTEGRAL_MEAN_H

#include <stdint.h>

#include <vlvk/export.h>

#if defined(__ARM_NEON)
#include <arm_neon.h>
typedef float32x4_t VKFloat4;
#else
/// Four floats in a vector register, passed by value.
typedef float VKFloat4 __attribute__((vector_size(16)));
#endif

#ifdef __cplusplus
extern "C" {
#endif

/// Smooths a whole plane; its edges are repeated.
///
/// @param source       first row of the plane; rows `stride` bytes apart
/// @param destination  smoothed rows, `stride` bytes apart; written
/// @param width        columns, 8 or more
/// @param height       rows, radius + 1 or more
/// @param stride       bytes between rows of source and destination
/// @param radius       r, 1 or more
/// @param level        strength, as for MeanTop_Window_Neon
VLVK_API void Integral_Mean_Neon(const unsigned char* source, unsigned char* destination, int width, int height,
                                 int stride, int radius, int level);

///@{
/// The same for a band of a plane; bands together give the whole plane's result.
///
///     top     any number of rows; reads rows 0 .. rows + r - 1
///     middle  any number of rows; reads rows -(r + 1) .. rows + r - 1
///     bottom  at least r + 1 rows; reads rows -(r + 1) .. rows - 1
///
/// @param source       first row of the band; rows `stride` bytes apart
/// @param destination  smoothed rows, `stride` bytes apart; written
/// @param width        columns, 8 or more
/// @param rows         rows of the band
/// @param stride       bytes between rows of source and destination
/// @param radius       r, 1 or more
/// @param level        strength, as for MeanTop_Window_Neon
VLVK_API void Integral_MeanTop_Neon(const unsigned char* source, unsigned char* destination, int width, int rows,
                                    int stride, int radius, int level);
VLVK_API void Integral_MeanMid_Neon(const unsigned char* source, unsigned char* destination, int width, int rows,
                                    int stride, int radius, int level);
VLVK_API void Integral_MeanBottom_Neon(const unsigned char* source, unsigned char* destination, int width, int rows,
                                       int stride, int radius, int level);
///@}

/// Writes the box sums of a whole plane instead of smoothing it.
///
/// @param source   first row of the plane
/// @param sums     `width` elements of each row are written
/// @param squares  as `sums`, modulo 2^32
/// @param width    columns, 8 or more
/// @param height   rows, radius + 1 or more
/// @param stride   bytes between rows of `source`, elements between rows of the outputs
/// @param radius   r, 1 or more
VLVK_API void Integral_Mean_Neon2(const unsigned char* source, uint32_t* sums, uint32_t* squares, int width, int height,
                                  int stride, int radius);

/// Adds one extended row to the column accumulators and writes the integral row.
///
/// @param columnSums       W elements, zero before the first row; updated
/// @param columnSquares    as `columnSums`
/// @param source           `width` samples
/// @param integral         W elements, written
/// @param integralSquares  as `integral`
/// @param width            columns of the source row
/// @param radius           r, 1 or more
VLVK_API void Integral_Mean_Integral_Line_Neon(uint32_t* columnSums, uint64_t* columnSquares,
                                               const unsigned char* source, uint32_t* integral,
                                               uint64_t* integralSquares, int width, int radius);

/// The same with the squares of the samples given.
///
/// @param columnSums       W elements, zero before the first row; updated
/// @param columnSquares    as `columnSums`
/// @param source           `width` samples
/// @param squares          the squares of the samples, `width` elements; read
/// @param integral         W elements, written
/// @param integralSquares  as `integral`
/// @param width            columns of the source row
/// @param radius           r, 1 or more
VLVK_API void Integral_Mean_Integral_Line_with_V_Neon(uint32_t* columnSums, uint64_t* columnSquares,
                                                      const unsigned char* source, const unsigned short* squares,
                                                      uint32_t* integral, uint64_t* integralSquares, int width,
                                                      int radius);

/// Smooths one row from the integral rows above and at the end of its box.
///
/// @param top            integral row above the box, W elements; read
/// @param topSquares     its squares, as long
/// @param bottom         integral row at the end of the box, W elements; read
/// @param bottomSquares  its squares, as long
/// @param source         row to smooth, `width` samples
/// @param destination    smoothed row; written
/// @param width          columns, 8 or more
/// @param radius         r, 1 or more
/// @param level          strength, as for MeanTop_Window_Neon
VLVK_API void Integral_Mean_Line_Neon(const uint32_t* top, const uint64_t* topSquares, const uint32_t* bottom,
                                      const uint64_t* bottomSquares, const unsigned char* source,
                                      unsigned char* destination, int width, int radius, int level);

/// Writes one row of box sums.
///
/// @param top            integral row above the box, W elements; read
/// @param topSquares     its squares, as long
/// @param bottom         integral row at the end of the box, W elements; read
/// @param bottomSquares  its squares, as long
/// @param source         not read
/// @param sums           `width` elements; written
/// @param squares        as `sums`, modulo 2^32
/// @param width          columns, 8 or more
/// @param radius         r, 1 or more
VLVK_API void Integral_Mean_Line_Neon2(const uint32_t* top, const uint64_t* topSquares, const uint32_t* bottom,
                                       const uint64_t* bottomSquares, const unsigned char* source, uint32_t* sums,
                                       uint32_t* squares, int width, int radius);

/// Smooths eight pixels; the integral rows are positioned at the first of them. Constants that are denormal numbers, or
/// make such in the formula, count as 0 on ARMv7.
///
/// @param top            integral row above the box, d + 8 elements; read
/// @param topSquares     its squares, as long
/// @param bottom         integral row at the end of the box, d + 8 elements; read
/// @param bottomSquares  its squares, as long
/// @param side           d
/// @param inverse        1 / d^2 as a float's bit pattern
/// @param source         8 samples
/// @param destination    8 smoothed samples; written
/// @param radius         not read
/// @param strength       not read
/// @param strengths      weight of the mean; pixel i takes lane i % 4
/// @param biases         added to the variance; pixel i takes lane i % 4
VLVK_API void Integral_Mean_Block_Neon(const uint32_t* top, const uint64_t* topSquares, const uint32_t* bottom,
                                       const uint64_t* bottomSquares, int side, unsigned int inverse,
                                       const unsigned char* source, unsigned char* destination, int radius,
                                       int strength, VKFloat4 strengths, VKFloat4 biases);

/// Writes the box sums of eight pixels; the integral rows are positioned at the first of them.
///
/// @param top            integral row above the box, d + 8 elements; read
/// @param topSquares     its squares, as long
/// @param bottom         integral row at the end of the box, d + 8 elements; read
/// @param bottomSquares  its squares, as long
/// @param side           d
/// @param source         not read
/// @param sums           8 elements; written
/// @param squares        as `sums`, modulo 2^32
VLVK_API void Integral_Mean_Block_Neon2(const uint32_t* top, const uint64_t* topSquares, const uint32_t* bottom,
                                        const uint64_t* bottomSquares, int side, const unsigned char* source,
                                        uint32_t* sums, uint32_t* squares);

#ifdef __cplusplus
}
#endif

#endif
