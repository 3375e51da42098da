# Cross-compiling for Windows with mingw-w64: OMBRIN_WINDOWS_CPU is x86_64 or i686.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES OMBRIN_WINDOWS_CPU)
set(CMAKE_CXX_COMPILER ${OMBRIN_WINDOWS_CPU}-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER ${OMBRIN_WINDOWS_CPU}-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${OMBRIN_WINDOWS_CPU}-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# One file to copy, whatever the machine has installed; threads with as much stack as on Linux.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--stack,8388608")
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -static)
# This compiler version sees overlapping copies in sums of strings where there are none.
set(CMAKE_CXX_FLAGS_INIT -Wno-restrict)
if(OMBRIN_WINDOWS_CPU STREQUAL "i686")
  # Numbers as exact as everywhere else, which the old floating-point unit's are not, and all of the
  # four gigabytes that a 32-bit program may have.
  string(APPEND CMAKE_CXX_FLAGS_INIT " -msse2 -mfpmath=sse")
  string(APPEND CMAKE_EXE_LINKER_FLAGS_INIT " -Wl,--large-address-aware")
endif()
