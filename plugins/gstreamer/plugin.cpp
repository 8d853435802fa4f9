/// What GStreamer finds in the file.
#include <gst/gst.h>

#include <vlvk/version.h>
#include "plugins/gstreamer/makeup_element.h"

namespace {

gboolean registerElements(GstPlugin* plugin) {
  return gst_element_register(plugin, "vlvkmakeup", GST_RANK_NONE, gst_vlvk_makeup_get_type());
}

}  // namespace

#define PACKAGE "VLVKMakeupEngine"  // what GST_PLUGIN_DEFINE calls the sources
GST_PLUGIN_DEFINE(GST_VERSION_MAJOR, GST_VERSION_MINOR, vlvkmakeup, "Skin beautification of video, in real time",
                  registerElements, VLVK_VERSION_STRING, GST_LICENSE_UNKNOWN, PACKAGE, "unknown")
