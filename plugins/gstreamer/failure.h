/// Why the element cannot go on, as an application on the bus learns it.
#ifndef VLVK_PLUGINS_GSTREAMER_FAILURE_H
#define VLVK_PLUGINS_GSTREAMER_FAILURE_H

#include <gst/gst.h>

#include <optional>
#include <string>
#include <utility>

namespace vlvk::gstreamer {

struct Failure {
  /// @param sentence  stands alone
  /// @param placeFile, placeFunction, placeLine  where it was found, for developers: those of the caller
  Failure(GQuark errorDomain, gint errorCode, std::string sentence, const char* placeFile = __builtin_FILE(),
          const char* placeFunction = __builtin_FUNCTION(), int placeLine = __builtin_LINE())
      : domain(errorDomain),
        code(errorCode),
        text(std::move(sentence)),
        file(placeFile),
        function(placeFunction),
        line(placeLine) {}

  GQuark domain;
  gint code;
  std::string text;
  const char* file;
  const char* function;
  int line;
};

using MaybeFailure = std::optional<Failure>;

Failure noMemory();

/// Posts an error message. Handlers of the bus may run in it: the caller holds no lock.
void post(GstElement* element, const Failure& failure);

}  // namespace vlvk::gstreamer

#endif
