# What is installed and where, and the Debian package made of it.
include(GNUInstallDirs)

option(OMBRIN_DEBIAN "install what a Debian package has, where it has it" OFF)
if(OMBRIN_DEBIAN)
  set(program_dir games)
else()
  set(program_dir ${CMAKE_INSTALL_BINDIR})
endif()
set(documents_dir ${CMAKE_INSTALL_DOCDIR})

if(WIN32)
  # An archive that is unpacked anywhere, with the programs on top.
  set(program_dir .)
  set(library_dir egbb)
  set(documents_dir .)
else()
  set(library_dir ${CMAKE_INSTALL_LIBDIR}/ombrin)
endif()

install(TARGETS ombrin RUNTIME DESTINATION ${program_dir})
if(TARGET bitbase_generator)
  install(TARGETS bitbase_generator RUNTIME DESTINATION ${program_dir})
  install(TARGETS egbbdll LIBRARY DESTINATION ${library_dir})
endif()
install(FILES README.md CHANGELOG.md DESTINATION ${documents_dir})
install(DIRECTORY docs examples DESTINATION ${documents_dir})

set(CPACK_PACKAGE_NAME ombrin)
set(CPACK_PACKAGE_VERSION ${OMBRIN_VERSION})
set(CPACK_PACKAGE_VENDOR ombrin)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "chess engine for UCI and xboard programs")
set(CPACK_PACKAGE_DESCRIPTION
  "ombrin plays and analyses chess inside any graphical program that speaks UCI
or the xboard protocol, version 2, and can be talked to in a terminal. It
searches with up to eight threads, thinks on its opponent's time, plays from
opening books that it makes from collections of games, and looks up endgames
in bitbases, which a second program makes.")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
if(WIN32)
  include(cmake/windows_package.cmake)
else()
  include(cmake/install_unix.cmake)
endif()
if(OMBRIN_DEBIAN)
  include(cmake/debian_package.cmake)
endif()
include(CPack)
