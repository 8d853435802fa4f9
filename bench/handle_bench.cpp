/// The C handle against CFastEdgePreserved, its formats against each other and its options against frames without:
/// ratios.
#include <algorithm>
#include <functional>
#include <memory>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/makeup.h>
#include "bench/compare.h"
#include "bench/options.h"
#include "bench/picture.h"
#include "resource/neutral_colors.h"

namespace vlvk_bench {

namespace {

struct Setup {
  int threads = 1;
  int whitening = 50;
  VlvkContrast contrast = VLVK_CONTRAST_ABSOLUTE;
  VlvkWhiten whitenArea = VLVK_WHITEN_ALL;
  int evenTone = 0;
  bool hasMask = false;
};

/// A face in the middle, as a detector gives it: one value for each 8 x 8 pixels or so.
struct FaceMask {
  static constexpr int kWidth = 160;
  static constexpr int kHeight = 90;

  FaceMask() {
    for (int i = 0; i < kWidth * kHeight; ++i) {
      const int x = i % kWidth - kWidth / 2;
      const int y = i / kWidth - kHeight / 2;
      bytes[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(std::clamp(255 * 2 - (x * x + y * y) / 3, 0, 255));
    }
  }

  std::vector<std::uint8_t> bytes = std::vector<std::uint8_t>(std::size_t{kWidth} * kHeight);
  VlvkMask mask = {sizeof mask, kWidth, kHeight, kWidth, bytes.data()};
};

Contender handle(const Setup& setup, std::shared_ptr<Picture> source, std::shared_ptr<Picture> target) {
  VlvkSettings settings;
  vlvkSettingsInit(&settings, sizeof settings);
  settings.threads = setup.threads;
  settings.whitening = setup.whitening;
  settings.radius = 20;
  settings.contrast = setup.contrast;
  settings.whitenArea = setup.whitenArea;
  settings.evenTone = setup.evenTone;
  VlvkMakeup* made = nullptr;
  vlvkMakeupCreate(&made, &settings);
  const std::shared_ptr<VlvkMakeup> makeup(made, vlvkMakeupDestroy);
  const bool inPlace = source == target;
  const std::shared_ptr<FaceMask> face = setup.hasMask ? std::make_shared<FaceMask>() : nullptr;
  return {[=] {
            const VlvkMask* mask = face != nullptr ? &face->mask : nullptr;
            return vlvkMakeupProcess(makeup.get(), &source->frame(), &target->frame(), mask) == VLVK_OK;
          },
          [=] {
            if (inPlace) source->restore();
          }};
}

Contender inPlace(Size size, const Setup& setup, VlvkFormat format, VlvkMatrix matrix = VLVK_BT601,
                  VlvkRange range = VLVK_LIMITED) {
  auto picture = std::make_shared<Picture>(size, format, matrix, range);
  return handle(setup, picture, picture);
}

Contender elsewhere(Size size, const Setup& setup, VlvkFormat from, VlvkFormat to) {
  return handle(setup, std::make_shared<Picture>(size, from), std::make_shared<Picture>(size, to));
}

Contender classic(Size size, const Setup& setup, bool nv21) {
  struct Engine {
    vlvk::NeutralColors colors;
    CFastEdgePreserved filter;
    explicit Engine(int threads) : filter(threads, &colors) {}
  };
  auto engine = std::make_shared<Engine>(setup.threads);
  engine->filter.put_whitenIntensity(setup.whitening);
  engine->filter.put_colorAdjustIntensity(0);
  auto picture = std::make_shared<Picture>(size, nv21 ? VLVK_NV21 : VLVK_NV12);
  return {[=] {
            const VlvkFrame& f = picture->frame();
            return engine->filter.processVideo(f.plane[0], f.width, f.plane[1], f.width, f.width, f.height, nullptr, 0,
                                               nv21) == 0;
          },
          [=] { picture->restore(); }};
}

void compareHandles(const std::string& name, Size size, const std::function<Contender()>& makeFirst,
                    const std::function<Contender()>& makeSecond) {
  compare("handle/" + name + "/" + size.name(), makeFirst, makeSecond);
}

}  // namespace

void addHandleBenchmarks(const std::vector<Size>& sizes) {
  for (const Size size : sizes) {
    for (const int threads : {1, 4}) {
      const Setup s{threads};
      const std::string suffix = "/threads:" + std::to_string(threads);
      const auto nv12 = [=] { return inPlace(size, s, VLVK_NV12); };
      compareHandles("nv12_by_class" + suffix, size, nv12, [=] { return classic(size, s, false); });
      compareHandles(
          "nv21_by_class" + suffix, size, [=] { return inPlace(size, s, VLVK_NV21); },
          [=] { return classic(size, s, true); });
      compareHandles(
          "i420_by_nv12" + suffix, size, [=] { return inPlace(size, s, VLVK_I420); }, nv12);
      compareHandles(
          "nv12_elsewhere_by_in_place" + suffix, size, [=] { return elsewhere(size, s, VLVK_NV12, VLVK_NV12); }, nv12);
      compareHandles(
          "rgba_to_rgba_by_nv21_to_rgba" + suffix, size, [=] { return elsewhere(size, s, VLVK_RGBA, VLVK_RGBA); },
          [=] { return elsewhere(size, s, VLVK_NV21, VLVK_RGBA); });
    }
    const Setup s;
    const auto nv12 = [=] { return inPlace(size, s, VLVK_NV12); };
    compareHandles(
        "bt601_full_by_limited", size, [=] { return inPlace(size, s, VLVK_NV12, VLVK_BT601, VLVK_FULL); }, nv12);
    compareHandles(
        "bt709_by_bt601", size, [=] { return inPlace(size, s, VLVK_NV12, VLVK_BT709); }, nv12);
    // Each option against the same frame without it.
    for (const bool ofPixels : {false, true}) {
      const auto frames = [=](const Setup& setup) {
        return
            [=] { return ofPixels ? elsewhere(size, setup, VLVK_RGBA, VLVK_RGBA) : inPlace(size, setup, VLVK_NV12); };
      };
      const std::string format = ofPixels ? "_rgba" : "_nv12";
      const Setup luma = {.whitening = 0};
      compareHandles("relative_by_absolute" + format, size, frames({.contrast = VLVK_CONTRAST_RELATIVE}), frames(s));
      compareHandles("relative_by_absolute_luma" + format, size,
                     frames({.whitening = 0, .contrast = VLVK_CONTRAST_RELATIVE}), frames(luma));
      compareHandles("whiten_skin_by_all" + format, size, frames({.whitenArea = VLVK_WHITEN_SKIN}), frames(s));
      compareHandles("mask_by_none" + format, size, frames({.hasMask = true}), frames(s));
      compareHandles("even_tone_by_none" + format, size, frames({.evenTone = 1000}), frames(s));
    }
  }
}

}  // namespace vlvk_bench
