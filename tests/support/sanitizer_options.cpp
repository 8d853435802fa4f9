/// Defaults of the sanitizers in the test executables.
///
/// A request for more memory than there is must fail as it does without sanitizers, which look these functions up by
/// name.
extern "C" const char* __asan_default_options();
extern "C" const char* __tsan_default_options();
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}
extern "C" const char* __tsan_default_options() {
  return "allocator_may_return_null=1";
}
