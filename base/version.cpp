/// See version.h.
#include "base/version.h"

int vlvkVersion(void) {
  return VLVK_VERSION;
}
