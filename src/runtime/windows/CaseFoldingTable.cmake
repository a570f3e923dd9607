# Writes the C++ initialiser of the full case folding table (statuses C and
# F of the Unicode Character Database's CaseFolding.txt), sorted by code
# point as the file is. Included with INPUT (CaseFolding.txt) and OUTPUT set.
file(STRINGS "${INPUT}" lines REGEX "^[0-9A-F]+; [CF];")
set(table "// Generated from ${INPUT}; do not edit.\n")
foreach(line IN LISTS lines)
  if(NOT line MATCHES "^([0-9A-F]+); [CF]; ([0-9A-F ]+);")
    message(FATAL_ERROR "Unexpected line: ${line}")
  endif()
  set(from "${CMAKE_MATCH_1}")
  string(REPLACE " " ";" targets "${CMAKE_MATCH_2}")
  set(to "")
  foreach(target IN LISTS targets)
    string(APPEND to "0x${target}, ")
  endforeach()
  string(APPEND table "{0x${from}, {${to}}},\n")
endforeach()
file(WRITE "${OUTPUT}" "${table}")
