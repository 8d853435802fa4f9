/// The compiled sets of row loops, one for each file row_loops_*.cpp that this build has.
#ifndef VLVK_ROWS_TARGET_SETS_H
#define VLVK_ROWS_TARGET_SETS_H

#include "rows/row_loops.h"

namespace vlvk {

#if defined(__x86_64__)
namespace avx2 {
extern const RowLoops kRowLoops;
}
namespace sse2 {
extern const RowLoops kRowLoops;
}
#elif defined(__ARM_NEON)
namespace neon {
extern const RowLoops kRowLoops;
}
#elif defined(__wasm_simd128__)
namespace wasm128 {
extern const RowLoops kRowLoops;
}
#endif
namespace scalar {
extern const RowLoops kRowLoops;
}

}  // namespace vlvk

#endif
