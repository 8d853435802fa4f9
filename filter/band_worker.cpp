/// See band_worker.h.
#include "filter/band_worker.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include <vlvk/band_smoothing.h>
#include <vlvk/rgb_to_yuv.h>
#include <vlvk/skin_blend.h>
#include <vlvk/yuv_to_rgb.h>
#include "base/arm_math.h"
#include "filter/band_rows.h"
#include "filter/color_adjust.h"
#include "kernels/smooth_plane.h"
#include "rows/pixel_formula.h"

namespace vlvk {

namespace {

using MakeupParam = CFastEdgePreserved::MakeupParam;
using BandTask = CFastEdgePreserved::BandTask;

bool wantsSmoothing(const MakeupParam& p) {
  return p.radius > 0 && p.softenLevel > 0;
}

bool goesBackIntoFrame(const MakeupParam& p) {
  return p.inPlace && p.variant == 0;
}

/// The smoothing leaves the columns past the last whole group of 8 alone: there the picture is its unsmoothed self.
void copyRightTail(const MakeupParam& p) {
  const int begin = wholeGroups(p.width);
  const auto size = static_cast<std::size_t>(p.width - begin);
  for (std::ptrdiff_t y = 0; y < p.rows && size != 0; ++y) {
    std::memcpy(p.meanPlane + y * p.yStride + begin, p.yPlane + y * p.yStride + begin, size);
  }
}

/// Mixes smoothed and unsmoothed luma; returns the plane that holds the result.
unsigned char* blend(const CFastEdgePreserved& filter, const MakeupParam& p) {
  copyRightTail(p);
  if (goesBackIntoFrame(p)) {
    MeanBlendImageWithSkin_V3(p.yPlane, p.yStride, p.meanPlane, p.uvPlane, p.uvStride, p.width, p.rows,
                              filter.skinTable, p.skinCentre);
    return p.yPlane;
  }
  MeanBlendImageWithSkin(p.yPlane, p.yStride, p.meanPlane, p.uvPlane, p.uvStride, p.width, p.rows, 192,
                         filter.skinTable, p.skinCentre);
  return p.meanPlane;
}

/// All steps after the smoothing.
void finishRows(const CFastEdgePreserved& filter, const MakeupParam& p, bool smoothed,
                const std::optional<ChannelCurves>& curves) {
  const unsigned char* luma = smoothed ? blend(filter, p) : p.yPlane;
  if (p.rgbOrder) {
    VKNV21ToRGBA_NeonCall(luma, p.yStride, p.uvPlane, p.uvStride, p.outPlane, p.outStride, p.width, p.rows);
    adjustColors(filter, p, kRgba, curves);
  } else {
    VKNV12ToBGRA_NeonCall(luma, p.yStride, p.uvPlane, p.uvStride, p.outPlane, p.outStride, p.width, p.rows);
    adjustColors(filter, p, kBgra, curves);
  }
  if (goesBackIntoFrame(p)) {
    const auto convertBack = p.rgbOrder ? VKRGBAToNV21_NeonCall : VKBGRAToNV12_NeonCall;
    convertBack(p.outPlane, p.outStride, p.yPlane, p.yStride, p.uvPlane, p.uvStride, p.width, p.rows);
  }
}

/// Smooths a band of a frame into its mean plane. Where bands are too short for the kernels, the box gets the same rows
/// another way.
void smoothBand(const FramePlan& plan, BandTask& task) {
  MakeupParam& p = task.param;
  if (plan.bandsFitKernels()) {
    (task.owner->*task.stage)(&p, p.meanPlane);
    return;
  }
  smoothRows(columnSumsIn(p.scratchA, p.scratchB, wholeGroups(p.width)),
             rowsAround(plan, task.bandIndex, p.yPlane, p.edgeRows), plan.reach,
             makePixelFormula(plan.reach - 1, p.softenLevel), p.rows, {p.yPlane, p.yStride}, {p.meanPlane, p.yStride});
}

/// The part of a band's order that covers `rows` rows from row y on. The pixels of an in-place frame are not kept, so
/// every strip uses the same ones.
MakeupParam stripOf(const MakeupParam& band, std::ptrdiff_t y, int rows) {
  MakeupParam strip = band;
  strip.yPlane += y * band.yStride;
  strip.meanPlane += y * band.yStride;
  strip.uvPlane += y / 2 * band.uvStride;
  if (!band.inPlace) strip.outPlane += y * band.outStride;
  strip.rows = rows;
  return strip;
}

}  // namespace

void runBand(const FramePlan& plan, BandTask& task, const std::optional<ChannelCurves>& curves) {
  const MakeupParam& p = task.param;
  const bool smooth = wantsSmoothing(p);
  if (smooth) smoothBand(plan, task);
  for (int y = 0; y < p.rows; y += kStripRows) {
    finishRows(*task.owner, stripOf(p, y, std::min(kStripRows, p.rows - y)), smooth, curves);
  }
}

}  // namespace vlvk

void* CFastEdgePreserved::thread_softskin_call(void* task) {
  auto& order = *static_cast<BandTask*>(task);
  const bool smooth = vlvk::wantsSmoothing(order.param);
  if (smooth) (order.owner->*order.stage)(&order.param, order.param.meanPlane);
  const vlvk::PixelOrder pixels = order.param.rgbOrder ? vlvk::kRgba : vlvk::kBgra;
  vlvk::finishRows(*order.owner, order.param, smooth, vlvk::curvesFor(*order.owner, order.param, pixels));
  return nullptr;
}

namespace {

using BandKernel = decltype(&MeanTop_Window_Neon);

/// Runs the kernel that fits the band's way of writing: saved neighbour rows for a band that is overwritten.
void smoothWith(BandKernel plain, BandKernel withSavedRows, const CFastEdgePreserved::MakeupParam& p,
                unsigned char* mean) {
  const VKBandScratch scratch{p.meanPlane, p.scratchA, p.scratchB, p.lineSums, p.edgeRows};
  const BandKernel kernel = vlvk::goesBackIntoFrame(p) ? withSavedRows : plain;
  kernel(p.yPlane, mean, p.width, p.rows, p.yStride, p.radius, p.softenLevel, &scratch);
}

}  // namespace

void CFastEdgePreserved::FastEdgePreservedTop(MakeupParam* p, unsigned char* mean) {
  smoothWith(MeanTop_Window_Neon, MeanTop_Window_V3_Neon, *p, mean);
}

void CFastEdgePreserved::FastEdgePreservedMid(MakeupParam* p, unsigned char* mean) {
  smoothWith(MeanMid_Window_Neon, MeanMid_Window_V3_Neon, *p, mean);
}

void CFastEdgePreserved::FastEdgePreservedBottom(MakeupParam* p, unsigned char* mean) {
  smoothWith(MeanBottom_Window_Neon, MeanBottom_Window_V3_Neon, *p, mean);
}
