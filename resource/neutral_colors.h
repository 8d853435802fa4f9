/// A host without colours of its own, for programs that measure and test.
#ifndef VLVK_RESOURCE_NEUTRAL_COLORS_H
#define VLVK_RESOURCE_NEUTRAL_COLORS_H

#include <vlvk/IBeautyResourceLoader.h>

namespace vlvk {

/// Leaves the filter's neutral colour picture as it is, so that colours go through the table.
class NeutralColors final : public IBeautyResourceLoader {
 public:
  int getResFromName(const char* /*name*/, unsigned char* /*dst*/) override { return 0; }
};

}  // namespace vlvk

#endif
