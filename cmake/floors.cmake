# A folder of src/ is a floor of the house and one library target; see docs/architecture.md.

include(GNUInstallDirs)

add_library(varnoth_options INTERFACE)
target_compile_features(varnoth_options INTERFACE cxx_std_20)
target_include_directories(varnoth_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
# The same digits on every build: no contraction of a * b + c into one rounding, and no moving or
# inventing of operations that may trap.
target_compile_options(varnoth_options INTERFACE
  -ffp-contract=off
  $<$<CXX_COMPILER_ID:GNU>:-ftrapping-math>
  $<$<CXX_COMPILER_ID:Clang>:-ffp-exception-behavior=maytrap>
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wformat=2
  -Wno-format-nonliteral -Wnon-virtual-dtor
  # -Wrestrict of g++ 12 sees overlaps in std::string that are not there (its bug 105651).
  $<$<CXX_COMPILER_ID:GNU>:-Woverloaded-virtual -Wduplicated-cond -Wlogical-op -Wno-restrict>
  $<$<BOOL:${VARNOTH_WERROR}>:-Werror>)

# varnoth_floor(<target> SOURCES <file>... [FLOORS_BELOW <target>...])
function(varnoth_floor target)
  cmake_parse_arguments(FLOOR "" "" "SOURCES;FLOORS_BELOW" ${ARGN})
  add_library(${target} STATIC ${FLOOR_SOURCES})
  target_compile_features(${target} PUBLIC cxx_std_20)
  # A char has a sign on every processor: the pools' INT_8 is kept in one.
  target_compile_options(${target} PUBLIC -fsigned-char)
  target_link_libraries(${target} PUBLIC $<BUILD_INTERFACE:varnoth_options> ${FLOOR_FLOORS_BELOW})
  target_include_directories(${target} INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/varnoth>)
  string(REPLACE "varnoth_" "" name ${target})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  set_property(GLOBAL APPEND PROPERTY VARNOTH_FLOORS ${target})
  add_dependencies(${target} varnoth_check_floors)
endfunction()

# An include that goes up fails the build, whatever the linker would say of it.
add_custom_target(varnoth_check_floors
  COMMAND ${CMAKE_COMMAND} -DSOURCE_DIR=${PROJECT_SOURCE_DIR}
          -P ${PROJECT_SOURCE_DIR}/cmake/check_floors.cmake
  COMMENT "Checking that includes go down or sideways" VERBATIM)
