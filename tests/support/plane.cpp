/// See plane.h.
#include "tests/support/plane.h"

#include <algorithm>

namespace testing_support {

Plane::Plane(int width, int height, int stride, Guard guard)
    : width_(width),
      height_(height),
      stride_(stride),
      buffer_(width <= 0 || height <= 0 ? 0 : static_cast<std::size_t>(std::ptrdiff_t{height - 1} * stride + width),
              guard, kCanary) {}

Plane::Plane(int width, int height, int stride, Guard guard, Content content, Random& random)
    : Plane(width, height, stride, guard) {
  fill(content, data(), width, height, stride, random);
}

testing::AssertionResult sameBytes(const std::uint8_t* actual, const std::uint8_t* expected, std::size_t size,
                                   int stride) {
  std::size_t at = 0;
  while (at < size && actual[at] == expected[at])
    ++at;
  if (at == size) return testing::AssertionSuccess();
  const auto pitch = static_cast<std::size_t>(std::max(stride, 1));
  return testing::AssertionFailure() << "row " << at / pitch << ", byte " << at % pitch << ": got " << +actual[at]
                                     << ", expected " << +expected[at] << " (stride " << stride << ") ";
}

testing::AssertionResult sameBytes(const Plane& actual, const std::vector<std::uint8_t>& expected) {
  auto result = sameBytes(actual.data(), expected.data(), expected.size(), actual.stride());
  if (!result) result << "in a plane of " << actual.width() << " bytes x " << actual.height() << " rows ";
  return result;
}

}  // namespace testing_support
