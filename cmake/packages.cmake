# Packages, made by cpack: a .deb of each component, and a .tar.gz of everything. `scripts/package` calls it.
set(CPACK_PACKAGE_NAME qv8effect)
set(CPACK_PACKAGE_VENDOR "the Qv8Effect authors")
set(CPACK_PACKAGE_CONTACT "Qv8Effect authors <qv8effect@users.noreply.github.com>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_FILE_NAME qv8effect-${PROJECT_VERSION}-linux-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_PACKAGE_CHECKSUM "")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/bin)

# Adds the .deb NAME, made of what is installed as COMPONENT. SECTION is Debian's; DESCRIPTION is one line that says what
# is in it, and further ones that say more. With BINARIES it depends on the packages of the shared objects it uses.
set(deb_components "")
macro(add_deb component name section depends)
  cmake_parse_arguments(deb "BINARIES" "SUMMARY;DESCRIPTION" "" ${ARGN})
  list(APPEND deb_components ${component})
  string(TOUPPER ${component} deb_key)
  set(CPACK_DEBIAN_${deb_key}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${deb_key}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${deb_key}_PACKAGE_DEPENDS "${depends}")
  set(CPACK_DEBIAN_${deb_key}_DESCRIPTION "${deb_SUMMARY}\n${deb_DESCRIPTION}")
  set(CPACK_DEBIAN_${deb_key}_PACKAGE_SHLIBDEPS ${deb_BINARIES})
  install(FILES ${PROJECT_BINARY_DIR}/packages/copyright ${PROJECT_BINARY_DIR}/packages/changelog.Debian.gz
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component})
endmacro()
set(same_version "(= ${PROJECT_VERSION}-1)")

add_deb(runtime libqv8effect libs "" BINARIES SUMMARY "picture effects on packed bitmaps, the libraries"
  DESCRIPTION "Effects on pictures that lie in memory as packed device-independent bitmaps: tone,
colour, depth, filters, selection, geometry, composition and hidden marks. Every
effect gives the same bytes on every processor, shows progress and can be
cancelled.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_GENERATE_SHLIBS_POLICY "=")
add_deb(development libqv8effect-dev libdevel "libqv8effect ${same_version}"
  SUMMARY "picture effects on packed bitmaps, for building programs"
  DESCRIPTION "Headers, and what find_package and pkg-config ask for. The headers document every
function.")
add_deb(tools qv8 graphics "libqv8effect ${same_version}" BINARIES
  SUMMARY "applies picture effects to files"
  DESCRIPTION "A command line for BMP, PNG, JPEG, TIFF and WebP files: single effects, chains of
them, and recipes over many files at once. Output files are written whole or not at
all.")
if(TARGET qv8_python)
  add_deb(python python3-qv8 python "libqv8effect ${same_version}, python3 (>= 3.11~), python3 (<< 3.12~), python3-numpy" BINARIES
    SUMMARY "picture effects on NumPy arrays"
    DESCRIPTION "A Python package with a function for every effect of libqv8effect, the recipes and the
files of the command line. Arrays in, arrays out.")
endif()
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
