/// @file
/// The beauty filter: settings, lookup tables, buffers and the per-frame pipeline.
///
///     frame (NV21 / NV12) -> smooth luma -> blend by skin weight -> RGBA / BGRA -> colour table
///                                                                   -> caller's pixels, or back into the frame
///
/// A frame is cut into `threadCount` horizontal bands, which as many threads and the calling one take in turn.
#ifndef VLVK_CFASTEDGEPRESERVED_H
#define VLVK_CFASTEDGEPRESERVED_H

#include <pthread.h>

#include <cstddef>

#include <vlvk/IBeautyResourceLoader.h>
#include <vlvk/export.h>

struct timeb;  // <sys/timeb.h>, or <vlvk/timeb.h> where the platform has none

/// Beautifies frames. One object serves one stream of frames; frames handed to it from several threads take turns.
/// Before destroying one that was given BGRA pictures, call `std::free(filter.nv12Scratch)`: the destructor does not.
///
/// Settings may be changed from any thread, also while a frame runs: a frame reads each of them once, so a change lands
/// at the next frame. The order of fields and virtual slots is part of the binary interface.
class VLVK_API CFastEdgePreserved {
  // Its members are defined in filter/, by subject: settings and destruction in CFastEdgePreserved.cpp, the calls that
  // take frames in frame_pipeline.cpp, calcCharacteristic in frame_buffers.cpp, buildLookup in color_table.cpp,
  // colorAdjustRGBA and BGRA in color_adjust.cpp, the smoothing stages and thread_softskin_call in band_worker.cpp.

 public:
  /// The work order of one band. All planes start at the band's first row; strides are bytes.
  struct MakeupParam {
    int variant;               ///< 0 from the pipeline; otherwise plain kernels and no conversion back to YUV
    bool rgbOrder;             ///< true: NV21 and RGBA; false: NV12 and BGRA
    bool inPlace;              ///< the band is written back into its own Y and UV rows
    unsigned char* yPlane;     ///< luma
    int yStride;               ///< of yPlane, meanPlane and edgeRows
    unsigned char* uvPlane;    ///< chroma pairs, one row for two luma rows
    int uvStride;              ///< of uvPlane
    unsigned char* dstPlane;   ///< pixels, separate-destination form of the colour adjustment only
    int dstStride;             ///< of dstPlane
    unsigned char* outPlane;   ///< 4-byte pixels
    int outStride;             ///< of outPlane
    int width;                 ///< pixels of a row
    int rows;                  ///< luma rows of the band
    int radius;                ///< rounded radius minus one
    int whitenIntensity;       ///< the filter's settings as the frame found them
    int softenLevel;           ///< (600 * softenSkinIntensity) / 1000
    int colorAdjustIntensity;  ///< see put_colorAdjustIntensity
    const int* skinCentre;     ///< skin chroma: first and second byte of a pair
    unsigned char* meanPlane;  ///< smoothed luma
    unsigned char* scratchA;   ///< 16 bytes for each group of 8 columns
    unsigned char* scratchB;   ///< 32 bytes for each group of 8 columns
    unsigned char* lineSums;   ///< not used by the kernels
    unsigned char* edgeRows;   ///< unsmoothed neighbour rows (in place)
  };

  /// A smoothing stage: smooths the band of `p` into `mean`, which has the stride of the luma plane.
  using Stage = void (CFastEdgePreserved::*)(MakeupParam* p, unsigned char* mean);

  /// The order of a band, for whichever thread takes it.
  struct BandTask {
    CFastEdgePreserved* owner;  ///< the filter that the frame was given to
    Stage stage;                ///< one of FastEdgePreservedTop, Mid, Bottom
    int bandIndex;              ///< from the top, 0-based
    MakeupParam param;          ///< the band's order
  };

  /// Makes a filter with default settings. Allocates nothing; the first frame does.
  ///
  /// @param bands           bands of a frame, and threads that are started for it, 1 or more
  /// @param resourceLoader  source of "adjust.vlk"; not owned; null is a loader that never has it
  CFastEdgePreserved(int bands, IBeautyResourceLoader* resourceLoader);
  CFastEdgePreserved(const CFastEdgePreserved&) = delete;
  CFastEdgePreserved& operator=(const CFastEdgePreserved&) = delete;

  /// Call `std::free(filter.nv12Scratch)` before, if the filter got BGRA pictures: it is the one buffer that stays
  /// allocated. No frame may be running.
  virtual ~CFastEdgePreserved();

