/// The properties of the element: names, ranges and defaults, all of them the engine's.
#ifndef VLVK_PLUGINS_GSTREAMER_PROPERTIES_H
#define VLVK_PLUGINS_GSTREAMER_PROPERTIES_H

#include <gst/gst.h>

#include "plugins/gstreamer/failure.h"
#include "plugins/gstreamer/makeup_stream.h"

namespace vlvk::gstreamer {

void installProperties(GObjectClass* objectClass);

/// @param id  of a property that installProperties has made
void getProperty(const MakeupStream& stream, guint id, GValue* value);

/// The value is in range: GObject sees to that.
MaybeFailure setProperty(MakeupStream& stream, guint id, const GValue* value);

}  // namespace vlvk::gstreamer

#endif
