/// See frame_memory.h.
#include "engine/frame_memory.h"

#include <cstdlib>

#include "engine/tone_step.h"

namespace vlvk {

GrowingBuffer::~GrowingBuffer() {
  std::free(data_);
}

bool GrowingBuffer::reserve(CheckedSize needed) {
  if (needed.fits() && needed.bytes() <= size_) return true;
  std::free(data_);
  data_ = nullptr;
  size_ = 0;
  if (!needed.fits()) return false;
  data_ = static_cast<std::uint8_t*>(std::calloc(needed.bytes(), 1));
  if (data_ == nullptr) return false;
  size_ = needed.bytes();
  return true;
}

bool FrameMemory::prepare(FrameJob& job) {
  const FramePlan& plan = job.plan;
  const CheckedSize meanBytes = job.smoothsFirst ? CheckedSize(plan.width) * plan.height : CheckedSize(0);
  const CheckedSize savedBytes =
      plan.inPlace ? CheckedSize(plan.contextRows()) * 2 * plan.stride * (plan.bands - 1) : CheckedSize(0);
  const CheckedSize scratchBytes = CheckedSize(plan.width) * scratchBytesPerColumn(job) * plan.bands;
  const CheckedSize toneBytes = job.evens ? CheckedSize(toneRowBytes(job)) * job.chromaRows() : CheckedSize(0);
  const CheckedSize evenedBytes = job.evens ? CheckedSize(plan.width) * job.chromaRows() : CheckedSize(0);
  if (!mean_.reserve(meanBytes) || !savedRows_.reserve(savedBytes) || !scratch_.reserve(scratchBytes) ||
      !toneRows_.reserve(toneBytes) || !toneMeans_.reserve(evenedBytes)) {
    return false;
  }
  job.mean = mean_.data();
  job.savedRows = savedRows_.data();
  job.toneRows = toneRows_.data();
  job.toneMeans = toneMeans_.data();
  job.scratch = scratch_.data();
  return true;
}

}  // namespace vlvk
