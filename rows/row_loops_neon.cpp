/// Row loops for ARMv7 with NEON and for AArch64.
#define VLVK_TARGET neon

#include "simd/neon.h"
// The loops are written in the vocabulary above.
#include "rows/all_rows.h"
