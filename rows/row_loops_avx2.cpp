/// Row loops for x86-64 processors with AVX2. This file alone is compiled with AVX2 switched on.
#define VLVK_TARGET avx2

#include "simd/avx2.h"
// The loops are written in the vocabulary above.
#include "rows/all_rows.h"
