/// The element vlvkmakeup: a GstVideoFilter around a MakeupStream.
#ifndef VLVK_PLUGINS_GSTREAMER_MAKEUP_ELEMENT_H
#define VLVK_PLUGINS_GSTREAMER_MAKEUP_ELEMENT_H

#include <gst/gst.h>

/// The type of the element, registered with the first call.
GType gst_vlvk_makeup_get_type();

#endif
