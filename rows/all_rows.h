/// Every row loop, and the table that names them, for the target that the including file has set up.
///
/// Included once by each row_loops_*.cpp, after `VLVK_TARGET` (the namespace) and that target's vocabulary. All code
/// lies in the target's namespace: an inline function shared between targets could be emitted with instructions that an
/// older processor lacks, and then be used everywhere.

#include "rows/blend_rows.h"
#include "rows/box_scan_rows.h"
#include "rows/color_rows.h"
#include "rows/rgb_to_yuv_rows.h"
#include "rows/yuv_to_rgb_rows.h"
// Builds on the scan.
#include "rows/smooth_rows.h"
// Builds on both.
#include "rows/statistics_rows.h"
#include "rows/target_sets.h"

#define VLVK_STRING_OF(x) #x
#define VLVK_NAME_OF(x) VLVK_STRING_OF(x)

namespace vlvk::VLVK_TARGET {

const RowLoops kRowLoops = {
    .name = VLVK_NAME_OF(VLVK_TARGET),
    .addRow = addRow,
    .slideColumnSums = slideColumnSums,
    .smoothRow = smoothRow,
    .smoothRowAnySums = smoothRowAnySums,
    .boxSumsRow = boxSumsRow,
    .boxSumsRowWide = boxSumsRowWide,
    .integralBoxSums = integralBoxSums,
    .integralSmooth = integralSmooth,
    .integralSmooth8 = integralSmooth8,
    .blendStatistics = blendStatistics,
    .blendRowPair = blendRowPair,
    .lookUpColors = {lookUpColors<kRgba>, lookUpColors<kBgra>},
    .yuvToPixels = {{yuvToPixels<kVThenU, kRgba>, yuvToPixels<kVThenU, kBgra>},
                    {yuvToPixels<kUThenV, kRgba>, yuvToPixels<kUThenV, kBgra>}},
    .nv12ToBgraFoursTwice = yuvToPixels<kUThenV, kBgra, kFoursTwice>,
    .pixelsToYuv = {{pixelsToYuv<kVThenU, kRgba>, pixelsToYuv<kVThenU, kBgra>},
                    {pixelsToYuv<kUThenV, kRgba>, pixelsToYuv<kUThenV, kBgra>}},
};

}  // namespace vlvk::VLVK_TARGET
