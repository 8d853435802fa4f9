/// @file
/// 32-bit pixels to semi-planar YUV 4:2:0, BT.601 limited range in 8 fractional bits. May be included from C.
///
///     Y = ((  66 R + 129 G +  25 B + r) >> 8) + 16
///     U = (( -38 R -  74 G + 112 B + r) >> 8) + 128        r = 128 in columns below width & ~15, 0 past them
///     V = (( 112 R -  94 G -  18 B + r) >> 8) + 128
///
/// The chroma pair of a 2 x 2 block is that of its upper-left pixel alone; nothing is averaged. Alpha is ignored. NV21
/// stores V then U, NV12 U then V.
#ifndef VLVK_RGB_TO_YUV_H
#define VLVK_RGB_TO_YUV_H

#include <vlvk/export.h>

#ifdef __cplusplus
extern "C" {
#endif

///@{
/// Converts height & ~1 rows of width & ~1 columns; everything else in the planes is left as it was.
///
/// No argument is checked; the functions are reentrant and allocate nothing. All memory is the caller's. Source and
/// planes must not overlap.
///
/// @param src        pixels of 4 bytes, in the byte order that the name says
/// @param srcStride  bytes from a row of pixels to the next
/// @param yPlane     luma, one byte for each pixel; written
/// @param yStride    bytes from a luma row to the next
/// @param uvPlane    chroma pairs, one row for two luma rows; written
/// @param uvStride   bytes from a chroma row to the next
/// @param width      columns, 0 or more
/// @param height     rows; fewer than 2 convert nothing
VLVK_API void VKRGBAToNV21_NeonCall(const unsigned char* src, int srcStride, unsigned char* yPlane, int yStride,
                                    unsigned char* uvPlane, int uvStride, int width, int height);
VLVK_API void VKBGRAToNV21_NeonCall(const unsigned char* src, int srcStride, unsigned char* yPlane, int yStride,
                                    unsigned char* uvPlane, int uvStride, int width, int height);
VLVK_API void VKBGRAToNV12_NeonCall(const unsigned char* src, int srcStride, unsigned char* yPlane, int yStride,
                                    unsigned char* uvPlane, int uvStride, int width, int height);
///@}

#ifdef __cplusplus
}
#endif

#endif
