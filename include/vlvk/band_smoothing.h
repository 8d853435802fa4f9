/// @file
/// Edge-preserving smoothing of luma bands: a local mean/variance filter over running box sums. May be included from C.
///
/// Every function writes, for each output pixel, a value between the sample and the mean of the box around it: flat
/// neighbourhoods move to the mean, busy ones keep the sample.
///
///     R  = requested radius rounded up to a multiple of 8,  h = R - 1,  box = (2h + 1) x (2h + 1)
///
///           columns 0 .. 8 * (width >> 3) - 1 are written         the last width & 7 columns are left alone
///         +----------------------------------------------------+-----+
///     row | x x x x x x x x | x x x x x x x x | x x x x x x x x | . . |  stride bytes to the next row
///         +----------------------------------------------------+-----+
///
/// The box of row y is centred on it (rows y - h .. y + h). The box of column x lies one column to the right (columns
/// x - h + 1 .. x + h + 1); columns outside 0 .. 8 * (width >> 3) - 1 count as the nearest one inside.
///
/// No argument is checked. Source and destination must not overlap. All functions are reentrant: they keep no state and
/// allocate nothing, so bands may run on different threads as long as their destinations and scratch differ.
#ifndef VLVK_BAND_SMOOTHING_H
#define VLVK_BAND_SMOOTHING_H

#include <vlvk/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Working memory of one band, one record for each band at work. Only the pointers that a kernel names are read: for
/// the kernels without saved rows a record may end after scratchB. The memory belongs to the caller and needs no
/// initial content.
typedef struct VKBandScratch {
  unsigned char* meanPlane;  ///< not used by the kernels
  unsigned char* scratchA;   ///< 16-bit column sums: 16 bytes for each whole group of 8 columns, aligned to 2
  unsigned char* scratchB;   ///< 32-bit column sums of squares: 32 bytes for each whole group, aligned to 4
  unsigned char* lineSums;   ///< not used by the kernels
  unsigned char* edgeRows;   ///< saved rows, read by the _V3 kernels only; `stride` bytes apart
} VKBandScratch;

/// Smooths the first band of a plane; rows above it count as its row 0.
///
/// @param source       first row of the band; rows 0 .. rows + R - 2 are read
/// @param destination  first output row; exactly `rows` rows are written
/// @param width        columns of the plane; with fewer than 8 nothing is read or written
/// @param rows         rows of the band
/// @param stride       bytes between rows of both planes
/// @param radius       requested radius, 1 or more
/// @param level        strength; 0 keeps the picture (up to the precision of the reciprocal estimate), 600 is strong
/// @param scratch      scratchA and scratchB are used
VLVK_API void MeanTop_Window_Neon(const unsigned char* source, unsigned char* destination, int width, int rows,
                                  int stride, int radius, int level, const VKBandScratch* scratch);

/// Smooths a band with neighbours on both sides: rows -R .. rows + R - 2 are read.
///
/// @param source       first row of the band
/// @param destination  first output row; exactly `rows` rows are written
/// @param width        columns of the plane; with fewer than 8 nothing is read or written
/// @param rows         rows of the band
/// @param stride       bytes between rows of both planes
/// @param radius       requested radius, 1 or more
/// @param level        strength, see MeanTop_Window_Neon
/// @param scratch      scratchA and scratchB are used
VLVK_API void MeanMid_Window_Neon(const unsigned char* source, unsigned char* destination, int width, int rows,
                                  int stride, int radius, int level, const VKBandScratch* scratch);

/// Smooths the last band of a plane; rows below it count as its last row. Rows -R .. rows - 1 are read. A band of at
/// most R rows takes row R - 1 for every row it adds, which must then be readable.
///
/// @param source       first row of the band
/// @param destination  first output row; exactly `rows` rows are written
/// @param width        columns of the plane; with fewer than 8 nothing is read or written
/// @param rows         rows of the band
/// @param stride       bytes between rows of both planes
/// @param radius       requested radius, 1 or more
/// @param level        strength, see MeanTop_Window_Neon
/// @param scratch      scratchA and scratchB are used
VLVK_API void MeanBottom_Window_Neon(const unsigned char* source, unsigned char* destination, int width, int rows,
                                     int stride, int radius, int level, const VKBandScratch* scratch);

///@{
/// The same three for a plane whose neighbouring bands are being overwritten: rows outside the band come from
/// `scratch->edgeRows`, copied before any band started. All three need rows >= 2R.
///
/// Saved rows, `stride` bytes apart:
///
///     top      0 .. R-1    the band's own last row, then the R - 1 rows below the band
///     middle   0 .. R-1    the R rows above the band
///              R .. 2R-1   the band's own last row, then the R - 1 rows below the band
///     bottom   0 .. R-1    the R rows above the band
///
/// @param source       first row of the band; no row outside the band is read
/// @param destination  first output row; exactly `rows` rows are written
/// @param width        columns of the plane; with fewer than 8 nothing is read or written
/// @param rows         rows of the band, 2R or more
/// @param stride       bytes between rows of both planes
/// @param radius       requested radius, 1 or more
/// @param level        strength, see MeanTop_Window_Neon
/// @param scratch      scratchA, scratchB and edgeRows are used
VLVK_API void MeanTop_Window_V3_Neon(const unsigned char* source, unsigned char* destination, int width, int rows,
                                     int stride, int radius, int level, const VKBandScratch* scratch);
VLVK_API void MeanMid_Window_V3_Neon(const unsigned char* source, unsigned char* destination, int width, int rows,
                                     int stride, int radius, int level, const VKBandScratch* scratch);
VLVK_API void MeanBottom_Window_V3_Neon(const unsigned char* source, unsigned char* destination, int width, int rows,
                                        int stride, int radius, int level, const VKBandScratch* scratch);
///@}

/// Slides the column sums down by one row and smooths one row with them.
///
/// @param columnSums     one 16-bit sum per column of the whole groups, wrapping modulo 2^16; updated
/// @param columnSquares  one 32-bit sum of squared samples per column, wrapping modulo 2^32; updated
/// @param addRow         luma row that enters the box
/// @param subRow         luma row that leaves it
/// @param width          columns of the row; the last width & 7 are ignored
/// @param source         luma row to smooth
/// @param destination    output row
/// @param halfSize       h of the box, 0 or more
/// @param level          strength, see MeanTop_Window_Neon
VLVK_API void MeanLineEx_Neon(unsigned short* columnSums, unsigned int* columnSquares, const unsigned char* addRow,
                              const unsigned char* subRow, int width, const unsigned char* source,
                              unsigned char* destination, int halfSize, int level);

/// Smooths one row with given column sums.
///
/// @param columnSums     one 16-bit sum per column of the whole groups; read
/// @param columnSquares  one 32-bit sum of squared samples per column; read
/// @param width          columns of the row; the last width & 7 are ignored
/// @param source         luma row to smooth
/// @param destination    output row
/// @param halfSize       h of the box, 0 or more
/// @param level          strength, see MeanTop_Window_Neon
VLVK_API void MeanLine_Neon(const unsigned short* columnSums, const unsigned int* columnSquares, int width,
                            const unsigned char* source, unsigned char* destination, int halfSize, int level);

#ifdef __cplusplus
}
#endif

#endif
