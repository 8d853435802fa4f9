/// A colour resource for benchmarks.
#ifndef VLVK_BENCH_NEUTRAL_COLORS_H
#define VLVK_BENCH_NEUTRAL_COLORS_H

#include <vlvk/IBeautyResourceLoader.h>

namespace vlvk_bench {

/// Leaves the filter's neutral colour picture as it is, so that colours go through the table.
class NeutralColors final : public IBeautyResourceLoader {
 public:
  int getResFromName(const char* /*name*/, unsigned char* /*dst*/) override { return 0; }
};

}  // namespace vlvk_bench

#endif
