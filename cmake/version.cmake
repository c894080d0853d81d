# Reads the version, which stands in the public header alone, into QV8_VERSION.
file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/../include/qv8version.h lines REGEX "^#define QV8_VERSION_(MAJOR|MINOR|PATCH) [0-9]+$")
list(TRANSFORM lines REPLACE "^.* " "")
list(JOIN lines "." QV8_VERSION)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/../include/qv8version.h)
