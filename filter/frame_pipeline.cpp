/// The road of a frame: lock, get ready, cut into bands, run the bands on threads, join them.
#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/rgb_to_yuv.h>
#include "base/arm_math.h"
#include "base/checked_size.h"
#include "base/mutex_lock.h"
#include "base/shared_field.h"
#include "convert/odd_edge.h"
#include "filter/band_rows.h"
#include "filter/band_worker.h"
#include "filter/frame_buffers.h"
#include "filter/frame_plan.h"

namespace {

using vlvk::BandWork;
using vlvk::CheckedSize;
using vlvk::FramePlan;

/// A frame in place has rows of 4-byte pixels, whose stride is an int.
constexpr int kWidestInPlace = std::numeric_limits<int>::max() / 4;

/// A caller's frame, and where its pixels go; `out` is null in place.
struct Frame {
  unsigned char* luma;
  unsigned char* chroma;
  int chromaStride;
  unsigned char* out;
  int outStride;
  bool rgbOrder;
};

/// The settings that workers need, as the frame found them.
struct Settings {
  int whitenIntensity;
  int softenLevel;
  int colorAdjustIntensity;

  explicit Settings(const CFastEdgePreserved& filter)
      : whitenIntensity(vlvk::loadShared(filter.whitenIntensity)),
        softenLevel(vlvk::wrapMul(600, vlvk::loadShared(filter.softenSkinIntensity)) / 1000),
        colorAdjustIntensity(vlvk::loadShared(filter.colorAdjustIntensity)) {}
};

/// The work order of one band.
CFastEdgePreserved::MakeupParam bandParam(const CFastEdgePreserved& filter, const FramePlan& plan, const Frame& frame,
                                          const Settings& settings, int band) {
  const auto begin = static_cast<std::ptrdiff_t>(plan.bandBegin(band));
  const auto groups = static_cast<std::ptrdiff_t>(plan.groups());
  CFastEdgePreserved::MakeupParam p{};
  p.rgbOrder = frame.rgbOrder;
  p.inPlace = plan.inPlace;
  p.yPlane = frame.luma + begin * plan.stride;
  p.yStride = plan.stride;
  p.uvPlane = frame.chroma + begin / 2 * frame.chromaStride;
  p.uvStride = frame.chromaStride;
  p.outStride = plan.inPlace ? 4 * plan.width : frame.outStride;
  p.outPlane = plan.inPlace ? filter.rgbaBuffer + static_cast<std::ptrdiff_t>(band) * vlvk::kStripRows * p.outStride
                            : frame.out + begin * p.outStride;
  p.width = plan.width;
  p.rows = static_cast<int>(plan.bandEnd(band) - begin);
  p.radius = plan.reach - 1;
  p.whitenIntensity = settings.whitenIntensity;
  p.softenLevel = settings.softenLevel;
  p.colorAdjustIntensity = settings.colorAdjustIntensity;
  p.skinCentre = filter.skinCentre + (frame.rgbOrder ? 1 : 0);
  p.meanPlane = filter.meanBuffer + begin * plan.stride;
  p.scratchA = filter.scratchA + band * vlvk::kSumBytes * groups;
  p.scratchB = filter.scratchB + band * vlvk::kSquareBytes * groups;
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

/// The bands of a frame on their way; which was taken last is counted by all threads.
struct FrameBands {
  BandWork* work;
  int count;
  std::atomic<int> next;
};

/// Start routine of a worker thread: takes bands until there are no more.
void* takeBands(void* argument) {
  auto& frame = *static_cast<FrameBands*>(argument);
  for (int i = frame.next++; i < frame.count; i = frame.next++)
    vlvk::runBand(*frame.work[i].plan, frame.work[i].task);
  return nullptr;
}

/// Runs every band on whichever thread is free, this one included. A thread for each is started; one that gets a
/// processor late finds its band done by another.
void runBands(BandWork* work, int count) {
  FrameBands frame{work, count, 0};
  for (int i = 0; i < count; ++i) {
    work[i].started = pthread_create(&work[i].thread, nullptr, takeBands, &frame) == 0;
  }
  takeBands(&frame);
  for (int i = 0; i < count; ++i) {
    if (work[i].started) pthread_join(work[i].thread, nullptr);
  }
}

/// Writes the orders of all bands that have rows, then runs them.
void processBands(CFastEdgePreserved& filter, const FramePlan& plan, const Frame& frame, const Settings& settings) {
  auto* work = static_cast<BandWork*>(static_cast<void*>(filter.taskBuffer));
  const bool savesRows = plan.inPlace && plan.reach > 0 && settings.softenLevel > 0;
  int count = 0;
  for (int band = 0; band < plan.bands; ++band) {
    if (plan.width == 0 || plan.bandBegin(band) >= plan.bandEnd(band)) continue;
    const auto param = bandParam(filter, plan, frame, settings, band);
    if (savesRows) vlvk::saveNeighbourRows(plan, frame.luma, band, param.edgeRows);
    new (&work[count]) BandWork{{&filter, bandStage(plan, band), band, param}, &plan, {}, false};
    ++count;
  }
  runBands(work, count);
}

}  // namespace

int CFastEdgePreserved::processVideo(unsigned char* y, int /*yStride*/, unsigned char* uv, int /*uvStride*/, int width,
                                     int height, unsigned char* out, int outStride, bool order) {
  const vlvk::MutexLock lock(mutex);
  return processVideoInternal(y, width, uv, width, width, height, out, outStride, order);
}

int CFastEdgePreserved::processVideoInternal(unsigned char* y, int yStride, unsigned char* uv, int uvStride, int width,
                                             int height, unsigned char* out, int outStride, bool order) {
  const int bands = vlvk::loadShared(threadCount);
  if (y == nullptr || uv == nullptr || width < 0 || height < 0 || yStride < width || bands < 1) return -1;
  if (out == nullptr && width > kWidestInPlace) return -1;
  if (order != rgbOrder) {
    rgbOrder = order;
    vlvk::storeShared(lookupDirty, true);
  }
  // Before the settings: a change that comes in between marks the tables again.
  const bool settingsChanged = vlvk::exchangeShared(lookupDirty, false);
  const Settings settings(*this);
  const int reach = std::max(vlvk::roundUpTo8(vlvk::loadShared(radius)), 0);
  const FramePlan plan{width, height, yStride, reach, bands, out == nullptr};

  if (!vlvk::prepareFrame(*this, plan, settingsChanged, settings.whitenIntensity)) return -1;
  processBands(*this, plan, {y, uv, uvStride, out, outStride, order}, settings);
  return 0;
}

int CFastEdgePreserved::processBGRAVideo(unsigned char* bgra, int width, int height, int stride, unsigned char* out,
                                         int outStride) {
  const vlvk::MutexLock lock(mutex);
  if (bgra == nullptr || width < 0 || height < 0 || vlvk::loadShared(threadCount) < 1) return -1;
  const int aligned = vlvk::roundUpTo8(width);
  const CheckedSize scratchBytes = CheckedSize(aligned) * height + CheckedSize(aligned) * ((height + 1LL) / 2);
  if (aligned < width || !vlvk::resizeBuffer(nv12Scratch, nv12ScratchSize, scratchBytes)) return -1;
  // An empty picture still needs planes that are there.
  unsigned char none = 0;
  unsigned char* luma = nv12Scratch != nullptr ? nv12Scratch : &none;
  unsigned char* chroma = luma + static_cast<std::ptrdiff_t>(aligned) * height;
  VKBGRAToNV12_NeonCall(bgra, stride, luma, aligned, chroma, aligned, width, height);
  vlvk::repeatOddEdge(luma, aligned, width, height);
  return processVideoInternal(luma, aligned, chroma, aligned, width, height, out, outStride, false);
}
