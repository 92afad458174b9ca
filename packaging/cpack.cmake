# Debian packages: the program, the libraries with their headers, and varnoth-tools. Made by scripts/package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME varnoth)
set(CPACK_PACKAGE_VENDOR "The varnoth developers")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL program libraries tools)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${VARNOTH_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME varnoth)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
"One batch step of a radar interferometry chain: from two satellite orbits
and a handful of scene parameters in text files it works out baseline,
flat-earth phase, height per cycle, corners and angles of an image pair.")
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_NAME varnoth-dev)
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_LIBRARIES_DESCRIPTION
"Static libraries and headers: text files of typed parameters, orbits and
their interpolation, geolocation, times with leap seconds, a log.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME varnoth-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION science)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
# What varnoth-tools loads by itself dpkg-shlibdeps does not see.
find_program(DPKG_QUERY dpkg-query)
if(DPKG_QUERY AND TARGET varnoth-tools)
  foreach(library IN ITEMS ${NETCDF} ${LIBZIP})
    file(REAL_PATH ${library} library)
    execute_process(COMMAND ${DPKG_QUERY} -S ${library} OUTPUT_VARIABLE owner)
    string(REGEX MATCH "^[^:]+" owner "${owner}")
    list(APPEND lazy_packages ${owner})
  endforeach()
  list(JOIN lazy_packages ", " CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS)
endif()
set(CPACK_COMPONENT_TOOLS_DESCRIPTION
"A companion of varnoth: imports the annotation and orbit files of radar
scenes, checks a run before it starts, and shows, compares and changes pools.")
set(component_of_varnoth program)
set(component_of_varnoth-dev libraries)
set(component_of_varnoth-tools tools)
foreach(package IN ITEMS varnoth varnoth-dev varnoth-tools)
  set(component ${component_of_${package}})
  install(FILES packaging/copyright DESTINATION share/doc/${package} COMPONENT ${component})
  # The maintainer's address is a placeholder as long as there is none.
  file(WRITE ${PROJECT_BINARY_DIR}/packaging/overrides/${package}
       "${package}: bogus-mail-host\n${package}: bogus-mail-host-in-debian-changelog\n")
  install(FILES ${PROJECT_BINARY_DIR}/packaging/overrides/${package}
          DESTINATION share/lintian/overrides COMPONENT ${component})
  set(changelog ${PROJECT_BINARY_DIR}/packaging/${package}/changelog.gz)
  add_custom_command(OUTPUT ${changelog}
    COMMAND sh -c "mkdir -p packaging/${package} && gzip -9n <'${PROJECT_SOURCE_DIR}/packaging/changelog' >'${changelog}'"
    VERBATIM DEPENDS packaging/changelog)
  add_custom_target(${package}_changelog ALL DEPENDS ${changelog})
  install(FILES ${changelog} DESTINATION share/doc/${package} COMPONENT ${component})
endforeach()
include(CPack)
