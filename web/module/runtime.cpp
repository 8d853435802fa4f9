/// What the C++ runtime does before it ends a module. Its own forms would make modules import files, and it has none
/// for exceptions, which cannot be thrown there.
#include <cstddef>

extern "C" [[noreturn]] void abort_message(const char* /*format*/, ...) {
  __builtin_trap();
}

extern "C" void* __cxa_allocate_exception(std::size_t /*size*/) noexcept {
  __builtin_trap();
}

extern "C" [[noreturn]] void __cxa_throw(void* /*exception*/, void* /*type*/, void (* /*destroy*/)(void*)) {
  __builtin_trap();
}
