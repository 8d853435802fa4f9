/// See element_rig.h.
#include "tests/plugins/gstreamer/element_rig.h"

#include <cstdlib>

/// GLib and GStreamer are not built for the thread sanitizer, which sees what they write and not how they lock.
extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() {
  return "ignore_noninstrumented_modules=1";
}

namespace element_rig {
namespace {

// The plugin of this build alone, in this process; what GStreamer calls critical ends it.
const bool kLoaded = [] {
  g_setenv("GST_REGISTRY_DISABLE", "yes", TRUE);
  gst_init(nullptr, nullptr);
  g_log_set_always_fatal(static_cast<GLogLevelFlags>(G_LOG_FATAL_MASK | G_LOG_LEVEL_CRITICAL));
  GstPlugin* plugin = gst_plugin_load_file(VLVK_GSTREAMER_PLUGIN, nullptr);
  if (plugin != nullptr) gst_object_unref(plugin);
  std::atexit(gst_deinit);
  return plugin != nullptr;
}();

}  // namespace

std::string Video::caps() const {
  return std::string("video/x-raw,format=") + name + ",width=" + std::to_string(width) +
         ",height=" + std::to_string(height) + ",framerate=25/1" +
         (*colorimetry == 0 ? "" : ",colorimetry=" + std::string(colorimetry));
}

GstVideoInfo Video::info() const {
  GstVideoInfo info;
  GstCaps* parsed = gst_caps_from_string(caps().c_str());
  gst_video_info_from_caps(&info, parsed);
  gst_caps_unref(parsed);
  return info;
}

Buffer Video::noise(testing_support::Random& random, int slack) const {
  const GstVideoInfo standard = info();
  gsize offset[GST_VIDEO_MAX_PLANES] = {};
  gint stride[GST_VIDEO_MAX_PLANES] = {};
  gsize size = 0;
  for (guint plane = 0; plane < GST_VIDEO_INFO_N_PLANES(&standard); ++plane) {
    offset[plane] = size + slack;
    stride[plane] = GST_VIDEO_INFO_PLANE_STRIDE(&standard, plane) + slack;
    size = offset[plane] + static_cast<gsize>(stride[plane]) * GST_VIDEO_INFO_COMP_HEIGHT(&standard, plane);
  }
  Bytes bytes(slack != 0 ? size : standard.size);
  for (std::uint8_t& byte : bytes)
    byte = random.byte();
  GstBuffer* buffer = gst_buffer_new_memdup(bytes.data(), bytes.size());
  if (slack != 0) {
    gst_buffer_add_video_meta_full(buffer, GST_VIDEO_FRAME_FLAG_NONE, GST_VIDEO_INFO_FORMAT(&standard), width, height,
                                   GST_VIDEO_INFO_N_PLANES(&standard), offset, stride);
  }
  return Buffer(buffer);
}

VlvkFrame Video::describe(const GstVideoFrame& mapped) const {
  VlvkFrame frame{sizeof frame, format, matrix, range, width, height, {}, {}};
  for (guint plane = 0; plane < GST_VIDEO_FRAME_N_PLANES(&mapped); ++plane) {
    frame.plane[plane] = static_cast<unsigned char*>(mapped.data[plane]);
    frame.stride[plane] = mapped.info.stride[plane];
  }
  return frame;
}

Buffer Video::expected(VlvkMakeup* makeup, GstBuffer* source, GstBuffer* target) const {
  Buffer copy(gst_buffer_copy_deep(target));
  const GstVideoInfo standard = info();
  GstVideoFrame from;
  GstVideoFrame to;
  gst_video_frame_map(&from, &standard, source, GST_MAP_READ);
  gst_video_frame_map(&to, &standard, copy.get(), GST_MAP_READWRITE);
  const VlvkFrame read = describe(from);
  const VlvkFrame written = describe(to);
  const VlvkResult result = vlvkMakeupProcess(makeup, &read, &written, nullptr);
  gst_video_frame_unmap(&from);
  gst_video_frame_unmap(&to);
  return result == VLVK_OK ? std::move(copy) : nullptr;
}

Bytes allBytes(GstBuffer* buffer) {
  Bytes bytes(gst_buffer_get_size(buffer));
  gst_buffer_extract(buffer, 0, bytes.data(), bytes.size());
  return bytes;
}

Engine engineOf(const VlvkSettings& settings) {
  VlvkMakeup* makeup = nullptr;
  vlvkMakeupCreate(&makeup, &settings);
  return Engine(makeup);
}

Element::Element() : element(gst_element_factory_make("vlvkmakeup", nullptr)), bus_(gst_bus_new()) {
  harness = gst_harness_new_with_element(element, "sink", "src");
  gst_element_set_bus(element, bus_);
}

Element::~Element() {
  gst_element_set_bus(element, nullptr);
  gst_object_unref(bus_);
  gst_harness_teardown(harness);
  gst_object_unref(element);
}

void Element::set(const char* property, const std::string& value) {
  gst_util_set_object_arg(G_OBJECT(element), property, value.c_str());
}

std::string Element::get(const char* property) const {
  GValue value = G_VALUE_INIT;
  g_object_get_property(G_OBJECT(element), property, &value);
  char* text = gst_value_serialize(&value);
  std::string result = text == nullptr ? "" : text;
  g_free(text);
  g_value_unset(&value);
  return result;
}

void Element::caps(const std::string& text) {
  GstCaps* parsed = gst_caps_from_string(text.c_str());
  gst_harness_push_event(harness, gst_event_new_caps(parsed));
  gst_caps_unref(parsed);
  GstSegment segment;
  gst_segment_init(&segment, GST_FORMAT_TIME);
  gst_harness_push_event(harness, gst_event_new_segment(&segment));
}

Buffer Element::through(Buffer buffer) {
  if (push(std::move(buffer)) != GST_FLOW_OK) return nullptr;
  return Buffer(gst_harness_try_pull(harness));
}

std::string Element::error() {
  GstMessage* message = gst_bus_pop_filtered(bus_, GST_MESSAGE_ERROR);
  if (message == nullptr) return "";
  GError* error = nullptr;
  gst_message_parse_error(message, &error, nullptr);
  std::string text = error->message;
  g_error_free(error);
  gst_message_unref(message);
  return text;
}

}  // namespace element_rig
