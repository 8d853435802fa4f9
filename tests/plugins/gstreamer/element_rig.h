/// The element between two pads of a test, and the handle beside it.
#ifndef VLVK_TESTS_PLUGINS_GSTREAMER_ELEMENT_RIG_H
#define VLVK_TESTS_PLUGINS_GSTREAMER_ELEMENT_RIG_H

#include <gst/check/gstharness.h>
#include <gst/gst.h>
#include <gst/video/video.h>
#include <unistd.h>

#include <cstdint>
#include <memory>
#include <string>

#include <vlvk/makeup.h>
#include "tests/plugins/engine_input.h"

namespace element_rig {

using plugin_test::Bytes;

struct Unref {
  void operator()(GstBuffer* buffer) const { gst_buffer_unref(buffer); }
  void operator()(VlvkMakeup* makeup) const { vlvkMakeupDestroy(makeup); }
};
using Buffer = std::unique_ptr<GstBuffer, Unref>;
using Engine = std::unique_ptr<VlvkMakeup, Unref>;

/// What frames of caps are for the handle.
struct Video {
  const char* name = "NV12";
  VlvkFormat format = VLVK_NV12;
  int width = 64;
  int height = 48;
  const char* colorimetry = "2:4:0:0";  ///< range 2: limited, 1: full; matrix 3: BT.709, 4: BT.601, 1: RGB
  VlvkMatrix matrix = VLVK_BT601;
  VlvkRange range = VLVK_LIMITED;

  std::string caps() const;
  GstVideoInfo info() const;

  /// Noise, with a video meta where there is `slack`: bytes before each plane and, as many, between its rows.
  Buffer noise(testing_support::Random& random, int slack = 0) const;

  VlvkFrame describe(const GstVideoFrame& mapped) const;

  /// A copy of `target` with what the handle makes of `source`.
  Buffer expected(VlvkMakeup* makeup, GstBuffer* source, GstBuffer* target) const;
  Buffer expected(VlvkMakeup* makeup, GstBuffer* source) const { return expected(makeup, source, source); }
};

Bytes allBytes(GstBuffer* buffer);
Engine engineOf(const VlvkSettings& settings);

/// A colour table in memory, and as a file while it lives.
struct Table {
  Table() = default;
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;
  ~Table() { unlink(path.c_str()); }

  const Bytes bytes = plugin_test::randomTable();
  const std::string path = plugin_test::writeFile("table.vlk", bytes);
};

/// The element, playing.
class Element {
 public:
  Element();
  ~Element();
  Element(const Element&) = delete;
  Element& operator=(const Element&) = delete;

  void set(const char* property, const std::string& value);
  std::string get(const char* property) const;
  void caps(const std::string& text);
  void caps(const Video& video) { caps(video.caps()); }
  GstFlowReturn push(Buffer buffer) { return gst_harness_push(harness, buffer.release()); }
  Buffer through(Buffer buffer);  ///< null where none comes out
  std::string error();            ///< the next on the bus, "" for none

  GstElement* element;
  GstHarness* harness;

 private:
  GstBus* bus_;
};

}  // namespace element_rig

#endif
