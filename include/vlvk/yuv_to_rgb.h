/// @file
/// Semi-planar YUV 4:2:0 to 32-bit pixels, BT.601 limited range in 6 fractional bits. May be included from C.
///
///     L = Y - 16   Cb = U - 128   Cr = V - 128            R = (75 L + 102 Cr + 32) >> 6, clamped to 0 .. 255
///     pixel (x, y) takes the chroma pair at row y / 2,    G = (75 L - 25 Cb - 52 Cr + 32) >> 6
///     bytes 2 * (x / 2) and 2 * (x / 2) + 1               B = (75 L + 129 Cb + 32) >> 6          A = 255
///
/// NV21 stores V then U, NV12 U then V. All strides are bytes between rows and may exceed the row. Source and
/// destination must not overlap. No argument is checked; all functions are reentrant and allocate nothing.
#ifndef VLVK_YUV_TO_RGB_H
#define VLVK_YUV_TO_RGB_H

#include <vlvk/export.h>

#ifdef __cplusplus
extern "C" {
#endif

///@{
/// Converts height & ~1 rows of width & ~1 columns; an odd last row or column of `dst` is left as it was, as are the
/// bytes between a row and its stride.
///
/// Columns below width & ~15 are summed in 16-bit lanes that wrap: where 75 L + 129 Cb reaches 32768 (only with
/// U >= 244 and bright luma) blue comes out 0. The other columns are summed exactly and give 255 there.
///
/// @param yPlane     luma, one byte for each pixel; read
/// @param yStride    bytes from a luma row to the next
/// @param uvPlane    chroma pairs, one row for two luma rows; read
/// @param uvStride   bytes from a chroma row to the next
/// @param dst        pixels of 4 bytes, in the byte order that the name says; written
/// @param dstStride  bytes from a row of pixels to the next
/// @param width      columns, 0 or more
/// @param height     rows; fewer than 2 convert nothing
VLVK_API void VKNV21ToRGBA_NeonCall(const unsigned char* yPlane, int yStride, const unsigned char* uvPlane,
                                    int uvStride, unsigned char* dst, int dstStride, int width, int height);
VLVK_API void VKNV21ToBGRA_NeonCall(const unsigned char* yPlane, int yStride, const unsigned char* uvPlane,
                                    int uvStride, unsigned char* dst, int dstStride, int width, int height);
VLVK_API void VKNV12ToBGRA_NeonCall(const unsigned char* yPlane, int yStride, const unsigned char* uvPlane,
                                    int uvStride, unsigned char* dst, int dstStride, int width, int height);
///@}

///@{
/// As VKNV21ToRGBA_NeonCall and VKNV12ToBGRA_NeonCall, with the arguments in another order; here every column wraps.
///
/// Meant for width >= 8 and height >= 2. One row pair is converted even when height is below 2, and 8 columns when
/// width is below 8, which must then exist in all planes. An odd last column is not converted.
///
/// @param yPlane     luma, one byte for each pixel; read
/// @param yStride    bytes from a luma row to the next
/// @param uvPlane    chroma pairs, one row for two luma rows; read
/// @param uvStride   bytes from a chroma row to the next
/// @param dst        pixels of 4 bytes, in the byte order that the name says; written
/// @param dstStride  bytes from a row of pixels to the next
/// @param width      columns, 8 or more
/// @param height     rows, 2 or more
VLVK_API void VKNV21ToRGBA_V2_NeonCall(const unsigned char* yPlane, const unsigned char* uvPlane, unsigned char* dst,
                                       int dstStride, int width, int height, int yStride, int uvStride);
VLVK_API void VKNV12ToBGRA_V2_NeonCall(const unsigned char* yPlane, const unsigned char* uvPlane, unsigned char* dst,
                                       int dstStride, int width, int height, int yStride, int uvStride);
///@}

/// Converts blocks of 8 columns with a chroma order of its own: pixel i of a block takes pair i % 4 of the block's four
/// pairs, the first byte of a pair as U and the second as V; the output is B, G, R, A and never wraps.
///
/// width must be a positive multiple of 8 and height at least 2. One row pair is converted even when height is below 2;
/// with a single row pair a width below 8 still converts one block.
///
/// @param yPlane     luma, one byte for each pixel; read
/// @param yStride    bytes from a luma row to the next
/// @param uvPlane    chroma pairs, one row for two luma rows; read
/// @param uvStride   bytes from a chroma row to the next
/// @param dst        pixels of 4 bytes, B, G, R, A; written
/// @param dstStride  bytes from a row of pixels to the next
/// @param width      columns, a positive multiple of 8
/// @param height     rows, 2 or more
VLVK_API void NV212RGB_V2_NEON(const unsigned char* yPlane, const unsigned char* uvPlane, unsigned char* dst,
                               int dstStride, int width, int height, int yStride, int uvStride);

#ifdef __cplusplus
}
#endif

#endif
