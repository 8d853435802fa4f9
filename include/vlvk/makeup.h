/// @file
/// The engine for C, and for whatever can call C: a handle, a description of a frame, and one call for each frame.
///
///     VlvkFrame frame = {sizeof frame, VLVK_NV12, VLVK_BT709, VLVK_LIMITED, 1280, 720, {luma, chroma}, {1280, 1280}};
///     VlvkMakeup* makeup = NULL;
///     VlvkResult result = vlvkMakeupCreate(&makeup, NULL);
///     if (result == VLVK_OK) result = vlvkMakeupProcess(makeup, &frame, &frame, NULL);  // in place, frame after frame
///     if (result != VLVK_OK) fputs(vlvkResultText(result), stderr);
///     vlvkMakeupDestroy(makeup);
///
/// **Threads.** Any function may be called on any thread. Frames given to one handle take turns; handles are
/// independent. A handle must not be destroyed while another call uses it. It has threads of its own, which the first
/// frame starts, with the priority and the processors of the calling thread. They sleep between frames and end when the
/// handle is destroyed; with one thread in the settings there are none.
///
/// **Memory.** The caller owns every frame, and the engine keeps no pointer to one after the call. A handle keeps its
/// buffers from frame to frame: a frame of the size, format and settings of the one before allocates none.
///
/// **Failure.** A call that does not return VLVK_OK has changed nothing: target, settings and table are as they were,
/// and the handle can be used further. Nothing is thrown, printed or aborted, and no environment variable is read.
///
/// **Growth.** Structures begin with their size as the caller was compiled. New members come at the end, and 0 there
/// means what was done before they existed; so programs and libraries of different minor versions fit together both
/// ways: a library takes a larger structure whose unknown members are 0. Values are never renumbered. `vlvkVersion()`
/// in vlvk/version.h tells which library runs.
#ifndef VLVK_MAKEUP_H
#define VLVK_MAKEUP_H

#include <stddef.h>
#include <stdint.h>

#include <vlvk/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Outcome of a call. Later versions may have more, all negative.
typedef enum VlvkResult {
  VLVK_OK = 0,
  VLVK_NULL_POINTER = -1,  ///< an argument, or a plane that the format has
  VLVK_BAD_FORMAT = -2,    ///< unknown format, matrix or range
  VLVK_BAD_SIZE = -3,      ///< width or height below 1 or too large, or not the same in source and target; a plane
                           ///< past the end of the address space
  VLVK_BAD_STRIDE = -4,    ///< shorter than a row of its plane
  VLVK_OVERLAP = -5,       ///< planes of the target share memory with the source (not being in place: the same planes
                           ///< with another format, stride, matrix or range are not), each other or the mask;
                           ///< compared from the first to the last byte of each plane
  VLVK_BAD_SETTING = -6,   ///< out of its range
  VLVK_BAD_TABLE = -7,     ///< no whole colour table
  VLVK_NO_MEMORY = -8,
  VLVK_OTHER_VERSION = -9  ///< `size` is below that of version 1 or above 4096, or members that this library does not
                           ///< know are not 0
} VlvkResult;

/// How the samples of a frame lie in memory. Names give the order of bytes, on any processor.
///
///     VLVK_NV12   plane 0: Y Y Y Y      plane 1: U V U V                     4:2:0, one row of pairs for two of luma
///     VLVK_NV21   plane 0: Y Y Y Y      plane 1: V U V U
///     VLVK_I420   plane 0: Y Y Y Y      plane 1: U U     plane 2: V V        exchange 1 and 2 for YV12
///     VLVK_RGBA   plane 0: R G B A R G B A                                   alpha goes through unchanged
///     VLVK_RGBX   plane 0: R G B X R G B X                                   X is not read, and written as 255
///     VLVK_RGB    plane 0: R G B R G B
///
/// A chroma plane has (height + 1) / 2 rows of (width + 1) / 2 samples or pairs. Every size is processed to the last
/// pixel. Alpha of a target whose source has none, and X, are written as 255.
typedef enum VlvkFormat {
  VLVK_NV12 = 1,
  VLVK_NV21 = 2,
  VLVK_I420 = 3,
  VLVK_RGBA = 16,
  VLVK_BGRA = 17,
  VLVK_RGBX = 18,
  VLVK_BGRX = 19,
  VLVK_RGB = 20,
  VLVK_BGR = 21
} VlvkFormat;