  /// Sets the whitening. Rebuilds the tables at the next frame if the value changed. Any thread.
  ///
  /// @param v  percent, 0 to 100; other values are taken as they are, the curves wrap modulo 256
  void put_whitenIntensity(int v);
  /// Sets the strength of the smoothing. Any thread.
  ///
  /// @param v  0 to 1000 (full); 1 and below: none; up to 2779: stronger still
  void put_softenSkinIntensity(int v);
  /// Sends colours through the table, or through the tone curves only. Rebuilds the tables at the next frame if the
  /// value changed. Any thread.
  ///
  /// @param v  above 0: table; 0 or below: curves. A switch, not a strength
  void put_colorAdjustIntensity(int v);

  /// Does nothing.
  ///
  /// @param width   ignored
  /// @param height  ignored
  /// @return -1
  int setOutputSize(int width, int height);

  /// Milliseconds of wall clock since `start`.
  ///
  /// @param start  a time as ftime fills it; read
  /// @return modulo 2^32
  int diffTime(const timeb* start);

  /// Processes one semi-planar frame without padding: the stride arguments are ignored, and processVideoInternal takes
  /// frames with strides.
  ///
  /// @param y          luma plane, height rows of `width` bytes; written when `out` is null
  /// @param yStride    ignored
  /// @param uv         chroma plane, (height + 1) / 2 rows of `width` bytes; written when `out` is null
  /// @param uvStride   ignored
  /// @param width      pixels, 0 or more; an odd last column is not converted, the last width & 7 are not smoothed
  /// @param height     rows, 0 or more; an odd last row is not converted
  /// @param out        4-byte pixels, not overlapping the planes, or null to write the result back into the frame
  /// @param outStride  bytes between rows of `out`
  /// @param rgbOrder   true: NV21 in, RGBA out; false: NV12 in, BGRA out
  /// @return 0, or -1 with frame and output untouched: null plane, negative size, threadCount below 1, no memory, or
  ///         in place a width of 2^29 and more, whose 4-byte pixels pass an int stride
  ///
  /// With `out`, pixels of an odd last column or row are colour-adjusted where they stand. A frame that finds
  /// "adjust.vlk" missing is not colour-adjusted; those after it use a neutral table.
  int processVideo(unsigned char* y, int yStride, unsigned char* uv, int uvStride, int width, int height,
                   unsigned char* out, int outStride, bool rgbOrder);

  /// Processes one BGRA picture through an NV12 copy in nv12Scratch, which is yours to free; see ~CFastEdgePreserved.
  ///
  /// @param bgra       source pixels, rows `stride` bytes apart; not written unless `out` is the same picture
  /// @param width      pixels, 0 or more
  /// @param height     rows, 0 or more
  /// @param stride     bytes between rows of `bgra`
  /// @param out        BGRA result, rows `outStride` bytes apart; may be `bgra` itself; null: nothing is delivered
  /// @param outStride  bytes between rows of `out`
  /// @return as processVideo
  int processBGRAVideo(unsigned char* bgra, int width, int height, int stride, unsigned char* out, int outStride);

  /// processVideo with strides of the caller's and without the lock: the caller keeps frames apart.
  ///
  /// @param y          luma plane; written when `out` is null
  /// @param yStride    bytes between luma rows, `width` or more
  /// @param uv         chroma plane, (height + 1) / 2 rows; written when `out` is null
  /// @param uvStride   bytes between chroma rows
  /// @param width      as processVideo
  /// @param height     as processVideo
  /// @param out        as processVideo
  /// @param outStride  as processVideo
  /// @param rgbOrder   as processVideo
  /// @return as processVideo, and -1 also for a luma stride below the width
  int processVideoInternal(unsigned char* y, int yStride, unsigned char* uv, int uvStride, int width, int height,
                           unsigned char* out, int outStride, bool rgbOrder);

  /// Makes tables and buffers ready for a frame. Caller holds the lock.
  ///
  /// @param width    pixels of a row
  /// @param height   rows
  /// @param stride   luma stride in bytes
  /// @param r        rounded radius minus one, -1 for no smoothing
  /// @param inPlace  the frame is written back into its own planes
  /// @return 0, or -1 when memory ran out; the filter stays usable
  int calcCharacteristic(int width, int height, int stride, int r, bool inPlace);

  /// Builds tone curves and colour table from the current settings. Caller holds the lock; the tables must exist.
  ///
  /// @param src  512 x 512 pixels of 4 bytes (blue, green, red, one not read), 8 x 8 tiles of 64 x 64; read
  void buildLookup(const unsigned char* src);

