/// Row loops for every x86-64 processor.
#define VLVK_TARGET sse2

#include "simd/sse2.h"
// The loops are written in the vocabulary above.
#include "rows/all_rows.h"
