# Compiler settings that every target shares, and the function that makes a folder a library.

add_library(ombrin_settings INTERFACE)
target_compile_options(ombrin_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wformat=2 -Wcast-qual -Wnon-virtual-dtor
  -Woverloaded-virtual -Wundef -Werror)
# Here and there two words could share a register, but putting them there takes longer than it saves.
target_compile_options(ombrin_settings INTERFACE -fno-tree-slp-vectorize)
set(OMBRIN_CPU "" CACHE STRING
  "processor to build for, as for -march=: nothing for any, native for this machine's")
if(OMBRIN_CPU)
  target_compile_options(ombrin_settings INTERFACE -march=${OMBRIN_CPU})
endif()

# A build that records where it spends its time, and one that is made fast there. Both run at fixed
# addresses, which a table look-up can contain, and are for programs only.
set(OMBRIN_PROFILE "" CACHE STRING "record or use a profile")
set(OMBRIN_PROFILE_DIR "" CACHE PATH "where the profile is")
if(OMBRIN_PROFILE)
  set(profile_options -fprofile-prefix-path=${CMAKE_BINARY_DIR})
  if(OMBRIN_PROFILE STREQUAL "record")
    list(APPEND profile_options
      -fprofile-generate=${OMBRIN_PROFILE_DIR} -fprofile-update=prefer-atomic)
  else()
    list(APPEND profile_options -fprofile-use=${OMBRIN_PROFILE_DIR} -Wno-missing-profile)
  endif()
  target_compile_options(ombrin_settings INTERFACE ${profile_options} -fno-pie)
  target_link_options(ombrin_settings INTERFACE ${profile_options} -no-pie)
endif()

if(OMBRIN_SANITIZE)
  # Instrumented code makes the compiler see uninitialised variables where there are none.
  target_compile_options(ombrin_settings INTERFACE
    -fsanitize=${OMBRIN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(ombrin_settings INTERFACE -fsanitize=${OMBRIN_SANITIZE})
endif()

if(OMBRIN_COVERAGE)
  # Whole lines and functions, at a speed that the tests can bear; threads must not lose counts.
  target_compile_options(ombrin_settings INTERFACE -O1 --coverage -fprofile-update=atomic)
  target_link_options(ombrin_settings INTERFACE --coverage)
endif()

# ombrin_library(folder [folder it may use ...])
function(ombrin_library folder)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  # What differs from one operating system to the next is in files of their own.
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "_linux\\.cpp$")
  else()
    list(FILTER sources EXCLUDE REGEX "_windows\\.cpp$")
  endif()
  set(target ombrin_${folder})
  if(sources)
    add_library(${target} STATIC ${sources})
    set(scope PUBLIC)
  else()
    add_library(${target} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_include_directories(${target} ${scope} ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(${target} ${scope} ombrin_settings Threads::Threads ${CMAKE_DL_LIBS})
  foreach(used IN LISTS ARGN)
    target_link_libraries(${target} ${scope} ombrin_${used})
  endforeach()
endfunction()

# ombrin_program(target): gives a program that users run what their system wants to know of it.
function(ombrin_program target)
  if(WIN32)
    enable_language(RC)
    target_sources(${target} PRIVATE ${CMAKE_SOURCE_DIR}/packaging/windows/program.rc)
    set_source_files_properties(${CMAKE_SOURCE_DIR}/packaging/windows/program.rc PROPERTIES
      OBJECT_DEPENDS ${CMAKE_SOURCE_DIR}/packaging/windows/program.manifest)
  endif()
endfunction()
