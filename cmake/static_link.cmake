# varnoth_link_statically(<program>) links a program without shared libraries, so that it starts faster and runs
# anywhere.
include(CheckCXXSourceCompiles)
include(CheckCXXSourceRuns)

# What a run touches lies together, in the order of layout.ld, which names the sections of functions and data:
# the system maps sixteen pages around each that a run touches. scripts/layout writes the list, from the map.
target_compile_options(varnoth_options INTERFACE -ffunction-sections -fdata-sections)
set(layout ${CMAKE_CURRENT_LIST_DIR}/layout.ld)
set(CMAKE_REQUIRED_LINK_OPTIONS -static -Wl,-T,${layout})
check_cxx_source_compiles("int main() {}" VARNOTH_LINKS_LAYOUT)

# With the compiler's own -static a program hands all of its unwind tables to the library that throws exceptions,
# and the first throw sorts them: ten times the instructions of a whole run. The start files of an ordinary
# program leave them to the index that the linker has sorted. So where that works, only the linker hears that
# everything is static.
set(sorted_unwind_link -no-pie -static-libgcc -Wl,-static)
if(NOT CMAKE_CROSSCOMPILING OR CMAKE_CROSSCOMPILING_EMULATOR)
  set(CMAKE_REQUIRED_LINK_OPTIONS ${sorted_unwind_link})
  check_cxx_source_runs("
    #include <link.h>
    #include <stdexcept>
    int has_index(dl_phdr_info* object, size_t, void*) {
      for (int i = 0; i < object->dlpi_phnum; ++i) {
        if (object->dlpi_phdr[i].p_type == PT_DYNAMIC) return 0;
        if (object->dlpi_phdr[i].p_type == PT_GNU_EH_FRAME) return 1;
      }
      return 0;
    }
    int main() {
      try {
        throw std::runtime_error(\"\");
      } catch (const std::exception&) {
        return dl_iterate_phdr(has_index, nullptr) == 1 ? 0 : 1;
      }
    }" VARNOTH_LINKS_SORTED_UNWIND)
endif()
unset(CMAKE_REQUIRED_LINK_OPTIONS)

function(varnoth_link_statically program)
  if(VARNOTH_LINKS_SORTED_UNWIND)
    target_link_options(${program} PRIVATE ${sorted_unwind_link})
  else()
    target_link_options(${program} PRIVATE -static)
  endif()
  if(VARNOTH_LINKS_LAYOUT)
    target_link_options(${program} PRIVATE -Wl,-T,${layout} -Wl,-Map=$<TARGET_FILE:${program}>.map)
    set_property(TARGET ${program} APPEND PROPERTY LINK_DEPENDS ${layout})
  endif()
endfunction()
