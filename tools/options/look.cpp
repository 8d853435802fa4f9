/// See look.h.
#include "tools/options/look.h"

#include <algorithm>

namespace vlvk::tool {

int LookFilter::TableLoader::getResFromName(const char* /*name*/, unsigned char* dst) {
  std::copy(table_.begin(), table_.end(), dst);
  return 0;
}

LookFilter::LookFilter(const Look& look) : loader_(look.table), filter_(look.threads, &loader_) {
  filter_.put_whitenIntensity(look.whiten);
  filter_.put_softenSkinIntensity(look.soften);
  // Without a table, tone curves whiten at full precision; the table would round every colour to 6 bits.
  if (look.table.empty()) filter_.put_colorAdjustIntensity(0);
  filter_.radius = look.radius;
}

}  // namespace vlvk::tool
