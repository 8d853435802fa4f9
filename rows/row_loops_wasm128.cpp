/// Row loops for WebAssembly with 128-bit instructions.
#define VLVK_TARGET wasm128

#include "simd/wasm128.h"
// The loops are written in the vocabulary above.
#include "rows/all_rows.h"
