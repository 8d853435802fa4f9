/// See frame_phases.h.
#include "filter/frame_phases.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <optional>

#include <vlvk/rgb_to_yuv.h>
#include "convert/odd_edge.h"
#include "filter/band_rows.h"
#include "filter/band_threads.h"
#include "filter/band_worker.h"
#include "filter/color_adjust.h"
#include "filter/frame_buffers.h"

namespace vlvk {

namespace {

using BandTask = CFastEdgePreserved::BandTask;
using MakeupParam = CFastEdgePreserved::MakeupParam;

/// Rows of pixels that a thread converts before it takes others. Even, for chroma.
constexpr int kStripOfPixels = 16;

/// The work order of one band.
MakeupParam bandParam(const CFastEdgePreserved& filter, const FramePlan& plan, const Frame& frame,
                      const FrameSettings& settings, int band) {
  const auto begin = static_cast<std::ptrdiff_t>(plan.bandBegin(band));
  const auto groups = static_cast<std::ptrdiff_t>(plan.groups());
  MakeupParam p{};
  p.rgbOrder = frame.rgbOrder;
  p.inPlace = plan.inPlace;
  p.yPlane = frame.luma + begin * plan.stride;
  p.yStride = plan.stride;
  p.uvPlane = frame.chroma + begin / 2 * frame.chromaStride;
  p.uvStride = frame.chromaStride;
  p.outStride = plan.inPlace ? 4 * plan.width : frame.outStride;
  p.outPlane = plan.inPlace ? filter.rgbaBuffer + static_cast<std::ptrdiff_t>(band) * kStripRows * p.outStride
                            : frame.out + begin * p.outStride;
  p.width = plan.width;
  p.rows = static_cast<int>(plan.bandEnd(band) - begin);
  p.radius = plan.reach - 1;
  p.whitenIntensity = settings.whitenIntensity;
  p.softenLevel = settings.softenLevel;
  p.colorAdjustIntensity = settings.colorAdjustIntensity;
  p.skinCentre = filter.skinCentre + (frame.rgbOrder ? 1 : 0);
  p.meanPlane = filter.meanBuffer + begin * plan.stride;
  p.scratchA = filter.scratchA + band * kSumBytes * groups;
  p.scratchB = filter.scratchB + band * kSquareBytes * groups;
  if (filter.lineSums != nullptr) {
    p.lineSums = filter.lineSums + band * static_cast<std::ptrdiff_t>(filter.lineSumsSize / plan.bands);
  }
  if (filter.edgeRows != nullptr) {
    p.edgeRows = filter.edgeRows + static_cast<std::ptrdiff_t>(plan.savedRowsBegin(band)) * plan.stride;
  }
  return p;
}

CFastEdgePreserved::Stage bandStage(const FramePlan& plan, int band) {
  if (band == plan.bands - 1) return &CFastEdgePreserved::FastEdgePreservedBottom;
  if (band == 0) return &CFastEdgePreserved::FastEdgePreservedTop;
  return &CFastEdgePreserved::FastEdgePreservedMid;
}

/// What the tasks of a frame's phases read.
struct FrameTasks {
  const FramePlan& plan;
  const Frame& frame;
  BandTask* bands;  ///< those that have rows
  std::optional<ChannelCurves> curves;
};

/// Strips of pixels that are to be converted; an odd last row belongs to the last one.
int stripCount(int height) {
  return std::max(height / 2 - 1, 0) / (kStripOfPixels / 2) + 1;
}

void convertStrip(const void* tasks, int strip) {
  const auto& [plan, frame, bands, curves] = *static_cast<const FrameTasks*>(tasks);
  const std::ptrdiff_t begin = static_cast<std::ptrdiff_t>(strip) * kStripOfPixels;
  const auto rows = static_cast<int>(strip == stripCount(plan.height) - 1 ? plan.height - begin : kStripOfPixels);
  unsigned char* luma = frame.luma + begin * plan.stride;
  const auto convert = frame.rgbOrder ? VKRGBAToNV21_NeonCall : VKBGRAToNV12_NeonCall;
  convert(frame.source.pixels + begin * frame.source.stride, frame.source.stride, luma, plan.stride,
          frame.chroma + begin / 2 * frame.chromaStride, frame.chromaStride, plan.width, rows);
  repeatOddEdge(luma, plan.stride, plan.width, rows);
}

void saveRows(const void* tasks, int i) {
  const auto& [plan, frame, bands, curves] = *static_cast<const FrameTasks*>(tasks);
  saveNeighbourRows(plan, frame.luma, bands[i].bandIndex, bands[i].param.edgeRows);
}

void finishBand(const void* tasks, int i) {
  const auto& [plan, frame, bands, curves] = *static_cast<const FrameTasks*>(tasks);
  runBand(plan, bands[i], curves);
}

/// Writes the orders of all bands that have rows. Returns how many there are.
int orderBands(CFastEdgePreserved& filter, const FramePlan& plan, const Frame& frame, const FrameSettings& settings,
               BandTask* orders) {
  int count = 0;
  for (int band = 0; band < plan.bands; ++band) {
    if (plan.width == 0 || plan.bandBegin(band) >= plan.bandEnd(band)) continue;
    new (&orders[count++])
        BandTask{&filter, bandStage(plan, band), band, bandParam(filter, plan, frame, settings, band)};
  }
  return count;
}

}  // namespace

void runFrame(CFastEdgePreserved& filter, const FramePlan& plan, const Frame& frame, const FrameSettings& settings) {
  const TaskMemory memory = taskMemory(filter, plan);
  const int bands = orderBands(filter, plan, frame, settings, memory.bands);
  if (bands == 0) return;
  Phase phases[3];
  int count = 0;
  if (frame.source.pixels != nullptr) phases[count++] = {convertStrip, stripCount(plan.height)};
  if (plan.inPlace && plan.reach > 0 && settings.softenLevel > 0) phases[count++] = {saveRows, bands};
  phases[count++] = {finishBand, bands};
  const PixelOrder order = frame.rgbOrder ? kRgba : kBgra;
  const FrameTasks tasks{plan, frame, memory.bands, curvesFor(filter, memory.bands->param, order)};
  runPhases(phases, count, &tasks, memory.threads, bands);
}

}  // namespace vlvk
