# Tests of what is installed, packaged and written about the program.

if(CMAKE_CROSSCOMPILING OR VLVK_SANITIZE)
  return()
endif()

if(TARGET vlvk-makeup)
  add_test(NAME man_page.options COMMAND ${CMAKE_COMMAND}
    -DPROGRAM=$<TARGET_FILE:vlvk-makeup> -DPAGE=${CMAKE_CURRENT_SOURCE_DIR}/man/vlvk-makeup.1
    -P ${CMAKE_CURRENT_SOURCE_DIR}/tests/check_man_page.cmake)
  find_program(VLVK_MANDOC mandoc)
  if(VLVK_MANDOC)
    add_test(NAME man_page.lint COMMAND ${VLVK_MANDOC} -Tlint -Wstyle ${CMAKE_CURRENT_SOURCE_DIR}/man/vlvk-makeup.1)
  else()
    message(STATUS "The manual page is not checked, missing: mandoc")
  endif()
endif()
