# Installation: headers, the shared library, a CMake package and a pkg-config
# file.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/veld" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(TARGETS veld EXPORT VeldTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
