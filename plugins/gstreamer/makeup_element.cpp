/// See makeup_element.h.
#include "plugins/gstreamer/makeup_element.h"

#include <gst/base/gstbasetransform.h>
#include <gst/video/gstvideofilter.h>
#include <gst/video/video.h>

#include "plugins/about.h"
#include "plugins/gstreamer/failure.h"
#include "plugins/gstreamer/makeup_stream.h"
#include "plugins/gstreamer/properties.h"
#include "plugins/gstreamer/video_frame.h"

using vlvk::gstreamer::MakeupStream;
using vlvk::gstreamer::MaybeFailure;

struct GstVlvkMakeup {
  GstVideoFilter parent;
  MakeupStream* stream;
  gboolean refused;  // the last caps
};

struct GstVlvkMakeupClass {
  GstVideoFilterClass parent;
};

G_DEFINE_TYPE(GstVlvkMakeup, gst_vlvk_makeup, GST_TYPE_VIDEO_FILTER)

namespace {

MakeupStream& streamOf(gpointer element) {
  return *static_cast<GstVlvkMakeup*>(element)->stream;
}

GstBaseTransformClass* parentTransform() {
  return GST_BASE_TRANSFORM_CLASS(gst_vlvk_makeup_parent_class);
}

/// Whether there is none; else it is posted.
bool passed(gpointer element, const MaybeFailure& failure) {
  if (failure) vlvk::gstreamer::post(GST_ELEMENT(element), *failure);
  return !failure;
}

void finalize(GObject* object) {
  delete reinterpret_cast<GstVlvkMakeup*>(object)->stream;
  G_OBJECT_CLASS(gst_vlvk_makeup_parent_class)->finalize(object);
}

void getProperty(GObject* object, guint id, GValue* value, GParamSpec* /*definition*/) {
  vlvk::gstreamer::getProperty(streamOf(object), id, value);
}

void setProperty(GObject* object, guint id, const GValue* value, GParamSpec* /*definition*/) {
  passed(object, vlvk::gstreamer::setProperty(streamOf(object), id, value));
}

gboolean start(GstBaseTransform* transform) {
  reinterpret_cast<GstVlvkMakeup*>(transform)->refused = FALSE;
  gst_base_transform_set_passthrough(transform, streamOf(transform).isIdle() ? TRUE : FALSE);
  return passed(transform, streamOf(transform).start()) ? TRUE : FALSE;
}

gboolean stop(GstBaseTransform* transform) {
  streamOf(transform).stop();
  return TRUE;
}

/// Refused caps are posted once: buffers that come after them all the same bring them again.
gboolean setInfo(GstVideoFilter* filter, GstCaps* /*in*/, GstVideoInfo* info, GstCaps* /*out*/, GstVideoInfo* /*out*/) {
  const MaybeFailure refusal = vlvk::gstreamer::refusalOf(*info);
  gboolean& refused = reinterpret_cast<GstVlvkMakeup*>(filter)->refused;
  if (refused == FALSE) passed(filter, refusal);
  refused = refusal ? TRUE : FALSE;
  return refused == FALSE ? TRUE : FALSE;
}

/// Controlled properties get the values of this buffer's time. Passing buffers on is switched here alone, on the thread
/// that they come by: in the middle of a buffer it would find one that cannot be written to.
void beforeTransform(GstBaseTransform* transform, GstBuffer* buffer) {
  const GstSegment& segment = transform->segment;
  if (segment.format == GST_FORMAT_TIME) {  // bare frames of a file come in bytes, and have no times
    const GstClockTime time = gst_segment_to_stream_time(&segment, GST_FORMAT_TIME, GST_BUFFER_TIMESTAMP(buffer));
    if (GST_CLOCK_TIME_IS_VALID(time)) gst_object_sync_values(GST_OBJECT(transform), time);
  }

  const gboolean idle = streamOf(transform).isIdle() ? TRUE : FALSE;
  if (idle == gst_base_transform_is_passthrough(transform)) return;
  gst_base_transform_set_passthrough(transform, idle);
  gst_base_transform_reconfigure_src(transform);  // buffers are needed now, or no longer
}

/// Buffers go through, so what comes after answers for them: its strides, its memory. The base class would take any
/// strides for it, as for an element whose results are always buffers of its own.
gboolean proposeAllocation(GstBaseTransform* transform, GstQuery* /*decided*/, GstQuery* query) {
  return parentTransform()->propose_allocation(transform, nullptr, query);
}

/// Whether buffer and memory belong to this element alone; the memory of a buffer that others hold does not. Mapping
/// such memory for writing would copy its pixels first.
bool isOwn(GstBuffer* buffer) {
  for (guint i = 0; i < gst_buffer_n_memory(buffer); ++i) {
    GstMemory* memory = gst_buffer_peek_memory(buffer, i);
    if (gst_memory_is_writable(memory) == FALSE || GST_MEMORY_IS_READONLY(memory)) return false;
  }
  return true;
}

/// In place, or a frame of its own, without a copy of the pixels before.
GstFlowReturn prepareOutputBuffer(GstBaseTransform* transform, GstBuffer* input, GstBuffer** output) {
  if (gst_base_transform_is_passthrough(transform) != FALSE || !isOwn(input)) {
    return parentTransform()->prepare_output_buffer(transform, input, output);
  }
  *output = input;
  return GST_FLOW_OK;
}

GstFlowReturn transformBuffer(GstBaseTransform* transform, GstBuffer* input, GstBuffer* output) {
  const GstVideoInfo& info = GST_VIDEO_FILTER(transform)->in_info;
  if (!passed(transform, vlvk::gstreamer::refusalOf(info, input))) return GST_FLOW_ERROR;
  if (input == output) return parentTransform()->transform_ip(transform, output);
  return parentTransform()->transform(transform, input, output);
}

GstFlowReturn transformFrame(GstVideoFilter* filter, GstVideoFrame* input, GstVideoFrame* output) {
  const VlvkFrame source = vlvk::gstreamer::describe(filter->in_info, *input);
  const VlvkFrame target = vlvk::gstreamer::describe(filter->out_info, *output);
  return passed(filter, streamOf(filter).process(source, target)) ? GST_FLOW_OK : GST_FLOW_ERROR;
}

GstFlowReturn transformFrameInPlace(GstVideoFilter* filter, GstVideoFrame* frame) {
  return transformFrame(filter, frame, frame);
}

void describeElement(GstElementClass* elementClass) {
  gst_element_class_set_static_metadata(elementClass, "VLVK makeup", "Filter/Effect/Video", vlvk::plugins::kDescription,
                                        vlvk::plugins::kAuthor);
  GstCaps* caps = gst_caps_from_string(VLVK_GSTREAMER_CAPS);
  gst_element_class_add_pad_template(elementClass, gst_pad_template_new("sink", GST_PAD_SINK, GST_PAD_ALWAYS, caps));
  gst_element_class_add_pad_template(elementClass, gst_pad_template_new("src", GST_PAD_SRC, GST_PAD_ALWAYS, caps));
  gst_caps_unref(caps);
}

}  // namespace

