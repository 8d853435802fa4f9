/// @file
/// The one thing the filter asks its host for: a named data file.
#ifndef VLVK_IBEAUTYRESOURCELOADER_H
#define VLVK_IBEAUTYRESOURCELOADER_H

#include <vlvk/export.h>

/// Source of named resources. The filter calls it on the thread that processes a frame, while it holds its own lock,
/// so an implementation must not process a frame on the same filter from inside the call.
///
/// There is no virtual destructor: the filter never owns its loader, and the slot order is part of the binary
/// interface.
class VLVK_API IBeautyResourceLoader {
 public:
  /// Copies the payload of the resource `name` into `dst`.
  ///
  /// @param name  zero-terminated name; the filter asks for "adjust.vlk" only
  /// @param dst   room for 1,048,576 bytes, preset to the neutral colour picture; bytes that are not written keep it
  /// @return 0 once the resource was opened (however much of it could be read), negative when it cannot be opened
  virtual int getResFromName(const char* name, unsigned char* dst) = 0;
};

#endif
