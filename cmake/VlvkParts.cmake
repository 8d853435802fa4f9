# Parts that are built or left out. AUTO builds one where its needs are installed, ON makes a missing need an error, OFF
# leaves it out. Another project that takes these sources in gets the library alone, unless it asks for more.

# vlvk_add_part(VARIABLE "what it is (its needs)"): the setting of a part.
function(vlvk_add_part variable description)
  set(default OFF)
  if(VLVK_TOP_LEVEL)
    set(default AUTO)
  endif()
  if(NOT DEFINED ${variable})  # a parent's plain variable stays
    set(${variable} ${default} CACHE STRING "${description}: AUTO, ON or OFF")
    set_property(CACHE ${variable} PROPERTY STRINGS AUTO ON OFF)
  endif()
  string(TOUPPER "${${variable}}" value)
  if(value MATCHES "^(ON|1|TRUE|YES|Y)$")
    set(value ON)
  elseif(value MATCHES "^(OFF|0|FALSE|NO|N|)$")
    set(value OFF)
  elseif(NOT value STREQUAL "AUTO")
    message(FATAL_ERROR "${variable} is '${${variable}}', but must be AUTO, ON or OFF")
  endif()
  set(${variable} ${value} PARENT_SCOPE)
endfunction()

# vlvk_report_missing(VARIABLE what missing ...): names what a part lacks, which is an error where the part is ON.
function(vlvk_report_missing variable what)
  list(JOIN ARGN ", " missing)
  if(${variable} STREQUAL "ON")
    message(FATAL_ERROR "${variable} is ON, but ${what} cannot be built, missing: ${missing}. Provide that, or configure "
      "with -D${variable}=AUTO (builds what can be built) or -D${variable}=OFF.")
  endif()
  message(STATUS "Not built: ${what}, missing: ${missing}")
endfunction()