static void gst_vlvk_makeup_class_init(GstVlvkMakeupClass* elementClass) {
  GObjectClass* object = G_OBJECT_CLASS(elementClass);
  object->finalize = finalize;
  object->get_property = getProperty;
  object->set_property = setProperty;
  vlvk::gstreamer::installProperties(object);
  describeElement(GST_ELEMENT_CLASS(elementClass));

  GstBaseTransformClass* transform = GST_BASE_TRANSFORM_CLASS(elementClass);
  transform->start = start;
  transform->stop = stop;
  transform->before_transform = beforeTransform;
  transform->propose_allocation = proposeAllocation;
  transform->prepare_output_buffer = prepareOutputBuffer;
  transform->transform = transformBuffer;
  transform->transform_ip_on_passthrough = FALSE;

  GstVideoFilterClass* filter = GST_VIDEO_FILTER_CLASS(elementClass);
  filter->set_info = setInfo;
  filter->transform_frame = transformFrame;
  filter->transform_frame_ip = transformFrameInPlace;
}

static void gst_vlvk_makeup_init(GstVlvkMakeup* element) {
  element->stream = new MakeupStream;
  gst_base_transform_set_in_place(GST_BASE_TRANSFORM(element), FALSE);  // prepareOutputBuffer chooses
}
