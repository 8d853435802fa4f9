/// See version.h.
#include <vlvk/version.h>

int vlvkVersion(void) {
  return VLVK_VERSION;
}
