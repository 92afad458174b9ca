# The program, its pages, and the libraries as a CMake package and for pkg-config. Nothing that is
# installed names the place it was installed to.
include(CMakePackageConfigHelpers)

install(TARGETS varnoth RUNTIME COMPONENT program)
if(TARGET varnoth-tools)
  install(TARGETS varnoth-tools RUNTIME COMPONENT tools)
  install(FILES packaging/varnoth-tools.bash-completion RENAME varnoth-tools
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
endif()
# The pages name each other, the pictures and the examples by their places here.
install(FILES README.md CHANGELOG.md CONTRIBUTING.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT program)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT program
        FILES_MATCHING PATTERN "*.md" PATTERN "*.svg" PATTERN "*.png" PATTERN "*.py" PATTERN "man" EXCLUDE)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT program USE_SOURCE_PERMISSIONS
        PATTERN "__pycache__" EXCLUDE PATTERN ".snakemake" EXCLUDE PATTERN "test_*.py" EXCLUDE)
install(FILES packaging/varnoth.bash-completion RENAME varnoth
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT program)

# Manual pages, where there is a tool to make them.
find_program(SCDOC scdoc)
if(SCDOC)
  set(pages_of_program varnoth.1 varnoth-pool.5)
  set(pages_of_tools "")
  if(TARGET varnoth-tools)
    set(pages_of_tools varnoth-tools.1)
  endif()
  foreach(page IN LISTS pages_of_program pages_of_tools)
    set(component program)
    if(page IN_LIST pages_of_tools)
      set(component tools)
    endif()
    string(REGEX MATCH "[0-9]$" section ${page})
    set(source ${PROJECT_SOURCE_DIR}/docs/man/${page}.scd)
    add_custom_command(OUTPUT ${page}.gz
      COMMAND sh -c "'${SCDOC}' <\"$0\" | gzip -9n >${page}.gz" ${source} VERBATIM DEPENDS ${source})
    list(APPEND pages ${PROJECT_BINARY_DIR}/${page}.gz)
    install(FILES ${PROJECT_BINARY_DIR}/${page}.gz
            DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section} COMPONENT ${component})
  endforeach()
  add_custom_target(varnoth_pages ALL DEPENDS ${pages})
endif()

get_property(floors GLOBAL PROPERTY VARNOTH_FLOORS)
list(REMOVE_ITEM floors varnoth_driver)  # the program's own
install(TARGETS ${floors} EXPORT varnothTargets ARCHIVE COMPONENT libraries)
# What lies in internal/ is nobody else's, nor are the program's headers.
install(DIRECTORY src/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/varnoth COMPONENT libraries
        FILES_MATCHING PATTERN "*.hpp" PATTERN "driver" EXCLUDE PATTERN "internal" EXCLUDE)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/varnoth)
install(EXPORT varnothTargets NAMESPACE varnoth:: DESTINATION ${package_dir} COMPONENT libraries)
configure_package_config_file(cmake/varnothConfig.cmake.in varnothConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(varnothConfigVersion.cmake COMPATIBILITY SameMinorVersion)
file(RELATIVE_PATH PREFIX_FROM_PC "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
# Each library behind those that use it.
set(PC_LIBRARIES "")
foreach(floor IN LISTS floors)
  string(PREPEND PC_LIBRARIES "-l${floor} ")
endforeach()
configure_file(cmake/varnoth.pc.in varnoth.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/varnothConfig.cmake
              ${PROJECT_BINARY_DIR}/varnothConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT libraries)
install(FILES ${PROJECT_BINARY_DIR}/varnoth.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT libraries)
