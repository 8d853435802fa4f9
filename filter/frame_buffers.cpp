/// See frame_buffers.h.
#include "filter/frame_buffers.h"

#include <cstdint>
#include <cstdlib>

#include "base/arm_math.h"
#include "base/shared_field.h"
#include "filter/color_table.h"

namespace vlvk {

namespace {

void rememberGeometry(CFastEdgePreserved& filter, const FramePlan& plan) {
  filter.cachedWidth = plan.width;
  filter.cachedHeight = plan.height;
  filter.cachedStride = plan.stride;
  filter.cachedRadius = plan.reach - 1;
  filter.cachedThreads = plan.bands;
}

bool resizeFrameBuffers(CFastEdgePreserved& filter, const FramePlan& plan) {
  const CheckedSize bands = plan.bands;
  const CheckedSize groups = plan.groups();
  const CheckedSize context = plan.reach > 0 ? plan.contextRows() : 0;
  const CheckedSize frameBytes = CheckedSize(plan.height) * plan.stride;
  const CheckedSize lineBytes = context * 4 * plan.width * bands;
  const CheckedSize edgeBytes = plan.inPlace ? context * 2 * plan.stride * (plan.bands - 1) : CheckedSize(0);
  const CheckedSize pixelBytes = plan.inPlace ? bands * kStripRows * 4 * plan.width : CheckedSize(0);
  const CheckedSize taskBytes = bands * (sizeof(CFastEdgePreserved::BandTask) + sizeof(BandThread));
  return resizeBuffer(filter.meanBuffer, filter.meanBufferSize, frameBytes) &&
         resizeBuffer(filter.scratchA, filter.scratchASize, bands * kSumBytes * groups) &&
         resizeBuffer(filter.scratchB, filter.scratchBSize, bands * kSquareBytes * groups) &&
         resizeBuffer(filter.lineSums, filter.lineSumsSize, lineBytes) &&
         resizeBuffer(filter.edgeRows, filter.edgeRowsSize, edgeBytes) &&
         resizeBuffer(filter.rgbaBuffer, filter.rgbaBufferSize, pixelBytes) &&
         resizeBuffer(filter.taskBuffer, filter.taskBufferSize, taskBytes);
}

}  // namespace

TaskMemory taskMemory(const CFastEdgePreserved& filter, const FramePlan& plan) {
  static_assert(alignof(BandThread) <= alignof(CFastEdgePreserved::BandTask));
  auto* bands = static_cast<CFastEdgePreserved::BandTask*>(static_cast<void*>(filter.taskBuffer));
  return {bands, static_cast<BandThread*>(static_cast<void*>(bands + plan.bands))};
}

bool resizeBuffer(unsigned char*& buffer, std::size_t& size, CheckedSize needed) {
  if (needed.fits() && needed.bytes() == size) return true;
  std::free(buffer);
  buffer = nullptr;
  size = 0;
  if (!needed.fits()) return false;
  if (needed.bytes() == 0) return true;
  // Zeroed, so that columns and rows which no step writes have a value.
  buffer = static_cast<unsigned char*>(std::calloc(needed.bytes(), 1));
  if (buffer == nullptr) return false;
  size = needed.bytes();
  return true;
}

bool prepareFrame(CFastEdgePreserved& filter, const FramePlan& plan, bool settingsChanged, int whitenIntensity) {
  TableUpdate tables(filter, settingsChanged);
  const bool ready = tables.allocate() && resizeFrameBuffers(filter, plan);
  filter.hasEdgeRows = plan.inPlace || filter.edgeRows != nullptr ? 1 : 0;
  if (!ready) {
    if (settingsChanged) storeShared(filter.lookupDirty, true);
    return false;
  }
  rememberGeometry(filter, plan);
  tables.apply(whitenIntensity);
  return true;
}

}  // namespace vlvk

int CFastEdgePreserved::calcCharacteristic(int width, int height, int stride, int r, bool inPlace) {
  const int bands = vlvk::loadShared(threadCount);
  if (width < 0 || height < 0 || bands < 1) return -1;
  const int reach = r < 0 ? 0 : vlvk::roundUpTo8(r);
  const bool settingsChanged = vlvk::exchangeShared(lookupDirty, false);
  const int whiten = vlvk::loadShared(whitenIntensity);
  return vlvk::prepareFrame(*this, {width, height, stride, reach, bands, inPlace}, settingsChanged, whiten) ? 0 : -1;
}
