/// See band_worker.h.
#include "filter/band_worker.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "convert/rgb_to_yuv.h"
#include "convert/yuv_to_rgb.h"
#include "kernels/band_smoothing.h"
#include "kernels/box_rows.h"
#include "kernels/box_slider.h"
#include "kernels/skin_blend.h"

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

/// The smoothing leaves the columns behind the last whole group of 8 alone: there the picture is its unsmoothed self.
void copyRightTail(const MakeupParam& p) {
  const int begin = p.width & ~7;
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

/// All steps behind the smoothing.
void finishRows(CFastEdgePreserved& filter, MakeupParam& p, bool smoothed) {
  const unsigned char* luma = smoothed ? blend(filter, p) : p.yPlane;
  if (p.rgbOrder) {
    VKNV21ToRGBA_NeonCall(luma, p.yStride, p.uvPlane, p.uvStride, p.outPlane, p.outStride, p.width, p.rows);
    filter.colorAdjustRGBA(&p);
  } else {
    VKNV12ToBGRA_NeonCall(luma, p.yStride, p.uvPlane, p.uvStride, p.outPlane, p.outStride, p.width, p.rows);
    filter.colorAdjustBGRA(&p);
  }
  if (goesBackIntoFrame(p)) {
    const auto convertBack = p.rgbOrder ? VKRGBAToNV21_NeonCall : VKBGRAToNV12_NeonCall;
    convertBack(p.outPlane, p.outStride, p.yPlane, p.yStride, p.uvPlane, p.uvStride, p.width, p.rows);
  }
}

/// The part of a band's order that covers `rows` rows from row y on. Smoothed luma, and the pixels of an in-place
/// frame, are not kept behind a strip, so every strip uses the same rows of those planes.
MakeupParam stripOf(const MakeupParam& band, std::ptrdiff_t y, int rows) {
  MakeupParam strip = band;
  strip.yPlane += y * band.yStride;
  strip.uvPlane += y / 2 * band.uvStride;
  if (!band.inPlace) strip.outPlane += y * band.outStride;
  strip.rows = rows;
  return strip;
}

/// The smoothing of one band of a frame, strip by strip.
///
/// Out of place the box slides over the frame itself. In place the rows of this band are overwritten as it goes and
/// those of its neighbours at any time: rows around the band come from its saved rows, and rows that the box leaves
/// behind from a ring of unsmoothed copies.
class StripSmoother {
 public:
  StripSmoother(const FramePlan& plan, const BandTask& task)
      : p_(task.param),
        inPlace_(plan.inPlace),
        ringRows_(plan.ringRows()),
        entering_(boxRows(plan, task)),
        leaving_(entering_),
        slider_(static_cast<std::uint16_t*>(static_cast<void*>(p_.scratchA)),
                static_cast<std::uint32_t*>(static_cast<void*>(p_.scratchB)), p_.width & ~7, plan.reach,
                p_.softenLevel) {
    if (inPlace_) {
      leaving_.plane = p_.lineSums;
      leaving_.ringRows = ringRows_;
    }
    slider_.start(entering_);
  }

  void smooth(const MakeupParam& strip, std::int64_t y) {
    if (inPlace_) keepUnsmoothed(strip, y);
    slider_.smoothRows(entering_, leaving_, y, strip.rows, strip.yPlane, strip.meanPlane, p_.yStride);
  }

 private:
  static BoxRows boxRows(const FramePlan& plan, const BandTask& task) {
    const MakeupParam& p = task.param;
    const std::int64_t begin = plan.bandBegin(task.bandIndex);
    BoxRows rows{.plane = p.yPlane, .stride = p.yStride, .firstRow = -begin, .lastRow = plan.height - 1 - begin};
    if (!plan.inPlace) return rows;
    const std::uint8_t* saved = p.edgeRows;
    if (task.bandIndex != 0) {
      rows.above = saved;
      rows.aboveRows = plan.contextRows();
      saved += static_cast<std::ptrdiff_t>(rows.aboveRows) * p.yStride;
    }
    if (task.bandIndex != plan.bands - 1) {
      rows.below = saved;
      rows.belowRows = plan.contextRows();
      rows.belowFrom = p.rows - 1;
    }
    return rows;
  }

  void keepUnsmoothed(const MakeupParam& strip, std::int64_t y) {
    for (int k = 0; k < strip.rows; ++k) {
      const auto slot = static_cast<std::ptrdiff_t>((y + k) % ringRows_);
      std::memcpy(p_.lineSums + slot * p_.yStride, strip.yPlane + static_cast<std::ptrdiff_t>(k) * p_.yStride,
                  static_cast<std::size_t>(p_.width));
    }
  }

  const MakeupParam& p_;
  bool inPlace_;
  std::int64_t ringRows_;
  BoxRows entering_;
  BoxRows leaving_;
  BoxSlider slider_;
};

template <class StripFunction>
void forEachStrip(const MakeupParam& band, StripFunction stripFunction) {
  for (int y = 0; y < band.rows; y += kStripRows) {
    MakeupParam strip = stripOf(band, y, std::min(kStripRows, band.rows - y));
    stripFunction(strip, y);
  }
}

}  // namespace

void saveNeighbourRows(const FramePlan& plan, const unsigned char* luma, int band, unsigned char* savedRows) {
  const std::int64_t count = plan.contextRows();
  const auto copyRows = [&](std::int64_t first) {
    for (std::int64_t y = first; y < first + count; ++y, savedRows += plan.stride) {
      const std::int64_t row = std::clamp<std::int64_t>(y, 0, plan.height - 1);
      std::memcpy(savedRows, luma + static_cast<std::ptrdiff_t>(row) * plan.stride,
                  static_cast<std::size_t>(plan.width));
    }
  };
  if (band != 0) copyRows(plan.bandBegin(band) - count);
  if (band != plan.bands - 1) copyRows(plan.bandEnd(band) - 1);
}

void runBand(BandTask& task) {
  CFastEdgePreserved& filter = *task.owner;
  MakeupParam& p = task.param;
  if (task.frame == nullptr) {
    if (wantsSmoothing(p)) (filter.*task.stage)(&p, p.meanPlane);
    finishRows(filter, p, wantsSmoothing(p));
  } else if (wantsSmoothing(p)) {
    StripSmoother smoother(*task.frame, task);
    forEachStrip(p, [&](MakeupParam& strip, int y) {
      smoother.smooth(strip, y);
      finishRows(filter, strip, true);
    });
  } else {
    forEachStrip(p, [&](MakeupParam& strip, int) { finishRows(filter, strip, false); });
  }
}

}  // namespace vlvk

void* CFastEdgePreserved::thread_softskin_call(void* task) {
  vlvk::runBand(*static_cast<BandTask*>(task));
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