  ///@{
  /// Passes a band of pixels through colour table or tone curves; does nothing while there is no table. With
  /// `inPlace` set and `variant` 1 the result goes to dstPlane instead.
  ///
  /// @param p  outPlane, outStride, width, rows, the two intensities, and in that form dstPlane and dstStride count
  void colorAdjustRGBA(MakeupParam* p);
  void colorAdjustBGRA(MakeupParam* p);
  ///@}

  /// Runs one BandTask through all steps, as its order says. Has the form of a thread's start routine.
  ///
  /// @param task  a BandTask, the caller's
  /// @return null
  static void* thread_softskin_call(void* task);

  ///@{
  /// Smooths the luma of a band with the kernels of band_smoothing.h for that place in a frame; see Stage.
  ///
  /// @param p     the band's order
  /// @param mean  smoothed rows, as far apart as the luma rows; written
  void FastEdgePreservedTop(MakeupParam* p, unsigned char* mean);
  void FastEdgePreservedMid(MakeupParam* p, unsigned char* mean);
  void FastEdgePreservedBottom(MakeupParam* p, unsigned char* mean);
  ///@}

  int whitenIntensity = 50;             ///< see put_whitenIntensity, which also marks the tables
  int radius = 20;                      ///< rounded up to a multiple of 8 by each frame; 0 or less: no smoothing
  int softenSkinIntensity = 1000;       ///< see put_softenSkinIntensity
  int colorAdjustIntensity = 100;       ///< see put_colorAdjustIntensity, which also marks the tables
  unsigned char* toneCurve0 = nullptr;  ///< 256 bytes, for red
  unsigned char* toneCurve1 = nullptr;  ///< 256 bytes, for green
  unsigned char* toneCurve2 = nullptr;  ///< 256 bytes, for blue; equal to toneCurve0
  int threadCount;                      ///< bands and worker threads of a frame; below 1 frames return -1
  unsigned char* colorTable = nullptr;  ///< 64 x 64 x 64 entries of 4 bytes; null: no adjustment
  bool lookupDirty = true;              ///< the tables no longer match the settings
  bool rgbOrder = false;                ///< pixel order of the previous frame
  int skinCentre[3];                    ///< U, V, U of skin: NV12 frames use the first two, NV21 frames the last two
  unsigned char skinTable[48];          ///< skin weight by distance, for MeanBlendImageWithSkin
  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;  ///< held for a whole frame
  unsigned char* meanBuffer = nullptr;                ///< smoothed luma of a frame
  unsigned char* scratchA = nullptr;                  ///< column sums of every band
  unsigned char* scratchB = nullptr;                  ///< column sums of squares of every band
  unsigned char* lineSums = nullptr;                  ///< not used by the kernels
  unsigned char* nv12Scratch = nullptr;               ///< NV12 copy of a BGRA picture; see ~CFastEdgePreserved
  unsigned char* rgbaBuffer = nullptr;                ///< pixels of an in-place frame: the strip in work of each band
  int hasEdgeRows = 0;                                ///< not 0: edgeRows is owned
  unsigned char* edgeRows = nullptr;                  ///< unsmoothed rows around every band of an in-place frame
  int cachedWidth = 0;                                ///< of the last frame that got its memory
  int cachedHeight = 0;                               ///< of that frame
  int cachedStride = 0;                               ///< of its luma plane
  int cachedRadius = 0;                               ///< its rounded radius minus one
  int cachedThreads = 0;                              ///< its threadCount
  IBeautyResourceLoader* loader;                      ///< not owned; may be null

  // After all other fields, which keep their places: the size of each buffer in bytes, and the tasks of a frame.
  std::size_t meanBufferSize = 0;       ///< of meanBuffer
  std::size_t scratchASize = 0;         ///< of scratchA
  std::size_t scratchBSize = 0;         ///< of scratchB
  std::size_t lineSumsSize = 0;         ///< of lineSums
  std::size_t nv12ScratchSize = 0;      ///< of nv12Scratch
  std::size_t rgbaBufferSize = 0;       ///< of rgbaBuffer
  std::size_t edgeRowsSize = 0;         ///< of edgeRows
  unsigned char* taskBuffer = nullptr;  ///< orders and threads of a frame's bands
  std::size_t taskBufferSize = 0;       ///< of taskBuffer
};

#endif
