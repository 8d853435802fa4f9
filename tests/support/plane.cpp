/// See plane.h.
#include "tests/support/plane.h"

#include <algorithm>
#include <cstring>

namespace testing_support {
namespace {

std::size_t byteCount(int width, int height, int stride) {
  if (width <= 0 || height <= 0) return 0;
  return static_cast<std::size_t>(height - 1) * static_cast<std::size_t>(stride) + static_cast<std::size_t>(width);
}

}  // namespace

Plane::Plane(int width, int height, int stride, Guard guard)
    : width_(width), height_(height), stride_(stride), buffer_(byteCount(width, height, stride), guard, kCanary) {}

Plane::Plane(int width, int height, int stride, Guard guard, Content content, Random& random)
    : Plane(width, height, stride, guard) {
  fill(content, data(), width, height, stride, random);
}

testing::AssertionResult sameBytes(const std::uint8_t* actual, const std::uint8_t* expected, std::size_t size,
                                   int stride) {
  if (size == 0 || std::memcmp(actual, expected, size) == 0) return testing::AssertionSuccess();
  std::size_t first = size;
  std::size_t different = 0;
  for (std::size_t i = size; i-- > 0;) {
    if (actual[i] == expected[i]) continue;
    first = i;
    ++different;
  }
  const std::size_t pitch = static_cast<std::size_t>(std::max(stride, 1));
  return testing::AssertionFailure() << "row " << first / pitch << ", byte " << first % pitch << ": got "
                                     << static_cast<int>(actual[first]) << ", expected "
                                     << static_cast<int>(expected[first]) << " (" << different << " of " << size
                                     << " bytes differ; stride " << stride << ") ";
}

testing::AssertionResult sameBytes(const Plane& actual, const std::vector<std::uint8_t>& expected) {
  auto result = sameBytes(actual.data(), expected.data(), expected.size(), actual.stride());
  if (!result) result << "in a plane of " << actual.width() << " bytes x " << actual.height() << " rows ";
  return result;
}

}  // namespace testing_support
