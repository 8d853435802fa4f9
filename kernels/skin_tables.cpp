/// See skin_tables.h.
#include <vlvk/skin_tables.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "base/arm_math.h"
#include "kernels/skin_model.h"

namespace {

constexpr unsigned char kFullWeight = 64;

/// Entries of full weight, 0 .. 255.
int plateauLength(float a, float b) {
  const double root = std::sqrt(static_cast<double>(b));
  const float s = root < 12.0 ? static_cast<float>(root) : 12.0F;
  return std::min(vlvk::truncSaturate<std::int32_t>(static_cast<double>(s * a) + 0.5), 255);
}

/// Weight at a distance of k past the plateau.
unsigned char fallOff(int k, float b) {
  const float x = -static_cast<float>(k * k) / (b * 4.0F);
  return static_cast<unsigned char>(vlvk::truncSaturate<std::int32_t>(64.0 * std::exp(static_cast<double>(x))));
}

/// The curve at distances 0, step, 2 * step ..., into `entries` entries in blocks of 32.
void buildReducedTable(unsigned char* table, int entries, int step, float a, float b) {
  const int plateau = plateauLength(a, b) / step;
  for (int i = 0; i < entries; ++i) {
    table[i / 32 * 32 + vlvk::fourWayPosition(i % 32)] = i < plateau ? kFullWeight : fallOff((i - plateau) * step, b);
  }
}

}  // namespace

void calcSkinProbilityInterleavingTable8x8x4_8x8x2(unsigned char* table, float a, float b) {
  const int plateau = plateauLength(a, b);
  for (int i = 0; i < std::min(plateau, 32); ++i)
    table[vlvk::liveSkinTablePosition(i)] = kFullWeight;
  // Plateau entries of the second part are left to the caller.
  for (int i = plateau; i < vlvk::kLiveSkinEntries; ++i) {
    table[vlvk::liveSkinTablePosition(i)] = fallOff(i - plateau, b);
  }
}

void calcSkinProbilityInterleavingTable8x8x4(unsigned char* table, float a, float b) {
  buildReducedTable(table, 32, 8, a, b);
}

void calcSkinProbilityInterleavingTable8x8x4x2(unsigned char* table, float a, float b) {
  buildReducedTable(table, 64, 4, a, b);
}

void calcSkinProbility256(unsigned char* table, float a, float b) {
  const int plateau = plateauLength(a, b);
  for (int d = 0; d < 256; ++d) {
    const unsigned char weight = d < plateau ? kFullWeight : fallOff(d - plateau, b);
    table[256 + d] = weight;
    table[255 - d] = weight;
  }
}

void MeanBuildSkinLookup(unsigned char* table) {
  std::array<unsigned char, 512> curve{};
  calcSkinProbility256(curve.data(), vlvk::kLivePlateauFactor, vlvk::kLiveSpread);
  for (int row = 0; row < 256; ++row) {
    for (int column = 0; column < 256; ++column) {
      const int product = curve[256 - vlvk::kSkinV + row] * curve[256 - vlvk::kSkinU + column];
      table[row * 256 + column] = static_cast<unsigned char>(product >> 5);
    }
  }
}

void MeanGetSkinWeight(const unsigned char* frame, const unsigned char* table, unsigned char* weights, int width,
                       int height) {
  if (width <= 0 || height <= 0) return;
  const std::ptrdiff_t stride = width;
  const std::ptrdiff_t chromaStride = (stride + 1) & ~std::ptrdiff_t{1};
  const unsigned char* chroma = frame + stride * height;
  for (std::ptrdiff_t y = 0; y < height; ++y) {
    const unsigned char* pairs = chroma + y / 2 * chromaStride;
    for (std::ptrdiff_t x = 0; x < width; ++x) {
      const std::ptrdiff_t pair = x & ~std::ptrdiff_t{1};
      weights[y * stride + x] = table[pairs[pair] * 256 + pairs[pair + 1]];
    }
  }
}
