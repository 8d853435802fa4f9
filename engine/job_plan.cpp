/// See job_plan.h.
#include "engine/job_plan.h"

#include <algorithm>

#include "base/arm_math.h"
#include "engine/band_team.h"
#include "engine/frame_rows.h"

namespace vlvk {

namespace {

/// The level of the pixel formula for a softening of 0 .. 1000.
int softenLevel(const VlvkSettings& settings) {
  return 600 * settings.softening / 1000;
}

/// Full range has 255 levels of luma for 219 of limited range. Contrast means the same in both when the constants,
/// which are compared with a variance, grow by the square of that.
PixelFormula formulaFor(int reach, int level, Colorimetry colors) {
  PixelFormula formula = makePixelFormula(reach - 1, level);
  const float levels = static_cast<float>(lumaLevels(colors)) / static_cast<float>(lumaLevels(kBt601Limited));
  formula.bias *= levels * levels;
  formula.strength *= levels * levels;
  return formula;
}

/// Rows that are saved lie as far apart as the frame's: with wide gaps a copy of its luma takes less memory.
bool wastesSavedRows(const FrameJob& job, int columns) {
  return job.smooths && job.inPlace && job.source.stride[0] > 2 * std::ptrdiff_t{columns};
}

/// Bands begin at multiples of 8 rows: more of them than there are eights would be empty.
int bandsFor(const VlvkSettings& settings, int height) {
  const int wanted = settings.threads > 0 ? settings.threads : defaultBands();
  return std::min({wanted, kMostBands, (height + 7) / 8});
}

}  // namespace

FrameJob planJob(const FrameView& source, const FrameView& target, const VlvkSettings& settings, KeptSkinWeights& skin,
                 const ColorStep* colors) {
  FrameJob job{};
  job.source = source;
  job.target = target;
  job.inPlace = isInPlace(source, target);
  job.colors = colors;

  const bool isYuv = source.format->isYuv();
  const int level = softenLevel(settings);
  const int reach = roundUpTo8(settings.radius);
  const int columns = paddedColumns(source.width);
  job.smooths = level > 0 && reach > 0;
  job.copiesLuma = isYuv ? source.width != columns || wastesSavedRows(job, columns) : job.smooths;
  job.plan = {.width = columns,
              .height = source.height,
              .stride = job.copiesLuma ? columns : static_cast<int>(source.stride[0]),
              .reach = reach,
              .bands = bandsFor(settings, source.height),
              .inPlace = job.smooths && (job.inPlace || job.copiesLuma)};
  job.smoothsFirst = job.smooths && job.inPlace && !job.copiesLuma;
  // Rows y - reach + 1 .. y + reach are in use at a time; without smoothing a row pair.
  job.ringRows = !job.copiesLuma ? 0 : job.smooths ? 2 * reach : 2;
  job.formula = formulaFor(reach, level, source.colors);
  // Skin of pixels is measured in chroma of limited range, as row_pair.cpp makes it of them.
  job.skin = isYuv ? &skin.of(source.colors, source.format->chromaOrder) : &skin.of(kBt601Limited, kUThenV);

  const bool toYuv = target.format->isYuv();
  job.hasMatrix = isYuv && toYuv && source.colors != target.colors;
  job.matrix = makeYuvMatrix(source.colors, source.format->chromaOrder, target.colors, target.format->chromaOrder);
  job.pixelOrder = toYuv ? source.format->pixelOrder : target.format->pixelOrder;
  job.alpha = source.format->hasAlpha && target.format->hasAlpha ? kKeepAlpha : kOpaque;
  return job;
}

bool leavesFrame(const FrameJob& job) {
  if (!job.inPlace || job.smooths || job.colors != nullptr) return false;
  return job.source.format->pixelBytes != 4 || job.alpha == kKeepAlpha;  // X becomes 255
}

}  // namespace vlvk
