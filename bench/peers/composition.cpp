/// See composition.h.
#include "bench/peers/composition.h"

#include <libyuv.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <opencv2/imgproc.hpp>
#include <thread>

// The plain loop gets the instructions that the processor has, as the libraries do, and fast-math (by the build).
#if defined(__x86_64__)
#define VLVK_BENCH_VECTORIZED __attribute__((target_clones("arch=haswell", "default")))
#else
#define VLVK_BENCH_VECTORIZED
#endif

namespace vlvk_bench {

namespace {

/// Moves samples towards the mean, the more the smaller the variance is against the strength.
VLVK_BENCH_VECTORIZED void smoothRow(const std::uint8_t* __restrict samples, const std::int32_t* __restrict sums,
                                     const float* __restrict squares, std::uint8_t* __restrict out, int width,
                                     float inverseArea) {
  constexpr float kStrength = 360.0F;
  constexpr float kBias = 76.8F;
  for (int x = 0; x < width; ++x) {
    const float mean = static_cast<float>(sums[x]) * inverseArea;
    const float variance = squares[x] * inverseArea - mean * mean + kBias;
    const float value = (static_cast<float>(samples[x]) * variance + mean * kStrength) / (variance + kStrength);
    out[x] = static_cast<std::uint8_t>(static_cast<int>(value));
  }
}

/// One weight for every pixel of a row pair.
void weighRow(const std::uint8_t* chroma, const std::uint8_t* first, const std::uint8_t* second, std::uint8_t* weights,
              int width) {
  for (int x = 0; x < width; x += 2) {
    const int weight = first[chroma[x]] * second[chroma[x + 1]] / 255;
    weights[x] = weights[x + 1] = static_cast<std::uint8_t>(weight);
  }
}

void lookUpColors(std::uint8_t* rgba, const std::uint32_t* colors, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i, rgba += 4) {
    const std::size_t red = rgba[0] >> 2U;
    const std::size_t green = rgba[1] >> 2U;
    const std::size_t blue = rgba[2] >> 2U;
    std::memcpy(rgba, &colors[blue << 12U | green << 6U | red], 4);
  }
}

std::uint8_t skinWeight(int distance) {
  return static_cast<std::uint8_t>(255.0 * std::exp(-distance * distance / 400.0));
}

}  // namespace

Composition::Composition(Size size, int threads, int boxStripRows)
    : size_(size),
      boxStripRows_(boxStripRows > 0 ? boxStripRows : size.height),
      smoothed_(size.pixels()),
      colors_(64 * 64 * 64) {
  cv::setNumThreads(1);
  for (int i = 0; i < threads; ++i) {
    const auto rowAt = [&](int band) { return size.height / 2 * band / threads * 2; };
    const std::size_t strip = static_cast<std::size_t>(size.width) * kStripRows;
    bands_.push_back(
        {rowAt(i), rowAt(i + 1), {}, {}, std::vector<std::uint8_t>(strip), std::vector<std::uint8_t>(4 * strip)});
  }
  for (std::uint32_t i = 0; i < colors_.size(); ++i)
    colors_[i] = 0xFF000000U | (i >> 12U) << 18U | (i >> 6U & 63U) << 10U | (i & 63U) << 2U;
  for (int i = 0; i < 256; ++i) {
    firstWeights_[i] = skinWeight(i - 155);
    secondWeights_[i] = skinWeight(i - 110);
  }
}

void Composition::smooth(Band& band, cv::Mat& luma) {
  constexpr int kSide = 2 * kBoxHalf + 1;
  for (int begin = band.begin; begin < band.end; begin += boxStripRows_) {
    const int end = std::min(begin + boxStripRows_, band.end);
    const cv::Mat strip = luma.rowRange(begin, end);  // its boxes reach into the rows around it
    cv::boxFilter(strip, band.sums, CV_32S, {kSide, kSide}, {-1, -1}, false, cv::BORDER_REPLICATE);
    cv::sqrBoxFilter(strip, band.squares, CV_32F, {kSide, kSide}, {-1, -1}, false, cv::BORDER_REPLICATE);
    for (int y = begin; y < end; ++y) {
      smoothRow(luma.ptr(y), band.sums.ptr<std::int32_t>(y - begin), band.squares.ptr<float>(y - begin),
                smoothed_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(size_.width), size_.width,
                1.0F / (kSide * kSide));
    }
  }
}

void Composition::finish(Band& band, std::uint8_t* luma, std::uint8_t* chroma) {
  const int width = size_.width;
  for (int begin = band.begin; begin < band.end; begin += kStripRows) {
    const int rows = std::min(kStripRows, band.end - begin);
    const std::size_t at = static_cast<std::size_t>(begin) * static_cast<std::size_t>(width);
    std::uint8_t* y = luma + at;
    std::uint8_t* vu = chroma + at / 2;
    for (int pair = 0; pair < rows / 2; ++pair) {
      std::uint8_t* weights =
          band.weights.data() + static_cast<std::size_t>(2 * pair) * static_cast<std::size_t>(width);
      weighRow(vu + static_cast<std::ptrdiff_t>(pair) * width, firstWeights_, secondWeights_, weights, width);
      std::memcpy(weights + width, weights, static_cast<std::size_t>(width));
    }
    libyuv::BlendPlane(smoothed_.data() + at, width, y, width, band.weights.data(), width, y, width, width, rows);
    libyuv::NV21ToABGR(y, width, vu, width, band.rgba.data(), 4 * width, width, rows);
    lookUpColors(band.rgba.data(), colors_.data(), static_cast<std::size_t>(width) * static_cast<std::size_t>(rows));
    libyuv::ABGRToNV21(band.rgba.data(), 4 * width, y, width, vu, width, width, rows);
  }
}

template <class Work>
void Composition::onAllBands(Work work) {
  std::vector<std::thread> threads;
  for (std::size_t i = 1; i < bands_.size(); ++i)
    threads.emplace_back([&, i] { work(bands_[i]); });
  work(bands_[0]);
  for (std::thread& thread : threads)
    thread.join();
}

void Composition::smooth(std::uint8_t* luma) {
  cv::Mat plane(size_.height, size_.width, CV_8UC1, luma);
  onAllBands([&](Band& band) { smooth(band, plane); });
}

void Composition::process(std::uint8_t* luma, std::uint8_t* chroma) {
  smooth(luma);
  onAllBands([&](Band& band) { finish(band, luma, chroma); });
}

}  // namespace vlvk_bench
