/// Time of every row loop of every target on rows that stay in the first-level cache. The width is that of the frame,
/// times are per pixel of the row or row pair.
#include <vlvk/skin_tables.h>
#include "bench/measure.h"
#include "bench/scene.h"
#include "filter/tone_curves.h"
#include "rows/pixel_formula.h"

namespace vlvk_bench {

namespace {

constexpr int kHalfSize = 23;
constexpr int kLevel = 600;

/// Rows of everything that the loops read and write.
struct Rows {
  explicit Rows(int width)
      : columns(width & ~15),
        luma(lumaPlane({columns, 64}, 0)),
        pixels(static_cast<std::size_t>(columns) * 8, 150),
        wideSums(static_cast<std::size_t>(columns) + 64, 330000),
        wideSquares(wideSums.size(), 50000000),
        longSquares(2 * wideSums.size()),
        sums(static_cast<std::size_t>(columns), 47 * 150),
        squares(sums.size(), 47 * 150 * 150),
        out(sums.size() * 3),
        outSums(sums.size()),
        outSquares(sums.size()),
        colors(std::size_t{64} * 64 * 64 * 4, 90) {
    unsigned char whitening[3][vlvk::kToneCurveSize];
    vlvk::buildToneCurves(50, whitening[0], whitening[1], whitening[2]);
    curves = vlvk::prepareCurves(whitening[0], whitening[1], whitening[2]);
    for (std::size_t i = 0; i < longSquares.size(); ++i)
      longSquares[i] = i * 22500;
    for (int i = 0; i < 48; ++i)
      weights[i] = static_cast<std::uint8_t>(64 - i);
  }

  const std::uint8_t* row(int i) const { return luma.data() + static_cast<std::ptrdiff_t>(i) * columns; }
  std::size_t count() const { return static_cast<std::size_t>(columns); }

  int columns;
  std::vector<std::uint8_t> luma;
  std::vector<std::uint8_t> pixels;
  std::vector<std::uint32_t> wideSums;
  std::vector<std::uint32_t> wideSquares;
  std::vector<std::uint64_t> longSquares;
  std::vector<std::uint16_t> sums;
  std::vector<std::uint32_t> squares;
  std::vector<std::uint8_t> out;
  std::vector<std::uint32_t> outSums;
  std::vector<std::uint32_t> outSquares;
  std::vector<std::uint8_t> colors;
  vlvk::ChannelCurves curves;
  std::uint8_t weights[64] = {};
};

/// One call of a row loop.
struct Loop {
  const char* name;
  int rowsAtOnce;
  void (*call)(const vlvk::RowLoops& loops, Rows& r);
};

vlvk::IntegralRows integralRows(const Rows& r) {
  return {r.wideSums.data(), r.longSquares.data(), r.wideSums.data() + 8, r.longSquares.data() + r.wideSums.size(), 15};
}

const Loop kLoops[] = {
    {"addRow", 1, [](const auto& l, Rows& r) { l.addRow(r.sums.data(), r.squares.data(), r.row(0), 1, r.columns); }},
    {"slideColumnSums", 1,
     [](const auto& l, Rows& r) { l.slideColumnSums(r.sums.data(), r.squares.data(), r.row(0), r.row(1), r.columns); }},
    {"smoothRow", 1,
     [](const auto& l, Rows& r) {
       l.smoothRow[vlvk::kAbsoluteContrast](r.sums.data(), r.squares.data(), r.columns, r.row(0), r.out.data(),
                                            kHalfSize, vlvk::makePixelFormula(kHalfSize, kLevel));
     }},
    {"smoothRowAnySums", 1,
     [](const auto& l, Rows& r) {
       l.smoothRowAnySums[vlvk::kAbsoluteContrast](r.sums.data(), r.squares.data(), r.columns, r.row(0), r.out.data(),
                                                   kHalfSize, vlvk::makePixelFormula(kHalfSize, kLevel));
     }},
    {"boxSumsRow", 1,
     [](const auto& l, Rows& r) {
       l.boxSumsRow(r.sums.data(), r.squares.data(), r.columns, r.outSums.data(), r.outSquares.data(), kHalfSize);
     }},
    {"boxSumsRowWide", 1,
     [](const auto& l, Rows& r) {
       l.boxSumsRowWide(r.wideSums.data(), r.wideSquares.data(), r.columns, r.outSums.data(), r.outSquares.data(),
                        kHalfSize);
     }},
    {"integralBoxSums", 1,
     [](const auto& l, Rows& r) {
       l.integralBoxSums(integralRows(r), r.columns, r.outSums.data(), r.outSquares.data());
     }},
    {"integralSmooth", 1,
     [](const auto& l, Rows& r) {
       l.integralSmooth(integralRows(r), r.columns, r.row(0), r.out.data(), vlvk::makePixelFormula(7, kLevel));
     }},
    {"blendStatistics", 1,
     [](const auto& l, Rows& r) {
       l.blendStatistics(r.row(0), r.out.data(), r.wideSums.data(), r.wideSquares.data(), r.columns,
                         vlvk::makePixelFormula(kHalfSize, kLevel));
     }},
    {"divideStatistics", 1,
     [](const auto& l, Rows& r) {
       l.divideStatistics(r.out.data(), r.wideSums.data(), r.wideSquares.data(), r.columns, 47 * 47, 600);
     }},
    {"blendRowPair", 2,
     [](const auto& l, Rows& r) {
       static constexpr std::uint8_t kCentre[2] = {120, 130};
       l.blendRowPair(r.row(0), r.row(1), r.row(2), r.row(3), r.out.data(), r.out.data() + r.columns, r.row(4),
                      r.columns, r.weights, kCentre);
     }},
    {"lookUpColors", 1,
     [](const auto& l, Rows& r) {
       l.lookUpColors[vlvk::kOpaque][vlvk::kRgba](r.pixels.data(), r.pixels.data(), r.columns, r.colors.data());
     }},
    {"applyCurves", 1,
     [](const auto& l, Rows& r) {
       l.applyCurves[vlvk::kOpaque](r.pixels.data(), r.pixels.data(), r.columns, r.curves);
     }},
    {"yuvToPixels", 2,
     [](const auto& l, Rows& r) {
       l.yuvToPixels[vlvk::kBt601Limited][vlvk::kVThenU][vlvk::kRgba](r.row(0), r.row(1), r.row(2), r.pixels.data(),
                                                                      r.pixels.data() + 4 * r.count(), r.columns);
     }},
    {"pixelsToYuv", 2,
     [](const auto& l, Rows& r) {
       l.pixelsToYuv[vlvk::kBt601Limited][vlvk::kVThenU][vlvk::kRgba](r.pixels.data(), r.pixels.data() + 4 * r.count(),
                                                                      r.out.data(), r.out.data() + r.columns,
                                                                      r.out.data() + 2 * r.columns, r.columns);
     }},
};

}  // namespace

void addRowLoopBenchmarks(const std::vector<Size>& sizes) {
  for (const Size size : sizes) {
    for (const vlvk::RowLoops* target : targets()) {
      for (const Loop& loop : kLoops) {
        add(std::string("row_loops/") + loop.name + "/" + target->name + "/" + std::to_string(size.width),
            [=, &loop](benchmark::State& state) {
              Rows rows(size.width);
              measure(state, rows.count() * static_cast<std::size_t>(loop.rowsAtOnce),
                      [&] { loop.call(*target, rows); });
            })
            ->Unit(benchmark::kMicrosecond);
      }
    }
  }
}

}  // namespace vlvk_bench