/// What the samples of a YUV frame mean, numbered as ITU-T H.273 does, so that the values of a decoder or a container
/// can be handed on. There is no guessing: "unspecified" (2) is VLVK_BAD_FORMAT. Pixels are always full range RGB, and
/// matrix and range do not count for them.
typedef enum VlvkMatrix {
  VLVK_BT709 = 1,  ///< HD video
  VLVK_BT601 = 6   ///< SD video, JPEG, most webcams and Android cameras; 5 is taken as well
} VlvkMatrix;

/// Levels of a YUV frame. iOS's 420f, MJPEG and mostly Android's YUV_420_888 are full; most other video is limited.
typedef enum VlvkRange {
  VLVK_LIMITED = 0,  ///< luma 16 to 235, chroma 16 to 240
  VLVK_FULL = 1      ///< 0 to 255
} VlvkRange;

/// A frame, wherever its planes are. Nothing needs to be aligned. Bytes between the end of a row and the next row are
/// neither read nor written, and a plane may end with the last sample of its last row.
typedef struct VlvkFrame {
  uint32_t size;            ///< sizeof(VlvkFrame)
  int32_t format;           ///< a VlvkFormat
  int32_t matrix;           ///< a VlvkMatrix
  int32_t range;            ///< a VlvkRange
  int32_t width;            ///< pixels, 1 to 65535
  int32_t height;           ///< rows, 1 to 65535
  unsigned char* plane[4];  ///< as the format says, the others are not looked at; those of a source are only read
  int32_t stride[4];        ///< bytes from a row to the next, a row of the plane or more
} VlvkFrame;

/// How luma contrast is measured when softening decides between skin and edge.
typedef enum VlvkContrast {
  VLVK_CONTRAST_RELATIVE = 0,  ///< against the brightness around it: features in dim light and on dark skin survive
  VLVK_CONTRAST_ABSOLUTE = 1   ///< in levels, as CFastEdgePreserved does
} VlvkContrast;

/// What whitening lifts.
typedef enum VlvkWhiten {
  VLVK_WHITEN_ALL = 0,  ///< the whole picture, as CFastEdgePreserved does
  VLVK_WHITEN_SKIN = 1  ///< skin only, by its weight
} VlvkWhiten;

/// A radius that goes with the size of the frame: the shorter side / 30, rounded down, then up to a multiple of 8, at
/// least 8 (24 at 1280x720), at most 64 up to a shorter side of 2160 and 128 above.
#define VLVK_RADIUS_AUTO (-1)

/// How a frame is changed. Start from vlvkSettingsInit.
typedef struct VlvkSettings {
  uint32_t size;       ///< sizeof(VlvkSettings)
  int32_t whitening;   ///< percent, 0 (colours stay) to 100; default 50
  int32_t softening;   ///< smoothing of skin, 0 (none) to 1000 (full); default 1000
  int32_t radius;      ///< its reach in pixels of the frame, 0 (no softening or evening) to 128, rounded up to a
                       ///< multiple of 8, or VLVK_RADIUS_AUTO, the default
  int32_t contrast;    ///< a VlvkContrast; default VLVK_CONTRAST_RELATIVE
  int32_t whitenArea;  ///< a VlvkWhiten; default VLVK_WHITEN_ALL
  int32_t evenTone;    ///< evening of skin colour (red spots), 0 (none, the default) to 1000
  int32_t threads;     ///< bands worked on at once, 1 to 64; 0, the default: as many as processors, at most 8. The
                       ///< result does not depend on it
} VlvkSettings;

/// An engine: settings, tables and buffers for one stream of frames.
typedef struct VlvkMakeup VlvkMakeup;

/// Fills in the defaults.
///
/// @param settings  written; null: nothing is done
/// @param size      sizeof(VlvkSettings) of the caller; below that of version 1 or above 4096: nothing is written.
///                  Members that this library does not know become 0
VLVK_API void vlvkSettingsInit(VlvkSettings* settings, size_t size);

/// Makes an engine. Buffers come with the first frame.
///
/// @param makeup    receives the engine, or null; the caller destroys it
/// @param settings  null for the defaults
/// @return VLVK_NULL_POINTER, VLVK_BAD_SETTING, VLVK_OTHER_VERSION or VLVK_NO_MEMORY if there is none
VLVK_API VlvkResult vlvkMakeupCreate(VlvkMakeup** makeup, const VlvkSettings* settings);

