# Fails when a public header under INCLUDE_DIR/veld/ is not included by
# veld/veld.h, or when veld.h includes a veld/ header that does not exist.
# Usage: cmake -DINCLUDE_DIR=<dir> -P check_umbrella.cmake
cmake_minimum_required(VERSION 3.25)
if(NOT INCLUDE_DIR)
  message(FATAL_ERROR "pass -DINCLUDE_DIR=<the include directory>")
endif()
set(umbrella "veld/veld.h")
if(NOT EXISTS "${INCLUDE_DIR}/${umbrella}")
  message(FATAL_ERROR "${umbrella} is missing")
endif()

# Globbed now, not at configure time, so a header added since is noticed.
file(GLOB_RECURSE headers RELATIVE "${INCLUDE_DIR}" "${INCLUDE_DIR}/veld/*.h")
list(REMOVE_ITEM headers "${umbrella}")
# The Qt adapters are a library of their own (veld_qt), which needs Qt.
list(FILTER headers EXCLUDE REGEX "^veld/qt/")

file(STRINGS "${INCLUDE_DIR}/${umbrella}" include_lines
  REGEX "^[ \t]*#[ \t]*include[ \t]*[\"<]veld/[^\">]+[\">]")
set(included "")
foreach(line IN LISTS include_lines)
  string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]*[\"<](veld/[^\">]+)[\">].*" "\\1" name "${line}")
  list(APPEND included "${name}")
endforeach()

set(missing "")
foreach(header IN LISTS headers)
  if(NOT header IN_LIST included)
    list(APPEND missing "${header}")
  endif()
endforeach()
set(unknown "")
foreach(name IN LISTS included)
  if(NOT name IN_LIST headers)
    list(APPEND unknown "${name}")
  endif()
endforeach()

list(LENGTH headers header_count)
if(missing OR unknown)
  set(text "")
  foreach(header IN LISTS missing)
    string(APPEND text "\n  not included by ${umbrella}: ${header}")
  endforeach()
  foreach(name IN LISTS unknown)
    string(APPEND text "\n  included by ${umbrella} but not a public header: ${name}")
  endforeach()
  message(FATAL_ERROR "the umbrella header is out of date:${text}")
endif()
message(STATUS "${umbrella} includes all ${header_count} public headers")
