/// Construction, settings and destruction of the filter.
#include <vlvk/CFastEdgePreserved.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>

#include <vlvk/skin_tables.h>
#include <vlvk/timeb.h>
#include "base/arm_math.h"
#include "base/shared_field.h"
#include "kernels/skin_model.h"

namespace {

/// Frees a buffer and clears its pointer with a store that the compiler keeps: it drops plain ones to an object that is
/// being destroyed, whose memory may be its host's to look at.
void release(unsigned char*& buffer) {
  if (buffer == nullptr) return;
  std::free(buffer);
  vlvk::storeShared(buffer, static_cast<unsigned char*>(nullptr));
}

/// Stores a setting if it differs; returns whether it did.
bool change(int& setting, int value) {
  if (vlvk::loadShared(setting) == value) return false;
  vlvk::storeShared(setting, value);
  return true;
}

}  // namespace

CFastEdgePreserved::CFastEdgePreserved(int bands, IBeautyResourceLoader* resourceLoader)
    : threadCount(bands), skinCentre{vlvk::kSkinU, vlvk::kSkinV, vlvk::kSkinU}, skinTable{}, loader(resourceLoader) {
  calcSkinProbilityInterleavingTable8x8x4_8x8x2(skinTable, vlvk::kLivePlateauFactor, vlvk::kLiveSpread);
}

CFastEdgePreserved::~CFastEdgePreserved() {
  release(colorTable);
  release(toneCurve0);
  release(toneCurve1);
  release(toneCurve2);
  release(meanBuffer);
  release(scratchA);
  release(scratchB);
  release(lineSums);
  if (hasEdgeRows != 0) release(edgeRows);
  release(rgbaBuffer);
  release(taskBuffer);
}

void CFastEdgePreserved::put_whitenIntensity(int v) {
  if (change(whitenIntensity, v)) vlvk::storeShared(lookupDirty, true);
}

void CFastEdgePreserved::put_softenSkinIntensity(int v) {
  change(softenSkinIntensity, v);
}

void CFastEdgePreserved::put_colorAdjustIntensity(int v) {
  if (change(colorAdjustIntensity, v)) vlvk::storeShared(lookupDirty, true);
}

int CFastEdgePreserved::setOutputSize(int /*width*/, int /*height*/) {
  return -1;
}

int CFastEdgePreserved::diffTime(const timeb* start) {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  const auto seconds = vlvk::wrapSub(static_cast<std::int32_t>(now.tv_sec), static_cast<std::int32_t>(start->time));
  const auto milliseconds = static_cast<std::int32_t>(now.tv_nsec / 1000000);
  return vlvk::wrapSub(vlvk::wrapAdd(vlvk::wrapMul(seconds, 1000), milliseconds), start->millitm);
}
