/// The same box sums and box sums of squares by OpenCV's functions, on one thread, for comparison in the same run.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "bench/luma_plane.h"

namespace {

using namespace vlvk_bench;

/// The plane without its context rows; edges are repeated like ours.
cv::Mat planeOf(std::vector<std::uint8_t>& luma) {
  cv::setNumThreads(1);
  return {kHeight, kWidth, CV_8UC1, luma.data() + std::size_t{kWidth} * kContextRows};
}

/// The integral images alone, without the differences that make boxes of them: less than integral_sums does.
void opencv_integral(benchmark::State& state) {
  std::vector<std::uint8_t> luma = lumaPlane();
  const cv::Mat plane = planeOf(luma);
  const int radius = static_cast<int>(state.range(0));
  cv::Mat extended;
  cv::Mat sums;
  cv::Mat squares;
  measure(state, [&] {
    cv::copyMakeBorder(plane, extended, radius, radius, radius, radius, cv::BORDER_REPLICATE);
    cv::integral(extended, sums, squares, CV_32S, CV_64F);
  });
}
BENCHMARK(opencv_integral)->Apply(radii);

/// Integral images and the four corners of every box.
void opencv_integral_sums(benchmark::State& state) {
  std::vector<std::uint8_t> luma = lumaPlane();
  const cv::Mat plane = planeOf(luma);
  const int radius = static_cast<int>(state.range(0));
  const int side = 2 * radius + 1;
  cv::Mat extended;
  cv::Mat integral;
  cv::Mat squareIntegral;
  cv::Mat part;
  cv::Mat sums;
  cv::Mat squares;
  const auto takeCorners = [&](const cv::Mat& of, cv::Mat& boxes) {
    const auto corner = [&](int x, int y) { return of(cv::Rect(x, y, kWidth, kHeight)); };
    cv::subtract(corner(side, side), corner(0, side), boxes);
    cv::subtract(corner(side, 0), corner(0, 0), part);
    cv::subtract(boxes, part, boxes);
  };
  measure(state, [&] {
    cv::copyMakeBorder(plane, extended, radius, radius, radius, radius, cv::BORDER_REPLICATE);
    cv::integral(extended, integral, squareIntegral, CV_32S, CV_64F);
    takeCorners(integral, sums);
    takeCorners(squareIntegral, squares);
  });
}
BENCHMARK(opencv_integral_sums)->Apply(radii);

void opencv_box(benchmark::State& state, int squareDepth) {
  std::vector<std::uint8_t> luma = lumaPlane();
  const cv::Mat plane = planeOf(luma);
  const int side = 2 * static_cast<int>(state.range(0)) + 1;
  const cv::Point centre(-1, -1);
  cv::Mat sums;
  cv::Mat squares;
  measure(state, [&] {
    cv::boxFilter(plane, sums, CV_32S, {side, side}, centre, false, cv::BORDER_REPLICATE);
    cv::sqrBoxFilter(plane, squares, squareDepth, {side, side}, centre, false, cv::BORDER_REPLICATE);
  });
}
BENCHMARK_CAPTURE(opencv_box, float_squares, CV_32F)->Apply(radii);
BENCHMARK_CAPTURE(opencv_box, double_squares, CV_64F)->Apply(radii);

}  // namespace
