# The engine as a WebAssembly module for pages, and what measures it: scripts/web_speed.sh.

set(VLVK_WASM_RUNTIME "")
if(VLVK_WASM)
  set(VLVK_WASM_RUNTIME ${CMAKE_CURRENT_SOURCE_DIR}/web/module/runtime.cpp)
endif()

add_executable(vlvk_frame_times EXCLUDE_FROM_ALL bench/web/frame_times.cpp ${VLVK_WASM_RUNTIME})
target_link_libraries(vlvk_frame_times PRIVATE vlvk_objects)
vlvk_set_flags(vlvk_frame_times)

if(NOT VLVK_WASM)
  return()
endif()

# The functions of vlvk/makeup.h, and memory for their arguments. Nothing is imported, so that a module is started with
# its bytes alone.
set(VLVK_WEB_EXPORTS
  malloc free vlvkVersion vlvkSettingsInit vlvkMakeupCreate vlvkMakeupDestroy vlvkMakeupConfigure vlvkMakeupSetTable
  vlvkMakeupProcess vlvkFrameCheck vlvkResultText)
list(TRANSFORM VLVK_WEB_EXPORTS PREPEND -Wl,--export=)

add_executable(vlvk_web_module ${VLVK_WASM_RUNTIME})
# The usual formatting of numbers would say in a file that it has no long double.
target_link_libraries(vlvk_web_module PRIVATE vlvk_objects c-printscan-long-double)
target_link_options(vlvk_web_module PRIVATE -mexec-model=reactor -Wl,--gc-sections -Wl,-s ${VLVK_WEB_EXPORTS})
set_target_properties(vlvk_web_module PROPERTIES
  LINKER_LANGUAGE CXX
  OUTPUT_NAME $<IF:$<BOOL:${VLVK_WASM_SIMD}>,simd,scalar>
  SUFFIX .wasm)
vlvk_set_flags(vlvk_web_module)
