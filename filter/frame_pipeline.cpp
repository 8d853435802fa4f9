/// The road of a frame up to its phases: lock, check, read the settings, get ready.
#include "filter/frame_pipeline.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include <vlvk/CFastEdgePreserved.h>
#include "base/arm_math.h"
#include "base/checked_size.h"
#include "base/mutex_lock.h"
#include "base/shared_field.h"
#include "filter/frame_buffers.h"
#include "filter/frame_phases.h"
#include "filter/frame_plan.h"

namespace {

using vlvk::CheckedSize;
using vlvk::Frame;
using vlvk::FramePlan;

/// A frame in place has rows of 4-byte pixels, whose stride is an int.
constexpr int kWidestInPlace = std::numeric_limits<int>::max() / 4;

vlvk::FrameSettings readSettings(const CFastEdgePreserved& filter) {
  return {vlvk::loadShared(filter.whitenIntensity),
          vlvk::wrapMul(600, vlvk::loadShared(filter.softenSkinIntensity)) / 1000,
          vlvk::loadShared(filter.colorAdjustIntensity)};
}

/// The caller holds the lock or keeps frames apart.
int processFrame(CFastEdgePreserved& filter, const Frame& frame, int width, int height, int stride) {
  const int bands = vlvk::loadShared(filter.threadCount);
  if (width < 0 || height < 0 || stride < width || bands < 1) return -1;
  if (frame.out == nullptr && width > kWidestInPlace) return -1;
  if (frame.rgbOrder != filter.rgbOrder) {
    filter.rgbOrder = frame.rgbOrder;
    vlvk::storeShared(filter.lookupDirty, true);
  }
  // Before the settings: a change that comes in between marks the tables again.
  const bool settingsChanged = vlvk::exchangeShared(filter.lookupDirty, false);
  const vlvk::FrameSettings settings = readSettings(filter);
  const int reach = std::max(vlvk::roundUpTo8(vlvk::loadShared(filter.radius)), 0);
  const FramePlan plan{width, height, stride, reach, bands, frame.out == nullptr};

  if (!vlvk::prepareFrame(filter, plan, settingsChanged, settings.whitenIntensity)) return -1;
  vlvk::runFrame(filter, plan, frame, settings);
  return 0;
}

}  // namespace

int vlvk::processPixels(CFastEdgePreserved& filter, const PixelSource& source, unsigned char* luma, int lumaStride,
                        int width, int height, unsigned char* out, int outStride, bool rgbOrder) {
  unsigned char* chroma = luma + static_cast<std::ptrdiff_t>(lumaStride) * height;
  return processFrame(filter, {luma, chroma, lumaStride, out, outStride, rgbOrder, source}, width, height, lumaStride);
}

int CFastEdgePreserved::processVideo(unsigned char* y, int /*yStride*/, unsigned char* uv, int /*uvStride*/, int width,
                                     int height, unsigned char* out, int outStride, bool order) {
  const vlvk::MutexLock lock(mutex);
  return processVideoInternal(y, width, uv, width, width, height, out, outStride, order);
}

int CFastEdgePreserved::processVideoInternal(unsigned char* y, int yStride, unsigned char* uv, int uvStride, int width,
                                             int height, unsigned char* out, int outStride, bool order) {
  if (y == nullptr || uv == nullptr) return -1;
  return processFrame(*this, {y, uv, uvStride, out, outStride, order, {}}, width, height, yStride);
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
  return vlvk::processPixels(*this, {bgra, stride}, luma, aligned, width, height, out, outStride, false);
}
