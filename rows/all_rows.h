/// Every row loop, and the table that names them, for the target that the including file has set up.
///
/// Included once by each row_loops_*.cpp, after `VLVK_TARGET` (the namespace) and that target's vocabulary. All code
/// lies in the target's namespace: an inline function shared between targets could be emitted with instructions that an
/// older processor lacks, and then be used everywhere.

#include "rows/blend_rows.h"
#include "rows/box_scan_rows.h"
#include "rows/chroma_rows.h"
#include "rows/color_rows.h"
#include "rows/rgb_to_yuv_rows.h"
#include "rows/yuv_to_rgb_rows.h"
// Builds on the conversion to YUV.
#include "rows/pixel_rows.h"
// Builds on the scan.
#include "rows/smooth_rows.h"
// Build on the scan and the formula.
#include "rows/statistics_rows.h"
#include "rows/target_sets.h"
#include "rows/tone_rows.h"

#define VLVK_STRING_OF(x) #x
#define VLVK_NAME_OF(x) VLVK_STRING_OF(x)

namespace vlvk::VLVK_TARGET {

// One entry for each colorimetry, and for each order of chroma and pixels.
#define VLVK_EACH_PIXELS(loop, ...) \
  { loop<__VA_ARGS__, kRgba>, loop<__VA_ARGS__, kBgra> }
#define VLVK_EACH_CHROMA(loop, colors) \
  { VLVK_EACH_PIXELS(loop, colors, kVThenU), VLVK_EACH_PIXELS(loop, colors, kUThenV) }
#define VLVK_EACH_COLORS(each, loop) \
  { each(loop, kBt601Limited), each(loop, kBt601Full), each(loop, kBt709Limited), each(loop, kBt709Full) }

const RowLoops kRowLoops = {
    .name = VLVK_NAME_OF(VLVK_TARGET),
    .addRow = addRow,
    .slideColumnSums = slideColumnSums,
    .smoothRow = {smoothRow<kAbsoluteContrast>, smoothRow<kRelativeLimited>, smoothRow<kRelativeFull>},
    .smoothRowAnySums = {smoothRowAnySums<kAbsoluteContrast>, smoothRowAnySums<kRelativeLimited>,
                         smoothRowAnySums<kRelativeFull>},
    .boxSumsRow = boxSumsRow,
    .boxSumsRowWide = boxSumsRowWide,
    .integralBoxSums = integralBoxSums,
    .integralSmooth = integralSmooth,
    .integralSmooth8 = integralSmooth8,
    .blendStatistics = blendStatistics,
    .divideStatistics = divideStatistics,
    .blendRowPair = blendRowPair,
    .skinWeights = skinWeights,
    .maskWeights = maskWeights,
    .blendByWeights = blendByWeights,
    .repeatForChannels = repeatForChannels,
    .lookUpColors = {VLVK_EACH_PIXELS(lookUpColors, kKeepAlpha), VLVK_EACH_PIXELS(lookUpColors, kOpaque)},
    .applyCurves = {applyCurves<kKeepAlpha>, applyCurves<kOpaque>},
    .yuvToPixels = VLVK_EACH_COLORS(VLVK_EACH_CHROMA, yuvToPixels),
    .nv12ToBgraFoursTwice = yuvToPixels<kBt601Limited, kUThenV, kBgra, kFoursTwice>,
    .pixelsToYuv = VLVK_EACH_COLORS(VLVK_EACH_CHROMA, pixelsToYuv),
    .pixelsToLuma = VLVK_EACH_COLORS(VLVK_EACH_PIXELS, pixelsToLuma),
    .pixelsToChroma = VLVK_EACH_COLORS(VLVK_EACH_CHROMA, pixelsToChroma),
    .shiftPixels = {shiftPixels<kKeepAlpha>, shiftPixels<kOpaque>},
    .unpackPixels = {{unpackPixels<3, false>, unpackPixels<3, true>}, {unpackPixels<4, false>, unpackPixels<4, true>}},
    .packPixels = packPixels,
    .interleave = interleave,
    .separate = separate,
    .convertLuma = convertLuma,
    .convertChroma = convertChroma,
    .averageBlocks = averageBlocks,
    .evenChroma = {evenChroma<kAbsoluteContrast>, evenChroma<kRelativeLimited>, evenChroma<kRelativeFull>},
    .mixPairs = mixPairs,
    .shiftChroma = {shiftChroma<kRgba>, shiftChroma<kBgra>},
};

}  // namespace vlvk::VLVK_TARGET
