# Fails when a file of src/ includes a header of a floor above its own.
cmake_minimum_required(VERSION 3.25)

set(FLOORS
  "8 driver"
  "7 geometry"
  "6 orbit"
  "5 foundation/enumerations" "5 records" "5 framework/process"
  "4 pool"
  "3 time" "3 interpolation"
  "2 framework/tables" "2 interpolation/numerics"
  "1 foundation"
  "0 framework/log" "0 system/signal_safe")

# The floor of a path relative to src/, or -1; the longest folder name that fits decides.
function(floor_of path result)
  set(found -1)
  set(found_length 0)
  foreach(row IN LISTS FLOORS)
    string(REGEX MATCH "^([0-9]+) (.+)$" _ "${row}")
    set(number ${CMAKE_MATCH_1})
    set(folder ${CMAKE_MATCH_2})
    string(LENGTH "${folder}" length)
    string(FIND "${path}" "${folder}/" position)
    if(position EQUAL 0 AND length GREATER found_length)
      set(found ${number})
      set(found_length ${length})
    endif()
  endforeach()
  set(${result} ${found} PARENT_SCOPE)
endfunction()

set(faults "")
file(GLOB_RECURSE files RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/*.hpp ${SOURCE_DIR}/*.cpp)
foreach(file IN LISTS files)
  floor_of(${file} own)
  if(own EQUAL -1)
    string(APPEND faults "  ${file} stands on no floor\n")
  endif()
  file(STRINGS ${SOURCE_DIR}/${file} includes REGEX "^#include \"")
  foreach(line IN LISTS includes)
    string(REGEX REPLACE "^#include \"([^\"]+)\".*$" "\\1" header "${line}")
    floor_of(${header} other)
    if(other EQUAL -1)
      string(APPEND faults "  ${file} includes ${header}, which stands on no floor\n")
    elseif(other GREATER own)
      string(APPEND faults "  ${file} (floor ${own}) includes ${header} (floor ${other})\n")
    endif()
  endforeach()
endforeach()
if(faults)
  message(FATAL_ERROR "Includes must go down or sideways:\n${faults}")
endif()
