/// @file
/// Mixes smoothed and unsmoothed luma by how likely a pixel's colour is skin. May be included from C.
///
/// The weight w (0 .. 64) of a 2 x 2 luma block comes from its chroma pair (p, q):
///
///     w = (L(|p - centre[0]|) * L(|q - centre[1]|)) >> 6          L: skin weight table, 0 from distance 48 on
///     out = (unsmoothed * (64 - w) + smoothed * w) >> 6
///
/// Columns from width & ~7 up to width & ~1 are a scalar tail with two peculiarities of the result: distances
/// 32 .. 63 count as weights themselves and larger ones as 0, and only the even column of each pair is written. An odd
/// last column and an odd last row are not touched.
///
/// No argument is checked; both functions are reentrant and allocate nothing.
#ifndef VLVK_SKIN_BLEND_H
#define VLVK_SKIN_BLEND_H

#include <vlvk/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Blends into the smoothed plane.
///
/// @param unsmoothed    luma plane, rows `stride` bytes apart
/// @param stride        bytes between rows of both luma planes
/// @param smoothed      smoothed luma, overwritten with the blend
/// @param chroma        interleaved chroma pairs, one row for two luma rows; width & ~1 bytes of a row are read
/// @param chromaStride  bytes between chroma rows
/// @param width         luma columns
/// @param height        luma rows; height >> 1 row pairs are blended
/// @param reserved      not read
/// @param table         48 bytes as calcSkinProbilityInterleavingTable8x8x4_8x8x2 writes them, none above 64
/// @param centre        two values: centre of the first and second byte of a pair, taken modulo 256
VLVK_API void MeanBlendImageWithSkin(const unsigned char* unsmoothed, int stride, unsigned char* smoothed,
                                     const unsigned char* chroma, int chromaStride, int width, int height, int reserved,
                                     const unsigned char* table, const int* centre);

/// Blends into the unsmoothed plane (the frame itself).
///
/// @param unsmoothed    luma plane, rows `stride` bytes apart, overwritten with the blend
/// @param stride        bytes between rows of both luma planes
/// @param smoothed      smoothed luma; read
/// @param chroma        interleaved chroma pairs, one row for two luma rows; width & ~1 bytes of a row are read
/// @param chromaStride  bytes between chroma rows
/// @param width         luma columns
/// @param height        luma rows; height >> 1 row pairs are blended
/// @param table         48 bytes as calcSkinProbilityInterleavingTable8x8x4_8x8x2 writes them, none above 64
/// @param centre        two values: centre of the first and second byte of a pair, taken modulo 256
VLVK_API void MeanBlendImageWithSkin_V3(unsigned char* unsmoothed, int stride, const unsigned char* smoothed,
                                        const unsigned char* chroma, int chromaStride, int width, int height,
                                        const unsigned char* table, const int* centre);

#ifdef __cplusplus
}
#endif

#endif