/// Destroys an engine and all that it holds.
///
/// @param makeup  null: nothing is done
VLVK_API void vlvkMakeupDestroy(VlvkMakeup* makeup);

/// Changes all settings at once, from the next frame on; a frame that runs keeps those that it began with.
///
/// @param makeup    the engine
/// @param settings  copied
/// @return VLVK_NULL_POINTER, VLVK_BAD_SETTING or VLVK_OTHER_VERSION if nothing was changed
VLVK_API VlvkResult vlvkMakeupConfigure(VlvkMakeup* makeup, const VlvkSettings* settings);

/// Sends colours through a table, from the next frame on, or through the tone curves only, which is more precise.
///
/// @param makeup  the engine
/// @param file    an `adjust.vlk`, whole; copied. Null: no table
/// @param bytes   its size; what follows the file's own end is not read
/// @return VLVK_NULL_POINTER, VLVK_BAD_TABLE or VLVK_NO_MEMORY if the table of before stays
VLVK_API VlvkResult vlvkMakeupSetTable(VlvkMakeup* makeup, const void* file, size_t bytes);

/// Where a face detector, or whatever the caller has, wants the engine to work. Multiplied into the skin weight: it
/// limits softening, evening and the whitening of skin; VLVK_WHITEN_ALL and the table reach the whole picture.
typedef struct VlvkMask {
  uint32_t size;               ///< sizeof(VlvkMask)
  int32_t width;               ///< any, 1 or more; stretched over the frame, nearest value
  int32_t height;              ///< any, 1 or more
  int32_t stride;              ///< bytes from a row to the next, `width` or more
  const unsigned char* plane;  ///< 0 (leave alone) to 255 (as without a mask); only read
} VlvkMask;

/// Processes a frame.
///
/// From pixels to pixels, colours keep their full resolution and alpha is copied. Without a step that changes colours
/// (whitening 0, no table, no evening) chroma of a YUV frame stays as it is where matrix and range do; with softening
/// or radius 0 as well the result has the source's bytes, but for X, where the formats are equal too.
///
/// @param makeup  the engine
/// @param source  only read
/// @param target  where the result goes: in place with the source's planes, strides, format, matrix and range, or
///                elsewhere in any of them; of the same size. May be `source` itself
/// @param mask    null: everywhere
/// @return VLVK_OK, or why the frame was refused; see vlvkFrameCheck for words. A mask is refused with
///         VLVK_OTHER_VERSION, VLVK_BAD_SIZE, VLVK_BAD_STRIDE, VLVK_NULL_POINTER or VLVK_OVERLAP
VLVK_API VlvkResult vlvkMakeupProcess(VlvkMakeup* makeup, const VlvkFrame* source, const VlvkFrame* target,
                                      const VlvkMask* mask);

/// Describes three planes as Android's YUV_420_888 has them: format, plane and stride become those of the NV12, NV21 or
/// I420 frame that they are. Set size, width and height before.
///
/// @param frame       written
/// @param planes      Y, U and V
/// @param rowStrides  bytes from a row to the next, for each
/// @param chromaStep  bytes from a U or V sample to the next: 1, or 2 with U and V next to each other
/// @return VLVK_BAD_FORMAT or VLVK_BAD_STRIDE if it is none of the three, VLVK_NULL_POINTER, VLVK_OTHER_VERSION or
///         VLVK_BAD_SIZE for its arguments; the frame is then unchanged. Matrix, range and size of the frame stay
VLVK_API VlvkResult vlvkFrameFromYuv420(VlvkFrame* frame, unsigned char* const planes[3], const int32_t rowStrides[3],
                                        int32_t chromaStep);

/// Tells whether a frame can be processed, and if not why, in words: "plane 1: stride 100, a row has 128 bytes".
///
/// @param frame  only read, its planes are not
/// @param text   receives at most `size` bytes with the final 0, empty for a good frame; null: nothing is written
/// @param size   room in `text`
/// @return as vlvkMakeupProcess for a source; planes may share memory
VLVK_API VlvkResult vlvkFrameCheck(const VlvkFrame* frame, char* text, size_t size);

/// A result in English words, without a full stop.
///
/// @param result  any number
/// @return a constant string, never null
VLVK_API const char* vlvkResultText(VlvkResult result);

#ifdef __cplusplus
}
#endif

#endif
