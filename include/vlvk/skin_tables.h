/// @file
/// Skin likelihood by chroma distance, as integer weights (64 = certainly skin). May be included from C.
///
/// The curve F(d): 64 on a plateau of n entries, then a Gaussian fall-off,
///
///     s = min(sqrt(b), 12)      n = min(round(s * a), 255)      F(d) = trunc(64 * exp(-(d - n)^2 / (4b))) for d >= n
///
/// with `a` the plateau factor and `b` the spread (a variance in squared chroma units), neither negative. With b = 0
/// every entry past the plateau is 0. All functions are reentrant, check nothing and allocate nothing.
#ifndef VLVK_SKIN_TABLES_H
#define VLVK_SKIN_TABLES_H

#include <vlvk/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Writes F(0 .. 47) into 48 bytes, ready for table-lookup instructions.
///
/// Entry i < 32 stands at byte 4 * (i % 8) + i / 8, entry i >= 32 at byte 32 + 2 * (i % 8) + (i / 8) % 2. With a
/// plateau longer than 32, the entries 32 .. n - 1 are not written: preset them.
///
/// @param table  48 bytes; written
/// @param a      plateau factor
/// @param b      spread
VLVK_API void calcSkinProbilityInterleavingTable8x8x4_8x8x2(unsigned char* table, float a, float b);

/// Writes the curve at distances 0, 8, 16, ... into 32 bytes; entry i stands at byte 4 * (i % 8) + i / 8. The plateau
/// has n / 8 entries, and the fall-off starts at the first entry past it.
///
/// @param table  32 bytes; written
/// @param a      plateau factor
/// @param b      spread
VLVK_API void calcSkinProbilityInterleavingTable8x8x4(unsigned char* table, float a, float b);

/// Writes the curve at distances 0, 4, 8, ... into 64 bytes: two blocks of 32 entries, each laid out as in the 32-byte
/// table. The plateau has n / 4 entries.
///
/// @param table  64 bytes; written
/// @param a      plateau factor
/// @param b      spread
VLVK_API void calcSkinProbilityInterleavingTable8x8x4x2(unsigned char* table, float a, float b);

/// Writes F into 512 bytes for a signed difference t at index 256 + t: F(t) for t >= 0 and F(-t - 1) for t < 0. The
/// table is symmetric about 255.5.
///
/// @param table  512 bytes; written
/// @param a      plateau factor
/// @param b      spread
VLVK_API void calcSkinProbility256(unsigned char* table, float a, float b);

/// Fills a 256 x 256 table of joint weights on a scale of 0 .. 128: row index compared with centre 155, column index
/// with centre 110.
///
/// @param table  65,536 bytes, rows of 256; written
VLVK_API void MeanBuildSkinLookup(unsigned char* table);

/// Looks up the weight of every 2 x 2 block of a frame.
///
/// @param frame    luma plane of width x height bytes (not read), then (height + 1) >> 1 chroma rows of
///                 (width + 1) & ~1 bytes
/// @param table    256 x 256 weights: first byte of a chroma pair selects the row, second the column
/// @param weights  width x height bytes, all written; blocks are cut at an odd right and bottom edge
/// @param width    columns of the luma plane, 0 or more
/// @param height   rows of the luma plane, 0 or more
VLVK_API void MeanGetSkinWeight(const unsigned char* frame, const unsigned char* table, unsigned char* weights,
                                int width, int height);

#ifdef __cplusplus
}
#endif

#endif
