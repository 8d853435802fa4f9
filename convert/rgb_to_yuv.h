/// 32-bit pixels to semi-planar YUV 4:2:0, BT.601 limited range in 8 fractional bits. May be included from C.
///
///     Y = ((  66 R + 129 G +  25 B + r) >> 8) + 16
///     U = (( -38 R -  74 G + 112 B + r) >> 8) + 128        r = 128 in columns below width & ~15, 0 behind them
///     V = (( 112 R -  94 G -  18 B + r) >> 8) + 128
///
/// The chroma pair of a 2 x 2 block is that of its upper-left pixel alone; nothing is averaged. Alpha is ignored. NV21
/// stores V then U, NV12 U then V.
#ifndef VLVK_CONVERT_RGB_TO_YUV_H
#define VLVK_CONVERT_RGB_TO_YUV_H

#include "base/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Converts height & ~1 rows of width & ~1 columns; everything else in the planes is left as it was.
///
/// No argument is checked; the functions are reentrant and allocate nothing. Source and planes must not overlap.
///
/// @param src       4 bytes per pixel, rows `srcStride` bytes apart
/// @param yPlane    luma, rows `yStride` bytes apart
/// @param uvPlane   chroma pairs, one row for two luma rows, rows `uvStride` bytes apart
/// @param width     columns, 0 or more
/// @param height    rows; fewer than 2 convert nothing
VLVK_API void VKRGBAToNV21_NeonCall(const unsigned char* src, int srcStride, unsigned char* yPlane, int yStride,
                                    unsigned char* uvPlane, int uvStride, int width, int height);
VLVK_API void VKBGRAToNV21_NeonCall(const unsigned char* src, int srcStride, unsigned char* yPlane, int yStride,
                                    unsigned char* uvPlane, int uvStride, int width, int height);
VLVK_API void VKBGRAToNV12_NeonCall(const unsigned char* src, int srcStride, unsigned char* yPlane, int yStride,
                                    unsigned char* uvPlane, int uvStride, int width, int height);

#ifdef __cplusplus
}
#endif

#endif
