/// See job_plan.h.
#include "engine/job_plan.h"

#include <algorithm>

#include "base/arm_math.h"
#include "engine/band_team.h"
#include "engine/frame_rows.h"

namespace vlvk {

namespace {

/// The end of the settings of softening and evening.
constexpr int kFullSetting = 1000;

/// The level of the pixel formula for a softening.
int formulaLevel(std::int32_t softening) {
  return 600 * softening / kFullSetting;
}

PixelFormula formulaFor(int reach, int level, std::int32_t contrast, Colorimetry colors) {
  const bool fullRange = isFullRange(colors);
  const PixelFormula formula = makePixelFormula(reach - 1, level);
  const PixelFormula ranged = fullRange ? ofFullRange(formula) : formula;
  return contrast == VLVK_CONTRAST_RELATIVE ? withRelativeContrast(ranged, fullRange) : ranged;
}

/// Chroma of full range has 255 levels for 224 of limited range.
ToneFormula toneFormulaFor(int reach, int evenTone, std::int32_t contrast, Colorimetry colors) {
  const float levels = static_cast<float>(chromaLevels(colors)) / static_cast<float>(chromaLevels(kBt601Limited));
  PixelFormula luma = formulaFor(reach, formulaLevel(kFullSetting), contrast, colors);
  luma.strength *= kToneStrength;
  luma.strengthOfBias *= kToneStrength;
  return {luma, static_cast<float>(evenTone) / kFullSetting, kFarthestTone * (levels * levels) / luma.bias};
}

/// The radius of the settings in whole groups of 8 columns.
///
/// Automatic: faces fill about the same part of the frames of a camera, and what disturbs in them grows alike.
int reachFor(std::int32_t radius, const FrameView& frame) {
  if (radius != VLVK_RADIUS_AUTO) return roundUpTo8(radius);
  constexpr int kShare = 30;
  constexpr int kLargestOfFastForm = 64;
  constexpr int kLargestShorterSide = 2160;
  constexpr int kLargest = 128;
  const int shorter = std::min(frame.width, frame.height);
  if (shorter > kLargestShorterSide) return kLargest;
  return std::clamp(roundUpTo8(shorter / kShare), 8, kLargestOfFastForm);
}

/// Rows that are saved lie as far apart as the frame's: with wide gaps a copy of its luma takes less memory.
bool wastesSavedRows(const FrameJob& job, int columns) {
  return job.smooths && job.inPlace && job.source.stride[0] > 2 * std::ptrdiff_t{columns};
}

/// Bands begin at multiples of 8 rows: more of them than there are eights would be empty.
int bandsFor(const VlvkSettings& settings, int height) {
  return std::min(threadsFor(settings), (height + 7) / 8);
}

/// Luma, its smoothing and the cut into bands.
void planLuma(FrameJob& job, const VlvkSettings& settings) {
  const FrameView& source = job.source;
  const bool isYuv = source.format->isYuv();
  const int level = formulaLevel(settings.softening);
  const int reach = reachFor(settings.radius, source);
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
  job.formula = formulaFor(reach, level, settings.contrast, source.colors);
}

/// Skin and its tone. Of pixels both are measured in YUV of limited range, as pixel_pair.cpp and tone_step.cpp make it
/// of them.
void planSkin(FrameJob& job, const VlvkSettings& settings, KeptSkinWeights& skin) {
  const bool isYuv = job.source.format->isYuv();
  const Colorimetry measured = isYuv ? job.source.colors : kBt601Limited;
  job.skin = &skin.of(measured, isYuv ? job.source.format->chromaOrder : kUThenV);
  job.whitensSkin = settings.whitenArea == VLVK_WHITEN_SKIN && settings.whitening > 0;
  job.evens = settings.evenTone > 0 && job.plan.reach > 0;
  job.toneReach = job.plan.reach / 2;
  if (job.evens) job.toneFormula = toneFormulaFor(job.toneReach, settings.evenTone, settings.contrast, measured);
}

}  // namespace

int threadsFor(const VlvkSettings& settings) {
  return std::min(settings.threads > 0 ? settings.threads : defaultBands(), kMostBands);
}

FrameJob planJob(const FrameView& source, const FrameView& target, const MaskView& mask, const VlvkSettings& settings,
                 KeptSkinWeights& skin, const ColorStep* colors) {
  FrameJob job{};
  job.source = source;
  job.target = target;
  job.inPlace = isInPlace(source, target);
  job.mask = mask;
  job.colors = colors;
  planLuma(job, settings);
  planSkin(job, settings, skin);

  const bool isYuv = source.format->isYuv();
  const bool toYuv = target.format->isYuv();
  job.hasMatrix = isYuv && toYuv && source.colors != target.colors;
  job.matrix = makeYuvMatrix(source.colors, source.format->chromaOrder, target.colors, target.format->chromaOrder);
  job.pixelOrder = toYuv ? source.format->pixelOrder : target.format->pixelOrder;
  job.alpha = source.format->hasAlpha && target.format->hasAlpha ? kKeepAlpha : kOpaque;
  return job;
}

bool leavesFrame(const FrameJob& job) {
  if (!job.inPlace || job.smooths || job.evens || job.colors != nullptr) return false;
  return job.source.format->pixelBytes != 4 || job.alpha == kKeepAlpha;  // X becomes 255
}

}  // namespace vlvk
