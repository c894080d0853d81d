# Packages for Debian, a .deb of each component, made by cpack -G DEB. `scripts/package` calls it.
set(CPACK_PACKAGE_NAME qv8effect)
set(CPACK_PACKAGE_VENDOR "the Qv8Effect authors")
set(CPACK_PACKAGE_CONTACT "Qv8Effect authors <maintainers@qv8effect.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/bin)

# Adds the .deb NAME, made of what is installed as COMPONENT. SECTION is Debian's, DESCRIPTION says what is in it. With
# BINARIES it depends on the packages of the shared objects it uses.
set(deb_components "")
macro(add_deb component name section depends)
  cmake_parse_arguments(deb "BINARIES" "DESCRIPTION" "" ${ARGN})
  list(APPEND deb_components ${component})
  string(TOUPPER ${component} deb_key)
  set(CPACK_DEBIAN_${deb_key}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${deb_key}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${deb_key}_PACKAGE_DEPENDS "${depends}")
  set(CPACK_DEBIAN_${deb_key}_DESCRIPTION "${deb_DESCRIPTION}")
  set(CPACK_DEBIAN_${deb_key}_PACKAGE_SHLIBDEPS ${deb_BINARIES})
  install(FILES ${PROJECT_BINARY_DIR}/packages/copyright ${PROJECT_BINARY_DIR}/packages/changelog.Debian.gz
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component})
endmacro()
set(same_version "(= ${PROJECT_VERSION}-1)")

add_deb(runtime libqv8effect libs "" BINARIES DESCRIPTION
"Effects on pictures that lie in memory as packed device-independent bitmaps:
tone, colour, depth, filters, selection, geometry, composition, hidden marks.
Every effect gives the same bytes on every processor, shows progress and can
be cancelled. These are the libraries.")
add_deb(development libqv8effect-dev libdevel "libqv8effect ${same_version}" DESCRIPTION
"Headers, which document every function, and what find_package and pkg-config
ask for.")
add_deb(tools qv8 graphics "libqv8effect ${same_version}" BINARIES DESCRIPTION
"A command line for BMP, PNG, JPEG, TIFF and WebP files: single effects, chains
of them, and recipes over many files at once. Files are written whole or not
at all.")
if(TARGET qv8_python AND NOT QV8_PYTHON_ALONE)
  add_deb(python python3-qv8 python "libqv8effect ${same_version}, python3 (>= 3.11~), python3 (<< 3.12~), python3-numpy"
    BINARIES DESCRIPTION
"A Python package with a function for every effect of libqv8effect, the recipes
and the files of the command line. Arrays in, arrays out.")
endif()
# Which package a program needs that links with the libraries, and that the system looks for libraries anew.
set(shlibs "")
foreach(library IN LISTS libraries)
  get_target_property(name ${library} OUTPUT_NAME)
  string(APPEND shlibs "lib${name} ${PROJECT_VERSION_MAJOR} libqv8effect (>= ${PROJECT_VERSION})\n")
endforeach()
file(WRITE ${PROJECT_BINARY_DIR}/packages/shlibs "${shlibs}")
file(WRITE ${PROJECT_BINARY_DIR}/packages/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/packages/shlibs ${PROJECT_BINARY_DIR}/packages/triggers)
set(CPACK_COMPONENTS_ALL ${deb_components})

# The licences of what a file holds: ours, and those of the headers that are compiled into the command line.
file(READ LICENSE licence)
set(included "")
foreach(package libcli11-dev nlohmann-json3-dev)
  set(file /usr/share/doc/${package}/copyright)
  if(EXISTS ${file})
    file(READ ${file} text)
    string(APPEND included "\n\nThe program qv8 holds code of ${package}, whose copyright file says:\n\n${text}")
  endif()
endforeach()
configure_file(packaging/copyright.in ${PROJECT_BINARY_DIR}/packages/copyright @ONLY)

string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC) # SOURCE_DATE_EPOCH, where that is set
configure_file(packaging/changelog.in ${PROJECT_BINARY_DIR}/packages/changelog.Debian @ONLY)
execute_process(COMMAND gzip -9nc ${PROJECT_BINARY_DIR}/packages/changelog.Debian
  OUTPUT_FILE ${PROJECT_BINARY_DIR}/packages/changelog.Debian.gz COMMAND_ERROR_IS_FATAL ANY)
include(CPack)
