# The archive for Windows: one per processor, unpacked as one folder.
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(CPACK_SYSTEM_NAME windows64)
else()
  set(CPACK_SYSTEM_NAME windows32)
endif()
set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME ombrin-${OMBRIN_VERSION}-${CPACK_SYSTEM_NAME})
