/// The odd edge of a luma plane that was converted from pixels.
#ifndef VLVK_CONVERT_ODD_EDGE_H
#define VLVK_CONVERT_ODD_EDGE_H

#include <cstddef>

namespace vlvk {

/// The conversions leave an odd last column and row alone. Fills them with the nearest converted luma, so that a filter
/// reading the whole plane finds a picture there. A single column or row has none and stays as it is.
///
/// @param luma    `height` rows of `width` samples
/// @param stride  bytes between rows
void repeatOddEdge(unsigned char* luma, std::ptrdiff_t stride, int width, int height);

}  // namespace vlvk

#endif
