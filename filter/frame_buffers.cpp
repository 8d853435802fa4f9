/// See frame_buffers.h.
#include "filter/frame_buffers.h"

#include <cstdint>
#include <cstdlib>

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

}  // namespace

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

bool resizeFrameBuffers(CFastEdgePreserved& filter, const FramePlan& plan) {
  const CheckedSize width = plan.width;
  const CheckedSize height = plan.height;
  const CheckedSize stride = plan.stride;
  const CheckedSize bands = plan.bands;
  const CheckedSize groups = (plan.width + std::int64_t{7}) / 8;
  const CheckedSize context = plan.contextRows();
  const CheckedSize none = 0;
  const bool smooth = plan.reach > 0;

  const CheckedSize lineBytes = larger(context * 4 * width, CheckedSize(plan.ringRows()) * stride) * bands;
  const CheckedSize edgeBytes = context * 2 * stride * (plan.bands - 1);
  const bool resized = resizeBuffer(filter.meanBuffer, filter.meanBufferSize, height * stride) &&
                       resizeBuffer(filter.scratchA, filter.scratchASize, bands * 16 * groups) &&
                       resizeBuffer(filter.scratchB, filter.scratchBSize, bands * 32 * groups) &&
                       resizeBuffer(filter.lineSums, filter.lineSumsSize, smooth ? lineBytes : none) &&
                       resizeBuffer(filter.edgeRows, filter.edgeRowsSize, smooth && plan.inPlace ? edgeBytes : none) &&
                       resizeBuffer(filter.taskBuffer, filter.taskBufferSize, bands * sizeof(BandWork));
  filter.hasEdgeRows = plan.inPlace ? 1 : 0;
  rememberGeometry(filter, plan);
  return resized;
}

bool prepareFrame(CFastEdgePreserved& filter, const FramePlan& plan, bool settingsChanged, int whitenIntensity) {
  TableUpdate tables(filter, settingsChanged);
  if (!tables.allocate() || !resizeFrameBuffers(filter, plan)) return false;
  tables.apply(whitenIntensity);
  return true;
}

}  // namespace vlvk

int CFastEdgePreserved::calcCharacteristic(int width, int height, int stride, int r, bool inPlace) {
  const int bands = vlvk::loadShared(threadCount);
  if (width < 0 || height < 0 || bands < 1) return -1;
  const int reach = r < 0 ? 0 : vlvk::roundUpTo8(r);
  const bool settingsChanged = vlvk::exchangeShared(lookupDirty, false);
  if (vlvk::prepareFrame(*this, {width, height, stride, reach, bands, inPlace}, settingsChanged,
                         vlvk::loadShared(whitenIntensity))) {
    return 0;
  }
  if (settingsChanged) vlvk::storeShared(lookupDirty, true);
  return -1;
}
