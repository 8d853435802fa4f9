/// Engine handles.
#ifndef VLVK_BINDINGS_ENGINE_HANDLE_H
#define VLVK_BINDINGS_ENGINE_HANDLE_H

#include <jni.h>

#include <cstdint>

#include <vlvk/CMakeupEngine3.h>

namespace vlvk {

/// The address as a signed 32-bit value, widened with its sign. Engines live where 32 bits are enough.
inline jlong handleOf(const CMakeupEngine3* engine) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(engine)));
}

/// The engine of a handle, whose high 32 bits do not count; null for 0.
inline CMakeupEngine3* engineOf(jlong handle) {
  const std::uintptr_t address = static_cast<std::uint32_t>(handle);
  return reinterpret_cast<CMakeupEngine3*>(address);  // NOLINT(performance-no-int-to-ptr): that is what a handle is
}

}  // namespace vlvk

#endif
