/// Time of the conversions between NV21 and RGBA and of the colour table, for every target. Counterparts:
/// to_rgba/.../libyuv, to_nv21/.../libyuv.
#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/rgb_to_yuv.h>
#include <vlvk/yuv_to_rgb.h>
#include "bench/measure.h"
#include "bench/planes.h"
#include "resource/neutral_colors.h"

namespace vlvk_bench {

namespace {

using Convert = void (*)(ConversionPlanes& p, int width, int rows);

void toRgba(ConversionPlanes& p, int width, int rows) {
  VKNV21ToRGBA_NeonCall(p.nv21.data(), width, p.nv21.data() + p.chroma, width, p.rgba.data(), 4 * width, width, rows);
}

void toNv21(ConversionPlanes& p, int width, int rows) {
  VKRGBAToNV21_NeonCall(p.rgba.data(), 4 * width, p.nv21.data(), width, p.nv21.data() + p.chroma, width, width, rows);
}

void addConversion(const char* unit, Size size, const Extent& extent, const vlvk::RowLoops* target, Convert convert) {
  const int rows = extent.rows(size);
  add(std::string(unit) + "/" + extent.name + "/" + target->name + "/" + size.name(), [=](benchmark::State& state) {
    const ForcedTarget forced(target);
    ConversionPlanes planes(size);
    measure(state, Size{size.width, rows}.pixels(), [&] { convert(planes, size.width, rows); });
  });
}

/// Eight rows of skin colours through the engine's table, into other rows.
void addColorTable(Size size, const vlvk::RowLoops* target) {
  add(std::string("color_table/rows/") + target->name + "/" + size.name(), [=](benchmark::State& state) {
    const ForcedTarget forced(target);
    ConversionPlanes planes(size);
    vlvk::NeutralColors colors;
    CFastEdgePreserved filter(1, &colors);
    filter.processVideo(planes.nv21.data(), size.width, planes.nv21.data() + planes.chroma, size.width, size.width,
                        size.height, planes.rgba.data(), 4 * size.width, true);  // makes the table
    toRgba(planes, size.width, size.height);
    CFastEdgePreserved::MakeupParam band{};
    band.outPlane = planes.rgba.data();
    band.outStride = 4 * size.width;
    band.dstPlane = planes.rgba.data() + 8 * band.outStride;
    band.dstStride = band.outStride;
    band.inPlace = true;
    band.variant = 1;
    band.width = size.width;
    band.rows = 8;
    band.colorAdjustIntensity = 100;
    measure(state, Size{size.width, band.rows}.pixels(), [&] { filter.colorAdjustRGBA(&band); });
  });
}

}  // namespace

void addConversionBenchmarks(const std::vector<Size>& sizes) {
  for (const Size size : sizes) {
    for (const vlvk::RowLoops* target : targets()) {
      for (const Extent& extent : kExtents) {
        addConversion("to_rgba", size, extent, target, toRgba);
        addConversion("to_nv21", size, extent, target, toNv21);
      }
      addColorTable(size, target);
    }
  }
}

}  // namespace vlvk_bench
