/// The GStreamer element against the handle alone, on the same frames, both in place: what the element adds.
#include <gst/check/gstharness.h>
#include <gst/gst.h>

#include <cstdlib>
#include <memory>
#include <string>

#include <vlvk/makeup.h>
#include "bench/compare.h"
#include "bench/picture.h"

namespace vlvk_bench {

namespace {

constexpr VlvkMatrix kMatrix = VLVK_BT709;

void loadPlugin() {
  static const bool loaded = [] {
    setenv("GST_REGISTRY_DISABLE", "yes", 1);
    gst_init(nullptr, nullptr);
    return gst_plugin_load_file(VLVK_BENCH_GSTREAMER_PLUGIN, nullptr) != nullptr;
  }();
  if (!loaded) std::abort();
}

/// The element with a buffer around the memory of a picture, which it gives back changed.
class Stream {
 public:
  Stream(Size size, int threads) : picture_(size, VLVK_NV12, kMatrix) {
    loadPlugin();
    const std::string caps =
        "video/x-raw,format=NV12,framerate=30/1,colorimetry=bt709,width=" + std::to_string(size.width) +
        ",height=" + std::to_string(size.height);
    harness_ = gst_harness_new("vlvkmakeup");
    g_object_set(harness_->element, "threads", threads, nullptr);
    gst_harness_set_src_caps_str(harness_, caps.c_str());
    const gsize bytes = size.pixels() * 3 / 2;
    buffer_ = gst_buffer_new_wrapped_full(static_cast<GstMemoryFlags>(0), picture_.frame().plane[0], bytes, 0, bytes,
                                          nullptr, nullptr);
  }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  ~Stream() {
    gst_buffer_unref(buffer_);
    gst_harness_teardown(harness_);
  }

  bool process() {
    GstBuffer* const sent = buffer_;
    if (gst_harness_push(harness_, buffer_) != GST_FLOW_OK) std::abort();
    buffer_ = gst_harness_pull(harness_);
    return buffer_ == sent;
  }

  void restore() { picture_.restore(); }

 private:
  Picture picture_;
  GstHarness* harness_;
  GstBuffer* buffer_;
};

Contender element(Size size, int threads) {
  auto stream = std::make_shared<Stream>(size, threads);
  return {[=] { return stream->process(); }, [=] { stream->restore(); }};
}

Contender handle(Size size, int threads) {
  auto picture = std::make_shared<Picture>(size, VLVK_NV12, kMatrix);
  VlvkSettings settings;
  vlvkSettingsInit(&settings, sizeof settings);
  settings.threads = threads;
  VlvkMakeup* made = nullptr;
  vlvkMakeupCreate(&made, &settings);
  const std::shared_ptr<VlvkMakeup> makeup(made, vlvkMakeupDestroy);
  return {[=] { return vlvkMakeupProcess(makeup.get(), &picture->frame(), &picture->frame(), nullptr) == VLVK_OK; },
          [=] { picture->restore(); }};
}

}  // namespace

void addGStreamerBenchmarks(const std::vector<Size>& sizes) {
  for (const Size size : sizes) {
    for (const int threads : {1, 0}) {
      compare(
          "gstreamer/element_by_handle/threads:" + std::to_string(threads) + "/" + size.name(),
          [=] { return element(size, threads); }, [=] { return handle(size, threads); });
    }
  }
}

}  // namespace vlvk_bench
