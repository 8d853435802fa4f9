/// See failure.h.
#include "plugins/gstreamer/failure.h"

namespace vlvk::gstreamer {

Failure noMemory() {
  return {GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_NO_SPACE_LEFT, "There is not enough memory for the engine."};
}

void post(GstElement* element, const Failure& failure) {
  gst_element_message_full(element, GST_MESSAGE_ERROR, failure.domain, failure.code, g_strdup(failure.text.c_str()),
                           nullptr, failure.file, failure.function, failure.line);
}

}  // namespace vlvk::gstreamer
