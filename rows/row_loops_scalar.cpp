/// Row loops for any processor, in plain C++.
#define VLVK_TARGET scalar

#include "simd/scalar.h"
// The loops are written in the vocabulary above.
#include "rows/all_rows.h"
