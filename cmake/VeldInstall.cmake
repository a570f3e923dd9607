# Installation: the public headers, the shared library, the veld tool, a CMake
# package (find_package(VeldCommonUtility CONFIG) -> Veld::veld) and a
# pkg-config file (veld.pc).
#
# The third-party libraries are private to libveld.so: no public header
# includes them and the exported target does not list them, so a consumer
# needs none of their development packages and the package config looks for
# no dependencies.
include(CMakePackageConfigHelpers)

set(VELD_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/VeldCommonUtility"
    CACHE STRING "Where the CMake package files are installed, relative to the prefix")
set(VELD_INSTALL_PKGCONFIGDIR "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
    CACHE STRING "Where veld.pc is installed, relative to the prefix")
mark_as_advanced(VELD_INSTALL_CMAKEDIR VELD_INSTALL_PKGCONFIGDIR)

install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/veld"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
  COMPONENT development
  FILES_MATCHING PATTERN "*.h")

install(TARGETS veld EXPORT VeldTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)

# The tool finds libveld.so next to itself (bin/../lib) wherever the prefix
# is moved, without LD_LIBRARY_PATH. tools/veld installs it.
if(TARGET veld_cli)
  file(RELATIVE_PATH _veld_bin_to_lib
    "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
  set_target_properties(veld_cli PROPERTIES INSTALL_RPATH "$ORIGIN/${_veld_bin_to_lib}")
  unset(_veld_bin_to_lib)
endif()

install(EXPORT VeldTargets
  NAMESPACE Veld::
  FILE VeldCommonUtilityTargets.cmake
  DESTINATION "${VELD_INSTALL_CMAKEDIR}"
  COMPONENT development)

# The Qt adapters (Veld::veld_qt) are exported on their own: they need Qt 6
# Widgets, which the package config looks for only when they are installed,
# and only quietly, so that users of Veld::veld alone need no Qt.
if(TARGET veld_qt)
  install(TARGETS veld_qt EXPORT VeldQtTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
      COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)
  install(EXPORT VeldQtTargets
    NAMESPACE Veld::
    FILE VeldQtTargets.cmake
    DESTINATION "${VELD_INSTALL_CMAKEDIR}"
    COMPONENT development)
endif()

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/VeldCommonUtilityConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/VeldCommonUtilityConfig.cmake"
  INSTALL_DESTINATION "${VELD_INSTALL_CMAKEDIR}")
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/VeldCommonUtilityConfigVersion.cmake"
  VERSION "${PROJECT_VERSION}"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/VeldCommonUtilityConfig.cmake"
  "${PROJECT_BINARY_DIR}/VeldCommonUtilityConfigVersion.cmake"
  DESTINATION "${VELD_INSTALL_CMAKEDIR}"
  COMPONENT development)

# veld.pc names the prefix given at install time (cmake --install --prefix),
# so it is written when installing rather than when configuring.
set(_veld_pc_dirs "")
foreach(_dir IN ITEMS INCLUDEDIR LIBDIR)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${_dir}}")
    string(APPEND _veld_pc_dirs "set(VELD_PC_${_dir} [[${CMAKE_INSTALL_${_dir}}]])\n")
  else()
    string(APPEND _veld_pc_dirs "set(VELD_PC_${_dir} [[\${prefix}/${CMAKE_INSTALL_${_dir}}]])\n")
  endif()
endforeach()
install(CODE "
  set(VELD_PC_PREFIX \"\${CMAKE_INSTALL_PREFIX}\")
  ${_veld_pc_dirs}
  set(PROJECT_DESCRIPTION [[${PROJECT_DESCRIPTION}]])
  set(PROJECT_VERSION [[${PROJECT_VERSION}]])
  configure_file([[${PROJECT_SOURCE_DIR}/cmake/veld.pc.in]]
                 [[${PROJECT_BINARY_DIR}/veld.pc]] @ONLY)
  " COMPONENT development)
unset(_veld_pc_dirs)
install(FILES "${PROJECT_BINARY_DIR}/veld.pc"
  DESTINATION "${VELD_INSTALL_PKGCONFIGDIR}"
  COMPONENT development)
