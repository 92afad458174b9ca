# varnoth_link_statically(<program>) links a program without shared libraries, so that it starts faster and runs
# anywhere.
#
# With the compiler's own -static a program hands all of its unwind tables to the library that throws exceptions,
# and the first throw sorts them: ten times the instructions of a whole run. The start files of an ordinary
# program leave them to the index that the linker has sorted. So where that works, only the linker hears that
# everything is static.
include(CheckCXXSourceRuns)

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
  unset(CMAKE_REQUIRED_LINK_OPTIONS)
endif()

function(varnoth_link_statically program)
  if(VARNOTH_LINKS_SORTED_UNWIND)
    target_link_options(${program} PRIVATE ${sorted_unwind_link})
  else()
    target_link_options(${program} PRIVATE -static)
  endif()
endfunction()
