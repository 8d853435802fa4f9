/// The handle: settings and table that any thread may change, and frames that take turns.
#include <pthread.h>

#include <cstdlib>
#include <new>
#include <utility>

#include <vlvk/makeup.h>
#include "base/mutex_lock.h"
#include "engine/band_team.h"
#include "engine/color_step.h"
#include "engine/frame_job.h"
#include "engine/frame_memory.h"
#include "engine/frame_view.h"
#include "engine/job_plan.h"
#include "engine/settings.h"
#include "resource/color_picture.h"
#include "resource/resource_file.h"

namespace {

using vlvk::FrameJob;
using vlvk::FrameView;

using BandStep = void (*)(const FrameJob& job, int band);

/// Takes a step with every band, and waits until all have taken it.
void eachBand(vlvk::BandTeam& team, const FrameJob& job, BandStep step) {
  struct Call {
    const FrameJob& job;
    BandStep step;
  };
  const Call call{job, step};
  const auto run = [](const void* context, int band) {
    const auto& c = *static_cast<const Call*>(context);
    c.step(c.job, band);
  };
  team.run(job.plan.bands, run, &call);
}

}  // namespace

struct VlvkMakeup {
  // Changed on any thread, taken over by the next frame.
  pthread_mutex_t changes = PTHREAD_MUTEX_INITIALIZER;
  VlvkSettings settings;
  vlvk::Memory newPicture;  ///< of the table, if `pictureChanged`; null: none
  bool pictureChanged = false;

  // Of the frame in work.
  pthread_mutex_t frames = PTHREAD_MUTEX_INITIALIZER;
  vlvk::Memory picture;
  bool tablesOutdated = false;  ///< `picture` is not in the colour tables yet
  vlvk::KeptSkinWeights skin;
  vlvk::ColorStep colors;
  vlvk::FrameMemory memory;
  vlvk::BandTeam team;

  explicit VlvkMakeup(const VlvkSettings& s) : settings(s) {}
  VlvkMakeup(const VlvkMakeup&) = delete;
  VlvkMakeup& operator=(const VlvkMakeup&) = delete;
  ~VlvkMakeup() {
    pthread_mutex_destroy(&changes);
    pthread_mutex_destroy(&frames);
  }

  /// Settings and picture as a frame finds them.
  VlvkSettings takeChanges() {
    const vlvk::MutexLock lock(changes);
    if (pictureChanged) {
      picture = std::move(newPicture);
      tablesOutdated = true;
      pictureChanged = false;
    }
    return settings;
  }

  VlvkResult process(const FrameView& source, const FrameView& target, const vlvk::MaskView& mask);
};

VlvkResult VlvkMakeup::process(const FrameView& source, const FrameView& target, const vlvk::MaskView& mask) {
  const vlvk::MutexLock lock(frames);
  const VlvkSettings now = takeChanges();
  team.limit(vlvk::threadsFor(now));
  const bool changesColors = vlvk::ColorStep::isNeeded(now.whitening, picture.get());
  FrameJob job = vlvk::planJob(source, target, mask, now, skin, changesColors ? &colors : nullptr);
  if (vlvk::leavesFrame(job)) return VLVK_OK;
  if (!memory.prepare(job)) return VLVK_NO_MEMORY;
  if (changesColors) {
    if (!colors.prepare(now.whitening, picture.get(), tablesOutdated, job.whitensSkin, job.pixelOrder))
      return VLVK_NO_MEMORY;
    tablesOutdated = false;
  }
  if (vlvk::needsPreparing(job)) {
    if (job.copiesLuma || job.evens) {
      eachBand(team, job, vlvk::prepareBand);
    } else {  // mere copies: not worth a thread
      for (int band = 0; band < job.plan.bands; ++band)
        vlvk::prepareBand(job, band);
    }
  }
  eachBand(team, job, vlvk::runBand);
  return VLVK_OK;
}

VlvkResult vlvkMakeupCreate(VlvkMakeup** makeup, const VlvkSettings* settings) {
  if (makeup == nullptr) return VLVK_NULL_POINTER;
  *makeup = nullptr;
  VlvkSettings read = vlvk::defaultSettings();
  if (settings != nullptr) {
    const VlvkResult result = vlvk::readSettings(settings, read);
    if (result != VLVK_OK) return result;
  }
  void* memory = std::malloc(sizeof(VlvkMakeup));
  if (memory == nullptr) return VLVK_NO_MEMORY;
  *makeup = new (memory) VlvkMakeup(read);
  return VLVK_OK;
}

void vlvkMakeupDestroy(VlvkMakeup* makeup) {
  if (makeup == nullptr) return;
  makeup->~VlvkMakeup();
  std::free(makeup);
}

VlvkResult vlvkMakeupConfigure(VlvkMakeup* makeup, const VlvkSettings* settings) {
  if (makeup == nullptr) return VLVK_NULL_POINTER;
  VlvkSettings read{};
  const VlvkResult result = vlvk::readSettings(settings, read);
  if (result != VLVK_OK) return result;
  const vlvk::MutexLock lock(makeup->changes);
  makeup->settings = read;
  return VLVK_OK;
}

VlvkResult vlvkMakeupSetTable(VlvkMakeup* makeup, const void* file, size_t bytes) {
  if (makeup == nullptr) return VLVK_NULL_POINTER;
  vlvk::Memory picture;
  if (file != nullptr) {
    const auto* header = static_cast<const unsigned char*>(file);
    constexpr std::size_t kWhole = vlvk::kResourceHeaderSize + vlvk::kColorPictureSize;
    if (bytes < kWhole || vlvk::resourcePayloadSize(header) != static_cast<std::int32_t>(vlvk::kColorPictureSize)) {
      return VLVK_BAD_TABLE;
    }
    picture = vlvk::Memory(static_cast<unsigned char*>(std::malloc(vlvk::kColorPictureSize)));
    if (picture == nullptr) return VLVK_NO_MEMORY;
    vlvk::scrambleResource(header + vlvk::kResourceHeaderSize, vlvk::kColorPictureSize, picture.get());
  }
  const vlvk::MutexLock lock(makeup->changes);
  std::swap(makeup->newPicture, picture);
  makeup->pictureChanged = true;
  return VLVK_OK;
}

VlvkResult vlvkMakeupProcess(VlvkMakeup* makeup, const VlvkFrame* source, const VlvkFrame* target,
                             const VlvkMask* mask) {
  if (makeup == nullptr) return VLVK_NULL_POINTER;
  vlvk::Reason noReason(nullptr, 0);
  FrameView from{};
  FrameView to{};
  VlvkResult result = vlvk::checkFrame(source, from, noReason);
  if (result == VLVK_OK) result = vlvk::checkFrame(target, to, noReason);
  if (result == VLVK_OK) result = vlvk::checkPair(from, to);
  vlvk::MaskView limits{};
  if (result == VLVK_OK) result = vlvk::checkMask(mask, to, limits);
  return result == VLVK_OK ? makeup->process(from, to, limits) : result;
}
