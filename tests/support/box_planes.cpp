/// See box_planes.h.
#include "tests/support/box_planes.h"

#include <cstddef>

namespace testing_support {

std::ostream& operator<<(std::ostream& out, const BoxCase& c) {
  return out << "content " << static_cast<int>(c.content) << ", " << c.width << " x " << c.height << ", stride "
             << c.stride << ", radius " << c.radius << ", level " << c.level << ' ';
}

BoxCase randomBoxCase(int leastWidth, int widest, Random& random) {
  BoxCase c{};
  c.content = random.pick(kLumaContents);
  c.width = leastWidth + random.between(0, random.between(0, 7) == 0 ? widest : random.pick({1, 16, 60}));
  c.stride = c.width + random.pick({0, 0, 1, 5, 64});
  c.level = random.pick(kLevels);
  c.guard = random.pick({Guard::kBehind, Guard::kBefore});
  c.shift = random.pick({0, 0, 1, 3});
  return c;
}

naive::Rows rowsOf(const Plane& plane, int origin) {
  return {[&plane, origin](long long i) { return plane.row(origin + static_cast<int>(i)); }, -origin,
          plane.height() - 1 - origin};
}

Band cutBand(const Plane& plane, int above, int below, int leastRows, Guard guard, Random& random) {
  const int last = plane.height() - below;
  const bool room = last - leastRows >= above;
  const int first = room && above > 0 ? random.between(above, last - leastRows) : above;
  const int rows = !room ? 0 : below > 0 ? random.between(leastRows, last - first) : last - first;
  Band band{first, rows, above, {plane.width(), room ? above + rows + below : 0, plane.stride(), guard}};
  for (int y = 0; y < band.readable.height(); ++y)
    std::copy_n(plane.row(first - above + y), plane.width(), band.readable.row(y));
  band.readable.makeReadOnly();
  return band;
}

testing::AssertionResult StatisticsPlanes::hold(const naive::Statistics& expected, int firstRow) const {
  const auto check = [firstRow](const Plane& actual, const std::vector<std::uint32_t>& values) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(values.data());
    return holds(actual, [&](int x, int y) { return bytes[(firstRow + y) * actual.width() + x]; });
  };
  auto result = check(sums_, expected.sums) << "(sums) ";
  if (result) result = check(squares_, expected.squares) << "(squares) ";
  return result << "from row " << firstRow << ' ';
}

}  // namespace testing_support
