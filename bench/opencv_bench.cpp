/// Box sums and box sums of squares by OpenCV on one thread: what stands for smoothing/band and for the sums of the
/// other smoothers.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "bench/measure.h"
#include "bench/scene.h"

namespace vlvk_bench {

namespace {

/// A plane with what OpenCV makes of it.
struct Sums {
  explicit Sums(Size size) : luma(lumaPlane(size, 0)), plane(size.height, size.width, CV_8UC1, luma.data()) {
    cv::setNumThreads(1);
  }

  std::vector<std::uint8_t> luma;
  cv::Mat plane;
  cv::Mat extended;
  cv::Mat sums;
  cv::Mat squares;
  cv::Mat integral;
  cv::Mat squareIntegral;
  cv::Mat part;
};

void boxSums(Sums& s, int halfSize, int squareDepth) {
  const int side = 2 * halfSize + 1;
  cv::boxFilter(s.plane, s.sums, CV_32S, {side, side}, {-1, -1}, false, cv::BORDER_REPLICATE);
  cv::sqrBoxFilter(s.plane, s.squares, squareDepth, {side, side}, {-1, -1}, false, cv::BORDER_REPLICATE);
}

/// The integral images alone: less than integral_mean/sums does.
void integrals(Sums& s, int halfSize) {
  cv::copyMakeBorder(s.plane, s.extended, halfSize, halfSize, halfSize, halfSize, cv::BORDER_REPLICATE);
  cv::integral(s.extended, s.integral, s.squareIntegral, CV_32S, CV_64F);
}

void takeCorners(const cv::Mat& of, const cv::Mat& plane, int halfSize, cv::Mat& part, cv::Mat& boxes) {
  const int side = 2 * halfSize + 1;
  const auto corner = [&](int x, int y) { return of(cv::Rect(x, y, plane.cols, plane.rows)); };
  cv::subtract(corner(side, side), corner(0, side), boxes);
  cv::subtract(corner(side, 0), corner(0, 0), part);
  cv::subtract(boxes, part, boxes);
}

void integralSums(Sums& s, int halfSize) {
  integrals(s, halfSize);
  takeCorners(s.integral, s.plane, halfSize, s.part, s.sums);
  takeCorners(s.squareIntegral, s.plane, halfSize, s.part, s.squares);
}

template <class Work>
void addSums(const char* name, Size size, int halfSize, Work work) {
  add(std::string(name) + "/opencv/" + size.name() + "/half:" + std::to_string(halfSize), [=](benchmark::State& state) {
    Sums sums(size);
    measure(state, size.pixels(), [&] { work(sums, halfSize); });
  });
}

}  // namespace

void addOpencvBenchmarks(const std::vector<Size>& sizes) {
  for (const Size size : sizes) {
    for (const int halfSize : {4, 20, 23, 60}) {
      addSums("box_sums/float_squares", size, halfSize, [](Sums& s, int h) { boxSums(s, h, CV_32F); });
      addSums("box_sums/double_squares", size, halfSize, [](Sums& s, int h) { boxSums(s, h, CV_64F); });
      addSums("integral/tables", size, halfSize, integrals);
      addSums("integral/sums", size, halfSize, integralSums);
    }
  }
}

}  // namespace vlvk_bench
