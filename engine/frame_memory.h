/// The memory of a handle, kept from frame to frame.
#ifndef VLVK_ENGINE_FRAME_MEMORY_H
#define VLVK_ENGINE_FRAME_MEMORY_H

#include <cstddef>
#include <cstdint>

#include "base/checked_size.h"
#include "engine/frame_job.h"

namespace vlvk {

/// Bytes that grow and never shrink.
class GrowingBuffer {
 public:
  GrowingBuffer() = default;
  GrowingBuffer(const GrowingBuffer&) = delete;
  GrowingBuffer& operator=(const GrowingBuffer&) = delete;
  ~GrowingBuffer();

  /// Makes room for `needed` bytes, whose content is then unspecified but written. Returns false when there is no
  /// memory; the buffer is empty then.
  bool reserve(CheckedSize needed);

  std::uint8_t* data() const { return data_; }

 private:
  std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
};

/// The buffers of a frame.
class FrameMemory {
 public:
  /// Makes room for a frame whose plan and steps are decided, and puts the places into the job. Returns false when
  /// there is no memory.
  bool prepare(FrameJob& job);

 private:
  GrowingBuffer mean_;
  GrowingBuffer savedRows_;
  GrowingBuffer toneRows_;
  GrowingBuffer toneMeans_;
  GrowingBuffer scratch_;
};

}  // namespace vlvk

#endif
