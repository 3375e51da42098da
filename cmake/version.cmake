# OMBRIN_VERSION, from the one place in the sources where the version stands.
set(version_header ${CMAKE_CURRENT_SOURCE_DIR}/src/protocol/program_name.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${version_header})
file(STRINGS ${version_header} version_line REGEX " VERSION\\[\\] = ")
string(REGEX REPLACE ".*\"(.*)\".*" "\\1" OMBRIN_VERSION "${version_line}")
if(NOT OMBRIN_VERSION MATCHES "^[0-9]+\\.[0-9]+[a-z]?$")
  message(FATAL_ERROR "no version in ${version_header}")
endif()
