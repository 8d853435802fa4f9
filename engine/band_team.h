/// Threads for the bands of a frame.
#ifndef VLVK_ENGINE_BAND_TEAM_H
#define VLVK_ENGINE_BAND_TEAM_H

namespace vlvk {

/// How many bands a frame has where the settings leave it open: the processors that are there, at most 8.
int defaultBands();

/// Runs `task(context, band)` for band = 0 .. bands - 1, each on a thread of its own, the last on the calling one, and
/// returns when all are done. The calling thread takes over what no thread can be had for.
///
/// @param bands  1 to kMostBands
void runBands(int bands, void (*task)(const void* context, int band), const void* context);

inline constexpr int kMostBands = 64;

}  // namespace vlvk

#endif
