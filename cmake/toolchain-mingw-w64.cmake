# Cross build for 64-bit Windows with mingw-w64 on Debian; tests run under
# Wine through the emulator (ctest starts each .exe with wine64).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
# The posix thread model: the win32 one of Debian 12 has no std::mutex,
# which GoogleTest needs.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
# The prefix of static libraries that scripts/build-windows.sh builds.
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VELD_WINDOWS_DEPS)
if(VELD_WINDOWS_DEPS)
  list(APPEND CMAKE_FIND_ROOT_PATH "${VELD_WINDOWS_DEPS}")
  list(APPEND CMAKE_PREFIX_PATH "${VELD_WINDOWS_DEPS}")
endif()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# Without the C++ runtime DLLs next to them, programs and libveld.dll would
# not load under Wine; link the runtime in.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
find_program(VELD_WINE64 NAMES wine64 PATHS /usr/lib/wine NO_DEFAULT_PATH)
if(VELD_WINE64)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${VELD_WINE64}")
endif()
