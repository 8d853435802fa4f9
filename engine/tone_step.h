/// The evening of skin tone, up to the chroma that row pairs mix in by the weight of skin.
///
/// What it reads is copied first: rows of luma, first and second of the chroma pairs next to each other, each at the
/// resolution of chroma. Bands then read each other's rows of the copy, whatever becomes of the frame.
#ifndef VLVK_ENGINE_TONE_STEP_H
#define VLVK_ENGINE_TONE_STEP_H

#include "engine/frame_job.h"

namespace vlvk {

/// Bytes of a row of the copy.
inline int toneRowBytes(const FrameJob& job) {
  return 3 * (job.columns() / 2);
}

/// Copies the rows of a band.
void copyToneRows(const FrameJob& job, int band);

/// Evens the chroma of a band into FrameJob::evenedRow; for when all bands are copied.
void evenTone(const FrameJob& job, int band);

}  // namespace vlvk

#endif
